// What a building's file consists of: general data, inputs, results of the simulation, hourly profiles of the meters.
// The order and widths of the results are this layer's own; amounts that add up to a bill have 8 bytes.
#pragma once

#include "tarn/building_codes.h"
#include "tarn/storage/hourly_results.h"

namespace tarn {

inline constexpr int kBuildingSystems = 250, kBuildingPlants = 100, kMiscEquipment = 10;
inline constexpr int kMeters = 8, kElectricMeters = 2, kPowerTypes = 7, kElectricConsumers = 7, kEnergyComponents = 9,
                     kEnergyCategories = 13, kDayPeriods = 5;

struct BuildingGeneralRecord {
  Text<45> Name;
  Bool Simulated;
  I2 Kept;  // both reserved; kept as they are in the file
  Array<I2, 8> KeptOf;
};
static_assert(sizeof(BuildingGeneralRecord) == 65);

struct BuildingInputsRecord {
  Array<I2, kBuildingSystems> SystemID;    // 0: an empty slot
  Array<I2, kBuildingSystems> SystemMult;  // how often the system counts
  Array<I2, kBuildingPlants> PlantID;
  // Miscellaneous equipment
  Array<Bool, kMiscEquipment> MEProcess;  // a process load
  Array<Text<30>, kMiscEquipment> MEName;
  Array<Code<BLD_PowerTypes>, kMiscEquipment> METype;
  Array<R4, kMiscEquipment> MEMaxPower;
  Array<I2, kMiscEquipment> MESchedule;
  Array<I2, kMeters> UtilityRate;  // electric ones of meters 1 and 2, fuel ones of the others
  Array<Code<BLD_PowerProfiles>, kElectricConsumers> ElecCompMeter;  // by BLD_EnergyConsumingSystems
  R4 BldgPowerFactor;
  R4 AddBldgFloorArea;  // ft2, besides that of the systems
  R4 ElecGenEfficiency;
};
static_assert(sizeof(BuildingInputsRecord) == 1642);

/// Components are BLD_SystemComponents, categories BLD_EnergyCategories, meters BLD_PowerProfiles from 1, periods
/// BLD_TODPeriods. Energies are in each meter's units, costs in the currency.
struct BuildingResultsRecord {
  Text<45> Location;
  R4 TotClgLoad;                             // tons
  R4 TotHtgLoad;                             // MBH
  R4 TotFlrArea, GrossWallArea, WindowArea;  // ft2
  R4 UnmetClgHours, UnmetHtgHours;
  Text<5> CurrSymbol;
  Array<Text<7>, kMeters> EnergyUnits;
  Array<I2, kPowerTypes> DemandUnits;
  Array<R8, kMeters> EnergyConv;
  Array<R8, kEnergyComponents> AnnSiteEnComp, AnnSrceEnComp;  // kBtu
  Array<R8, kEnergyCategories> AnnSiteEnType, AnnSrceEnType;  // kBtu
  Array<R8, kEnergyComponents> AnnCostComp;
  Array<R8, kEnergyCategories> AnnCostType, AnnEnergyType;
  Array<R8, kEnergyCategories, 12> MonEnergyType;
  Array<R8, kEnergyComponents, kMeters, 12> MonEnergyCxE;
  Array<R8, kEnergyComponents, 12> MonCostComp;
  Array<R8, kEnergyCategories, 12> MonCostType;
  Array<R8, kMeters, 12> MonEnCharge, MonDmdCharge, MonFixCharge, MonTaxCharge, MonMetCharge;
  Array<R8, kMeters, 12> MonMetEnergy, MonMetRate;
  Array<R8, kDayPeriods, kMeters, 12> MonConsump, MonMaxDemand, MonBillDemand;
  Array<I2, kDayPeriods, kMeters, 12> MonDemandDay, MonDemandHour;
  R8 CO2Emission, SO2Emission, NoxEmission;                // lb
  Array<R8, kMiscEquipment> AnnMiscEnergy, AnnMiscDemand;  // of each piece
  Array<R8, kEnergyComponents, kMeters> AnnHVACEnergy, AnnHVACDemand;
};
static_assert(sizeof(BuildingResultsRecord) == 31'268);

struct BuildingProfileRecord {
  Array<R4, kHoursInYear> Power;  // in the meter's units, by hour of the year
};
static_assert(sizeof(BuildingProfileRecord) == 35'040);

/// A section of the building's file that knows its own length in bytes.
template <typename R>
struct BuildingSection : Part<R> {
  int32_t GetDataLen() const { return sizeof(R); }
};

struct BLD_General final : BuildingSection<BuildingGeneralRecord> {
  const ClassInfo& info() const override;
};
struct BLD_Inputs final : BuildingSection<BuildingInputsRecord> {
  const ClassInfo& info() const override;
};
struct BLD_Results final : BuildingSection<BuildingResultsRecord> {
  const ClassInfo& info() const override;
};
struct BLD_Profile final : BuildingSection<BuildingProfileRecord> {
  const ClassInfo& info() const override;
};

}  // namespace tarn
