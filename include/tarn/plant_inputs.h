// The inputs of a plant: its header, the systems it serves, and the details - configurations, equipment, loops, towers,
// recovery, storage, service hot water. docs/plants.md has what an engine reads from them.
#pragma once

#include <optional>

#include "tarn/pump_loop.h"

namespace tarn {

class PLT_Plant;

constexpr int kOutputFlags = 70, kPlantSystems = 250, kPlantEquipment = 50;

struct PlantHeaderRecord {
  Text<30> Name;
  Code<PLT_PlantTypes> PlantType;
  Bool Sized, Simulated;
  I2 NumOutputs;                        // those of the flags that are set
  Array<I2, kOutputFlags> OutputFlags;  // code of the output, and 100 times the unit
};
static_assert(sizeof(PlantHeaderRecord) == 178);

struct SystemSelectRecord {
  I2 NumSystems;
  Array<I2, kPlantSystems> SystemID, SystemMultiplier;  // a multiplier of 0 counts as 1
};
static_assert(sizeof(SystemSelectRecord) == 1002);

struct ConfigurationRecord {
  Code<PLT_SizingMethod> SizingMethod;
  Code<PLT_UnitSizing> UnitSizing;
  I2 SizingFactor;    // per cent of the design load
  R4 DesignCapacity;  // tons when cooling, MBH when heating, where the user gives it
  Code<PLT_ControlTypes> ControlType;
  R4 LowLoadLimit, HighLoadLimit;  // per cent of the capacity, where the part-load chiller runs below and above
  Code<PLT_FluidDistSystemTypes> DistSystemType;
  R4 DesignLWT, DesignDeltaT;  // F
  Code<PLT_LWTControlType> LWTControl;
  R4 ResetLWT;              // F, leaving water at the end of the reset
  R4 ResetStart, ResetEnd;  // outdoor F, or per cent of the load
};
static_assert(sizeof(ConfigurationRecord) == 44);

struct EquipmentRecord {
  Code<COM_ProjectLibrary> LibraryID;
  I2 EquipmentID;
  I2 TowerID;      // the unit's own tower
  I2 Sequence;     // of the units' starts, from 1
  R4 SizingShare;  // per cent of the plant's capacity
};
static_assert(sizeof(EquipmentRecord) == 12);

struct EquipmentListRecord {
  I2 NumEquipment;
};
static_assert(sizeof(EquipmentListRecord) == 2);

struct PlantDetailsRecord {
  Code<PLT_TowerConfigTypes> TowerConfig;
  I2 TowerID;  // the tower that the chillers share
  Code<PLT_WaterSourceConfigTypes> WaterSourceConfig;
  R4 WaterSourceTemp;  // F
  Code<PLT_FreeCoolingTypes> FreeCoolingType;
  R4 FreeCoolingHXApproach, FreeCoolingMaxWetBulb;  // F
  Bool HeatRecoveryUsed;
  Code<PLT_HeatRecoveryType> HeatRecoveryType;
  R4 HeatRecoveryEff;                    // per cent
  R4 HeatRecoveryLWT;                    // F
  R4 ChangeoverOAT, ChangeoverDeadband;  // F
  I2 ChangeoverMinTime;                  // hr
  I2 ChangeoverSchedule;
  R4 StorageCapacity;       // ton.hr
  R4 StorageDischargeRate;  // tons
  R4 StorageLoss;           // per cent a day
  I2 StorageSchedule;       // of charging
  R4 RemoteSourceTemp;      // F
  R4 RemoteHXEff;           // per cent
};
static_assert(sizeof(PlantDetailsRecord) == 66);

struct ServiceHotWaterRecord {
  R4 UsageRate;
  Code<PLT_SHW_USAGE_RATE_UNITS> UsageRateUnits;
  R4 NumPeople;
  I2 UsageSchedule;
  R4 SupplyTemp;            // F
  Array<R4, 12> MainsTemp;  // F, by month
  R4 StoredVolume;          // gal
  R4 StoredTemp;            // F
  R4 StoredHeatLoss;
  Code<PLT_SHW_STORED_HEATLOSS_UNITS> StoredHeatLossUnits;
  Code<PLT_SHW_STORED_HW_PRIO_RULE> StoredPriorityRule;
  R4 StoredPriorityOAT;  // F
  I2 StoredPrioritySchedule;
  Bool Recirculation;
  R4 RecirculationLoss;  // MBH
};
static_assert(sizeof(ServiceHotWaterRecord) == 92);

class PLT_General final : public Part<PlantHeaderRecord> {
 public:
  const ClassInfo& info() const override;
  PLT_Plant* plant = nullptr;

  /// Fills NumOutputs and OutputFlags for the plant's type and what it uses. Error `InvalidCall` for an unknown type,
  /// for more outputs than there are flags, and where Details were not loaded; then nothing has changed.
  void SetFlags();
  /// Codes of a piece of equipment from its library's index table; 0 for a code that the library does not have, and for
  /// a piece that does not exist. Error `InvalidCall` for an unknown library.
  void GetEquipmentTypes(int16_t nLibraryID, int16_t nEquipmentID, int16_t& nFunctionType, int16_t& nChillerType,
                         int16_t& nFuelType) const;
  /// The number of linked towers that are modelled in detail or as dry coolers.
  int32_t GetDetailedTowerCount() const;
  /// The number of links of the plant to a library, or to one piece of it.
  int32_t GetEquipmentLinkCount(int16_t nLibraryID, std::optional<int16_t> nEquipmentID = {}) const;

 private:
  const PLT_Plant& of_plant() const;
  int32_t count(const std::string& sql, std::initializer_list<int64_t> numbers) const;
};

class PLT_SystemSelect final : public Part<SystemSelectRecord> {
 public:
  const ClassInfo& info() const override;

  int16_t NumSystems() const { return SystemSelectRecord::NumSystems; }
  /// 0 to 250; entries after the last are emptied. Error `SubscriptOutOfRange`.
  void SetNumSystems(int16_t systems);
  /// Closes up the entries without a system, and counts the others.
  void pack();
};

class PLT_Configuration final : public Part<ConfigurationRecord> {
 public:
  PLT_Configuration() = default;
  explicit PLT_Configuration(std::string name) : name_(std::move(name)) {}
  const ClassInfo& info() const override;
  std::string Name() const { return name_; }

 private:
  std::string name_;
};

struct PLT_Equipment final : Part<EquipmentRecord> {
  const ClassInfo& info() const override;
  /// The kind of entity that the library holds: "Chiller", "Boiler"; empty for an unknown library.
  static std::string_view kind_of(const Object& piece, size_t element = 0);
};

class PLT_EquipmentList final : public Part<EquipmentListRecord> {
 public:
  PLT_EquipmentList() = default;
  explicit PLT_EquipmentList(std::string name) : name_(std::move(name)) {}
  const ClassInfo& info() const override;
  std::string Name() const { return name_; }

  int16_t NumEquipment() const { return EquipmentListRecord::NumEquipment; }
  /// 0 to 50; pieces after the last are emptied. Error `SubscriptOutOfRange`.
  void SetNumEquipment(int16_t pieces);
  /// Closes up the pieces that have no equipment of a library.
  void pack();

  Parts<PLT_Equipment, kPlantEquipment> Equipment;

 private:
  std::string name_;
};

class PLT_Details final : public Part<PlantDetailsRecord> {
 public:
  PLT_Details() { FreeCoolingType = PLT_FreeCoolingTypes::FCT_NOT_USED; }
  const ClassInfo& info() const override;

  PLT_Configuration ConfigCooling{"ConfigCooling"}, ConfigHeating{"ConfigHeating"};
  PLT_EquipmentList CoolingEqpt{"CoolingEqpt"}, HeatingEqpt{"HeatingEqpt"}, HeatRecEqpt{"HeatRecEqpt"};
  PLT_PumpLoop ChilledWaterPrimaryLoop{"ChilledWaterPrimaryLoop"},
      ChilledWaterSecondaryLoop{"ChilledWaterSecondaryLoop"}, HotWaterPrimaryLoop{"HotWaterPrimaryLoop"},
      HotWaterSecondaryLoop{"HotWaterSecondaryLoop"}, ChangeoverPrimaryLoop{"ChangeoverPrimaryLoop"},
      ChangeoverSecondaryLoop{"ChangeoverSecondaryLoop"}, CondenserWaterLoop{"CondenserWaterLoop"},
      SourceWaterLoop{"SourceWaterLoop"};

  static constexpr int kLists = 3, kLoops = 8;
  std::array<PLT_EquipmentList*, kLists> lists() { return {&CoolingEqpt, &HeatingEqpt, &HeatRecEqpt}; }
  std::array<PLT_PumpLoop*, kLoops> loops() {
    return {&ChilledWaterPrimaryLoop, &ChilledWaterSecondaryLoop, &HotWaterPrimaryLoop, &HotWaterSecondaryLoop,
            &ChangeoverPrimaryLoop,   &ChangeoverSecondaryLoop,   &CondenserWaterLoop,  &SourceWaterLoop};
  }
};

class PLT_ServiceHotWater final : public Part<ServiceHotWaterRecord> {
 public:
  const ClassInfo& info() const override;

  PLT_Pump Pump{"SHW Pump"};
};

}  // namespace tarn
