#include "storage/link_keeper.h"

#include <algorithm>
#include <utility>

#include "storage/entity_memory.h"
#include "tarn/base/log.h"
#include "tarn/platform/database.h"

namespace tarn {
namespace {

constexpr std::string_view kDeleted = " was deleted; the reference is cleared.";
constexpr std::string_view kUnlinked =
    " exists, but the link row that leads to it is missing. The reference reads as 0; the record still has it, and the "
    "next save, or 'tarn project repair', puts both back.";

}  // namespace

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

void LinkKeeper::repair(const Owner& owner, LinkRows& rows, const CloseUp& close_up, const Blocks& inputs) {
  std::vector<Use> uses;
  bool lost_rows = false;
  unlinked_.reset();
  cleared_deleted_ = false;
  const auto cleared = clear_lost_references(owner.object, owner.title, kDeleted, [&](const Use& use) {
    if (!owner.has(use.kind)) return false;
    if (const LinkRows::Row* row = rows.find(use)) {
      if (row->there) uses.push_back(use);
      return false;
    }
    const bool taken = rows.was_deleted(use);
    cleared_deleted_ |= taken;
    const bool lost = !taken && rows.is_there(use);
    lost_rows |= lost;
    return !lost;
  });
  close_up(cleared);
  if (lost_rows) {
    unlinked_ = {gathered(inputs), {}};
    const auto unlinked = clear_lost_references(owner.object, owner.title, kUnlinked,
                                                [&](const Use& use) { return owner.has(use.kind) && !rows.has(use); });
    close_up(unlinked);
    unlinked_->without = gathered(inputs);
  }
  if (!cleared.empty() || lost_rows) {  // what is left may have moved
    uses = uses_of(owner.object);
    std::erase_if(uses, [&](const Use& use) { return !owner.has(use.kind) || !rows.is_there(use); });
  }
  remember(owner, rows, uses);
}

void LinkKeeper::repair_default(const Owner& owner, LinkRows& rows, const CloseUp& close_up) {
  unlinked_.reset();
  close_up(
      clear_lost_references(owner.object, owner.title, kDeleted, [&](const Use& use) { return !rows.is_there(use); }));
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
  const auto cleared = clear_lost_references(owner.object, owner.title, kDeleted, [&](const Use& use) {
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
  cleared_deleted_ |= !cleared.empty();
  if (!cleared.empty()) close_up(cleared);
}

void LinkKeeper::put_back(const Owner& owner, const Blocks& inputs) {
  if (!unlinked_) return;
  const auto [with, without] = *std::exchange(unlinked_, std::nullopt);
  std::vector<std::byte> now = gathered(inputs);
  bool all = now.size() == with.size();
  size_t begin = 0;
  for (const auto block : inputs) {
    const size_t end = begin + block.size();
    if (end > with.size() || now.size() != with.size()) break;
    bool same = true;
    for (size_t i = begin; i < end; ++i) same &= with[i] == without[i] || now[i] == without[i];
    for (size_t i = begin; i < end && same; ++i) {
      if (with[i] != without[i]) now[i] = with[i];
    }
    all &= same;
    begin = end;
  }
  if (now.size() == with.size()) scatter(now, inputs);
  if (!all) {
    log().message(owner.title +
                  ": references that had lost their link rows were changed beside others, and are not put back.");
  }
}

void LinkKeeper::write(const Owner& owner, LinkRows& rows) {
  remember(owner, rows, write_links(owner.object, rows, owner.kinds));
  if (std::exchange(cleared_deleted_, false)) rows.forget_deleted_uses(owner.kinds);
}

}  // namespace tarn
