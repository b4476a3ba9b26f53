#include "cli/assignments.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include "base/nearest.h"
#include "cli/command.h"
#include "cli/units.h"
#include "reflect/json.h"
#include "storage/kind.h"
#include "storage/links.h"
#include "tarn/base/value.h"
#include "tarn/code_names.h"
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
  Json json = {};     // the value, in the units of the file

  std::string name() const { return place + element_name(*member, at); }
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

/// As JSON, or as people write numbers and JSON does not: ".1", "5.", "+2".
Json json_of(const Assignment& a) {
  if (a.member->type == ValueType::Text) return a.value;
  try {
    return parse_json(a.value);
  } catch (const Json::exception&) {
    if (const auto number = measured_in(a.value); number && number->unit.empty()) return number->value;
    return a.value;  // "NaN" is a text; a wrong value is refused by the property's type, with its message
  }
}

/// A number that was given in another unit, in the property's own, with what is told of it: "Height = 3.93701 ft
/// (1.2 m)". Without a unit beside it, it is in the unit that is shown.
std::optional<std::string> in_stored_unit(Assignment& a) {
  const auto given = measured_in(a.value);
  if (!given || a.member->type == ValueType::Text || a.member->type == ValueType::Boolean) return std::nullopt;
  const std::string_view stored = unit_of(*a.object, *a.member);
  const std::string_view from = given->unit.empty() ? shown_unit(stored) : given->unit;
  if (given->unit.empty() && from == stored) return std::nullopt;
  if (stored.empty()) throw UsageError(a.name() + " has no unit; found \"" + a.value + "\". Give the number alone.");
  double value = 0;
  try {
    value = convert(given->value, from, stored);
  } catch (const Error& error) {
    throw UsageError(a.name() + "=" + a.value + ": " + error.description() + ".");
  }
  a.json = value;
  if (a.member->type == ValueType::Int16 || a.member->type == ValueType::Int32) {
    if (value != std::nearbyint(value) || std::abs(value) > INT32_MAX)
      throw UsageError(a.name() + " takes whole numbers of " + std::string(stored) + "; " + a.value + " is " +
                       shown(a.json) + " " + std::string(stored) + ".");
    a.json = static_cast<int32_t>(value);
  }
  if (from == stored) return std::nullopt;
  return a.name() + " = " + shown(a.json) + " " + std::string(stored) + " (" + shown(Json(given->value)) + " " +
         std::string(from) + ")";
}

Json code_of(std::span<const Label> names, const Assignment& a) {
  try {
    return code_json(names, a.json);
  } catch (const Error& error) {
    throw UsageError(a.name() + ": " + error.description());
  }
}

/// Sets the value, and returns what is told of its unit.
std::optional<std::string> assign(Assignment& a) {
  a.json = json_of(a);
  const bool coded = !a.member->labels.empty();
  std::optional<std::string> told;
  if (const auto names = coded ? std::span<const Label>() : catalogued_codes(*a.member); !names.empty())
    a.json = code_of(names, a);
  else if (!coded)
    told = in_stored_unit(a);
  set_from_json(*a.object, *a.member, a.at, a.json);
  return told;
}

/// A field with its place, "Layer(2).Thickness", and its unit.
struct Field {
  std::string name;
  Json value;
  std::string_view unit;
};

std::vector<Field> fields(StoredEntity& entity) {
  std::vector<Field> all;
  for_each_field(entity, [&](Object& owner, const Member& field, const std::string& prefix) {
    all.push_back({prefix + std::string(field.name), to_json(owner, field), unit_of(owner, field)});
  });
  return all;
}

std::string shown_in_unit(const Field& field) {
  return field.value.is_number_float() ? shown(Json(shown_value(field.value.get<double>(), field.unit)))
                                       : shown(field.value);
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

Edited edit(StoredEntity& entity, const EntityKind& kind, const std::vector<std::string>& words) {
  Edited edited;
  std::vector<Assignment> assignments;
  for (const std::string& word : words) {  // a later one may name what an earlier one makes
    Assignment& a = assignments.emplace_back(parsed(entity, word));
    needs_an_input(entity, a);
    if (auto told = assign(a)) edited.converted.push_back(std::move(*told));
  }
  for (const Assignment& a : assignments) check_references(*entity.GetDBHandle(), a);
  const bool only_name = std::all_of(assignments.begin(), assignments.end(),
                                     [](const Assignment& a) { return a.member->name == "Name" && a.place.empty(); });
  if (!kind.compute || only_name) return edited;
  const auto before = fields(entity);
  kind.compute(entity);
  for (const Assignment& a : assignments) set_from_json(*a.object, *a.member, a.at, a.json);
  const auto after = fields(entity);
  for (size_t i = 0; i < after.size(); ++i) {
    const Field &was = before[i], &is = after[i];
    if (is.name == was.name && is.value == was.value) continue;
    const std::string unit(shown_unit(is.unit));
    edited.computed.push_back(is.value.is_array() ? is.name
                                                  : is.name + " " + shown_in_unit(was) + " -> " + shown_in_unit(is) +
                                                        (unit.empty() ? "" : " " + unit));
  }
  return edited;
}

}  // namespace tarn::cli
