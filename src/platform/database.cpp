#include "tarn/platform/database.h"

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "base/nearest.h"
#include "platform/engine_files.h"
#include "platform/file_store.h"
#include "platform/host.h"
#include "platform/lock_holder.h"
#include "platform/pending_writes.h"
#include "platform/query_shape.h"
#include "tarn/base/error.h"
#include "tarn/base/log.h"
#include "tarn/platform/statement.h"
#include "tarn/platform/workspace.h"
#include "tarn/reflect/describe.h"

namespace tarn {
namespace {

/// A view in the place of a table may never end. The longest statement of ours takes a tenth of this.
constexpr int kProgressSteps = 1'000'000;
constexpr int kMostProgress = 150;
/// Nor may one value of it fill the memory, or one comparison take hours. A transaction that writes every record of a
/// project is one value of this layer's own.
constexpr int kLongestValue = 400'000'000;
constexpr int kLongestPattern = 100;

/// After the name of a new database, until it is whole.
constexpr std::string_view kInTheMaking = "-new";

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
    fail(ErrorNumber::UnknownFormat, path + " is an index database of the older engine (" +
                                         std::string(at_four.substr(9, 3)) +
                                         " format); 'tarn project adopt' makes it one of this product.");
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
  sqlite3_limit(handle_, SQLITE_LIMIT_LENGTH, kLongestValue);
  sqlite3_limit(handle_, SQLITE_LIMIT_LIKE_PATTERN_LENGTH, kLongestPattern);
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
  if (action == SQLITE_DROP_TABLE || action == SQLITE_DROP_VIEW) {
    dropping_ = first;
    rows_unknown();
  }
  if (action == SQLITE_UPDATE && second) set_.insert(std::string(first) + "." + second);
  if (action != SQLITE_DELETE) return SQLITE_OK;
  // Deletes without a condition are made row by row, so that each row that goes is told. A table or view that is
  // dropped is asked for as a delete as well, which must be let through.
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
  const int access_flag = access == Access::Apart ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
  const int result = sqlite3_open_v2(path.c_str(), &handle, access_flag | SQLITE_OPEN_NOMUTEX, engine_files());
  auto database = std::make_shared<Database>(Private(), path, handle);
  if (result != SQLITE_OK) fail_with(handle, path, {});
  database->start(access);
  return database;
}

void Database::start(Access access) {
  engine_file_ = std::make_unique<EngineFile>(sqlite3_db_filename(handle_, "main"));
  apart_ = access == Access::Apart;
  in_the_making_ = access == Access::InTheMaking;
  const bool reads = access == Access::Apart || access == Access::ReadOnly;
  read_only_ = reads || sqlite3_db_readonly(handle_, "main") == 1;
  if (!reads && read_only_ && ::access(path_.c_str(), W_OK) == 0) {
    fail(ErrorNumber::DatabaseFailure,
         "The database " + path_ + " could not be opened for writing, although it may be written; try again.");
  }
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
  pending_ = std::make_unique<PendingWrites>(
      handle_, in_the_making_ ? path_.substr(0, path_.size() - kInTheMaking.size()) : path_);
  files_ = &files();
  files_->attach(*this);
  remove_leftovers();
}

namespace {

/// On a new file.
void run_script(const std::string& path, const std::string& script) {
  sqlite3* handle = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
  const int opened = sqlite3_open_v2(path.c_str(), &handle, flags, engine_files());
  const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> closed_after(handle, &sqlite3_close);
  if (opened != SQLITE_OK) fail_with(handle, path, {});
  const EngineFile known(sqlite3_db_filename(handle, "main"));
  if (sqlite3_exec(handle, script.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) fail_with(handle, path, {});
}

}  // namespace

void Database::create(const std::string& path, std::string_view script,
                      const std::function<void(const Ptr<Database>&)>& fill) {
  if (path.empty()) fail(ErrorNumber::DatabaseNotFound, "There is no database without a name.");
  FileService& files = *host().files;
  if (files.exists(path)) {
    fail(ErrorNumber::FileExists, path + " exists already; remove it first, or choose another file prefix.");
  }
  const std::string whole_path = std::filesystem::absolute(path).lexically_normal().string();
  const std::string made = whole_path + std::string(kInTheMaking);
  const std::string folder = std::filesystem::path(made).parent_path().string();
  const auto remove_made = [&] {
    for (const char* ending : {"", "-journal"}) files.remove(made + ending);
  };
  remove_made();  // of a program that died
  if (const std::string journal = whole_path + "-journal"; files.exists(journal)) {
    files.remove(journal);  // of a database that is gone: it would be played back into the new one
    files.sync_folder(folder);
  }
  try {
    run_script(made, "BEGIN;" + std::string(script) + "COMMIT;");
    if (fill) fill(open(made, Access::InTheMaking));
    files.rename_new(made, whole_path);
  } catch (...) {
    remove_made();
    throw;
  }
  try {
    files.sync_folder(folder);
  } catch (const Error& refused) {
    log().message(refused.description() + " " + path + " is complete, but a loss of power may take it away.");
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
