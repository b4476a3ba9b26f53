#include "storage/schema.h"

#include <sstream>
#include <string_view>

#include "platform/database.h"

namespace tarn {
namespace {

struct Table {
  std::string_view name;
  std::string_view columns;  // the first letters tell the type: n whole, f real, b Boolean, sz text
};

// `nCondFlowUnitsHTg` has its capital T in every existing project.
constexpr Table kIndexTables[]{
    {"WindowIndex", "nIndex szName fOverallUValue fOverallShadeCo fHeight fWidth"},
    {"DoorIndex", "nIndex szName fArea fSolidUValue fGlassUValue"},
    {"ShadeIndex", "nIndex szName"},
    {"WallIndex", "nIndex szName fOverallUValue fOverallWeight fThickness"},
    {"RoofIndex", "nIndex szName fOverallUValue fOverallWeight fThickness"},
    {"ScheduleIndex", "nIndex szName nScheduleType"},
    {"SpaceIndex", "nIndex szName fFloorArea fNumPeople fLightingDensity"},
    {"AirSystemIndex",
     "nIndex szName nEquipClass nSystemType bSized bCoilDataValid bSimulated bCWCoilsExist bHWCoilsExist "
     "bSTMCoilsExist bDesHasChanged bSimHasChanged"},
    {"PlantIndex", "nIndex szName nType bSized bSimulated bSimHasChanged bDesHasChanged"},
    {"BuildingIndex", "nIndex szName bSimulated bHasChanged"},
    {"ChillerIndex",
     "nIndex szName nChillerType nFunctionType nFuelType bAutoSizeCapacity fFLCapacityClg fFLCapacityHtg "
     "fEvapFlowClg nEvapFlowUnitsClg fEvapFlowHtg nEvapFlowUnitsHtg fCondFlowClg nCondFlowUnitsClg "
     "fCondFlowHtg nCondFlowUnitsHTg"},
    {"BoilerIndex", "nIndex szName fBoilerOutput nFuelType fHotWaterFlow nHWFlowUnits bAutoSizeCapacity"},
    {"TowerIndex", "nIndex szName nECWTModel fCondPumpFlow nCondPumpFlowUnits"},
    {"ElectricRateIndex", "nIndex szName"},
    {"FuelRateIndex", "nIndex szName"},
    {"DesWeatherIndex", "szDesCityName"},
    {"SimWeatherIndex", "szSimCityName nJanOne"},
};

struct Link {
  std::string_view owner, member;
};

constexpr Link kLinks[]{
    {"Space", "Wall"},
    {"Space", "Window"},
    {"Space", "Door"},
    {"Space", "Roof"},
    {"Space", "Shade"},
    {"Space", "Schedule"},
    {"System", "Space"},
    {"System", "Schedule"},
    {"System", "Boiler"},
    {"System", "Tower"},
    {"Plant", "System"},
    {"Plant", "Chiller"},
    {"Plant", "Boiler"},
    {"Plant", "Tower"},
    {"Plant", "Schedule"},
    {"Building", "Plant"},
    {"Building", "System"},
    {"Building", "Schedule"},
    {"Building", "ElectricRate"},
    {"Building", "FuelRate"},
    {"ElectricRate", "Schedule"},
    {"FuelRate", "Schedule"},
};

std::string_view sql_type(std::string_view column) {
  if (column == "nIndex") return "INTEGER PRIMARY KEY";  // the row's own key: a search by index is one step
  if (column.starts_with("sz")) return "TEXT";
  return column.starts_with("f") ? "REAL" : "INTEGER";
}

void write_table(std::ostream& out, const Table& table) {
  std::istringstream columns{std::string(table.columns)};
  std::string column;
  std::string_view separator = " (";
  out << "CREATE TABLE " << table.name;
  for (; columns >> column; separator = ", ") out << separator << column << ' ' << sql_type(column);
  out << ");\n";
}

/// Links are searched from either side, and as pairs: one index for each order answers all from the index alone.
void write_links(std::ostream& out, const Link& link) {
  std::ostringstream name;
  name << link.owner << '_' << link.member << "_Links";
  out << "CREATE TABLE " << name.str() << " (" << link.owner << "_ID INTEGER, " << link.member << "_ID INTEGER);\n";
  out << "CREATE INDEX " << name.str() << "_Owner ON " << name.str() << " (" << link.owner << "_ID, " << link.member
      << "_ID);\n";
  out << "CREATE INDEX " << name.str() << "_Member ON " << name.str() << " (" << link.member << "_ID, " << link.owner
      << "_ID);\n";
}

}  // namespace

std::string index_schema() {
  std::ostringstream out;
  for (const Table& table : kIndexTables) {
    write_table(out, table);
    if (table.columns.starts_with("nIndex szName")) {
      out << "CREATE INDEX " << table.name << "_Name ON " << table.name << " (szName);\n";
    }
  }
  for (const Link& link : kLinks) write_links(out, link);
  out << "CREATE TABLE Plant_Equipment_Links (Plant_ID INTEGER, Library_ID INTEGER, Equipment_ID INTEGER);\n"
         "CREATE INDEX Plant_Equipment_Links_Owner ON Plant_Equipment_Links (Plant_ID, Library_ID, Equipment_ID);\n"
         "CREATE INDEX Plant_Equipment_Links_Member ON Plant_Equipment_Links (Library_ID, Equipment_ID, Plant_ID);\n"
         "INSERT INTO DesWeatherIndex VALUES ('');\n"
         "INSERT INTO SimWeatherIndex VALUES ('', 0);\n";
  return out.str();
}

void create_index(const std::string& path) { Database::create(path, index_schema()); }

}  // namespace tarn
