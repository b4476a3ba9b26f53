// A query taken apart, so that one row of it can be searched for, and so that its rows can be changed where they are
// those of one table.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarn {

class Statement;

/// "SELECT * FROM table [WHERE ...] [ORDER BY ...]", or with a list of columns. Every other query has no table.
struct QueryShape {
  explicit QueryShape(std::string_view query);
  /// The rows can be read only.
  void give_up_table();
  /// The statement for the first row that also satisfies the criteria; the row's key stands before the columns of a
  /// table.
  const std::string& search(const std::string& criteria);
  /// The statements for the row of a table with a key.
  std::string by_key() const { return head + " WHERE rowid = ?"; }
  std::string delete_by_key() const { return "DELETE FROM " + table + " WHERE rowid = ?"; }
  /// The statements that set columns of a new row, or of the row with a key: a '1' for each of `columns` that is set.
  const std::string& insert(const std::string& set);
  const std::string& update(const std::string& set);
  /// Names the columns, once a statement of the query is there.
  void name_columns(const Statement& statement);
  int key_columns() const { return table.empty() ? 0 : 1; }

  std::string sql;  // without comments
  std::string table, head, where, order;
  std::vector<std::string> columns;
  std::string all;  // the statement for all rows

 private:
  std::unordered_map<std::string, std::string> searches_;           // by the criteria
  std::unordered_map<std::string, std::string> inserts_, updates_;  // by the columns that are set
};

}  // namespace tarn
