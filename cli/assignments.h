// What a person sets: "Height=4", "GlassTrans(2)=0.78", "Layer(2).Thickness=8".
#pragma once

#include <string>
#include <vector>

#include "project/kinds.h"
#include "tarn/storage/entity.h"

namespace tarn::cli {

/// What is told when the entity is saved: values that were given in another unit than the file's, and what changed by
/// calculations.
struct Edited {
  std::vector<std::string> converted, computed;
};

/// Makes the assignments, then computes what follows from them, but for results that the user set himself. Error
/// `UsageError` for a word that cannot be one.
Edited edit(StoredEntity& entity, const EntityKind& kind, const std::vector<std::string>& words);

}  // namespace tarn::cli
