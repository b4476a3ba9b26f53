#include "envelope/materials.h"

#include <algorithm>
#include <iterator>

#include "base/nearest.h"

namespace tarn {
namespace {

constexpr Material kMaterials[]{
    {"F06 EIFS finish", 0.374F, 0.416008F, 115.866F, 0.200631F, 0},
    {"F07 1 in stucco", 1, 0.416008F, 115.866F, 0.200631F, 0},
    {"F08 Metal surface", 0.0315F, 26.1623F, 488.436F, 0.119423F, 0},
    {"F09 Opaque spandrel glass", 0.252F, 0.572011F, 157.818F, 0.210184F, 0},
    {"F10 1 in stone", 1, 1.83159F, 159.816F, 0.188688F, 0},
    {"F11 Wood siding", 0.5F, 0.052001F, 36.9574F, 0.27945F, 0},
    {"F12 Asphalt shingles", 0.126F, 0.0231116F, 69.9193F, 0.300946F, 0},
    {"F13 Built-up roofing", 0.374F, 0.0924463F, 69.9193F, 0.348715F, 0},
    {"F14 Slate or tile", 0.5F, 0.918685F, 119.862F, 0.300946F, 0},
    {"F15 Wood shingles", 0.252F, 0.0231116F, 36.9574F, 0.3105F, 0},
    {"F16 Acoustic tile", 0.752F, 0.0346674F, 22.9735F, 0.140919F, 0},
    {"F17 Carpet", 0.5F, 0.0346674F, 17.9793F, 0.329607F, 0},
    {"F18 Terrazzo", 1, 1.04002F, 159.816F, 0.188688F, 0},
    {"G01 5/8 in gypsum board", 0.626F, 0.0924463F, 49.9424F, 0.260342F, 0},
    {"G01a 3/4 in gypsum board", 0.748F, 0.0924463F, 49.9424F, 0.260342F, 0},
    {"G02 5/8 in plywood", 0.626F, 0.0693347F, 33.9608F, 0.289004F, 0},
    {"G03 1/2 in fiberboard sheathing", 0.5F, 0.0404453F, 24.9712F, 0.3105F, 0},
    {"G04 1/2 in wood", 0.5F, 0.0866684F, 37.9562F, 0.389319F, 0},
    {"G05 1 in wood", 1, 0.0866684F, 37.9562F, 0.389319F, 0},
    {"G06 2 in wood", 2, 0.0866684F, 37.9562F, 0.389319F, 0},
    {"G07 4 in wood", 4, 0.0866684F, 37.9562F, 0.389319F, 0},
    {"I01 1 in insulation board", 1, 0.0173337F, 2.6844F, 0.289004F, 0},
    {"I02 2 in insulation board", 2, 0.0173337F, 2.6844F, 0.289004F, 0},
    {"I03 3 in insulation board", 3, 0.0173337F, 2.6844F, 0.289004F, 0},
    {"I04 3.5 in batt insulation", 3.52F, 0.0288895F, 1.18613F, 0.229292F, 0},
    {"I05 6 in batt insulation", 6.079F, 0.0288895F, 1.18613F, 0.229292F, 0},
    {"I06 9.6 in batt insulation", 9.598F, 0.0288895F, 1.18613F, 0.229292F, 0},
    {"M01 4 in brick", 4, 0.514232F, 119.862F, 0.188688F, 0},
    {"M02 6 in lightweight concrete block", 6, 0.283117F, 31.9631F, 0.210184F, 0},
    {"M03 8 in lightweight concrete block", 8, 0.288895F, 28.9666F, 0.210184F, 0},
    {"M04 12 in lightweight concrete block", 12, 0.41023F, 31.9631F, 0.210184F, 0},
    {"M05 8 in concrete block", 8, 0.641346F, 49.9424F, 0.219738F, 0},
    {"M06 12 in concrete block", 12, 0.808905F, 49.9424F, 0.219738F, 0},
    {"M07 6 in lightweight concrete block (filled)", 6, 0.167559F, 31.9631F, 0.210184F, 0},
    {"M08 8 in lightweight concrete block (filled)", 8, 0.150225F, 28.9666F, 0.210184F, 0},
    {"M09 12 in lightweight concrete block (filled)", 12, 0.167559F, 31.9631F, 0.210184F, 0},
    {"M10 8 in concrete block (filled)", 8, 0.416008F, 49.9424F, 0.219738F, 0},
    {"M11 4 in lightweight concrete", 4, 0.306228F, 79.9078F, 0.200631F, 0},
    {"M12 6 in lightweight concrete", 6, 0.306228F, 79.9078F, 0.200631F, 0},
    {"M13 8 in lightweight concrete", 8, 0.306228F, 79.9078F, 0.200631F, 0},
    {"M14a 4 in heavyweight concrete", 4, 1.12669F, 139.839F, 0.214961F, 0},
    {"M14 6 in heavyweight concrete", 6, 1.12669F, 139.839F, 0.214961F, 0},
    {"M15 8 in heavyweight concrete", 8, 1.12669F, 139.839F, 0.214961F, 0},
    {"M16 12 in heavyweight concrete", 12, 1.12669F, 139.839F, 0.214961F, 0},
    {"M17 2 in lightweight concrete roof ballast", 2, 0.10978F, 39.9539F, 0.200631F, 0},
    {"F04 Wall air space resistance", 0, 0, 0, 0, 0.85174F},
    {"F05 Ceiling air space resistance", 0, 0, 0, 0, 1.02209F},
};

}  // namespace

std::span<const Material> materials() { return kMaterials; }

const Material* material(std::string_view name) {
  const auto* found = std::find_if(std::begin(kMaterials), std::end(kMaterials), [&](const Material& each) {
    return same_word(each.name, name) || same_word(each.name.substr(0, each.name.find(' ')), name);
  });
  return found == std::end(kMaterials) ? nullptr : found;
}

}  // namespace tarn
