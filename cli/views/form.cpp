#include "cli/views/form.h"

#include <algorithm>
#include <cmath>
#include <iostream>

#include "cli/units.h"
#include "reflect/json.h"
#include "storage/links.h"
#include "tarn/base/value.h"
#include "tarn/code_names.h"

namespace tarn::cli {
namespace {

using Rows = std::vector<std::vector<Json>>;

std::string trimmed_text(const Json& json) {
  return json.is_string() ? std::string(trimmed(json.get<std::string>())) : shown(json);
}

std::string name_of(Database& database, std::string_view kind, int16_t index) {
  auto rows = database.OpenRecordset("SELECT szName FROM " + index_table_of(kind) + " WHERE nIndex = ?", {cell(index)});
  return rows.AtEof() ? "(missing)" : rows.Fields("szName").text();
}

}  // namespace

std::string element_text(Database& database, Object& owner, const Member& field, Subscripts at) {
  Value value;
  field.get(owner, at, value);
  std::string text = trimmed_text(shown_element(owner, field, at));
  const auto* code = std::get_if<int16_t>(&value);
  if (const auto labels = code ? codes_of(owner, field) : std::span<const Label>(); !labels.empty()) {
    const auto label = std::find_if(labels.begin(), labels.end(), [&](const Label& l) { return l.code == *code; });
    if (label == labels.end()) return text;
    const std::string name(label->text.empty() ? label->name : label->text);
    const bool has_code = name.starts_with(text + ".");  // "8. VAV"
    text = has_code ? name : text + "  " + name;
  }
  if (code && *code != 0 && !field.target_of(owner, at).empty())
    text += "  " + name_of(database, field.target_of(owner, at), *code);
  return text;
}

namespace {

/// The entities that the elements refer to, without empty references.
std::string references_text(Database& database, Object& owner, const Member& field) {
  std::string line;
  for_each_element(field, [&](Subscripts at) {
    const std::string text = element_text(database, owner, field, at);
    if (text != "0") line += (line.empty() ? "" : ", ") + text;
  });
  return line.empty() ? "none" : line;
}

/// Short arrays in a line, long ones by their range.
std::string array_text(Database& database, Object& owner, const Member& field) {
  std::vector<std::string> texts;
  double least = HUGE_VAL, most = -HUGE_VAL;
  for_each_element(field, [&](Subscripts at) {
    texts.push_back(element_text(database, owner, field, at));
    Value value;
    field.get(owner, at, value);
    if (type_of(value) == ValueType::Text) return;
    const double shown = shown_value(real_from(value), unit_of(owner, field));
    least = std::min(least, shown);
    most = std::max(most, shown);
  });
  const std::string count = std::to_string(texts.size());
  if (std::count(texts.begin(), texts.end(), texts.front()) == static_cast<ptrdiff_t>(texts.size()))
    return "all " + count + ": " + texts.front();
  if (texts.size() > 24 && field.type == ValueType::Boolean)
    return count + " values, " + std::to_string(std::count(texts.begin(), texts.end(), "true")) + " true";
  if (texts.size() > 24) return count + " values from " + shown(Json(least)) + " to " + shown(Json(most));
  std::string line;
  for (const std::string& text : texts) line += (line.empty() ? "" : ", ") + text;
  return line;
}

void add_field(Rows& rows, Database& database, Object& owner, const Member& field) {
  const std::string text = !field.indexed()          ? element_text(database, owner, field, {})
                           : field.refers_to.empty() ? array_text(database, owner, field)
                                                     : references_text(database, owner, field);
  rows.push_back({std::string(field.name), text, std::string(shown_unit(unit_of(owner, field)))});
}

}  // namespace

bool is_blank(Object& part) {
  bool blank = true;
  for_each_field(part, [&](Object& owner, const Member& field, const std::string&) {
    for_each_element(field, [&](Subscripts at) {
      Value value;
      field.get(owner, at, value);
      const auto* text = std::get_if<std::string>(&value);
      blank =
          blank && (text ? text->find_first_not_of(std::string(" \0", 2)) == std::string::npos : real_from(value) == 0);
    });
  });
  return blank;
}

void show_fields(Database& database, Object& object) {
  Rows rows;
  for (const Member& member : object.info().members) {
    if (member.stored()) add_field(rows, database, object, member);
  }
  if (!rows.empty()) print_table({"property", "value", "unit"}, rows);
}

void show_form(Database& database, Object& object) {
  show_fields(database, object);
  for (const Member& member : object.info().members) {
    std::string blank;
    for (int number = 1; member.is_part() && number <= member.part_count(object); ++number) {
      Object& part = member.part(object, number);
      const std::string title =
          std::string(member.owned().name) + (member.owned().numbered ? " " + std::to_string(number) : "");
      if (is_blank(part)) {
        blank += (blank.empty() ? "" : ", ") + title;
        continue;
      }
      std::cout << "\n" << title << '\n';
      show_form(database, part);
    }
    if (!blank.empty()) std::cout << "\n" << blank << ": nothing set\n";
  }
}

namespace {

/// The unit that a property has in all objects; none where they differ.
std::string_view common_unit(const std::vector<Titled>& objects, const Member& member) {
  const std::string_view first = shown_unit(unit_of(*objects.front().object, member));
  const auto same = [&](const Titled& each) { return shown_unit(unit_of(*each.object, member)) == first; };
  return std::all_of(objects.begin(), objects.end(), same) ? first : std::string_view();
}

}  // namespace

void show_side_by_side(Database& database, const std::string& what, const std::vector<Titled>& objects) {
  if (objects.empty()) return;
  std::vector<std::string> heads{what};
  std::vector<const Member*> fields;
  for (const Member& member : objects.front().object->info().members) {
    if (!member.stored() || member.indexed()) continue;
    fields.push_back(&member);
    const std::string unit(common_unit(objects, member));
    heads.push_back(std::string(member.name) + (unit.empty() ? "" : ", " + unit));
  }
  Rows rows;
  for (const auto& [title, object] : objects) {
    auto& row = rows.emplace_back();
    row.emplace_back(title);
    for (const Member* field : fields) {
      const std::string_view unit = shown_unit(unit_of(*object, *field));
      const bool in_head = unit.empty() || unit == common_unit(objects, *field);
      row.emplace_back(element_text(database, *object, *field, {}) + (in_head ? "" : " " + std::string(unit)));
    }
  }
  if (objects.size() > 2) return print_table(heads, rows);
  Rows turned;
  for (size_t field = 1; field < heads.size(); ++field) {
    auto& row = turned.emplace_back();
    row.emplace_back(heads[field]);
    for (const auto& each : rows) row.push_back(each[field]);
  }
  std::vector<std::string> titles{what};
  for (const auto& each : objects) titles.push_back(each.title);
  print_table(titles, turned);
}

}  // namespace tarn::cli
