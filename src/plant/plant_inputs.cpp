#include "tarn/plant_inputs.h"

#include "tarn/reflect/describe.h"

namespace tarn {
const ClassInfo& PLT_General::info() const {
  using R = PlantHeaderRecord;
  using C = PLT_General;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&R::Name>.trimmed(), property<&R::PlantType>, property<&R::Sized>,
      property<&R::Simulated>, property<&R::NumOutputs>.read_only(), property<&R::OutputFlags>.read_only(),
      method<&C::SetFlags>,
      method<&C::GetEquipmentTypes>("nLibraryID", "nEquipmentID", "nFunctionType", "nChillerType", "nFuelType"),
      method<&C::GetDetailedTowerCount>, method<&C::GetEquipmentLinkCount>("nLibraryID", "nEquipmentID"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& PLT_SystemSelect::info() const {
  using R = SystemSelectRecord;
  static constexpr auto members = describe<PLT_SystemSelect>(
      Failures::Raised, converted<&R::NumSystems, &PLT_SystemSelect::NumSystems, &PLT_SystemSelect::SetNumSystems>,
      property<&R::SystemID>.refers_to("System"), property<&R::SystemMultiplier>);
  static const ClassInfo info(members);
  return info;
}

void PLT_SystemSelect::pack() {
  int kept = 0;
  for (int i = 1; i <= kPlantSystems; ++i) {
    if (SystemID(i) == 0) continue;
    ++kept;
    SystemID(kept) = int16_t{SystemID(i)};
    SystemMultiplier(kept) = int16_t{SystemMultiplier(i)};
  }
  SetNumSystems(static_cast<int16_t>(kept));
}

void PLT_SystemSelect::SetNumSystems(int16_t systems) {
  if (systems < 0 || systems > kPlantSystems) subscript_out_of_range(systems, {0, kPlantSystems});
  SystemSelectRecord::NumSystems = systems;
  for (int i = systems + 1; i <= kPlantSystems; ++i) {
    SystemID(i) = 0;
    SystemMultiplier(i) = 0;
  }
}

const ClassInfo& PLT_Configuration::info() const {
  using R = ConfigurationRecord;
  using C = PLT_Configuration;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&C::Name>, property<&R::SizingMethod>, property<&R::UnitSizing>,
                  property<&R::SizingFactor>("%"), property<&R::DesignCapacity>, property<&R::ControlType>,
                  property<&R::LowLoadLimit>("%"), property<&R::HighLoadLimit>("%"), property<&R::DistSystemType>,
                  property<&R::DesignLWT>("F"), property<&R::DesignDeltaT>("delta F"), property<&R::LWTControl>,
                  property<&R::ResetLWT>("F"), property<&R::ResetStart>, property<&R::ResetEnd>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& PLT_Equipment::info() const {
  using R = EquipmentRecord;
  static constexpr auto members = describe<PLT_Equipment>(
      Failures::Raised, property<&R::LibraryID>, property<&R::EquipmentID>.refers_to("Chiller Boiler", kind_of),
      property<&R::TowerID>.refers_to("Tower"), property<&R::Sequence>, property<&R::SizingShare>("%"));
  static const ClassInfo info(members);
  return info;
}

std::string_view PLT_Equipment::kind_of(const Object& piece, size_t /*element*/) {
  switch (static_cast<COM_ProjectLibrary>(dynamic_cast<const PLT_Equipment&>(piece).LibraryID)) {
    case COM_ProjectLibrary::LIB_CHILLERS:
      return "Chiller";
    case COM_ProjectLibrary::LIB_BOILERS:
      return "Boiler";
    default:
      return "";
  }
}

const ClassInfo& PLT_EquipmentList::info() const {
  using C = PLT_EquipmentList;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&C::Name>,
                  converted<&EquipmentListRecord::NumEquipment, &C::NumEquipment, &C::SetNumEquipment>,
                  owned<&C::Equipment, &C::NumEquipment, &C::SetNumEquipment>);
  static const ClassInfo info(members);
  return info;
}

void PLT_EquipmentList::SetNumEquipment(int16_t pieces) {
  if (pieces < 0 || pieces > kPlantEquipment) subscript_out_of_range(pieces, {0, kPlantEquipment});
  EquipmentListRecord::NumEquipment = pieces;
  for (int i = pieces + 1; i <= kPlantEquipment; ++i) static_cast<EquipmentRecord&>(Equipment(i)) = {};
}

void PLT_EquipmentList::pack() {
  int16_t kept = 0;
  for (int i = 1; i <= NumEquipment(); ++i) {
    if (Equipment(i).EquipmentID == 0 || PLT_Equipment::kind_of(Equipment(i)).empty()) continue;
    static_cast<EquipmentRecord&>(Equipment(++kept)) = EquipmentRecord(Equipment(i));
  }
  SetNumEquipment(kept);
}

const ClassInfo& PLT_Details::info() const {
  using R = PlantDetailsRecord;
  using C = PLT_Details;
  static constexpr auto members = describe<C>(
      Failures::Raised, owned<&C::ConfigCooling>, owned<&C::ConfigHeating>, owned<&C::CoolingEqpt>,
      owned<&C::HeatingEqpt>, owned<&C::HeatRecEqpt>, owned<&C::ChilledWaterPrimaryLoop>,
      owned<&C::ChilledWaterSecondaryLoop>, owned<&C::HotWaterPrimaryLoop>, owned<&C::HotWaterSecondaryLoop>,
      owned<&C::ChangeoverPrimaryLoop>, owned<&C::ChangeoverSecondaryLoop>, owned<&C::CondenserWaterLoop>,
      owned<&C::SourceWaterLoop>, property<&R::TowerConfig>, property<&R::TowerID>.refers_to("Tower"),
      property<&R::WaterSourceConfig>, property<&R::WaterSourceTemp>("F"), property<&R::FreeCoolingType>,
      property<&R::FreeCoolingHXApproach>("delta F"), property<&R::FreeCoolingMaxWetBulb>("F"),
      property<&R::HeatRecoveryUsed>, property<&R::HeatRecoveryType>, property<&R::HeatRecoveryEff>("%"),
      property<&R::HeatRecoveryLWT>("F"), property<&R::ChangeoverOAT>("F"), property<&R::ChangeoverDeadband>("delta F"),
      property<&R::ChangeoverMinTime>("hr"), property<&R::ChangeoverSchedule>.refers_to("Schedule"),
      property<&R::StorageCapacity>("ton.hr"), property<&R::StorageDischargeRate>("tons"),
      property<&R::StorageLoss>("%/day"), property<&R::StorageSchedule>.refers_to("Schedule"),
      property<&R::RemoteSourceTemp>("F"), property<&R::RemoteHXEff>("%"));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& PLT_ServiceHotWater::info() const {
  using R = ServiceHotWaterRecord;
  using C = PLT_ServiceHotWater;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&R::UsageRate>.unit_by<&R::UsageRateUnits>(), property<&R::UsageRateUnits>,
                  property<&R::NumPeople>("people"), property<&R::UsageSchedule>.refers_to("Schedule"),
                  property<&R::SupplyTemp>("F"), property<&R::MainsTemp>("F"), property<&R::StoredVolume>("gal"),
                  property<&R::StoredTemp>("F"), property<&R::StoredHeatLoss>.unit_by<&R::StoredHeatLossUnits>(),
                  property<&R::StoredHeatLossUnits>, property<&R::StoredPriorityRule>,
                  property<&R::StoredPriorityOAT>("F"), property<&R::StoredPrioritySchedule>.refers_to("Schedule"),
                  property<&R::Recirculation>, property<&R::RecirculationLoss>("MBH"), owned<&C::Pump>);
  static const ClassInfo info(members);
  return info;
}

}  // namespace tarn
