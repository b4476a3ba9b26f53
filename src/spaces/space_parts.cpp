#include "tarn/space_parts.h"

#include "tarn/reflect/describe.h"

namespace tarn {

const ClassInfo& SPC_General::info() const {
  using R = GeneralRecord;
  static constexpr auto members = describe<SPC_General>(
      Failures::Trapped, property<&R::Name>.trimmed(), property<&R::FloorArea>("ft2"), property<&R::AvgHeight>("ft"),
      property<&R::BuildingWt>("lb/ft2"), property<&R::Reserved>.reserved(), property<&R::SpaceUsage>,
      property<&R::OAReq1Value>.unit_by<&R::OAReq1Spec>(), property<&R::OAReq2Value>.unit_by<&R::OAReq2Spec>(),
      property<&R::OAReq1Spec>, property<&R::OAReq2Spec>, property<&R::AreaSpec>, property<&R::Length>("ft"),
      property<&R::Width>("ft"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& SPC_WallWindow::info() const {
  using R = WallWindowRecord;
  static constexpr auto members = describe<SPC_WallWindow>(
      Failures::Trapped, property<&R::Exposure>, property<&R::GrossArea>("ft2"),
      property<&R::WallType>.refers_to("Wall"), property<&R::WindowType>.refers_to("Window"), property<&R::WindowQty>,
      property<&R::WindowShade>.refers_to("Shade"), property<&R::DoorType>.refers_to("Door"), property<&R::DoorQty>,
      property<&R::WallAreaSpec>, property<&R::WallWidth>("ft"), property<&R::WallHeight>("ft"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& SPC_Roof::info() const {
  using R = RoofRecord;
  static constexpr auto members = describe<SPC_Roof>(
      Failures::Trapped, property<&R::Exposure>, property<&R::Slope>, property<&R::GrossArea>("ft2"),
      property<&R::RoofType>.refers_to("Roof"), property<&R::SkylightType>.refers_to("Window"),
      property<&R::SkylightQty>, property<&R::AreaSpec>, property<&R::Length>("ft"), property<&R::Width>("ft"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& SPC_Partition::info() const {
  using R = PartitionRecord;
  static constexpr auto members = describe<SPC_Partition>(
      Failures::Trapped, property<&R::PartitionType>, property<&R::Area>("ft2"), property<&R::UValue>("Btu/(hr.ft2.F)"),
      property<&R::MaxSpaceTemp>("F"), property<&R::MaxAmbient>("F"), property<&R::MinSpaceTemp>("F"),
      property<&R::MinAmbient>("F"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& SPC_Floor::info() const {
  using R = FloorRecord;
  static constexpr auto members = describe<SPC_Floor>(
      Failures::Trapped, property<&R::FloorType>, property<&R::Area>("ft2"),
      property<&R::OverallUValue>("Btu/(hr.ft2.F)"), property<&R::ExposedPerimeter>("ft"),
      property<&R::SlabInsulR>("hr.ft2.F/Btu"), property<&R::Depth>("ft"), property<&R::WallUValue>("Btu/(hr.ft2.F)"),
      property<&R::WallInsulR>("hr.ft2.F/Btu"), property<&R::WallInsulDepth>("ft"), property<&R::MaxSpaceTemp>("F"),
      property<&R::MaxAmbient>("F"), property<&R::MinSpaceTemp>("F"), property<&R::MinAmbient>("F"),
      property<&R::AreaSpec>, property<&R::Length>("ft"), property<&R::Width>("ft"), property<&R::Carpeted>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& SPC_Infiltration::info() const {
  using R = InfiltrationRecord;
  static constexpr auto members = describe<SPC_Infiltration>(
      Failures::Trapped, property<&R::CoolSpec>, property<&R::CoolCFM>.unit_by<&R::CoolSpec>(), property<&R::HeatSpec>,
      property<&R::HeatCFM>.unit_by<&R::HeatSpec>(), property<&R::TypeSpec>,
      property<&R::TypeCFM>.unit_by<&R::TypeSpec>(), property<&R::CalcWhenFanOn>, property<&R::DirExhaustAir>("cfm"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& SPC_People::info() const {
  using R = PeopleRecord;
  static constexpr auto members = describe<SPC_People>(
      Failures::Trapped, property<&R::Spec>, property<&R::Occupancy>.unit_by<&R::Spec>(), property<&R::ActLevel>,
      property<&R::SensibleHeat>("Btu/hr"), property<&R::LatentHeat>("Btu/hr"),
      property<&R::Schedule>.refers_to("Schedule"), property<&R::RadiantConvSplit>, property<&R::UnoccDiv>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& SPC_Lighting::info() const {
  using R = LightingRecord;
  static constexpr auto members = describe<SPC_Lighting>(
      Failures::Trapped, property<&R::OverheadSpec>, property<&R::OverheadWatt>.unit_by<&R::OverheadSpec>(),
      property<&R::BallastMult>, property<&R::OverheadFixture>, property<&R::OverheadSchedule>.refers_to("Schedule"),
      property<&R::TaskSpec>, property<&R::TaskWatt>.unit_by<&R::TaskSpec>(),
      property<&R::TaskSchedule>.refers_to("Schedule"), property<&R::OvhdRadConvSplit>, property<&R::OvhdUnoccDiv>,
      property<&R::TskLightRadConvSplit>, property<&R::TskLightUnoccDiv>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& SPC_OtherLoads::info() const {
  using R = OtherLoadsRecord;
  static constexpr auto members = describe<SPC_OtherLoads>(
      Failures::Trapped, property<&R::MiscSensibleHeat>("Btu/hr"),
      property<&R::MiscSensibleSchedule>.refers_to("Schedule"), property<&R::MiscLatentHeat>("Btu/hr"),
      property<&R::MiscLatentSchedule>.refers_to("Schedule"), property<&R::ElecEqptSpec>,
      property<&R::ElecEqptHeatGain>.unit_by<&R::ElecEqptSpec>(), property<&R::ElecEqptSchedule>.refers_to("Schedule"),
      property<&R::ElecRadConvSplit>, property<&R::ElecUnoccDiv>, property<&R::MiscRadConvSplit>,
      property<&R::MiscSensUnoccDiv>, property<&R::MiscLatUnoccDiv>);
  static const ClassInfo info(members);
  return info;
}

}  // namespace tarn
