// What the project makes: entities by their kinds' rows, and the four other classes with a factory.

#include <algorithm>

#include "project/kinds.h"
#include "tarn/air_system.h"
#include "tarn/air_system_design.h"
#include "tarn/boiler.h"
#include "tarn/building.h"
#include "tarn/chiller.h"
#include "tarn/construction.h"
#include "tarn/cooling_tower.h"
#include "tarn/door.h"
#include "tarn/plant.h"
#include "tarn/preferences.h"
#include "tarn/project.h"
#include "tarn/reflect/by_name.h"
#include "tarn/reflect/describe.h"
#include "tarn/schedule.h"
#include "tarn/shade.h"
#include "tarn/space.h"
#include "tarn/utility_rate.h"
#include "tarn/weather.h"
#include "tarn/window.h"

namespace tarn {

namespace {

using Project = COM_ProjectData;

void call_factory(Object& project, size_t kind, Arguments, Value& result) {
  result = dynamic_cast<Project&>(project).make(entity_kinds()[kind]);
}

/// The registered kinds' factories, where the class does not list them itself.
ClassInfo with_factories(ClassInfo info) {
  for (size_t i = 0; i < entity_kinds().size(); ++i) {
    Member factory;
    factory.name = entity_kinds()[i].factory;
    factory.kind = MemberKind::Method;
    factory.type = ValueType::Object;
    factory.form = Method{call_factory, i};
    if (info.number(factory.name) < 0) info.add(factory);
  }
  return info;
}

}  // namespace

std::string COM_ProjectData::file_named(std::string_view property) const {
  for (const EntityKind& kind : entity_kinds()) {
    if (kind.file.property == property) return CreateFilespec(std::string(kind.file.suffix));
  }
  return {};
}

ObjectPtr COM_ProjectData::make(const EntityKind& kind) const {
  ObjectPtr entity = kind.create();
  const auto set = [&](std::string_view property, std::string value) {
    if (entity->info().number(property) >= 0) let_property(*entity, property, std::move(value));
  };
  const std::string file = CreateFilespec(std::string(kind.file.suffix));
  if (kind.letter == 0) {
    set("FileName", file);
  } else {
    set("WorkPath", WorkPath());
    set("FilePrefix", CreateFilePrefix({kind.letter}));
    set("DefFileName", file);
  }
  if (kind.results_letter != 0)
    dynamic_cast<SectionPlace&>(*entity).ResultsPrefix = CreateFilePrefix({kind.results_letter});
  if (kind.prepare) kind.prepare(*entity);
  SetDatabaseHandleOfDataObject(*entity);
  return entity;
}

template <typename C>
Ptr<C> COM_ProjectData::made_by(std::string_view factory) const {
  const auto kinds = entity_kinds();
  const auto kind = std::find_if(kinds.begin(), kinds.end(), [&](const auto& row) { return row.factory == factory; });
  return std::static_pointer_cast<C>(make(*kind));
}

Ptr<ADL_AirSystemDesign> COM_ProjectData::NewAirSystemDesign() const {
  auto design = std::make_shared<ADL_AirSystemDesign>();
  design->WorkPath = WorkPath();
  design->FilePrefix = CreateFilePrefix("D");
  return design;
}
Ptr<PRF_ProjectPrefs> COM_ProjectData::NewProjectPrefs() const {
  auto preferences = std::make_shared<PRF_ProjectPrefs>();
  preferences->FileName = ProjectPrefFilename();
  return preferences;
}
Ptr<RPT_ReportOptions> COM_ProjectData::NewReportOptions() const {
  auto options = std::make_shared<RPT_ReportOptions>();
  options->FileName = ReportOptionsFilename();
  return options;
}
Ptr<WTH_Weather> COM_ProjectData::NewWeather() const {
  auto weather = std::make_shared<WTH_Weather>();
  weather->DesFileName = DesWeatherFilename();
  weather->SimFileName = SimWeatherFilename();
  weather->SimInputFileName = SimWeatherInputsFilename();
  SetDatabaseHandleOfDataObject(*weather);
  return weather;
}
Ptr<AS_AirSystem> COM_ProjectData::NewAirSystem() const { return made_by<AS_AirSystem>("NewAirSystem"); }
Ptr<BLR_Boiler> COM_ProjectData::NewBoiler() const { return made_by<BLR_Boiler>("NewBoiler"); }
Ptr<BLD_Building> COM_ProjectData::NewBuilding() const { return made_by<BLD_Building>("NewBuilding"); }
Ptr<CHL_Chiller> COM_ProjectData::NewChiller() const { return made_by<CHL_Chiller>("NewChiller"); }
Ptr<TWR_CoolingTower> COM_ProjectData::NewCoolingTower() const { return made_by<TWR_CoolingTower>("NewCoolingTower"); }
Ptr<DOR_Door> COM_ProjectData::NewDoor() const { return made_by<DOR_Door>("NewDoor"); }
Ptr<URT_UtilityRate> COM_ProjectData::NewElectricRate() const { return made_by<URT_UtilityRate>("NewElectricRate"); }
Ptr<URT_UtilityRate> COM_ProjectData::NewFuelRate() const { return made_by<URT_UtilityRate>("NewFuelRate"); }
Ptr<PLT_Plant> COM_ProjectData::NewPlant() const { return made_by<PLT_Plant>("NewPlant"); }
Ptr<CA_ConstructionAssly> COM_ProjectData::NewRoof() const { return made_by<CA_ConstructionAssly>("NewRoof"); }
Ptr<SCH_Schedule> COM_ProjectData::NewSchedule() const { return made_by<SCH_Schedule>("NewSchedule"); }
Ptr<SHD_Shade> COM_ProjectData::NewShade() const { return made_by<SHD_Shade>("NewShade"); }
Ptr<SPC_Space> COM_ProjectData::NewSpace() const { return made_by<SPC_Space>("NewSpace"); }
Ptr<CA_ConstructionAssly> COM_ProjectData::NewWall() const { return made_by<CA_ConstructionAssly>("NewWall"); }
Ptr<WIN_Window> COM_ProjectData::NewWindow() const { return made_by<WIN_Window>("NewWindow"); }

const ClassInfo& COM_ProjectData::info() const {
  // The last four file names have no blank in their labels, which log readers have always seen so.
  static constexpr auto members = describe<Project>(
      Failures::Trapped, property<&Project::IndexDBName>, property<&Project::SimWeatherInputsFilename>,
      property<&Project::SimWeatherFilename>, property<&Project::DesWeatherFilename>,
      property<&Project::ReportOptionsFilename>, property<&Project::SpaceFilename>,
      property<&Project::ScheduleFilename>, property<&Project::ShadeFilename>, property<&Project::DoorFilename>,
      property<&Project::WallFilename>, property<&Project::WindowFilename>, property<&Project::RoofFilename>,
      property<&Project::TowerFilename>, property<&Project::BoilerFilename>, property<&Project::ChillerFilename>,
      property<&Project::FuelRateFilename>, property<&Project::ElecRateFilename>,
      property<&Project::ProjectPrefFilename>.label("ProjectPrefFilename[PropertyGet]"),
      property<&Project::AirSystemDefaultFilename>.label("AirSystemDefaultFilename[PropertyGet]"),
      property<&Project::BuildingDefaultFileName>.label("BuildingDefaultFileName[PropertyGet]"),
      property<&Project::PlantDefaultFilename>.label("PlantDefaultFilename[PropertyGet]"),
      property<&Project::WorkPath, &Project::SetWorkPath>, property<&Project::FilePrefix>,
      method<&Project::NewAirSystem>, method<&Project::NewAirSystemDesign>, method<&Project::NewBoiler>,
      method<&Project::NewBuilding>, method<&Project::NewChiller>, method<&Project::NewCoolingTower>,
      method<&Project::NewDoor>, method<&Project::NewElectricRate>, method<&Project::NewFuelRate>,
      method<&Project::NewPlant>, method<&Project::NewProjectPrefs>, method<&Project::NewReportOptions>,
      method<&Project::NewRoof>, method<&Project::NewSchedule>, method<&Project::NewShade>, method<&Project::NewSpace>,
      method<&Project::NewWall>, method<&Project::NewWeather>, method<&Project::NewWindow>);
  static const ClassInfo info = with_factories(ClassInfo(members));
  return info;
}

}  // namespace tarn
