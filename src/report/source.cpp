#include "report/source.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <nlohmann/json.hpp>

#include "pictures/index_name.h"
#include "project/kinds.h"
#include "reflect/json.h"
#include "storage/kind.h"
#include "tarn/code_names.h"
#include "tarn/member_units.h"

namespace tarn::report {
namespace {

const EntityKind& kind_of(std::string_view group) { return entity_kinds()[*place_of(group)]; }

bool is_of(const StaleResult& result, const StoredEntity& entity) {
  return result.of.kind == entity.kind().default_word && result.of.index == entity.Index();
}

std::vector<int16_t> indexes_of(Database& index, const EntityKind& kind) {
  std::vector<int16_t> all;
  auto rows = index.OpenRecordset("SELECT nIndex FROM " + std::string(blank_entity(kind)->kind().index_table) +
                                  " WHERE nIndex BETWEEN 1 AND 32767 ORDER BY nIndex");
  for (; !rows.AtEof(); rows.MoveNext()) all.push_back(static_cast<int16_t>(rows.Fields("nIndex").integer()));
  return all;
}

}  // namespace

std::string Source::for_each(std::string_view group, const std::function<void(StoredEntity&)>& action) const {
  const EntityKind& kind = kind_of(group);
  std::string troubles;
  for (const int16_t number : indexes_of(*index, kind)) {
    try {
      const auto entity = make_entity(project, kind);
      entity->Load(number);
      action(*entity);
    } catch (const Error& error) {
      troubles += html::warning("The " + std::string(kind.one) + " " + std::to_string(number) +
                                " cannot be shown: " + error.description());
    }
  }
  return troubles;
}

std::string Source::stale_warnings(const StoredEntity& entity) const {
  std::string out;
  for (const StaleResult& each : stale) {
    if (is_of(each, entity))
      out += html::warning(each.results + (each.calculated ? " stale: " + reason_of(each) : " never calculated"));
  }
  return out;
}

std::string Source::stale_design_warning(const StoredEntity& entity) const {
  for (const StaleResult& each : stale) {
    if (is_of(each, entity) && each.results == "design") return html::warning("stale: " + reason_of(each));
  }
  return {};
}

std::string heading_of(const StoredEntity& entity) {
  return std::string(entity.kind().default_word) + " " + std::to_string(entity.Index()) + ": " + entity.stored_name();
}

std::string reason_of(const StaleResult& result) {
  if (!result.edited) return "the edit that made it stale is not known";
  std::string way;
  for (const EntityName& step : result.way) way += (way.empty() ? "" : " \u2192 ") + step.text();
  return result.edited->text() + " changed at " + result.since + " UTC" +
         (way.empty() ? "; it is not used here now" : "; " + way);
}

// ---- values

namespace {

/// "chilled water" of ST_CHILLED_WATER, an enumerator that has no text of its own; other names as they are.
std::string spoken(std::string_view name) {
  const size_t prefix = name.find('_');
  if (prefix == std::string_view::npos) return std::string(name);
  std::string text(name.substr(prefix + 1));
  const bool shouted = std::ranges::none_of(text, [](unsigned char c) { return std::islower(c); });
  for (char& c : text)
    c = c == '_' ? ' ' : shouted ? static_cast<char>(std::tolower(static_cast<unsigned char>(c))) : c;
  return text;
}

std::string code_text(const Object& object, const Member& member, int code) {
  for (const Label& label : codes_of(object, member)) {
    if (label.code == code) return label.text.empty() ? spoken(label.name) : std::string(label.text);
  }
  return std::to_string(code);
}

std::string number_text(const Source& source, double value, std::string_view unit) {
  if (!unit.empty() && is_unit(unit)) return source.in.figure(value, unit);
  return std::abs(value) < 1000 ? six_digits(std::round(value * 1000) / 1000) : six_digits(value);
}

}  // namespace

std::string value_text(const Source& source, const Object& object, const Member& member, Subscripts at) {
  Value value;
  member.get(object, at, value);
  if (const auto* code = std::get_if<int16_t>(&value)) {
    const std::string_view target = member.target_of(object, at);
    if (!target.empty()) return *code == 0 ? "" : index_name(*source.index, target, *code);
    return code_text(object, member, *code);
  }
  const Json json = to_json(value);
  if (json.is_boolean()) return json.get<bool>() ? "yes" : "no";
  if (json.is_number_float()) return number_text(source, json.get<double>(), unit_of(object, member));
  if (!json.is_string()) return json.is_null() ? "" : json.dump();
  std::string text = json.get<std::string>();
  std::erase(text, '\0');
  return std::string(trimmed(text));
}

std::string value_text(const Source& source, const Object& object, std::string_view property, Subscripts at) {
  return value_text(source, object, object.info().find(property), at);
}

std::string measure_text(const Source& source, const Object& object, std::string_view property, Subscripts at) {
  const Member& member = object.info().find(property);
  const std::string text = value_text(source, object, member, at), unit(source.in.unit(unit_of(object, member)));
  return text.empty() || unit.empty() ? text : text + " " + unit;
}

html::Table::Head head_of(const Source& source, const ClassInfo& info, std::string_view property,
                          const std::string& title) {
  const Member& member = info.find(property);
  const bool number = member.refers_to.empty() && member.labels.empty() && catalogued_codes(member).empty() &&
                      member.type != ValueType::Text && member.type != ValueType::Boolean;
  return {title, member.unit_for || !member.unit_beside.empty() ? "" : std::string(source.in.unit(member.unit)),
          number};
}

namespace {

/// Short arrays in a line, without empty references; long ones by how many they are and their range. Empty where
/// nothing is set.
std::string array_text(const Source& source, const Object& object, const Member& member) {
  constexpr size_t kMostShown = 24;
  std::vector<std::string> texts;
  double least = HUGE_VAL, most = -HUGE_VAL;
  for_each_element(member, [&](Subscripts at) {
    texts.push_back(value_text(source, object, member, at));
    Value value;
    member.get(object, at, value);
    if (type_of(value) == ValueType::Text) return;
    least = std::min(least, source.in.value(real_from(value), unit_of(object, member)));
    most = std::max(most, source.in.value(real_from(value), unit_of(object, member)));
  });
  if (least == 0 && most == 0) return {};
  if (std::ranges::all_of(texts, [&](const std::string& text) { return text == texts.front(); }))
    return texts.front().empty() ? "" : "all " + std::to_string(texts.size()) + ": " + texts.front();
  std::erase(texts, "");
  if (texts.size() > kMostShown && least <= most)
    return std::to_string(texts.size()) + " values from " + six_digits(least) + " to " + six_digits(most);
  std::string line;
  for (const std::string& text : texts) line += (line.empty() ? "" : "; ") + text;
  return line;
}

}  // namespace

std::string fields_table(const Source& source, const Object& object, const std::string& caption) {
  html::Table table{caption, {{"property"}, {"value"}, {"unit"}}, {}};
  for (const Member& member : object.info().members) {
    if (!member.stored()) continue;
    const std::string text = member.indexed() ? array_text(source, object, member) : value_text(source, object, member);
    if (!text.empty())
      table.rows.push_back({std::string(member.name), text, std::string(source.in.unit(unit_of(object, member)))});
  }
  return table.html("nothing set");
}

}  // namespace tarn::report
