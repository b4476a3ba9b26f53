// Boilers: BLR.DAT, table BoilerIndex. Plants and water loops of air systems refer to them.
#pragma once

#include "base/flow_units.h"
#include "storage/entity.h"

namespace tarn {

enum class BLR_BoilerTypes : int16_t { BT_HOTWATER = 0, BT_STEAM = 1 };
inline constexpr Label kBoilerTypesLabels[]{{0, "BT_HOTWATER", "hot water"}, {1, "BT_STEAM", "steam"}};
template <>
inline constexpr std::span<const Label> labels<BLR_BoilerTypes> = kBoilerTypesLabels;

/// Each number is that of the matching heating source of an air system.
enum class BLR_FuelTypes : int16_t {
  BFT_ELECTRIC_RESISTANCE = 3,
  BFT_NATURAL_GAS = 4,
  BFT_FUEL_OIL = 5,
  BFT_PROPANE = 6,
  BFT_REMOTE_SOURCE_HOT_WATER = 7,
  BFT_REMOTE_SOURCE_STEAM = 8
};
inline constexpr Label kBoilerFuelLabels[]{{3, "BFT_ELECTRIC_RESISTANCE", "electric resistance"},
                                           {4, "BFT_NATURAL_GAS", "natural gas"},
                                           {5, "BFT_FUEL_OIL", "fuel oil"},
                                           {6, "BFT_PROPANE", "propane"},
                                           {7, "BFT_REMOTE_SOURCE_HOT_WATER", "remote source hot water"},
                                           {8, "BFT_REMOTE_SOURCE_STEAM", "remote source steam"}};
template <>
inline constexpr std::span<const Label> labels<BLR_FuelTypes> = kBoilerFuelLabels;

enum class BLR_ModelingMethods : int16_t {
  MM_CONSTANT_EFFICIENCY = 1,
  MM_PARTLOAD_CURVE = 2,
  MM_CONDENSING_BOILER = 3,
  MM_NON_CONDENSING_BOILER = 4
};
inline constexpr Label kBoilerModelLabels[]{{1, "MM_CONSTANT_EFFICIENCY", "constant efficiency"},
                                            {2, "MM_PARTLOAD_CURVE", "part-load curve"},
                                            {3, "MM_CONDENSING_BOILER", "condensing boiler"},
                                            {4, "MM_NON_CONDENSING_BOILER", "non-condensing boiler"}};
template <>
inline constexpr std::span<const Label> labels<BLR_ModelingMethods> = kBoilerModelLabels;

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
  const ClassInfo& info() const override;
  const Kind& kind() const override;

  using Entity::Load;
  void Load(int32_t RecordNumber) { load(RecordNumber, kAllSections); }

  BLR_FuelTypes FuelType() const { return BoilerRecord::FuelType; }
  /// Error `InvalidCall` for what is no fuel; so for the model.
  void SetFuelType(BLR_FuelTypes type);
  BLR_ModelingMethods PartLoadModel() const { return BoilerRecord::PartLoadModel; }
  void SetPartLoadModel(BLR_ModelingMethods model);
};

}  // namespace tarn
