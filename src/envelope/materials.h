// Building materials that a layer can be made of: thermal properties of common building layers as published in the
// ASHRAE Handbook of Fundamentals 2005, chapter 30, table 22, in inch-pound units.
#pragma once

#include <span>
#include <string_view>

namespace tarn {

struct Material {
  std::string_view name;  // begins with the table's code: "M01 4 in brick"
  float inches;           // 0 for an air space, which has a resistance only
  float conductivity;     // Btu/(hr.ft.F)
  float density;          // lb/ft3
  float specific_heat;    // Btu/(lb.F)
  float resistance;       // hr.ft2.F/Btu, where there is no thickness
};

std::span<const Material> materials();
/// By its name or its code, capitals or not; null where there is none.
const Material* material(std::string_view name);

}  // namespace tarn
