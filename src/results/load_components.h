// The components of the loads of spaces, zones and systems, by which loads are numbered in result files.
#pragma once

#include <string>

#include "base/labels.h"
#include "base/wire.h"

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
inline constexpr Label kLoadComponentLabels[]{{1, "Walls", "Walls"},
                                              {2, "Roofs", "Roofs"},
                                              {3, "WindowSolar", "Windows, solar"},
                                              {4, "WindowTransmission", "Windows, transmission"},
                                              {5, "SkylightSolar", "Skylights, solar"},
                                              {6, "SkylightTransmission", "Skylights, transmission"},
                                              {7, "Doors", "Doors"},
                                              {8, "Floors", "Floors"},
                                              {9, "Partitions", "Partitions"},
                                              {10, "Ceilings", "Ceilings"},
                                              {11, "OverheadLighting", "Overhead lighting"},
                                              {12, "TaskLighting", "Task lighting"},
                                              {13, "ElectricEquipment", "Electric equipment"},
                                              {14, "People", "People"},
                                              {15, "Infiltration", "Infiltration"},
                                              {16, "Miscellaneous", "Miscellaneous"},
                                              {17, "Ventilation", "Ventilation"},
                                              {18, "SupplyFan", "Supply fan"},
                                              {19, "ReturnFan", "Return fan"},
                                              {20, "Ducts", "Duct heat gain and leakage"},
                                              {21, "Plenum", "Plenum"},
                                              {22, "SafetyFactor", "Safety factor"}};
template <>
inline constexpr std::span<const Label> labels<ADL_LoadComponents> = kLoadComponentLabels;

inline constexpr int kLoadComponents = static_cast<int>(std::size(kLoadComponentLabels));

/// A value for each component: `loads(ADL_LoadComponents::Walls)`.
using ByComponent = Array<R4, kLoadComponents>;

/// The components' names, given by objects with loads, so that reports need no list of their own.
class WithComponents {
 public:
  /// The text of a component, 1 to 22. Error `SubscriptOutOfRange`.
  std::string ComponentName(int nComponent) const;
};

}  // namespace tarn
