#include "platform/engine_files.h"

#include <sqlite3.h>

#include <algorithm>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

namespace tarn {
namespace {

std::mutex guard;
/// Never destroyed: a static object may close a database.
std::vector<std::string>& open_paths() {
  static auto& paths = *new std::vector<std::string>;
  return paths;
}

thread_local std::string refused;

/// Of an open database, or a file of the engine's own beside it.
bool is_known(std::string_view path) {
  for (const std::string_view ending : {"-journal", "-wal", "-shm"}) {
    if (!path.ends_with(ending)) continue;
    const std::lock_guard lock(guard);
    const auto own = path.substr(0, path.size() - ending.size());
    if (std::ranges::find(open_paths(), own) != open_paths().end()) return true;
  }
  return false;
}

sqlite3_vfs* system() {
  static sqlite3_vfs* const found = sqlite3_vfs_find(nullptr);
  return found;
}

/// The system's own, but for the questions and deletions that name another file.
sqlite3_vfs* kept() {
  static sqlite3_vfs* const made = [] {
    static sqlite3_vfs all = *system();
    all.zName = "tarn";
    all.xAccess = [](sqlite3_vfs*, const char* path, int flags, int* result) {
      if (is_known(path)) return system()->xAccess(system(), path, flags, result);
      refused = path;
      return SQLITE_IOERR_ACCESS;
    };
    all.xDelete = [](sqlite3_vfs*, const char* path, int sync) {
      if (is_known(path)) return system()->xDelete(system(), path, sync);
      refused = path;
      return SQLITE_IOERR_DELETE;
    };
    sqlite3_vfs_register(&all, 0);
    return &all;
  }();
  return made;
}

}  // namespace

const char* engine_files() { return kept()->zName; }

EngineFile::EngineFile(std::string path) : path_(std::move(path)) {
  const std::lock_guard lock(guard);
  open_paths().push_back(path_);
}

EngineFile::~EngineFile() {
  const std::lock_guard lock(guard);
  open_paths().erase(std::ranges::find(open_paths(), path_));
}

std::string take_refused_file() { return std::exchange(refused, {}); }

}  // namespace tarn
