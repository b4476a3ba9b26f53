// What the entities of a project have in common while its database is open: the lowest free index of each kind, and
// which entities this program has deleted. Both belong to one connection: `database.memory<FreeIndexes>()`.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tarn/platform/database.h"

namespace tarn {

/// Every index of a table below its mark is in use. Deletes by this connection lower a mark; rollbacks and other
/// writers clear all.
class FreeIndexes final : public DatabaseMemory {
 public:
  explicit FreeIndexes(Database& database) : database_(database) {}
  /// The lowest positive number that is no row's `nIndex`, in constant time over a run of new rows.
  int64_t lowest(const std::string& table);

  void row_deleted(std::string_view table, int64_t key) override;
  void rows_unknown() override { marks_.clear(); }

 private:
  /// Deletes are told by their row's key, which must be the index itself.
  bool has_key(const std::string& table);

  Database& database_;
  std::unordered_map<std::string, int64_t> marks_;
  int64_t foreign_version_ = -1;
};

/// Objects that refer to an entity can tell by these that it went, even where another has its index by now.
class Deletions final : public DatabaseMemory {
 public:
  explicit Deletions(Database& database) : database_(database) {}
  /// A delete that is rolled back never was.
  void note(std::string_view kind, int64_t index);
  /// Grows with every deletion.
  size_t count() const { return noted_.size(); }
  bool since(size_t count, std::string_view kind, int64_t index) const;

 private:
  Database& database_;
  std::vector<std::pair<std::string, int64_t>> noted_;  // kind and index
};

}  // namespace tarn
