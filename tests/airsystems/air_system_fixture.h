// Air systems of a project in a folder of its own, some with results.
#pragma once

#include "support/temp_project.h"
#include "tarn/air_system.h"

namespace tarn::test {

class AirSystemTest : public ProjectTest {
 protected:
  Ptr<AS_AirSystem> new_system(const std::string& name, int zones = 1) {
    auto system = project.NewAirSystem();
    system->SetToDefaultsByType(8);
    system->GetAirSystem()->Name = name;
    system->GetAirSystem()->SetNumZones(static_cast<int16_t>(zones));
    return system;
  }
  static void save(AS_AirSystem& system, bool after_calculations = false) {
    std::optional<bool> after = after_calculations;
    system.Save(after);
  }
  /// With results, and every byte of them its own.
  Ptr<AS_AirSystem> calculated(const std::string& name, int zones) {
    auto system = new_system(name, zones);
    system->GetAirSystem()->SetFlags();
    save(*system);
    for (int16_t i = 1; i <= zones; ++i) {
      system->GetZoneSizing(i)->MaxCFM = 100.0F * i;
      system->GetZoneTemperature(i)->StatusHours(8) = static_cast<int16_t>(i);
    }
    system->GetCoilSize()->CentralClgCoil(7, 16) = 1234.0F;
    system->GetUnmetLoads()->CapSufficient(6, 12) = 3.5F;
    system->GetAirSystem()->Sized = true;
    system->GetAirSystem()->Simulated = true;
    system->DesHasChanged = system->SimHasChanged = false;
    save(*system, true);
    system->GetHourlySimData()->Item(1)->HourlyResult(8760) = 7.25F;
    save(*system, true);
    return system;
  }
  static size_t sizing_size(size_t zones) { return 54 + 70 * zones + 3488; }
  void add_space(int index) {
    database->Execute("INSERT INTO SpaceIndex (nIndex) VALUES (" + std::to_string(index) + ")");
  }
  std::string file(int index) {
    char number[8];
    std::snprintf(number, sizeof number, "%02X", index);
    return folder / ("JOBA" + std::string(number) + ".DAT");
  }
};

}  // namespace tarn::test
