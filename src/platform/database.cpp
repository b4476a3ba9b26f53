#include "platform/database.h"

#include <sqlite3.h>

#include <algorithm>
#include <filesystem>

#include "platform/commit.h"
#include "platform/host.h"
#include "platform/statement.h"
#include "platform/workspace.h"
#include "reflect/describe.h"

namespace tarn {
namespace {

constexpr int kBusyMilliseconds = 1000;  // how long a statement waits for another program before it gives up

[[noreturn]] void fail_with(sqlite3* handle, const std::string& path, const std::string& sql) {
  const std::string cause = sqlite3_errmsg(handle);
  switch (sqlite3_errcode(handle) & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      fail(ErrorNumber::DatabaseLocked,
           "The database " + path + " is in use by another program; close it there and try again.");
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
      fail(ErrorNumber::UnknownFormat, path + " is damaged or is not a database: " + cause + ".");
    case SQLITE_READONLY:
      fail(ErrorNumber::DatabaseReadOnly, "The database " + path + " cannot be written: " + cause + ".");
    case SQLITE_ERROR:
    case SQLITE_RANGE:
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
      fail(ErrorNumber::StatementRejected, "The database rejects a statement: " + cause + ". SQL: " + sql);
    default:
      fail(ErrorNumber::DatabaseFailure, "The database " + path + " failed: " + cause + ".");
  }
}

/// Refuses a file that is not a database of this engine before the engine sees it, so that the message can say what the
/// file is.
void check_signature(const std::string& path, Database::Access access) {
  std::string head(20, '\0');
  const auto file = host().files->open(path, OpenMode::Read);
  if (!file) {
    fail(ErrorNumber::DatabaseNotFound,
         access == Database::Access::Apart
             ? "The database " + path + " does not exist."
             : "The index database " + path + " does not exist; make it with 'tarn project new'.");
  }
  head.resize(file->read(0, std::as_writable_bytes(std::span(head))));
  if (head.starts_with("SQLite format 3")) return;
  const std::string_view at_four = std::string_view(head).substr(std::min<size_t>(4, head.size()));
  if (at_four.starts_with("Standard Jet DB") || at_four.starts_with("Standard ACE DB")) {
    fail(ErrorNumber::UnknownFormat,
         path + " is an index database of the older engine (" + std::string(at_four.substr(9, 3)) +
             " format), which this version does not read; make a new index and bring its rows over.");
  }
  fail(ErrorNumber::UnknownFormat, path + " is not an index database.");
}

}  // namespace

Cell cell(const Value& value) {
  switch (type_of(value)) {
    case ValueType::Empty:
    case ValueType::Object:
    case ValueType::Reals:
      return {};
    case ValueType::Boolean:
      return cell(std::get<bool>(value));
    case ValueType::Text:
      return std::get<std::string>(value);
    case ValueType::Int16:
    case ValueType::Int32:
      return integer_from(value, INT32_MIN, INT32_MAX);
    default:
      return real_from(value);
  }
}

Value value_of(const Cell& cell) {
  if (const auto* number = std::get_if<int64_t>(&cell)) {
    return *number >= INT32_MIN && *number <= INT32_MAX ? Value(static_cast<int32_t>(*number))
                                                        : Value(static_cast<double>(*number));
  }
  if (const auto* real = std::get_if<double>(&cell)) return *real;
  if (const auto* text = std::get_if<std::string>(&cell)) return *text;
  return {};
}

Statement::Statement(Database& database, const std::string& sql, std::span<const Cell> parameters)
    : database_(database), home_(*database.prepared_.try_emplace(sql).first) {
  auto& idle = home_.second.idle;
  if (idle.empty()) idle.push_back(database.prepare(sql));
  statement_ = idle.back();
  if (const int wanted = sqlite3_bind_parameter_count(statement_); wanted != static_cast<int>(parameters.size())) {
    fail(ErrorNumber::StatementRejected, "A statement takes " + std::to_string(wanted) + " parameters, not " +
                                             std::to_string(parameters.size()) + ". SQL: " + sql);
  }
  idle.pop_back();
  ++home_.second.borrowed;
  for (size_t i = 0; i < parameters.size(); ++i) {
    const int place = static_cast<int>(i) + 1;
    const Cell& value = parameters[i];
    if (const auto* number = std::get_if<int64_t>(&value))
      sqlite3_bind_int64(statement_, place, *number);
    else if (const auto* real = std::get_if<double>(&value))
      sqlite3_bind_double(statement_, place, *real);
    else if (const auto* text = std::get_if<std::string>(&value))
      sqlite3_bind_text(statement_, place, text->data(), static_cast<int>(text->size()), SQLITE_TRANSIENT);
    else
      sqlite3_bind_null(statement_, place);
  }
}

Statement::~Statement() {
  sqlite3_reset(statement_);
  sqlite3_clear_bindings(statement_);
  home_.second.idle.push_back(statement_);
  --home_.second.borrowed;
  if (database_.prepared_.size() > Database::kKeptTexts) database_.forget_idle();
}

bool Statement::step() {
  const int result = sqlite3_step(statement_);
  if (result == SQLITE_ROW) return true;
  if (result != SQLITE_DONE) fail_with(database_.handle_, database_.path_, home_.first);
  return false;
}

Cell Statement::column(int column) const {
  switch (sqlite3_column_type(statement_, column)) {
    case SQLITE_INTEGER:
      return sqlite3_column_int64(statement_, column);
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement_, column);
    case SQLITE_NULL:
      return {};
    default:
      return std::string(reinterpret_cast<const char*>(sqlite3_column_text(statement_, column)),
                         static_cast<size_t>(sqlite3_column_bytes(statement_, column)));
  }
}

Database::Database(Private, std::string path, sqlite3* handle) : path_(std::move(path)), handle_(handle) {
  sqlite3_extended_result_codes(handle_, 1);
  sqlite3_busy_timeout(handle_, kBusyMilliseconds);
  sqlite3_set_authorizer(
      handle_,
      [](void* self, int action, const char* table, const char* column, const char*, const char*) {
        // Deletes without a condition are made row by row, so that the update hook sees each.
        auto& database = *static_cast<Database*>(self);
        if (action == SQLITE_DROP_TABLE) {
          database.dropping_ = table;
          database.free_marks_.clear();
        }
        // The engine also asks for permission to delete from a table that is being dropped; this must be allowed.
        const bool of_drop =
            action == SQLITE_DELETE && (std::string_view(table).starts_with("sqlite_") || database.dropping_ == table);
        if (action == SQLITE_DELETE && !of_drop) return SQLITE_IGNORE;
        if (action == SQLITE_UPDATE && column && std::string_view(column) == "nIndex") {
          database.unmarked_.insert(table);
        }
        return SQLITE_OK;
      },
      this);
  sqlite3_update_hook(
      handle_,
      [](void* self, int action, const char*, const char* table, sqlite3_int64 row) {
        if (action != SQLITE_DELETE) return;
        auto& marks = static_cast<Database*>(self)->free_marks_;
        if (const auto mark = marks.find(table); mark != marks.end()) {
          mark->second = std::min<int64_t>(mark->second, std::max<int64_t>(row, 1));
        }
      },
      this);
}

sqlite3_stmt* Database::prepare(const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  const char* rest = nullptr;
  const int length = static_cast<int>(sql.size()) + 1;
  const int result = sqlite3_prepare_v3(handle_, sql.c_str(), length, SQLITE_PREPARE_PERSISTENT, &statement, &rest);
  if (result != SQLITE_OK) fail_with(handle_, path_, sql);
  const bool more = std::string_view(rest).find_first_not_of(" \t\r\n;") != std::string_view::npos;
  if (statement && !more) return statement;
  sqlite3_finalize(statement);
  fail(ErrorNumber::StatementRejected,
       std::string(more ? "One statement at a time." : "There is no statement.") + " SQL: " + sql);
}

void Database::forget_idle() {
  for (auto& [sql, prepared] : prepared_) {
    for (sqlite3_stmt* statement : prepared.idle) sqlite3_finalize(statement);
    prepared.idle.clear();
  }
  std::erase_if(prepared_, [](const auto& entry) { return entry.second.borrowed == 0; });
}

Database::~Database() {
  forget_idle();
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
  check_signature(path, access);
  sqlite3* handle = nullptr;
  const int flags = access == Access::ReadWrite ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
  const int result = sqlite3_open_v2(path.c_str(), &handle, flags, nullptr);
  auto database = std::make_shared<Database>(Private(), path, handle);
  if (result != SQLITE_OK) fail_with(handle, path, {});
  database->apart_ = access == Access::Apart;
  database->read_only_ = sqlite3_db_readonly(handle, "main") == 1;
  // Savepoints, sorting and the scratch list are kept in memory, not in files, so that a database in a read-only folder
  // can be used.
  database->run("PRAGMA temp_store = MEMORY");
  database->run(kScratchList);
  database->recover();
  return database;
}

void Database::create(const std::string& path, std::string_view script) {
  if (host().files->exists(path)) {
    fail(ErrorNumber::FileExists, path + " exists already; remove it first, or choose another file prefix.");
  }
  sqlite3* handle = nullptr;
  const int opened = sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> closed_after(handle, &sqlite3_close);
  const std::string whole = "BEGIN;" + std::string(script) + "COMMIT;";
  if (opened != SQLITE_OK || sqlite3_exec(handle, whole.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
    fail_with(handle, path, {});
}

std::string Database::journal_name(int64_t token) const { return path_ + "-undo" + std::to_string(token); }

void Database::recover() {
  // A commit takes the number after the database's last one. If files of that number are there, that commit has died,
  // or another program, which then holds the write lock, is committing now.
  const std::vector<int64_t> left = interrupted_commits(path_ + "-undo");
  if (left.empty()) return;
  if (read_only_) {
    const int64_t last = pragma("user_version");
    if (left.back() < last || (left.back() == last && !has_prepared_files(journal_name(last)))) return;
    fail(ErrorNumber::UnfinishedCommit,
         "A save in " + path_ + " was interrupted; open the project once for writing to undo or finish it.");
  }
  run("BEGIN IMMEDIATE");
  const int64_t last = pragma("user_version");
  for (const int64_t token : left) {
    const std::string journal = journal_name(token);
    if (token > last) undo_interrupted_commit(journal);
    if (token == last) finish_interrupted_commit(journal);
    if (token < last) forget_old_commit(journal);
  }
  run("ROLLBACK");
}

std::string Database::claim_journal() {
  const int64_t token = pragma("user_version") + 1;
  run("PRAGMA user_version = " + std::to_string(token));
  if (const std::string last = journal_name(token - 1); host().files->exists(last)) finish_interrupted_commit(last);
  const std::string journal = journal_name(token);
  if (host().files->exists(journal)) undo_interrupted_commit(journal);
  return journal;
}

void Database::run(const std::string& sql) {
  if (sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) fail_with(handle_, path_, sql);
}

int64_t Database::pragma(const std::string& name) {
  const std::string sql = "PRAGMA " + name;
  Statement statement(*this, sql, {});
  return statement.step() ? statement.integer(0) : 0;
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
      Statement(*this, "BEGIN", {}).step();
      workspace.enlist(std::static_pointer_cast<Database>(shared_from_this()));
    } else {
      Statement(*this, "SAVEPOINT s" + std::to_string(level_ + 1), {}).step();
    }
    ++level_;
  }
}

void Database::release_level(size_t level) {
  if (level_ < level) return;
  Statement(*this, "RELEASE s" + std::to_string(level), {}).step();
  level_ = level - 1;
}

void Database::rollback_level(size_t level) {
  if (level_ < level) return;
  level_ = level - 1;
  free_marks_.clear();
  if (sqlite3_get_autocommit(handle_) != 0)
    return;  // rolled back by the engine itself, for instance when the disk was full
  if (level == 1) return run("ROLLBACK");
  const std::string point = "s" + std::to_string(level);
  run("ROLLBACK TO " + point + "; RELEASE " + point);
}

void Database::commit() {
  Statement(*this, "COMMIT", {}).step();
  level_ = 0;
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

bool Database::marks_hold(const std::string& table) {
  if (unmarked_.contains(table)) return false;
  // Deletes are seen by their row's key, which must be the index itself.
  const std::string sql =
      "SELECT 1 FROM pragma_table_info(?) WHERE name = 'nIndex' AND pk = 1 AND upper(type) = 'INTEGER'";
  const Cell name[]{table};
  return Statement(*this, sql, name).step();
}

int64_t Database::lowest_free_index(const std::string& table) {
  join(Part::Reading);
  if (const int64_t version = pragma("data_version"); version != data_version_) {
    data_version_ = version;
    free_marks_.clear();
  }
  auto mark = free_marks_.find(table);
  if (mark != free_marks_.end() && unmarked_.contains(table)) {
    free_marks_.erase(mark);
    mark = free_marks_.end();
  }
  int64_t free = mark == free_marks_.end() ? 1 : mark->second;
  {
    const std::string sql = "SELECT nIndex FROM " + table + " WHERE nIndex >= ? ORDER BY nIndex ASC";
    const Cell from[]{free};
    Statement rows(*this, sql, from);
    while (rows.step() && rows.integer(0) == free) ++free;
  }
  if (mark != free_marks_.end())
    mark->second = free;
  else if (marks_hold(table))
    free_marks_.emplace(table, free);
  return free;
}

void Database::note_deletion(std::string_view kind, int64_t index) {
  const size_t place = deletions_.size();
  deletions_.emplace_back(kind, index);
  const auto weak = weak_from_this();
  Engine::of_thread().Workspaces(0).on_rollback([weak, place] {
    if (const auto self = weak.lock()) static_cast<Database&>(*self).deletions_[place] = {};
  });
}

bool Database::deleted_since(size_t deletions, std::string_view kind, int64_t index) const {
  return std::any_of(deletions_.begin() + static_cast<ptrdiff_t>(deletions), deletions_.end(),
                     [&](const auto& deletion) { return deletion.second == index && deletion.first == kind; });
}

}  // namespace tarn
