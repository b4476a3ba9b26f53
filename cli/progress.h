// What long work shows while it runs.
#pragma once

#include <string>

#include "tarn/exchange.h"

namespace tarn::cli {

/// A bar on a terminal's standard error, for work that takes more than a second; nothing elsewhere. It is gone when the
/// work is done.
Progress progress_bar(const std::string& what);

}  // namespace tarn::cli
