#include "tarn/plant_results.h"

#include "storage/hourly_members.h"

namespace tarn {

const ClassInfo& PLT_SizingLoads::info() const {
  using R = PlantSizingRecord;
  static constexpr auto members = describe<PLT_SizingLoads>(
      Failures::Raised, property<&R::PeakMonth>, property<&R::PeakHour>, property<&R::PeakLoad>,
      property<&R::OutdoorDryBulb>("F"), property<&R::OutdoorWetBulb>("F"), property<&R::PumpHeat>,
      property<&R::PipeHeat>, property<&R::FloorArea>("ft2"), property<&R::LeavingWaterTemp>("F"),
      property<&R::EnteringWaterTemp>("F"), property<&R::DesignFlow>("gpm"), property<&R::MonthlyPeakLoad>,
      property<&R::MonthlyPeakHour>, property<&R::SystemLoad>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& PLT_EqptSizingResults::info() const {
  using R = EquipmentSizingRecord;
  static constexpr auto members = describe<PLT_EqptSizingResults>(
      Failures::Raised, property<&R::CoolingCapacity>("tons"), property<&R::CoolingPower>("kW"),
      property<&R::EvaporatorFlow>("gpm"), property<&R::CondenserFlow>("gpm"), property<&R::HeatingCapacity>("MBH"),
      property<&R::HeatingFlow>("gpm"), property<&R::HeatRecCapacity>("MBH"), property<&R::HeatRecFlow>("gpm"),
      property<&R::PumpFlow>("gpm"), property<&R::PumpPower>("kW"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& PLT_DesignProfile::info() const {
  using R = DesignProfileRecord;
  static constexpr auto members =
      describe<PLT_DesignProfile>(Failures::Raised, property<&R::CoolingLoad>("tons"), property<&R::HeatingLoad>("MBH"),
                                  property<&R::OutdoorDryBulb>("F"), property<&R::OutdoorWetBulb>("F"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& PLT_UnmetLoads::info() const {
  using R = PlantUnmetLoadsRecord;
  static constexpr auto members =
      describe<PLT_UnmetLoads>(Failures::Raised, property<&R::StatsProvided>, property<&R::EqptType>.trimmed(),
                               property<&R::CapSufficient>("hr"), property<&R::CapDeficientBy5>("hr"),
                               property<&R::CapDeficientBy10>("hr"), property<&R::CapDeficientOver10>("hr"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& PLT_LEEDUnmetLoads::info() const {
  static constexpr auto members =
      describe<PLT_LEEDUnmetLoads>(Failures::Raised, property<&PlantLeedUnmetLoadsRecord::Status>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& PLT_HourlyResults::info() const {
  static constexpr auto members = hourly_results_members<PLT_HourlyResults>();
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& PLT_HourlySimData::info() const {
  static constexpr auto members = hourly_list_members<PLT_HourlySimData>();
  static const ClassInfo info(members);
  return info;
}

}  // namespace tarn
