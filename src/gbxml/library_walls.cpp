// Walls and roofs from constructions.
#include <algorithm>
#include <cmath>

#include "gbxml/library.h"
#include "tarn/construction.h"

namespace tarn {
namespace {

constexpr size_t kMostLayers = CA_ConstructionAssly::kLayers - 2;  // between the air films
constexpr double kToldDifference = 0.1;                            // of a U-value

/// Two neighbours become one: resistances, masses and heat capacities add up.
DrawnLayer joined(const DrawnLayer& a, const DrawnLayer& b) {
  DrawnLayer both{a.name + " + " + b.name};
  both.thickness = a.thickness + b.thickness;
  both.resistance = a.resistance + b.resistance;
  if (!a.has_mass() && !b.has_mass()) return both;
  const double mass = a.density * a.thickness + b.density * b.thickness;
  const double heat = a.density * a.thickness * a.specific_heat + b.density * b.thickness * b.specific_heat;
  both.conductivity = both.thickness / both.resistance;
  both.density = mass / both.thickness;
  both.specific_heat = heat / mass;
  return both;
}

/// Neighbours with the least heat capacity are joined until the layers fit.
bool join_to_fit(std::vector<DrawnLayer>& layers) {
  const bool fits = layers.size() <= kMostLayers;
  while (layers.size() > kMostLayers) {
    const auto heat = [&](size_t i) {
      return layers[i].density * layers[i].thickness * layers[i].specific_heat +
             layers[i + 1].density * layers[i + 1].thickness * layers[i + 1].specific_heat;
    };
    size_t least = 0;
    for (size_t i = 1; i + 1 < layers.size(); ++i) {
      if (heat(i) < heat(least)) least = i;
    }
    layers[least] = joined(layers[least], layers[least + 1]);
    layers.erase(layers.begin() + static_cast<ptrdiff_t>(least) + 1);
  }
  return !fits;
}

void set_film(CA_Layer& layer, const char* name, double resistance) {
  layer.Name = name;
  layer.LayerUsed = true;
  layer.SetThicknessInches(0);
  layer.Conductivity = 1;
  layer.Density = layer.SpecificHeat = layer.Weight = 0;
  layer.ThermalResistance = static_cast<float>(resistance);
}

void set_layer(CA_Layer& layer, const DrawnLayer& drawn) {
  layer.Name = fitted(drawn.name, 255).text;
  layer.LayerUsed = true;
  layer.SetThicknessInches(static_cast<float>(drawn.thickness * 12));
  layer.Conductivity = static_cast<float>(drawn.conductivity);
  layer.Density = static_cast<float>(drawn.density);
  layer.SpecificHeat = static_cast<float>(drawn.specific_heat);
  layer.ThermalResistance = static_cast<float>(drawn.resistance);
  layer.derive();
}

void set_layers(CA_ConstructionAssly& wall, const std::vector<DrawnLayer>& layers) {
  for (int slot = 2; slot < CA_ConstructionAssly::kLayers; ++slot) {
    const auto number = static_cast<size_t>(slot) - 2;
    if (number < layers.size())
      set_layer(wall.layer(slot), layers[number]);
    else
      wall.layer(slot).LayerUsed = false;
  }
  wall.ComputeSummary();
}

/// What conducts as the layers do, without their mass.
std::vector<DrawnLayer> without_mass(double resistance) {
  DrawnLayer layer{"Resistance of the layers"};
  layer.resistance = resistance;
  return {layer};
}

}  // namespace

const DrawnConstruction* Library::construction(std::string_view id) const {
  const auto found = filling_.drawing.constructions.find(id);
  if (found == filling_.drawing.constructions.end()) return nullptr;
  used_constructions_.insert(id);
  return &found->second;
}

LibraryType Library::slab(std::string_view id, bool is_roof) {
  const auto [known, is_new] = slabs_.try_emplace({id, is_roof});
  if (is_new) known->second = make_slab(construction(id), id, is_roof);
  return known->second;
}

LibraryType Library::make_slab(const DrawnConstruction* drawn, std::string_view id, bool is_roof) {
  const auto object = is_roof ? filling_.project.NewRoof() : filling_.project.NewWall();
  const std::string key = "construction " + std::string(id);
  const auto before = filling_.begin(*object, key);
  if (!drawn || (drawn->layers.empty() && !drawn->u_value)) {
    const std::string what = "the construction \"" + std::string(id) + "\"";
    filling_.tally.note(drawn        ? what + " has neither layers nor a U-value; its surfaces have the default"
                        : id.empty() ? "surfaces name no construction; they have the default"
                                     : what + " of surfaces is not in the file; they have the default");
    if (before.is_new)
      object->Name = filling_.name_for(*object, is_roof ? "Roof not in the file" : "Wall not in the file", id, 255);
    return {filling_.end(*object, key, before, [&] { object->Save(); }), object->layers_u_value()};
  }
  const double inside = drawn->inside_film.value_or(kInsideFilm), outside = drawn->outside_film.value_or(kOutsideFilm);
  std::vector<DrawnLayer> layers = drawn->layers;
  if (layers.empty()) layers = without_mass(std::max(1 / *drawn->u_value - inside - outside, 0.01));
  if (join_to_fit(layers))
    filling_.tally.note(filling_.document, drawn->element,
                        "it has more than 8 layers; neighbours with the least heat capacity are joined");
  object->Name = filling_.name_for(*object, drawn->name, id, 255, drawn->element);
  if (drawn->absorptivity) object->Absorptivity = static_cast<float>(*drawn->absorptivity);
  object->InsideSurfaceResistance = static_cast<float>(inside);
  object->OutsideSurfaceResistance = static_cast<float>(outside);
  set_film(object->layer(1), "Outside surface resistance", outside);
  set_film(object->layer(CA_ConstructionAssly::kLayers), "Inside surface resistance", inside);
  set_layers(*object, layers);
  const double u_value = object->layers_u_value();
  const bool is_without_films =
      drawn->u_value && std::abs(1 / *drawn->u_value - drawn->resistance()) < 0.02 / *drawn->u_value;
  if (drawn->u_value && !is_without_films && std::abs(*drawn->u_value - u_value) > kToldDifference * u_value)
    filling_.tally.note(filling_.document, drawn->element,
                        "its U-value differs by more than 10 % from that of its layers with air films, which is taken");
  const int16_t index = filling_.end(*object, key, before, [&] {
    CA_ReturnCodes code = CA_ReturnCodes::CA_ERR_NOERR;
    object->Save(code);
    if (code == CA_ReturnCodes::CA_ERR_NOERR) return;
    filling_.tally.note(filling_.document, drawn->element,
                        "its layers have no transfer functions; it is taken as a resistance without mass");
    set_layers(*object, without_mass(drawn->resistance()));
    object->Save();
  });
  return {index, u_value};
}

double Library::u_value(std::string_view id, double films) const {
  const DrawnConstruction* const drawn = construction(id);
  if (!drawn) {
    filling_.tally.note("the construction \"" + std::string(id) +
                        "\" of floors, partitions or doors is not in the file; their U-value is 0");
    return 0;
  }
  const double resistance = drawn->resistance();
  if (!drawn->u_value) return resistance > 0 ? 1 / (resistance + films) : 0;
  const bool is_without_films = std::abs(1 / *drawn->u_value - resistance) < 0.02 / *drawn->u_value;
  return is_without_films ? 1 / (resistance + films) : *drawn->u_value;
}

}  // namespace tarn
