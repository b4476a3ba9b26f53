#include "storage/link_keeper.h"

#include <algorithm>

#include "storage/entity_memory.h"
#include "tarn/platform/database.h"

namespace tarn {

bool LinkKeeper::Owner::has(std::string_view kind) const {
  return std::ranges::any_of(kinds, [kind](std::string_view each) { return same_kind(each, kind); });
}

void LinkKeeper::remember(const Owner& owner, const LinkRows& rows, const std::vector<Use>& uses) {
  Database& database = rows.database();
  const size_t deletions = database.memory<Deletions>().count();
  const int64_t foreign_version = database.foreign_version();
  for (const std::string_view kind : owner.kinds) known_[kind] = {{}, rows.owner(), deletions, foreign_version};
  auto last = known_.end();
  for (const Use& use : uses) {
    if (last == known_.end() || !same_kind(last->first, use.kind)) last = known_.try_emplace(use.kind).first;
    last->second.uses.push_back(use);
  }
}

void LinkKeeper::repair(const Owner& owner, LinkRows& rows, const CloseUp& close_up) {
  std::vector<Use> uses;
  const auto cleared = clear_lost_references(owner.object, owner.title, [&](const Use& use) {
    if (!owner.has(use.kind)) return false;
    const LinkRows::Row* row = rows.find(use);
    if (row && row->there) uses.push_back(use);
    return row == nullptr;
  });
  close_up(cleared);
  if (!cleared.empty()) {  // what is left may have moved
    uses = uses_of(owner.object);
    std::erase_if(uses, [&](const Use& use) { return !owner.has(use.kind) || !rows.is_there(use); });
  }
  remember(owner, rows, uses);
}

void LinkKeeper::repair_default(const Owner& owner, LinkRows& rows, const CloseUp& close_up) {
  close_up(clear_lost_references(owner.object, owner.title, [&](const Use& use) { return !rows.is_there(use); }));
  remember(owner, rows, uses_of(owner.object));
}

void LinkKeeper::clear_deleted(const Owner& owner, LinkRows& rows, const CloseUp& close_up) {
  struct Candidate {
    const Known* known;
    std::vector<Use>::const_iterator next;  // both stand in the same order, but for what the client changed
    bool foreign;
  };
  Database& database = rows.database();
  std::map<std::string_view, Candidate> candidates;
  const int64_t foreign_version = database.foreign_version();
  for (const auto& [kind, known] : known_) {
    if (known.uses.empty()) continue;
    const bool foreign = known.index == rows.owner() && known.foreign_version != foreign_version;
    candidates.emplace(kind, Candidate{&known, known.uses.begin(), foreign});
  }
  if (candidates.empty()) return;
  const auto cleared = clear_lost_references(owner.object, owner.title, [&](const Use& use) {
    const auto found = candidates.find(use.kind);
    if (found == candidates.end()) return false;
    auto& [known, next, foreign] = found->second;
    const auto& uses = known->uses;
    const auto same = next != uses.end() && *next == use ? next : std::find(uses.begin(), uses.end(), use);
    if (same == uses.end()) return false;
    next = std::next(same);
    return database.memory<Deletions>().since(known->deletions, use.kind, use.index) || !rows.is_there(use) ||
           (foreign && !rows.has(use));
  });
  if (!cleared.empty()) close_up(cleared);
}

void LinkKeeper::write(const Owner& owner, LinkRows& rows) {
  remember(owner, rows, write_links(owner.object, rows, owner.kinds));
}

}  // namespace tarn
