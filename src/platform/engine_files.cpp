#include "platform/engine_files.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

namespace tarn {
namespace {

std::mutex guard;
/// The open databases by path. Never destroyed: a static object may close one.
std::vector<EngineFile*>& open_files() {
  static auto& files = *new std::vector<EngineFile*>;
  return files;
}

thread_local std::string refused;

/// Calls `action` with the open database whose file, with such an ending, has the path; false where there is none.
template <typename F>
bool with_database(std::string_view path, std::string_view ending, F action) {
  if (!path.ends_with(ending)) return false;
  path.remove_suffix(ending.size());
  const std::lock_guard lock(guard);
  const auto found = std::ranges::find(open_files(), path, &EngineFile::path);
  if (found == open_files().end()) return false;
  action(**found);
  return true;
}

bool is_known(std::string_view path) {
  return std::ranges::any_of(std::array{"-journal", "-wal", "-shm"},
                             [&](const char* ending) { return with_database(path, ending, [](EngineFile&) {}); });
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
      // Both questions are asked at the beginning of every transaction. A database with a write-ahead log says so in
      // its own header, which the engine reads next.
      bool live = true;
      const auto look = [&](EngineFile& file) { live = file.has_live_journal(); };
      const auto is_of_header = [&](EngineFile&) { live = false; };
      if (flags == SQLITE_ACCESS_EXISTS &&
          (with_database(path, "-journal", look) || with_database(path, "-wal", is_of_header)) && !live) {
        *result = 0;
        return SQLITE_OK;
      }
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

EngineFile::EngineFile(std::string path) : path_(std::move(path)), journal_name_(path_ + "-journal") {
  const std::lock_guard lock(guard);
  open_files().push_back(this);
}

EngineFile::~EngineFile() {
  const std::lock_guard lock(guard);
  std::erase(open_files(), this);
  forget_journal();
}

void EngineFile::forget_journal() {
  if (journal_ >= 0) ::close(journal_);
  journal_ = -1;
}

/// A journal that was ended begins with a zero. The engine would open the file to see that, with every lock.
bool EngineFile::has_live_journal() {
  struct stat now {};
  if (::stat(journal_name_.c_str(), &now) != 0) return errno != ENOENT;
  if (journal_ < 0 || now.st_ino != inode_ || now.st_dev != device_) {
    forget_journal();
    journal_ = ::open(journal_name_.c_str(), O_RDONLY | O_CLOEXEC);
    if (journal_ < 0 || ::fstat(journal_, &now) != 0) return true;
    inode_ = now.st_ino;
    device_ = now.st_dev;
  }
  char first = 0;
  return ::pread(journal_, &first, 1, 0) != 1 || first != 0;
}

std::string take_refused_file() { return std::exchange(refused, {}); }

}  // namespace tarn
