// A small project with an entity of every kind, results and weather, without any damage. For tests and fuzz targets.
#pragma once

#include "platform/host.h"
#include "project/defaults.h"
#include "project/new_index.h"
#include "tarn/air_system.h"
#include "tarn/air_system_design.h"
#include "tarn/boiler.h"
#include "tarn/building.h"
#include "tarn/chiller.h"
#include "tarn/construction.h"
#include "tarn/cooling_tower.h"
#include "tarn/door.h"
#include "tarn/hourly_file.h"
#include "tarn/plant.h"
#include "tarn/platform/database.h"
#include "tarn/preferences.h"
#include "tarn/project.h"
#include "tarn/schedule.h"
#include "tarn/shade.h"
#include "tarn/space.h"
#include "tarn/utility_rate.h"
#include "tarn/weather.h"
#include "tarn/window.h"

namespace tarn::test {

/// Window 1 becomes a foot higher.
inline void edit_window(COM_ProjectData& project) {
  const auto window = project.NewWindow();
  window->Load(1);
  window->Height = window->Height + 1;
  window->Save();
}

inline void make_library(COM_ProjectData& project) {
  const auto saved = [](auto entity, const char* name) {
    entity->CreateDefault();
    entity->Name = name;
    entity->Save();
  };
  for (const char* name : {"South", "North"}) saved(project.NewWindow(), name);
  saved(project.NewDoor(), "Door");
  saved(project.NewShade(), "Overhang");
  for (const char* name : {"Brick", "Block"}) saved(project.NewWall(), name);
  saved(project.NewRoof(), "Deck");
  for (const char* name : {"People", "Lights"}) saved(project.NewSchedule(), name);
  saved(project.NewChiller(), "Chiller");
  saved(project.NewBoiler(), "Boiler");
  saved(project.NewCoolingTower(), "Tower");
  const auto rate = project.NewElectricRate();
  rate->CreateDefault();
  (*rate)->Name = "Day";
  (*rate)->TimeOfDaySched = true;
  (*rate)->TODSchedule = 2;
  rate->Save();
  const auto fuel = project.NewFuelRate();
  fuel->CreateDefault();
  (*fuel)->Name = "Gas";
  fuel->Save();
}

inline void make_users(COM_ProjectData& project) {
  for (const char* name : {"Office", "Hall"}) {
    const auto space = project.NewSpace();
    space->CreateDefault();
    space->GetSpace()->Name = name;
    const auto wall = space->GetWall(1);
    wall->Exposure = 1;
    wall->GrossArea = 200;
    wall->WallType = 1;
    wall->WindowType(1) = 1;
    wall->WindowQty(1) = 2;
    wall->WindowShade(1) = 1;
    wall->DoorType = 1;
    space->GetRoof(1)->RoofType = 1;
    space->Save();
  }
  for (const char* name : {"VAV 1", "VAV 2"}) {
    const auto system = project.NewAirSystem();
    system->SetToDefaultsByType(8);
    system->GetAirSystem()->Name = name;
    system->GetZoneData(1)->SpaceID(1) = 1;
    system->GetZoneData(1)->SpaceMultiplier(1) = 1;
    system->GetZoneData(1)->TotalSpacesInZone = 1;
    system->Save();
    system->GetZoneSizing(1)->Reserved = 5;
    std::optional<bool> after = true;
    system->SetMask(0, CCM_SIZINGMASK);
    system->DesHasChanged = system->SimHasChanged = false;
    system->Save(after);
    const auto design = project.NewAirSystemDesign();
    design->SetAirSystem(system);
    design->Save(system->Index());
  }
  const auto plant = project.NewPlant();
  plant->CreateDefault();
  plant->General.Name = "Chilled water";
  plant->General.PlantType = PLT_PlantTypes::PT_CHILLER;
  plant->SystemSelect.SystemID(1) = 1;
  auto& list = plant->Details.CoolingEqpt;
  list.SetNumEquipment(1);
  list.Equipment(1).LibraryID = COM_ProjectLibrary::LIB_CHILLERS;
  list.Equipment(1).EquipmentID = 1;
  plant->Save();
  const auto building = project.NewBuilding();
  building->CreateDefault();
  building->GetBuildingInputs()->SystemID(1) = 1;
  building->GetBuildingInputs()->PlantID(1) = 1;
  building->GetBuildingInputs()->UtilityRate(1) = 1;
  building->Save(FS_ALL, true);
}

inline void make_weather(COM_ProjectData& project) {
  const auto year = std::make_unique<HW1ReaderWriter>();
  year->CityName = "Golden";
  year->Elevation = 6000;
  year->Latitude = 39.7F;
  year->Longitude = year->TZMeridian = -105;
  year->SummerDB = 91;
  year->SummerWB = 60;
  year->DailyRange = 27;
  year->WinterDB = -2;
  year->SourceType = 1;
  year->Save(project.SimWeatherInputsFilename());
  const auto weather = project.NewWeather();
  weather->DesCityName = weather->SimCityName = "Golden";
  weather->DesStateName = "Colorado";
  weather->Save();
  project.NewProjectPrefs()->Save();
}

/// Fills a project whose folder and prefix are set.
inline void make_sample(COM_ProjectData& project) {
  create_index(project.IndexDBName());
  const auto database = host().database(project.IndexDBName());
  write_default_records(project);
  make_library(project);
  make_users(project);
  make_weather(project);
  for (const char* marks :
       {"AirSystemIndex SET bDesHasChanged = 0, bSimHasChanged = 0",
        "PlantIndex SET bDesHasChanged = 0, bSimHasChanged = 0", "BuildingIndex SET bHasChanged = 0"})
    database->Execute(std::string("UPDATE ") + marks);
}

}  // namespace tarn::test
