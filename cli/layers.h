// Layers of walls and roofs from the command line, and a picture of them.
#pragma once

#include "cli/command.h"
#include "component/kinds.h"
#include "envelope/construction.h"

namespace tarn::cli {

/// layer insert|remove|move N SLOT [TO], with --material; layer materials lists what the product ships.
int run_layer(const Call& call, const EntityKind& kind);

/// Of constructions whose 12 terms hold the response of their layers badly: a sentence each, and in their JSON rows
/// "transfer_function_error". None for other kinds.
std::vector<std::string> told_errors(StoredEntity& entity, Json& rows);

/// A self-contained picture (SVG): the section to scale with the temperatures in it on a sunny day, and the heat that
/// comes in after an hour of warmth. Error `InvalidCall`, with the reason, where the layers have no response.
std::string wall_picture(CA_ConstructionAssly& construction);

}  // namespace tarn::cli
