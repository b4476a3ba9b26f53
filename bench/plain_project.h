// The floor: windows stored by hand, with every statement prepared once and the record file open all the time. It
// leaves the same rows and bytes on the disk as we do.
#pragma once

#include <sqlite3.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "sample.h"

namespace tarn::bench {

/// A floor's own connection; throws where it cannot be opened.
sqlite3* opened(const std::string& path);

/// A prepared statement, kept for the life of its database.
class PlainStatement {
 public:
  PlainStatement(sqlite3* database, const char* sql);
  sqlite3_stmt* get() const { return statement_.get(); }
  void bind(int place, int64_t value) { sqlite3_bind_int64(get(), place, value); }
  void bind(int place, double value) { sqlite3_bind_double(get(), place, value); }
  void bind(int place, std::string_view text);
  bool step();
  void reset() { sqlite3_reset(get()); }
  /// One run of a statement without rows.
  void run();

 private:
  std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> statement_;
};

class PlainProject {
 public:
  explicit PlainProject(const Paths& paths);
  ~PlainProject();
  PlainProject(const PlainProject&) = delete;
  PlainProject& operator=(const PlainProject&) = delete;

  void begin() { begin_.run(); }
  /// Rows and records are on the disk; a program that dies half-way leaves some of each.
  void commit();
  /// Rows and records are one, as ours are: the records go into the database with the rows, and then into the file.
  void commit_as_one();
  void rollback() { rollback_.run(); }

  void load(int index, WindowRecord& window);
  /// Writes a stored window of which only the height has changed.
  void save(int index, const WindowRecord& window);
  /// Writes a window under the lowest free index.
  void add(const WindowRecord& window);
  void remove_above(int last);
  /// The dependants of a window, by one chained statement a table.
  void mark_by_chains(int index);

 private:
  /// As our saves do it, with the same statements.
  void mark(int index);
  void write_record(int64_t index, const WindowRecord& window);
  void write_file();

  std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database_;
  int file_;
  bool file_written_ = false;                              // and not on the disk yet
  std::vector<std::pair<int64_t, WindowRecord>> records_;  // of the open transaction
  PlainStatement begin_, commit_, rollback_, find_, update_, insert_, free_, drop_, keep_;
  std::array<PlainStatement, 3> chains_;
  std::vector<PlainStatement> marking_;  // the statements of our saves: forget, collect, update
  int64_t free_mark_ = 1;
};

void run_script(const std::string& database, const std::string& script);

}  // namespace tarn::bench
