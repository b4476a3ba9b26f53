#include "cli/pictures.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <map>

#include "base/value.h"
#include "component/json.h"
#include "envelope/construction.h"
#include "spaces/schedule.h"

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

std::string element_text(Database& database, Object& owner, const Member& field, Subscripts at) {
  Value value;
  field.get(owner, at, value);
  std::string text = trimmed_text(to_json(value));
  const auto* code = std::get_if<int16_t>(&value);
  if (code && !field.labels.empty()) {
    const auto labels = field.labels_of(owner);
    const auto label = std::find_if(labels.begin(), labels.end(), [&](const Label& l) { return l.code == *code; });
    if (label == labels.end()) return text;
    const std::string name(label->text.empty() ? label->name : label->text);
    text = name.starts_with(text) ? name : text + "  " + name;  // "8. VAV" has its code
  }
  if (code && *code != 0 && !field.target_of(owner).empty())
    text += "  " + name_of(database, field.target_of(owner), *code);
  return text;
}

/// What the elements refer to, those that do.
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
    least = std::min(least, real_from(value));
    most = std::max(most, real_from(value));
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
  rows.push_back({std::string(field.name), text, std::string(field.unit)});
}

/// Whether nothing is set in a part: a slot that is not in use.
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

/// The fields, then each part under a heading of its own, blank ones in a line.
void show_form(Database& database, Object& object) {
  Rows rows;
  for (const Member& member : object.info().members) {
    if (member.stored()) add_field(rows, database, object, member);
  }
  if (!rows.empty()) print_table({"property", "value", "unit"}, rows);
  for (const Member& member : object.info().members) {
    std::string blank;
    for (int number = 1; member.is_part() && number <= member.part_count(object); ++number) {
      Object& part = member.part(object, number);
      const std::string title =
          std::string(member.part_name) + (member.numbered_part ? " " + std::to_string(number) : "");
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

// ---- walls and roofs

/// Stored and computed, both where they differ by more than storage does.
std::string beside(double stored, double computed, const std::string& unit) {
  const bool same = std::abs(stored - computed) <= 1e-5 * std::abs(computed);
  const std::string first = shown(Json(stored)) + " " + unit;
  return first +
         (same ? ", as computed from the layers" : " stored, " + shown(Json(computed)) + " computed from the layers");
}

void show_layers(CA_ConstructionAssly& construction) {
  Rows rows;
  for (int slot = 1; slot <= construction.LayerCount(); ++slot) {
    const CA_Layer& layer = construction.layer(slot);
    if (!layer.LayerUsed) continue;
    const auto real = [](float value) { return to_json(Value(value)); };
    rows.push_back({Json(slot), Json(layer.Name.trimmed()), real(layer.ThicknessInches()), real(layer.Conductivity),
                    real(layer.Density), real(layer.SpecificHeat), real(layer.ThermalResistance), real(layer.Weight)});
  }
  std::cout << "outside\n";
  print_table({"slot", "layer", "in", "Btu/(hr.ft.F)", "lb/ft3", "Btu/(lb.F)", "hr.ft2.F/Btu", "lb/ft2"}, rows);
  std::cout << "inside\n\n";
}

void show_construction(Database&, StoredEntity& entity) {
  auto& construction = dynamic_cast<CA_ConstructionAssly&>(entity);
  std::cout << construction.Name.trimmed() << "\n\n";
  show_layers(construction);
  const float resistance = construction.GetTotalThermalResistance();
  const auto real = [](const R4& value) { return shown(to_json(Value(float{value}))); };
  const auto line = [](const char* label, const std::string& text) { std::printf("%-18s%s\n", label, text.c_str()); };
  std::cout.flush();
  line("U-value", beside(construction.OverallUValue, resistance > 0 ? 1 / double{resistance} : 0, "Btu/(hr.ft2.F)"));
  line("weight", beside(construction.OverallWeight, construction.GetTotalWeight(), "lb/ft2"));
  line("thickness", shown(to_json(Value(construction.GetTotalThickness()))) + " in");
  line("outside surface", "absorptivity " + real(construction.Absorptivity) + ", color " +
                              std::to_string(construction.Color) + ", resistance " +
                              real(construction.OutsideSurfaceResistance) + " hr.ft2.F/Btu");
  line("inside surface", "resistance " + real(construction.InsideSurfaceResistance) + " hr.ft2.F/Btu");
  std::fflush(stdout);
  std::cout << "\ntransfer functions, Btu/(hr.ft2.F), sum of c " << shown(Json(double{construction.CTrans})) << '\n';
  Rows terms;
  for (int i = 1; i <= construction.CoeffUBound(); ++i)
    terms.push_back({Json(i), Json(double{construction.BTrans(i)}), Json(double{construction.DTrans(i)})});
  print_table({"n", "b", "d"}, terms);
  try {
    std::cout << "The 12 terms hold the response of the layers to "
              << shown(Json(construction.coefficient_error() * 100)) << " % (step and sunny day).\n";
  } catch (const Error& error) {
    std::cout << "The layers have no transfer functions: " << error.description() << ".\n";
  }
}

// ---- schedules

/// A profile's 24 values, hour 0 at the left: bars for per cent, letters for occupancy and rate periods.
void show_profile(const SCH_Schedule& schedule, int profile) {
  std::cout << "\nprofile " << profile << "  " << trimmed(schedule.ProfileName(profile).str()) << '\n';
  const auto value = [&](int hour) { return int{schedule.HourlyValue(profile, hour)}; };
  constexpr int kRows = 5;
  if (schedule.ScheduleType == SCH_ScheduleTypes::ST_FRACTIONAL) {
    for (int row = kRows; row > 0; --row) {
      std::string bars;
      for (int hour = 0; hour < 24; ++hour) {
        const bool reached = value(hour) * kRows + 50 >= row * 100;
        bars += reached ? "##" : row == 1 && value(hour) > 0 ? ".." : "  ";
      }
      std::printf("%4d %%  |%s|\n", row * 100 / kRows, bars.c_str());
    }
  } else {
    const bool rate = schedule.ScheduleType == SCH_ScheduleTypes::ST_RATE;
    const std::map<int, char> letters =
        rate ? std::map<int, char>{{1, 'P'}, {2, 'M'}, {3, 'N'}, {4, 'O'}} : std::map<int, char>{{0, '.'}, {-1, '#'}};
    std::string line;
    for (int hour = 0; hour < 24; ++hour) {
      const auto letter = letters.find(value(hour));
      line += std::string(2, letter == letters.end() ? '?' : letter->second);
    }
    std::printf("%8s%s%s\n", "|", line.c_str(),
                rate ? "|  Peak, Mid-peak, Normal, Off-peak" : "|  # occupied, . unoccupied");
  }
  std::printf("%8s0     3     6     9     12    15    18    21\n", "");
}

void show_schedule(Database&, StoredEntity& entity) {
  auto& schedule = dynamic_cast<SCH_Schedule&>(entity);
  const auto type = text_of(labels<SCH_ScheduleTypes>, schedule.ScheduleType.raw);
  std::cout << schedule.Name.trimmed() << "  "
            << (type.empty() ? "type " + std::to_string(schedule.ScheduleType.raw) : std::string(type)) << '\n';
  const auto used = schedule.GetUsedProfiles(false);
  std::cout.flush();
  for (int32_t i = 1; i <= used->Count(); ++i) {
    const int profile = std::get<int16_t>(used->Item(i));
    if (profile >= 1 && profile <= 8) show_profile(schedule, profile);
  }
  std::fflush(stdout);
  std::cout << "\nprofile by month and day type\n";
  Rows rows;
  std::vector<std::string> heads{"month"};
  for (const Label& day : labels<SCH_Days>) heads.emplace_back(day.text.empty() ? day.name.substr(0, 3) : day.text);
  for (int month = 1; month <= 12; ++month) {
    auto& row = rows.emplace_back();
    row.emplace_back(month);
    for (int day = 0; day <= 8; ++day) row.emplace_back(int{schedule.Applicable(month, day)});
  }
  print_table(heads, rows);
}

const std::map<std::string_view, void (*)(Database&, StoredEntity&)> kPictures{
    {"CA_ConstructionAssly", show_construction}, {"SCH_Schedule", show_schedule}};

}  // namespace

void show_entity(Database& database, StoredEntity& entity) {
  const auto picture = kPictures.find(entity.info().name);
  if (picture != kPictures.end())
    picture->second(database, entity);
  else
    show_form(database, entity);
}

}  // namespace tarn::cli
