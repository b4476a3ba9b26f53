// Inputs that are allowed each by itself, and together cannot be meant.
#pragma once

#include <string>
#include <vector>

#include "tarn/platform/database.h"
#include "tarn/storage/entity.h"

namespace tarn {

struct Implausible {
  std::string property;  // "Wall(1).GrossArea"
  std::string what, remedy;

  bool operator==(const Implausible&) const = default;
};

/// Openings of a space that are larger than their wall or roof, by the index rows of windows and doors; spaces of an
/// air system's zone that count 0 times.
std::vector<Implausible> implausible_inputs(StoredEntity& entity, Database& index);

}  // namespace tarn
