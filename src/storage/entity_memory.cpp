#include "storage/entity_memory.h"

#include <algorithm>

#include "tarn/platform/workspace.h"

namespace tarn {

void FreeIndexes::row_deleted(std::string_view table, int64_t key) {
  if (marks_.empty()) return;
  if (const auto mark = marks_.find(std::string(table)); mark != marks_.end())
    mark->second = std::min(mark->second, std::max<int64_t>(key, 1));
}

bool FreeIndexes::has_key(const std::string& table) {
  const std::string sql =
      "SELECT 1 FROM pragma_table_info(?) WHERE name = 'nIndex' AND pk = 1 AND upper(type) = 'INTEGER'";
  const Cell name[]{table};
  return Statement(database_, sql, name).step();
}

int64_t FreeIndexes::lowest(const std::string& table) {
  database_.join(Database::Part::Reading);
  if (const int64_t version = database_.foreign_version(); version != foreign_version_) {
    foreign_version_ = version;
    marks_.clear();
  }
  const bool indexes_move = database_.sets(table, "nIndex");
  if (indexes_move) marks_.erase(table);
  const auto mark = marks_.find(table);
  int64_t free = mark == marks_.end() ? 1 : mark->second;
  {
    const std::string sql = "SELECT nIndex FROM " + table + " WHERE nIndex >= ? ORDER BY nIndex ASC";
    const Cell from[]{free};
    Statement rows(database_, sql, from);
    while (rows.step() && rows.integer(0) == free) ++free;
  }
  if (mark != marks_.end())
    mark->second = free;
  else if (!indexes_move && has_key(table))
    marks_.emplace(table, free);
  return free;
}

void Deletions::note(std::string_view kind, int64_t index) {
  const size_t place = noted_.size();
  noted_.emplace_back(kind, index);
  Engine::of_thread().Workspaces(0).on_rollback([weak = database_.weak_from_this(), this, place] {
    if (weak.lock()) noted_[place] = {};
  });
}

bool Deletions::since(size_t count, std::string_view kind, int64_t index) const {
  return std::any_of(noted_.begin() + static_cast<ptrdiff_t>(count), noted_.end(),
                     [&](const auto& deletion) { return deletion.second == index && deletion.first == kind; });
}

}  // namespace tarn
