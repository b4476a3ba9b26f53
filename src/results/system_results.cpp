#include "tarn/system_results.h"

namespace tarn {
std::string WithComponents::ComponentName(int component) const {
  if (component < 1 || component > kLoadComponents) subscript_out_of_range(component, kLoadComponents);
  return std::string(text_of(labels<ADL_LoadComponents>, component));
}

const ClassInfo& ADL_DXXFileHeader::info() const {
  static constexpr auto members = describe_block<ADL_DXXFileHeader>(property<&ResultHeaderRecord::SystemName>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& ADL_Weather::info() const {
  using R = ResultWeatherRecord;
  static constexpr auto members = describe_block<ADL_Weather>(
      property<&R::DB>("F"), property<&R::WB>("F"), property<&R::WinterDB>("F"), property<&R::WinterWB>("F"),
      property<&R::RhoCpK>("Btu/(hr.CFM.F)"), property<&R::RhoHfgK>("Btu/(hr.CFM)"), property<&R::Altitude>("ft"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& ADL_SSAir::info() const {
  using R = SystemSummaryRecord;
  static constexpr auto members = describe_block<ADL_SSAir>(
      property<&R::ClgPeakMonth>, property<&R::ClgPeakHour>, property<&R::ClgOutdoorDB>("F"),
      property<&R::ClgOutdoorWB>("F"), property<&R::ClgCoilTotal>("Btu/hr"), property<&R::ClgCoilSensible>("Btu/hr"),
      property<&R::ClgCoilAirflow>("CFM"), property<&R::ClgEnteringDB>("F"), property<&R::ClgEnteringWB>("F"),
      property<&R::ClgLeavingDB>("F"), property<&R::ClgLeavingWB>("F"), property<&R::ClgSensibleHeatRatio>,
      property<&R::ClgBypassFactor>, property<&R::ClgResultingRH>("%"), property<&R::ClgWaterFlow>("gpm"),
      property<&R::ClgWaterRise>("delta F"), property<&R::ClgAreaPerTon>("ft2/ton"),
      property<&R::ClgLoadPerArea>("Btu/(hr.ft2)"), property<&R::ClgAirflowPerArea>("CFM/ft2"),
      property<&R::ClgAirflowPerTon>("CFM/ton"), property<&R::HtgOutdoorDB>("F"), property<&R::HtgOutdoorWB>("F"),
      property<&R::HtgCoilLoad>("Btu/hr"), property<&R::HtgCoilAirflow>("CFM"), property<&R::HtgEnteringDB>("F"),
      property<&R::HtgLeavingDB>("F"), property<&R::HtgWaterFlow>("gpm"), property<&R::HtgWaterDrop>("delta F"),
      property<&R::HtgLoadPerArea>("Btu/(hr.ft2)"), property<&R::PrecoolTotal>("Btu/hr"),
      property<&R::PrecoolSensible>("Btu/hr"), property<&R::PrecoolAirflow>("CFM"),
      property<&R::PrecoolEnteringDB>("F"), property<&R::PrecoolLeavingDB>("F"), property<&R::PrecoolWaterFlow>("gpm"),
      property<&R::PreheatLoad>("Btu/hr"), property<&R::PreheatAirflow>("CFM"), property<&R::PreheatEnteringDB>("F"),
      property<&R::PreheatLeavingDB>("F"), property<&R::PreheatWaterFlow>("gpm"),
      property<&R::HumidifierLoad>("Btu/hr"), property<&R::HumidifierFlow>("lb/hr"),
      property<&R::SupplyFanAirflow>("CFM"), property<&R::SupplyFanStandardAirflow>("CFM"),
      property<&R::SupplyFanBHP>("bhp"), property<&R::SupplyFanPower>("kW"), property<&R::SupplyFanStatic>("in. wg"),
      property<&R::ReturnFanAirflow>("CFM"), property<&R::ReturnFanStandardAirflow>("CFM"),
      property<&R::ReturnFanBHP>("bhp"), property<&R::ReturnFanPower>("kW"), property<&R::ReturnFanStatic>("in. wg"),
      property<&R::VentAirflow>("CFM"), property<&R::VentPerArea>("CFM/ft2"), property<&R::VentPerPerson>("CFM/person"),
      property<&R::FloorArea>("ft2"), property<&R::People>("people"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& ADL_DLAir::info() const {
  using C = ADL_DLAir;
  using R = SystemLoadsRecord;
  static constexpr auto members =
      describe_block<C>(property<&R::ClgPeakMonth>, property<&R::ClgPeakHour>, property<&R::ClgOutdoorDB>("F"),
                        property<&R::ClgOutdoorWB>("F"), property<&R::ClgDetail>, property<&R::ClgSensible>("Btu/hr"),
                        property<&R::ClgLatent>("Btu/hr"), property<&R::ClgTotalSensible>("Btu/hr"),
                        property<&R::ClgTotalLatent>("Btu/hr"), property<&R::ClgCoilSensible>("Btu/hr"),
                        property<&R::ClgCoilLatent>("Btu/hr"), property<&R::HtgOutdoorDB>("F"),
                        property<&R::HtgOutdoorWB>("F"), property<&R::HtgDetail>, property<&R::HtgSensible>("Btu/hr"),
                        property<&R::HtgLatent>("Btu/hr"), property<&R::HtgTotalSensible>("Btu/hr"),
                        property<&R::HtgTotalLatent>("Btu/hr"), property<&R::HtgCoilSensible>("Btu/hr"),
                        property<&R::HtgCoilLatent>("Btu/hr"), looked_up<&C::ComponentName, kLoadComponents>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& ADL_HourlyAirData::info() const {
  using R = HourlyAirRecord;
  static constexpr auto members = describe_block<ADL_HourlyAirData>(
      property<&R::CentCoolTot>("Btu/hr"), property<&R::CentCoolSens>("Btu/hr"), property<&R::CentHeat>("Btu/hr"),
      property<&R::PreCool>("Btu/hr"), property<&R::PreHeat>("Btu/hr"), property<&R::TermCool>("Btu/hr"),
      property<&R::TermHeat>("Btu/hr"), property<&R::ZoneHeat>("Btu/hr"), property<&R::AirFlow>("CFM"));
  static const ClassInfo info(members);
  return info;
}

namespace {

const Bounds& hourly_bounds(int dimension) {
  if (dimension < 1 || dimension > 2) subscript_out_of_range(dimension, 2);
  using Hours = decltype(HourlyAirTable::Hours);
  return Hours::bounds[static_cast<size_t>(2 - dimension)];  // in memory the hour comes first
}

}  // namespace

int16_t ADL_HLAir::LowerBound(int16_t dimension) const { return static_cast<int16_t>(hourly_bounds(dimension).first); }
int16_t ADL_HLAir::UpperBound(int16_t dimension) const { return static_cast<int16_t>(hourly_bounds(dimension).last); }

const ClassInfo& ADL_HLAir::info() const {
  using C = ADL_HLAir;
  using R = HourlyAirRecord;
  constexpr auto kHours = &HourlyAirTable::Hours;
  static constexpr auto members =
      describe_block<C>(method<&C::HourlyAir>("nMonth", "nHour"), method<&C::LowerBound>("nDimension"),
                        method<&C::UpperBound>("nDimension"), column<kHours, &R::CentCoolTot>("Btu/hr"),
                        column<kHours, &R::CentCoolSens>("Btu/hr"), column<kHours, &R::CentHeat>("Btu/hr"),
                        column<kHours, &R::PreCool>("Btu/hr"), column<kHours, &R::PreHeat>("Btu/hr"),
                        column<kHours, &R::TermCool>("Btu/hr"), column<kHours, &R::TermHeat>("Btu/hr"),
                        column<kHours, &R::ZoneHeat>("Btu/hr"), column<kHours, &R::AirFlow>("CFM"));
  static const ClassInfo info(members);
  return info;
}

std::string ADL_SysPsychro::PointName(int point) const {
  if (point < 1 || point > kAirPoints) subscript_out_of_range(point, kAirPoints);
  return std::string(text_of(labels<ADL_AirPoints>, point));
}

const ClassInfo& ADL_SysPsychro::info() const {
  using R = PsychroRecord;
  static constexpr auto members = describe_block<ADL_SysPsychro>(
      property<&R::DryBulb>("F"), property<&R::HumidityRatio>("lb/lb"), property<&R::Airflow>("CFM"),
      property<&R::SensibleChange>("Btu/hr"), property<&R::LatentChange>("Btu/hr"),
      looked_up<&ADL_SysPsychro::PointName, kAirPoints>);
  static const ClassInfo info(members);
  return info;
}

void ADL_SPAir::add_spans(Spans& all) {
  RecordBlock::add_spans(all);
  SPAirHtg.add_spans(all);
}

const ClassInfo& ADL_SPAir::info() const {
  using C = ADL_SPAir;
  using R = PsychroRecord;
  constexpr auto kHours = &PsychroTable::Hours;
  static constexpr auto members =
      describe_block<C>(method<&C::SPAirClg>("nMonth", "nHour"), owned<&C::SPAirHtg>, column<kHours, &R::DryBulb>("F"),
                        column<kHours, &R::HumidityRatio>("lb/lb"), column<kHours, &R::Airflow>("CFM"),
                        column<kHours, &R::SensibleChange>("Btu/hr"), column<kHours, &R::LatentChange>("Btu/hr"));
  static const ClassInfo info(members);
  return info;
}

}  // namespace tarn
