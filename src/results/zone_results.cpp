#include "tarn/zone_results.h"

namespace tarn {
const ClassInfo& ADL_TerminalSizing::info() const {
  using R = TerminalSizingRecord;
  static constexpr auto members = describe_block<ADL_TerminalSizing>(
      property<&R::PeakMonth>, property<&R::PeakHour>, property<&R::PeakSensible>("Btu/hr"),
      property<&R::PeakTotal>("Btu/hr"), property<&R::HeatingLoad>("Btu/hr"), property<&R::DesignAirflow>("CFM"),
      property<&R::MinAirflow>("CFM"), property<&R::AirflowPerArea>("CFM/ft2"), property<&R::VentAirflow>("CFM"),
      property<&R::FloorArea>("ft2"), property<&R::People>("people"), property<&R::TermType>,
      property<&R::ReheatCoilLoad>("Btu/hr"), property<&R::ReheatCoilFlow>("gpm"),
      property<&R::CoolCoilTotal>("Btu/hr"), property<&R::CoolCoilSensible>("Btu/hr"),
      property<&R::CoolCoilFlow>("gpm"), property<&R::CoolCoilEnteringDB>("F"), property<&R::CoolCoilEnteringWB>("F"),
      property<&R::CoolCoilLeavingDB>("F"), property<&R::CoolCoilLeavingWB>("F"), property<&R::HeatCoilLoad>("Btu/hr"),
      property<&R::HeatCoilFlow>("gpm"), property<&R::HeatCoilEnteringDB>("F"), property<&R::HeatCoilLeavingDB>("F"),
      property<&R::TermFanAirflow>("CFM"), property<&R::TermFanBHP>("bhp"), property<&R::TermFanPower>("kW"),
      property<&R::HeatUnitType>, property<&R::HeatUnitLoad>("Btu/hr"), property<&R::HeatUnitFlow>("gpm"),
      property<&R::HeatUnitFanAirflow>("CFM"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& ADL_TSZone::info() const {
  static constexpr auto members = describe_block<ADL_TSZone>(owned<&ADL_TSZone::TerminalSizing>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& ADL_HourlyZoneData::info() const {
  using R = ZoneHourRecord;
  static constexpr auto members = describe_block<ADL_HourlyZoneData>(
      property<&R::OutdoorDB>("F"), property<&R::ZoneDB>("F"), property<&R::ZoneRH>("%"),
      property<&R::ZoneSensible>("Btu/hr"), property<&R::ZoneConditioning>("Btu/hr"), property<&R::TermCool>("Btu/hr"),
      property<&R::TermHeat>("Btu/hr"), property<&R::ZoneHeat>("Btu/hr"), property<&R::AirFlow>("CFM"));
  static const ClassInfo info(members);
  return info;
}

void ADL_HLZone::add_spans(Spans& all) {
  RecordBlock::add_spans(all);
  HLZoneHtg.add_spans(all);
}

const ClassInfo& ADL_HLZone::info() const {
  using C = ADL_HLZone;
  using R = ZoneHourRecord;
  constexpr auto kHours = &ZoneHourTable::Hours;
  static constexpr auto members = describe_block<C>(
      method<&C::HLZoneClg>("nMonth", "nHour"), owned<&C::HLZoneHtg>, column<kHours, &R::OutdoorDB>("F"),
      column<kHours, &R::ZoneDB>("F"), column<kHours, &R::ZoneRH>("%"), column<kHours, &R::ZoneSensible>("Btu/hr"),
      column<kHours, &R::ZoneConditioning>("Btu/hr"), column<kHours, &R::TermCool>("Btu/hr"),
      column<kHours, &R::TermHeat>("Btu/hr"), column<kHours, &R::ZoneHeat>("Btu/hr"),
      column<kHours, &R::AirFlow>("CFM"));
  static const ClassInfo info(members);
  return info;
}

namespace {

template <typename C>
consteval auto describe_zone_loads() {
  using R = ZoneLoadsRecord;
  return describe_block<C>(property<&R::Sensible>("Btu/hr"), property<&R::Latent>("Btu/hr"),
                           property<&R::TotalSensible>("Btu/hr"), property<&R::TotalLatent>("Btu/hr"),
                           looked_up<&C::ComponentName, kLoadComponents>);
}

}  // namespace

const ClassInfo& ADL_CoolingLoads::info() const {
  static constexpr auto members = describe_zone_loads<ADL_CoolingLoads>();
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& ADL_HeatingLoads::info() const {
  static constexpr auto members = describe_zone_loads<ADL_HeatingLoads>();
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& ADL_LoadDetails::info() const {
  using C = ADL_LoadDetails;
  using R = LoadDetailsRecord;
  static constexpr auto members = describe_block<C>(
      property<&R::PeakMonth>, property<&R::PeakHour>, property<&R::ClgOutdoorDB>("F"), property<&R::ClgOutdoorWB>("F"),
      property<&R::ClgThermostat>("F"), property<&R::HtgOutdoorDB>("F"), property<&R::HtgOutdoorWB>("F"),
      property<&R::HtgThermostat>("F"), property<&R::FloorArea>("ft2"), property<&R::People>("people"),
      property<&R::ClgDetail>, property<&R::HtgDetail>, looked_up<&C::ComponentName, kLoadComponents>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& ADL_SpaceLoads::info() const {
  using C = ADL_SpaceLoads;
  using R = SpaceLoadsRecord;
  static constexpr auto members = describe_block<C>(
      property<&R::SpaceID>, property<&R::Name>.trimmed(), property<&R::Multiplier>, property<&R::FloorArea>("ft2"),
      property<&R::People>("people"), property<&R::Airflow>("CFM"), property<&R::PeakMonth>, property<&R::PeakHour>,
      property<&R::ClgDetail>, property<&R::ClgSensible>("Btu/hr"), property<&R::ClgLatent>("Btu/hr"),
      property<&R::HtgDetail>, property<&R::HtgLoad>("Btu/hr"), property<&R::ClgTotalSensible>("Btu/hr"),
      property<&R::ClgTotalLatent>("Btu/hr"), property<&R::HtgTotal>("Btu/hr"),
      looked_up<&C::ComponentName, kLoadComponents>);
  static const ClassInfo info(members);
  return info;
}

Ptr<ADL_SpaceLoads> ADL_DLZone::DLSpace(int16_t nIndex) const {
  const auto count = static_cast<int>(spaces_.size());
  if (nIndex < 1 || nIndex > count) subscript_out_of_range(nIndex, count);
  return spaces_[static_cast<size_t>(nIndex) - 1];
}

void ADL_DLZone::resize_spaces(int count) {
  spaces_.resize(static_cast<size_t>(count));
  list_->clear();
  for (auto& space : spaces_) {
    if (!space) space = std::make_shared<ADL_SpaceLoads>();
    list_->add(std::static_pointer_cast<Object>(space));
  }
}

void ADL_DLZone::add_spans(Spans& all) {
  RecordBlock::add_spans(all);
  HeatingLoads.add_spans(all);
  LoadDetails.add_spans(all);
  for (const auto& space : spaces_) space->add_spans(all);
}

void ADL_DLZone::fit(const ResultBlock& other) {
  resize_spaces(static_cast<int>(static_cast<const ADL_DLZone&>(other).spaces_.size()));
}

std::vector<std::pair<std::string, ResultBlock*>> ADL_DLZone::rest() const {
  std::vector<std::pair<std::string, ResultBlock*>> all;
  for (size_t i = 0; i < spaces_.size(); ++i)
    all.emplace_back("DLSpace(" + std::to_string(i + 1) + ")", spaces_[i].get());
  return all;
}

const ClassInfo& ADL_DLZone::info() const {
  using C = ADL_DLZone;
  using R = ZoneLoadsRecord;
  constexpr auto kHours = &ZoneLoadsTable::Hours;
  static constexpr auto members =
      describe_block<C>(method<&C::CoolingLoads>("nMonth", "nHour"), owned<&C::HeatingLoads>, owned<&C::LoadDetails>,
                        property<&C::DLSpaces>, method<&C::DLSpace>("nIndex"), column<kHours, &R::Sensible>("Btu/hr"),
                        column<kHours, &R::Latent>("Btu/hr"), column<kHours, &R::TotalSensible>("Btu/hr"),
                        column<kHours, &R::TotalLatent>("Btu/hr"));
  static const ClassInfo info(members);
  return info;
}

}  // namespace tarn
