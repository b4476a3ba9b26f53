#include "tarn/air_system_inputs.h"

#include "tarn/reflect/describe.h"

namespace tarn {
namespace {

std::span<const Label> cooling_sources(const Object&) { return labels_of<kCoolingSources>; }

/// Code 0 means average efficiency for a fuel, and compressor power for a compressor.
constexpr CodeText<AS_PerformanceTypes> kFuelOptions[] = {{AS_PerformanceTypes::ptAVG_HEAT_EFF, "", "ptAVG_HEAT_EFF"},
                                                          {AS_PerformanceTypes::ptARI_PERF},
                                                          {AS_PerformanceTypes::ptASHRAE_EFF}};
std::span<const Label> direct_heat_options(const Object&) { return labels_of<kFuelOptions>; }

std::string_view schedule_if_used(const Object& ventilation, size_t /*element*/) {
  const AS_VentilationControlTypes control = dynamic_cast<const AS_OutdoorVent&>(ventilation).VentType;
  return control == AS_VentilationControlTypes::Scheduled ? "Schedule" : "";
}

}  // namespace

const ClassInfo& AS_General::info() const {
  using R = SystemHeaderRecord;
  using C = AS_General;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::Name>.trimmed(), property<&R::EquipClass>, property<&R::SystemType>,
                  property<&R::NumZones>.read_only(), property<&R::Sized>, property<&R::CoilDataValid>,
                  property<&R::Simulated>, property<&R::CWCoilsExists>, property<&R::HWCoilsExists>,
                  property<&R::STMCoilsExists>, property<&R::NumOutputs>.read_only(),
                  property<&R::OutputFlags>.read_only(), method<&C::SetNumZones>("nValue"), method<&C::SetFlags>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_CoolData::info() const {
  using R = CoolingRecord;
  using C = AS_CoolData;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&R::Used>, property<&R::SupAirSpec>, property<&R::SupAirVal>.unit_by<&R::SupAirSpec>(),
      property<&R::SupAirReset>, property<&R::FanCycled>, property<&R::ResetTemp>("F"), property<&R::OAMinTemp>("F"),
      property<&R::OAMaxTemp>("F"), property<&R::Source>.codes(cooling_sources), property<&R::Schedule>,
      another<&R::Schedule>.named("AllSchedules"), property<&R::CoilBypass>, property<&R::UnoccCool>,
      property<&R::BypassFlowRate>, property<&R::ChangeoverTime>, property<&R::AutoSize>, property<&R::SizingFactor>,
      property<&R::DesignET>("F"), property<&R::DesignCapacity>,
      property<&R::DesignPower>.unit_by<&R::DesignPowerUnits>(), property<&R::DesignPowerUnits>,
      property<&R::DesignPowerOption>, property<&R::DXConfig>, property<&R::CutoffOAT1>("F"),
      property<&R::LowTempControlUsed>, property<&R::CutoffOAT2>("F"), property<&R::PerfModelType>,
      property<&R::PLR1Coeff>, property<&R::Cap1Coeff>, property<&R::CapCFM1Coeff>, property<&R::Pow1Coeff>,
      property<&R::PowCFM1Coeff>, property<&R::LowTempCapMult>, property<&R::LowTempPowMult>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_HeatData::info() const {
  using R = HeatingRecord;
  using C = AS_HeatData;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&R::Used>, property<&R::SupAirSpec>, property<&R::SupAirVal>.unit_by<&R::SupAirSpec>(),
      property<&R::SupAirReset>, property<&R::FanCycled>, property<&R::ResetTemp>("F"), property<&R::OAMinTemp>("F"),
      property<&R::OAMaxTemp>("F"), property<&R::Source>, property<&R::Schedule>,
      another<&R::Schedule>.named("AllSchedules"), property<&R::AutoSize>, property<&R::SizingFactor>,
      property<&R::DesignET>("F"), property<&R::DesignCapacity>,
      property<&R::DesignPower>.unit_by<&R::DesignPowerUnits>(), property<&R::DesignPowerUnits>,
      property<&R::DesignPowerOption>, property<&R::DirectHeatOption>.codes(direct_heat_options),
      property<&R::DXConfig>, property<&R::CutoffOAT>("F"), property<&R::PerfModelType>, property<&R::PLR1Coeff>,
      property<&R::Cap1Coeff>, property<&R::CapCFM1Coeff>, property<&R::Pow1Coeff>, property<&R::PowCFM1Coeff>,
      property<&R::Cap2Coeff>, property<&R::CapCFM2Coeff>, property<&R::Pow2Coeff>, property<&R::PowCFM2Coeff>,
      property<&R::DirectHeatType>, property<&R::DirectHeatCapacity>, property<&R::DirectHeatEff>,
      property<&R::DirectHeatMiscElec>, property<&R::AuxHeatUpperCutoff>("F"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_OutdoorVent::info() const {
  using R = VentilationRecord;
  using C = AS_OutdoorVent;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::VentType>, property<&R::CommonSys>, property<&R::MinCO2>("ppm"),
                  property<&R::MaxCO2>("ppm"), property<&R::OutdoorCO2>("ppm"), property<&R::SizingMethod>,
                  property<&R::MinVentRate>, property<&R::Schedule>.refers_to("Schedule", schedule_if_used),
                  property<&R::DampersOn>, property<&R::LeakRate>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_SupplyDuct::info() const {
  using R = SupplyDuctRecord;
  using C = AS_SupplyDuct;
  static constexpr auto members = describe<C>(Failures::Raised, property<&R::HeatGain>, property<&R::LeakRate>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_RetPlenum::info() const {
  using R = ReturnPlenumRecord;
  using C = AS_RetPlenum;
  static constexpr auto members = describe<C>(Failures::Raised, property<&R::Used>, property<&R::RoofGain>,
                                              property<&R::WallGain>, property<&R::LightGain>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_FanData::info() const {
  using R = FanRecord;
  using C = AS_FanData;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&R::Used>, property<&R::FanType>, property<&R::PerfUnits>,
      property<&R::Value>.unit_by<&R::PerfUnits>(), property<&R::Efficiency>, property<&R::Configuration>,
      property<&R::KWValue>, property<&R::AFactorUsed>, property<&R::AFactorPD>("in. w.c."), property<&R::FanControl>,
      property<&R::UnoccFanControl>, property<&R::LowSpeedFlow>, property<&R::MidSpeedFlow>, property<&R::UnoccFlow>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_EconomizerData::info() const {
  using R = EconomizerRecord;
  using C = AS_EconomizerData;
  static constexpr auto members = describe<C>(Failures::Raised, property<&R::Used>, property<&R::EconomizerType>,
                                              property<&R::UpCutoff>, property<&R::LoCutoff>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_CoilData::info() const {
  using R = CoilRecord;
  using C = AS_CoilData;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&R::Used>, property<&R::Setpoint>("F"), property<&R::UnoccSetpoint>("F"),
      property<&R::DownStream>, property<&R::Source>.codes(C::sources), property<&R::Schedule>,
      another<&R::Schedule>.named("AllSchedules"), property<&R::CoilBypass>, property<&R::AutoSize>,
      property<&R::SizingFactor>, property<&R::DesignET>("F"), property<&R::DesignCapacity>,
      property<&R::DesignPower>.unit_by<&R::DesignPowerUnits>(), property<&R::DesignPowerUnits>,
      property<&R::DesignPowerOption>, property<&R::DirectHeatOption>.codes(direct_heat_options),
      property<&R::DXConfig>, property<&R::CutoffOAT1>("F"), property<&R::LowTempControlUsed>,
      property<&R::CutoffOAT2>("F"), property<&R::PerfModelType>, property<&R::PLR1Coeff>, property<&R::Cap1Coeff>,
      property<&R::CapCFM1Coeff>, property<&R::Pow1Coeff>, property<&R::PowCFM1Coeff>, property<&R::LowTempCapMult>,
      property<&R::LowTempPowMult>, property<&R::DirectHeatType>, property<&R::DirectHeatCapacity>,
      property<&R::DirectHeatEff>, property<&R::DirectHeatMiscElec>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_HumidityData::info() const {
  using R = HumidifierRecord;
  using C = AS_HumidityData;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::Used>, property<&R::Setpoint>, property<&R::DeviceType>,
                  property<&R::HeatSource>, property<&R::DevicePower>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_DehumidData::info() const {
  using R = DehumidificationRecord;
  using C = AS_DehumidData;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::Used>, property<&R::Setpoint>, method<&C::GetReheatSource>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_VentReclaim::info() const {
  using R = VentReclaimRecord;
  using C = AS_VentReclaim;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::Used>, property<&R::ReclaimType>, property<&R::ThermEff>,
                  property<&R::DevPower>, property<&R::Schedule>, another<&R::Schedule>.named("AllSchedules"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_SafetyFactor::info() const {
  using R = SafetyFactorRecord;
  using C = AS_SafetyFactor;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::Sensible>, property<&R::Latent>, property<&R::Heating>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_ZoneSchedule::info() const {
  using R = ZoneScheduleRecord;
  using C = AS_ZoneSchedule;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::ReheatSource>, property<&R::ReheatCoil>,
                  another<&R::ReheatCoil>.named("ReheatCoils"), property<&R::HeatingSource>, property<&R::HeatingUnit>,
                  another<&R::HeatingUnit>.named("HeatingUnits"), property<&R::TermClgSource>.codes(cooling_sources),
                  property<&R::TermClgSchedule>, another<&R::TermClgSchedule>.named("TermClgSchedules"),
                  property<&R::TstatSchedule>.refers_to("Schedule"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_WCSystemData::info() const {
  using R = WaterLoopRecord;
  using C = AS_WCSystemData;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::LoopConfig>, property<&R::TowerID>.refers_to("Tower"),
                  property<&R::BoilerID>.refers_to("Boiler"), property<&R::LoopMaxSetpt>("F"),
                  property<&R::LoopMinSetpt>("F"), property<&R::FreeCoolingUsed>, property<&R::FreeCoolingType>,
                  property<&R::HXApproach>("delta F"), property<&R::CondPumpPerf>.unit_by<&R::CondPumpUnits>(),
                  property<&R::CondPumpUnits>, property<&R::CondPumpMechEff>, property<&R::CondPumpElecEff>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_SplitSystemData::info() const {
  using R = SplitSystemRecord;
  using C = AS_SplitSystemData;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::AutoSize>, property<&R::ClgSizingFactor>,
                  property<&R::HtgSizingFactor>, property<&R::CompressorType>, property<&R::HeatRecoveryUsed>,
                  property<&R::MinimumLoad>, property<&R::PipeLength>("ft"), property<&R::PipeHeight>("ft"),
                  property<&R::DesignPowerOption>, property<&R::ClgDesignOADB>("F"), property<&R::ClgDesignCapacity>,
                  property<&R::ClgDesignPowerUnits>, property<&R::ClgDesignPower>.unit_by<&R::ClgDesignPowerUnits>(),
                  property<&R::HtgDesignOADB>("F"), property<&R::HtgDesignCapacity>, property<&R::HtgDesignPowerUnits>,
                  property<&R::HtgDesignPower>.unit_by<&R::HtgDesignPowerUnits>(), property<&R::HtgCutoffOADB>("F"),
                  property<&R::DirectHeatType>, property<&R::AuxHeatUpperCutoff>("F"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_ChangeoverControl::info() const {
  using R = ChangeoverRecord;
  using C = AS_ChangeoverControl;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::Begin>.reserved(), property<&R::Used>, property<&R::Trigger>,
                  property<&R::OATThreshold>("F"), property<&R::Deadband>("delta F"), property<&R::MinCycleTime>,
                  property<&R::End>.reserved());
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_ZoneData::info() const {
  using R = ZoneRecord;
  using C = AS_ZoneData;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&R::Name>.trimmed(), property<&R::SpaceID>.refers_to("Space"),
      another<&R::SpaceID>.named("AllSpaces"), another<&R::SpaceMultiplier>.named("AllMultipliers"),
      property<&R::SpaceMultiplier>, property<&R::TotalSpacesInZone>, property<&R::AllZoneTstatSame>,
      property<&R::OccCoolSetpt>("F"), property<&R::UnoccCoolSetpt>("F"), property<&R::OccHeatSetpt>("F"),
      property<&R::UnoccHeatSetpt>("F"), property<&R::TstatRange>("delta F"), property<&R::DiversityFactor>,
      property<&R::AirRateSpec>, property<&R::ExhaustAirRate>.unit_by<&R::AirRateSpec>(),
      property<&R::ExhaustFanKW>("kW"), property<&R::AllZoneHtgUnitsSame>, property<&R::HeatUnitType>,
      property<&R::HeatUnitTripTemp>("F"), property<&R::HeatUnitSupTemp>("F"), property<&R::HeatUnitFanSpec>,
      property<&R::HeatUnitFanVal>.unit_by<&R::HeatUnitFanSpec>(), property<&R::HeatUnitFanEff>,
      property<&R::AllZoneTermsSame>, property<&R::TermType>, property<&R::AirDistribution>,
      property<&R::AirDistributionEffectivenessSpec>, property<&R::AirDistributionEffectiveness>,
      property<&R::CoilBypass>, property<&R::AirflowRatio>, property<&R::MinAirSpec>,
      property<&R::MinAirValue>.unit_by<&R::MinAirSpec>(), property<&R::MinDamperPos>, property<&R::ReheatCoil>,
      property<&R::TermFanSpec>, property<&R::TermFanVal>.unit_by<&R::TermFanSpec>(), property<&R::TermFanEff>,
      property<&R::TermSupTemp>("F"), property<&R::AllZoneTermClgSame>, property<&R::ClgAutoSize>,
      property<&R::ClgDesignSizingFactor>, property<&R::ClgDesignET>("F"), property<&R::ClgDesignCapacity>,
      property<&R::ClgDesignPower>.unit_by<&R::ClgDesignPowerUnits>(), property<&R::ClgDesignPowerUnits>,
      property<&R::ClgDesignPowerOption>, property<&R::ClgCutoffOAT>("F"), property<&R::AllZoneTermHtgSame>,
      property<&R::HtgAutoSize>, property<&R::HtgDesignSizingFactor>, property<&R::HtgDesignET>("F"),
      property<&R::HtgDesignCapacity>, property<&R::HtgDesignPower>.unit_by<&R::HtgDesignPowerUnits>(),
      property<&R::HtgDesignPowerUnits>, property<&R::HtgDesignPowerOption>,
      property<&R::DirectHeatOption>.codes(direct_heat_options), property<&R::HtgCutoffOAT>("F"),
      property<&R::DirectHeatCapacity>, property<&R::DirectHeatEff>, property<&R::DirectHeatMiscElec>);
  static const ClassInfo info(members);
  return info;
}

std::span<const Label> AS_CoilData::sources(const Object& coil) {
  const auto heating = labels<AS_HeatCoolSourceTypes>;
  return dynamic_cast<const AS_CoilData&>(coil).cools ? std::span<const Label>(labels_of<kCoolingSources>) : heating;
}

}  // namespace tarn
