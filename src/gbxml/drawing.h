// What a gbXML file draws, in the units of this product, before it becomes entities. Texts are those of the document,
// which outlives it.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gbxml/document.h"
#include "gbxml/geometry.h"
#include "gbxml/shading.h"
#include "gbxml/tally.h"

namespace tarn {

struct DrawnLayer {
  std::string name;
  double thickness = 0;      // ft
  double conductivity = 0;   // Btu/(hr.ft.F)
  double density = 0;        // lb/ft3
  double specific_heat = 0;  // Btu/(lb.F)
  double resistance = 0;     // hr.ft2.F/Btu
  bool has_mass() const { return thickness > 0 && conductivity > 0 && density > 0 && specific_heat > 0; }
};

struct DrawnConstruction {
  Element element;  // null for one that the file refers to and does not have
  std::string_view id, name;
  std::vector<DrawnLayer> layers;  // outside to inside
  std::optional<double> u_value;   // Btu/(hr.ft2.F), as the file states it
  std::optional<double> absorptivity;
  std::optional<double> inside_film, outside_film;  // hr.ft2.F/Btu
  double resistance() const;                        // of the layers
};

struct DrawnPane {
  std::string name;
  double transmittance = 0, reflectance = 0;  // solar
  double thickness = 0;                       // in
  double conductivity = 0;                    // Btu/(hr.ft.F)
  bool low_emissivity = false;
};

struct DrawnGlazing {
  std::string_view id, name;
  std::optional<double> u_value, shade_coefficient;
  std::vector<DrawnPane> panes;  // outside to inside
  int16_t gap = 1, frame = 0;    // codes of the window methods
};

struct DrawnOpening {
  Element element;
  bool is_door = false;
  double width = 0, height = 0;  // ft; their product is the area
  std::string_view glazing, construction;
  std::optional<double> u_value, shade_coefficient;  // of its own
  Shading shading;
  double area() const { return width * height; }
};

enum class Role : uint8_t {
  Wall,
  Roof,
  UndergroundWall,
  SlabOnGrade,
  SlabBelowGrade,
  FloorOverOutdoors,
  FloorOverUnconditioned,
  FloorOverConditioned,
  WallToUnconditioned,
  CeilingToUnconditioned,
};

/// A surface as one space has it.
struct DrawnSurface {
  Element element;
  Role role = Role::Wall;
  double area = 0;                      // ft2, with its openings
  double azimuth = 0, tilt = 0;         // deg; azimuth from true north
  double low = 0, high = 0, width = 0;  // ft: of its points, and its horizontal extent
  std::string_view construction;
  std::vector<DrawnOpening> openings;
};

struct DrawnSpace {
  Element element;
  std::string_view id, name, zone;
  bool conditioned = true;
  std::vector<DrawnSurface> surfaces;
};

struct Drawing {
  explicit Drawing(const GbxmlDocument& source) : document(source) {}

  const GbxmlDocument& document;
  Tally tally;
  std::vector<DrawnSpace> spaces;
  std::unordered_map<std::string_view, size_t> space_of_id;
  std::map<std::string_view, DrawnConstruction> constructions;
  std::map<std::string_view, DrawnGlazing> glazings;
};

/// SHGC at normal incidence over 0.87, or the coefficient that the file states; of a window type or an opening.
std::optional<double> shade_coefficient_of(const GbxmlDocument& document, Element element);

void read_constructions(Drawing& drawing);
void read_spaces(Drawing& drawing);
/// After both.
void read_surfaces(Drawing& drawing);

}  // namespace tarn
