#include "tarn/air_system_results.h"

#include "storage/hourly_members.h"

namespace tarn {

const ClassInfo& AS_AirSizing::info() const {
  using R = AirSizingRecord;
  using C = AS_AirSizing;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&R::CoolingSupplyTemp>("F"), property<&R::CoolingTermTemp>("F"),
      property<&R::HeatingSupplyTemp>("F"), property<&R::SupplyFan1CFM>("cfm"), property<&R::SupplyFan2CFM>("cfm"),
      property<&R::VentCFM>("cfm"), property<&R::ExhaustCFM>("cfm"), property<&R::FloorArea>("ft2"),
      property<&R::SizingMethod>, property<&R::Source>, property<&R::CWDeltaT>("delta F"),
      property<&R::HWDeltaT>("delta F"), property<&R::CalcStartMonth>, property<&R::CalcEndMonth>,
      property<&R::SDLSForPeakHour>, property<&R::SDLSMonth>, property<&R::SDLSHour>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_ZoneSizingData::info() const {
  using R = ZoneSizingRecord;
  using C = AS_ZoneSizingData;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&R::MaxCFM>("cfm"), property<&R::MinCFM>("cfm"), property<&R::TermCFM>("cfm"),
      property<&R::ReheatCapacity>, property<&R::SpaceHeatCapacity>, property<&R::FloorArea>("ft2"),
      property<&R::CoolingCoilTot>, property<&R::HeatingCoilTot>, property<&R::MaxCooling>, property<&R::MaxHeating>,
      property<&R::MaxPeople>("people"), property<&R::CoolingSupplyTemp>("F"), property<&R::HeatingSupplyTemp>("F"),
      property<&R::G0>, property<&R::G1>, property<&R::G2>, property<&R::P1>, property<&R::Reserved>.reserved());
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_CoilSize::info() const {
  using R = CoilSizingRecord;
  using C = AS_CoilSize;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::CentralClgCoil>, property<&R::PrecoolCoil>, property<&R::TermClgCoil>,
                  property<&R::MaxCentralClg>, property<&R::MaxPrecool>, property<&R::MaxTermClg>,
                  property<&R::CentralHeatCoil>, property<&R::PreheatCoil>, property<&R::TerminalHeatCoil>,
                  property<&R::SpaceHeatCoil>, property<&R::HumidifierLoad>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_ZoneTemperature::info() const {
  using R = ZoneTemperatureRecord;
  using C = AS_ZoneTemperature;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::OccMaxTemp>("F"), property<&R::OccMinTemp>("F"),
                  property<&R::UnoccMaxTemp>("F"), property<&R::UnoccMinTemp>("F"), property<&R::OccClgLimitTemp>("F"),
                  property<&R::OccHtgLimitTemp>("F"), property<&R::UnoccClgLimitTemp>("F"),
                  property<&R::UnoccHtgLimitTemp>("F"), property<&R::StatusHours>, method<&C::ResetData>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_UnmetLoads::info() const {
  using R = UnmetLoadsRecord;
  using C = AS_UnmetLoads;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::StatsProvided>, property<&R::EqptType>, property<&R::CapSufficient>,
                  property<&R::CapDeficientBy5>, property<&R::CapDeficientBy10>, property<&R::CapDeficientOver10>,
                  method<&C::ResetData>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_LEEDUnmetLoads::info() const {
  using R = LeedUnmetLoadsRecord;
  using C = AS_LEEDUnmetLoads;
  static constexpr auto members = describe<C>(Failures::Raised, property<&R::ClgStatus>, property<&R::HtgStatus>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_HourlyResults::info() const {
  static constexpr auto members = hourly_results_members<AS_HourlyResults>();
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_HourlySimData::info() const {
  static constexpr auto members = hourly_list_members<AS_HourlySimData>();
  static const ClassInfo info(members);
  return info;
}

}  // namespace tarn
