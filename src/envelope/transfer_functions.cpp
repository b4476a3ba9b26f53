#include "envelope/transfer_functions.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <string>
#include <vector>

#include "envelope/least_squares.h"
#include "envelope/root_search.h"
#include "tarn/base/error.h"

namespace tarn {
namespace {

using std::numbers::pi;
constexpr size_t kMostPoles = kTerms - 2;
constexpr double kGoodError = 3e-6;  // with which a search ends: fewer poles are better for an engine's own rounding
constexpr double kGoodFit = 1e-5;    // with which the search for a fit ends
constexpr double kSlowRoots = 1.5;   // 1/hr: the poles of d, which otherwise leave 1e-8 after 12 hours
constexpr double kMoreRoots = 3;     // 1/hr, where these are not enough, as of alike leaves
constexpr size_t kUnmended = 8;      // poles at most, so that orders are left for what rounding does to them
constexpr double kOffSum = 8e-6;     // of the stored terms, relative

double single(double value) { return static_cast<double>(static_cast<float>(value)); }

/// b and d with what they do.
struct Candidate {
  Series b{}, d{};
  Accuracy accuracy{HUGE_VAL, HUGE_VAL};
};

// ---- d of the slowest poles

/// The product of (1 - e^-beta z^-1) over the poles.
Series poles_product(std::span<const double> poles) {
  Series product{1};
  for (const double beta : poles) {
    const double factor = std::exp(-beta);
    for (size_t i = kTerms - 1; i > 0; --i) product[i] -= factor * product[i - 1];
  }
  return product;
}

/// Its moments, of factors 1 - e^-beta + e^-beta w, in which nothing cancels.
Moments moments_of_poles(std::span<const double> poles) {
  Moments moments{1};
  for (const double beta : poles) {
    const double factor = std::exp(-beta), rest = -std::expm1(-beta);
    for (size_t i = kTerms - 1; i > 0; --i) moments[i] = rest * moments[i] + factor * moments[i - 1];
    moments[0] *= rest;
  }
  return moments;
}

/// d in 4 bytes. Rounding would move the slow poles; the orders above the poles are small, hence finely spaced, and
/// take up what brings the slow poles back to their places.
Series mended_denominator(std::span<const double> poles) {
  constexpr double kSlow = 0.7;  // 1/hr: faster poles do not feel the rounding
  const Series exact = poles_product(poles);
  Series rounded{};
  std::transform(exact.begin(), exact.end(), rounded.begin(), single);
  const auto slow =
      static_cast<size_t>(std::count_if(poles.begin(), poles.end(), [](double beta) { return beta < kSlow; }));
  const size_t mended = std::min(slow, kTerms - 1 - poles.size());
  std::vector<Equation<double>> mend;
  for (size_t k = 0; k < mended; ++k) {
    Equation<double>& row = mend.emplace_back();
    for (size_t i = 0; i <= poles.size(); ++i)
      row[kTerms] += (exact[i] - rounded[i]) * std::exp(poles[k] * static_cast<double>(i));
    for (size_t c = 0; c < mended; ++c) row[c] = std::exp(poles[k] * static_cast<double>(poles.size() + 1 + c));
  }
  triangulate(mend, mended);
  for (size_t c = mended; c-- > 0;) {
    double rest = mend[c][kTerms];
    for (size_t k = c + 1; k < mended; ++k) rest -= mend[c][k] * rounded[poles.size() + 1 + k];
    rounded[poles.size() + 1 + c] = single(rest / mend[c][c]);
  }
  return rounded;
}

// ---- numerators of the first 12 hours

/// d times the pulse response never ends; what comes after 12 hours is put into the last term.
Series cut_numerator(const ExactResponse& exact, const Series& d, double sum_of_terms) {
  const std::vector<double>& steps = exact.early_steps();
  Series terms{};
  for (size_t j = 0; j < kTerms; ++j) {
    const double pulse = steps[j] - (j > 0 ? steps[j - 1] : 0);
    for (size_t i = 0; i + j < kTerms; ++i) terms[i + j] += d[i] * pulse;
  }
  terms[kTerms - 1] += sum_of_terms - std::accumulate(terms.begin(), terms.end(), 0.0);
  return terms;
}

/// The terms in 4 bytes with their sum kept: what rounding takes away goes into ever smaller, finer spaced terms.
Series rounded_to_sum(Series terms, double wanted) {
  std::array<size_t, kTerms> order{};
  std::iota(order.begin(), order.end(), size_t{0});
  std::sort(order.begin(), order.end(), [&](size_t a, size_t b) { return std::abs(terms[a]) > std::abs(terms[b]); });
  std::transform(terms.begin(), terms.end(), terms.begin(), single);
  for (const size_t i : order) terms[i] = single(terms[i] + (wanted - sum_of(terms)));
  return terms;
}

/// For slabs whose poles die out in 12 hours, but for a few.
Candidate cut(const ExactResponse& exact, std::span<const double> poles) {
  Candidate out;
  out.d = mended_denominator(poles);
  const double wanted = exact.u_value() * sum_of(out.d);
  out.b = rounded_to_sum(cut_numerator(exact, out.d, wanted), wanted);
  out.accuracy = exact.accuracy(out.b, out.d);
  return out;
}

// ---- terms fitted to the transfer

/// The transfer through the slab at one frequency, and what an error there weighs.
struct Sample {
  Complex w;  // 1 - z^-1
  Complex transfer;
  double weight;
};

/// From far below the slowest pole to the fastest wave of hourly temperatures, and at the harmonics of a day.
std::vector<Sample> samples_of(const Transmission& slab, const ExactResponse& exact, double slowest_root) {
  constexpr double kBelow = 8, kRatio = 1.26, kOfDay = 2;
  std::vector<Sample> out;
  const auto at = [](double frequency) {
    return Complex(2 * std::pow(std::sin(frequency / 2), 2), std::sin(frequency));
  };
  double frequency = pi;
  while (frequency > slowest_root / kBelow) {
    out.push_back({at(frequency), hourly_transfer(slab, frequency), 1 / exact.u_value()});
    frequency /= kRatio;
  }
  for (int k = 1; k <= ExactResponse::kHarmonics; ++k) {
    const double harmonic = pi * k / ExactResponse::kHarmonics;
    out.push_back({at(harmonic), exact.daily()[static_cast<size_t>(k) - 1], kOfDay * exact.weight_of_day(k)});
  }
  return out;
}

Complex at_w(const Moments& moments, Complex w) {
  Complex value = 0;
  for (size_t k = kTerms; k-- > 0;) value = value * w + static_cast<double>(moments[k]);
  return value;
}

/// Equations for the moments of b, or of d with b = transfer * d, by which the weighted error of b / d is least in the
/// neighbourhood of a d; with a sum of the terms that is held `firmly`.
std::vector<Equation<long double>> equations_for(const std::vector<Sample>& samples, const Moments& d, bool of_d,
                                                 double sum, double firmly) {
  std::vector<Equation<long double>> out;
  for (const Sample& sample : samples) {
    const Complex right = sample.transfer * sample.weight;
    Complex factor = (of_d ? right : Complex(sample.weight)) / at_w(d, sample.w);
    Equation<long double>& real = out.emplace_back();
    Equation<long double> imaginary;
    for (size_t k = 0; k < kTerms; ++k, factor *= sample.w) {
      real[k] = factor.real();
      imaginary[k] = factor.imag();
    }
    real[kTerms] = right.real();
    imaginary[kTerms] = right.imag();
    out.push_back(imaginary);
  }
  Equation<long double>& of_sum = out.emplace_back();
  of_sum[0] = firmly / sum;
  of_sum[kTerms] = firmly;
  triangulate(out);
  return out;
}

/// d in 4 bytes so that what the rounding does to the response is least. The orders above the poles, which are 0 but
/// for this, take their part one after the other, the higher the later.
Series fitted_denominator(const std::vector<Sample>& samples, std::span<const double> poles) {
  constexpr double kFirm = 10, kFree = 1e-3, kAbove = 0.1, kLater = 30;
  const Moments exact = moments_of_poles(poles);
  Wish wish{.terms = poles_product(poles), .pull = {}, .first_is_one = true};
  double pull = kAbove;
  for (size_t i = 0; i < kTerms; ++i) wish.pull[i] = i <= poles.size() ? kFree : pull *= kLater;
  return rounded_terms(equations_for(samples, exact, true, static_cast<double>(exact[0]), kFirm), wish, wish.terms);
}

Series fitted_numerator(const std::vector<Sample>& samples, const Series& d, double u_value) {
  constexpr double kFirm = 1e5, kPull = 1e-8, kLast = 1e5;
  const Moments under = moments_of(d);
  const double wanted = u_value * static_cast<double>(under[0]);
  const auto equations = equations_for(samples, under, false, wanted, kFirm);
  Wish wish;
  wish.pull.fill(kPull / wanted);
  wish.pull.back() *= kLast;  // small and finely spaced, for what the rounding of the others leaves
  return rounded_terms(equations, wish, real_terms(equations, wish));
}

Candidate fitted(const ExactResponse& exact, const std::vector<Sample>& samples, std::span<const double> poles) {
  Candidate out;
  out.d = fitted_denominator(samples, poles);
  const double wanted = exact.u_value() * sum_of(out.d);
  if (!(wanted > 0)) return out;
  out.b = fitted_numerator(samples, out.d, exact.u_value());
  if (std::abs(sum_of(out.b) - wanted) < kOffSum * wanted) out.accuracy = exact.accuracy(out.b, out.d);
  return out;
}

/// The best for slow slabs, from a few poles on to more, then to fewer, while it helps.
Candidate best_fit(const Transmission& slab, RootSearch& search, const ExactResponse& exact, Candidate best) {
  constexpr double kStart = 0.3, kFast = 4;  // 1/hr
  const std::vector<double> roots = search.roots_below(kFast);
  if (roots.empty()) return best;
  const std::vector<Sample> samples = samples_of(slab, exact, roots.front());
  const size_t most = std::min(kMostPoles, roots.size());
  /// Whether so many poles are to be followed by more, or fewer: not when errors have risen twice in a row.
  double last = HUGE_VAL;
  int risen = 0;
  const auto go_on = [&](size_t poles) {
    const Candidate next = fitted(exact, samples, {roots.data(), poles});
    const double error = next.accuracy.worst();
    if (error < best.accuracy.worst()) best = next;
    risen = error < last || error == HUGE_VAL ? 0 : risen + 1;
    last = error;
    return risen < 2 && best.accuracy.worst() > kGoodFit;
  };
  const auto slow = std::lower_bound(roots.begin(), roots.end(), kStart) - roots.begin();
  const size_t start = std::min(most, static_cast<size_t>(slow));
  for (size_t poles = start; poles <= most && go_on(poles);) ++poles;
  risen = 0;
  last = HUGE_VAL;
  for (size_t poles = start; poles > 0 && best.accuracy.worst() > kGoodFit && go_on(poles - 1);) --poles;
  return best;
}

ExactResponse exact_response(const Transmission& slab, const std::vector<double>& slow_roots) {
  return {slab, slow_roots.empty() ? 0 : slow_roots.front()};
}

Candidate best_candidate(const Transmission& slab, RootSearch& search) {
  std::vector<double> roots = search.roots_below(kSlowRoots);
  const ExactResponse exact = exact_response(slab, roots);
  Candidate best = cut(exact, {roots.data(), std::min(roots.size(), kUnmended)});
  if (best.accuracy.worst() <= kGoodError) return best;
  roots = search.roots_below(kMoreRoots);
  const Candidate more = cut(exact, {roots.data(), std::min(roots.size(), kUnmended)});
  if (more.accuracy.worst() < best.accuracy.worst()) best = more;
  return best.accuracy.worst() <= kGoodError ? best : best_fit(slab, search, exact, best);
}

}  // namespace

TransferFunctions transfer_functions(std::span<const SlabLayer> layers) {
  check_slab(layers);
  const Transmission slab(layers);
  RootSearch search(layers);
  const Candidate best = best_candidate(slab, search);
  if (best.accuracy.worst() == HUGE_VAL) fail(ErrorNumber::InvalidCall, "no 12 terms hold the response of the layers");
  if (best.accuracy.worst() > kWorstError) {
    fail(ErrorNumber::InvalidCall, "12 terms hold the response of the layers to " +
                                       std::to_string(std::lround(100 * best.accuracy.worst())) + " % at best");
  }
  const double u = slab.u_value();
  return {.b = best.b, .d = best.d, .c_sum = u * sum_of(best.d), .u_value = u, .accuracy = best.accuracy};
}

Accuracy response_accuracy(std::span<const SlabLayer> layers, const Series& b, const Series& d) {
  check_slab(layers);
  RootSearch search(layers);
  return exact_response(Transmission(layers), search.roots_below(kSlowRoots)).accuracy(b, d);
}

}  // namespace tarn
