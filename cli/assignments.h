// What a person sets: "Height=4", "GlassTrans(2)=0.78", "Layer(2).Thickness=8".
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "project/kinds.h"
#include "tarn/storage/entity.h"

namespace tarn::cli {

/// What is told when the entity is saved: values that were given in another unit than the file's and how many a range
/// set, what changed by calculations, and what a person may not expect.
struct Edited {
  std::vector<std::string> converted, computed, notes;
  bool only_name = false;  // which no result rests on
};

/// Makes the assignments, then computes what follows from them, but for results that the user set himself. Error
/// `UsageError` for a word that cannot be one.
Edited edit(StoredEntity& entity, const EntityKind& kind, const std::vector<std::string>& words);

/// Computes what follows from the entity's inputs, then lets the caller restore what is to stay; what changed, as
/// "OverallUValue 0.5 -> 0.4 Btu/(hr.ft2.F)". For kinds that have a computation.
std::vector<std::string> computed(StoredEntity& entity, const EntityKind& kind,
                                  const std::function<void()>& restore = {});

}  // namespace tarn::cli
