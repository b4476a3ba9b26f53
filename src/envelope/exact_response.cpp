#include "envelope/exact_response.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tarn {
namespace {

using Points = std::vector<ContourPoint>;

using std::numbers::pi;
constexpr size_t kDay = 24;            // hr
constexpr double kTimeConstants = 12;  // that a step is followed
constexpr double kShortest = 40;       // hr that a step is followed, at least
constexpr double kLongest = 4e6;       // hr that a step is followed, at most
constexpr double kSettled = 20;        // time constants until a response is over, alike leaves included
constexpr double kQuick = 168;         // hr: a response that is over by then is known at every hour,
constexpr int kFirstHours = 48;        // a slower one at these, then at hours
constexpr double kSpacing = 1.08;      // that grow by this factor
constexpr double kSpan = 12;           // of the times of one contour
constexpr double kPoints = 2.5;        // by the square root of eight spans and 1: 2e-7
constexpr double kEarlyPoints = 3.2;   // of the first hours, for numerators that all but cancel: 2e-9
constexpr double kUnseen = 1e-7;       // of U: aliases below this are left out
constexpr double kVanishing = 0.01;    // of a day's swing: a peak below it counts as this

Complex turn(double angle) { return {std::cos(angle), std::sin(angle)}; }

/// By harmonic 1 to 12, and hour of a day.
const std::array<std::array<Complex, kDay>, ExactResponse::kHarmonics> kTurns = [] {
  std::array<std::array<Complex, kDay>, ExactResponse::kHarmonics> all;
  for (size_t k = 0; k < all.size(); ++k) {
    for (size_t hour = 0; hour < kDay; ++hour)
      all[k][hour] = turn(2 * pi * static_cast<double>((k + 1) * hour % kDay) / kDay);
  }
  return all;
}();

/// The harmonics of a day of hourly values, times 24.
std::array<Complex, ExactResponse::kHarmonics> harmonics_of(const std::array<double, kDay>& values) {
  std::array<Complex, ExactResponse::kHarmonics> out;
  for (size_t k = 0; k < out.size(); ++k) {
    double real = 0, imaginary = 0;
    for (size_t hour = 0; hour < kDay; ++hour) {
      real += values[hour] * kTurns[k][hour].real();
      imaginary -= values[hour] * kTurns[k][hour].imag();
    }
    out[k] = {real, imaginary};
  }
  return out;
}

/// A repeated day of hourly temperatures, by its harmonics.
struct RepeatedDay {
  std::array<Complex, ExactResponse::kHarmonics> harmonics;  // 1 to 12
  double swing;

  explicit RepeatedDay(const std::array<double, kDay>& temperatures) : harmonics(harmonics_of(temperatures)) {
    const auto [least, most] = std::minmax_element(temperatures.begin(), temperatures.end());
    swing = *most - *least;
    for (Complex& harmonic : harmonics) harmonic *= (&harmonic == &harmonics.back() ? 1.0 : 2.0) / kDay;
  }

  /// The largest flux about the mean behind transfers for the harmonics 1 to 12.
  double peak(const std::array<Complex, ExactResponse::kHarmonics>& transfers) const {
    std::array<double, kDay> flux{};
    for (size_t k = 0; k < harmonics.size(); ++k) {
      const Complex of_k = times(transfers[k], harmonics[k]);
      for (size_t hour = 0; hour < kDay; ++hour)
        flux[hour] += of_k.real() * kTurns[k][hour].real() - of_k.imag() * kTurns[k][hour].imag();
    }
    double largest = 0;
    for (const double each : flux) largest = std::max(largest, std::abs(each));
    return largest;
  }
};

/// Hourly temperatures outside over that inside: of a wall in the sun, and a half sine of 12 hours.
const std::array<RepeatedDay, 2>& days() {
  static const std::array<RepeatedDay, 2> all = [] {
    std::array<double, kDay> half_sine{};
    for (size_t hour = 6; hour < 18; ++hour) half_sine[hour] = std::sin(pi * (static_cast<double>(hour) - 6) / 12);
    return std::array{RepeatedDay({0,  0.3,  1.3,  2.9,  5,  7.4,  10, 20.4, 30, 38.3, 44.6, 48.6,
                                   50, 48.6, 44.6, 38.3, 30, 20.4, 10, 7.4,  5,  2.9,  1.3,  0.3}),
                      RepeatedDay(half_sine)};
  }();
  return all;
}

using Factors = std::vector<Complex>;  // by point of a contour

/// A function of time by its transform at the points of a contour.
class Inverse {
 public:
  template <typename F>
  Inverse(const Points& points, F transform) {
    for (Factors* each : {&rates_, &transform_, &of_an_hour_}) each->reserve(points.size());
    for (const ContourPoint& at : points) {
      rates_.push_back(at.s);
      of_an_hour_.push_back(exponential(at.s));
      transform_.push_back(times(at.weight, transform(at.s, of_an_hour_.back())));
    }
  }
  /// At hours that rise; one after the other they cost no exponentials.
  double at(int hour) {
    if (hour == hour_ + 1) {
      for (size_t k = 0; k < now_.size(); ++k) now_[k] = times(now_[k], of_an_hour_[k]);
    } else {
      now_.clear();
      for (const Complex& rate : rates_) now_.push_back(exponential(rate * static_cast<double>(hour)));
    }
    hour_ = hour;
    double sum = 0;
    for (size_t k = 0; k < now_.size(); ++k)
      sum += transform_[k].real() * now_[k].real() - transform_[k].imag() * now_[k].imag();
    return sum;
  }

 private:
  Factors rates_, transform_, of_an_hour_, now_;
  int hour_ = -1;
};

/// Points for times up to so many times the first.
Points contour_over(double first, double ratio, double points = kPoints) {
  return contour(first, ratio, static_cast<int>(std::ceil(points * std::sqrt(8 * ratio + 1))));
}

Complex over_square(Complex s) {
  const Complex inverse = std::conj(s) / std::norm(s);
  return times(inverse, inverse);
}

}  // namespace

Complex hourly_transfer(const Transmission& slab, double frequency) {
  const double sine = 4 * std::pow(std::sin(frequency / 2), 2);
  const auto alias = [&](double at) { return slab.transfer({0, at}) * (sine / (at * at)); };
  Complex sum = alias(frequency);
  for (int turns = 1; turns < 1000; ++turns) {
    const Complex pair = alias(2 * pi * turns + frequency) + std::conj(alias(2 * pi * turns - frequency));
    sum += pair;
    if (std::abs(pair) < kUnseen * slab.u_value()) break;
  }
  return sum;
}

ExactResponse::ExactResponse(const Transmission& slab, double slowest_root) : u_value_(slab.u_value()) {
  const double time_constant = slowest_root > 0 ? 1 / slowest_root : 0;
  const bool quick = kSettled * time_constant <= kQuick;
  find_steps(slab, std::clamp((quick ? kSettled : kTimeConstants) * time_constant, kShortest, kLongest), quick);
  find_days(slab, quick);
}

/// A step that rises for an hour is a ramp less the ramp an hour later; hour 0 is in the first alone, whose double pole
/// asks for a contour of its own.
void ExactResponse::find_steps(const Transmission& slab, double last_hour, bool every_hour) {
  const int last = static_cast<int>(std::ceil(last_hour));
  const auto ramp = [&](Complex s, Complex) { return times(slab.transfer(s), over_square(s)); };
  const auto step = [&](Complex s, Complex hour) { return times(ramp(s, hour), hour - 1.0); };
  early_steps_ = {Inverse(contour_over(1, 1, kEarlyPoints), ramp).at(1)};
  Inverse early(contour_over(1, kTerms, kEarlyPoints), step);
  for (int hour = 1; hour <= static_cast<int>(kTerms); ++hour) early_steps_.push_back(early.at(hour));

  hours_.reserve(static_cast<size_t>(kQuick) + 1);
  for (int hour = 0; hour < last;
       hour = every_hour || hour < kFirstHours ? hour + 1 : static_cast<int>(hour * kSpacing))
    hours_.push_back(hour);
  hours_.push_back(last);
  step_ = early_steps_;
  step_.reserve(hours_.size());
  for (double from = kTerms; step_.size() < hours_.size(); from *= kSpan) {
    const double to = std::min(from * kSpan, last_hour + 1);
    Inverse late(contour_over(from, to / from), step);
    while (step_.size() < hours_.size() && hours_[step_.size()] <= to) step_.push_back(late.at(hours_[step_.size()]));
  }
}

/// Of a quick slab the pulse response is summed, day upon day. Of a slow one the harmonics are taken, whose aliases are
/// next to nothing.
void ExactResponse::find_days(const Transmission& slab, bool quick) {
  if (!quick) {
    for (size_t k = 0; k < daily_.size(); ++k)
      daily_[k] = hourly_transfer(slab, 2 * pi * static_cast<double>(k + 1) / kDay);
  } else {
    std::array<double, kDay> folded{};
    for (size_t hour = 0; hour < step_.size(); ++hour)
      folded[hour % kDay] += step_[hour] - (hour > 0 ? step_[hour - 1] : 0);
    daily_ = harmonics_of(folded);
  }
  for (size_t day = 0; day < peaks_.size(); ++day)
    peaks_[day] = std::max(days()[day].peak(daily_), kVanishing * u_value_ * days()[day].swing);
}

double ExactResponse::weight_of_day(int harmonic) const {
  double weight = 0;
  for (size_t day = 0; day < peaks_.size(); ++day)
    weight = std::max(weight, std::abs(days()[day].harmonics[static_cast<size_t>(harmonic) - 1]) / peaks_[day]);
  return weight;
}

/// In reals of 8 bytes, or of more where the sum of d is too small for what their rounding leaves.
template <typename Real>
double ExactResponse::step_error(const Series& b, const Series& d) const {
  const int last = hours_.back();
  std::vector<Real> flux(static_cast<size_t>(last) + kTerms);  // from hour -11 on
  Real input = 0;                                              // sum of the terms of b that the step has reached
  size_t order = kTerms - 1;
  while (order > 0 && d[order] == 0) --order;
  double worst = 0;
  size_t known = 0;
  for (int hour = 0; hour <= last; ++hour) {
    if (hour < static_cast<int>(kTerms)) input += Real{b[static_cast<size_t>(hour)]};
    Real* const now = flux.data() + hour + kTerms - 1;
    Real past = 0;  // the newest last: it is what the sum must wait for
    for (size_t i = order; i > 0; --i) past += Real{d[i]} * now[-static_cast<ptrdiff_t>(i)];
    *now = input - past;
    if (hours_[known] == hour) worst = std::max(worst, std::abs(static_cast<double>(*now) - step_[known++]) / u_value_);
  }
  return std::isfinite(flux.back()) ? worst : HUGE_VAL;
}

Accuracy ExactResponse::accuracy(const Series& b, const Series& d) const {
  const bool quick = hours_.size() == static_cast<size_t>(hours_.back()) + 1;
  Accuracy out{quick ? step_error<double>(b, d) : step_error<long double>(b, d), 0};
  if (out.step == HUGE_VAL) return {HUGE_VAL, HUGE_VAL};

  std::array<Complex, kHarmonics> error;
  for (size_t k = 0; k < error.size(); ++k) {
    const Complex back = std::conj(kTurns[k][1]);
    Complex over = 0, under = 0;
    for (size_t i = kTerms; i-- > 0;) {
      over = over * back + b[i];
      under = under * back + d[i];
    }
    error[k] = over / under - daily_[k];
  }
  for (size_t day = 0; day < peaks_.size(); ++day) out.day = std::max(out.day, days()[day].peak(error) / peaks_[day]);
  return out;
}

}  // namespace tarn
