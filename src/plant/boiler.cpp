#include "tarn/boiler.h"

#include <algorithm>

#include "storage/kind.h"
#include "storage/links.h"

namespace tarn {

const Kind& BLR_Boiler::kind() const {
  using C = BLR_Boiler;
  using R = BoilerRecord;
  static const Kind kind{
      .class_name = "BLR_Boiler",
      .index_table = "BoilerIndex",
      .default_word = "Boiler",
      .missing_row_message = "Cannot find boiler record in database for record #",
      .columns = {summary<C, &R::BoilerOutput>("fBoilerOutput"), summary<C, &R::FuelType>("nFuelType"),
                  summary<C, &R::HotWaterFlow>("fHotWaterFlow"), summary<C, &R::HotWaterFlowUnits>("nHWFlowUnits"),
                  summary<C, &R::AutoSize>("bAutoSizeCapacity")},
      .reach = {Results::SimulationOnly,
                {{Stage::Systems, {{"System_Boiler_Links", "Boiler_ID", "System_ID"}}},
                 {Stage::Plants, {{"Plant_Boiler_Links", "Boiler_ID", "Plant_ID"}}},
                 {Stage::Plants, {{"Plant_Equipment_Links", "Equipment_ID", "Plant_ID", library_of("Boiler")}}}}},
      .row_needed = true};
  return kind;
}

BLR_Boiler::BLR_Boiler() {
  need_whole_records("Size of boiler data file does not match size of boiler data structure.");
}

const ClassInfo& BLR_Boiler::info() const {
  using R = BoilerRecord;
  using C = BLR_Boiler;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&C::m_bCloning>, property<&R::Name>.trimmed(), property<&R::AutoSize>,
      property<&R::BoilerOutput>("MBH"), property<&R::BoilerInput>("MBH"), property<&R::BoilerEff>("%"),
      converted<&R::FuelType, &C::FuelType, &C::SetFuelType>, property<&R::MiscKW>("kW"),
      converted<&R::PartLoadModel, &C::PartLoadModel, &C::SetPartLoadModel>,
      property<&R::HotWaterFlow>.unit_by<&R::HotWaterFlowUnits>(), property<&R::HotWaterFlowUnits>,
      method<&C::SetDBHandle>("DB"), method<&C::GetDBHandle>, property<&C::Index>.read_only(), property<&C::FileName>,
      property<&R::BoilerType>, property<&R::DesignHWST>("F"), method<&C::Reset>("ResetAll"),
      method<&C::Clone>("Index"), method<&C::CopyInstance>, method<&C::GetFreeIndex>,
      method<&C::Delete>("RecordNumber"), method<static_cast<void (C::*)(int32_t)>(&C::Load)>("RecordNumber"),
      method<&C::Save>, method<&C::CreateDefault>, method<&C::IsNameUnique>("sName"),
      event<&C::OnUpdateDependencies>("OverrideDefault"));
  static const ClassInfo info(members);
  return info;
}

namespace {

template <typename E>
void check_code(E code, std::string_view field) {
  const auto number = static_cast<int16_t>(code);
  const auto is = [number](const Label& label) { return label.code == number; };
  if (std::none_of(labels<E>.begin(), labels<E>.end(), is))
    fail(ErrorNumber::InvalidCall, "Invalid value for " + std::string(field) + ": " + std::to_string(number));
}

}  // namespace

void BLR_Boiler::SetFuelType(BLR_FuelTypes type) {
  check_code(type, "FuelType");
  BoilerRecord::FuelType = type;
}

void BLR_Boiler::SetPartLoadModel(BLR_ModelingMethods model) {
  check_code(model, "PartLoadModel");
  BoilerRecord::PartLoadModel = model;
}

}  // namespace tarn
