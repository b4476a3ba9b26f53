// Record bytes of committed saves on their way to the record files. A save's bytes go into the table PendingWrites in
// the transaction of its rows, so that the database's commit decides both. They are then applied to the files, and the
// rows are dropped when the files are known to be on the disk. Until then every reader lays them over the files.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/file_change.h"

struct sqlite3;

namespace tarn {

/// Its table, made with a new project, and with the first save of an older one.
constexpr const char* kPendingTable =
    "CREATE TABLE IF NOT EXISTS PendingWrites (nOrder INTEGER PRIMARY KEY, szFile TEXT, nForm INTEGER, "
    "szReplacement TEXT, abBytes BLOB);\n";

class PendingWrites {
 public:
  PendingWrites(sqlite3* handle, std::string database);

  /// The name by which the database knows a record file; empty where the file is not of its project. A project's files
  /// lie beside its index database, begin with its prefix and end in ".DAT".
  std::string_view name_of(const std::string& path) const;
  std::string path_of(const std::string& name) const { return folder_ + name; }

  /// Reads the table again where `version` of the database is not the one of the last time. Inside a transaction.
  /// Error `UnknownFormat` for rows that no save has written.
  void refresh(int64_t version);
  /// Null for a file that has nothing pending.
  const FileChange* find(std::string_view name) const;
  /// Numbers of the rows that no save has written.
  std::vector<int64_t> foreign_rows();
  bool empty() const { return changes_.empty(); }
  bool applied() const { return unapplied_.empty(); }
  /// New files beside the old ones, and a database in the making; those that no row names are of programs that died.
  std::vector<std::string> new_files() const;

  // With the write lock held:
  using Changes = std::vector<std::pair<std::string, FileChange*>>;
  /// Adds a save's bytes, which it takes; larger whole files are made beside the old ones. Drops older rows where there
  /// are many.
  void add(const Changes& changes);
  /// Brings what is pending to the files. A failure is logged: the rows stay, and it is tried again.
  void apply();
  /// Brings what is pending to the disk and drops the rows.
  void settle();
  /// Of these, the ones that no row names.
  void remove_leftovers(const std::vector<std::string>& new_files) const;

  void committed();
  void rolled_back();

 private:
  void read_rows();
  bool has_table() const;
  bool is_own(int64_t order, const std::string& name, int64_t form, const std::string& replacement) const;
  void take_row(std::string name, int64_t form, std::string replacement, std::string_view bytes);
  void apply(const std::string& name, const FileChange& change) const;
  void add_row(int64_t order, const std::string& name, const FileChange& change);
  std::string make_replacement(int64_t order, const std::string& name, const FileChange& change);

  sqlite3* handle_;
  std::string database_, folder_, prefix_;
  std::map<std::string, FileChange, std::less<>> changes_;  // by name
  std::set<std::string> unapplied_;                         // names
  int64_t version_ = -1;
  int64_t last_ = 0;  // the highest row, and the highest number of a new file
  int64_t rows_ = 0;
  size_t bytes_ = 0;
  bool has_table_ = false;
  // Of the open transaction:
  std::map<std::string, FileChange> added_;
  std::vector<std::string> made_;  // new files, by path
  bool settled_ = false;
};

}  // namespace tarn
