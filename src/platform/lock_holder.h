// Who holds a lock on a file, where the system tells it.
#pragma once

#include <string>

namespace tarn {

/// "tarn (process 4711)", of another process with a write lock on the file; empty where that is not known: on a
/// network share, for another thread of this process, or when the lock was freed meanwhile.
std::string lock_holder(const std::string& path);

}  // namespace tarn
