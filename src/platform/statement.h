// A prepared statement of the embedded engine, borrowed from its database for one use.
#pragma once

#include <sqlite3.h>

#include "platform/database.h"

namespace tarn {

class Statement {
 public:
  Statement(Database& database, const std::string& sql, std::span<const Cell> parameters);
  ~Statement();
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  /// True while there is a row.
  bool step();
  bool only_reads() const { return sqlite3_stmt_readonly(statement_) != 0; }
  int columns() const { return sqlite3_column_count(statement_); }
  std::string column_name(int column) const { return sqlite3_column_name(statement_, column); }
  Cell column(int column) const;
  int64_t integer(int column) const { return sqlite3_column_int64(statement_, column); }

 private:
  Database& database_;
  std::pair<const std::string, Database::Prepared>& home_;  // the text, and where the statement goes back to
  sqlite3_stmt* statement_;
};

}  // namespace tarn
