#include "cli/views/result_pictures.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <iostream>

#include "cli/command.h"
#include "cli/units.h"
#include "pictures/design_states.h"
#include "reflect/json.h"
#include "tarn/base/value.h"
#include "weather/calendar.h"
#include "weather/psychrometrics.h"

namespace tarn::cli {
namespace {

using Rows = std::vector<std::vector<Json>>;

std::string field_text(Object& object, const Member& field) {
  Value value;
  field.get(object, {}, value);
  if (!field.labels.empty()) {
    if (auto text = to_json(object, field).at("text").get<std::string>(); !text.empty()) return text;
  }
  return type_of(value) == ValueType::Int16 ? std::to_string(std::get<int16_t>(value))
                                            : figure(real_from(value), field.unit);
}

// ---- blocks of fields

/// The fields of an object whose names begin alike.
struct Block {
  std::string_view prefix, title;
};

/// "EnteringDB" as "entering DB".
std::string words_of(std::string_view name) {
  std::string out;
  for (size_t i = 0; i < name.size(); ++i) {
    const auto upper = [&](size_t at) {
      return at < name.size() && std::isupper(static_cast<unsigned char>(name[at]));
    };
    const bool begins = upper(i) && (i == 0 || !upper(i - 1));
    if (begins && i > 0) out += ' ';
    out += begins && !upper(i + 1) ? static_cast<char>(std::tolower(static_cast<unsigned char>(name[i]))) : name[i];
  }
  return out;
}

bool belongs(const Member& field, const Block& block, std::span<const Block> all) {
  if (!field.stored() || field.indexed() || !field.name.starts_with(block.prefix)) return false;
  return std::ranges::none_of(all, [&](const Block& other) {
    return other.prefix.size() > block.prefix.size() && field.name.starts_with(other.prefix);
  });
}

/// A title, and a line for each field; none where nothing is set.
std::vector<std::string> lines_of(Object& object, const Block& block, std::span<const Block> all) {
  std::vector<std::string> lines;
  bool blank = true;
  for (const Member& field : object.info().members) {
    if (!belongs(field, block, all)) continue;
    Value value;
    field.get(object, {}, value);
    blank = blank && real_from(value) == 0;
    const std::string name = words_of(field.name.substr(block.prefix.size())), text = field_text(object, field);
    const size_t gap = name.size() + text.size() < 32 ? 32 - name.size() - text.size() : 1;
    lines.push_back("  " + name + std::string(gap, ' ') + text + " " + std::string(shown_unit(field.unit)));
  }
  if (blank) return {};
  lines.insert(lines.begin(), std::string(block.title));
  return lines;
}

/// Blocks in two columns, each where there is more room; blank ones in a line.
void show_blocks(Object& object, std::span<const Block> all) {
  std::vector<std::string> columns[2];
  std::string blank;
  for (const Block& block : all) {
    const auto lines = lines_of(object, block, all);
    if (lines.empty()) {
      blank += (blank.empty() ? "" : ", ") + std::string(block.title);
      continue;
    }
    auto& column = columns[columns[0].size() <= columns[1].size() ? 0 : 1];
    if (!column.empty()) column.emplace_back();
    column.insert(column.end(), lines.begin(), lines.end());
  }
  constexpr size_t kColumn = 54;
  for (size_t i = 0; i < std::max(columns[0].size(), columns[1].size()); ++i) {
    std::string line = i < columns[0].size() ? columns[0][i] : "";
    if (i < columns[1].size() && !columns[1][i].empty())
      line += std::string(line.size() < kColumn ? kColumn - line.size() : 1, ' ') + columns[1][i];
    std::cout << line.substr(0, line.find_last_not_of(' ') + 1) << '\n';
  }
  if (!blank.empty()) std::cout << (columns[0].empty() ? "" : "\n") << "not used: " << blank << '\n';
}

constexpr Block kSystemBlocks[]{{"Clg", "cooling coil at its peak"},
                                {"Htg", "heating coil at heating design"},
                                {"Precool", "precool coil"},
                                {"Preheat", "preheat coil"},
                                {"Humidifier", "humidifier"},
                                {"SupplyFan", "supply fan"},
                                {"ReturnFan", "return fan"},
                                {"Vent", "ventilation"},
                                {"", "served"}};
constexpr Block kZoneBlocks[]{{"", "zone"},
                              {"ReheatCoil", "reheat coil"},
                              {"CoolCoil", "terminal cooling coil"},
                              {"HeatCoil", "terminal heating coil"},
                              {"TermFan", "terminal fan"},
                              {"HeatUnit", "heating unit"}};

// ---- tables

/// Heads, a row of units, rows.
void print_report(const std::vector<std::string>& heads, std::vector<Json> units, Rows rows, std::string_view sides) {
  rows.insert(rows.begin(), std::move(units));
  print_table(heads, rows, sides);
}

/// A row for each object: its texts, then its fields by name, in their units.
void print_fields(const std::vector<std::string>& heads, const std::vector<std::string>& fields,
                  const std::vector<std::pair<std::vector<Json>, Object*>>& objects) {
  if (objects.empty()) return;
  const size_t texts = objects.front().first.size();
  std::vector<Json> units(texts, Json(""));
  for (const std::string& field : fields)
    units.emplace_back(shown_unit(objects.front().second->info().find(field).unit));
  Rows rows;
  for (const auto& [before, object] : objects) {
    auto& row = rows.emplace_back(before);
    for (const std::string& field : fields) row.emplace_back(field_text(*object, object->info().find(field)));
  }
  print_report(heads, units, rows, "r" + std::string(texts - 1, 'l') + std::string(fields.size(), 'r'));
}

void show_zones(const ADL_AirSystemDesign& design) {
  std::vector<std::pair<std::vector<Json>, Object*>> zones;
  for (int16_t zone = 1; zone <= design.TSZones()->Count(); ++zone) {
    ADL_TerminalSizing& sizing = design.TSZone(zone)->TerminalSizing;
    zones.push_back({{std::to_string(zone), design.AirSystem()->GetZoneData(zone)->Name.trimmed(),
                      hour_text(peak_hour(sizing.PeakMonth, sizing.PeakHour))},
                     &sizing});
  }
  std::cout << (zones.empty() ? "\nno zones\n" : "\nzones\n");
  print_fields(
      {"", "zone", "peak", "sensible", "heating", "airflow", "per area", "ventilation", "floor", "reheat"},
      {"PeakSensible", "HeatingLoad", "DesignAirflow", "AirflowPerArea", "VentAirflow", "FloorArea", "ReheatCoilLoad"},
      zones);
}

// ---- what loads consist of

std::string_view detail_unit(int component) {
  using enum ADL_LoadComponents;
  const ADL_LoadComponents c{static_cast<int16_t>(component)};
  if (c <= Ceilings) return "ft2";
  if (c <= ElectricEquipment) return "W";
  if (c == People) return "people";
  return c == Infiltration || c == Ventilation ? "CFM" : "";
}

/// A column of a breakdown: details, or loads with the total that the file has.
struct LoadColumn {
  const char* head;
  const ByComponent& values;
  std::optional<float> total;
};

bool is_empty(const LoadColumn& column) {
  return std::ranges::all_of(column.values.items, [](const R4& value) { return value == 0.0F; });
}

std::string component_cell(const LoadColumn& column, int component) {
  const float value = column.values(component);
  if (value == 0) return "";
  if (column.total) return figure(value, "Btu/hr");
  return measure(value, detail_unit(component));
}

/// The sum of the column's values as they are printed, rounded, so that it adds up on paper.
double total_of(const LoadColumn& column) {
  double sum = 0;
  for (const R4& value : column.values.items) sum += std::nearbyint(shown_value(value, "Btu/hr"));
  return sum;
}

/// The components that are not zero, columns that have any, and totals.
void show_breakdown(const std::vector<LoadColumn>& all) {
  std::vector<const LoadColumn*> columns;
  std::vector<std::string> heads{"component"};
  std::vector<Json> units{""}, totals{"total"};
  for (const LoadColumn& column : all) {
    if (is_empty(column)) continue;
    columns.push_back(&column);
    heads.emplace_back(column.head);
    units.emplace_back(column.total ? shown_unit("Btu/hr") : "");
    totals.emplace_back(column.total ? grouped(total_of(column), 0) : "");
  }
  if (columns.empty()) {
    std::cout << "no loads\n";
    return;
  }
  Rows rows;
  for (int component = 1; component <= kLoadComponents; ++component) {
    std::vector<Json> row{std::string(text_of(labels<ADL_LoadComponents>, component))};
    for (const LoadColumn* column : columns) row.emplace_back(component_cell(*column, component));
    if (std::any_of(row.begin() + 1, row.end(), [](const Json& cell) { return cell != ""; })) rows.push_back(row);
  }
  rows.push_back(totals);
  print_report(heads, units, rows, "l" + std::string(columns.size(), 'r'));
  for (const LoadColumn* column : columns) {
    if (!column->total) continue;
    const double sum = total_of(*column), stored = shown_value(*column->total, "Btu/hr");
    if (!(std::abs(stored - sum) <= kLoadComponents / 2.0 + 1e-4 * std::abs(sum)))
      std::cout << "the file has " << measure(*column->total, "Btu/hr") << " as the total of " << column->head << '\n';
  }
}

std::string degrees(double value) { return measure(value, "F"); }

template <typename R>
void show_conditions(const R& loads, const std::optional<PeakHour>& peak) {
  if (peak)
    std::cout << "cooling at " << hour_text(peak) << ", " << degrees(loads.ClgOutdoorDB) << " outdoors, wet-bulb "
              << degrees(loads.ClgOutdoorWB);
  std::cout << (peak ? "" : "no cooling peak") << "; heating at design, " << degrees(loads.HtgOutdoorDB)
            << " outdoors\n";
}

void show_loads(const ADL_DLAir& loads) {
  std::cout << "\nloads: ";
  show_conditions(loads, peak_hour(loads.ClgPeakMonth, loads.ClgPeakHour));
  show_breakdown({{"cooling of", loads.ClgDetail, {}},
                  {"sensible", loads.ClgSensible, loads.ClgTotalSensible},
                  {"latent", loads.ClgLatent, loads.ClgTotalLatent},
                  {"heating of", loads.HtgDetail, {}},
                  {"heating", loads.HtgSensible, loads.HtgTotalSensible},
                  {"heating latent", loads.HtgLatent, loads.HtgTotalLatent}});
  const auto load = [](double value) { return figure(value, "Btu/hr"); };
  constexpr double kBtuPerTon = 12000;
  std::cout << "central coils: cooling " << load(loads.ClgCoilSensible) << " sensible and " << load(loads.ClgCoilLatent)
            << " latent, " << measure((loads.ClgCoilSensible + loads.ClgCoilLatent) / kBtuPerTon, "tons")
            << "; heating " << measure(loads.HtgCoilSensible, "Btu/hr") << '\n';
}

// ---- the air's way

void show_process(const ADL_AirSystemDesign& design) {
  const auto peak = cooling_peak(design);
  if (!peak) return;
  const PsychroRecord& air = design.SPAir.at(peak->month, peak->hour);
  const double pressure = pressure_of(design);
  Rows rows;
  for (int point = 1; point <= kAirPoints; ++point) {
    if (!is_passed(air, point)) continue;
    const double bulb = celsius(air.DryBulb(point)), ratio = air.HumidityRatio(point);
    rows.push_back({std::to_string(point), std::string(text_of(labels<ADL_AirPoints>, point)),
                    figure(air.DryBulb(point), "F"), figure(fahrenheit(wet_bulb(bulb, ratio, pressure)), "F"),
                    figure(ratio, "lb/lb"), figure(air.Airflow(point), "CFM"),
                    figure(air.SensibleChange(point), "Btu/hr"), figure(air.LatentChange(point), "Btu/hr")});
  }
  std::cout << "\nair at " << hour_text(peak) << ", wet-bulbs at " << measure(design.Weather.Altitude, "ft") << '\n';
  if (rows.empty()) {
    std::cout << "no states of the air\n";
    return;
  }
  print_report({"", "point", "dry-bulb", "wet-bulb", "humidity", "airflow", "sensible", "latent"},
               {"", "", shown_unit("F"), shown_unit("F"), shown_unit("lb/lb"), shown_unit("CFM"), shown_unit("Btu/hr"),
                shown_unit("Btu/hr")},
               rows, "rlrrrrrr");
}

}  // namespace

void show_system(ADL_AirSystemDesign& design) {
  std::cout << '\n';
  show_blocks(design.SSAir, kSystemBlocks);
  show_zones(design);
  show_loads(design.DLAir);
  show_process(design);
}

void show_zone(const ADL_AirSystemDesign& design, int zone) {
  const auto number = static_cast<int16_t>(zone);
  std::cout << '\n';
  show_blocks(design.TSZone(number)->TerminalSizing, kZoneBlocks);
  const auto loads = design.DLZone(number);
  const ADL_LoadDetails& details = loads->LoadDetails;
  const auto peak = peak_hour(details.PeakMonth, details.PeakHour);
  const ZoneLoadsRecord none{};
  const ZoneLoadsRecord& cooling = peak ? loads->at(peak->month, peak->hour) : none;
  const ZoneLoadsRecord& heating = loads->HeatingLoads;
  std::cout << "\nloads: ";
  show_conditions(details, peak);
  std::cout << "thermostat " << degrees(details.ClgThermostat) << " cooling, " << degrees(details.HtgThermostat)
            << " heating\n";
  show_breakdown({{"cooling of", details.ClgDetail, {}},
                  {"sensible", cooling.Sensible, cooling.TotalSensible},
                  {"latent", cooling.Latent, cooling.TotalLatent},
                  {"heating of", details.HtgDetail, {}},
                  {"heating", heating.Sensible, heating.TotalSensible},
                  {"heating latent", heating.Latent, heating.TotalLatent}});
  std::vector<std::pair<std::vector<Json>, Object*>> spaces;
  for (const auto& space : loads->spaces()) {
    spaces.push_back({{std::to_string(space->SpaceID), space->Name.trimmed(),
                       hour_text(peak_hour(space->PeakMonth, space->PeakHour))},
                      space.get()});
  }
  std::cout << (spaces.empty() ? "\nno spaces\n" : "\nspaces, each of as many equal ones as stands under \"times\"\n");
  print_fields({"", "space", "peak", "times", "floor", "people", "airflow", "sensible", "latent", "heating"},
               {"Multiplier", "FloorArea", "People", "Airflow", "ClgTotalSensible", "ClgTotalLatent", "HtgTotal"},
               spaces);
  for (const auto& space : loads->spaces()) {
    std::cout << "\nspace " << space->SpaceID << " " << space->Name.trimmed() << '\n';
    show_breakdown({{"cooling of", space->ClgDetail, {}},
                    {"sensible", space->ClgSensible, space->ClgTotalSensible},
                    {"latent", space->ClgLatent, space->ClgTotalLatent},
                    {"heating of", space->HtgDetail, {}},
                    {"heating", space->HtgLoad, space->HtgTotal}});
  }
}

}  // namespace tarn::cli
