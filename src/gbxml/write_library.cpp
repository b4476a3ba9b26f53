// Walls, roofs, windows and doors as constructions, materials and window types.
#include <cmath>

#include "gbxml/writing.h"
#include "tarn/construction.h"
#include "tarn/door.h"
#include "tarn/window.h"

namespace tarn {
namespace {

constexpr const char* kConductance = "BtuPerHourSquareFtF";
constexpr const char* kResistanceUnit = "HrSquareFtFPerBTU";
constexpr double kShadeToGain = 0.87;  // of the glass that shade coefficients compare with
constexpr double kNoFilm = 1e-5;       // hr.ft2.F/Btu

bool is_film(const CA_Layer& layer) {
  return layer.Density <= 0 || layer.SpecificHeat <= 0 || layer.ThicknessInches() <= 0;
}

std::string add_material(Writing& writing, const CA_Layer& layer, const std::string& id) {
  Element material = add_named(writing.root, "Material", id, layer.Name.trimmed());
  const bool has_mass =
      layer.Density > 0 && layer.SpecificHeat > 0 && layer.Conductivity > 0 && layer.ThicknessInches() > 0;
  if (!has_mass) add_value(material, "R-value", layer.ThermalResistance, kResistanceUnit);
  if (layer.ThicknessInches() > 0) add_value(material, "Thickness", layer.ThicknessInches(), "Inches");
  if (!has_mass) return id;
  add_value(material, "Conductivity", layer.Conductivity, "BtuPerHourFtF");
  add_value(material, "Density", layer.Density, "LbsPerCubicFt");
  add_value(material, "SpecificHeat", layer.SpecificHeat, "BTUPerLbF");
  return id;
}

/// The outer slots are air films as a rule; gbXML has these beside the materials.
void write_slab(Writing& writing, CA_ConstructionAssly& wall, const std::string& id) {
  Element construction = add_named(writing.root, "Construction", id, wall.Name.trimmed());
  add_value(construction, "U-value", wall.OverallUValue, kConductance);
  Element absorptance = add_value(construction, "Absorptance", wall.Absorptivity, "Fraction");
  set(absorptance, "type", "ExtSolar");
  set(add(construction, "LayerId"), "layerIdRef", id + "-layers");
  Element layer = add(writing.root, "Layer");
  set(layer, "id", id + "-layers");
  double films[2]{kNoFilm, kNoFilm};  // outside, inside
  for (int slot = 1; slot <= CA_ConstructionAssly::kLayers; ++slot) {
    const CA_Layer& from = wall.layer(slot);
    if (!from.LayerUsed) continue;
    const bool is_outer = slot == 1 || slot == CA_ConstructionAssly::kLayers;
    if (is_outer && is_film(from)) {
      if (from.ThermalResistance > 0) films[slot == 1 ? 0 : 1] = from.ThermalResistance;
      continue;
    }
    const std::string material = id + "-material-" + std::to_string(slot);
    set(add(layer, "MaterialId"), "materialIdRef", add_material(writing, from, material));
  }
  if (!layer.child("MaterialId")) {
    Element none = add_named(writing.root, "Material", id + "-material-0", "No layer");
    add_value(none, "R-value", kNoFilm, kResistanceUnit);
    set(add(layer, "MaterialId"), "materialIdRef", id + "-material-0");
  }
  add_value(layer, "InsideAirFilmResistance", films[1], kResistanceUnit);
  set(add_value(layer, "HOutside", 1 / films[0]), "hOutsideUnitTypeEnum", "BTUPerHourSquareFootDegreeF");
}

void add_optics(Element glaze, const char* name, const char* type, double part) {
  Element optics = add_value(glaze, name, part, "Fraction");
  set(optics, "type", type);
  set(optics, "surfaceType", "Both");
}

void add_panes(Element type, const WIN_Window& window, const std::string& id) {
  int panes = 0;
  for (int slot = 1; slot <= 3; ++slot) {
    if (window.GlassTypeID(slot) < 1) continue;
    Element glaze =
        add_named(type, "Glaze", id + "-pane-" + std::to_string(++panes), window.GlassNameEnglish(slot).trimmed());
    add_optics(glaze, "Transmittance", "Solar", window.GlassTrans(slot));
    add_optics(glaze, "Reflectance", "ExtSolar", window.GlassReflect(slot));
    if (window.GlassTypeID(slot) >= 15 && window.GlassTypeID(slot) <= 17) add_optics(glaze, "Emittance", "ExtIR", 0.1);
    add_value(glaze, "Thickness", window.GlassThickness(slot), "Inches");
    add_value(glaze, "Conductivity", window.GlassConductivity(slot), "BtuPerHourFtF");
  }
  if (panes < 2) return;
  constexpr const char* kGases[]{"Air", "Argon", "Krypton"};
  const int code = window.GapTypeID >= 0 && window.GapTypeID <= 5 ? window.GapTypeID : 1;
  Element gap = add_named(type, "Gap", id + "-gap", window.GapNameEnglish.trimmed());
  set(gap, "gas", kGases[code / 2]);
  add_value(gap, "Thickness", code % 2 == 0 ? 0.25 : 0.5, "Inches");
}

void write_window(Writing& writing, const WIN_Window& window, const std::string& id) {
  Element type = add_named(writing.root, "WindowType", id, window.Name.trimmed());
  add_value(type, "U-value", window.OverallUValue, kConductance);
  Element gain = add_value(type, "SolarHeatGainCoeff", window.OverallShadeCo * kShadeToGain, "Fraction");
  set(gain, "solarIncidentAngle", "0");
  add_panes(type, window, id);
  constexpr const char* kFrames[]{"AluminumWithBreak", "Aluminum", "Insulated", "Wood"};
  if (window.FrameType >= 1 && window.FrameType <= 4) {
    Element frame = add(type, "Frame");
    set(frame, "id", id + "-frame");
    set(frame, "type", kFrames[window.FrameType - 1]);
  }
  if (window.ShadeType > 0) writing.note("internal shades of windows are in their U-values and SHGC alone");
}

}  // namespace

void write_constructions(Writing& writing) {
  for (const int16_t index : writing.indexes("WallIndex")) {
    const auto wall = writing.project.NewWall();
    wall->Load(index);
    write_slab(writing, *wall, numbered("wall", index));
  }
  for (const int16_t index : writing.indexes("RoofIndex")) {
    const auto roof = writing.project.NewRoof();
    roof->Load(index);
    write_slab(writing, *roof, numbered("roof", index));
  }
}

void write_windows(Writing& writing) {
  for (const int16_t index : writing.indexes("WindowIndex")) {
    const auto window = writing.project.NewWindow();
    window->Load(index);
    write_window(writing, *window, numbered("window", index));
  }
}

std::string plain_construction(Writing& writing, float u_value) {
  const std::string id = "u-" + decimal(u_value);
  if (writing.ids.insert(id).second) {
    Element construction = add_named(writing.root, "Construction", id, "U-value " + decimal(u_value));
    if (u_value > 0) add_value(construction, "U-value", u_value, kConductance);
  }
  return id;
}

DoorReference door_reference(Writing& writing, int16_t index) {
  const auto door = writing.project.NewDoor();
  door->Load(index);
  const bool is_sized = door->AreaSpec == DOR_AreaSpec::DAS_HEIGHT_AND_WIDTH && door->Height > 0 && door->Width > 0;
  const double height = is_sized ? door->Height : std::sqrt(std::max<double>(door->GrossArea, 1e-3));
  DoorReference reference{"constructionIdRef", numbered("door", index), door->GrossArea / height, height};
  if (is_sized) reference.width = door->Width;
  const double glass = door->GrossArea > 0 ? door->GlassArea / door->GrossArea : 0;
  const bool is_glazed = glass >= 1;
  if (is_glazed) reference.attribute = "windowTypeIdRef";
  const char* const element = is_glazed ? "WindowType" : "Construction";
  if (!writing.ids.insert(reference.id).second) return reference;
  Element type = add_named(writing.root, element, reference.id, door->Name.trimmed());
  if (!is_glazed) {
    add_value(type, "U-value", door->SolidUValue * (1 - glass) + door->GlassUValue * glass, kConductance);
    if (glass > 0) writing.note("doors that are glazed in part have one U-value in gbXML, and no SHGC");
    return reference;
  }
  add_value(type, "U-value", door->GlassUValue, kConductance);
  set(add_value(type, "SolarHeatGainCoeff", door->GlassShadeCo * kShadeToGain, "Fraction"), "solarIncidentAngle", "0");
  return reference;
}

}  // namespace tarn
