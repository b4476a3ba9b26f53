#include "tarn/utility_rate.h"

#include "storage/kind.h"
#include "tarn/base/log.h"

namespace tarn {
namespace {

struct RateNames {
  std::string_view word, index_table, id, schedules, buildings;
};
constexpr RateNames kElectric{"ElectricRate", "ElectricRateIndex", "ElectricRate_ID", "ElectricRate_Schedule_Links",
                              "Building_ElectricRate_Links"};
constexpr RateNames kFuel{"FuelRate", "FuelRateIndex", "FuelRate_ID", "FuelRate_Schedule_Links",
                          "Building_FuelRate_Links"};

Kind kind_of(const RateNames& names) {
  return {.class_name = "URT_UtilityRate",
          .index_table = names.index_table,
          .default_word = names.word,
          .missing_row_message = "Invalid utility rate ID number: ",
          .columns = {},
          .reach = {Results::DesignAndSimulation, {{Stage::Buildings, {{names.buildings, names.id, "Building_ID"}}}}},
          .row_needed = true,
          .link_owner = names.word};
}

bool is_type(URT_RateTypes type) { return type == URT_RateTypes::TD_ELECTRIC || type == URT_RateTypes::TD_FUEL; }

std::string_view time_of_day(const Object& rate, size_t /*element*/) {
  const auto& fields = *static_cast<const URT_UtilityRate&>(rate).operator->();
  return fields.TimeOfDaySched && fields.TODSchedule >= 1 ? "Schedule" : "";
}

}  // namespace

URT_UtilityRate::URT_UtilityRate() {
  add_block(record_bytes(static_cast<UtilityRateRecord&>(fields_)));
  named_by(fields_.Name);
  StoredEntity::Reset(true);
}

const URT_UtilityRate& URT_UtilityRate::checked() const {
  if (type_ == URT_RateTypes::TD_UNDEFINED) {
    fail(ErrorNumber::RateTypeUndefined,
         "Property assignment or method execution was not successful because the rate type for this object is still "
         "'Undefined'.");
  }
  return *this;
}

const Kind& URT_UtilityRate::kind() const {
  static const Kind electric = kind_of(kElectric), fuel = kind_of(kFuel);
  return checked().type_ == URT_RateTypes::TD_ELECTRIC ? electric : fuel;
}

const ClassInfo& URT_UtilityRate::info() const {
  using R = UtilityRateRecord;
  using C = URT_UtilityRate;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&C::m_bCloning>, property<&R::Name>.trimmed(), property<&R::CurrSymbol>,
      converted<&R::RateStyle, &C::RateStyle, &C::SetRateStyle>, converted<&R::RateType, &C::RateType, &C::SetRateType>,
      property<&R::EnergyUnits>, property<&R::EnergyConv>, property<&R::FlatRate>, property<&R::DemandUnits>,
      property<&R::FixedCharge>, property<&R::MinCharge>, property<&R::TaxRate>, property<&R::SeasonalSched>,
      property<&R::Season>, property<&R::TimeOfDaySched>, property<&R::TODSchedule>.refers_to("Schedule", time_of_day),
      property<&R::CalcEmissions>, property<&R::CO2Factor>, property<&R::SO2Factor>, property<&R::NOxFactor>,
      property<&R::ECType>, property<&R::ECDemandID>, property<&R::ECStepUsed>, property<&R::ECStepType>,
      property<&R::ECSeason>, property<&R::ECPeriod>, property<&R::ECBlkSize>, property<&R::ECBlkUnits>,
      property<&R::ECRate>, property<&R::DCStepUsed>, property<&R::DCSeason>, property<&R::DCPeriod>,
      property<&R::DCBlkSize>, property<&R::DCRate>, property<&R::DCDemandID>, property<&R::RCUsed>,
      property<&R::RCMult>, property<&R::RCPeakingFirst>, property<&R::RCPeakingLast>, property<&R::RCAppliesFirst>,
      property<&R::RCAppliesLast>, property<&R::TWCUsed>, property<&R::TWCMult>, property<&R::TWCWindow>,
      property<&R::MDCUsed>, property<&R::MDCMinimum>, property<&R::PMCUsed>, property<&R::PMCMult>,
      property<&R::PMCSeason>, property<&R::PMCPeriod>, property<&R::PFMUsed>, property<&R::PFMMult>,
      method<&C::SetDBHandle>("Value"), method<&C::GetDBHandle>, property<&C::Index>.read_only(),
      property<&C::FileName>, method<&C::Reset>("ResetAll"), method<&C::Clone>("Index"), method<&C::CopyInstance>,
      method<&C::GetFreeIndex>, method<&C::Delete>("RecordNumber"),
      method<static_cast<void (C::*)(int32_t)>(&C::Load)>("RecordNumber"), method<&C::Save>, method<&C::CreateDefault>,
      method<&C::IsNameUnique>("sName"), event<&C::OnUpdateDependencies>("OverrideDefault"));
  static const ClassInfo info(members);
  return info;
}

void URT_UtilityRate::SetRateType(URT_RateTypes type) {
  if (type_ != URT_RateTypes::TD_UNDEFINED && !m_bCloning) {
    fail(ErrorNumber::RateTypeClosed, "Property assignment was not successful because this property is now read-only.");
  }
  if (!is_type(type) && type != URT_RateTypes::TD_UNDEFINED) {
    fail(ErrorNumber::InvalidCall,
         "There is no rate type " + std::to_string(static_cast<int>(type)) + "; a rate is electric (0) or fuel (1).");
  }
  type_ = type;
  static_cast<UtilityRateRecord&>(fields_).RateType = type;
}

void URT_UtilityRate::SetRateStyle(URT_Style style) {
  UtilityRateRecord& record = fields();
  if (style != URT_Style::RS_SIMPLE && style != URT_Style::RS_COMPLEX) {
    fail(ErrorNumber::RateStyleInvalid,
         "Property assignment was not successful because the Rate Style you specified is not valid.");
  }
  record.RateStyle = style;
}

/// An exchange or an edit sets fields one by one, the type's among them.
void URT_UtilityRate::before_save(SaveContext& /*save*/) {
  if (fields().RateType == type_) return;
  fail(ErrorNumber::InvalidCall, "RateType " + std::to_string(fields().RateType.raw) + " is not that of the " +
                                     std::string(kind().default_word) + " that it is given to, " +
                                     std::to_string(static_cast<int>(type_)) + ", and cannot change.");
}

/// A project's default says what the rate is; else a type that is known stands.
void URT_UtilityRate::after_read(ReadFrom from) {
  auto& type = static_cast<UtilityRateRecord&>(fields_).RateType;
  if (from == ReadFrom::Default && is_type(type)) type_ = type;
  if (type_ == URT_RateTypes::TD_UNDEFINED) {
    fail(ErrorNumber::UnknownFormat, FileName +
                                         " has no default rate that tells whether it is electric or fuel; set "
                                         "RateType first, or write defaults with a new project.");
  }
  if (from == ReadFrom::Stored && type != type_) {
    log().message(FileName + ", record " + std::to_string(StoredEntity::Index) + ": its rate type is " +
                  std::to_string(type.raw) + "; it is read as " + std::string(kind().default_word) + ".");
  }
  type = type_;
}

void URT_UtilityRate::copy_rest(const StoredEntity& from, bool /*content*/) {
  type_ = dynamic_cast<const URT_UtilityRate&>(from).type_;
}

std::function<void()> URT_UtilityRate::keep_rest() {
  return [this, type = type_] { type_ = type; };
}

}  // namespace tarn
