// An air system: a file of its own, of packed records in sections - header, inputs with zones, sizing, simulation -
// which are loaded and saved as the constituent mask selects them; a row in the index table; links to what it uses.
#pragma once

#include <array>
#include <vector>

#include "tarn/air_system_inputs.h"
#include "tarn/air_system_results.h"
#include "tarn/storage/section_entity.h"

namespace tarn {

class AS_AirSystem final : public CopiedEntity<AS_AirSystem, SectionEntity>, public Sized {
 public:
  AS_AirSystem();
  const ClassInfo& info() const override;
  const Kind& kind() const override;

  /// Of design-load results that belong to the system, besides the file of its index; in WorkPath unless it names a
  /// folder. It goes with the system: empty after a load of another one.
  std::string DLFileName;
  int32_t m_lCurMask = CCM_NOTHING;

  /// Clears the bits 0 to 26 of the second, then sets those of the first.
  void SetMask(int32_t lMaskAdd, std::optional<int32_t> lMaskRemove = {});
  /// The system as a new one: its inputs stay, with the choices of air sizing; results and all flags go.
  void SetAsNew();
  /// As type 1 under the name "Default System".
  void SetToDefaults();
  /// Errors `InvalidCall` for a type outside 1 to 22 and for 17; the system is left as it was.
  void SetToDefaultsByType(int16_t nSystemType);

  /// The selected sections; the others are carried over byte for byte. A save of inputs by a user, which is one that is
  /// not made after calculations, drops sizing and simulation results, of the object too, and marks both as changed;
  /// the choices of air sizing are inputs and stay. The file is replaced whole. Errors `NoCurrentRecord`, `InvalidCall`
  /// for a name that another system has and for inputs that were never loaded. Bit 26, of the inputs, is in
  /// CCM_SIMULATIONMASK too: load inputs and results with the same mask.
  void Save(std::optional<bool>& bSaveAfterCalculations);
  using StoredEntity::Save;

  // docs/air-systems.md has the rules of the queries.
  bool IsChangeoverApplicable() const;
  bool IsHWUsedCentralHeating() const { return heats_centrally(AS_HeatCoolSourceTypes::ST_HOT_WATER); }
  bool IsHWUsedPreheating() const { return preheats(AS_HeatCoolSourceTypes::ST_HOT_WATER); }
  bool IsHWUsedHumidification() const { return humidifies(AS_HeatCoolSourceTypes::ST_HOT_WATER); }
  bool IsHWUsedDehumidification() const { return dehumidifies(AS_HeatCoolSourceTypes::ST_HOT_WATER); }
  bool IsHWUsedTerminalReheating() const { return reheats(AS_HeatCoolSourceTypes::ST_HOT_WATER); }
  bool IsHWUsedZoneHeating() const { return heats_zones(AS_HeatCoolSourceTypes::ST_HOT_WATER); }
  bool IsHWCoilUsed() const { return heats_anywhere(AS_HeatCoolSourceTypes::ST_HOT_WATER); }
  bool IsCWUsedCentralCooling() const;
  bool IsCWUsedPrecooling() const;
  bool IsCWUsedTerminalCooling() const;
  bool IsCWCoilUsed() const { return IsCWUsedCentralCooling() || IsCWUsedPrecooling() || IsCWUsedTerminalCooling(); }
  bool IsStmCoilUsed() const { return heats_anywhere(AS_HeatCoolSourceTypes::ST_STEAM); }

  // The parts themselves, not copies; those of a zone by its number, error `SubscriptOutOfRange`.
  Ptr<AS_General> GetAirSystem() { return shared_part(*this, general_); }
  Ptr<AS_CoolData> GetCoolSys() { return shared_part(*this, cooling_); }
  Ptr<AS_HeatData> GetHeatSys() { return shared_part(*this, heating_); }
  Ptr<AS_OutdoorVent> GetOutVent() { return shared_part(*this, ventilation_); }
  Ptr<AS_SupplyDuct> GetSupplyDuct() { return shared_part(*this, supply_duct_); }
  Ptr<AS_RetPlenum> GetRetPlenum() { return shared_part(*this, return_plenum_); }
  Ptr<AS_FanData> GetSupplyFan() { return shared_part(*this, supply_fan_); }
  Ptr<AS_FanData> GetReturnFan() { return shared_part(*this, return_fan_); }
  Ptr<AS_FanData> GetSupplyFan2() { return shared_part(*this, supply_fan_2_); }
  Ptr<AS_EconomizerData> GetEconomizer() { return shared_part(*this, economizer_); }
  Ptr<AS_CoilData> GetPreheatCoil() { return shared_part(*this, preheat_coil_); }
  Ptr<AS_CoilData> GetPrecoolCoil() { return shared_part(*this, precool_coil_); }
  Ptr<AS_HumidityData> GetHumidity() { return shared_part(*this, humidifier_); }
  Ptr<AS_DehumidData> GetDehumid() { return shared_part(*this, dehumidification_); }
  Ptr<AS_VentReclaim> GetVentReclaim() { return shared_part(*this, vent_reclaim_); }
  Ptr<AS_SafetyFactor> GetSafetyFactor() { return shared_part(*this, safety_factor_); }
  Ptr<AS_ZoneSchedule> GetZoneSchedule() { return shared_part(*this, zone_schedule_); }
  Ptr<AS_WCSystemData> GetWCSystemData() { return shared_part(*this, water_loop_); }
  Ptr<AS_SplitSystemData> GetSplitSystemData() { return shared_part(*this, split_system_); }
  Ptr<AS_ChangeoverControl> GetChangeoverControlData() { return shared_part(*this, changeover_); }
  Ptr<AS_ZoneData> GetZoneData(int16_t nIndex) { return of_zone(nIndex).data; }
  Ptr<AS_AirSizing> GetAirSizing() { return shared_part(*this, air_sizing_); }
  Ptr<AS_ZoneSizingData> GetZoneSizing(int16_t nIndex) { return of_zone(nIndex).sizing; }
  Ptr<AS_CoilSize> GetCoilSize() { return shared_part(*this, coil_size_); }
  Ptr<AS_ZoneTemperature> GetZoneTemperature(int16_t nIndex) { return of_zone(nIndex).temperature; }
  Ptr<AS_UnmetLoads> GetUnmetLoads() { return shared_part(*this, unmet_loads_); }
  Ptr<AS_LEEDUnmetLoads> GetLEEDUnmetLoads() { return shared_part(*this, leed_unmet_loads_); }
  Ptr<AS_HourlySimData> GetHourlySimData() { return shared_part(*this, hourly_); }

  AS_SystemTypes SystemType() const { return general_.SystemType; }
  AS_EquipmentTypes EquipClass() const { return general_.EquipClass; }
  void resize_zones(int count);
  /// Fuel of the water loop's boiler by the index table, 0 where there is none.
  int16_t boiler_fuel() const;

 private:
  struct Zone {
    Ptr<AS_ZoneData> data = std::make_shared<AS_ZoneData>();
    Ptr<AS_ZoneSizingData> sizing = std::make_shared<AS_ZoneSizingData>();
    Ptr<AS_ZoneTemperature> temperature = std::make_shared<AS_ZoneTemperature>();
  };
  enum SectionNumber : size_t { kHeader, kInputs, kSizing, kSimulation };

  Zone& of_zone(int number);
  /// Closes up the first entries of a zone's list of spaces and counts them.
  static void pack_spaces(ZoneRecord& zone, int entries);

  static const SectionForm& form();
  /// Design results carry the system's name, by which they match. They follow a new name; what lies under the index of
  /// a new system was another's, and goes.
  void keep_design_results();
  void before_save(SaveContext& save) override;
  void close_up(const std::vector<ClearedReference>& cleared, Sections sections) override;
  void copy_rest(const StoredEntity& from, bool content) override;
  std::function<void()> keep_rest() override;

  bool heats_centrally(AS_HeatCoolSourceTypes source) const;
  bool preheats(AS_HeatCoolSourceTypes source) const;
  bool humidifies(AS_HeatCoolSourceTypes source) const;
  bool dehumidifies(AS_HeatCoolSourceTypes source) const;
  bool reheats(AS_HeatCoolSourceTypes source) const;
  bool heats_zones(AS_HeatCoolSourceTypes source) const;
  bool heats_anywhere(AS_HeatCoolSourceTypes source) const;

  // What the members table and the index row take.
  int32_t index32() const { return Index(); }
  int zone_count() const { return static_cast<int>(zones_.size()); }
  // Its choices are inputs, so that it is always there; exports of a file without sizing may leave it out.
  int air_sizing_count() const { return 1; }
  void resize_air_sizing(int /*count*/) {}
  int sizing_count() const { return sections_.is_there(kSizing) ? 1 : 0; }
  int zone_sizing_count() const { return sections_.is_there(kSizing) ? zone_count() : 0; }
  int simulation_count() const { return sections_.is_there(kSimulation) ? 1 : 0; }
  int zone_simulation_count() const { return sections_.is_there(kSimulation) ? zone_count() : 0; }
  void resize_sizing(int count) { sections_.set_there(kSizing, count > 0); }
  void resize_simulation(int count) { sections_.set_there(kSimulation, count > 0); }
  // A list of results says that they are there; it is as long as that of the zones.
  void resize_zone_sizing(int count) { sections_.set_there(kSizing, sections_.is_there(kSizing) || count > 0); }
  void resize_zone_simulation(int count) {
    sections_.set_there(kSimulation, sections_.is_there(kSimulation) || count > 0);
  }
  template <auto Field>
  bool flag() const {
    return general_.*Field;
  }
  int32_t equip_class() const { return general_.EquipClass.raw; }
  int32_t system_type() const { return general_.SystemType.raw; }

  friend class AS_General;
  friend struct AS_DehumidData;

  AS_General general_;
  AS_CoolData cooling_;
  AS_HeatData heating_;
  AS_OutdoorVent ventilation_;
  AS_SupplyDuct supply_duct_;
  AS_RetPlenum return_plenum_;
  AS_FanData supply_fan_, return_fan_, supply_fan_2_;
  AS_EconomizerData economizer_;
  AS_CoilData preheat_coil_, precool_coil_;
  AS_HumidityData humidifier_;
  AS_DehumidData dehumidification_;
  AS_VentReclaim vent_reclaim_;
  AS_SafetyFactor safety_factor_;
  AS_ZoneSchedule zone_schedule_;
  AS_WCSystemData water_loop_;
  AS_SplitSystemData split_system_;
  AS_ChangeoverControl changeover_;
  std::vector<Zone> zones_;
  AS_AirSizing air_sizing_;
  AS_CoilSize coil_size_;
  AS_UnmetLoads unmet_loads_;
  AS_LEEDUnmetLoads leed_unmet_loads_;
  AS_HourlySimData hourly_;
};

}  // namespace tarn
