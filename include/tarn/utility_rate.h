// Utility rates: electric ones in ERT.DAT, table ElectricRateIndex; fuel ones in FRT.DAT, table FuelRateIndex. Whether
// a rate is electric or fuel is assigned once, before everything else. Buildings refer to rates; a rate refers to the
// schedule of its time-of-day periods. Prices are in the rate's currency; codes of units, steps and charges are the
// pricing engine's.
#pragma once

#include <utility>

#include "tarn/base/labels.h"
#include "tarn/storage/entity.h"

namespace tarn {

enum class URT_RateTypes : int16_t { TD_UNDEFINED = -1, TD_ELECTRIC = 0, TD_FUEL = 1 };
template <>
inline constexpr CodeText<URT_RateTypes> code_table<URT_RateTypes>[] = {
    {URT_RateTypes::TD_UNDEFINED, "undefined"},
    {URT_RateTypes::TD_ELECTRIC, "electric"},
    {URT_RateTypes::TD_FUEL, "fuel"},
};

enum class URT_Style : int16_t { RS_SIMPLE = 1, RS_COMPLEX = 2 };
template <>
inline constexpr CodeText<URT_Style> code_table<URT_Style>[] = {
    {URT_Style::RS_SIMPLE, "simple"},
    {URT_Style::RS_COMPLEX, "complex"},
};

inline constexpr int kRateSteps = 14, kSpecialCharges = 2;

struct UtilityRateRecord {
  Text<30> Name;
  Text<5> CurrSymbol;
  Code<URT_Style> RateStyle;
  Code<URT_RateTypes> RateType;
  Text<7> EnergyUnits;
  R8 EnergyConv;  // factor of the energy units
  R8 FlatRate;    // per unit of energy, of a simple rate
  I2 DemandUnits;
  R4 FixedCharge, MinCharge;  // per bill
  R4 TaxRate;
  Bool SeasonalSched;
  Array<I2, 12> Season;  // of each month
  Bool TimeOfDaySched;
  I2 TODSchedule;  // counts where TimeOfDaySched is set; 0: none
  Bool CalcEmissions;
  R4 CO2Factor, SO2Factor, NOxFactor;
  I2 ECType;
  I2 ECDemandID;  // the demand that energy blocks refer to
  // Steps of the energy charge
  Array<Bool, kRateSteps> ECStepUsed;
  Array<I2, kRateSteps> ECStepType, ECSeason, ECPeriod;
  Array<R8, kRateSteps> ECBlkSize;
  Array<I2, kRateSteps> ECBlkUnits;
  Array<R8, kRateSteps> ECRate;
  // Steps of the demand charge
  Array<Bool, kRateSteps> DCStepUsed;
  Array<I2, kRateSteps> DCSeason, DCPeriod;
  Array<R8, kRateSteps> DCBlkSize, DCRate;
  Array<I2, kRateSteps> DCDemandID;
  // Ratchets; months of the span whose peak counts, and of those that it applies to
  Array<Bool, kSpecialCharges> RCUsed;
  Array<I2, kSpecialCharges> RCMult, RCPeakingFirst, RCPeakingLast, RCAppliesFirst, RCAppliesLast;
  // Time windows, minimum demands, peak months, power-factor multipliers
  Array<Bool, kSpecialCharges> TWCUsed;
  Array<I2, kSpecialCharges> TWCMult, TWCWindow;
  Array<Bool, kSpecialCharges> MDCUsed;
  Array<R4, kSpecialCharges> MDCMinimum;
  Array<Bool, kSpecialCharges> PMCUsed;
  Array<I2, kSpecialCharges> PMCMult, PMCSeason, PMCPeriod;
  Array<Bool, kSpecialCharges> PFMUsed;
  Array<R4, kSpecialCharges> PFMMult;
};
static_assert(sizeof(UtilityRateRecord) == 900);

/// The fields that clients assign freely; type and style have rules.
class RateFields : public UtilityRateRecord {
  using UtilityRateRecord::RateStyle;
  using UtilityRateRecord::RateType;
};

/// While the type is undefined, every member but `RateType`, `CreateDefault` and the wiring (file, handle, cloning)
/// is refused with error 3001 and changes nothing.
class URT_UtilityRate final : public CopiedEntity<URT_UtilityRate> {
 public:
  using Record = UtilityRateRecord;
  URT_UtilityRate();
  const ClassInfo& info() const override;
  const Kind& kind() const override;

  /// The record's fields: `rate->FlatRate = 0.12`.
  RateFields* operator->() { return &checked().fields_; }
  const RateFields* operator->() const { return &checked().fields_; }

  URT_RateTypes RateType() const { return type_; }
  /// Error `RateTypeClosed` where the rate has a type already, unless it is being cloned; `InvalidCall` for no type.
  void SetRateType(URT_RateTypes type);
  URT_Style RateStyle() const { return fields().RateStyle; }
  /// Error `RateStyleInvalid`; the old style stays.
  void SetRateStyle(URT_Style style);

  int16_t Index() const { return checked().StoredEntity::Index; }
  /// A time-of-day schedule whose link row is gone reads as 0. A record that says another type is logged, and has the
  /// type of the object.
  void Load(int16_t RecordNumber) { checked().StoredEntity::Load(RecordNumber); }
  void Load(int32_t RecordNumber) { checked().load(RecordNumber, kAllSections); }
  void Save() { checked().StoredEntity::Save(); }
  void Delete(std::optional<int16_t> RecordNumber = {}) { checked().StoredEntity::Delete(RecordNumber); }
  void Reset(std::optional<bool> ResetAll = {}) { checked().StoredEntity::Reset(ResetAll); }
  int16_t GetFreeIndex() const { return checked().StoredEntity::GetFreeIndex(); }
  bool IsNameUnique(const std::optional<std::string>& sName = {}) const {
    return checked().StoredEntity::IsNameUnique(sName);
  }
  Ptr<URT_UtilityRate> Clone(std::optional<int16_t> nIndex = {}) { return checked().CopiedEntity::Clone(nIndex); }
  Ptr<URT_UtilityRate> CopyInstance() { return checked().CopiedEntity::CopyInstance(); }

 private:
  const URT_UtilityRate& checked() const;
  URT_UtilityRate& checked() { return const_cast<URT_UtilityRate&>(std::as_const(*this).checked()); }
  const UtilityRateRecord& fields() const { return *operator->(); }
  UtilityRateRecord& fields() { return *operator->(); }

  void before_save(SaveContext& save) override;
  void after_read(ReadFrom from) override;
  void copy_rest(const StoredEntity& from, bool content) override;
  std::function<void()> keep_rest() override;

  RateFields fields_;
  URT_RateTypes type_ = URT_RateTypes::TD_UNDEFINED;  // the record's, except where a file has another one
};

}  // namespace tarn
