#include "envelope/transfer_functions.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

#include "tarn/base/error.h"

namespace tarn {
namespace {

using Series = TransferFunctions::Series;
constexpr size_t kTerms = TransferFunctions::kTerms;
constexpr size_t kMostPoles = kTerms - 1;
constexpr double kGoodError = 1e-6;    // fewer poles are better for an engine's own rounding, once this is reached
constexpr double kPoorError = 1e-2;    // at which fewer poles are tried still
constexpr double kOffSum = 8e-6;       // of the stored terms, relative
constexpr double kTimeConstants = 16;  // after which a response is over
constexpr double kShortest = 40, kLongest = 4000;  // hours

double single(double value) { return static_cast<double>(static_cast<float>(value)); }
/// The terms of a heavy slab nearly cancel: their sum may be a billionth of the largest.
double sum(const Series& terms) { return static_cast<double>(std::accumulate(terms.begin(), terms.end(), 0.0L)); }

/// Values at hours 0, 1, ..., zero before.
class Hours {
 public:
  explicit Hours(size_t count) : values_(kTerms + count) {}
  size_t size() const { return values_.size() - kTerms; }
  double& operator[](size_t hour) { return values_[kTerms + hour]; }
  double operator[](size_t hour) const { return values_[kTerms + hour]; }
  /// The value so many hours earlier, at most 12.
  double before(size_t hour, size_t lag) const { return values_[kTerms + hour - lag]; }

 private:
  std::vector<double> values_;
};

/// Flux at hours 0, 1, ... for a triangular pulse of temperature around hour 0: second differences of the ramp
/// response.
Hours pulse_response(const SlabResponse& slab, Face face, size_t hours) {
  const double offset = slab.offset[static_cast<size_t>(face)];
  const std::vector<double>& weights = slab.weights[static_cast<size_t>(face)];
  Hours flux(hours);
  flux[0] = slab.u_value + offset;
  flux[1] = -offset;
  for (size_t k = 0; k < weights.size(); ++k) {
    const double factor = std::exp(-slab.roots[k]);
    flux[0] += weights[k] * factor;
    flux[1] += weights[k] * factor * (factor - 2);
    double term = weights[k] * std::pow(std::expm1(-slab.roots[k]), 2) * factor;
    for (size_t j = 2; j < hours && std::abs(term) > 1e-30; ++j, term *= factor) flux[j] += term;
  }
  return flux;
}

/// The series divided by the denominator: the response of the stored terms to the series as hourly input.
Hours filtered(const Series& denominator, Hours series) {
  for (size_t j = 0; j < series.size(); ++j) {
    double past = 0;  // the newest value last, as it is known last
    for (size_t i = kTerms - 1; i > 0; --i) past += denominator[i] * series.before(j, i);
    series[j] -= past;
  }
  return series;
}

Series poles_product(const SlabResponse& slab, size_t poles) {
  Series product{1};
  for (size_t k = 0; k < poles; ++k) {
    const double factor = std::exp(-slab.roots[k]);
    for (size_t i = k + 1; i > 0; --i) product[i] -= factor * product[i - 1];
  }
  return product;
}

/// A small dense system, the right side in the last column of each row.
struct System {
  /// Elimination with pivoting; the solution takes the right side's place.
  void solve() {
    for (size_t c = 0; c < size; ++c) {
      size_t pivot = c;
      for (size_t r = c + 1; r < size; ++r) {
        if (std::abs(rows[r][c]) > std::abs(rows[pivot][c])) pivot = r;
      }
      std::swap(rows[c], rows[pivot]);
      for (size_t r = 0; r < size; ++r) {
        if (r == c) continue;
        const double part = rows[r][c] / rows[c][c];
        for (size_t i = c; i < kTerms; ++i) rows[r][i] -= part * rows[c][i];
      }
    }
    for (size_t r = 0; r < size; ++r) right(r) /= rows[r][r];
  }
  double& right(size_t row) { return rows[row][kTerms - 1]; }

  size_t size;
  std::array<Series, kMostPoles> rows{};
};

/// The denominator of the slowest poles in 4-byte terms. For a heavy slab their rounding would move the slow poles. The
/// terms of orders above the number of poles are small, so that 4-byte reals are finely spaced there; they take the
/// correction that brings the poles back.
Series denominator_of(const SlabResponse& slab, size_t poles) {
  constexpr double kSlow = 0.7;  // 1/hr: faster poles do not feel the rounding
  const Series exact = poles_product(slab, poles);
  Series rounded{};
  std::transform(exact.begin(), exact.end(), rounded.begin(), single);
  const auto slow =
      static_cast<size_t>(std::count_if(slab.roots.begin(), slab.roots.begin() + static_cast<ptrdiff_t>(poles),
                                        [](double beta) { return beta < kSlow; }));
  const size_t mended = std::min(slow, kMostPoles - poles);
  System mend{mended};
  for (size_t k = 0; k < mended; ++k) {
    const double beta = slab.roots[k];
    for (size_t i = 0; i <= poles; ++i)
      mend.right(k) += (exact[i] - rounded[i]) * std::exp(beta * static_cast<double>(i));
    for (size_t c = 0; c < mended; ++c) mend.rows[k][c] = std::exp(beta * static_cast<double>(poles + 1 + c));
  }
  mend.solve();
  for (size_t c = 0; c < mended; ++c) rounded[poles + 1 + c] = single(mend.right(c));
  return rounded;
}

/// Whether the rounding changed the sum of the denominator, which is the product of 1 - e^-beta, beyond use.
bool ruined(const SlabResponse& slab, size_t poles, const Series& denominator) {
  double product = 1;
  for (size_t k = 0; k < poles; ++k) product *= -std::expm1(-slab.roots[k]);
  return std::abs(sum(denominator) / product - 1) > 0.5;
}

/// A series of 12 terms for one face and a given denominator, with the right sum. The exact numerator never ends: its
/// tail is first put into the last term, then spread so that the squared errors of step and pulse responses are least.
/// Corrections whose sum is 0 are differences of 11 free terms; of a step they make those terms filtered.
class Fit {
 public:
  Fit(const Series& denominator, size_t hours) : denominator_(denominator), impulse_(hours) {
    impulse_[0] = 1;
    impulse_ = filtered(denominator, std::move(impulse_));
    for (size_t j = 0; j < hours; ++j) {
      for (size_t lag = 0; lag <= kTerms; ++lag) correlation_[lag] += impulse_[j] * impulse_.before(j, lag);
    }
  }

  Series series(const Hours& pulse, double u_value) const {
    const size_t hours = pulse.size();
    Hours excess(hours);  // of the cut numerator over the exact one
    Series terms{};
    for (size_t j = 0; j < hours; ++j) {
      double numerator = 0;
      for (size_t i = 0; i < kTerms; ++i) numerator += denominator_[i] * pulse.before(j, i);
      (j < kTerms ? terms[j] : excess[j]) = j < kTerms ? numerator : -numerator;
    }
    const double missing = u_value * sum(denominator_) - sum(terms);
    terms[kTerms - 1] += missing;
    excess[kTerms - 1] = missing;
    const Series corrections = spread(filtered(denominator_, std::move(excess)), pulse, u_value);
    for (size_t i = 0; i < kTerms; ++i) terms[i] += corrections[i] - (i > 0 ? corrections[i - 1] : 0);
    double& smallest =
        *std::min_element(terms.begin(), terms.end(), [](double a, double b) { return std::abs(a) < std::abs(b); });
    smallest += u_value * sum(denominator_) - sum(terms);
    return terms;
  }

 private:
  /// The free terms, the last one 0, against given errors of the pulse response.
  Series spread(const Hours& error, const Hours& pulse, double u_value) const {
    double peak = 0;
    for (size_t j = 0; j < pulse.size(); ++j) peak = std::max(peak, std::abs(pulse[j]));
    const double of_step = 1 / (u_value * u_value);
    const double of_pulse = 1 / (peak * peak);
    constexpr double kRidge = 1e-9;  // keeps the corrections small where they gain nothing
    const auto lagged = [&](size_t lag) {
      const double r = correlation_[lag];
      const double difference = 2 * r - correlation_[lag + 1] - correlation_[lag > 0 ? lag - 1 : 1];
      return of_step * r + of_pulse * difference;
    };
    System normal{kMostPoles};
    double step_error = 0;
    Series wanted{};
    for (size_t j = 0; j < error.size(); ++j) {
      step_error += error[j];
      // The pulse's part is summed by parts: error times slope becomes the error's own slope times the impulse.
      const double next = j + 1 < error.size() ? error[j + 1] : 0;
      const double weight = of_step * step_error + of_pulse * (error[j] - next);
      for (size_t i = 0; i < kTerms; ++i) wanted[i] -= weight * impulse_.before(j, i);
    }
    for (size_t i = 0; i < kMostPoles; ++i) normal.right(i) = wanted[i];
    for (size_t i = 0; i < kMostPoles; ++i) {
      for (size_t k = 0; k < kMostPoles; ++k) normal.rows[i][k] = lagged(i > k ? i - k : k - i);
      normal.rows[i][i] *= 1 + kRidge;
    }
    normal.solve();
    Series terms{};
    for (size_t i = 0; i < kMostPoles; ++i) terms[i] = normal.right(i);
    return terms;
  }

  Series denominator_;
  Hours impulse_;                                 // of 1 / denominator
  std::array<double, kTerms + 1> correlation_{};  // of the impulse response with itself, by lag
};

/// The terms in 4 bytes with their sum kept: what rounding takes away goes into ever smaller, finer spaced terms.
Series rounded_to_sum(Series terms, double wanted) {
  std::array<size_t, kTerms> order{};
  std::iota(order.begin(), order.end(), size_t{0});
  std::sort(order.begin(), order.end(), [&](size_t a, size_t b) { return std::abs(terms[a]) > std::abs(terms[b]); });
  std::transform(terms.begin(), terms.end(), terms.begin(), single);
  for (const size_t i : order) terms[i] = single(terms[i] + (wanted - sum(terms)));
  return terms;
}

/// As `TransferFunctions::error`.
double error_of(const Series& cross, const Series& denominator, const Hours& pulse, double u_value) {
  Hours difference(pulse.size());
  for (size_t i = 0; i < kTerms; ++i) difference[i] = cross[i];
  difference = filtered(denominator, std::move(difference));
  for (size_t j = 0; j < pulse.size(); ++j) difference[j] -= pulse[j];
  constexpr size_t kDay = 12;  // hours of sunshine, a half sine
  std::array<double, kDay> sun{};
  for (size_t i = 0; i < kDay; ++i) sun[i] = std::sin(3.14159265358979323846 * static_cast<double>(i) / kDay);
  double step = 0, worst_step = 0, worst_day = 0, peak = 0;
  for (size_t j = 0; j < pulse.size(); ++j) {
    step += difference[j];
    double off = 0, exact = 0;
    for (size_t i = 0; i < kDay; ++i) {
      off += sun[i] * difference.before(j, i);
      exact += sun[i] * pulse.before(j, i);
    }
    worst_step = std::max(worst_step, std::abs(step));
    worst_day = std::max(worst_day, std::abs(off));
    peak = std::max(peak, std::abs(exact));
  }
  return std::isfinite(step) ? std::max(worst_step / u_value, worst_day / peak) : HUGE_VAL;
}

/// Whether the terms, as stored, give the steady state.
bool sums_hold(const Series& cross, const Series& denominator, double u_value) {
  const double wanted = u_value * sum(denominator);
  return std::abs(sum(cross) - wanted) < kOffSum * std::abs(wanted);
}

/// Hours until the slab's response is over.
size_t hours_of(const SlabResponse& slab) {
  const double slowest = slab.roots.empty() ? 1 : slab.roots.front();
  return static_cast<size_t>(std::clamp(kTimeConstants / slowest, kShortest, kLongest));
}

/// Where the search for the best number of poles begins. The tail that a numerator of 12 terms loses decays with the
/// first pole left out of the denominator; orders above the number of poles are needed to correct the rounding of a
/// heavy slab.
size_t poles_that_leave_little(const SlabResponse& slab) {
  constexpr size_t kMended = 3;
  size_t poles = 0;
  while (poles < std::min(kMostPoles - kMended, slab.roots.size()) &&
         std::exp(-static_cast<double>(kTerms) * slab.roots[poles]) > kGoodError) {
    ++poles;
  }
  return poles;
}

}  // namespace

double TransferFunctions::inside_sum() const { return sum(inside); }

TransferFunctions transfer_functions(const SlabResponse& slab) {
  const size_t hours = hours_of(slab);
  const Hours pulse = pulse_response(slab, Face::Cross, hours);
  TransferFunctions best{.u_value = slab.u_value, .error = HUGE_VAL};
  /// Whether so many poles do better than what was tried before, with something left to gain.
  const auto better = [&](size_t poles) {
    const Series denominator = denominator_of(slab, poles);
    if (ruined(slab, poles, denominator)) return false;
    const Fit fit(denominator, hours);
    const Series cross = rounded_to_sum(fit.series(pulse, slab.u_value), slab.u_value * sum(denominator));
    const double error = error_of(cross, denominator, pulse, slab.u_value);
    if (!(error < best.error) || !sums_hold(cross, denominator, slab.u_value)) return false;
    best.denominator = denominator;
    best.cross = cross;
    best.error = error;
    return error > kGoodError;
  };
  const size_t most = std::min(kMostPoles, slab.roots.size());
  const size_t start = std::min(poles_that_leave_little(slab), most);
  better(start);
  if (best.error > kGoodError) {
    for (size_t poles = start + 1; poles <= most && better(poles);) ++poles;
    for (size_t poles = start; poles > 0 && (better(poles - 1) || best.error > kPoorError);) --poles;
  }
  if (best.error == HUGE_VAL) fail(ErrorNumber::InvalidCall, "no 12 terms hold the response of the layers");
  const Fit fit(best.denominator, hours);
  best.outside = fit.series(pulse_response(slab, Face::Outside, hours), slab.u_value);
  best.inside = fit.series(pulse_response(slab, Face::Inside, hours), slab.u_value);
  return best;
}

double response_error(const SlabResponse& slab, const Series& cross, const Series& denominator) {
  return error_of(cross, denominator, pulse_response(slab, Face::Cross, hours_of(slab)), slab.u_value);
}

}  // namespace tarn
