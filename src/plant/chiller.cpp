#include "tarn/chiller.h"

#include "plant/chiller_map.h"
#include "platform/file_store.h"
#include "storage/kind.h"
#include "storage/links.h"

namespace tarn {

const ClassInfo& CHL_OperatingMode::info() const {
  using R = OperatingModeRecord;
  using C = CHL_OperatingMode;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&R::FLLeavingWaterTemp>("F"), property<&R::FLEnteringTemp>("F"),
      property<&R::FLCapacity>("tons or MBH").units(capacity_unit),
      property<&R::FLPower>("kW or MBH").units(power_unit), property<&R::FLPowerUnits>,
      property<&R::EvapFlow>.unit_by<&R::EvapFlowUnits>(), property<&R::EvapFlowUnits>,
      property<&R::CondFlow>.unit_by<&R::CondFlowUnits>(), property<&R::CondFlowUnits>,
      converted<&R::NumRows, &C::NumRows, &C::SetNumRows>, converted<&R::NumColumns, &C::NumColumns, &C::SetNumColumns>,
      property<&R::ColumnDataType>, property<&R::MapRowHeading>("F"), property<&R::MapColumnHeading>,
      property<&R::MapCapacity>("tons or MBH").units(capacity_unit),
      property<&R::MapPower>("kW or MBH").units(map_power_unit),
      another<&R::MapCapacity>("tons or MBH").units(capacity_unit).named("MapCapacityArray"),
      another<&R::MapPower>("kW or MBH").units(map_power_unit).named("MapPowerArray"),
      property<&R::TempPwrCoeffA>("1/F"), property<&R::TempPwrCoeffB>("1/F2"), property<&R::TempCapCoeffA>("1/F"),
      property<&R::TempCapCoeffB>("1/F2"), property<&C::Name>);
  static const ClassInfo info(members);
  return info;
}

void CHL_OperatingMode::SetNumRows(int16_t rows) {
  if (rows < 0 || rows > kMapRows) subscript_out_of_range(rows, {0, kMapRows});
  OperatingModeRecord::NumRows = rows;
}

void CHL_OperatingMode::SetNumColumns(int16_t columns) {
  if (columns < 0 || columns > kMapColumns) subscript_out_of_range(columns, {0, kMapColumns});
  OperatingModeRecord::NumColumns = columns;
}

CHL_Chiller::CHL_Chiller() {
  for (CHL_OperatingMode* mode : {&CoolingMode, &HeatRecoveryMode, &HeatingMode}) {
    mode->belong_to(*this);
    add_block(mode->bytes());
  }
}

const Kind& CHL_Chiller::kind() const {
  using C = CHL_Chiller;
  using R = ChillerRecord;
  using M = OperatingModeRecord;
  static const Kind kind{
      .class_name = "CHL_Chiller",
      .index_table = "ChillerIndex",
      .default_word = "Chiller",
      .missing_row_message = "Cannot find chiller record in database for record #",
      .columns = {summary<C, &R::ChillerType>("nChillerType"), summary<C, &R::FunctionType>("nFunctionType"),
                  summary<C, &R::FuelType>("nFuelType"), summary<C, &R::AutoSize>("bAutoSizeCapacity"),
                  part_summary<&C::CoolingMode, &M::FLCapacity>("fFLCapacityClg"),
                  part_summary<&C::HeatingMode, &M::FLCapacity>("fFLCapacityHtg"),
                  part_summary<&C::CoolingMode, &M::EvapFlow>("fEvapFlowClg"),
                  part_summary<&C::CoolingMode, &M::EvapFlowUnits>("nEvapFlowUnitsClg"),
                  part_summary<&C::HeatingMode, &M::EvapFlow>("fEvapFlowHtg"),
                  part_summary<&C::HeatingMode, &M::EvapFlowUnits>("nEvapFlowUnitsHtg"),
                  part_summary<&C::CoolingMode, &M::CondFlow>("fCondFlowClg"),
                  part_summary<&C::CoolingMode, &M::CondFlowUnits>("nCondFlowUnitsClg"),
                  part_summary<&C::HeatingMode, &M::CondFlow>("fCondFlowHtg"),
                  part_summary<&C::HeatingMode, &M::CondFlowUnits>("nCondFlowUnitsHTg")},
      .reach = {Results::SimulationOnly,
                {{Stage::Plants, {{"Plant_Chiller_Links", "Chiller_ID", "Plant_ID"}}},
                 {Stage::Plants, {{"Plant_Equipment_Links", "Equipment_ID", "Plant_ID", library_of("Chiller")}}}}},
      .row_needed = true};
  return kind;
}

const ClassInfo& CHL_Chiller::info() const {
  using R = ChillerRecord;
  using C = CHL_Chiller;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&C::m_bCloning>, property<&R::SourceFluid>, property<&R::Name>.trimmed(),
      property<&R::FunctionType>, property<&R::ChillerType>, property<&R::Notes>.trimmed(),
      property<&R::DesInputSource>, property<&R::PerfMapSource>, property<&R::AutoSize>, property<&R::FuelType>,
      property<&R::EngineEff>, property<&R::AvgOperatingLoss>("%"), property<&R::UnitElectric>("kW/ton"),
      property<&R::SteamHeatContent>("Btu/lb"), property<&R::MinECWT>("F"), property<&R::MinUnloading>("%"),
      property<&R::HotGasBypass>, property<&R::DXFreeCooling>, property<&R::DXFCUOM>, property<&R::HeatRecoveryMethod>,
      property<&R::MaxHeatRecovery>("%"), property<&R::IPLV>("kW/ton or MBH/ton").units(iplv_unit),
      owned<&C::CoolingMode>, owned<&C::HeatRecoveryMode>, owned<&C::HeatingMode>, property<&R::DXFCDeltaT>("delta F"),
      property<&R::DXFCCapacity>.units(free_cooling_capacity_unit),
      property<&R::DXFCPower>.units(free_cooling_power_unit),
      method<&C::CreateDefaultByType>("nChillerType", "sDefaultsFile"),
      method<&C::GetDXFCDefaults>("DXFCOption", "UOM", "DeltaT", "Power", "Capacity"), property<&C::Index>.read_only(),
      property<&C::FileName>, method<&C::SetDBHandle>("DB"), method<&C::GetDBHandle>, method<&C::Reset>("bResetAll"),
      method<&C::Clone>("nIndex"), method<&C::CopyInstance>, method<&C::GetFreeIndex>, method<&C::Delete>("nRecNum"),
      method<&C::Load>("RecordNumber"), method<&C::Save>, method<&C::CreateDefault>, method<&C::IsNameUnique>("sName"),
      event<&C::OnUpdateDependencies>("OverrideDefault"));
  static const ClassInfo info(members);
  return info;
}

void CHL_Chiller::CreateDefaultByType(int16_t nChillerType, const std::string& sDefaultsFile) {
  if (sDefaultsFile.empty()) fail(ErrorNumber::FileNotFound, "Chiller defaults file was not specified.");
  if (!files().exists(sDefaultsFile))
    fail(ErrorNumber::FileNotFound, "Chiller defaults file was not found." + sDefaultsFile);
  std::vector<std::byte> bytes(record_size());
  const auto last = static_cast<int>(files().size(sDefaultsFile) / bytes.size());
  if (nChillerType < 1 || nChillerType > last) {
    fail(ErrorNumber::InvalidCall, sDefaultsFile + " has no chiller type " + std::to_string(nChillerType) +
                                       "; its types are 1 to " + std::to_string(last) + ".");
  }
  files().read(sDefaultsFile, static_cast<uint64_t>(nChillerType - 1) * bytes.size(), bytes);
  set_record(bytes);
}

namespace {

struct FreeCoolingPoint {
  double delta_t, capacity, power;  // F, fractions of full load
};

// One counterflow coil for both, of effectiveness 10/28 on the water side, at a water range of 10 F. Non-integrated,
// the coil alone holds the leaving temperature: dT/18. Integrated, it cools the full flow of return water first:
// 10/28 (1 + dT/10). Fans take 8 % of the design power and the pump 2 %; integrated, the fans take the coil's share.
constexpr FreeCoolingPoint kNonIntegrated[]{{0, 0, 0},         {2, 0.1111, 0.1},  {4, 0.2222, 0.1},  {6, 0.3333, 0.1},
                                            {8, 0.4444, 0.1},  {10, 0.5556, 0.1}, {12, 0.6667, 0.1}, {14, 0.7778, 0.1},
                                            {16, 0.8889, 0.1}, {18, 1, 0.1}};
constexpr FreeCoolingPoint kIntegrated[]{
    {0, 0.3571, 0.0486},  {2, 0.4286, 0.0543},  {4, 0.5, 0.06},       {6, 0.5714, 0.0657},  {8, 0.6429, 0.0714},
    {10, 0.7143, 0.0771}, {12, 0.7857, 0.0829}, {14, 0.8571, 0.0886}, {16, 0.9286, 0.0943}, {18, 1, 0.1}};

}  // namespace

void CHL_Chiller::GetDXFCDefaults(CHL_DXFCOptions DXFCOption, CHL_DXFCUOM& UOM, std::vector<double>& DeltaT,
                                  std::vector<double>& Power, std::vector<double>& Capacity) const {
  if (DXFCOption != CHL_DXFCOptions::DXFC_NonIntegrated && DXFCOption != CHL_DXFCOptions::DXFC_Integrated)
    fail(ErrorNumber::InvalidCall, "Invalid DXFC option");
  UOM = CHL_DXFCUOM::DXFC_UOM_Relative;
  for (auto* list : {&DeltaT, &Power, &Capacity}) list->clear();
  for (const auto& point : DXFCOption == CHL_DXFCOptions::DXFC_Integrated ? kIntegrated : kNonIntegrated) {
    DeltaT.push_back(point.delta_t);
    Power.push_back(point.power);
    Capacity.push_back(point.capacity);
  }
}

}  // namespace tarn
