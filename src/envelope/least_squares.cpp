#include "envelope/least_squares.h"

#include <algorithm>
#include <numeric>

namespace tarn {
namespace {

/// (-1)^k times j over k, by k and j.
const std::array<std::array<double, kTerms>, kTerms>& signed_binomials() {
  static const auto all = [] {
    std::array<std::array<double, kTerms>, kTerms> by{};
    for (size_t j = 0; j < kTerms; ++j) {
      by[0][j] = 1;
      for (size_t k = 1; k <= j; ++k) by[k][j] = j > 0 ? by[k][j - 1] - by[k - 1][j - 1] : 0;
    }
    return by;
  }();
  return all;
}

/// Solves for the terms in the order given, last to first, each as `kept` makes it.
template <typename F>
Series solved(const std::vector<Equation<long double>>& of_moments, const Wish& wish, const std::vector<size_t>& order,
              F kept) {
  using Wide = long double;  // the moments of the terms differ by as many digits as a double has
  std::vector<Equation<Wide>> equations;
  for (const Equation<long double>& of_moment : of_moments) {
    Equation<Wide>& row = equations.emplace_back();
    Equation<Wide> by_term{};
    for (size_t j = 0; j < kTerms; ++j) {
      for (size_t k = 0; k <= j; ++k) by_term[j] += Wide{of_moment[k]} * Wide{signed_binomials()[k][j]};
    }
    for (size_t c = 0; c < order.size(); ++c) row[c] = by_term[order[c]];
    row[kTerms] = Wide{of_moment[kTerms]} - (wish.first_is_one ? by_term[0] : 0);
  }
  for (size_t c = 0; c < order.size(); ++c) {
    Equation<Wide>& row = equations.emplace_back();
    row[c] = wish.pull[order[c]];
    row[kTerms] = Wide{wish.pull[order[c]]} * Wide{wish.terms[order[c]]};
  }
  triangulate(equations, order.size());
  Series terms{};
  if (wish.first_is_one) terms[0] = 1;
  for (size_t c = order.size(); c-- > 0;) {
    Wide rest = equations[c][kTerms];
    for (size_t k = c + 1; k < order.size(); ++k) rest -= equations[c][k] * Wide{terms[order[k]]};
    terms[order[c]] = kept(static_cast<double>(rest / equations[c][c]));
  }
  return terms;
}

/// The free terms, in order.
std::vector<size_t> free_terms(const Wish& wish) {
  std::vector<size_t> order(wish.first_is_one ? kTerms - 1 : kTerms);
  std::iota(order.begin(), order.end(), size_t{wish.first_is_one ? 1U : 0U});
  return order;
}

/// Neumaier's sum of terms times factors, whose products are exact: 24 bits times a binomial.
long double exact_sum(const Series& terms, const Series& factors, size_t from) {
  long double sum = 0, lost = 0;
  for (size_t j = from; j < kTerms; ++j) {
    const long double next = static_cast<long double>(terms[j] * factors[j]), before = sum;
    sum += next;
    lost += std::abs(before) >= std::abs(next) ? (before - sum) + next : (next - sum) + before;
  }
  return sum + lost;
}

}  // namespace

Moments moments_of(const Series& terms) {
  Moments out{};
  for (size_t k = 0; k < kTerms; ++k) out[k] = exact_sum(terms, signed_binomials()[k], k);
  return out;
}

double sum_of(const Series& terms) { return static_cast<double>(exact_sum(terms, signed_binomials()[0], 0)); }

Series rounded_terms(const std::vector<Equation<long double>>& of_moments, const Wish& wish, const Series& sizes) {
  std::vector<size_t> order = free_terms(wish);
  std::stable_sort(order.begin(), order.end(),
                   [&](size_t a, size_t b) { return std::abs(sizes[a]) > std::abs(sizes[b]); });
  std::reverse(order.begin(), order.end());  // of equal sizes the later order is the last to be rounded
  return solved(of_moments, wish, order, [](double value) { return static_cast<double>(static_cast<float>(value)); });
}

Series real_terms(const std::vector<Equation<long double>>& of_moments, const Wish& wish) {
  return solved(of_moments, wish, free_terms(wish), [](double value) { return value; });
}

}  // namespace tarn
