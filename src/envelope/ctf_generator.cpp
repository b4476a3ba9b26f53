#include "envelope/ctf_generator.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "base/error.h"

namespace tarn {
namespace {

/// By way of decimal text of 7 digits, so that a value entered as 0.1 is the double next to 0.1.
double decimal(float value) {
  char text[32];
  const auto end = std::to_chars(std::begin(text), std::end(text), value, std::chars_format::general, 7).ptr;
  double out = 0;
  std::from_chars(text, end, out);
  return out;
}

}  // namespace

void CTFCG::SetLayer(int16_t nLayer, bool bUsed, float Conductivity, float Density, float SpecificHeat,
                     float ThermalResistance, float Thickness, float /*Weight*/) {
  if (nLayer < 1 || nLayer > LayerCount() + 1) return;
  if (nLayer > LayerCount()) layers_.emplace_back();
  layers_[static_cast<size_t>(nLayer) - 1] = {Conductivity, Density, SpecificHeat, ThermalResistance, Thickness, bUsed};
}

SlabLayer CTFCG::slab_layer(const Layer& layer) {
  const double thickness = decimal(layer.thickness);
  const double conductivity = decimal(layer.conductivity);
  const double capacity = thickness * decimal(layer.density) * decimal(layer.specific_heat);
  const double resistance = decimal(layer.resistance);
  const bool conducts = thickness > 0 && conductivity > 0;
  if (conducts && layer.density > 0 && layer.specific_heat > 0) return {thickness / conductivity, capacity};
  if (resistance == 0 && conducts) return {thickness / conductivity, 0};
  return {resistance, 0};
}

SlabResponse CTFCG::response(const std::function<void()>& yield) const {
  std::vector<SlabLayer> slab;
  for (size_t i = 0; i < layers_.size(); ++i) {
    yield();
    const Layer& layer = layers_[i];
    if (!layer.used) continue;
    if (layer.thickness > 0 && layer.resistance == 0 && !(layer.conductivity > 0)) {
      fail(ErrorNumber::InvalidCall,
           "used layer " + std::to_string(i + 1) + " has a thickness, but neither conductivity nor thermal resistance");
    }
    slab.push_back(slab_layer(layer));
  }
  if (slab.empty()) fail(ErrorNumber::InvalidCall, "no layer is used");
  return slab_response(slab);
}

bool CTFCG::Generate(TransferFunctions& out, const std::function<void()>& yield) {
  try {
    out = transfer_functions(response(yield));
    failure_.clear();
    return true;
  } catch (const Error& error) {
    failure_ = error.description();
    return false;
  }
}

double CTFCG::error_of(const TransferFunctions::Series& cross, const TransferFunctions::Series& denominator) const {
  return response_error(response([] {}), cross, denominator);
}

}  // namespace tarn
