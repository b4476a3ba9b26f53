#include "envelope/ctf_generator.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

#include "tarn/base/error.h"

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
                     float ThermalResistance, float Thickness, float /*Weight*/, int16_t slot) {
  if (nLayer < 1 || nLayer > LayerCount() + 1) return;
  if (nLayer > LayerCount()) layers_.emplace_back();
  layers_[static_cast<size_t>(nLayer) - 1] = {
      Conductivity, Density, SpecificHeat, ThermalResistance, Thickness, bUsed, slot > 0 ? slot : nLayer};
}

SlabLayer CTFCG::slab_layer(const Layer& layer) {
  const auto refuse = [&](const char* why) {
    fail(ErrorNumber::InvalidCall, "layer " + std::to_string(layer.slot) + " has " + why);
  };
  for (const float value :
       {layer.conductivity, layer.density, layer.specific_heat, layer.resistance, layer.thickness}) {
    if (!std::isfinite(value)) refuse("a value that is infinite or no number");
  }
  const double thickness = decimal(layer.thickness);
  const double conductivity = decimal(layer.conductivity);
  const double resistance = decimal(layer.resistance);
  if (thickness > 0 && conductivity > 0) {
    const bool has_mass = layer.density > 0 && layer.specific_heat > 0;
    if (has_mass) return {thickness / conductivity, thickness * decimal(layer.density) * decimal(layer.specific_heat)};
    if (resistance == 0) return {thickness / conductivity, 0};
  } else if (thickness > 0 && resistance == 0) {
    refuse("a thickness, but neither conductivity nor thermal resistance");
  }
  if (resistance < 0) refuse("a negative thermal resistance");
  return {resistance, 0};
}

std::vector<SlabLayer> CTFCG::slab(const std::function<void()>& yield) const {
  std::vector<SlabLayer> out;
  for (const Layer& layer : layers_) {
    if (yield) yield();
    if (!layer.used) continue;
    out.push_back(slab_layer(layer));
    out.back().slot = layer.slot;
  }
  if (out.empty()) fail(ErrorNumber::InvalidCall, "no layer is used");
  return out;
}

bool CTFCG::Generate(TransferFunctions& out, const std::function<void()>& yield) {
  try {
    out = transfer_functions(slab(yield));
    failure_.clear();
    return true;
  } catch (const Error& error) {
    failure_ = error.description();
    return false;
  }
}

Accuracy CTFCG::accuracy_of(const Series& b, const Series& d) const { return response_accuracy(slab({}), b, d); }

std::vector<int16_t> CTFCG::slowest_layers() const {
  struct Share {
    int16_t slot;
    SlabLayer layer;
    double delay;
  };
  std::vector<Share> shares;
  double inside = 0;  // the resistance from there to the inside
  for (const Layer& each : layers_) {
    if (each.used) inside += shares.emplace_back(Share{each.slot, slab_layer(each), 0}).layer.resistance;
  }
  // A heat capacity between resistances R1 and R2 delays the response by C R1 R2 / (R1 + R2); over a layer the mean.
  double outside = 0, total = 0;
  for (auto& [slot, layer, delay] : shares) {
    const double r = layer.resistance, c = layer.capacity;
    inside -= r;
    total += delay = c * (outside * inside + (outside + inside) * r / 2 + r * r / 6);
    outside += r;
  }
  std::stable_sort(shares.begin(), shares.end(), [](const Share& a, const Share& b) { return a.delay > b.delay; });
  std::vector<int16_t> slots;
  double found = 0;
  for (size_t i = 0; i < shares.size() && found < total / 2; found += shares[i++].delay)
    slots.push_back(shares[i].slot);
  std::sort(slots.begin(), slots.end());
  return slots;
}

}  // namespace tarn
