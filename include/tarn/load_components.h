// The components of the loads of spaces, zones and systems, by which loads are numbered in result files.
#pragma once

#include <string>

#include "tarn/base/labels.h"
#include "tarn/base/wire.h"

namespace tarn {

enum class ADL_LoadComponents : int16_t {
  Walls = 1,
  Roofs,
  WindowSolar,
  WindowTransmission,
  SkylightSolar,
  SkylightTransmission,
  Doors,
  Floors,
  Partitions,
  Ceilings,
  OverheadLighting,
  TaskLighting,
  ElectricEquipment,
  People,
  Infiltration,
  Miscellaneous,
  Ventilation,
  SupplyFan,
  ReturnFan,
  Ducts,
  Plenum,
  SafetyFactor
};
template <>
inline constexpr CodeText<ADL_LoadComponents> code_table<ADL_LoadComponents>[] = {
    {ADL_LoadComponents::Walls, "Walls"},
    {ADL_LoadComponents::Roofs, "Roofs"},
    {ADL_LoadComponents::WindowSolar, "Windows, solar"},
    {ADL_LoadComponents::WindowTransmission, "Windows, transmission"},
    {ADL_LoadComponents::SkylightSolar, "Skylights, solar"},
    {ADL_LoadComponents::SkylightTransmission, "Skylights, transmission"},
    {ADL_LoadComponents::Doors, "Doors"},
    {ADL_LoadComponents::Floors, "Floors"},
    {ADL_LoadComponents::Partitions, "Partitions"},
    {ADL_LoadComponents::Ceilings, "Ceilings"},
    {ADL_LoadComponents::OverheadLighting, "Overhead lighting"},
    {ADL_LoadComponents::TaskLighting, "Task lighting"},
    {ADL_LoadComponents::ElectricEquipment, "Electric equipment"},
    {ADL_LoadComponents::People, "People"},
    {ADL_LoadComponents::Infiltration, "Infiltration"},
    {ADL_LoadComponents::Miscellaneous, "Miscellaneous"},
    {ADL_LoadComponents::Ventilation, "Ventilation"},
    {ADL_LoadComponents::SupplyFan, "Supply fan"},
    {ADL_LoadComponents::ReturnFan, "Return fan"},
    {ADL_LoadComponents::Ducts, "Duct heat gain and leakage"},
    {ADL_LoadComponents::Plenum, "Plenum"},
    {ADL_LoadComponents::SafetyFactor, "Safety factor"},
};

inline constexpr int kLoadComponents = static_cast<int>(std::size(code_table<ADL_LoadComponents>));

/// A value for each component: `loads(ADL_LoadComponents::Walls)`.
using ByComponent = Array<R4, kLoadComponents>;

/// The components' names, given by objects with loads, so that reports need no list of their own.
class WithComponents {
 public:
  /// The text of a component, 1 to 22. Error `SubscriptOutOfRange`.
  std::string ComponentName(int nComponent) const;
};

}  // namespace tarn
