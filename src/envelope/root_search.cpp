#include "envelope/root_search.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <string>

#include "tarn/base/error.h"

namespace tarn {
namespace {

using std::numbers::pi;
constexpr double kNarrowest = 1e-14;  // of the bracket that a root is refined to; relative for roots below 1

}  // namespace

/// The march of temperature and flux from the inside face (0, 1) outward. A layer of n half waves turns the
/// temperature's sign n times, or once more where the signs at its faces say so.
RootSearch::Point RootSearch::at(double beta) {
  ++evaluations_;
  const double root_of_beta = std::sqrt(beta);
  double t = 0, q = 1;
  bool positive = true;
  int zeros = 0;
  for (size_t i = layers_.size(); i-- > 0;) {
    const double r = layers_[i].resistance, c = layers_[i].capacity;
    int half_waves = 0;
    const double t_before = t;
    if (c > 0) {
      const double x = root_of_beta * std::sqrt(r * c);
      const double cosine = std::cos(x), sine = std::sin(x);
      t = cosine * t_before + r / x * sine * q;
      q = cosine * q - x / r * sine * t_before;
      half_waves = static_cast<int>(x / pi);
    } else {
      t += r * q;
    }
    const bool positive_after = t != 0 ? t > 0 : q > 0;
    zeros += half_waves + (half_waves % 2 != (positive_after != positive ? 1 : 0) ? 1 : 0);
    positive = positive_after;
  }
  return {beta, t, zeros};
}

int RootSearch::count(double beta) { return at(beta).count; }

/// Regula falsi in Anderson and Bjorck's form, which keeps a sign change between its ends; ends with a bracket narrower
/// than `kNarrowest`, or of neighbouring doubles.
double RootSearch::refined(Point low, Point high) {
  double f_low = low.b, f_high = high.b;
  const double narrowest = kNarrowest * std::min(1.0, high.beta);
  int last = 0;  // the end that the last step replaced
  for (int step = 1;; ++step) {
    const double width = high.beta - low.beta;
    const double spacing = std::nextafter(high.beta, 2 * high.beta) - high.beta;
    if (width < narrowest || width <= spacing) return low.beta + width / 2;
    // Close to an end the step goes just beyond the root, to bring the far end near as well.
    const double least = std::min(std::max(0.45 * narrowest, spacing), width / 2);
    const double falsi = low.beta - f_low * width / (f_high - f_low);
    const Point middle =
        at(step % 12 == 0 ? low.beta + width / 2 : std::clamp(falsi, low.beta + least, high.beta - least));
    if (middle.b == 0) return middle.beta;
    const int side = (middle.b > 0) == (low.b > 0) ? -1 : 1;
    double& f_end = side < 0 ? f_low : f_high;
    double& f_other = side < 0 ? f_high : f_low;
    if (side == last) {
      const double kept = 1 - middle.b / f_end;
      f_other *= kept > 0 ? kept : 0.5;
    }
    (side < 0 ? low : high) = middle;
    f_end = middle.b;
    last = side;
  }
}

std::vector<double> RootSearch::roots_below(double bound) {
  std::vector<double> roots;
  std::vector<Point> pending{at(bound)};
  Point low{0, 0, 0};  // steady state: the temperature is the whole resistance, without a zero
  for (const SlabLayer& layer : layers_) low.b += layer.resistance;
  while (!pending.empty()) {
    const Point high = pending.back();
    const int inside = high.count - low.count;
    const double middle = std::pow((std::sqrt(low.beta) + std::sqrt(high.beta)) / 2, 2);
    if (inside > 1 && middle > low.beta && middle < high.beta) {
      pending.push_back(at(middle));
      continue;
    }
    if (inside > 0) roots.insert(roots.end(), static_cast<size_t>(inside), refined(low, high));
    low = high;
    pending.pop_back();
  }
  return roots;
}

namespace {

[[noreturn]] void refuse_heavy(std::span<const SlabLayer> layers, double roots) {
  const auto heaviest = std::max_element(layers.begin(), layers.end(), [](const SlabLayer& a, const SlabLayer& b) {
    return a.resistance * a.capacity < b.resistance * b.capacity;
  });
  fail(ErrorNumber::InvalidCall,
       "the layers are too heavy: their response has " +
           (roots < 1e6 ? std::to_string(static_cast<int>(roots)) : std::string("more than a million")) +
           " roots, and at most " + std::to_string(kMostRoots) + " can be; make layer " +
           std::to_string(heaviest->slot) + ", the heaviest, thinner");
}

}  // namespace

void check_slab(std::span<const SlabLayer> layers) {
  double resistance = 0, half_waves = 0;  // as many roots at least as half waves, but for one a layer
  const double bound = -std::log(kSmallestFactor);
  for (const auto& [r, c, slot] : layers) {
    resistance += r;
    half_waves += std::sqrt(bound * r * c) / pi;
  }
  if (!(resistance > 0) || 1 / resistance > static_cast<double>(std::numeric_limits<float>::max()))
    fail(ErrorNumber::InvalidCall, "the layers have no thermal resistance");
  const double count = half_waves < 1e6 ? RootSearch(layers).count(bound) : half_waves;
  if (!(count <= kMostRoots)) refuse_heavy(layers, count);
}

}  // namespace tarn
