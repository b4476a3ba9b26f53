// The floor of entities with a file of their own: plain reads and writes of the file, and the same statements prepared
// once.
#pragma once

#include "plain_project.h"
#include "storage/staleness.h"

namespace tarn::bench {

/// The entity of index 1 in a folder of its own.
class PlainEntity {
 public:
  /// `link_queries` are of the owner's index, as are the marks of its reach; `flag` is the column that a save changes.
  PlainEntity(const std::string& folder, const std::string& file, const std::string& table,
              const std::vector<std::string>& link_queries, const Reach& reach,
              const std::string& flag = "bDesHasChanged");

  /// The row and that many bytes of the file, by default all, and the link rows.
  void load();
  void load(size_t length, bool with_links);
  /// The row with another changed flag, link rows as they are, marks, and the file anew. No other entity may have the
  /// name, where one is given.
  void save(const std::string& name, int64_t changed);

 private:
  void find();
  void walk(std::vector<PlainStatement>& statements);

  std::unique_ptr<sqlite3, int (*)(sqlite3*)> database_;
  std::string path_, bytes_;
  PlainStatement begin_, commit_, find_, same_name_, update_;
  std::vector<PlainStatement> links_, marks_;
  volatile int64_t last_ = 0;
};

}  // namespace tarn::bench
