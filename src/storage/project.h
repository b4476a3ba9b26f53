// The project object: where a project lives and under which prefix. Every file name of a project is built here, from
// the working path in directory form, the prefix and a fixed suffix; the factories hand out entities that know their
// files.
#pragma once

#include <string>

#include "base/object.h"

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
struct FactoryRow;

/// The file of an object that has one of its own: two hexadecimal digits at least, "JOBA0A.DAT"; empty without a
/// prefix.
std::string object_file_name(const std::string& prefix, int index);

class COM_ProjectData final : public Object {
 public:
  const ClassInfo& info() const override;  // in component/, which knows the classes that the factories make

  std::string IndexDBName() const { return CreateFilespec("INX.MDB"); }
  std::string SimWeatherInputsFilename() const { return CreateFilespec("HW1.DAT"); }
  std::string SimWeatherFilename() const { return CreateFilespec("WTA.DAT"); }
  std::string DesWeatherFilename() const { return CreateFilespec("WTD.DAT"); }
  std::string ReportOptionsFilename() const { return CreateFilespec("RPT.DAT"); }
  std::string SpaceFilename() const { return CreateFilespec("SPC.DAT"); }
  std::string ScheduleFilename() const { return CreateFilespec("SCH.DAT"); }
  std::string ShadeFilename() const { return CreateFilespec("SHD.DAT"); }
  std::string DoorFilename() const { return CreateFilespec("DOR.DAT"); }
  std::string WallFilename() const { return CreateFilespec("WAL.DAT"); }
  std::string WindowFilename() const { return CreateFilespec("WIN.DAT"); }
  std::string RoofFilename() const { return CreateFilespec("ROF.DAT"); }
  std::string TowerFilename() const { return CreateFilespec("TWR.DAT"); }
  std::string BoilerFilename() const { return CreateFilespec("BLR.DAT"); }
  std::string ChillerFilename() const { return CreateFilespec("CHL.DAT"); }
  std::string FuelRateFilename() const { return CreateFilespec("FRT.DAT"); }
  std::string ElecRateFilename() const { return CreateFilespec("ERT.DAT"); }
  std::string ProjectPrefFilename() const { return CreateFilespec("PRF.DAT"); }
  std::string AirSystemDefaultFilename() const { return CreateFilespec("A00.DAT"); }
  std::string BuildingDefaultFileName() const { return CreateFilespec("B00.DAT"); }
  std::string PlantDefaultFilename() const { return CreateFilespec("P00.DAT"); }

  std::string WorkPath() const { return work_path_; }
  /// Stored as the path service normalises it.
  void SetWorkPath(const std::string& path);
  std::string FilePrefix;  // as given

  Ptr<AS_AirSystem> NewAirSystem();
  Ptr<ADL_AirSystemDesign> NewAirSystemDesign();
  Ptr<BLR_Boiler> NewBoiler();
  Ptr<BLD_Building> NewBuilding();
  Ptr<CHL_Chiller> NewChiller();
  Ptr<TWR_CoolingTower> NewCoolingTower();
  Ptr<DOR_Door> NewDoor();
  Ptr<URT_UtilityRate> NewElectricRate();
  Ptr<URT_UtilityRate> NewFuelRate();
  Ptr<PLT_Plant> NewPlant();
  Ptr<PRF_ProjectPrefs> NewProjectPrefs();
  Ptr<RPT_ReportOptions> NewReportOptions();
  Ptr<CA_ConstructionAssly> NewRoof();
  Ptr<SCH_Schedule> NewSchedule();
  Ptr<SHD_Shade> NewShade();
  Ptr<SPC_Space> NewSpace();
  Ptr<CA_ConstructionAssly> NewWall();
  Ptr<WTH_Weather> NewWeather();
  Ptr<WIN_Window> NewWindow();

  /// The file prefix of a kind that keeps one file for each object: the project's, and the kind's one-letter code.
  std::string CreateFilePrefix(const std::string& code) const;

  /// A new object of a factory's class with its settings made, in their order.
  ObjectPtr make(const FactoryRow& factory);

 private:
  template <typename C>
  Ptr<C> made_by(std::string_view method);
  std::string CreateFilespec(const std::string& suffix) const;
  void SetDatabaseHandleOfDataObject(Object& object) const;

  std::string work_path_;
};

}  // namespace tarn
