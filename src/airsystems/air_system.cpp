#include "tarn/air_system.h"

#include <algorithm>

#include "airsystems/defaults.h"
#include "platform/host.h"
#include "storage/kind.h"
#include "storage/links.h"
#include "tarn/base/log.h"

namespace tarn {
namespace {

using Source = AS_HeatCoolSourceTypes;

bool is(const Code<Source>& code, Source source) { return static_cast<Source>(code) == source; }

}  // namespace

AS_AirSystem::AS_AirSystem() : CopiedEntity(form()) {
  named_by(general_.Name);
  general_.system = this;
  dehumidification_.system = this;
  precool_coil_.cools = true;
  SetMask(CCM_HEADERMASK);
  Reset();
}

const Kind& AS_AirSystem::kind() const {
  using C = AS_AirSystem;
  using H = SystemHeaderRecord;
  static const Kind kind{
      .class_name = "AS_AirSystem",
      .index_table = "AirSystemIndex",
      .default_word = "System",
      .missing_row_message = {},
      .columns = {computed<C, &C::equip_class>("nEquipClass"), computed<C, &C::system_type>("nSystemType"),
                  computed<C, &C::flag<&H::Sized>>("bSized"),
                  computed<C, &C::flag<&H::CoilDataValid>>("bCoilDataValid"),
                  computed<C, &C::flag<&H::Simulated>>("bSimulated"),
                  computed<C, &C::flag<&H::CWCoilsExists>>("bCWCoilsExist"),
                  computed<C, &C::flag<&H::HWCoilsExists>>("bHWCoilsExist"),
                  computed<C, &C::flag<&H::STMCoilsExists>>("bSTMCoilsExist")},
      .flags = {changed_flag<C, &C::DesHasChanged>("bDesHasChanged"),
                changed_flag<C, &C::SimHasChanged>("bSimHasChanged")},
      .reach = {Results::DesignAndSimulation,
                {{Stage::Plants, {{"Plant_System_Links", "System_ID", "Plant_ID"}}},
                 {Stage::Buildings, {{"Building_System_Links", "System_ID", "Building_ID"}}}}},
      .name_word = "Air System",
      .name_query_message = "Query for duplicate name checking failed: ",
      .lost_row_message = "Cannot find air system record in index database",
      .link_owner = "System"};
  return kind;
}

const ClassInfo& AS_AirSystem::info() const {
  using C = AS_AirSystem;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&C::m_bCloning>, property<&C::m_lCurMask>, property<&C::WorkPath>,
      property<&C::FilePrefix>, method<&C::Clone>("nIndex"), method<&C::SetAsNew>, method<&C::SetToDefaults>,
      method<&C::SetToDefaultsByType>("nSystemType"), method<&C::Delete>("nRecNum"), method<&C::GetDBHandle>,
      method<&C::SetDBHandle>("DB"), method<&C::Load>("nRecNum"), method<&C::IsChangeoverApplicable>,
      method<&C::IsHWUsedCentralHeating>, method<&C::IsHWUsedPreheating>, method<&C::IsHWUsedHumidification>,
      method<&C::IsHWUsedDehumidification>, method<&C::IsHWUsedTerminalReheating>, method<&C::IsHWUsedZoneHeating>,
      method<&C::IsHWCoilUsed>, method<&C::IsCWUsedCentralCooling>, method<&C::IsCWUsedPrecooling>,
      method<&C::IsCWUsedTerminalCooling>, method<&C::IsCWCoilUsed>, method<&C::IsStmCoilUsed>,
      method<static_cast<void (C::*)(std::optional<bool>&)>(&C::Save)>("bSaveAfterCalculations"),
      method<&C::GetFreeIndex>, method<&C::Reset>("bResetAll"), property<&C::DLFileName>, property<&C::SystemType>,
      property<&C::EquipClass>, part<&C::GetAirSystem>, part<&C::GetCoolSys>, part<&C::GetHeatSys>,
      part<&C::GetOutVent>, part<&C::GetSupplyDuct>, part<&C::GetRetPlenum>, part<&C::GetSupplyFan>,
      part<&C::GetReturnFan>, part<&C::GetSupplyFan2>, part<&C::GetEconomizer>, part<&C::GetPreheatCoil>,
      part<&C::GetPrecoolCoil>, part<&C::GetHumidity>, part<&C::GetDehumid>, part<&C::GetVentReclaim>,
      part<&C::GetSafetyFactor>, part<&C::GetZoneSchedule>, part<&C::GetWCSystemData>, part<&C::GetSplitSystemData>,
      part<&C::GetChangeoverControlData>, parts<&C::GetZoneData, &C::zone_count, &C::resize_zones>("nIndex"),
      parts<&C::GetAirSizing, &C::air_sizing_count, &C::resize_air_sizing>,
      parts<&C::GetZoneSizing, &C::zone_sizing_count, &C::resize_zone_sizing>("nIndex"),
      parts<&C::GetCoilSize, &C::sizing_count, &C::resize_sizing>,
      parts<&C::GetZoneTemperature, &C::zone_simulation_count, &C::resize_zone_simulation>("Index"),
      parts<&C::GetUnmetLoads, &C::simulation_count, &C::resize_simulation>,
      parts<&C::GetLEEDUnmetLoads, &C::simulation_count, &C::resize_simulation>,
      parts<&C::GetHourlySimData, &C::simulation_count, &C::resize_simulation>,
      property<&C::DesHasChanged>.kept_in_row(), property<&C::SimHasChanged>.kept_in_row(),
      property<&C::index32>.named("Index"), method<&C::SetMask>("lMaskAdd", "lMaskRemove"),
      method<&C::IsNameUnique>("sName"), event<&C::OnUpdateDependencies>("OverrideDefault"), method<&C::CreateDefault>,
      method<&C::SaveDefault>);
  static const ClassInfo info(members);
  return info;
}

void AS_AirSystem::SetMask(int32_t lMaskAdd, std::optional<int32_t> lMaskRemove) {
  m_lCurMask &= ~(lMaskRemove.value_or(0) & CCM_MASKALL);
  m_lCurMask |= lMaskAdd & CCM_MASKALL;
}

void AS_AirSystem::SetAsNew() {
  set_index(0);
  sections_.forget_companion();
  DesHasChanged = SimHasChanged = false;
  for (Bool* flag : {&general_.Sized, &general_.CoilDataValid, &general_.Simulated, &general_.CWCoilsExists,
                     &general_.HWCoilsExists, &general_.STMCoilsExists}) {
    *flag = false;
  }
  drop_results();
}

void AS_AirSystem::SetToDefaults() {
  SetToDefaultsByType(1);
  general_.Name = "Default System";
  DesHasChanged = SimHasChanged = false;
  general_.Sized = false;
  general_.CoilDataValid = false;
  general_.Simulated = false;
}

void AS_AirSystem::SetToDefaultsByType(int16_t nSystemType) { create_defaults(*this, nSystemType, false); }

AS_AirSystem::Zone& AS_AirSystem::of_zone(int number) {
  if (number < 1 || number > zone_count()) subscript_out_of_range(number, zone_count());
  return zones_[static_cast<size_t>(number) - 1];
}

void AS_AirSystem::resize_zones(int count) {
  zones_.resize(static_cast<size_t>(count));
  general_.NumZones = static_cast<int16_t>(count);
}

/// Zones that lost a space close up.
void AS_AirSystem::close_up(const std::vector<ClearedReference>& /*cleared*/, Sections /*sections*/) {
  for (const Zone& zone : zones_) {
    ZoneRecord& data = *zone.data;
    const int entries = std::clamp<int>(data.TotalSpacesInZone, 0, kZoneSpaces);
    const auto* ids = data.SpaceID.items.data();
    if (entries - std::count(ids, ids + entries, 0) < data.TotalSpacesInZone) pack_spaces(data, entries);
  }
}

void AS_AirSystem::pack_spaces(ZoneRecord& zone, int entries) {
  int kept = 0;
  for (int i = 1; i <= entries; ++i) {
    if (zone.SpaceID(i) == 0) continue;
    ++kept;
    zone.SpaceID(kept) = int16_t{zone.SpaceID(i)};
    zone.SpaceMultiplier(kept) = int16_t{zone.SpaceMultiplier(i)};
  }
  for (int i = kept + 1; i <= kZoneSpaces; ++i) {
    zone.SpaceID(i) = 0;
    zone.SpaceMultiplier(i) = 0;
  }
  zone.TotalSpacesInZone = static_cast<int16_t>(kept);
}

void AS_AirSystem::before_save(SaveContext& save) {
  using Form = SaveContext::Form;
  if (save.selects(kInputs)) {
    changeover_.Begin = "STARTCO";
    changeover_.End = "ENDCO";
  }
  if (save.form == Form::Default) return;
  sections_.check_loaded(save);
  if (save.form == Form::AsGiven) {
    if (sections_.holds_results(kSizing)) resize_sizing(1);
    take_free_name();
    return keep_design_results();
  }
  const int16_t zones = general_.NumZones;
  if (sections_.take_unselected_header(save) && save.selects(kInputs)) general_.NumZones = zones;
  if (!IsNameUnique()) fail(ErrorNumber::InvalidCall, "Duplicate air system name detected");
  keep_design_results();
  const bool edited = save.by_user() && save.selects(kInputs);
  if (!edited) sections_.select_results(save);
  if (save.by_user()) keep_flags_of_row();
  if (!edited) return;
  sections_.clear_result_flags();
  general_.CWCoilsExists = IsCWCoilUsed();
  general_.HWCoilsExists = IsHWCoilUsed();
  general_.STMCoilsExists = IsStmCoilUsed();
  for (const Zone& zone : zones_) pack_spaces(*zone.data, kZoneSpaces);
  DesHasChanged = SimHasChanged = true;
  sections_.drop(save, kSizing);
  sections_.drop(save, kSimulation);
}

void AS_AirSystem::Save(std::optional<bool>& bSaveAfterCalculations) {
  save_selected(m_lCurMask, bSaveAfterCalculations.value_or(false));
}

void AS_AirSystem::copy_rest(const StoredEntity& from, bool /*content*/) {
  m_lCurMask = dynamic_cast<const AS_AirSystem&>(from).m_lCurMask;
}

std::function<void()> AS_AirSystem::keep_rest() {
  return [this, zones = zones_, hourly = hourly_.items()] {
    zones_ = zones;
    hourly_.set_items(hourly);
  };
}

int16_t AS_AirSystem::boiler_fuel() const {
  if (water_loop_.BoilerID == 0 || !GetDBHandle()) return 0;
  auto row = database().OpenRecordset("SELECT nFuelType FROM BoilerIndex WHERE nIndex = ?",
                                      {cell(int64_t{water_loop_.BoilerID})});
  return row.AtEof() ? int16_t{0} : static_cast<int16_t>(row.Fields("nFuelType").integer());
}

// ---- queries

bool AS_AirSystem::heats_centrally(Source source) const { return heating_.Used && is(heating_.Source, source); }
bool AS_AirSystem::preheats(Source source) const { return preheat_coil_.Used && is(preheat_coil_.Source, source); }
bool AS_AirSystem::humidifies(Source source) const { return humidifier_.Used && is(humidifier_.HeatSource, source); }
bool AS_AirSystem::dehumidifies(Source source) const {
  return dehumidification_.Used && dehumidification_.GetReheatSource() == source;
}
bool AS_AirSystem::reheats(Source source) const {
  const auto has_coil = [](const Zone& zone) { return bool{zone.data->ReheatCoil}; };
  return is(zone_schedule_.ReheatSource, source) && std::any_of(zones_.begin(), zones_.end(), has_coil);
}
bool AS_AirSystem::heats_zones(Source source) const {
  const auto has_unit = [](const Zone& zone) {
    return zone.data->HeatUnitType != AS_SupplementalHeatUnitTypes::NotUsed;
  };
  return is(zone_schedule_.HeatingSource, source) && std::any_of(zones_.begin(), zones_.end(), has_unit);
}
bool AS_AirSystem::heats_anywhere(Source source) const {
  return heats_centrally(source) || preheats(source) || humidifies(source) || dehumidifies(source) || reheats(source) ||
         heats_zones(source);
}

bool AS_AirSystem::IsCWUsedCentralCooling() const {
  return cooling_.Used && is(cooling_.Source, Source::ST_CHILLED_WATER);
}
bool AS_AirSystem::IsCWUsedPrecooling() const {
  return precool_coil_.Used && is(precool_coil_.Source, Source::ST_CHILLED_WATER);
}
bool AS_AirSystem::IsCWUsedTerminalCooling() const {
  // Of terminals with a cooling coil of their own.
  const auto has_coil = [](const Zone& zone) {
    using enum AS_SupplyTerminalTypes;
    const AS_SupplyTerminalTypes type = zone.data->TermType;
    return type == InductionTerminal || type == InductionBeam || type == ActiveChilledBeam;
  };
  return is(zone_schedule_.TermClgSource, Source::ST_CHILLED_WATER) &&
         std::any_of(zones_.begin(), zones_.end(), has_coil);
}

bool AS_AirSystem::IsChangeoverApplicable() const { return general_.SystemType == AS_SystemTypes::TwoPipeFanCoil; }

Source AS_DehumidData::GetReheatSource() const {
  if (!system) return Source::ST_IRRELEVANT;
  if (!system->zones_.empty() && system->zones_.front().data->ReheatCoil) return system->zone_schedule_.ReheatSource;
  return system->heating_.Used ? Source{system->heating_.Source} : Source::ST_IRRELEVANT;
}

// ---- header

void AS_General::SetNumZones(int16_t nValue) {
  if (nValue < 0) subscript_out_of_range(nValue, {0, INT16_MAX});
  NumZones = nValue;
  if (system) system->resize_zones(nValue);
}

void AS_General::SetFlags() {
  if (!system) fail(ErrorNumber::ObjectNotSet, "The header belongs to no air system; take it from GetAirSystem.");
  const AS_AirSystem& s = *system;
  const auto any_zone = [&s](auto holds) {
    return std::any_of(s.zones_.begin(), s.zones_.end(), [&](const auto& zone) { return holds(*zone.data); });
  };
  const bool reheat = any_zone([](const ZoneRecord& z) { return bool{z.ReheatCoil}; });
  const bool units =
      any_zone([](const ZoneRecord& z) { return z.HeatUnitType != AS_SupplementalHeatUnitTypes::NotUsed; });
  const bool terminal_fans = any_zone([](const ZoneRecord& z) { return z.TermFanVal > 0; });
  const bool water_loop = s.general_.SystemType == AS_SystemTypes::WaterSourceHeatPump &&
                          s.water_loop_.LoopConfig == AS_LoopConfigTypes::LC_CLOSED_IWSHP;
  const auto one = [](bool used) { return static_cast<int16_t>(used ? 1 : 0); };
  const int16_t flags[]{one(s.cooling_.Used),
                        one(s.cooling_.Used),
                        one(s.heating_.Used),
                        one(s.heating_.Used),
                        one(s.heating_.Used),
                        one(s.preheat_coil_.Used),
                        one(s.preheat_coil_.Used),
                        one(s.precool_coil_.Used),
                        one(s.precool_coil_.Used),
                        one(s.IsCWUsedTerminalCooling()),
                        one(reheat),
                        one(reheat),
                        one(units),
                        one(units),
                        one(s.humidifier_.Used),
                        one(s.supply_fan_.Used),
                        one(s.return_fan_.Used),
                        one(terminal_fans),
                        one(s.vent_reclaim_.Used),
                        one(water_loop),
                        one(water_loop),
                        static_cast<int16_t>(water_loop && s.water_loop_.BoilerID != 0 ? 1 + s.boiler_fuel() : 0)};
  int16_t count = 0;
  for (int i = 1; i <= static_cast<int>(std::size(flags)); ++i) {
    OutputFlags(i) = flags[i - 1];
    if (flags[i - 1] != 0) ++count;
  }
  NumOutputs = count;
}

}  // namespace tarn
