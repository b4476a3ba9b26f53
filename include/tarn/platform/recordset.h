// Rows of a query in the shape the data layer was made for: walked, searched, edited, added to and deleted from.
// The rows of one table can be changed; those of other queries can be read only.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tarn/platform/cell.h"

namespace tarn {

class Database;
class Recordset;
struct QueryShape;

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

/// Rows of one statement. They are read when they are first walked; a search reads the row that it finds only. Rows
/// that are added, or found though they were not there at the first walk, stand behind the others.
///
/// Only `Update` writes. `MoveNext`, `FindFirst`, `AddNew`, `Edit`, `Delete` and `Close` end an edit without writing.
class Recordset {
 public:
  Recordset(Ptr<Database> database, const std::string& sql, std::vector<Cell> parameters);

  bool AtEof();
  void MoveNext();
  /// The first row that also satisfies the criteria ("nIndex = ?"). Where there is none, `NoMatch` tells, and the
  /// current row stays.
  void FindFirst(const std::string& criteria, std::vector<Cell> parameters = {});
  bool NoMatch() const { return no_match_; }
  /// Errors `NoCurrentRecord`, `ItemNotFound`.
  Field Fields(std::string_view column);
  const std::vector<std::string>& columns();

  void AddNew();
  void Edit();
  /// Writes the row that is edited or added. An added one does not become the current row, unless the rows were at
  /// their end.
  void Update();
  /// The next move steps off the deleted row.
  void Delete();
  /// Lets go of the rows and of the database; any use afterwards is the error `ObjectNotSet`.
  void Close();

 private:
  friend class Field;
  struct Row {
    int64_t id = 0;  // the row's key in its table
    std::vector<Cell> cells;
    bool deleted = false;
  };
  enum class Editing : uint8_t { No, Changed, Added };

  Database& database() const;
  std::vector<Row> fetch(const std::string& sql, std::span<const Cell> parameters);
  void walk();
  size_t place_of(const Row& row) const;
  void append_added(int64_t id);
  Row& current();
  void require_table() const;

  Ptr<Database> database_;
  std::shared_ptr<QueryShape> shape_;
  std::vector<Cell> parameters_;
  std::vector<Row> rows_;
  size_t at_ = 0;
  bool walked_ = false;
  bool no_match_ = false;
  std::optional<Row> found_;    // by a search, while the rows are not walked
  std::vector<int64_t> added_;  // while the rows are not walked
  Editing editing_ = Editing::No;
  std::vector<Cell> buffer_;
};

}  // namespace tarn
