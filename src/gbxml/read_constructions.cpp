// Constructions with their materials, and window types with their panes.
#include <algorithm>
#include <cmath>

#include "gbxml/drawing.h"

namespace tarn {
namespace {

constexpr double kReferenceGlass = 0.87;  // solar heat gain of the glass that a shade coefficient compares with
constexpr double kLowEmittance = 0.3;     // below it, a surface of glass is coated

constexpr const char* kUValue = "Btu/(hr.ft2.F)";
constexpr const char* kResistance = "hr.ft2.F/Btu";

class ConstructionReader {
 public:
  explicit ConstructionReader(Drawing& drawing)
      : drawing_(drawing), document_(drawing.document), tally_(drawing.tally) {}

  void construction(Element element) {
    tally_.found("Construction");
    DrawnConstruction out;
    out.element = element;
    out.id = attribute(element, "id");
    out.name = child_text(element, "Name");
    out.u_value = positive(document_.child_value(element, "U-value", kUValue));
    each_child(element, "Absorptance", [&](Element absorptance) {
      if (attribute(absorptance, "type") == "ExtSolar")
        out.absorptivity = document_.value(absorptance, "%").value_or(0) / 100;
    });
    each_child(element, "LayerId", [&](Element reference) { layer(reference, out); });
    if (out.layers.empty() && !out.u_value) tally_.note(document_, element, "it has neither layers nor a U-value");
    drawing_.constructions.try_emplace(out.id, std::move(out));
  }

  void window_type(Element element) {
    tally_.found("WindowType");
    DrawnGlazing out;
    out.id = attribute(element, "id");
    out.name = child_text(element, "Name");
    out.u_value = positive(document_.child_value(element, "U-value", kUValue));
    out.shade_coefficient = shade_coefficient_of(document_, element);
    each_child(element, "Glaze", [&](Element glaze) { pane(glaze, out); });
    if (const Element gap = child(element, "Gap")) out.gap = gap_code(gap);
    if (const Element frame = child(element, "Frame")) out.frame = frame_code(attribute(frame, "type"));
    if (out.panes.size() > 3) {
      tally_.note(document_, element,
                  "a window has 3 panes at most; its panes are left out, and U-value and SHGC taken");
      out.panes.clear();
    }
    drawing_.glazings.try_emplace(out.id, std::move(out));
  }

 private:
  static std::optional<double> positive(std::optional<double> value) {
    return value && *value > 0 ? value : std::nullopt;
  }

  void layer(Element reference, DrawnConstruction& out) {
    const std::string_view id = attribute(reference, "layerIdRef");
    const Element layer = document_.by_id("Layer", id);
    if (!layer) return missing(reference, "layer", id);
    if (const auto film = document_.child_value(layer, "InsideAirFilmResistance", kResistance)) out.inside_film = film;
    if (const Element coefficient = child(layer, "HOutside")) {
      const std::string_view unit = attribute(coefficient, "hOutsideUnitTypeEnum");
      const double factor = unit.starts_with("Watt") ? 0.1761102 : 1;  // Btu/(hr.ft2.F) of 1 W/(m2.K)
      if (const double film = document_.number(coefficient) * factor; film > 0) out.outside_film = 1 / film;
    }
    each_child(layer, "MaterialId", [&](Element material) { add_material(material, out); });
  }

  void missing(Element reference, const char* what, std::string_view id) {
    tally_.note(document_, reference,
                "it refers to the " + std::string(what) + " \"" + std::string(id) + "\", which the file does not have");
  }

  void add_material(Element reference, DrawnConstruction& out) {
    const std::string_view id = attribute(reference, "materialIdRef");
    const Element element = document_.by_id("Material", id);
    if (!element) return missing(reference, "material", id);
    DrawnLayer layer;
    layer.name = std::string(child_text(element, "Name"));
    if (layer.name.empty()) layer.name = std::string(id);
    const auto value = [&](const char* name, std::string_view unit) {
      const auto number = document_.child_value(element, name, unit).value_or(0);
      if (number < 0) document_.refuse(element, std::string(name) + " is negative");
      return number;
    };
    layer.thickness = value("Thickness", "ft");
    layer.conductivity = value("Conductivity", "Btu/(hr.ft.F)");
    layer.density = value("Density", "lb/ft3");
    layer.specific_heat = value("SpecificHeat", "Btu/(lb.F)");
    layer.resistance = value("R-value", kResistance);
    if (layer.conductivity > 0 && layer.thickness > 0) {
      const double conducted = layer.thickness / layer.conductivity;
      if (layer.resistance > 0 && std::abs(conducted - layer.resistance) > 0.01 * layer.resistance)
        tally_.note(document_, element, "its R-value is not its thickness over its conductivity, which is taken");
      layer.resistance = conducted;
    } else if (layer.resistance <= 0) {
      tally_.note(document_, element, "it has no resistance; it is left out of its constructions");
      return;
    }
    out.layers.push_back(std::move(layer));
  }

  void pane(Element element, DrawnGlazing& out) {
    DrawnPane pane;
    pane.name = std::string(child_text(element, "Name"));
    if (pane.name.empty()) pane.name = std::string(attribute(element, "id"));
    const auto solar = [&](const char* name, std::string_view type) {
      double part = 0;
      each_child(element, name, [&](Element of) {
        if (attribute(of, "type") == type) part = document_.value(of, "%").value_or(0) / 100;
      });
      return part;
    };
    pane.transmittance = solar("Transmittance", "Solar");
    pane.reflectance = solar("Reflectance", "ExtSolar");
    pane.thickness = document_.child_value(element, "Thickness", "in").value_or(0);
    pane.conductivity = document_.child_value(element, "Conductivity", "Btu/(hr.ft.F)").value_or(0);
    each_child(element, "Emittance", [&](Element emittance) {
      if (document_.value(emittance, "%").value_or(100) < 100 * kLowEmittance) pane.low_emissivity = true;
    });
    out.panes.push_back(std::move(pane));
  }

  /// Of the gaps that the window method knows, the nearest: 1/4 or 1/2 in of air, argon or krypton.
  int16_t gap_code(Element gap) {
    const double inches = document_.child_value(gap, "Thickness", "in").value_or(0.5);
    const std::string_view gas = attribute(gap, "gas");
    const int16_t of_gas = gas == "Argon" ? 2 : gas == "Krypton" ? 4 : 0;
    if (of_gas == 0 && gas != "Air") tally_.note(document_, gap, "its gas is taken as air");
    return static_cast<int16_t>(of_gas + (inches > 0.375 ? 1 : 0));
  }

  static int16_t frame_code(std::string_view type) {
    return type == "AluminumWithBreak" ? 1 : type == "Aluminum" ? 2 : type == "Insulated" ? 3 : 4;
  }

  Drawing& drawing_;
  const GbxmlDocument& document_;
  Tally& tally_;
};

}  // namespace

double DrawnConstruction::resistance() const {
  double sum = 0;
  for (const DrawnLayer& layer : layers) sum += layer.resistance;
  return sum;
}

std::optional<double> shade_coefficient_of(const GbxmlDocument& document, Element element) {
  std::optional<double> normal, overall;
  each_child(element, "SolarHeatGainCoeff", [&](Element gain) {
    const std::string_view angle = attribute(gain, "solarIncidentAngle");
    const auto part = document.value(gain, "%");
    if (angle == "0") normal = part;
    if (angle.empty()) overall = part;
  });
  if (normal || overall) return *(normal ? normal : overall) / 100 / kReferenceGlass;
  const auto stated = document.child_value(element, "ShadingCoeff", "%");
  return stated ? std::optional(*stated / 100) : std::nullopt;
}

void read_constructions(Drawing& drawing) {
  ConstructionReader reader(drawing);
  for (const Element element : drawing.document.all("Construction")) reader.construction(element);
  for (const Element element : drawing.document.all("WindowType")) reader.window_type(element);
}

}  // namespace tarn
