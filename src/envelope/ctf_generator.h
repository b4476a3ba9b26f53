// The generator of conduction transfer functions as constructions use it: a table of used layers, filled one by one.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "envelope/transfer_functions.h"

namespace tarn {

class CTFCG {
 public:
  /// Puts a layer into the table: in place of an existing one, or right after the last; any other number is ignored.
  /// Thickness in ft, conductivity in Btu/(hr.ft.F), density in lb/ft3, specific heat in Btu/(lb.F), resistance in
  /// hr.ft2.F/Btu. A layer with thickness, conductivity, density and specific heat above 0 has thermal mass, and the
  /// resistance thickness / conductivity; another has its ThermalResistance, or that quotient where it is 0. `slot` is
  /// the number that a person knows the layer by, in reasons; its place in the table where it is 0.
  void SetLayer(int16_t nLayer, bool bUsed, float Conductivity, float Density, float SpecificHeat,
                float ThermalResistance, float Thickness, float Weight, int16_t slot = 0);
  /// The table's upper bound; it starts with one empty layer.
  int16_t LayerCount() const { return static_cast<int16_t>(layers_.size()); }
  /// False where the table has no transfer functions; `failure` tells why.
  bool Generate(TransferFunctions& out, const std::function<void()>& yield = {});
  const std::string& failure() const { return failure_; }
  /// Of other terms for the same layers. Error where the table has no transfer functions.
  Accuracy accuracy_of(const Series& b, const Series& d) const;
  /// The used layers as the calculation has them. Error `InvalidCall`, with the reason, for a table that has none.
  std::vector<SlabLayer> slab(const std::function<void()>& yield = {}) const;
  /// The slots of the layers that slow the response most, the first of them first: at least half of its delay.
  std::vector<int16_t> slowest_layers() const;

 private:
  struct Layer {
    float conductivity = 0, density = 0, specific_heat = 0, resistance = 0, thickness = 0;
    bool used = false;
    int16_t slot = 0;
  };
  static SlabLayer slab_layer(const Layer& layer);

  std::vector<Layer> layers_{1};
  std::string failure_;
};

}  // namespace tarn
