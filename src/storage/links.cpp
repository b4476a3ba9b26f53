#include "storage/links.h"

#include <algorithm>
#include <set>

#include "base/log.h"
#include "base/wire.h"
#include "platform/statement.h"

namespace tarn {
namespace {

std::string table_of(std::string_view owner, std::string_view kind) {
  return std::string(owner) + "_" + std::string(kind) + "_Links";
}
std::string column_of(std::string_view kind) { return std::string(kind) + "_ID"; }

void add_kinds(const ClassInfo& info, std::set<std::string_view>& kinds) {
  for (const Member& member : info.members) {
    if (!member.refers_to.empty()) kinds.insert(member.refers_to);
    if (member.is_part()) add_kinds(member.part_info(), kinds);
  }
}

/// The kinds that fields of a class and its parts may refer to, however many parts there are now.
const std::set<std::string_view>& kinds_of(const ClassInfo& info) {
  static thread_local std::map<const ClassInfo*, std::set<std::string_view>> known;
  auto [kinds, added] = known.try_emplace(&info);
  if (added) add_kinds(info, kinds->second);
  return kinds->second;
}

}  // namespace

namespace {

/// A reference field's element in place, a 16-bit or a 32-bit integer.
int32_t reference_at(const Member& field, const std::byte* at) {
  if (field.type == ValueType::Int32) return reinterpret_cast<const I4*>(at)->value;
  return reinterpret_cast<const I2*>(at)->value;
}

void set_reference(const Member& field, std::byte* at, int32_t index) {
  if (field.type == ValueType::Int32)
    *reinterpret_cast<I4*>(at) = index;
  else
    *reinterpret_cast<I2*>(at) = static_cast<int16_t>(index);
}

}  // namespace

std::string ReferenceName::operator()() const {
  std::vector<int> at;
  size_t rest = element;
  for (const Bounds& b : field.bounds) {
    at.push_back(b.first + static_cast<int>(rest % static_cast<size_t>(b.size())));
    rest /= static_cast<size_t>(b.size());
  }
  return prefix + element_name(field, at);
}

void for_each_reference(Object& object, const ReferenceAction& action) {
  for_each_field(object, [&](Object& owner, const Member& field, const std::string& prefix) {
    if (field.refers_to.empty() || (field.refers_when && !field.refers_when(owner))) return;
    const uint64_t place = std::hash<std::string>()(prefix) ^ std::hash<const Member*>()(&field);
    const size_t elements = field.elements(), width = field.size / elements;
    std::byte* at = field.place(owner);
    for (size_t element = 0; element < elements; ++element, at += width) {
      const int32_t index = reference_at(field, at);
      if (index == 0) continue;
      const Use use{place + (element + 1) * 0x9E3779B97F4A7C15ULL, field.refers_to, index};
      const int32_t wanted = action(use, ReferenceName{prefix, field, element});
      if (wanted != index) set_reference(field, at, wanted);
    }
  });
}

std::string index_table_of(std::string_view kind) {
  return (kind == "System" ? "AirSystem" : std::string(kind)) + "Index";
}

std::vector<Use> uses_of(Object& object) {
  std::vector<Use> uses;
  for_each_reference(object, [&](const Use& use, const ReferenceName&) {
    uses.push_back(use);
    return use.index;
  });
  return uses;
}

const std::vector<LinkRows::Row>& LinkRows::of(std::string_view kind) {
  const auto [place, added] = rows_.try_emplace(kind);
  if (!added) return place->second;
  const std::string id = column_of(kind);
  const std::string sql = "SELECT " + id + ", nIndex FROM " + table_of(owner_kind_, kind) + " LEFT JOIN " +
                          index_table_of(kind) + " ON nIndex = " + id + " WHERE " + column_of(owner_kind_) +
                          " = ? ORDER BY " + id;
  const Cell owner[]{cell(owner_)};
  database_.join(Database::Part::Reading);
  Statement rows(database_, sql, owner);
  while (rows.step()) {
    const auto index = static_cast<int32_t>(rows.integer(0));
    place->second.push_back({index, rows.integer(1) == index});
  }
  return place->second;
}

const LinkRows::Row* LinkRows::find(const Use& use) {
  if (!last_ || use.kind != last_kind_) {
    last_ = &of(use.kind);
    last_kind_ = use.kind;
    next_ = 0;
  }
  // References often stand in the order of their rows.
  if (next_ < last_->size() && (*last_)[next_].index == use.index) return &(*last_)[next_++];
  const auto row = std::lower_bound(last_->begin(), last_->end(), use.index,
                                    [](const Row& r, int32_t index) { return r.index < index; });
  if (row == last_->end() || row->index != use.index) return nullptr;
  next_ = static_cast<size_t>(row - last_->begin()) + 1;
  return &*row;
}

bool LinkRows::is_there(const Use& use) {
  if (const Row* row = find(use)) return row->there;
  return !database_
              .OpenRecordset("SELECT nIndex FROM " + index_table_of(use.kind) + " WHERE nIndex = ?", {cell(use.index)})
              .AtEof();
}

std::vector<Use> write_links(Object& owner, LinkRows& links) {
  std::vector<Use> uses = uses_of(owner);
  bool lacking = false;
  for (const std::string_view kind : kinds_of(owner.info())) {
    std::vector<int32_t> wanted;
    for (const Use& use : uses) {
      if (use.kind == kind) wanted.push_back(use.index);
    }
    std::sort(wanted.begin(), wanted.end());
    wanted.erase(std::unique(wanted.begin(), wanted.end()), wanted.end());
    const auto change = [&](const std::string& statement, int32_t id) {
      const Cell row[]{cell(links.owner()), cell(id)};
      links.database().Execute(statement, row);
    };
    const std::string table = table_of(links.owner_kind(), kind), own = column_of(links.owner_kind()),
                      other = column_of(kind);
    auto next = wanted.begin();
    const auto add_before = [&](int64_t end) {
      for (; next != wanted.end() && *next < end; ++next) {
        change("INSERT INTO " + table + " (" + own + ", " + other + ") VALUES (?, ?)", *next);
        lacking |= !links.is_there({0, kind, *next});
      }
    };
    for (const auto& [id, there] : links.of(kind)) {
      lacking |= !there;
      add_before(id);
      if (next != wanted.end() && *next == id)
        ++next;
      else if (next == wanted.begin() || *std::prev(next) != id)  // not a second row of one that stays
        change("DELETE FROM " + table + " WHERE " + own + " = ? AND " + other + " = ?", id);
    }
    add_before(INT64_MAX);
  }
  if (!lacking) return uses;
  uses.clear();
  for_each_reference(owner, [&](const Use& use, const ReferenceName& name) {
    if (links.is_there(use)) {
      uses.push_back(use);
    } else if (!links.has(use)) {  // told once, when its row is new
      log().message(std::string(links.owner_kind()) + " " + std::to_string(links.owner()) + ", " + name() +
                    " refers to " + std::string(use.kind) + " " + std::to_string(use.index) + ", which is not there.");
    }
    return use.index;
  });
  return uses;
}

void clear_lost_references(Object& owner, const std::string& title, const std::function<bool(const Use&)>& lost) {
  for_each_reference(owner, [&](const Use& use, const ReferenceName& name) -> int32_t {
    if (!lost(use)) return use.index;
    log().message(title + ", " + name() + ": " + std::string(use.kind) + " " + std::to_string(use.index) +
                  " was deleted; the reference is cleared.");
    return 0;
  });
}

}  // namespace tarn
