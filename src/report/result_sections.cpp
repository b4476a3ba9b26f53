// The weather, and what the design calculation found.
#include <memory>

#include "platform/file_store.h"
#include "report/sections.h"
#include "tarn/air_system.h"
#include "tarn/air_system_design.h"
#include "tarn/hourly_file.h"
#include "tarn/pictures.h"
#include "tarn/weather.h"

namespace tarn::report {
namespace {

std::string design_conditions(const Source& source) {
  const auto weather = source.project.NewWeather();
  if (!files().exists(source.project.DesWeatherFilename()))
    return html::paragraph("The project has no design weather yet.");
  weather->Load();
  constexpr std::pair<std::string_view, const char*> kRows[]{
      {"DesCityName", "city"},         {"DesStateName", "state or country"}, {"DesLatitude", "latitude"},
      {"DesLongitude", "longitude"},   {"DesElevation", "elevation"},        {"SummerDB", "summer dry-bulb"},
      {"SummerWB", "summer wet-bulb"}, {"DailyRange", "daily range"},        {"WinterDB", "winter dry-bulb"}};
  html::Table table{"Design conditions", {{"condition"}, {"value"}}, {}};
  for (const auto& [property, title] : kRows) table.rows.push_back({title, measure_text(source, *weather, property)});
  return table.html("");
}

}  // namespace

std::string weather_section(const Source& source) {
  const std::string conditions = design_conditions(source), file = source.project.SimWeatherInputsFilename();
  if (!files().exists(file)) return conditions + html::paragraph("The project has no hourly weather yet.");
  const auto year = std::make_unique<HW1ReaderWriter>();
  year->Load(file);
  return conditions + html::picture(weather_picture(*year), "A year of hourly weather");
}

namespace {

std::string zone_sizes(const Source& source, const ADL_AirSystemDesign& design) {
  constexpr std::pair<std::string_view, const char*> kColumns[]{
      {"PeakSensible", "sensible cooling"}, {"HeatingLoad", "heating"}, {"DesignAirflow", "airflow"},
      {"VentAirflow", "ventilation"},       {"FloorArea", "floor"},     {"ReheatCoilLoad", "reheat"}};
  html::Table table{"Sizes of the zones of " + design.AirSystem()->stored_name(), {{"zone"}}, {}};
  for (int16_t zone = 1; zone <= design.TSZones()->Count(); ++zone) {
    const ADL_TerminalSizing& sizing = design.TSZone(zone)->TerminalSizing;
    if (zone == 1) {
      for (const auto& [property, title] : kColumns)
        table.heads.push_back(head_of(source, sizing.info(), property, title));
    }
    auto& row = table.rows.emplace_back();
    row.push_back(design.AirSystem()->GetZoneData(zone)->Name.trimmed());
    for (const auto& [property, title] : kColumns) row.push_back(value_text(source, sizing, property));
  }
  return table.html("It has no zones.");
}

}  // namespace

std::string results_section(const Source& source) {
  std::string folds;
  const std::string troubles = source.for_each("air-systems", [&](StoredEntity& entity) {
    const auto design = source.project.NewAirSystemDesign();
    if (!files().exists(design->file_of(entity.Index()))) return;
    const auto system = source.project.NewAirSystem();
    system->Load(entity.Index());
    design->SetAirSystem(system);
    design->Load();
    folds += html::fold(heading_of(entity),
                        source.stale_design_warning(entity) +
                            html::picture(picture_of(*design), entity.stored_name() + ": design results") +
                            zone_sizes(source, *design),
                        true);
  });
  return troubles + (folds.empty() ? html::paragraph("No air system has design results yet.") : folds);
}

}  // namespace tarn::report
