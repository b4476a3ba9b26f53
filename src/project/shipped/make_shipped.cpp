// Makes the data files that the product ships: make_shipped TABLES FOLDER reads the readable tables of this folder and
// writes chillers.dat, one record for each type, and plant.dat, the default plant.

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>

#include "plant/chiller_map.h"
#include "reflect/json.h"
#include "reflect/json_text.h"
#include "tarn/chiller.h"
#include "tarn/plant.h"

namespace {

using namespace tarn;
constexpr double kKWPerTon = 3.516853, kMBHPerTon = 12;

Json table(const std::filesystem::path& path) {
  std::ifstream file(path);
  if (!file) fail(ErrorNumber::FileNotFound, "Cannot read " + path.string() + ".");
  return parse_json(std::string(std::istreambuf_iterator<char>(file), {}));
}

double quadratic(const Json& coefficients, double x) {
  return coefficients.at(0).get<double>() +
         x * (coefficients.at(1).get<double>() + x * coefficients.at(2).get<double>());
}

/// Full-load input as a fraction of that at the design point; below the least unloading the compressor cycles, and
/// takes the same for each unit of cooling as there.
double part_load_input(const Json& row, double load) {
  const double least = row.at("min_unloading_percent").get<double>() / 100;
  const auto& curve = row.at("part_load");
  return load >= least ? quadratic(curve, load) : quadratic(curve, least) * load / least;
}

void fill_map(CHL_OperatingMode& mode, const Json& row) {
  const double first = row.at("valid_F").at(0).get<double>(), last = row.at("valid_F").at(1).get<double>();
  constexpr int kRows = 7, kColumns = 10;
  mode.SetNumRows(kRows);
  mode.SetNumColumns(kColumns);
  mode.ColumnDataType = CHL_MapDataTypes::DT_LOAD_LEVELS_PERCENT;
  for (int c = 1; c <= kColumns; ++c) mode.MapColumnHeading(c) = static_cast<int16_t>(10 * c);
  for (int r = 1; r <= kRows; ++r) {
    const double temperature = first + (last - first) * (r - 1) / (kRows - 1);
    const double capacity = mode.FLCapacity * quadratic(row.at("capacity_by_temperature"), temperature);
    const double power = mode.FLPower * quadratic(row.at("capacity_by_temperature"), temperature) *
                         quadratic(row.at("input_by_temperature"), temperature);
    mode.MapRowHeading(r) = static_cast<float>(temperature);
    for (int c = 1; c <= kColumns; ++c) {
      mode.MapCapacity(r, c) = static_cast<float>(capacity * c / kColumns);
      mode.MapPower(r, c) = static_cast<float>(power * part_load_input(row, double{1} * c / kColumns));
    }
  }
}

std::unique_ptr<CHL_Chiller> chiller_of(const Json& row) {
  auto chiller = std::make_unique<CHL_Chiller>();
  const auto number = [&row](const char* key) { return row.at(key).get<float>(); };
  const auto type = row.at("type").get<int16_t>();
  const bool air = type >= static_cast<int16_t>(CHL_ChillerTypes::CT_AIR_COOLED_PACKAGED_SCREW);
  set_from_json(*chiller, chiller->info().find("FuelType"), {}, row.at("fuel"));
  const auto fuel = CHL_FuelTypes{chiller->FuelType};
  const bool electric = fuel == CHL_FuelTypes::CFT_ELECTRIC, steam = fuel == CHL_FuelTypes::CFT_REMOTE_SOURCE_STEAM;
  const double unit = electric ? kKWPerTon : kMBHPerTon;
  chiller->Name = row.at("name").get<std::string>();
  chiller->Notes = "";
  chiller->SourceFluid = air ? CHL_SourceFluids::AirSource : CHL_SourceFluids::WaterSource;
  chiller->FunctionType = CHL_FunctionTypes::FT_CoolingOnly;
  chiller->ChillerType = static_cast<CHL_ChillerTypes>(type);
  chiller->DesInputSource = chiller->PerfMapSource = CHL_DataSourceTypes::IS_AUTO_GENERATED;
  chiller->AutoSize = true;
  chiller->EngineEff = number("engine_efficiency");
  chiller->UnitElectric = number("auxiliary_kw_per_ton");
  constexpr float kHeatOfSteam = 945;  // Btu/lb, of vaporization at 30 psia (steam tables)
  chiller->SteamHeatContent = steam ? kHeatOfSteam : 0;
  chiller->MinECWT = number("min_entering_condenser_F");
  chiller->MinUnloading = number("min_unloading_percent");
  chiller->DXFCUOM = CHL_DXFCUOM::DXFC_UOM_Relative;
  CHL_OperatingMode& mode = chiller->CoolingMode;
  mode.FLLeavingWaterTemp = 44;
  mode.FLEnteringTemp = air ? 95.0F : 85.0F;
  mode.FLCapacity = number("capacity_tons");
  mode.FLPower = static_cast<float>(mode.FLCapacity * unit / number("full_load_cop"));
  mode.FLPowerUnits = CHL_InputPower::InputPower_Absolute;
  mode.EvapFlow = number("evaporator_gpm_per_ton");
  mode.CondFlow = number("condenser_gpm_per_ton");
  mode.EvapFlowUnits = mode.CondFlowUnits = COM_FlowUOM::FU_GPM_PER_TON;
  fill_map(mode, row);
  const auto part_load = integrated_part_load(mode, CHL_SourceFluids{chiller->SourceFluid}, chiller->MinECWT);
  if (!part_load) fail(ErrorNumber::InvalidCall, "The map does not reach the temperatures of its part-load value.");
  chiller->IPLV = static_cast<float>(*part_load);
  return chiller;
}

void write_chillers(const Json& types, const std::string& path) {
  std::ofstream file(path, std::ios::binary);
  const auto write = [&file](std::span<const std::byte> bytes) {
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  };
  int16_t type = 0;
  for (const Json& row : types.at("chillers")) {
    const auto chiller = chiller_of(row);
    if (chiller->ChillerType.raw != ++type) fail(ErrorNumber::InvalidCall, "The types are not in their order.");
    const ChillerRecord& own = *chiller;
    write(std::as_bytes(std::span(&own, 1)));
    for (CHL_OperatingMode* mode : {&chiller->CoolingMode, &chiller->HeatRecoveryMode, &chiller->HeatingMode})
      write(mode->bytes());
  }
  if (!file.flush()) fail(ErrorNumber::DeviceError, "Cannot write " + path + ".");
}

void write_plant(const Json& values, const std::string& path) {
  PLT_Plant plant;
  set_fields_from_json(plant, values.at("values"));
  plant.General.SetFlags();
  plant.WriteDefaultsFile(path);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "make_shipped TABLES FOLDER\n";
    return 2;
  }
  try {
    const std::filesystem::path tables = argv[1], folder = argv[2];
    std::filesystem::create_directories(folder);
    write_chillers(table(tables / "chiller_types.json"), folder / "chillers.dat");
    write_plant(table(tables / "default_plant.json"), folder / "plant.dat");
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "make_shipped: " << error.what() << '\n';
    return 1;
  }
}
