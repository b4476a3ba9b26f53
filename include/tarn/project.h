// The project object: where a project lives and under which prefix. Every file name of a project is built here, from
// the working path in directory form, the prefix and a fixed suffix; the factories hand out entities that know their
// files.
#pragma once

#include <string>

#include "tarn/base/object.h"

namespace tarn {

class ADL_AirSystemDesign;
class AS_AirSystem;
class BLD_Building;
class BLR_Boiler;
class CA_ConstructionAssly;
class CHL_Chiller;
class DOR_Door;
class PLT_Plant;
class PRF_ProjectPrefs;
class RPT_ReportOptions;
class SCH_Schedule;
class SHD_Shade;
class SPC_Space;
class TWR_CoolingTower;
class URT_UtilityRate;
class WIN_Window;
class WTH_Weather;
struct EntityKind;

class COM_ProjectData final : public Object {
 public:
  const ClassInfo& info() const override;

  std::string IndexDBName() const { return CreateFilespec("INX.MDB"); }
  std::string SimWeatherInputsFilename() const { return CreateFilespec("HW1.DAT"); }
  std::string SimWeatherFilename() const { return CreateFilespec("WTA.DAT"); }
  std::string DesWeatherFilename() const { return CreateFilespec("WTD.DAT"); }
  std::string ReportOptionsFilename() const { return CreateFilespec("RPT.DAT"); }
  std::string SpaceFilename() const { return file_named("SpaceFilename"); }
  std::string ScheduleFilename() const { return file_named("ScheduleFilename"); }
  std::string ShadeFilename() const { return file_named("ShadeFilename"); }
  std::string DoorFilename() const { return file_named("DoorFilename"); }
  std::string WallFilename() const { return file_named("WallFilename"); }
  std::string WindowFilename() const { return file_named("WindowFilename"); }
  std::string RoofFilename() const { return file_named("RoofFilename"); }
  std::string TowerFilename() const { return file_named("TowerFilename"); }
  std::string BoilerFilename() const { return file_named("BoilerFilename"); }
  std::string ChillerFilename() const { return file_named("ChillerFilename"); }
  std::string FuelRateFilename() const { return file_named("FuelRateFilename"); }
  std::string ElecRateFilename() const { return file_named("ElecRateFilename"); }
  std::string ProjectPrefFilename() const { return CreateFilespec("PRF.DAT"); }
  std::string AirSystemDefaultFilename() const { return file_named("AirSystemDefaultFilename"); }
  std::string BuildingDefaultFileName() const { return file_named("BuildingDefaultFileName"); }
  std::string PlantDefaultFilename() const { return file_named("PlantDefaultFilename"); }
  /// Which entities came from which elements of gbXML files (`tarn/gbxml.h`).
  std::string GbxmlIdsFilename() const { return CreateFilespec("GBXML.JSON"); }

  std::string WorkPath() const { return work_path_; }
  /// Stored as the path service normalises it.
  void SetWorkPath(const std::string& path);
  std::string FilePrefix;  // as given

  Ptr<AS_AirSystem> NewAirSystem() const;
  Ptr<ADL_AirSystemDesign> NewAirSystemDesign() const;
  Ptr<BLR_Boiler> NewBoiler() const;
  Ptr<BLD_Building> NewBuilding() const;
  Ptr<CHL_Chiller> NewChiller() const;
  Ptr<TWR_CoolingTower> NewCoolingTower() const;
  Ptr<DOR_Door> NewDoor() const;
  Ptr<URT_UtilityRate> NewElectricRate() const;
  Ptr<URT_UtilityRate> NewFuelRate() const;
  Ptr<PLT_Plant> NewPlant() const;
  Ptr<PRF_ProjectPrefs> NewProjectPrefs() const;
  Ptr<RPT_ReportOptions> NewReportOptions() const;
  Ptr<CA_ConstructionAssly> NewRoof() const;
  Ptr<SCH_Schedule> NewSchedule() const;
  Ptr<SHD_Shade> NewShade() const;
  Ptr<SPC_Space> NewSpace() const;
  Ptr<CA_ConstructionAssly> NewWall() const;
  Ptr<WTH_Weather> NewWeather() const;
  Ptr<WIN_Window> NewWindow() const;

  /// The file prefix of a kind that keeps one file for each object: the project's, and the kind's one-letter code.
  std::string CreateFilePrefix(const std::string& code) const;

  /// A new entity of a kind that knows its files and the project's index database.
  ObjectPtr make(const EntityKind& kind) const;

 private:
  template <typename C>
  Ptr<C> made_by(std::string_view factory) const;
  /// The file of a kind, by the property that names it.
  std::string file_named(std::string_view property) const;
  std::string CreateFilespec(const std::string& suffix) const;
  void SetDatabaseHandleOfDataObject(Object& object) const;

  std::string work_path_;
};

/// Makes a new project, index database and default records: all of it or nothing. Errors `FileExists`,
/// `DatabaseFailure`.
void create_project(COM_ProjectData& project);

}  // namespace tarn
