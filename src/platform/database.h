// The index database engine in the shape the data layer was made for - recordsets that are searched, edited, added to
// and deleted from, and statements - over embedded SQLite. Numbers and texts are bound to the '?' of a statement, never
// written into it, and prepared statements are kept, so that a search by a key is one index step.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <variant>
#include <vector>

#include "base/object.h"

struct sqlite3;
struct sqlite3_stmt;

namespace tarn {

/// One column's value in a row.
using Cell = std::variant<std::monostate, int64_t, double, std::string>;

/// Booleans are -1 and 0, as in the files.
inline Cell cell(bool value) { return int64_t{value ? -1 : 0}; }
inline Cell cell(int64_t value) { return value; }
inline Cell cell(int value) { return int64_t{value}; }
inline Cell cell(double value) { return value; }
inline Cell cell(std::string value) { return value; }
/// A by-name value as a cell.
Cell cell(const Value& value);
Value value_of(const Cell& cell);

class Recordset;
class Statement;

/// Every connection has a list of ids of its own in memory, temp.Found, for work on sets in several statements.
inline constexpr const char* kScratchList = "CREATE TEMP TABLE Found (nIndex INTEGER PRIMARY KEY)";

/// A query taken apart: "SELECT * FROM table [WHERE ...] [ORDER BY ...]". Other queries have no table; their rows can
/// be read only.
struct QueryShape {
  explicit QueryShape(const std::string& query);
  /// The statement for all rows, or for the first that also satisfies the criteria; the row's key stands before the
  /// columns of a table.
  std::string select(std::string_view criteria) const;
  /// Names the columns, once a statement of the query is there.
  void name_columns(const Statement& statement);

  std::string sql, table, where, order;
  std::vector<std::string> columns;
  std::string all;                                        // select({})
  std::unordered_map<std::string, std::string> searches;  // select(criteria), by the criteria
};

class Database final : public Object {
 public:
  /// `Apart` reads another program's database, outside of the transactions here.
  enum class Access : uint8_t { ReadWrite, ReadOnly, Apart };

  /// Opens an existing database, read-only where the file does not take writes.
  /// Errors `DatabaseNotFound`, `UnknownFormat`, `DatabaseLocked`, `UnfinishedCommit`, each naming the file.
  static Ptr<Database> open(const std::string& path, Access access = Access::ReadWrite);
  /// Makes a new database by a script; error `FileExists` where the file is there.
  static void create(const std::string& path, std::string_view script);
  ~Database() override;

  const ClassInfo& info() const override;
  std::string Name() const { return path_; }
  bool read_only() const { return read_only_; }

  Recordset OpenRecordset(const std::string& sql, std::vector<Cell> parameters = {});
  /// Runs a statement without rows; returns the rows that it changed. Error `StatementRejected` holds the statement.
  int Execute(const std::string& sql, std::span<const Cell> parameters = {});

  /// The lowest positive number that is no row's `nIndex`, in constant time over a run of new rows.
  int64_t lowest_free_index(const std::string& table);

  /// Counts this program's deletions of entities, so that an object can tell that what it refers to was deleted, even
  /// where another entity has that index by now. A deletion that is rolled back does not count.
  void note_deletion(std::string_view kind, int64_t index);
  /// Grows with every deletion.
  size_t deletions() const { return deletions_.size(); }
  bool deleted_since(size_t deletions, std::string_view kind, int64_t index) const;
  /// Changes when another program has committed.
  int64_t foreign_version() { return pragma("data_version"); }

  // For the workspace:
  /// Joins the open transaction. A statement that only reads needs no savepoints for the inner levels.
  enum class Part : uint8_t { Reading, Writing };
  void join(Part part = Part::Writing);
  void release_level(size_t level);
  void rollback_level(size_t level);
  void commit();
  /// The journal of the commit that is about to be made; takes the write lock.
  std::string claim_journal();

 private:
  friend class Recordset;
  friend class Statement;
  struct Private {};
  // Only so many are kept: a client may write values into its statements, so that each is a new text.
  static constexpr size_t kKeptTexts = 500;
  struct Prepared {
    std::vector<sqlite3_stmt*> idle;
    int borrowed = 0;
  };

 public:
  Database(Private, std::string path, sqlite3* handle);

 private:
  sqlite3_stmt* prepare(const std::string& sql);
  void forget_idle();
  void run(const std::string& sql);
  std::shared_ptr<QueryShape> shape_of(const std::string& sql);
  bool marks_hold(const std::string& table);
  int64_t pragma(const std::string& name);
  void recover();
  std::string journal_name(int64_t token) const;

  std::string path_;
  sqlite3* handle_ = nullptr;
  bool read_only_ = false;
  bool apart_ = false;
  size_t level_ = 0;                                    // of the workspace's transaction that this database has joined
  std::unordered_map<std::string, Prepared> prepared_;  // by text
  std::unordered_map<std::string, std::shared_ptr<QueryShape>> shapes_;  // by query
  // Every index of a table below its mark is in use. Deletes here lower a mark; rollbacks and other writers clear all.
  std::unordered_map<std::string, int64_t> free_marks_;
  std::string dropping_;                      // the table that was dropped last
  std::unordered_set<std::string> unmarked_;  // tables whose indexes a client's statement moves
  int64_t data_version_ = -1;
  std::vector<std::pair<std::string, int64_t>> deletions_;
};

/// A column of a recordset's current row, or of the row being edited or added.
class Field {
 public:
  Field(Recordset& rows, size_t column) : rows_(rows), column_(column) {}
  const Cell& Value() const;
  int64_t integer() const;  // 0 for no value
  double real() const;
  std::string text() const;
  /// Error `EditNotStarted` outside `AddNew` or `Edit`.
  void operator=(Cell value);

 private:
  Recordset& rows_;
  size_t column_;
};

/// Rows of one statement. They are read when they are first walked; a search reads the row that it finds only.
class Recordset {
 public:
  Recordset(Ptr<Database> database, const std::string& sql, std::vector<Cell> parameters);

  bool AtEof();
  void MoveNext();
  /// The first row that also satisfies the criteria ("nIndex = ?"); `NoMatch` tells whether there was none.
  void FindFirst(const std::string& criteria, std::vector<Cell> parameters);
  bool NoMatch() const { return no_match_; }
  /// Errors `NoCurrentRecord`, `ItemNotFound`.
  Field Fields(std::string_view column);
  const std::vector<std::string>& columns();

  void AddNew();
  void Edit();
  void Update();
  void Delete();

 private:
  friend class Field;
  struct Row {
    int64_t id = 0;
    std::vector<Cell> cells;
    bool deleted = false;
  };
  enum class Editing : uint8_t { No, Changed, Added };

  std::vector<Row> fetch(const std::string& sql, std::span<const Cell> parameters);
  void walk();
  Row& current();
  void require_table() const;

  Ptr<Database> database_;
  std::shared_ptr<QueryShape> shape_;
  std::vector<Cell> parameters_;
  std::vector<Row> rows_;
  size_t at_ = 0;
  bool walked_ = false;
  bool no_match_ = false;
  std::optional<Row> found_;  // by a search, while the rows are not walked
  Editing editing_ = Editing::No;
  std::vector<Cell> buffer_;
};

}  // namespace tarn
