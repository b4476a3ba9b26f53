// The index database engine: one connection to a database file, its statements, and its part in the workspace's
// transactions. Embedded SQLite, whose own header is seen in the sources of this folder alone. Numbers and texts are
// bound to the '?' of a statement, never written into it, and prepared statements are kept. A database belongs to the
// thread that opened it, as its workspace does; another thread opens its own.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <typeindex>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "tarn/platform/cell.h"
#include "tarn/platform/recordset.h"
#include "tarn/platform/statement.h"

struct sqlite3;

namespace tarn {

class EngineFile;
class FileStore;
class PendingWrites;
struct FileChange;

/// What a layer above keeps with an open database, for as long as its handle lives, and what it is told meanwhile.
class DatabaseMemory {
 public:
  virtual ~DatabaseMemory() = default;
  /// A row with this key went, by this connection.
  virtual void row_deleted(std::string_view, int64_t) {}
  /// Rows and tables may be others than they were: a rollback, or a table dropped.
  virtual void rows_unknown() {}
};

class Database final : public Object {
 public:
  /// `Apart` reads another program's database, outside of the transactions here.
  /// `InTheMaking` has the record bytes of its saves wait until the database has its name.
  enum class Access : uint8_t { ReadWrite, ReadOnly, Apart, InTheMaking };

  /// Opens an existing database, read-only where the file does not take writes.
  /// Errors `DatabaseNotFound`, `UnknownFormat`, `DatabaseLocked`, each naming the file.
  static Ptr<Database> open(const std::string& path, Access access = Access::ReadWrite);
  /// Makes a new database by a script, and then what `fill` saves into it, record files too: all of it or nothing.
  /// Error `FileExists` where the file is there.
  static void create(const std::string& path, std::string_view script,
                     const std::function<void(const Ptr<Database>&)>& fill = {});
  ~Database() override;

  const ClassInfo& info() const override;
  std::string Name() const { return path_; }
  bool read_only() const { return read_only_; }

  Recordset OpenRecordset(const std::string& sql, std::vector<Cell> parameters = {});
  /// Runs a statement without rows; returns the rows that it changed. Error `StatementRejected` holds the statement;
  /// it meets those that begin or end a transaction, attach a database, or change a setting, for which the workspace
  /// has its calls.
  int Execute(const std::string& sql, std::span<const Cell> parameters = {});

  /// Changes when another program has committed.
  int64_t foreign_version();
  /// Whether a statement of this connection was made that sets a column of existing rows.
  bool sets(const std::string& table, const std::string& column) const { return set_.contains(table + "." + column); }
  /// A layer's memory of this database, made from it at the first call: one of each type.
  template <typename Memory>
  Memory& memory() {
    if (const auto kept = memories_.find(typeid(Memory)); kept != memories_.end())
      return static_cast<Memory&>(*kept->second);
    return static_cast<Memory&>(*memories_.emplace(typeid(Memory), std::make_unique<Memory>(*this)).first->second);
  }

  /// Brings the record bytes of all committed saves to the disk now, before another program replaces record files. It
  /// is done at the latest when the last program closes the project. Nothing while a transaction is open.
  void settle();

  // For check and repair:
  /// What the engine finds wrong with the file, a sentence each.
  std::vector<std::string> damage();
  /// Numbers of pending rows that no save has written, because of which no record file can be read.
  std::vector<int64_t> foreign_pending_rows();
  /// Makes a copy of the whole database as this connection sees it; error `FileExists`. Pending record bytes come along
  /// or, where the copied record files have them in place, not.
  enum class PendingRows : uint8_t { Kept, InPlace };
  void copy_to(const std::string& path, PendingRows pending = PendingRows::Kept);

  // For the workspace:
  /// Takes no part in record files any more.
  void close();
  /// Joins the open transaction. A statement that only reads needs no savepoints for the inner levels.
  enum class Part : uint8_t { Reading, Writing };
  void join(Part part = Part::Writing);
  void release_level(size_t level);
  void rollback_level(size_t level);
  /// With the bytes of record files that belong to the transaction.
  using Writes = std::vector<std::pair<std::string, FileChange*>>;  // by path
  void commit(const Writes& writes);
  /// Whether the database keeps the bytes of a record file.
  bool keeps(const std::string& path) const;
  /// What committed saves have still to do to a file; null for nothing. Inside a transaction.
  const FileChange* pending(const std::string& path);
  /// Where the new form of a file lies until it has its place.
  std::string pending_path(const FileChange& change) const;

 private:
  friend class Recordset;
  friend class Statement;
  struct Private {};
  // Only so many are kept: a client may write values into its statements, so that each is a new text.
  static constexpr size_t kKeptTexts = 500;

 public:
  Database(Private, std::string path, sqlite3* handle);

 private:
  sqlite3_stmt* prepare(const std::string& sql);
  [[noreturn]] void fail_on(const std::string& sql) const;
  int authorize(int action, const char* first, const char* second);
  void rows_unknown();
  void forget_idle();
  void run(const std::string& sql);
  sqlite3_stmt* kept(const std::string& sql);
  void control(const std::string& sql);
  std::shared_ptr<QueryShape> shape_of(const std::string& sql);
  int64_t last_key() const;
  int64_t pragma(const std::string& name);
  uint32_t commits_seen() const;
  void start(Access access);
  bool begin(const std::string& sql);
  bool waits(int tries);
  void see_pending();
  void apply_pending();
  void remove_leftovers();
  void roll_back_what_is_open();
  void with_write_lock(const std::function<void()>& work);
  void commit_rows();
  bool has_mark(int32_t mark);

  std::string path_;
  sqlite3* handle_ = nullptr;
  bool read_only_ = false;
  bool apart_ = false;
  int progress_ = 0;  // of the running statement, in millions of steps
  bool in_the_making_ = false;
  bool impatient_ = false;  // a lock is asked for that is not waited for
  std::chrono::steady_clock::time_point waiting_since_;
  int changes_before_ = 0;                  // of rows, when the open transaction began
  std::optional<int64_t> foreign_version_;  // in the open transaction, where it was asked for
  struct Seen {
    uint32_t commits;
    int64_t foreign;
  };
  std::optional<Seen> seen_;  // when the version was asked for last
  bool locks_out_ = false;    // the open transaction has the write lock
  size_t level_ = 0;          // of the workspace's transaction that this database has joined
  std::unique_ptr<EngineFile> engine_file_;
  std::unique_ptr<PendingWrites> pending_;                               // null for a database apart
  FileStore* files_ = nullptr;                                           // where it is attached
  bool pending_seen_ = false;                                            // in the open transaction
  std::unordered_map<std::string, KeptStatements> prepared_;             // by text
  std::vector<std::pair<std::string, sqlite3_stmt*>> controls_;          // of transactions, by text; never a client's
  std::unordered_map<std::string, std::shared_ptr<QueryShape>> shapes_;  // by query
  std::unordered_map<std::type_index, std::unique_ptr<DatabaseMemory>> memories_;
  bool screening_ = false;               // a statement is prepared that is not this layer's own
  std::string refused_;                  // what it would do that it must not
  std::string dropping_;                 // the table that was dropped last
  std::unordered_set<std::string> set_;  // "table.column"
};

}  // namespace tarn
