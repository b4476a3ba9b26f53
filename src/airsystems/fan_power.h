// The pressure drop adjustments of the fan power limitation of ASHRAE Standard 90.1: what each is worth by default
// under the project's energy standard. docs/fan-power.md gives the values with their sources.
#pragma once

#include <vector>

#include "tarn/air_equipment_codes.h"
#include "tarn/base/design_standards.h"
#include "tarn/reflect/collection.h"

namespace tarn {

class AS_FanPowerAdjustment final : public Object {
 public:
  const ClassInfo& info() const override;

  AS_AFactors ID{};
  std::string Description;
  bool AppliesToCurrentEnergyStd = false;
  float DefaultValue = 0;  // in. w.c.; a deduction's is negative
  bool Editable = false;
  bool AutomaticallySelected = false;  // the system's own components decide it
  bool IsCredit = true;

  bool IsDeduction() const { return !IsCredit; }
  float MinLimit() const { return IsCredit ? 0.0F : -20.0F; }
  float MaxLimit() const { return IsCredit ? 20.0F : 0.0F; }
};

class AS_FanPowerAdjustments final : public Object {
 public:
  const ClassInfo& info() const override;

  int32_t Count() const { return static_cast<int32_t>(items_.size()); }
  /// Error `SubscriptOutOfRange` for a factor without an item; before `Setup` there are none.
  Ptr<AS_FanPowerAdjustment> Item(AS_AFactors factor) const;
  /// All items in the order of their creation.
  Ptr<Collection> NewEnum() const;
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

  /// Starts over with new items for a standard. Under a standard without such adjustments every item exists and none
  /// applies.
  void Setup(PRF_EnergyStandards energyStd);

 private:
  std::vector<Ptr<AS_FanPowerAdjustment>> items_;
};

}  // namespace tarn
