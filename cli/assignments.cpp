#include "cli/assignments.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include "base/nearest.h"
#include "cli/command.h"
#include "reflect/json.h"
#include "storage/kind.h"
#include "storage/links.h"
#include "tarn/base/value.h"
#include "tarn/platform/workspace.h"
#include "tarn/reflect/by_name.h"

namespace tarn::cli {
namespace {

struct Assignment {
  Object* object;  // the entity, or a part of it
  const Member* member;
  std::vector<int> at;
  std::string value;
  std::string place;  // "Layer(2).", before the property
};

/// The subscripts that follow a name, "(2)" or "[1,2]"; none for an empty text.
std::vector<int> subscripts_in(std::string_view text, const std::string& word) {
  std::vector<int> found;
  if (text.empty()) return found;
  const char* at = text.data();
  const char* const last = text.data() + text.size() - 1;  // the closing bracket
  do {
    int subscript = 0;
    const auto [end, failed] = std::from_chars(at + 1, last, subscript);
    if (failed != std::errc()) break;
    found.push_back(subscript);
    at = end;
  } while (*at == ',');
  if (at != last || (*last != ')' && *last != ']')) {
    throw UsageError("\"" + word +
                     "\" has subscripts that cannot be read; write Property(1)=value or Property(1,2)=value.");
  }
  return found;
}

/// Follows "Layer(2)" from an object to its part.
Object& part_of(Object& object, std::string_view step, const std::string& word) {
  const size_t open = std::min(step.find_first_of("(["), step.size());
  const Member* part = find_part(object.info(), step.substr(0, open));
  if (!part) {
    std::vector<std::string_view> names;
    for (const Member& member : object.info().members) {
      if (member.is_part()) names.push_back(member.owned().name);
    }
    throw UsageError(std::string(object.info().name) + " has no part " + std::string(step.substr(0, open)) + "; " +
                     did_you_mean(step.substr(0, open), names));
  }
  const std::vector<int> at = subscripts_in(step.substr(open), word);
  int count = part->part_count(object);
  if (part->owned().numbered && part->owned().resize && at.size() == 1 && at[0] == count + 1) {
    part->owned().resize(object, count + 1);  // the next one is added
    count = part->part_count(object);
  }
  if (count == 0) {
    throw UsageError("The " + std::string(object.info().name) + " has no " + std::string(part->owned().name) +
                     " yet; it comes with results.");
  }
  if (at.size() != (part->owned().numbered ? 1U : 0U) || (part->owned().numbered && (at[0] < 1 || at[0] > count))) {
    throw UsageError(
        "\"" + word + "\": " + std::string(part->owned().name) +
        (part->owned().numbered ? " takes a number from 1 to " + std::to_string(count) : " takes no number") + ".");
  }
  return part->part(object, part->owned().numbered ? at[0] : 1);
}

/// Where a property named without a part belongs: to the entity; else to the part that also holds the entity's name (an
/// air system's header); else to the only part that has such a property. Where several parts have it: the entity.
Object& holder_of(Object& entity, const std::string& property) {
  const auto settable = [](const ClassInfo& info, std::string_view name) {
    const int number = info.number(name);
    return number >= 0 && !info.members[static_cast<size_t>(number)].read_only;
  };
  if (settable(entity.info(), property)) return entity;
  Object* found = nullptr;
  for (const Member& member : entity.info().members) {
    if (!member.is_part() || member.owned().numbered || member.part_count(entity) == 0) continue;
    Object& part = member.part(entity, 1);
    if (!settable(part.info(), property)) continue;
    if (settable(part.info(), "Name")) return part;
    if (found) return entity;
    found = &part;
  }
  return found ? *found : entity;
}

/// Where a count is asked for that follows from the parts ("NumZones"): how a person makes one more of them.
std::string how_made(StoredEntity& entity, std::string_view name) {
  if (name.size() < 3 || !same_word(name.substr(0, 3), "Num")) return {};
  for (const Member& member : entity.info().members) {
    if (!member.is_part() || !member.owned().numbered || !member.owned().resize) continue;
    const std::string next =
        std::string(member.owned().name) + "(" + std::to_string(member.part_count(entity) + 1) + ")";
    return "it counts what is there. To make the next one, set a property of it: " + next + ".Name=...";
  }
  return {};
}

/// "GlassTrans(2)=0.78", "Height=4", "Layer(2).Thickness=8".
Assignment parsed(StoredEntity& entity, const std::string& word) {
  const size_t equals = word.find('=');
  if (equals == std::string::npos) throw UsageError("\"" + word + "\" is not an assignment; write Property=value.");
  Assignment out{&entity, nullptr, {}, word.substr(equals + 1), {}};
  std::string_view path = std::string_view(word).substr(0, equals);
  for (size_t dot = path.find('.'); dot != std::string_view::npos; dot = path.find('.')) {
    out.object = &part_of(*out.object, path.substr(0, dot), word);
    out.place += std::string(path.substr(0, dot + 1));
    path.remove_prefix(dot + 1);
  }
  const size_t open = std::min(path.find_first_of("(["), path.size());
  const std::string name(path.substr(0, open));
  if (out.place.empty()) out.object = &holder_of(entity, name);
  const ClassInfo& info = out.object->info();
  std::vector<std::string_view> names;
  for (const Member& member : info.members) {
    const bool settable =
        member.kind == MemberKind::Property && !member.read_only && (member.stored() || member.in_place());
    if (settable || same_word(member.name, "Name")) names.push_back(member.name);
  }
  const int number = info.number(name);
  if (number >= 0) out.member = &info.members[static_cast<size_t>(number)];
  const std::string made = how_made(entity, name);
  if (!out.member || std::find(names.begin(), names.end(), out.member->name) == names.end())
    throw UsageError(std::string(info.name) + " has no property " + name + " to set; " +
                     (made.empty() ? did_you_mean(name, names) : made));
  out.at = subscripts_in(path.substr(open), word);
  return out;
}

/// A finite number as people write it and JSON does not: ".1", "5.", "+2".
std::optional<double> number_in(std::string_view text) {
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  double number = 0;
  const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (failed != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) return std::nullopt;
  return number;
}

Json json_of(const Assignment& assignment) {
  if (assignment.member->type == ValueType::Text) return assignment.value;
  try {
    return parse_json(assignment.value);
  } catch (const Json::exception&) {
    if (const auto number = number_in(assignment.value)) return *number;
    return assignment.value;  // "NaN" is a text; a wrong value is refused by the property's type, with its message
  }
}

/// Every field with its place: "Layer(2).Thickness".
std::vector<std::pair<std::string, Json>> fields(StoredEntity& entity) {
  std::vector<std::pair<std::string, Json>> all;
  for_each_field(entity, [&](Object& owner, const Member& field, const std::string& prefix) {
    all.emplace_back(prefix + std::string(field.name), to_json(owner, field));
  });
  return all;
}

/// Error `UsageError` for a reference whose kind a code beside it decides ("LibraryID"), which has none of the kinds.
void needs_a_kind(Object& object, const Member& member, int index) {
  for (const Member& beside : object.info().members) {
    if (beside.labels.empty() || !beside.name.ends_with("LibraryID")) continue;
    std::string codes;
    for (const Label& label : beside.labels_of(object)) {
      codes += (codes.empty() ? "" : ", ") + std::to_string(label.code) + " " + std::string(label.name);
    }
    throw UsageError(std::string(member.name) + "=" + std::to_string(index) + " is the index of a " +
                     std::string(member.refers_to.substr(0, member.refers_to.find(' '))) +
                     " or another kind of equipment, as " + std::string(beside.name) +
                     " says: set that too. Its codes are " + codes + ".");
  }
}

/// Error `UsageError` for a reference to an entity that does not exist; the message names the nearest one.
void check_reference(Database& database, Object& object, const Member& member, Subscripts at) {
  if (member.refers_to.empty()) return;
  Value value;
  member.get(object, at, value);
  const auto index = static_cast<int>(integer_from(value, INT32_MIN, INT32_MAX));
  if (index == 0) return;
  const std::string kind(member.target_of(object, at));
  if (kind.empty()) return needs_a_kind(object, member, index);
  const auto nearest = nearest_index(database, index_table_of(kind), index);
  if (!nearest) throw UsageError("The project has no " + kind + " to refer to yet.");
  if (*nearest != index) {
    throw UsageError("There is no " + kind + " " + std::to_string(index) + " to refer to; the nearest is " +
                     std::to_string(*nearest) + ".");
  }
}

/// The references to check after an assignment: its own, and those whose kind it decides.
void check_references(Database& database, const Assignment& a) {
  check_reference(database, *a.object, *a.member, a.at);
  for (const Member& member : a.object->info().members) {
    if (member.refers_by && !member.indexed() && &member != a.member) check_reference(database, *a.object, member, {});
  }
}

/// Error `UsageError` for a result that would be zero again as soon as it is saved.
void needs_an_input(StoredEntity& entity, const Assignment& a) {
  const RecordField* field = a.member->field();
  if (!field || !entity.file().is_cleared_by_edits(field->place(*a.object))) return;
  throw UsageError(a.place + std::string(a.member->name) +
                   " is a result of calculations, which every edit of inputs clears; set inputs instead.");
}

}  // namespace

std::vector<std::string> edit(StoredEntity& entity, const EntityKind& kind, const std::vector<std::string>& words) {
  std::vector<Assignment> assignments;
  for (const std::string& word : words) {  // a later one may name what an earlier one makes
    const Assignment& a = assignments.emplace_back(parsed(entity, word));
    needs_an_input(entity, a);
    set_from_json(*a.object, *a.member, a.at, json_of(a));
  }
  const auto assign = [&] {
    for (const Assignment& a : assignments) set_from_json(*a.object, *a.member, a.at, json_of(a));
  };
  for (const Assignment& a : assignments) check_references(*entity.GetDBHandle(), a);
  const bool only_name = std::all_of(assignments.begin(), assignments.end(),
                                     [](const Assignment& a) { return a.member->name == "Name" && a.place.empty(); });
  if (!kind.compute || only_name) return {};
  const auto before = fields(entity);
  kind.compute(entity);
  assign();
  const auto after = fields(entity);
  std::vector<std::string> computed;
  for (size_t i = 0; i < after.size(); ++i) {
    const auto& [name, value] = after[i];
    if (after[i] != before[i])
      computed.push_back(value.is_array() ? name : name + " " + shown(before[i].second) + " -> " + shown(value));
  }
  return computed;
}

}  // namespace tarn::cli
