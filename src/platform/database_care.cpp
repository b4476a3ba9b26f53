// What check and repair ask of the engine.
#include <sqlite3.h>

#include <filesystem>

#include "platform/engine_files.h"
#include "platform/host.h"
#include "platform/pending_writes.h"
#include "tarn/base/error.h"
#include "tarn/platform/database.h"

namespace tarn {
namespace {

[[noreturn]] void fail_to_copy(const std::string& path, const std::string& why) {
  fail(ErrorNumber::DatabaseFailure, "The index database could not be copied to " + path + ": " + why + ".");
}

}  // namespace

std::vector<std::string> Database::damage() {
  join(Part::Reading);
  std::vector<std::string> found;
  try {
    Statement check(*this, "PRAGMA integrity_check(20)");
    while (check.step()) found.push_back(std::get<std::string>(check.column(0)));
  } catch (const Error& error) {
    if (error.number() != static_cast<int>(ErrorNumber::UnknownFormat)) throw;
    found.push_back(error.description());
  }
  if (found == std::vector<std::string>{"ok"}) found.clear();
  return found;
}

std::vector<int64_t> Database::foreign_pending_rows() {
  if (!pending_) return {};
  join(Part::Reading);
  return pending_->foreign_rows();
}

void Database::copy_to(const std::string& path, PendingRows pending) {
  if (host().files->exists(path)) fail(ErrorNumber::FileExists, path + " exists already.");
  sqlite3* copy = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
  const int opened = sqlite3_open_v2(path.c_str(), &copy, flags, engine_files());
  const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> closed_after(copy, &sqlite3_close);
  if (opened != SQLITE_OK) fail_to_copy(path, sqlite3_errmsg(copy));
  const EngineFile known(sqlite3_db_filename(copy, "main"));
  sqlite3_backup* backup = sqlite3_backup_init(copy, "main", handle_, "main");
  if (!backup) fail_to_copy(path, sqlite3_errmsg(copy));
  const int result = sqlite3_backup_step(backup, -1);
  if (sqlite3_backup_finish(backup) != SQLITE_OK || result != SQLITE_DONE) fail_to_copy(path, sqlite3_errstr(result));
  if (pending == PendingRows::InPlace && sqlite3_exec(copy, "DELETE FROM PendingWrites", nullptr, nullptr, nullptr))
    fail_to_copy(path, sqlite3_errmsg(copy));
}

}  // namespace tarn
