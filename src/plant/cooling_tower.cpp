#include "tarn/cooling_tower.h"

#include "storage/kind.h"

namespace tarn {

const Kind& TWR_CoolingTower::kind() const {
  using C = TWR_CoolingTower;
  using R = TowerRecord;
  static const Kind kind{
      .class_name = "TWR_CoolingTower",
      .index_table = "TowerIndex",
      .default_word = "Tower",
      .missing_row_message = "Cannot find tower record in database for record #",
      .columns = {summary<C, &R::ECWTModel>("nECWTModel"), summary<C, &R::CondPumpFlow>("fCondPumpFlow"),
                  summary<C, &R::CondPumpFlowUnits>("nCondPumpFlowUnits")},
      .reach = {Results::SimulationOnly,
                {{Stage::Systems, {{"System_Tower_Links", "Tower_ID", "System_ID"}}},
                 {Stage::Plants, {{"Plant_Tower_Links", "Tower_ID", "Plant_ID"}}}}},
      .row_needed = true};
  return kind;
}

const ClassInfo& TWR_CoolingTower::info() const {
  using R = TowerRecord;
  using C = TWR_CoolingTower;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&C::m_bCloning>, property<&R::Name>.trimmed(), property<&R::ECWTModel>,
      property<&R::DesignWetBulb>("F"), property<&R::DesignRange>("delta F"), property<&R::DesignApproach>("delta F"),
      property<&R::AirFlow>.unit_by<&R::AirFlowUnits>(), property<&R::AirFlowUnits>,
      property<&R::FanPower>.unit_by<&R::FanPowerUnits>(), property<&R::FanPowerUnits>, property<&R::TowerControl>,
      property<&R::LowSpdAirflow>("%"), property<&R::FanElecEff>("%"), property<&R::AvgECWT>("F"),
      property<&R::CondPumpFlow>.unit_by<&R::CondPumpFlowUnits>(), property<&R::CondPumpFlowUnits>,
      property<&C::Index>.read_only(), property<&C::FileName>, method<&C::SetDBHandle>("DB"), method<&C::GetDBHandle>,
      method<&C::Reset>("ResetAll"), method<&C::Clone>("Index"), method<&C::CopyInstance>, method<&C::GetFreeIndex>,
      method<&C::Delete>("RecordNumber"), method<static_cast<void (C::*)(int32_t)>(&C::Load)>("RecordNumber"),
      method<&C::Save>, method<&C::CreateDefault>, method<&C::IsNameUnique>("sName"),
      event<&C::OnUpdateDependencies>("OverrideDefault"));
  static const ClassInfo info(members);
  return info;
}

}  // namespace tarn
