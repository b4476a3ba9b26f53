// Layers of walls and roofs from the command line.
#pragma once

#include "cli/command.h"
#include "tarn/construction.h"

namespace tarn::cli {

/// The materials that the product ships.
int print_materials(const Call& call);

struct LayerChange {
  std::string what;  // "inserted"
  int16_t slot;
  std::string name;
};
/// What the words after `layer` ask for: insert N SLOT with --material or without, remove N SLOT, move N SLOT TO. Error
/// `UsageError`, before anything is changed.
LayerChange change_layers(CA_ConstructionAssly& construction, const Call& call);
/// Error `UsageError` for words that are none of these.
void check_layer_words(const Call& call);

/// What a construction tells of coefficients that hold its response badly, in JSON "transfer_function_error" and
/// "transfer_function_message"; empty for those that hold it well, and for other kinds.
Json told_accuracy(const StoredEntity& entity);
/// The same of the constructions whose rows these are, as members of the rows; and as lines.
std::string told_accuracies(StoredEntity& entity, Json& rows);

}  // namespace tarn::cli
