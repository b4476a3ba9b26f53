// Which type of air system of this product each type of gbXML is nearest to.
#pragma once

#include <cstdint>
#include <string_view>

namespace tarn {

/// Of `AirLoop/@systemType`; 0 for one that has no likeness.
int16_t type_of_air_loop(std::string_view system_type);
/// The other way; the nearest for each type.
std::string_view air_loop_of_type(int16_t type);
/// Of a `ZoneHVACEquipment/@zoneHVACEquipmentType` that stands alone; 0 for what heats or cools without supply air.
int16_t type_of_zone_equipment(std::string_view equipment_type);
/// Code of `AS_SupplyTerminalTypes` of one that an air system feeds; 0 for another.
int16_t terminal_of(std::string_view equipment_type, bool heats);

}  // namespace tarn
