#include "tarn/building_parts.h"

#include "tarn/reflect/describe.h"

namespace tarn {
namespace {

std::string_view rate_of_meter(const Object& /*inputs*/, size_t meter) {
  return meter < kElectricMeters ? "ElectricRate" : "FuelRate";
}

}  // namespace

const ClassInfo& BLD_General::info() const {
  using R = BuildingGeneralRecord;
  using C = BLD_General;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::Name>.trimmed(), property<&R::Simulated>,
                  property<&R::Kept>.reserved(), property<&R::KeptOf>.reserved(), method<&C::GetDataLen>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& BLD_Inputs::info() const {
  using R = BuildingInputsRecord;
  using C = BLD_Inputs;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::SystemID>.refers_to("System"), property<&R::SystemMult>,
                  property<&R::PlantID>.refers_to("Plant"), property<&R::MEProcess>, property<&R::MEName>,
                  property<&R::METype>, property<&R::MEMaxPower>, property<&R::MESchedule>.refers_to("Schedule"),
                  property<&R::UtilityRate>.refers_to("ElectricRate FuelRate", rate_of_meter),
                  property<&R::ElecCompMeter>, property<&R::BldgPowerFactor>, property<&R::AddBldgFloorArea>("ft2"),
                  property<&R::ElecGenEfficiency>, method<&C::GetDataLen>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& BLD_Results::info() const {
  using R = BuildingResultsRecord;
  using C = BLD_Results;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&R::Location>, property<&R::TotClgLoad>("tons"), property<&R::TotHtgLoad>("MBH"),
      property<&R::TotFlrArea>("ft2"), property<&R::GrossWallArea>("ft2"), property<&R::WindowArea>("ft2"),
      property<&R::UnmetClgHours>("hr"), property<&R::UnmetHtgHours>("hr"), property<&R::CurrSymbol>,
      property<&R::EnergyUnits>, property<&R::DemandUnits>, property<&R::EnergyConv>,
      property<&R::AnnSiteEnComp>("kBtu"), property<&R::AnnSrceEnComp>("kBtu"), property<&R::AnnSiteEnType>("kBtu"),
      property<&R::AnnSrceEnType>("kBtu"), property<&R::AnnCostComp>, property<&R::AnnCostType>,
      property<&R::AnnEnergyType>, property<&R::MonEnergyType>, property<&R::MonEnergyCxE>, property<&R::MonCostComp>,
      property<&R::MonCostType>, property<&R::MonEnCharge>, property<&R::MonDmdCharge>, property<&R::MonFixCharge>,
      property<&R::MonTaxCharge>, property<&R::MonMetCharge>, property<&R::MonMetEnergy>, property<&R::MonMetRate>,
      property<&R::MonConsump>, property<&R::MonMaxDemand>, property<&R::MonBillDemand>, property<&R::MonDemandDay>,
      property<&R::MonDemandHour>, property<&R::CO2Emission>("lb"), property<&R::SO2Emission>("lb"),
      property<&R::NoxEmission>("lb"), property<&R::AnnMiscEnergy>, property<&R::AnnMiscDemand>,
      property<&R::AnnHVACEnergy>, property<&R::AnnHVACDemand>, method<&C::GetDataLen>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& BLD_Profile::info() const {
  static constexpr auto members = describe<BLD_Profile>(Failures::Raised, property<&BuildingProfileRecord::Power>,
                                                        method<&BLD_Profile::GetDataLen>);
  static const ClassInfo info(members);
  return info;
}

}  // namespace tarn
