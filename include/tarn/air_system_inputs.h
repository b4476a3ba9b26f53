// The inputs of an air system: a header and its components, each with its block of the system's file. Codes and tables
// that belong to calculation engines are kept as they are. A real whose unit no comment gives has the unit of those
// engines; nothing is converted here.
//
// Curves of direct expansion (c1 + c2 x + ...) give fractions of the value at the rating point, with temperatures in F;
// dx_coefficients.h has their forms. Of two subscripts the first is the coefficient, the second the stage.
#pragma once

#include "tarn/air_equipment_codes.h"
#include "tarn/air_system_codes.h"
#include "tarn/storage/part.h"

namespace tarn {

class AS_AirSystem;

struct SystemHeaderRecord {
  Text<30> Name;
  Code<AS_EquipmentTypes> EquipClass;
  Code<AS_SystemTypes> SystemType;
  I2 NumZones;
  Bool Sized, CoilDataValid, Simulated, CWCoilsExists, HWCoilsExists, STMCoilsExists;
  I2 NumOutputs;
  Array<I2, 22> OutputFlags;
};
static_assert(sizeof(SystemHeaderRecord) == 94);

struct CoolingRecord {
  Bool Used;
  Code<AS_SupplyAirSizingTypes> SupAirSpec;
  R4 SupAirVal;  // by SupAirSpec: F, cfm or cfm/ft2
  Code<AS_SupplyAirTempTypes> SupAirReset;
  Bool FanCycled;
  R4 ResetTemp, OAMinTemp, OAMaxTemp;  // F
  Code<AS_HeatCoolSourceTypes> Source;
  Array<Bool, 12> Schedule;
  R4 CoilBypass;
  Bool UnoccCool;
  I2 BypassFlowRate, ChangeoverTime;
  Bool AutoSize;
  I2 SizingFactor;
  R4 DesignET;  // F
  R4 DesignCapacity;
  R4 DesignPower;  // by DesignPowerUnits: COP, kW, EER, SEER or HSPF
  Code<AS_DesignPowerUOM> DesignPowerUnits;
  Code<AS_PerformanceTypes> DesignPowerOption;
  Code<AS_DXConfigTypes> DXConfig;
  R4 CutoffOAT1;  // F
  Bool LowTempControlUsed;
  R4 CutoffOAT2;  // F
  Code<AS_PerformanceModelTypes> PerfModelType;
  Array<R8, 4> PLR1Coeff;  // efficiency over that at full load, by part load
  Array<R8, 6, 8> Cap1Coeff;
  Array<R8, 2, 8> CapCFM1Coeff;
  Array<R8, 6, 8> Pow1Coeff;
  Array<R8, 2, 8> PowCFM1Coeff;
  Array<R8, 8> LowTempCapMult, LowTempPowMult;  // factors on what the curves give at the upper cut-off
};
static_assert(sizeof(CoolingRecord) == 1278);

struct HeatingRecord {
  Bool Used;
  Code<AS_SupplyAirSizingTypes> SupAirSpec;
  R4 SupAirVal;  // by SupAirSpec: F, cfm or cfm/ft2
  Code<AS_SupplyAirTempTypes> SupAirReset;
  Bool FanCycled;
  R4 ResetTemp, OAMinTemp, OAMaxTemp;  // F
  Code<AS_HeatCoolSourceTypes> Source;
  Array<Bool, 12> Schedule;
  Bool AutoSize;
  I2 SizingFactor;
  R4 DesignET;  // F
  R4 DesignCapacity;
  R4 DesignPower;  // by DesignPowerUnits: COP, kW, EER, SEER or HSPF
  Code<AS_DesignPowerUOM> DesignPowerUnits;
  Code<AS_PerformanceTypes> DesignPowerOption, DirectHeatOption;
  Code<AS_DXConfigTypes> DXConfig;
  R4 CutoffOAT;  // F
  Code<AS_PerformanceModelTypes> PerfModelType;
  Array<R8, 4> PLR1Coeff;  // efficiency over that at full load, by part load
  Array<R8, 6> Cap1Coeff;
  Array<R8, 2> CapCFM1Coeff;
  Array<R8, 6> Pow1Coeff;
  Array<R8, 2> PowCFM1Coeff;
  Array<R8, 6> Cap2Coeff;
  Array<R8, 2> CapCFM2Coeff;
  Array<R8, 6> Pow2Coeff;
  Array<R8, 2> PowCFM2Coeff;
  Code<AS_DirectHeatTypes> DirectHeatType;
  R4 DirectHeatCapacity, DirectHeatEff, DirectHeatMiscElec;
  R4 AuxHeatUpperCutoff;  // F
};
static_assert(sizeof(HeatingRecord) == 386);

struct VentilationRecord {
  Code<AS_VentilationControlTypes> VentType;
  Bool CommonSys;
  I4 MinCO2, MaxCO2, OutdoorCO2;  // ppm
  Code<AS_VentSizingMethods> SizingMethod;
  R4 MinVentRate;
  I2 Schedule;
  Bool DampersOn;
  I2 LeakRate;
};
static_assert(sizeof(VentilationRecord) == 28);

struct SupplyDuctRecord {
  I2 HeatGain, LeakRate;
};
static_assert(sizeof(SupplyDuctRecord) == 4);

struct ReturnPlenumRecord {
  Bool Used;
  I2 RoofGain, WallGain, LightGain;
};
static_assert(sizeof(ReturnPlenumRecord) == 8);

struct FanRecord {
  Bool Used;
  Code<AS_FanTypes> FanType;
  Code<AS_FanPerfUOM> PerfUnits;
  R4 Value;  // by PerfUnits: bhp, in. wg of static pressure, kW, W/cfm, or kW by Appendix G of ASHRAE 90.1
  R4 Efficiency;
  Code<AS_FanConfigTypes> Configuration;
  Array<R4, 11> KWValue;  // fractions of full-load power at 0, 10, ... 100 % airflow
  Array<Bool, 19> AFactorUsed;
  Array<R4, 19> AFactorPD;  // in. w.c., by AS_AFactors
  Code<AS_FanControlTypes> FanControl;
  Code<AS_UnoccFanControlEnum> UnoccFanControl;
  I2 LowSpeedFlow, MidSpeedFlow;
  R4 UnoccFlow;
};
static_assert(sizeof(FanRecord) == 186);

struct EconomizerRecord {
  Bool Used;
  Code<AS_EconomizerControlTypes> EconomizerType;
  R4 UpCutoff, LoCutoff;
};
static_assert(sizeof(EconomizerRecord) == 12);

struct CoilRecord {
  Bool Used;
  R4 Setpoint, UnoccSetpoint;  // F
  Bool DownStream;
  Code<AS_HeatCoolSourceTypes> Source;
  Array<Bool, 12> Schedule;
  R4 CoilBypass;
  Bool AutoSize;
  I2 SizingFactor;
  R4 DesignET;  // F
  R4 DesignCapacity;
  R4 DesignPower;  // by DesignPowerUnits: COP, kW, EER, SEER or HSPF
  Code<AS_DesignPowerUOM> DesignPowerUnits;
  Code<AS_PerformanceTypes> DesignPowerOption, DirectHeatOption;
  Code<AS_DXConfigTypes> DXConfig;
  R4 CutoffOAT1;  // F
  Bool LowTempControlUsed;
  R4 CutoffOAT2;  // F
  Code<AS_PerformanceModelTypes> PerfModelType;
  Array<R8, 4> PLR1Coeff;  // efficiency over that at full load, by part load
  Array<R8, 6, 8> Cap1Coeff;
  Array<R8, 2, 8> CapCFM1Coeff;
  Array<R8, 6, 8> Pow1Coeff;
  Array<R8, 2, 8> PowCFM1Coeff;
  Array<R8, 8> LowTempCapMult, LowTempPowMult;  // factors on what the curves give at the upper cut-off
  Code<AS_DirectHeatTypes> DirectHeatType;
  R4 DirectHeatCapacity, DirectHeatEff, DirectHeatMiscElec;
};
static_assert(sizeof(CoilRecord) == 1276);

struct HumidifierRecord {
  Bool Used;
  R4 Setpoint;
  Code<AS_HumidificationDeviceTypes> DeviceType;
  Code<AS_HeatCoolSourceTypes> HeatSource;
  R4 DevicePower;
};
static_assert(sizeof(HumidifierRecord) == 14);

struct DehumidificationRecord {
  Bool Used;
  R4 Setpoint;
};
static_assert(sizeof(DehumidificationRecord) == 6);

struct VentReclaimRecord {
  Bool Used;
  Code<AS_VentilationReclaimTypes> ReclaimType;
  R4 ThermEff, DevPower;
  Array<Bool, 12> Schedule;
};
static_assert(sizeof(VentReclaimRecord) == 36);

struct SafetyFactorRecord {
  R4 Sensible, Latent, Heating;
};
static_assert(sizeof(SafetyFactorRecord) == 12);

struct ZoneScheduleRecord {
  Code<AS_HeatCoolSourceTypes> ReheatSource;
  Array<Bool, 12> ReheatCoil;
  Code<AS_HeatCoolSourceTypes> HeatingSource;
  Array<Bool, 12> HeatingUnit;
  Code<AS_HeatCoolSourceTypes> TermClgSource;
  Array<Bool, 12> TermClgSchedule;
  I2 TstatSchedule;
};
static_assert(sizeof(ZoneScheduleRecord) == 80);

struct WaterLoopRecord {
  Code<AS_LoopConfigTypes> LoopConfig;
  I4 TowerID, BoilerID;
  R4 LoopMaxSetpt, LoopMinSetpt;  // F
  Bool FreeCoolingUsed;
  Code<AS_CoolingTypes> FreeCoolingType;
  R4 HXApproach;    // F
  R4 CondPumpPerf;  // by CondPumpUnits, of whose codes 2 alone is known: W/gpm
  I2 CondPumpUnits;
  R4 CondPumpMechEff, CondPumpElecEff;
};
static_assert(sizeof(WaterLoopRecord) == 40);

struct SplitSystemRecord {
  Bool AutoSize;
  I2 ClgSizingFactor, HtgSizingFactor;
  Code<AS_SplitSystemCompressorTypes> CompressorType;
  Bool HeatRecoveryUsed;
  I2 MinimumLoad;
  R4 PipeLength, PipeHeight;  // ft
  Code<AS_PerformanceTypes> DesignPowerOption;
  R4 ClgDesignOADB;  // F
  R4 ClgDesignCapacity;
  Code<AS_DesignPowerUOM> ClgDesignPowerUnits;
  R4 ClgDesignPower;  // by ClgDesignPowerUnits: COP, kW, EER, SEER or HSPF
  R4 HtgDesignOADB;   // F
  R4 HtgDesignCapacity;
  Code<AS_DesignPowerUOM> HtgDesignPowerUnits;
  R4 HtgDesignPower;  // by HtgDesignPowerUnits: COP, kW, EER, SEER or HSPF
  R4 HtgCutoffOADB;   // F
  Code<AS_DirectHeatTypes> DirectHeatType;
  R4 AuxHeatUpperCutoff;  // F
};
static_assert(sizeof(SplitSystemRecord) == 60);

struct ChangeoverRecord {
  Text<10> Begin;  // "STARTCO"
  Bool Used;
  Code<AS_COTriggers> Trigger;
  R4 OATThreshold, Deadband;  // F
  R4 MinCycleTime;
  Text<10> End;  // "ENDCO"
};
static_assert(sizeof(ChangeoverRecord) == 36);

inline constexpr int kZoneSpaces = 50;

struct ZoneRecord {
  Text<30> Name;
  Array<I2, kZoneSpaces> SpaceID, SpaceMultiplier;
  I2 TotalSpacesInZone;
  Bool AllZoneTstatSame;
  R4 OccCoolSetpt, UnoccCoolSetpt, OccHeatSetpt, UnoccHeatSetpt, TstatRange;  // F
  R4 DiversityFactor;
  Code<AS_AirflowSpec> AirRateSpec;
  R4 ExhaustAirRate;  // by AirRateSpec: cfm, cfm/ft2, cfm/person, % of the supply air, or air changes an hour
  R4 ExhaustFanKW;
  Bool AllZoneHtgUnitsSame;
  Code<AS_SupplementalHeatUnitTypes> HeatUnitType;
  R4 HeatUnitTripTemp, HeatUnitSupTemp;  // F
  Code<AS_FanPerfUOM> HeatUnitFanSpec;
  R4 HeatUnitFanVal;  // by HeatUnitFanSpec, as a fan's Value
  R4 HeatUnitFanEff;
  Bool AllZoneTermsSame;
  Code<AS_SupplyTerminalTypes> TermType;
  Code<AS_ZoneAirDistribution> AirDistribution;
  Code<AS_ZoneAirDistributionEffectivenessSpec> AirDistributionEffectivenessSpec;
  Code<AS_ZoneAirDistributionEffectiveness> AirDistributionEffectiveness;
  R4 CoilBypass, AirflowRatio;
  Code<AS_AirflowSpec> MinAirSpec;
  R4 MinAirValue;  // by MinAirSpec: cfm, cfm/ft2, cfm/person, % of the supply air, or air changes an hour
  I2 MinDamperPos;
  Bool ReheatCoil;
  Code<AS_FanPerfUOM> TermFanSpec;
  R4 TermFanVal;  // by TermFanSpec, as a fan's Value
  R4 TermFanEff;
  R4 TermSupTemp;  // F
  Bool AllZoneTermClgSame, ClgAutoSize;
  I2 ClgDesignSizingFactor;
  R4 ClgDesignET;  // F
  R4 ClgDesignCapacity;
  R4 ClgDesignPower;  // by ClgDesignPowerUnits: COP, kW, EER, SEER or HSPF
  Code<AS_DesignPowerUOM> ClgDesignPowerUnits;
  Code<AS_PerformanceTypes> ClgDesignPowerOption;
  R4 ClgCutoffOAT;  // F
  Bool AllZoneTermHtgSame, HtgAutoSize;
  I2 HtgDesignSizingFactor;
  R4 HtgDesignET;  // F
  R4 HtgDesignCapacity;
  R4 HtgDesignPower;  // by HtgDesignPowerUnits: COP, kW, EER, SEER or HSPF
  Code<AS_DesignPowerUOM> HtgDesignPowerUnits;
  Code<AS_PerformanceTypes> HtgDesignPowerOption, DirectHeatOption;
  R4 HtgCutoffOAT;  // F
  R4 DirectHeatCapacity, DirectHeatEff, DirectHeatMiscElec;
};
static_assert(sizeof(ZoneRecord) == 398);

class AS_General final : public Part<SystemHeaderRecord> {
 public:
  const ClassInfo& info() const override;

  /// Zones from 1 on; the system's lists of zones grow and shrink with it. Error `SubscriptOutOfRange` for a negative
  /// number.
  void SetNumZones(int16_t nValue);
  /// Which hourly outputs the system's components have, and their number; docs/air-systems.md has the rule. Error
  /// `ObjectNotSet` for a header that belongs to no system.
  void SetFlags();

  AS_AirSystem* system = nullptr;
};

struct AS_CoolData final : Part<CoolingRecord> {
  const ClassInfo& info() const override;
};

struct AS_HeatData final : Part<HeatingRecord> {
  const ClassInfo& info() const override;
};

struct AS_OutdoorVent final : Part<VentilationRecord> {
  const ClassInfo& info() const override;
};

struct AS_SupplyDuct final : Part<SupplyDuctRecord> {
  const ClassInfo& info() const override;
};

struct AS_RetPlenum final : Part<ReturnPlenumRecord> {
  const ClassInfo& info() const override;
};

struct AS_FanData final : Part<FanRecord> {
  const ClassInfo& info() const override;
};

struct AS_EconomizerData final : Part<EconomizerRecord> {
  const ClassInfo& info() const override;
};

/// The preheat coil heats, the precool coil cools; the text of its source follows that.
struct AS_CoilData final : Part<CoilRecord> {
  const ClassInfo& info() const override;
  static std::span<const Label> sources(const Object& coil);
  bool cools = false;
};

struct AS_HumidityData final : Part<HumidifierRecord> {
  const ClassInfo& info() const override;
};

struct AS_DehumidData final : Part<DehumidificationRecord> {
  const ClassInfo& info() const override;
  /// What reheats the dehumidified air: the terminals' coils where zone 1 has them, else the central heating coil.
  /// Nothing for a component that belongs to no system.
  AS_HeatCoolSourceTypes GetReheatSource() const;
  const AS_AirSystem* system = nullptr;
};

struct AS_VentReclaim final : Part<VentReclaimRecord> {
  const ClassInfo& info() const override;
};

struct AS_SafetyFactor final : Part<SafetyFactorRecord> {
  const ClassInfo& info() const override;
};

struct AS_ZoneSchedule final : Part<ZoneScheduleRecord> {
  const ClassInfo& info() const override;
};

struct AS_WCSystemData final : Part<WaterLoopRecord> {
  const ClassInfo& info() const override;
};

struct AS_SplitSystemData final : Part<SplitSystemRecord> {
  const ClassInfo& info() const override;
};

struct AS_ChangeoverControl final : Part<ChangeoverRecord> {
  const ClassInfo& info() const override;
};

struct AS_ZoneData final : Part<ZoneRecord> {
  const ClassInfo& info() const override;
};

}  // namespace tarn
