#include <cmath>
#include <random>

#include "envelope/ctf_generator.h"
#include "envelope/reference_walls.h"
#include "support/temp_project.h"

namespace tarn {
namespace {

using test::ReferenceWall;

bool generated(std::span<const test::ReferenceLayer> layers, TransferFunctions& out) {
  CTFCG generator;
  int16_t number = 0;
  for (const auto& l : layers)
    generator.SetLayer(++number, true, l.conductivity, l.density, l.specific_heat, l.resistance, l.inches / 12, 0);
  return generator.Generate(out, [] {});
}

/// The terms as a record holds them.
TransferFunctions::Series stored(TransferFunctions::Series terms) {
  for (double& term : terms) term = double{static_cast<float>(term)};
  return terms;
}

double sum(const TransferFunctions::Series& terms) {
  long double total = 0;
  for (const double term : terms) total += term;
  return static_cast<double>(total);
}

/// Flux at each hour for a temperature at each hour.
template <typename Temperature>
std::vector<double> response(const TransferFunctions& terms, int hours, Temperature at) {
  const auto b = stored(terms.cross), d = stored(terms.denominator);
  std::vector<double> flux;
  for (int hour = 0; hour < hours; ++hour) {
    double value = 0;
    for (int i = 0; i < 12; ++i) {
      value += b[static_cast<size_t>(i)] * (hour >= i ? at(hour - i) : 0);
      if (i > 0 && hour >= i) value -= d[static_cast<size_t>(i)] * flux[static_cast<size_t>(hour - i)];
    }
    flux.push_back(value);
  }
  return flux;
}

TEST(TransferFunctions, HoldTheExactResponseOfTheReferenceWalls) {
  constexpr double kTolerance = 1e-5;
  for (const ReferenceWall& wall : test::kReferenceWalls) {
    TransferFunctions terms;
    ASSERT_TRUE(generated(wall.layers, terms)) << wall.name;
    EXPECT_NEAR(terms.u_value, wall.u_value, 1e-12) << wall.name;
    const double wanted = wall.u_value * sum(stored(terms.denominator));
    EXPECT_NEAR(sum(stored(terms.cross)), wanted, 1e-5 * wanted) << wall.name;
    EXPECT_NEAR(double{static_cast<float>(terms.inside_sum())}, wanted, 1e-6 * wanted) << wall.name;
    EXPECT_NEAR(sum(terms.outside), wanted, 1e-6 * wanted) << wall.name;
    EXPECT_EQ(terms.denominator[0], 1.0) << wall.name;
    const auto day = response(terms, 36, [](int hour) { return hour < 24 ? test::kDay[hour] : 0; });
    const double peak = *std::max_element(std::begin(wall.day), std::end(wall.day));
    for (size_t hour = 0; hour < day.size(); ++hour)
      EXPECT_NEAR(day[hour], wall.day[hour], kTolerance * peak) << wall.name << ", hour " << hour;
    const auto step = response(terms, 97, [](int) { return 1.0; });
    for (size_t i = 0; i < std::size(test::kStepHours); ++i) {
      EXPECT_NEAR(step[static_cast<size_t>(test::kStepHours[i])], wall.step[i], kTolerance * wall.u_value)
          << wall.name << ", step, hour " << test::kStepHours[i];
    }
    EXPECT_LT(terms.error, kTolerance) << wall.name;
  }
}

/// The response at the faces themselves: by the balance of heat, what a step stores is the slab's capacity times the
/// mean rise, and a slab turned around has its faces exchanged.
TEST(TransferFunctions, FacesExchangeWithTheSlab) {
  const std::vector<SlabLayer> slab{{0.5, 0}, {0.65, 7.5}, {14, 0.2}, {0.6, 2.2}, {0.7, 0}};
  const std::vector<SlabLayer> turned(slab.rbegin(), slab.rend());
  const TransferFunctions one = transfer_functions(slab_response(slab));
  const TransferFunctions other = transfer_functions(slab_response(turned));
  for (size_t i = 0; i < 12; ++i) {
    EXPECT_NEAR(one.outside[i], other.inside[i], 1e-7) << i;
    EXPECT_NEAR(one.cross[i], other.cross[i], 1e-9) << i;
  }
}

/// A slab of two leaves without insulation has the known roots of its one layer: (n pi)^2 / (R C).
TEST(RootSearch, FindsTheRootsOfASingleLayerInHalves) {
  const std::vector<SlabLayer> halves{{1, 3}, {1, 3}};
  const auto roots = RootSearch(halves).roots_below(36.8);
  ASSERT_EQ(roots.size(), 6U);
  for (size_t n = 1; n <= roots.size(); ++n)
    EXPECT_NEAR(roots[n - 1], std::pow(3.14159265358979323846 * static_cast<double>(n), 2) / 12,
                2e-14 + roots[n - 1] * 1e-15);
}

std::vector<SlabLayer> random_slab(std::mt19937& random) {
  std::uniform_real_distribution<double> uniform;
  const auto between = [&](double low, double high) { return low * std::pow(high / low, uniform(random)); };
  std::vector<SlabLayer> slab(1 + static_cast<size_t>(uniform(random) * 10));
  for (SlabLayer& layer : slab) {
    const double feet = between(0.03, 10) / 12;
    layer = {feet / between(0.015, 2), feet * between(1, 160) * between(0.15, 0.4)};
    if (uniform(random) < 0.15) layer = {between(0.1, 5), 0};
    if (uniform(random) < 0.2) layer = slab.front();  // leaves alike give roots close together
  }
  return slab;
}

TEST(RootSearch, MissesNoneOnTenThousandWalls) {
  std::mt19937 random(20);
  const double bound = -std::log(kSmallestFactor);
  long found = 0, evaluations = 0, too_heavy = 0;
  for (int wall = 0; wall < 10'000; ++wall) {
    const auto slab = random_slab(random);
    RootSearch search(slab);
    const auto roots = search.roots_below(bound);
    found += static_cast<long>(roots.size());
    evaluations += search.evaluations();
    ASSERT_EQ(roots.size(), static_cast<size_t>(search.count(bound))) << wall;
    for (size_t n = 0; n < roots.size(); ++n) {
      // Below the bracket there are n roots, above it one more: none missed, none found twice.
      const double around = 2e-14 + roots[n] * 4e-15;
      ASSERT_LE(search.count(roots[n] - around), static_cast<int>(n)) << wall;
      ASSERT_GE(search.count(roots[n] + around), static_cast<int>(n + 1)) << wall;
      ASSERT_TRUE(n == 0 || roots[n] > roots[n - 1]) << wall;
    }
    try {
      const SlabResponse response = slab_response(slab);
      for (const double weight : response.weights[1]) ASSERT_TRUE(std::isfinite(weight)) << wall;
    } catch (const Error& error) {
      ASSERT_GT(roots.size(), 100U) << wall << ": " << error.what();
      ++too_heavy;
    }
  }
  EXPECT_LT(too_heavy, 50);
  EXPECT_LE(static_cast<double>(evaluations) / static_cast<double>(found), 60);
  RecordProperty("roots", static_cast<int>(found));
  RecordProperty("evaluations", static_cast<int>(evaluations));
}

TEST(Generator, TheTableGrowsByOneAndIgnoresOtherNumbers) {
  CTFCG generator;
  TransferFunctions terms;
  EXPECT_EQ(generator.LayerCount(), 1);
  EXPECT_FALSE(generator.Generate(terms, [] {}));
  EXPECT_EQ(generator.failure(), "no layer is used");
  const auto set = [&](int number, float resistance) {
    generator.SetLayer(static_cast<int16_t>(number), true, 0, 0, 0, resistance, 0, 0);
    return generator.LayerCount();
  };
  const struct {
    int number;
    float resistance;
    int count;
    double total;
  } cases[]{{0, 1, 1, 0}, {-5, 1, 1, 0}, {3, 1, 1, 0}, {1, 2, 1, 2}, {2, 0.1F, 2, 2.1}, {4, 7, 2, 2.1}, {1, 3, 2, 3.1}};
  for (const auto& c : cases) {
    EXPECT_EQ(set(c.number, c.resistance), c.count) << c.number;
    if (c.total == 0) continue;
    ASSERT_TRUE(generator.Generate(terms, [] {}));
    EXPECT_EQ(terms.u_value, 1 / c.total) << c.number << ": 0.1 counts as the decimal, not as the single";
    EXPECT_EQ(terms.denominator[1], 0.0) << "no mass, no poles";
    EXPECT_NEAR(terms.cross[0], terms.u_value, 1e-7);
  }
}

TEST(Generator, ALayersResistanceIsThatOfItsMassOrItsOwn) {
  const struct {
    test::ReferenceLayer layer;
    double resistance;
  } cases[]{{{12, 0.5F, 100, 0.2F, 7}, 2},  // with mass: L / k
            {{12, 0.5F, 0, 0.2F, 7}, 7},    // without: its own
            {{12, 0.5F, 0, 0.2F, 0}, 2},    // none of its own: L / k
            {{0, 0.5F, 100, 0.2F, 7}, 7},
            {{12, 0.5F, 100, -1, 7}, 7}};
  for (const auto& c : cases) {
    TransferFunctions terms;
    ASSERT_TRUE(generated({&c.layer, 1}, terms));
    EXPECT_DOUBLE_EQ(terms.u_value, 1 / c.resistance);
  }
}

}  // namespace
}  // namespace tarn
