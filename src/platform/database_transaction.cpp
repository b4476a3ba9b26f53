// A database's part in transactions: its locks, its commit, and the record bytes that the commit decides.
#include <sqlite3.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

#include "platform/file_store.h"
#include "platform/host.h"
#include "platform/pending_writes.h"
#include "tarn/base/error.h"
#include "tarn/base/log.h"
#include "tarn/platform/database.h"
#include "tarn/platform/statement.h"
#include "tarn/platform/workspace.h"

namespace tarn {
namespace {

/// How long a lock of another program is waited for.
std::chrono::milliseconds busy_time() {
  constexpr int kMilliseconds = 5000;
  const char* const told = std::getenv("TARN_BUSY_MS");
  int milliseconds = kMilliseconds;
  if (told) std::from_chars(told, told + std::strlen(told), milliseconds);
  return std::chrono::milliseconds(std::max(milliseconds, 0));
}

}  // namespace

/// Called by the engine while another program has the lock that is needed.
bool Database::waits(int tries) {
  const auto now = std::chrono::steady_clock::now();
  if (tries == 0) waiting_since_ = now;
  if (impatient_ || now - waiting_since_ >= busy_time()) return false;
  host().yield();
  // Waits differ, so that programs which wait for each other do not keep in step.
  const int most = std::min(1 + tries / 4, 20);
  std::this_thread::sleep_for(std::chrono::microseconds(200 + std::rand() % (most * 1000)));
  return true;
}

// ---- record bytes of committed saves

bool Database::keeps(const std::string& path) const { return pending_ && !pending_->name_of(path).empty(); }

std::string Database::pending_path(const FileChange& change) const { return pending_->path_of(change.replacement); }

const FileChange* Database::pending(const std::string& path) {
  const std::string_view name = pending_->name_of(path);
  if (name.empty()) return nullptr;
  join(Part::Reading);
  see_pending();
  return pending_->find(name);
}

int64_t Database::foreign_version() {
  if (level_ > 0 && foreign_version_) return *foreign_version_;
  // With a lock, the engine has looked at the file: where it has seen no commit at all, there was none of another.
  const bool looked = sqlite3_txn_state(handle_, "main") != SQLITE_TXN_NONE;
  if (looked && seen_ && seen_->commits == commits_seen()) return seen_->foreign;
  sqlite3_stmt* const question = kept("PRAGMA data_version");
  const bool answered = sqlite3_step(question) == SQLITE_ROW;
  const int64_t version = answered ? sqlite3_column_int64(question, 0) : 0;
  if (sqlite3_reset(question) != SQLITE_OK) fail_on("PRAGMA data_version");
  if (level_ > 0) foreign_version_ = version;
  seen_ = {commits_seen(), version};
  return version;
}

/// Changes with every commit, also those of this connection, that the engine has met.
uint32_t Database::commits_seen() const {
  uint32_t commits = 0;
  sqlite3_file_control(handle_, "main", SQLITE_FCNTL_DATA_VERSION, &commits);
  return commits;
}

void Database::see_pending() {
  if (level_ > 0 && pending_seen_) return;
  pending_->refresh(foreign_version());
  pending_seen_ = level_ > 0;
}

/// Where no other program is saving. A failure is logged: what is done is what another program may do later.
void Database::with_write_lock(const std::function<void()>& work) {
  if (read_only_ || in_the_making_) return;
  try {
    impatient_ = true;
    const bool begun = begin("BEGIN IMMEDIATE");
    impatient_ = false;
    if (!begun) return;
    pending_->refresh(foreign_version());
    work();
  } catch (const Error& failure) {
    impatient_ = false;
    log().message(failure.description() + " What is committed stays; its record bytes follow.");
  }
  roll_back_what_is_open();
}

/// After a failure, the engine may have done so by itself.
void Database::roll_back_what_is_open() {
  if (sqlite3_get_autocommit(handle_) == 0) sqlite3_exec(handle_, "ROLLBACK", nullptr, nullptr, nullptr);
}

/// After a commit, which another program's may have followed already: then its own call does this.
void Database::apply_pending() {
  if (!pending_->applied()) with_write_lock([this] { pending_->apply(); });
}

void Database::remove_leftovers() {
  if (const auto made = pending_->new_files(); !made.empty())
    with_write_lock([&] { pending_->remove_leftovers(made); });
}

void Database::settle() {
  if (!pending_ || read_only_ || in_the_making_ || sqlite3_get_autocommit(handle_) == 0) return;
  pending_->refresh(foreign_version());
  if (pending_->empty()) return;
  control("BEGIN IMMEDIATE");
  try {
    pending_->refresh(foreign_version());
    pending_->settle();
    control("COMMIT");
  } catch (...) {
    pending_->rolled_back();
    roll_back_what_is_open();
    throw;
  }
  pending_->committed();
}

/// The last user of a project leaves its record files complete, and no journal.
void Database::close() {
  if (!pending_) return;
  try {
    if (!read_only_) {
      impatient_ = true;
      settle();
      run("PRAGMA journal_mode = DELETE");
    }
  } catch (const std::exception&) {
    // The rows stay, and the next program that opens the project settles them.
  }
  files_->detach(*this);
  pending_.reset();
}

/// Statements of transactions are kept apart from all others.
sqlite3_stmt* Database::kept(const std::string& sql) {
  const auto known = std::ranges::find(controls_, sql, &std::pair<std::string, sqlite3_stmt*>::first);
  if (known != controls_.end()) return known->second;
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v3(handle_, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr)) fail_on(sql);
  return controls_.emplace_back(sql, statement).second;
}

void Database::control(const std::string& sql) {
  sqlite3_stmt* const statement = kept(sql);
  sqlite3_step(statement);
  if (sqlite3_reset(statement) != SQLITE_OK) fail_on(sql);
}

void Database::run(const std::string& sql) {
  if (sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) fail_on(sql);
}

int64_t Database::pragma(const std::string& name) {
  const std::string sql = "PRAGMA " + name;
  Statement statement(*this, sql, {});
  return statement.step() ? statement.integer(0) : 0;
}

/// Begins a transaction of the engine; false where another program has the lock and it is not waited for.
bool Database::begin(const std::string& sql) {
  try {
    control(sql);
    return true;
  } catch (const Error& error) {
    if (!impatient_ || error.number() != static_cast<int>(ErrorNumber::DatabaseLocked)) throw;
    return false;
  }
}

void Database::join(Part part) {
  if (apart_) return;
  Workspace& workspace = Engine::of_thread().Workspaces(0);
  const size_t depth = part == Part::Writing ? workspace.depth() : std::min<size_t>(workspace.depth(), 1);
  if (level_ > 0 && sqlite3_get_autocommit(handle_) != 0) {
    fail(ErrorNumber::DatabaseFailure,
         "A failure has ended the transaction of " + path_ + "; roll it back and begin again.");
  }
  while (level_ < depth) {
    if (level_ == 0) {
      // A transaction that is going to write takes the write lock at once: later, the engine could not wait for it.
      const bool locks = workspace.writes() && !read_only_ && !workspace.has_enlisted(path_);
      control(locks ? "BEGIN IMMEDIATE" : "BEGIN");
      locks_out_ = locks;
      pending_seen_ = false;
      foreign_version_.reset();
      changes_before_ = sqlite3_total_changes(handle_);
      workspace.enlist(std::static_pointer_cast<Database>(shared_from_this()));
    } else {
      control("SAVEPOINT s" + std::to_string(level_ + 1));
    }
    ++level_;
  }
}

void Database::release_level(size_t level) {
  if (level_ < level) return;
  control("RELEASE s" + std::to_string(level));
  level_ = level - 1;
}

void Database::rollback_level(size_t level) {
  if (level_ < level) return;
  level_ = level - 1;
  rows_unknown();
  if (level == 1) pending_->rolled_back();
  if (sqlite3_get_autocommit(handle_) != 0) return;  // the engine has rolled back by itself, after a full disk say
  if (level == 1) {
    run("ROLLBACK");
    // Another program may have committed before it, and met its lock when it was going to write its record bytes.
    if (std::exchange(locks_out_, false)) with_write_lock([this] { pending_->apply(); });
    return;
  }
  const std::string point = "s" + std::to_string(level);
  run("ROLLBACK TO " + point + "; RELEASE " + point);
}

void Database::commit(const Writes& writes) {
  if (!writes.empty()) {
    PendingWrites::Changes changes;
    for (const auto& [path, change] : writes) changes.emplace_back(pending_->name_of(path), change);
    see_pending();
    pending_->add(changes);
  }
  commit_rows();
  level_ = 0;
  locks_out_ = false;
  pending_->committed();
  apply_pending();
}

/// The last call of a commit may fail after the journal's end is written, with the commit complete. So each leaves a
/// mark of its own in a page that is written anyway.
void Database::commit_rows() {
  const bool changed = sqlite3_total_changes(handle_) != changes_before_;
  int32_t mark = 0;
  if (changed) {
    sqlite3_randomness(sizeof mark, &mark);
    run("PRAGMA user_version = " + std::to_string(mark));
  }
  try {
    control("COMMIT");
  } catch (const Error& failure) {
    // Another program's lock leaves the transaction open.
    if (!changed || sqlite3_get_autocommit(handle_) == 0 || !has_mark(mark)) throw;
    log().message(failure.description() + " The commit is complete.");
  }
}

bool Database::has_mark(int32_t mark) {
  try {
    return pragma("user_version") == mark;
  } catch (const Error& failure) {
    fail(ErrorNumber::DatabaseFailure,
         failure.description() + " The disk failed at the end of a commit: whether it is complete is seen when the " +
             "project can be read again. Load what was saved before saving it again.");
  }
}

}  // namespace tarn
