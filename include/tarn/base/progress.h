// What long work tells while it runs.
#pragma once

#include <cstddef>
#include <functional>

namespace tarn {

/// Called after each entity: how many are done, of how many (0: not known).
using Progress = std::function<void(size_t done, size_t total)>;

}  // namespace tarn
