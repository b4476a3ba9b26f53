#include "cli/views/pictures.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <map>

#include "cli/units.h"
#include "cli/views/form.h"
#include "reflect/json.h"
#include "tarn/construction.h"
#include "tarn/schedule.h"

namespace tarn::cli {
namespace {

using Rows = std::vector<std::vector<Json>>;

constexpr double kTolerableDeviation = 0.01;  // of a stored U-value from that of the transfer functions

// ---- walls and roofs

/// A stored value and the computed one; both are shown where they differ by more than the rounding of storage.
std::string beside(double stored, double computed, std::string_view unit) {
  const bool same = std::abs(stored - computed) <= 1e-5 * std::abs(computed);
  return quantity(stored, unit) +
         (same ? ", as computed from the layers"
               : " stored, " + shown(Json(shown_value(computed, unit))) + " computed from the layers");
}

void show_layers(CA_ConstructionAssly& construction) {
  constexpr const char* kProperties[]{"Thickness",    "Conductivity",      "Density",
                                      "SpecificHeat", "ThermalResistance", "Weight"};
  Rows rows;
  for (int slot = 1; slot <= construction.LayerCount(); ++slot) {
    const CA_Layer& layer = construction.layer(slot);
    if (!layer.LayerUsed) continue;
    auto& row = rows.emplace_back();
    row = {Json(slot), Json(layer.Name.trimmed())};
    for (const char* property : kProperties) row.push_back(shown_element(layer, layer.info().find(property), {}));
  }
  std::vector<std::string> heads{"slot", "layer"};
  const ClassInfo& info = construction.layer(1).info();
  for (const char* property : kProperties) heads.emplace_back(shown_unit(info.find(property).unit));
  std::cout << "outside\n";
  print_table(heads, rows);
  std::cout << "inside\n\n";
}

/// Where a load by the transfer functions is not that of the stored U-value.
void tell_steady(const CA_ConstructionAssly& construction) {
  const double steady = construction.steady_u_value();
  const double off = steady > 0 ? construction.OverallUValue / steady - 1 : 0;
  if (std::abs(off) <= kTolerableDeviation) return;
  std::printf(
      "%-18sThe stored U-value is %.3g %% off that of the transfer functions, %s.\n%-18sSet a "
      "layer, or call ComputeSummary and Save, to make both agree with the layers.\n",
      "", off * 100, quantity(steady, "Btu/(hr.ft2.F)").c_str(), "");
}

void show_construction(Database&, StoredEntity& entity) {
  auto& construction = dynamic_cast<CA_ConstructionAssly&>(entity);
  constexpr std::string_view kFlux = "Btu/(hr.ft2.F)";
  std::cout << construction.Name.trimmed() << "\n\n";
  show_layers(construction);
  const auto real = [](const R4& value) { return shown(to_json(Value(float{value}))); };
  const auto line = [](const char* label, const std::string& text) { std::printf("%-18s%s\n", label, text.c_str()); };
  std::cout.flush();
  line("U-value", beside(construction.OverallUValue, construction.layers_u_value(), "Btu/(hr.ft2.F)"));
  tell_steady(construction);
  line("weight", beside(construction.OverallWeight, construction.layers_weight(), "lb/ft2"));
  line("thickness", quantity(construction.GetTotalThickness(), "in"));
  line("outside surface", "absorptivity " + real(construction.Absorptivity) + ", color " +
                              std::to_string(construction.Color) + ", resistance " +
                              quantity(construction.OutsideSurfaceResistance, "hr.ft2.F/Btu"));
  line("inside surface", "resistance " + quantity(construction.InsideSurfaceResistance, "hr.ft2.F/Btu"));
  std::fflush(stdout);
  std::cout << "\ntransfer functions, " << shown_unit(kFlux) << ", sum of c "
            << shown(Json(shown_value(construction.CTrans, kFlux))) << '\n';
  Rows terms;
  for (int i = 1; i <= construction.CoeffUBound(); ++i)
    terms.push_back({Json(i), Json(shown_value(construction.BTrans(i), kFlux)), Json(double{construction.DTrans(i)})});
  print_table({"n", "b", "d"}, terms);
  try {
    const Accuracy accuracy = construction.coefficient_accuracy();
    std::cout << "The 12 terms hold the exact response of the layers to " << shown(Json(accuracy.step * 100))
              << " % of a step, and to " << shown(Json(accuracy.day * 100)) << " % of a day's peak.\n";
    if (const std::string text = construction.told(accuracy); !text.empty()) std::cout << "Warning: " << text << ".\n";
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
      std::printf("%4d %%  |%s|%s\n", row * 100 / kRows, bars.c_str(), row == 1 ? "  .. less, but not 0" : "");
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
    {"BLD_Building", show_building},
    {"CA_ConstructionAssly", show_construction},
    {"CHL_Chiller", show_chiller},
    {"PLT_Plant", show_plant},
    {"SCH_Schedule", show_schedule}};

}  // namespace

void show_entity(Database& database, StoredEntity& entity) {
  const auto picture = kPictures.find(entity.info().name);
  if (picture != kPictures.end())
    picture->second(database, entity);
  else
    show_form(database, entity);
}

}  // namespace tarn::cli
