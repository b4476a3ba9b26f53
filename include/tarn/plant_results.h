// The results of a plant: what its sizing and its simulation report. Their widths are this layer's own.
#pragma once

#include "tarn/base/months.h"
#include "tarn/plant_inputs.h"
#include "tarn/storage/hourly_results.h"

namespace tarn {

/// Loads are in tons when cooling and MBH when heating.
struct PlantSizingRecord {
  Code<Months> PeakMonth;
  I2 PeakHour;
  R4 PeakLoad;
  R4 OutdoorDryBulb, OutdoorWetBulb;       // F, at the peak
  R4 PumpHeat, PipeHeat;                   // of the peak load
  R4 FloorArea;                            // ft2, of what the systems serve
  R4 LeavingWaterTemp, EnteringWaterTemp;  // F
  R4 DesignFlow;                           // gpm
  Array<R4, 12> MonthlyPeakLoad;
  Array<I2, 12> MonthlyPeakHour;
  Array<R4, kPlantSystems> SystemLoad;  // of each selected system at the plant's peak
};
static_assert(sizeof(PlantSizingRecord) == 1112);

/// By the place of the piece in its list, and by pump and loop; loops in the order of the details.
struct EquipmentSizingRecord {
  Array<R4, kPlantEquipment> CoolingCapacity;                // tons
  Array<R4, kPlantEquipment> CoolingPower;                   // kW
  Array<R4, kPlantEquipment> EvaporatorFlow, CondenserFlow;  // gpm
  Array<R4, kPlantEquipment> HeatingCapacity;                // MBH
  Array<R4, kPlantEquipment> HeatingFlow;                    // gpm
  Array<R4, kPlantEquipment> HeatRecCapacity;                // MBH
  Array<R4, kPlantEquipment> HeatRecFlow;                    // gpm
  Array<R4, kPumps, PLT_Details::kLoops> PumpFlow;           // gpm
  Array<R4, kPumps, PLT_Details::kLoops> PumpPower;          // kW
};
static_assert(sizeof(EquipmentSizingRecord) == 2432);

/// The design day of each month.
struct DesignProfileRecord {
  Array<R4, 12, 24> CoolingLoad;                     // tons
  Array<R4, 12, 24> HeatingLoad;                     // MBH
  Array<R4, 12, 24> OutdoorDryBulb, OutdoorWetBulb;  // F
};
static_assert(sizeof(DesignProfileRecord) == 4608);

/// Hours of each month by how far the capacity met the load.
struct PlantUnmetLoadsRecord {
  Bool StatsProvided;
  Text<30> EqptType;
  Array<R4, 12> CapSufficient, CapDeficientBy5, CapDeficientBy10, CapDeficientOver10;
};
static_assert(sizeof(PlantUnmetLoadsRecord) == 224);

struct PlantLeedUnmetLoadsRecord {
  Array<Bool, kHoursInYear> Status;
};
static_assert(sizeof(PlantLeedUnmetLoadsRecord) == 17520);

struct PLT_SizingLoads final : Part<PlantSizingRecord> {
  const ClassInfo& info() const override;
};

struct PLT_EqptSizingResults final : Part<EquipmentSizingRecord> {
  const ClassInfo& info() const override;
};

struct PLT_DesignProfile final : Part<DesignProfileRecord> {
  const ClassInfo& info() const override;
};

struct PLT_UnmetLoads final : Part<PlantUnmetLoadsRecord> {
  const ClassInfo& info() const override;
};

struct PLT_LEEDUnmetLoads final : Part<PlantLeedUnmetLoadsRecord> {
  const ClassInfo& info() const override;
};

struct PLT_HourlyResults final : HourlyResults {
  const ClassInfo& info() const override;
};

struct PLT_HourlySimData final : HourlyList<PLT_HourlyResults> {
  const ClassInfo& info() const override;
};

}  // namespace tarn
