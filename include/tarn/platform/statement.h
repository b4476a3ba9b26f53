// A statement of the index database with its values bound, and the rows that it gives one after the other. It is
// prepared once for its text and borrowed for one use.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tarn/platform/cell.h"

struct sqlite3_stmt;

namespace tarn {

class Database;

/// Prepared statements of one text.
struct KeptStatements {
  std::vector<sqlite3_stmt*> idle;
  int borrowed = 0;
  int hint = 0;
};

class Statement {
 public:
  /// Takes no part in a transaction by itself: `Database::join` comes first. Error `StatementRejected` where the engine
  /// does not know what to do with the text, where values are missing, or where the text would end a transaction or
  /// change a setting of the connection.
  Statement(Database& database, const std::string& sql, std::span<const Cell> parameters = {});
  ~Statement();
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  /// True while there is a row.
  bool step();
  bool only_reads() const;
  int columns() const;
  std::string_view column_name(int column) const;
  Cell column(int column) const;
  /// Of all statements of the text: the column that is asked for first, say. 0 until it is set.
  int& hint() const { return home_.second.hint; }
  /// 0 for no value.
  int64_t integer(int column) const;

 private:
  Database& database_;
  std::pair<const std::string, KeptStatements>& home_;  // the text, and where the statement goes back to
  sqlite3_stmt* statement_ = nullptr;
};

}  // namespace tarn
