#include "gbxml/system_types.h"

namespace tarn {
namespace {

/// Names of `systemTypeEnum`; the first of a type is the one that an export takes.
constexpr struct {
  std::string_view name;
  int16_t type;
} kAirLoops[]{{"PackagedSingleZone", 1},
              {"SingleZoneReheat", 1},
              {"ConstantVolumeFixedOA", 1},
              {"ConstantVolumeVariableOA", 1},
              {"HeatingAndVentilating", 1},
              {"EvaporativeCooling", 1},
              {"ConstantVolumeTerminalReheat", 2},
              {"ReheatFan", 2},
              {"MultiZone", 3},
              {"PackagedMultiZone", 3},
              {"MultizoneHotDeckColdDeck", 4},
              {"ConstantVolumeDualDuct", 5},
              {"DualDuct", 5},
              {"SplitSystemsWithMechanicalVentilation", 6},
              {"InductionUnit", 7},
              {"SingleZoneCeilingInduction", 7},
              {"VariableAirVolume", 8},
              {"VAVSingleDuct", 8},
              {"PackagedVariableAirVolume", 8},
              {"VAVReheatFan", 8},
              {"VAVIndoorPackagedCabinet", 8},
              {"PoweredInductionUnit", 8},
              {"VAVDualDuct", 9},
              {"VAVDualDuct", 10},
              {"PackagedVariableVolumeVariableTemperature", 11},
              {"CeilingBypassVariableAirVolume", 11},
              {"ResidentialVariableAirVolumeVariableTemperature", 11},
              {"PackagedTerminalAirConditioner", 12},
              {"SplitSystemsWithNaturalVentilation", 13},
              {"SplitSystemsWithMechanicalVentilationWithCooling", 13},
              {"ResidentialCyclingFurnaceCyclingAC", 13},
              {"WaterLoopHeatPump", 14},
              {"FanCoil", 16},
              {"FanCoil", 15},
              {"UnitVentilator", 16},
              {"WaterLoopHeatPump", 18},
              {"WaterLoopHeatPump", 19},
              {"VariableRefrigerantFlow", 20},
              {"ActiveChilledBeams", 22},
              {"ActiveChilledBeams", 21},
              {"RadiantCooledCeilings", 22}};

constexpr struct {
  std::string_view name;
  int16_t alone, terminal, heating_terminal;
} kZoneEquipment[]{{"VAVBox", 0, 3, 4},
                   {"CAVBox", 0, 1, 2},
                   {"ParallelFanPoweredBox", 0, 6, 6},
                   {"SeriesFanPoweredBox", 0, 5, 5},
                   {"ChilledBeamActive", 22, 14, 14},
                   {"ChilledBeamPassive", 22, 14, 14},
                   {"FourPipeFanCoil", 16, 11, 11},
                   {"UnitVentilator", 16, 11, 11},
                   {"PackagedTerminalAirConditioner", 12, 11, 11},
                   {"PackagedTerminalHeatPump", 12, 11, 11},
                   {"WaterSourceHeatPump", 14, 11, 11},
                   {"VRFFanCoil", 20, 11, 11}};

}  // namespace

int16_t type_of_air_loop(std::string_view system_type) {
  for (const auto& row : kAirLoops) {
    if (row.name == system_type) return row.type;
  }
  return 0;
}

std::string_view air_loop_of_type(int16_t type) {
  for (const auto& row : kAirLoops) {
    if (row.type == type) return row.name;
  }
  return {};
}

int16_t type_of_zone_equipment(std::string_view equipment_type) {
  for (const auto& row : kZoneEquipment) {
    if (row.name == equipment_type) return row.alone;
  }
  return 0;
}

int16_t terminal_of(std::string_view equipment_type, bool heats) {
  for (const auto& row : kZoneEquipment) {
    if (row.name == equipment_type) return heats ? row.heating_terminal : row.terminal;
  }
  return 0;
}

}  // namespace tarn
