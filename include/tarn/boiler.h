// Boilers: BLR.DAT, table BoilerIndex. Plants and water loops of air systems refer to them.
#pragma once

#include "tarn/base/flow_units.h"
#include "tarn/storage/entity.h"

namespace tarn {

enum class BLR_BoilerTypes : int16_t { BT_HOTWATER = 0, BT_STEAM = 1 };
template <>
inline constexpr CodeText<BLR_BoilerTypes> code_table<BLR_BoilerTypes>[] = {
    {BLR_BoilerTypes::BT_HOTWATER, "hot water"},
    {BLR_BoilerTypes::BT_STEAM, "steam"},
};

/// Each number is that of the matching heating source of an air system.
enum class BLR_FuelTypes : int16_t {
  BFT_ELECTRIC_RESISTANCE = 3,
  BFT_NATURAL_GAS = 4,
  BFT_FUEL_OIL = 5,
  BFT_PROPANE = 6,
  BFT_REMOTE_SOURCE_HOT_WATER = 7,
  BFT_REMOTE_SOURCE_STEAM = 8
};
template <>
inline constexpr CodeText<BLR_FuelTypes> code_table<BLR_FuelTypes>[] = {
    {BLR_FuelTypes::BFT_ELECTRIC_RESISTANCE, "electric resistance"},
    {BLR_FuelTypes::BFT_NATURAL_GAS, "natural gas"},
    {BLR_FuelTypes::BFT_FUEL_OIL, "fuel oil"},
    {BLR_FuelTypes::BFT_PROPANE, "propane"},
    {BLR_FuelTypes::BFT_REMOTE_SOURCE_HOT_WATER, "remote source hot water"},
    {BLR_FuelTypes::BFT_REMOTE_SOURCE_STEAM, "remote source steam"},
};

enum class BLR_ModelingMethods : int16_t {
  MM_CONSTANT_EFFICIENCY = 1,
  MM_PARTLOAD_CURVE = 2,
  MM_CONDENSING_BOILER = 3,
  MM_NON_CONDENSING_BOILER = 4
};
template <>
inline constexpr CodeText<BLR_ModelingMethods> code_table<BLR_ModelingMethods>[] = {
    {BLR_ModelingMethods::MM_CONSTANT_EFFICIENCY, "constant efficiency"},
    {BLR_ModelingMethods::MM_PARTLOAD_CURVE, "part-load curve"},
    {BLR_ModelingMethods::MM_CONDENSING_BOILER, "condensing boiler"},
    {BLR_ModelingMethods::MM_NON_CONDENSING_BOILER, "non-condensing boiler"},
};

struct BoilerRecord {
  Text<35> Name;
  Code<BLR_BoilerTypes> BoilerType;
  R4 DesignHWST;  // F
  Bool AutoSize;
  R4 BoilerOutput, BoilerInput;  // MBH
  Array<R4, 11> BoilerEff;       // per cent, at loads of 0, 10, ... 100 per cent
  Code<BLR_FuelTypes> FuelType;
  R4 MiscKW;
  Code<BLR_ModelingMethods> PartLoadModel;
  R4 HotWaterFlow;
  Code<COM_FlowUOM> HotWaterFlowUnits;
};
static_assert(sizeof(BoilerRecord) == 109);

class BLR_Boiler final : public Entity<BLR_Boiler, BoilerRecord> {
 public:
  BLR_Boiler();
  const ClassInfo& info() const override;
  const Kind& kind() const override;

  using Entity::Load;
  void Load(int32_t RecordNumber) { load(RecordNumber, kAllSections); }

  BLR_FuelTypes FuelType() const { return BoilerRecord::FuelType; }
  /// Error `InvalidCall` for an unknown fuel, and below for an unknown model.
  void SetFuelType(BLR_FuelTypes type);
  BLR_ModelingMethods PartLoadModel() const { return BoilerRecord::PartLoadModel; }
  void SetPartLoadModel(BLR_ModelingMethods model);
};

}  // namespace tarn
