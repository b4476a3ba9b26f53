#include "envelope/transmission.h"

#include <numbers>

namespace tarn {
namespace {

using std::numbers::pi;

/// Temperature and flux, which a layer's matrix takes from its inside to its outside.
struct State {
  Complex temperature, flux;
};

}  // namespace

Transmission::Transmission(std::span<const SlabLayer> layers) {
  double resistance = 0;
  for (size_t i = layers.size(); i-- > 0;) {
    resistance += layers[i].resistance;
    layers_.push_back({layers[i].resistance, std::sqrt(layers[i].resistance * layers[i].capacity)});
  }
  u_value_ = 1 / resistance;
}

namespace {

/// What the layers share at one s.
struct Frequency {
  explicit Frequency(Complex s) : root(std::sqrt(s)), over_root(std::conj(root) / std::norm(root)) {}
  Complex root, over_root;
};

/// A layer's matrix over e^x, x^2 = s R C: cosh x, R sinh x / x and x / R sinh x.
struct ScaledLayer {
  Complex cosh, upper, lower;
  ScaledLayer(const Frequency& at, double r, double root_of_time) {
    const Complex x = at.root * root_of_time;
    const Complex down = exponential(-2.0 * x);
    cosh = 0.5 * (1.0 + down);
    // Near 0 the difference would lose digits.
    const Complex sinh =
        std::norm(x) < 1e-6 ? times(times(x, 1.0 + times(x, x) / 6.0), exponential(-x)) : 0.5 * (1.0 - down);
    upper = times(at.over_root, sinh) * (r / root_of_time);
    lower = times(x, sinh) / r;
  }
  void take(State& v) const {
    v = {times(cosh, v.temperature) + times(upper, v.flux), times(lower, v.temperature) + times(cosh, v.flux)};
  }
};

}  // namespace

Complex Transmission::transfer(Complex s) const {
  const Frequency at(s);
  State inside{0, 1};
  double exponent = 0;  // of the scale, over the root of s
  for (const Layer& layer : layers_) {
    if (layer.root_of_time == 0) {
      inside.temperature += layer.resistance * inside.flux;
      continue;
    }
    ScaledLayer(at, layer.resistance, layer.root_of_time).take(inside);
    exponent += layer.root_of_time;
  }
  return exponential(-at.root * exponent) / inside.temperature;
}

std::vector<Complex> Transmission::temperatures(Complex s) const {
  const Frequency at(s);
  State inside{0, 1};
  std::vector<Complex> found{0}, exponents{0};  // the states are scaled
  for (const Layer& layer : layers_) {
    if (layer.root_of_time == 0)
      inside.temperature += layer.resistance * inside.flux;
    else
      ScaledLayer(at, layer.resistance, layer.root_of_time).take(inside);
    found.push_back(inside.temperature);
    exponents.push_back(exponents.back() + at.root * layer.root_of_time);
  }
  for (size_t i = 0; i < found.size(); ++i)
    found[i] *= exponential(exponents[i] - exponents.back()) / inside.temperature;
  return {found.rbegin(), found.rend()};
}

std::vector<ContourPoint> contour(double first, double ratio, int points) {
  const double root = std::sqrt(8 * ratio + 1);
  const double step = root / points;
  const double mu = pi * points / (4 * root * first * ratio);
  std::vector<ContourPoint> out;
  out.reserve(static_cast<size_t>(points));
  for (int k = 0; k < points; ++k) {
    const Complex along(1, (k + 0.5) * step);
    out.push_back({mu * along * along, 2 * mu * step / pi * along});
  }
  return out;
}

}  // namespace tarn
