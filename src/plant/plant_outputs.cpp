// The hourly outputs of a plant's simulation, by its type, and what its header looks up in the index database.
#include <algorithm>

#include "tarn/plant.h"
#include "tarn/platform/database.h"
#include "tarn/reflect/describe.h"

namespace tarn {
namespace {

/// Codes of outputs; those of units carry 100 times the unit's place in its list.
enum Output : int16_t {
  kCoolingLoad = 1,       // tons
  kChilledWaterTemp = 2,  // F, leaving
  kChilledWaterFlow = 3,  // gpm
  kHeatingLoad = 4,       // MBH
  kHotWaterTemp = 5,      // F, leaving
  kHotWaterFlow = 6,      // gpm
  kUnmetCooling = 7,      // tons
  kUnmetHeating = 8,      // MBH
  kFirstLoop = 11,        // kW of the pumps, of the loops in their order
  kCoolingOutput = 21,    // tons, of a unit
  kCoolingInput = 22,     // kW, or MBH of fuel or heat
  kHeatingOutput = 23,    // MBH
  kHeatingInput = 24,     // kW, or MBH of fuel or heat
  kRecoveryOutput = 25,   // MBH
  kRecoveryInput = 26,    // kW
  kTowerFan = 31,         // kW, of a cooling unit's tower
  kFreeCooling = 41,      // tons
  kRecoveredHeat = 42,    // MBH
  kStorageCharge = 43,    // tons, negative when discharging
  kStorageLevel = 44,     // ton.hr
  kServiceLoad = 51,      // MBH
  kServiceTemp = 52,      // F, stored
  kServicePump = 53,      // kW
  kRemoteCooling = 61,    // tons
  kRemoteHeating = 62     // MBH
};

using Type = PLT_PlantTypes;
using Codes = std::initializer_list<int16_t>;

/// Units and loops that plants of a type can have.
struct Outputs {
  std::vector<int16_t> codes;
  std::vector<int> loops = {};  // from 1, those that are used
  Type type;
  bool cooling_units = false, heating_units = false, recovery_units = false;
};

const std::vector<int16_t> kCooling{kCoolingLoad, kChilledWaterTemp, kChilledWaterFlow, kUnmetCooling};
const std::vector<int16_t> kHeating{kHeatingLoad, kHotWaterTemp, kHotWaterFlow, kUnmetHeating};
const std::vector<int16_t> kSteam{kHeatingLoad, kUnmetHeating};

std::vector<int16_t> with(std::vector<int16_t> first, const std::vector<int16_t>& more) {
  first.insert(first.end(), more.begin(), more.end());
  return first;
}

const Outputs kOutputs[]{
    {.codes = kCooling, .loops = {1, 2}, .type = Type::PT_GENERIC_CW},
    {.codes = kHeating, .loops = {3, 4}, .type = Type::PT_GENERIC_HW},
    {.codes = kSteam, .type = Type::PT_GENERIC_STEAM},
    {.codes = kCooling, .loops = {1, 2, 7}, .type = Type::PT_CHILLER, .cooling_units = true},
    {.codes = with(kCooling, {kStorageCharge, kStorageLevel}),
     .loops = {1, 2, 7},
     .type = Type::PT_COOL_STORAGE,
     .cooling_units = true},
    {.codes = with(kCooling, {kRemoteCooling}), .loops = {1, 2}, .type = Type::PT_REMOTE_SOURCE_CW},
    {.codes = kHeating, .loops = {3, 4}, .type = Type::PT_HOT_WATER, .heating_units = true},
    {.codes = kSteam, .type = Type::PT_STEAM_BOILER, .heating_units = true},
    {.codes = with(kHeating, {kRemoteHeating}), .loops = {3, 4}, .type = Type::PT_REMOTE_SOURCE_HW},
    {.codes = with(kSteam, {kRemoteHeating}), .type = Type::PT_REMOTE_SOURCE_STEAM},
    {.codes = with(kCooling, kHeating), .loops = {5, 6}, .type = Type::PT_GENERIC_CHANGEOVER},
    {.codes = with(kCooling, kHeating),
     .loops = {5, 6, 7, 8},
     .type = Type::PT_CHANGEOVER,
     .cooling_units = true,
     .heating_units = true},
    {.codes = {kServiceLoad, kServiceTemp, kServicePump}, .type = Type::PT_SERVICE_HOT_WATER, .heating_units = true},
    {.codes = {kServiceLoad, kServiceTemp}, .type = Type::PT_GENERIC_SERVICEHW},
    {.codes = with(with(kCooling, kHeating), {kRecoveredHeat}), .type = Type::PT_GENERIC_HEAT_RECOVERY},
    {.codes = with(with(kCooling, kHeating), {kRecoveredHeat}),
     .loops = {1, 2, 3, 4, 7, 8},
     .type = Type::PT_HEAT_RECOVERY,
     .cooling_units = true,
     .heating_units = true,
     .recovery_units = true}};

/// Each unit of a list with these codes.
void add_units(std::vector<int16_t>& flags, const PLT_EquipmentList& list, Codes codes) {
  for (int unit = 1; unit <= list.NumEquipment(); ++unit) {
    for (const int16_t code : codes) flags.push_back(static_cast<int16_t>(code + 100 * unit));
  }
}

std::vector<int16_t> flags_of(const Outputs& outputs, PLT_Details& details) {
  std::vector<int16_t> flags = outputs.codes;
  const bool cools = outputs.cooling_units;
  if (cools && static_cast<PLT_FreeCoolingTypes>(details.FreeCoolingType) != PLT_FreeCoolingTypes::FCT_NOT_USED)
    flags.push_back(kFreeCooling);
  if (cools && details.HeatRecoveryUsed && !outputs.recovery_units) flags.push_back(kRecoveredHeat);
  for (const int loop : outputs.loops) {
    if (details.loops()[static_cast<size_t>(loop) - 1]->Used)
      flags.push_back(static_cast<int16_t>(kFirstLoop + loop - 1));
  }
  if (cools) {
    add_units(flags, details.CoolingEqpt, {kCoolingOutput, kCoolingInput});
    for (int unit = 1; unit <= details.CoolingEqpt.NumEquipment(); ++unit) {
      if (details.CoolingEqpt.Equipment(unit).TowerID != 0)
        flags.push_back(static_cast<int16_t>(kTowerFan + 100 * unit));
    }
    if (details.TowerID != 0) flags.push_back(kTowerFan);
  }
  if (outputs.heating_units) add_units(flags, details.HeatingEqpt, {kHeatingOutput, kHeatingInput});
  if (outputs.recovery_units) add_units(flags, details.HeatRecEqpt, {kRecoveryOutput, kRecoveryInput});
  return flags;
}

const Outputs& outputs_of(Type type) {
  const auto* outputs = std::ranges::find(kOutputs, type, &Outputs::type);
  if (outputs == std::end(kOutputs))
    fail(ErrorNumber::InvalidCall, "Unknown plant type: " + std::to_string(static_cast<int>(type)));
  return *outputs;
}

/// Of a side that the type has not: nothing to size.
ConfigurationRecord unused_side() {
  ConfigurationRecord none{};
  none.SizingMethod = PLT_SizingMethod::pltUserDefinedCapacity;
  none.UnitSizing = PLT_UnitSizing::ONE_UNIT;
  none.ControlType = PLT_ControlTypes::PCT_SEQUENCED;
  none.DistSystemType = PLT_FluidDistSystemTypes::FDS_PRIMARY_ONLY_CONSTANT_SPEED;
  none.LWTControl = PLT_LWTControlType::ConstantLWT;
  return none;
}

void without_leaving_water(ConfigurationRecord& steam) {
  for (R4* figure : {&steam.DesignLWT, &steam.DesignDeltaT, &steam.ResetLWT, &steam.ResetStart, &steam.ResetEnd})
    *figure = 0;
  steam.LWTControl = PLT_LWTControlType::ConstantLWT;
}

}  // namespace

void PLT_Plant::SetType(PLT_PlantTypes type) {
  const Outputs& outputs = outputs_of(type);
  const auto& codes = outputs.codes;
  const auto& loops = outputs.loops;
  const auto gives = [&](int16_t code) { return std::ranges::find(codes, code) != codes.end(); };
  General.PlantType = type;
  ConfigurationRecord &clg = Details.ConfigCooling, &htg = Details.ConfigHeating;
  if (!gives(kCoolingLoad)) clg = unused_side();
  if (!gives(kHeatingLoad))
    htg = unused_side();
  else if (!gives(kHotWaterTemp))
    without_leaving_water(htg);
  Details.HeatRecoveryUsed = gives(kRecoveredHeat);
  for (int number = 1; number <= PLT_Details::kLoops; ++number) {
    PLT_PumpLoop& loop = *Details.loops()[static_cast<size_t>(number) - 1];
    loop.Used = loop.NumPumps() > 0 && std::ranges::find(loops, number) != loops.end();
  }
}

const PLT_Plant& PLT_General::of_plant() const {
  if (!plant) fail(ErrorNumber::ObjectNotSet, "The header belongs to no plant; take it from General of a plant.");
  return *plant;
}

void PLT_General::SetFlags() {
  const Outputs& outputs = outputs_of(PlantType);
  if (!of_plant().has_details())
    fail(ErrorNumber::InvalidCall, "The outputs depend on Details, which were not loaded. Load them first.");
  const std::vector<int16_t> flags = flags_of(outputs, const_cast<PLT_Details&>(of_plant().Details));
  if (flags.size() > kOutputFlags) fail(ErrorNumber::InvalidCall, "Too many output flags");
  OutputFlags = {};
  for (size_t i = 0; i < flags.size(); ++i) OutputFlags.items[i] = flags[i];
  NumOutputs = static_cast<int16_t>(flags.size());
}

void PLT_General::GetEquipmentTypes(int16_t nLibraryID, int16_t nEquipmentID, int16_t& nFunctionType,
                                    int16_t& nChillerType, int16_t& nFuelType) const {
  const auto library = static_cast<COM_ProjectLibrary>(nLibraryID);
  const bool chillers = library == COM_ProjectLibrary::LIB_CHILLERS;
  if (!chillers && library != COM_ProjectLibrary::LIB_BOILERS)
    fail(ErrorNumber::InvalidCall, "Unknown equipment library ID: " + std::to_string(nLibraryID));
  auto row = of_plant().database().OpenRecordset(
      chillers ? "SELECT nFunctionType, nChillerType FROM ChillerIndex WHERE nIndex = ?"
               : "SELECT nFuelType FROM BoilerIndex WHERE nIndex = ?",
      {cell(nEquipmentID)});
  const auto code = [&](const char* column) {
    return row.AtEof() ? int16_t{0} : static_cast<int16_t>(row.Fields(column).integer());
  };
  nFunctionType = chillers ? code("nFunctionType") : int16_t{0};
  nChillerType = chillers ? code("nChillerType") : int16_t{0};
  nFuelType = chillers ? int16_t{0} : code("nFuelType");
}

int32_t PLT_General::count(const std::string& sql, std::initializer_list<int64_t> numbers) const {
  std::vector<Cell> cells;
  for (const int64_t number : numbers) cells.push_back(cell(number));
  Database& database = of_plant().database();
  database.join(Database::Part::Reading);
  Statement found(database, sql, cells);
  return found.step() ? static_cast<int32_t>(found.integer(0)) : 0;
}

int32_t PLT_General::GetDetailedTowerCount() const {
  return count(
      "SELECT COUNT(*) AS CNT FROM TowerIndex TWR, Plant_Tower_Links PTL "
      "WHERE PTL.Tower_ID = TWR.nIndex AND nECWTModel IN (2, 4) AND PTL.Plant_ID = ?",
      {of_plant().Index()});
}

int32_t PLT_General::GetEquipmentLinkCount(int16_t nLibraryID, std::optional<int16_t> nEquipmentID) const {
  const std::string sql =
      "SELECT Count(*) as LinkCount FROM Plant_Equipment_Links WHERE Plant_ID = ? AND Library_ID = ?";
  const int64_t plant_index = of_plant().Index();
  if (nEquipmentID) return count(sql + " AND Equipment_ID = ?", {plant_index, nLibraryID, *nEquipmentID});
  return count(sql, {plant_index, nLibraryID});
}

}  // namespace tarn
