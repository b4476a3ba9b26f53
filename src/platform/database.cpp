#include "tarn/platform/database.h"

#include <sqlite3.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <thread>

#include "base/nearest.h"
#include "platform/engine_files.h"
#include "platform/file_store.h"
#include "platform/host.h"
#include "platform/lock_holder.h"
#include "platform/pending_writes.h"
#include "platform/query_shape.h"
#include "tarn/base/log.h"
#include "tarn/platform/statement.h"
#include "tarn/platform/workspace.h"
#include "tarn/reflect/describe.h"

namespace tarn {
namespace {

/// A view in the place of a table may never end. The longest statement of ours takes a tenth of this.
constexpr int kProgressSteps = 1'000'000;
constexpr int kMostProgress = 150;

/// How long a lock of another program is waited for.
std::chrono::milliseconds busy_time() {
  constexpr int kMilliseconds = 5000;
  const char* const told = std::getenv("TARN_BUSY_MS");
  int milliseconds = kMilliseconds;
  if (told) std::from_chars(told, told + std::strlen(told), milliseconds);
  return std::chrono::milliseconds(std::max(milliseconds, 0));
}

[[noreturn]] void fail_with(sqlite3* handle, const std::string& path, const std::string& sql) {
  const std::string cause = sqlite3_errmsg(handle);
  switch (sqlite3_errcode(handle) & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED: {
      const std::string holder = lock_holder(path);
      fail(ErrorNumber::DatabaseLocked, "The database " + path + " is in use by " +
                                            (holder.empty() ? "another program" : holder) +
                                            "; close it there and try again.");
    }
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
      fail(ErrorNumber::UnknownFormat, path + " is damaged or is not a database: " + cause + ".");
    case SQLITE_READONLY:
      fail(ErrorNumber::DatabaseReadOnly, "The database " + path + " cannot be written: " + cause + ".");
    case SQLITE_INTERRUPT:
      fail(
          ErrorNumber::DatabaseFailure,
          "A statement on " + path + " did not end; the database may hold a view in the place of a table. SQL: " + sql);
    case SQLITE_ERROR:
    case SQLITE_RANGE:
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
      fail(ErrorNumber::StatementRejected, "The database rejects a statement: " + cause + ". SQL: " + sql);
    default:
      if (const std::string other = take_refused_file(); !other.empty()) {
        fail(ErrorNumber::DatabaseFailure, "The journal " + path + "-journal names another file, " + other +
                                               ", and is not played back. No save has written it; remove it.");
      }
      fail(ErrorNumber::DatabaseFailure, "The database " + path + " failed: " + cause + ".");
  }
}

/// Says what a file is that the engine does not know. A database must not be read in this way: closing the file would
/// drop every lock that this process has on it.
[[noreturn]] void fail_on_foreign_file(const std::string& path) {
  std::string head(20, '\0');
  if (const auto file = host().files->open(path, OpenMode::Read))
    head.resize(file->read(0, std::as_writable_bytes(std::span(head))));
  if (head.starts_with("SQLite format 3"))
    fail(ErrorNumber::UnknownFormat, path + " is damaged; restore it from a copy.");
  const std::string_view at_four = std::string_view(head).substr(std::min<size_t>(4, head.size()));
  if (at_four.starts_with("Standard Jet DB") || at_four.starts_with("Standard ACE DB")) {
    fail(ErrorNumber::UnknownFormat,
         path + " is an index database of the older engine (" + std::string(at_four.substr(9, 3)) +
             " format), which this version does not read; make a new index and bring its rows over.");
  }
  fail(ErrorNumber::UnknownFormat, path + " is not an index database.");
}

/// Questions that a PRAGMA asks with an argument; with any other argument it sets something.
constexpr std::string_view kQuestions[]{"table_info",  "table_xinfo",      "table_list",       "index_info",
                                        "index_xinfo", "index_list",       "foreign_key_list", "integrity_check",
                                        "quick_check", "foreign_key_check"};
/// What a PRAGMA does at its name alone.
constexpr std::string_view kDeeds[]{"incremental_vacuum", "optimize", "shrink_memory", "wal_checkpoint"};

/// The name of what a statement must not do; empty where it may do all that it does.
std::string what_is_refused(int action, const char* first, const char* second) {
  const auto is_first = [first](std::string_view name) { return same_word(first, name); };
  switch (action) {
    case SQLITE_TRANSACTION:
      return first;
    case SQLITE_SAVEPOINT:
      return is_first("BEGIN") ? "SAVEPOINT" : first;
    case SQLITE_ATTACH:
      return "ATTACH";
    case SQLITE_DETACH:
      return "DETACH";
    case SQLITE_PRAGMA:
      if (second ? std::ranges::any_of(kQuestions, is_first) : std::ranges::none_of(kDeeds, is_first)) return {};
      return "PRAGMA " + std::string(first);
    default:
      return {};
  }
}

}  // namespace

Database::Database(Private, std::string path, sqlite3* handle) : path_(std::move(path)), handle_(handle) {
  sqlite3_extended_result_codes(handle_, 1);
  // No trigger is ours, and one in a project that came from elsewhere would change what is saved.
  sqlite3_db_config(handle_, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  sqlite3_progress_handler(
      handle_, kProgressSteps,
      [](void* self) { return ++static_cast<Database*>(self)->progress_ > kMostProgress ? 1 : 0; }, this);
  sqlite3_busy_handler(
      handle_, [](void* self, int tries) { return static_cast<Database*>(self)->waits(tries) ? 1 : 0; }, this);
  sqlite3_set_authorizer(
      handle_,
      [](void* self, int action, const char* first, const char* second, const char*, const char*) {
        return static_cast<Database*>(self)->authorize(action, first, second);
      },
      this);
  sqlite3_update_hook(
      handle_,
      [](void* self, int action, const char*, const char* table, sqlite3_int64 row) {
        if (action != SQLITE_DELETE) return;
        for (const auto& [type, memory] : static_cast<Database*>(self)->memories_) memory->row_deleted(table, row);
      },
      this);
}

/// The engine asks before it prepares a statement for each thing that the statement does.
int Database::authorize(int action, const char* first, const char* second) {
  if (screening_ && refused_.empty()) refused_ = what_is_refused(action, first, second);
  if (!refused_.empty()) return SQLITE_DENY;
  if (action == SQLITE_DROP_TABLE) {
    dropping_ = first;
    rows_unknown();
  }
  if (action == SQLITE_UPDATE && second) set_.insert(std::string(first) + "." + second);
  if (action != SQLITE_DELETE) return SQLITE_OK;
  // Deletes without a condition are made row by row, so that each row that goes is told. A table that is dropped is
  // asked for as a delete as well, which must be let through.
  const bool of_drop = std::string_view(first).starts_with("sqlite_") || dropping_ == first;
  return of_drop ? SQLITE_OK : SQLITE_IGNORE;
}

void Database::rows_unknown() {
  for (const auto& [type, memory] : memories_) memory->rows_unknown();
}

sqlite3_stmt* Database::prepare(const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  const char* rest = nullptr;
  const int length = static_cast<int>(sql.size()) + 1;
  screening_ = true;
  const int result = sqlite3_prepare_v3(handle_, sql.c_str(), length, SQLITE_PREPARE_PERSISTENT, &statement, &rest);
  screening_ = false;
  if (const std::string refused = std::exchange(refused_, {}); !refused.empty()) {
    fail(ErrorNumber::StatementRejected,
         refused +
             " is refused as a statement: transactions and settings of the database are kept by this layer. Use " +
             "BeginTrans, CommitTrans and Rollback of the workspace (tarn_begin, tarn_commit and tarn_rollback in C, " +
             "tarn.transaction() in Python). SQL: " + sql);
  }
  if (result != SQLITE_OK) fail_on(sql);
  const bool more = std::string_view(rest).find_first_not_of(" \t\r\n;") != std::string_view::npos;
  if (statement && !more) return statement;
  sqlite3_finalize(statement);
  fail(ErrorNumber::StatementRejected,
       std::string(more ? "One statement at a time." : "There is no statement.") + " SQL: " + sql);
}

void Database::fail_on(const std::string& sql) const { fail_with(handle_, path_, sql); }

void Database::forget_idle() {
  for (auto& [sql, prepared] : prepared_) {
    for (sqlite3_stmt* statement : prepared.idle) sqlite3_finalize(statement);
    prepared.idle.clear();
  }
  std::erase_if(prepared_, [](const auto& entry) { return entry.second.borrowed == 0; });
}

Database::~Database() {
  close();
  forget_idle();
  for (const auto& [sql, statement] : controls_) sqlite3_finalize(statement);
  sqlite3_close(handle_);
}

const ClassInfo& Database::info() const {
  static constexpr auto members = describe<Database>(Failures::Raised, property<&Database::Name>);
  static const ClassInfo info(members);
  return info;
}

Ptr<Database> Database::open(const std::string& name, Access access) {
  if (name.empty()) fail(ErrorNumber::DatabaseNotFound, "There is no database without a name.");
  const std::string path = std::filesystem::absolute(name).lexically_normal().string();
  if (!host().files->exists(path)) {
    host().files->open(path, OpenMode::Read);  // tells where a folder cannot be entered
    fail(ErrorNumber::DatabaseNotFound,
         access == Access::Apart ? "The database " + path + " does not exist."
                                 : "The index database " + path + " does not exist; make it with 'tarn project new'.");
  }
  if (access == Access::ReadWrite) check_link(path);
  sqlite3* handle = nullptr;
  // A reader may have to roll a dead program's commit back, so it opens for writing too, where the file lets.
  const int flags = access == Access::Apart ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
  const int result = sqlite3_open_v2(path.c_str(), &handle, flags, engine_files());
  auto database = std::make_shared<Database>(Private(), path, handle);
  if (result != SQLITE_OK) fail_with(handle, path, {});
  database->start(access);
  return database;
}

void Database::start(Access access) {
  engine_file_ = std::make_unique<EngineFile>(sqlite3_db_filename(handle_, "main"));
  apart_ = access == Access::Apart;
  read_only_ = access != Access::ReadWrite || sqlite3_db_readonly(handle_, "main") == 1;
  // Savepoints, sorting and temporary tables need no files of their own: they fit memory, and a read-only folder stays
  // usable.
  run("PRAGMA temp_store = MEMORY");
  // A damaged file is told now, not at the first search.
  const int first = sqlite3_exec(handle_, "SELECT 1 FROM sqlite_master LIMIT 1", nullptr, nullptr, nullptr);
  if ((first & 0xFF) == SQLITE_NOTADB) fail_on_foreign_file(path_);
  if (first != SQLITE_OK) fail_on("SELECT 1 FROM sqlite_master LIMIT 1");
  if (pragma("page_count") == 0) fail_on_foreign_file(path_);  // an empty file
  if (apart_) return;
  if (read_only_) {
    run("PRAGMA query_only = 1");
  } else {
    // A commit is on the disk before its bytes reach the record files: the journal's end is marked in the journal
    // itself, which is synced, and not by its removal, which is not.
    run("PRAGMA journal_mode = PERSIST; PRAGMA journal_size_limit = 1048576");
  }
  pending_ = std::make_unique<PendingWrites>(handle_, path_);
  files_ = &files();
  files_->attach(*this);
}

void Database::create(const std::string& path, std::string_view script) {
  if (path.empty()) fail(ErrorNumber::DatabaseNotFound, "There is no database without a name.");
  FileService& files = *host().files;
  if (files.exists(path)) {
    fail(ErrorNumber::FileExists, path + " exists already; remove it first, or choose another file prefix.");
  }
  const std::string made = std::filesystem::absolute(path + "-new").lexically_normal().string();
  const std::string whole = "BEGIN;" + std::string(script) + "COMMIT;";
  for (const char* ending : {"", "-journal"}) files.remove(made + ending);  // of a program that died
  sqlite3* handle = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
  const int opened = sqlite3_open_v2(made.c_str(), &handle, flags, engine_files());
  std::unique_ptr<sqlite3, decltype(&sqlite3_close)> closed_after(handle, &sqlite3_close);
  try {
    if (opened != SQLITE_OK) fail_with(handle, made, {});
    const EngineFile known(sqlite3_db_filename(handle, "main"));
    if (sqlite3_exec(handle, whole.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) fail_with(handle, made, {});
    closed_after.reset();
    files.rename_new(made, path);
    files.sync_folder(std::filesystem::path(made).parent_path().string());
  } catch (...) {
    closed_after.reset();
    for (const char* ending : {"", "-journal"}) files.remove(made + ending);
    throw;
  }
}

// ---- locks

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
  const std::string name = pending_->name_of(path);
  if (name.empty()) return nullptr;
  join(Part::Reading);
  see_pending();
  return pending_->find(name);
}

void Database::see_pending() {
  if (level_ > 0 && pending_seen_) return;
  pending_->refresh(foreign_version());
  pending_seen_ = level_ > 0;
}

/// After a commit, which another program's may have followed already: then its own call does this.
void Database::apply_pending() {
  if (read_only_ || pending_->applied()) return;
  impatient_ = true;
  const bool begun = begin("BEGIN IMMEDIATE");
  impatient_ = false;
  if (!begun) return;
  pending_->refresh(foreign_version());
  pending_->apply();
  control("ROLLBACK");
}

void Database::settle() {
  if (!pending_ || read_only_ || sqlite3_get_autocommit(handle_) == 0) return;
  pending_->refresh(foreign_version());
  if (pending_->empty()) return;
  control("BEGIN IMMEDIATE");
  try {
    pending_->refresh(foreign_version());
    pending_->settle();
    control("COMMIT");
  } catch (...) {
    pending_->rolled_back();
    control("ROLLBACK");
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

/// Statements that open and end transactions are kept apart from all others.
void Database::control(const std::string& sql) {
  sqlite3_stmt*& statement = controls_[sql];
  if (!statement && sqlite3_prepare_v3(handle_, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr))
    fail_on(sql);
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
      control(workspace.writes() && !read_only_ && !workspace.has_enlisted(path_) ? "BEGIN IMMEDIATE" : "BEGIN");
      pending_seen_ = false;
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
  if (level == 1) return run("ROLLBACK");
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
  control("COMMIT");
  level_ = 0;
  pending_->committed();
  try {
    apply_pending();
  } catch (const Error& failed) {  // the save is complete all the same
    log().message(failed.description());
  }
}

Recordset Database::OpenRecordset(const std::string& sql, std::vector<Cell> parameters) {
  return {std::static_pointer_cast<Database>(shared_from_this()), sql, std::move(parameters)};
}

int Database::Execute(const std::string& sql, std::span<const Cell> parameters) {
  join();
  Statement statement(*this, sql, parameters);
  while (statement.step()) {
  }
  return sqlite3_changes(handle_);
}

int64_t Database::last_key() const { return sqlite3_last_insert_rowid(handle_); }

/// What rows of its own cannot be deleted from by their key - a view, a table of the engine - can be read only.
std::shared_ptr<QueryShape> Database::shape_of(const std::string& sql) {
  if (shapes_.size() > kKeptTexts) shapes_.clear();
  if (const auto known = shapes_.find(sql); known != shapes_.end()) return known->second;
  auto shape = std::make_shared<QueryShape>(sql);
  try {
    if (shape->table.empty()) return shapes_[sql] = shape;
    KeptStatements& deletes = prepared_[shape->delete_by_key()];
    if (deletes.idle.empty()) deletes.idle.push_back(prepare(shape->delete_by_key()));
    return shapes_[sql] = shape;
  } catch (const Error& error) {
    if (error.number() != static_cast<int>(ErrorNumber::StatementRejected)) throw;
    shape->give_up_table();  // until it is opened again: the table may be made meanwhile
    return shape;
  }
}

}  // namespace tarn
