// Air systems with their zones, the plant with its equipment, buildings and what they pay.
#include "report/sections.h"
#include "tarn/air_system.h"
#include "tarn/boiler.h"
#include "tarn/building.h"
#include "tarn/chiller.h"
#include "tarn/pictures.h"
#include "tarn/plant.h"

namespace tarn::report {
namespace {

/// "preheat coil, hot water"; without the source where it does not matter.
template <typename Coil>
std::string coil_text(const Source& source, const std::string& what, const Coil& coil) {
  return AS_HeatCoolSourceTypes{coil.Source} == AS_HeatCoolSourceTypes::ST_IRRELEVANT
             ? what
             : what + ", " + value_text(source, coil, "Source");
}

/// The components that the air passes, in its direction.
std::vector<std::string> air_path(const Source& source, AS_AirSystem& system) {
  std::vector<std::string> path{"outdoor air"};
  const auto add = [&](bool used, std::string what) {
    if (used) path.push_back(std::move(what));
  };
  add(system.GetVentReclaim()->Used, "ventilation reclaim");
  add(system.GetEconomizer()->Used, "outdoor air economizer");
  add(system.GetPreheatCoil()->Used, coil_text(source, "preheat coil", *system.GetPreheatCoil()));
  add(system.GetPrecoolCoil()->Used, coil_text(source, "precool coil", *system.GetPrecoolCoil()));
  add(system.GetCoolSys()->Used, coil_text(source, "cooling coil", *system.GetCoolSys()));
  add(system.GetHeatSys()->Used, coil_text(source, "heating coil", *system.GetHeatSys()));
  add(system.GetHumidity()->Used, "humidifier");
  add(system.GetSupplyFan()->Used, "supply fan, " + value_text(source, *system.GetSupplyFan(), "FanType"));
  const int zones = system.GetAirSystem()->NumZones;
  path.push_back(std::to_string(zones) + (zones == 1 ? " zone" : " zones"));
  add(system.GetRetPlenum()->Used, "return plenum");
  add(system.GetReturnFan()->Used, "return fan, " + value_text(source, *system.GetReturnFan(), "FanType"));
  return path;
}

std::string schematic_line(const std::vector<std::string>& path) {
  std::string items;
  for (const std::string& each : path) items += "<li><span>" + html::escaped(each) + "</span></li>\n";
  return html::element("ol", items, "class=\"path\" aria-label=\"the way of the air\"");
}

std::string spaces_text(const Source& source, const AS_ZoneData& zone) {
  std::string text;
  for (int i = 1; i <= zone.TotalSpacesInZone && i <= 50; ++i) {
    const std::string name = value_text(source, zone, "SpaceID", std::span<const int>(&i, 1));
    const int times = zone.SpaceMultiplier(i);
    if (!name.empty()) text += (text.empty() ? "" : ", ") + name + (times > 1 ? " x " + std::to_string(times) : "");
  }
  return text;
}

/// A column of the zones, and the choice by which all zones have what the first one has.
struct ZoneColumn {
  std::string_view property;
  const char* title;
  Bool ZoneRecord::*same;
};
constexpr ZoneColumn kZoneColumns[]{{"OccCoolSetpt", "cooling, occupied", &ZoneRecord::AllZoneTstatSame},
                                    {"UnoccCoolSetpt", "cooling, unoccupied", &ZoneRecord::AllZoneTstatSame},
                                    {"OccHeatSetpt", "heating, occupied", &ZoneRecord::AllZoneTstatSame},
                                    {"UnoccHeatSetpt", "heating, unoccupied", &ZoneRecord::AllZoneTstatSame},
                                    {"TermType", "terminal", &ZoneRecord::AllZoneTermsSame},
                                    {"ReheatCoil", "reheat", &ZoneRecord::AllZoneTermsSame}};

std::string zones_table(const Source& source, AS_AirSystem& system) {
  html::Table table{"Zones of " + system.stored_name(), {{"zone"}, {"spaces"}}, {}};
  const AS_ZoneData sample;
  for (const ZoneColumn& column : kZoneColumns)
    table.heads.push_back(head_of(source, sample.info(), column.property, column.title));
  for (int16_t number = 1; number <= system.GetAirSystem()->NumZones; ++number) {
    const auto zone = system.GetZoneData(number), first = system.GetZoneData(1);
    auto& row = table.rows.emplace_back(std::vector<std::string>{zone->Name.trimmed(), spaces_text(source, *zone)});
    for (const ZoneColumn& column : kZoneColumns)
      row.push_back(value_text(source, (*first).*column.same ? *first : *zone, column.property));
  }
  return table.html("It has no zones.");
}

}  // namespace

std::string systems_section(const Source& source) {
  html::Table table{"Air systems", {{"name"}, {"type"}, {"zones", "", true}, {"sized"}, {"simulated"}}, {}};
  std::string folds;
  const std::string troubles = source.for_each("air-systems", [&](StoredEntity& entity) {
    auto& system = as<AS_AirSystem>(entity);
    const auto general = system.GetAirSystem();
    table.rows.push_back({entity.stored_name(), value_text(source, *general, "SystemType"),
                          std::to_string(general->NumZones), value_text(source, *general, "Sized"),
                          value_text(source, *general, "Simulated")});
    folds += html::fold(
        heading_of(entity),
        source.stale_warnings(entity) + schematic_line(air_path(source, system)) + zones_table(source, system), true);
  });
  return troubles + table.html("There are no air systems yet.") + folds;
}

std::string plant_section(const Source& source) {
  std::string out;
  const auto folded = [&](std::string_view group, const std::function<std::string(StoredEntity&)>& content) {
    size_t shown = 0;
    std::string folds;
    const std::string troubles = source.for_each(group, [&](StoredEntity& entity) {
      folds += html::fold(heading_of(entity), source.stale_warnings(entity) + content(entity), ++shown <= kShownOpen);
    });
    out += troubles + folds;
  };
  const UnitSystem units = source.in.system();
  folded("plants", [&](StoredEntity& entity) {
    return html::picture(plant_picture(as<PLT_Plant>(entity), units), entity.stored_name() + ": schematic");
  });
  folded("chillers", [&](StoredEntity& entity) {
    return html::picture(chiller_picture(as<CHL_Chiller>(entity), units), entity.stored_name() + ": performance");
  });
  folded("boilers", [&](StoredEntity& entity) {
    return html::picture(boiler_picture(as<BLR_Boiler>(entity), units), entity.stored_name() + ": part load");
  });
  folded("towers",
         [&](StoredEntity& entity) { return fields_table(source, entity, entity.stored_name() + ": properties"); });
  return out.empty() ? html::paragraph("There is no plant and no equipment yet.") : out;
}

std::string costs_section(const Source& source) {
  std::string folds, troubles;
  const auto folded = [&](std::string_view group, const std::function<const Object&(StoredEntity&)>& shown) {
    troubles += source.for_each(group, [&](StoredEntity& entity) {
      folds += html::fold(
          heading_of(entity),
          source.stale_warnings(entity) + fields_table(source, shown(entity), entity.stored_name() + ": properties"),
          false);
    });
  };
  const auto itself = [](StoredEntity& entity) -> const Object& { return entity; };
  folded("buildings",
         [](StoredEntity& entity) -> const Object& { return *as<BLD_Building>(entity).GetBuildingInputs(); });
  folded("electric-rates", itself);
  folded("fuel-rates", itself);
  return troubles + (folds.empty() ? html::paragraph("There are no buildings and no utility rates yet.") : folds);
}

}  // namespace tarn::report
