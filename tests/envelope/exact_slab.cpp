#include "envelope/exact_slab.h"

#include <algorithm>
#include <cmath>

namespace tarn::test {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kForgotten = 25;  // 1/hr: roots above leave e^-25 after the first hour

/// Temperature and flux marched through the slab at s = -beta, with derivatives with respect to s.
struct March {
  Digits b = 0, d = 1, b_slope = 0, d_slope = 0;
};

March march(const Slab& slab, const Digits& beta) {
  March m;
  for (size_t i = slab.size(); i-- > 0;) {
    const Digits r = slab[i].resistance, c = slab[i].capacity;
    if (slab[i].capacity == 0) {
      m.b += r * m.d;
      m.b_slope += r * m.d_slope;
      continue;
    }
    Digits cosine = 1, sinc = 1, slope = Digits(-1) / 3;  // sin x / x, and (cos x - sin x / x) / x^2, at 0
    if (const Digits square = beta * r * c; square != 0) {
      const Digits x = sqrt(square);
      cosine = cos(x);
      sinc = sin(x) / x;
      slope = (cosine - sinc) / square;
    }
    const Digits cosine_slope = r * c * sinc / 2, upper_slope = -r * r * c * slope / 2,
                 lower_slope = c * (cosine + sinc) / 2;
    const Digits upper = r * sinc, lower = -beta * c * sinc;
    m = {cosine * m.b + upper * m.d, cosine * m.d + lower * m.b,
         cosine * m.b_slope + upper * m.d_slope + cosine_slope * m.b + upper_slope * m.d,
         cosine * m.d_slope + lower * m.b_slope + cosine_slope * m.d + lower_slope * m.b};
  }
  return m;
}

/// For each root below the bound a place just below it.
void places(const Slab& slab, double low, int below_low, double high, int below_high, std::vector<double>& found) {
  constexpr double kNarrow = 1e-11;
  if (below_low == below_high) return;
  if (high - low < kNarrow * high) {
    found.insert(found.end(), static_cast<size_t>(below_high - below_low), low - kNarrow * low);
    return;
  }
  const double middle = low == 0 ? high / 4 : std::sqrt(low) * std::sqrt(high);
  const int below = roots_counted(slab, middle);
  places(slab, low, below_low, middle, below, found);
  places(slab, middle, below, high, below_high, found);
}

}  // namespace

/// In slices of less than a third of a half wave the temperature has one zero where it changes its sign, else none.
int roots_counted(const Slab& slab, double bound) {
  double temperature = 0, flux = 1;
  bool positive = true;
  int zeros = 0;
  for (auto layer = slab.rbegin(); layer != slab.rend(); ++layer) {
    const double wave = std::sqrt(bound * layer->resistance * layer->capacity);
    const int slices = 1 + static_cast<int>(wave);
    const double x = wave / slices, cosine = std::cos(x), sine = std::sin(x);
    const double upper = wave > 0 ? layer->resistance / wave * sine : layer->resistance,
                 lower = wave > 0 ? -wave / layer->resistance * sine : 0;
    for (int i = 0; i < slices; ++i) {
      const double before = temperature;
      temperature = cosine * before + upper * flux;
      flux = cosine * flux + lower * before;
      if ((temperature > 0) == positive) continue;
      positive = !positive;
      ++zeros;
    }
  }
  return zeros;
}

/// Newton's method from below, away from every root that is found already: it climbs to the next, however close.
ExactSlab::ExactSlab(const Slab& slab) {
  const March steady = march(slab, 0);
  u_ = 1 / steady.b;
  offset_ = -steady.b_slope * u_ * u_;
  std::vector<double> starts;
  places(slab, 0, 0, kForgotten, roots_counted(slab, kForgotten), starts);
  for (const double start : starts) {
    Digits root = start, moved = 1;
    for (int i = 0; i < 500 && abs(moved) > root * Digits("1e-45"); ++i) {
      const March m = march(slab, root);
      Digits others = 0;
      for (const Digits& found : roots_) others += 1 / (root - found);
      moved = m.b / (m.b_slope + m.b * others);  // the slope with respect to s = -beta
      root += moved;
    }
    roots_.push_back(root);
  }
  std::sort(roots_.begin(), roots_.end());
  for (const Digits& root : roots_) {
    weights_.push_back(1 / (root * root * march(slab, root).b_slope));
    factors_.push_back(exp(-root));
  }
}

double ExactSlab::step(int hour) const {
  Digits sum = u_;
  if (hour == 0) sum += offset_;
  for (size_t k = 0; k < roots_.size(); ++k) {
    if (hour * static_cast<double>(roots_[k]) > 60) break;
    const Digits power = hour == 0 ? Digits(1) : Digits(exp(-roots_[k] * hour));
    sum += weights_[k] * power * (hour == 0 ? factors_[k] : factors_[k] - 1);
  }
  return static_cast<double>(sum);
}

std::complex<double> ExactSlab::daily(int k) const {
  const double angle = -2 * kPi * k / 24;
  const Digits re = std::cos(angle), im = std::sin(angle);  // of 1 / z
  const Digits re2 = re * re - im * im, im2 = 2 * re * im;
  Digits first = u_ + offset_, second = -offset_, real = 0, imaginary = 0;
  for (size_t i = 0; i < roots_.size(); ++i) {
    const Digits& q = factors_[i];
    first += weights_[i] * q;
    second += weights_[i] * q * (q - 2);
    const Digits below = 1 - q * re, besides = -q * im, square = below * below + besides * besides;
    const Digits scale = weights_[i] * q * (1 - q) * (1 - q) / square;
    real += scale * (re2 * below + im2 * besides);
    imaginary += scale * (im2 * below - re2 * besides);
  }
  return {static_cast<double>(first + second * re + real), static_cast<double>(second * im + imaginary)};
}

namespace {

using Day = std::array<double, 24>;
using Transfers = std::array<std::complex<double>, 13>;  // by harmonic; 0 is not used

/// The largest flux through a slab on a repeated day about its mean, by transfers for the harmonics.
double peak(const Transfers& transfers, const Day& day) {
  constexpr double kTurn = 2 * kPi / 24;
  double largest = 0;
  Transfers flux;
  for (int k = 1; k <= 12; ++k) {
    std::complex<double> harmonic = 0;
    for (int n = 0; n < 24; ++n) harmonic += day[n] * std::polar(1.0, -kTurn * k * n);
    flux[k] = transfers[k] * harmonic * (k == 12 ? 1.0 : 2.0) / 24.0;
  }
  for (int n = 0; n < 24; ++n) {
    double sum = 0;
    for (int k = 1; k <= 12; ++k) sum += (flux[k] * std::polar(1.0, kTurn * k * n)).real();
    largest = std::max(largest, std::abs(sum));
  }
  return largest;
}

/// Hour by hour in extended precision, looked at ever more rarely, to 12 times the slowest time constant.
double step_error(const ExactSlab& exact, const std::array<long double, 12>& b, const std::array<long double, 12>& d) {
  const double constants = exact.slowest_root() > 0 ? 12 / exact.slowest_root() : 0;
  const int last = static_cast<int>(std::max(40.0, constants));
  std::vector<long double> flux(static_cast<size_t>(last) + 12);
  long double input = 0;
  double next = 0, worst = 0;
  for (int hour = 0; hour <= last; ++hour) {
    if (hour < 12) input += b[hour];
    long double& now = flux[hour + 11] = input;
    for (int i = 11; i > 0; --i) now -= d[i] * flux[hour + 11 - i];
    if (hour < next) continue;
    worst = std::max(worst, std::abs(static_cast<double>(now) - exact.step(hour)));
    next = hour < 60 ? hour + 1 : hour * 1.06;
  }
  return worst / exact.u_value();
}

double day_error(const ExactSlab& exact, const std::array<long double, 12>& b, const std::array<long double, 12>& d) {
  constexpr Day kSun{0,  0.3,  1.3,  2.9,  5,  7.4,  10, 20.4, 30, 38.3, 44.6, 48.6,
                     50, 48.6, 44.6, 38.3, 30, 20.4, 10, 7.4,  5,  2.9,  1.3,  0.3};
  Day sine{};
  for (int n = 0; n < 12; ++n) sine[n] = std::sin(kPi * n / 12);
  Transfers right, wrong;
  for (int k = 1; k <= 12; ++k) {
    right[k] = exact.daily(k);
    std::complex<long double> over = 0, under = 0;
    for (int i = 0; i < 12; ++i) {
      const auto turn = std::polar(1.0L, -2 * 3.14159265358979323846L * k * i / 24);
      over += b[i] * turn;
      under += d[i] * turn;
    }
    wrong[k] = std::complex<double>(over / under) - right[k];
  }
  double worst = 0;
  for (const Day& day : {kSun, sine}) {
    const double swing = *std::max_element(day.begin(), day.end());
    worst = std::max(worst, peak(wrong, day) / std::max(peak(right, day), 0.01 * exact.u_value() * swing));
  }
  return worst;
}

}  // namespace

Accuracy judged(const ExactSlab& exact, std::span<const double> b, std::span<const double> d) {
  std::array<long double, 12> over{}, under{};
  for (size_t i = 0; i < over.size(); ++i) {
    over[i] = static_cast<float>(b[i]);
    under[i] = static_cast<float>(d[i]);
  }
  return {step_error(exact, over, under), day_error(exact, over, under)};
}

}  // namespace tarn::test
