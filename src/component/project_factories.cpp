// The project's factories as a table: the method, the class it makes, what it sets on the new object in order, and
// whether the object gets the handle of the project's index database.

#include "airsystems/air_system.h"
#include "base/by_name.h"
#include "base/describe.h"
#include "building/building.h"
#include "building/utility_rate.h"
#include "component/class_list.h"
#include "envelope/construction.h"
#include "envelope/door.h"
#include "envelope/shade.h"
#include "envelope/window.h"
#include "plant/boiler.h"
#include "plant/chiller.h"
#include "plant/cooling_tower.h"
#include "plant/plant.h"
#include "results/air_system_design.h"
#include "spaces/schedule.h"
#include "spaces/space.h"
#include "storage/preferences.h"
#include "storage/project.h"
#include "weather/weather.h"

namespace tarn {

struct Setting {
  std::string_view member;  // a property to set, or a method to call
  std::vector<Value> (*values)(const COM_ProjectData&);
};

struct FactoryRow {
  std::string_view method, class_name;
  bool database_handle = true;
  std::vector<Setting> settings;
};

namespace {

using Project = COM_ProjectData;

/// Sets a property to the value of one of the project's.
template <std::string (Project::*Get)() const>
Setting take(std::string_view member) {
  return {member, [](const Project& project) { return std::vector<Value>{(project.*Get)()}; }};
}
template <char Code>
Setting file_prefix() {
  return {"FilePrefix", [](const Project& project) { return std::vector<Value>{project.CreateFilePrefix({Code})}; }};
}
template <URT_RateTypes Type>
Setting rate_type() {
  // In place: clang 14 takes a parameter that is 0 for a null pointer, and makes an empty list of it.
  return {"RateType", [](const Project&) {
            return std::vector<Value>{Value(std::in_place_type<int16_t>, static_cast<int16_t>(Type))};
          }};
}

const Setting kWorkPath = take<&Project::WorkPath>("WorkPath");
constexpr int32_t kMaskOfAllConstituents = 0x7FFFFFF;
const Setting kWholeMask{"SetMask", [](const Project&) {
                           return std::vector<Value>{kMaskOfAllConstituents, int32_t{0}};
                         }};

const FactoryRow kFactories[]{
    {"NewAirSystem", "AS_AirSystem", true, {kWorkPath, file_prefix<'A'>(), kWholeMask}},
    {"NewAirSystemDesign", "ADL_AirSystemDesign", false, {kWorkPath, file_prefix<'D'>()}},
    {"NewBoiler", "BLR_Boiler", true, {take<&Project::BoilerFilename>("FileName")}},
    {"NewBuilding",
     "BLD_Building",
     true,
     {kWorkPath, file_prefix<'B'>(), take<&Project::BuildingDefaultFileName>("DefFileName")}},
    {"NewChiller", "CHL_Chiller", true, {take<&Project::ChillerFilename>("FileName")}},
    {"NewCoolingTower", "TWR_CoolingTower", true, {take<&Project::TowerFilename>("FileName")}},
    {"NewDoor", "DOR_Door", true, {take<&Project::DoorFilename>("FileName")}},
    {"NewElectricRate",
     "URT_UtilityRate",
     true,
     {take<&Project::ElecRateFilename>("FileName"), rate_type<URT_RateTypes::TD_ELECTRIC>()}},
    {"NewFuelRate",
     "URT_UtilityRate",
     true,
     {take<&Project::FuelRateFilename>("FileName"), rate_type<URT_RateTypes::TD_FUEL>()}},
    {"NewPlant",
     "PLT_Plant",
     true,
     {kWorkPath, file_prefix<'P'>(), take<&Project::PlantDefaultFilename>("DefFileName")}},
    {"NewProjectPrefs", "PRF_ProjectPrefs", false, {take<&Project::ProjectPrefFilename>("FileName")}},
    {"NewReportOptions", "RPT_ReportOptions", false, {take<&Project::ReportOptionsFilename>("FileName")}},
    {"NewRoof", "CA_ConstructionAssly", true, {take<&Project::RoofFilename>("FileName")}},
    {"NewSchedule", "SCH_Schedule", true, {take<&Project::ScheduleFilename>("FileName")}},
    {"NewShade", "SHD_Shade", true, {take<&Project::ShadeFilename>("FileName")}},
    {"NewSpace", "SPC_Space", true, {take<&Project::SpaceFilename>("FileName")}},
    {"NewWall", "CA_ConstructionAssly", true, {take<&Project::WallFilename>("FileName")}},
    {"NewWeather",
     "WTH_Weather",
     true,
     {take<&Project::DesWeatherFilename>("DesFileName"), take<&Project::SimWeatherFilename>("SimFileName"),
      take<&Project::SimWeatherInputsFilename>("SimInputFileName")}},
    {"NewWindow", "WIN_Window", true, {take<&Project::WindowFilename>("FileName")}},
};

const FactoryRow& factory(std::string_view method) {
  return *std::find_if(std::begin(kFactories), std::end(kFactories),
                       [method](const FactoryRow& row) { return row.method == method; });
}

/// The members-table form of a factory: its row is all there is to say.
template <size_t Row>
struct FactoryForm {
  template <typename C>
  Member make() const {
    Member m;
    m.name = kFactories[Row].method;
    m.kind = MemberKind::Method;
    m.type = ValueType::Object;
    m.call_label = std::string(m.name) + "()";
    m.call = [](Object& project, Arguments, Value& result) { result = static_cast<C&>(project).make(kFactories[Row]); };
    return m;
  }
};

template <typename... Before, size_t... Row>
ClassInfo describe_with_factories(std::index_sequence<Row...>, const Before&... before) {
  return describe<Project>(Failures::Trapped, before..., FactoryForm<Row>()...);
}

}  // namespace

ObjectPtr COM_ProjectData::make(const FactoryRow& row) {
  ObjectPtr object = create(row.class_name);
  for (const Setting& setting : row.settings) {
    const Member& member = object->info().find(setting.member);
    std::vector<Value> values = setting.values(*this);
    Value nothing;
    if (member.kind == MemberKind::Method)
      call_method(*object, member, values, nothing);
    else
      let_property(*object, member, {}, values.front());
  }
  if (row.database_handle) SetDatabaseHandleOfDataObject(*object);
  return object;
}

template <typename C>
Ptr<C> COM_ProjectData::made_by(std::string_view method) {
  return std::static_pointer_cast<C>(make(factory(method)));
}

Ptr<AS_AirSystem> COM_ProjectData::NewAirSystem() { return made_by<AS_AirSystem>("NewAirSystem"); }
Ptr<ADL_AirSystemDesign> COM_ProjectData::NewAirSystemDesign() {
  return made_by<ADL_AirSystemDesign>("NewAirSystemDesign");
}
Ptr<BLR_Boiler> COM_ProjectData::NewBoiler() { return made_by<BLR_Boiler>("NewBoiler"); }
Ptr<BLD_Building> COM_ProjectData::NewBuilding() { return made_by<BLD_Building>("NewBuilding"); }
Ptr<CHL_Chiller> COM_ProjectData::NewChiller() { return made_by<CHL_Chiller>("NewChiller"); }
Ptr<TWR_CoolingTower> COM_ProjectData::NewCoolingTower() { return made_by<TWR_CoolingTower>("NewCoolingTower"); }
Ptr<DOR_Door> COM_ProjectData::NewDoor() { return made_by<DOR_Door>("NewDoor"); }
Ptr<URT_UtilityRate> COM_ProjectData::NewElectricRate() { return made_by<URT_UtilityRate>("NewElectricRate"); }
Ptr<URT_UtilityRate> COM_ProjectData::NewFuelRate() { return made_by<URT_UtilityRate>("NewFuelRate"); }
Ptr<PLT_Plant> COM_ProjectData::NewPlant() { return made_by<PLT_Plant>("NewPlant"); }
Ptr<PRF_ProjectPrefs> COM_ProjectData::NewProjectPrefs() { return made_by<PRF_ProjectPrefs>("NewProjectPrefs"); }
Ptr<RPT_ReportOptions> COM_ProjectData::NewReportOptions() { return made_by<RPT_ReportOptions>("NewReportOptions"); }
Ptr<CA_ConstructionAssly> COM_ProjectData::NewRoof() { return made_by<CA_ConstructionAssly>("NewRoof"); }
Ptr<SCH_Schedule> COM_ProjectData::NewSchedule() { return made_by<SCH_Schedule>("NewSchedule"); }
Ptr<SHD_Shade> COM_ProjectData::NewShade() { return made_by<SHD_Shade>("NewShade"); }
Ptr<SPC_Space> COM_ProjectData::NewSpace() { return made_by<SPC_Space>("NewSpace"); }
Ptr<CA_ConstructionAssly> COM_ProjectData::NewWall() { return made_by<CA_ConstructionAssly>("NewWall"); }
Ptr<WTH_Weather> COM_ProjectData::NewWeather() { return made_by<WTH_Weather>("NewWeather"); }
Ptr<WIN_Window> COM_ProjectData::NewWindow() { return made_by<WIN_Window>("NewWindow"); }

const ClassInfo& COM_ProjectData::info() const {
  // The last four file names have no blank in their labels, which log readers have always seen so.
  static const ClassInfo info = describe_with_factories(
      std::make_index_sequence<std::size(kFactories)>(), property<&Project::IndexDBName>,
      property<&Project::SimWeatherInputsFilename>, property<&Project::SimWeatherFilename>,
      property<&Project::DesWeatherFilename>, property<&Project::ReportOptionsFilename>,
      property<&Project::SpaceFilename>, property<&Project::ScheduleFilename>, property<&Project::ShadeFilename>,
      property<&Project::DoorFilename>, property<&Project::WallFilename>, property<&Project::WindowFilename>,
      property<&Project::RoofFilename>, property<&Project::TowerFilename>, property<&Project::BoilerFilename>,
      property<&Project::ChillerFilename>, property<&Project::FuelRateFilename>, property<&Project::ElecRateFilename>,
      property<&Project::ProjectPrefFilename>.label("ProjectPrefFilename[PropertyGet]"),
      property<&Project::AirSystemDefaultFilename>.label("AirSystemDefaultFilename[PropertyGet]"),
      property<&Project::BuildingDefaultFileName>.label("BuildingDefaultFileName[PropertyGet]"),
      property<&Project::PlantDefaultFilename>.label("PlantDefaultFilename[PropertyGet]"),
      property<&Project::WorkPath, &Project::SetWorkPath>, property<&Project::FilePrefix>);
  return info;
}

}  // namespace tarn
