// What a person sets: "Height=4", "GlassTrans(2)=0.78", "Layer(2).Thickness=8".
#pragma once

#include <string>
#include <vector>

#include "project/kinds.h"
#include "tarn/storage/entity.h"

namespace tarn::cli {

/// Makes the assignments, then computes what follows from them, but for results that the user set himself. What changed
/// by that is returned, to be told when the entity is saved. Error `UsageError` for a word that cannot be one.
std::vector<std::string> edit(StoredEntity& entity, const EntityKind& kind, const std::vector<std::string>& words);

}  // namespace tarn::cli
