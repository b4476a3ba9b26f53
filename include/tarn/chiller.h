// Chillers: CHL.DAT, table ChillerIndex. A full-load point and a part-load map for each of three modes of operation.
#pragma once

#include <vector>

#include "tarn/base/flow_units.h"
#include "tarn/chiller_codes.h"
#include "tarn/storage/entity.h"
#include "tarn/storage/part.h"

namespace tarn {

constexpr int kMapRows = 10, kMapColumns = 20;

/// Capacities are in tons when cooling and MBH when heating; power is in kW, or in MBH for a chiller that burns fuel or
/// takes heat, and per unit of capacity where its code says so. The map's rows are entering temperatures of the
/// condenser.
struct OperatingModeRecord {
  R4 FLLeavingWaterTemp, FLEnteringTemp;  // F
  R4 FLCapacity;                          // tons when cooling, MBH when heating
  R4 FLPower;                             // by FLPowerUnits: kW/ton or kW (MBH/ton or MBH)
  Code<CHL_InputPower> FLPowerUnits;
  R4 EvapFlow;  // by EvapFlowUnits: gpm, gpm/ton, or the temperature difference in F
  Code<COM_FlowUOM> EvapFlowUnits;
  R4 CondFlow;  // by CondFlowUnits, likewise
  Code<COM_FlowUOM> CondFlowUnits;
  I2 NumRows, NumColumns;  // of the map, in use
  Code<CHL_MapDataTypes> ColumnDataType;
  Array<R4, kMapRows> MapRowHeading;             // F
  Array<I2, kMapColumns> MapColumnHeading;       // per cent of the load, or the stage
  Array<R4, kMapRows, kMapColumns> MapCapacity;  // tons when cooling, MBH when heating
  Array<R4, kMapRows, kMapColumns> MapPower;     // kW (MBH)
  // Factors 1 + A dT + B dT2, with dT the leaving water's distance from FLLeavingWaterTemp in F.
  R4 TempPwrCoeffA, TempPwrCoeffB, TempCapCoeffA, TempCapCoeffB;
};
static_assert(sizeof(OperatingModeRecord) == 1732);

struct ChillerRecord {
  Text<30> Name;
  Code<CHL_SourceFluids> SourceFluid;
  Code<CHL_FunctionTypes> FunctionType;
  Code<CHL_ChillerTypes> ChillerType;
  Text<64> Notes;
  Code<CHL_DataSourceTypes> DesInputSource, PerfMapSource;
  Bool AutoSize;
  Code<CHL_FuelTypes> FuelType;
  R4 EngineEff;         // fraction of the fuel
  R4 AvgOperatingLoss;  // per cent
  R4 UnitElectric;      // kW/ton, beside the driving energy
  R4 SteamHeatContent;  // Btu/lb
  R4 MinECWT;           // F
  R4 MinUnloading;      // per cent
  Bool HotGasBypass;
  Code<CHL_DXFCOptions> DXFreeCooling;
  Code<CHL_DXFCUOM> DXFCUOM;
  Code<CHL_HeatRecMethods> HeatRecoveryMethod;
  R4 MaxHeatRecovery;                     // per cent of the heat of rejection
  R4 IPLV;                                // kW/ton, or MBH/ton of fuel or heat
  Array<R4, 10> DXFCDeltaT;               // F, of outdoor air below the leaving water
  Array<R4, 10> DXFCCapacity, DXFCPower;  // by DXFCUOM: tons and kW, or fractions of full load
};
static_assert(sizeof(ChillerRecord) == 268);
static_assert(sizeof(ChillerRecord) + 3 * sizeof(OperatingModeRecord) == 5464);

class CHL_OperatingMode final : public Part<OperatingModeRecord> {
 public:
  CHL_OperatingMode() = default;
  explicit CHL_OperatingMode(std::string name) : name_(std::move(name)) {}
  const ClassInfo& info() const override;
  /// "CoolingMode", as the chiller calls it.
  std::string Name() const { return name_; }

  // Of the map, in use: 0 to 10 and 0 to 20. Error `SubscriptOutOfRange`.
  int16_t NumRows() const { return OperatingModeRecord::NumRows; }
  int16_t NumColumns() const { return OperatingModeRecord::NumColumns; }
  void SetNumRows(int16_t rows);
  void SetNumColumns(int16_t columns);

 private:
  std::string name_;
};

class CHL_Chiller final : public Entity<CHL_Chiller, ChillerRecord> {
 public:
  CHL_Chiller();
  const ClassInfo& info() const override;
  const Kind& kind() const override;

  CHL_OperatingMode CoolingMode{"CoolingMode"}, HeatRecoveryMode{"HeatRecoveryMode"}, HeatingMode{"HeatingMode"};

  /// Takes the record of a type, 1 to 12, from a file of such records; the index stays. Errors `FileNotFound`,
  /// `InvalidCall` for a type that the file does not have; then the chiller stays as it was.
  void CreateDefaultByType(int16_t nChillerType, const std::string& sDefaultsFile);
  /// The default curve of free cooling, 10 points: how far the outdoor air is below the leaving water (F), and power
  /// and capacity there as fractions of full load. Error `InvalidCall` for other options than 1 and 2.
  void GetDXFCDefaults(CHL_DXFCOptions DXFCOption, CHL_DXFCUOM& UOM, std::vector<double>& DeltaT,
                       std::vector<double>& Power, std::vector<double>& Capacity) const;
};

}  // namespace tarn
