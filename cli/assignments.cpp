#include "cli/assignments.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>

#include "check/implausible.h"
#include "cli/assignment.h"
#include "cli/choose.h"
#include "cli/units.h"
#include "exchange/computing.h"
#include "storage/kind.h"
#include "storage/links.h"
#include "tarn/base/value.h"
#include "tarn/code_names.h"
#include "tarn/construction.h"
#include "tarn/platform/workspace.h"
#include "tarn/reflect/by_name.h"

namespace tarn::cli {
namespace {

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

/// Error `UsageError` for a reference whose kind a code beside it decides ("LibraryID"), which has none of the kinds.
[[noreturn]] void needs_a_kind(Object& object, const Member& member, const std::string& given) {
  std::string beside, codes;
  for (const Member& each : object.info().members) {
    if (each.labels.empty() || !each.name.ends_with("LibraryID")) continue;
    beside = each.name;
    for (const Label& label : each.labels_of(object))
      codes += (codes.empty() ? "" : ", ") + std::to_string(label.code) + " " + std::string(label.name);
  }
  throw UsageError(std::string(member.name) + "=" + given + " is the index or name of a " +
                   std::string(member.refers_to.substr(0, member.refers_to.find(' '))) +
                   " or another kind of equipment, as " + beside + " says: set that first. Its codes are " + codes +
                   ".");
}

/// The index of the entity that a reference names: "People.Schedule=Office hours".
void follow_name(Database& database, Assignment& a) {
  if (a.member->refers_to.empty() || !a.json.is_string()) return;
  const std::string_view kind = a.member->target_of(*a.object, a.at);
  if (kind.empty()) needs_a_kind(*a.object, *a.member, a.value);
  try {
    a.json = index_named(a.json.get<std::string>(), database, rows_of(kind));
  } catch (const UsageError& error) {
    throw UsageError(a.name() + ": " + error.what());
  }
}

/// Sets the value, and returns what is told of its unit.
std::optional<std::string> assign(Database& database, Assignment& a) {
  a.json = json_of(a);
  follow_name(database, a);
  const bool coded = !a.member->labels.empty();
  std::optional<std::string> told;
  if (const auto names = coded ? std::span<const Label>() : catalogued_codes(*a.member); !names.empty())
    a.json = code_of(names, a);
  else if (!coded && a.member->refers_to.empty())
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

/// Error `UsageError` for a reference to an entity that does not exist; the message names the nearest one.
void check_reference(Database& database, Object& object, const Member& member, Subscripts at) {
  if (member.refers_to.empty()) return;
  Value value;
  member.get(object, at, value);
  const auto index = static_cast<int>(integer_from(value, INT32_MIN, INT32_MAX));
  if (index == 0) return;
  const std::string kind(member.target_of(object, at));
  if (kind.empty()) needs_a_kind(object, member, std::to_string(index));
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

namespace {

/// Of a layer that is not used; what is set there is zero again as soon as the summary is computed.
bool is_unused(const Assignment& a) {
  const auto* layer = dynamic_cast<const CA_Layer*>(a.object);
  return layer && !layer->LayerUsed;
}

std::vector<std::string> told_unused(const std::vector<Assignment>& assignments) {
  std::vector<std::string> notes;
  for (const Assignment& a : assignments) {
    const std::string part = a.place.substr(0, a.place.size() - std::min<size_t>(a.place.size(), 1));
    if (is_unused(a)) notes.push_back(part + " is not used: set " + part + ".LayerUsed=true");
  }
  return notes;
}

/// In the units that are shown.
std::string shown_result(const Assignment& a, const Json& value) {
  return value.is_number() ? quantity(value.get<double>(), unit_of(*a.object, *a.member)) : shown(value);
}

/// Of a result that the user set himself.
std::string told_computed(const Assignment& a, const Json& followed, const Json& given) {
  return a.name() + " is computed from the other values: " + shown_result(a, followed) + "; the " +
         shown_result(a, given) + " given stays until it is computed again";
}

Json value_of(const Assignment& a) {
  Value value;
  a.member->get(*a.object, a.at, value);
  return to_json(value);
}

}  // namespace

std::vector<std::string> computed(StoredEntity& entity, const EntityKind& kind, const std::function<void()>& restore) {
  std::vector<std::string> changed;
  const auto before = fields(entity);
  compute_inputs(entity, kind);
  if (restore) restore();
  const auto after = fields(entity);
  for (size_t i = 0; i < after.size(); ++i) {
    const Field &was = before[i], &is = after[i];
    if (is.name == was.name && is.value == was.value) continue;
    const std::string unit(shown_unit(is.unit));
    changed.push_back(is.value.is_array() ? is.name
                                          : is.name + " " + shown_in_unit(was) + " -> " + shown_in_unit(is) +
                                                (unit.empty() ? "" : " " + unit));
  }
  return changed;
}

namespace {

/// Makes the assignments, and computes what follows.
Edited assigned(StoredEntity& entity, const EntityKind& kind, const std::vector<std::string>& words) {
  Edited edited;
  std::vector<Assignment> assignments;
  for (const std::string& word : words) {
    const auto all = each_of(word);
    for (const std::string& each : all) {  // a later one may name what an earlier one makes
      Assignment& a = assignments.emplace_back(parsed(entity, each));
      needs_an_input(entity, a);
      if (auto told = assign(*entity.GetDBHandle(), a)) edited.converted.push_back(std::move(*told));
    }
    if (all.size() > 1)
      edited.converted.push_back(word.substr(0, word.find('=')) + ": " + std::to_string(all.size()) + " values");
  }
  for (const Assignment& a : assignments) check_references(*entity.GetDBHandle(), a);
  edited.only_name = std::all_of(assignments.begin(), assignments.end(),
                                 [](const Assignment& a) { return a.member->name == "Name" && a.place.empty(); });
  edited.notes = told_unused(assignments);
  if (!kind.compute || edited.only_name) return edited;
  std::vector<Json> given;
  for (const Assignment& a : assignments) given.push_back(value_of(a));
  edited.computed = computed(entity, kind, [&] {
    for (size_t i = 0; i < assignments.size(); ++i) {
      const Assignment& a = assignments[i];
      if (const Json followed = value_of(a); followed != given[i] && !is_unused(a))
        edited.notes.push_back(told_computed(a, followed, given[i]));
    }
    for (const Assignment& a : assignments) set_from_json(*a.object, *a.member, a.at, a.json);
  });
  return edited;
}

}  // namespace

Edited edit(StoredEntity& entity, const EntityKind& kind, const std::vector<std::string>& words) {
  Database& index = *entity.GetDBHandle();
  const auto before = implausible_inputs(entity, index);
  Edited edited = assigned(entity, kind, words);
  for (const Implausible& each : implausible_inputs(entity, index)) {
    if (std::ranges::find(before, each) == before.end()) edited.notes.push_back(each.property + ": " + each.what);
  }
  return edited;
}

}  // namespace tarn::cli
