#include <cmath>
#include <random>

#include "envelope/ctf_generator.h"
#include "envelope/reference_walls.h"
#include "envelope/root_search.h"
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
Series stored(Series terms) {
  for (double& term : terms) term = double{static_cast<float>(term)};
  return terms;
}

double sum(const Series& terms) {
  long double total = 0;
  for (const double term : terms) total += term;
  return static_cast<double>(total);
}

/// Flux at each hour for a temperature at each hour.
template <typename Temperature>
std::vector<double> response(const TransferFunctions& terms, int hours, Temperature at) {
  const auto b = stored(terms.b), d = stored(terms.d);
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
    const double wanted = wall.u_value * sum(stored(terms.d));
    EXPECT_NEAR(sum(stored(terms.b)), wanted, 1e-5 * wanted) << wall.name;
    EXPECT_NEAR(double{static_cast<float>(terms.c_sum)}, wanted, 1e-6 * wanted) << wall.name;
    EXPECT_EQ(terms.d[0], 1.0) << wall.name;
    const auto day = response(terms, 36, [](int hour) { return hour < 24 ? test::kDay[hour] : 0; });
    const double peak = *std::max_element(std::begin(wall.day), std::end(wall.day));
    for (size_t hour = 0; hour < day.size(); ++hour)
      EXPECT_NEAR(day[hour], wall.day[hour], kTolerance * peak) << wall.name << ", hour " << hour;
    const auto step = response(terms, 97, [](int) { return 1.0; });
    for (size_t i = 0; i < std::size(test::kStepHours); ++i) {
      EXPECT_NEAR(step[static_cast<size_t>(test::kStepHours[i])], wall.step[i], kTolerance * wall.u_value)
          << wall.name << ", step, hour " << test::kStepHours[i];
    }
    EXPECT_LT(terms.accuracy.worst(), kTolerance) << wall.name;
  }
}

/// Five leaves around insulation: roots so close that the residues at them cancel all but four of their digits. The
/// steps are from residues in 60 digits (`exact_walls steps`).
TEST(TransferFunctions, HoldTheResponseOfAlikeLeaves) {
  constexpr int kHours[]{24, 96, 384, 1536, 6144};
  const struct {
    SlabLayer leaf;
    double insulation, u_value, step[5];
  } cases[]{{{4 / 12. / 1.127, 4 / 12. * 139.8 * 0.215},
             80,
             0.00311062451698,
             {3.1725455316e-08, 2.62818666377e-06, 0.000111867058007, 0.00143743153656, 0.00304963905776}},
            {{8.2 / 12 / 26.16, 8.2 / 12 * 488.4 * 0.119},
             25,
             0.00998695638342,
             {7.93570928476e-08, 5.03876754587e-06, 0.00021918901476, 0.00352735589727, 0.00953020410156}},
            {{13.4 / 12 / 1.127, 13.4 / 12 * 139.8 * 0.215},
             171,
             0.0014514753876,
             {2.34121029021e-14, 7.41065436018e-10, 1.75000040075e-07, 1.13776965015e-05, 0.000280592652072}}};
  for (const auto& c : cases) {
    const SlabLayer between{c.insulation, 0};
    const TransferFunctions terms =
        transfer_functions(std::vector{c.leaf, between, c.leaf, between, c.leaf, between, c.leaf, between, c.leaf});
    EXPECT_NEAR(terms.u_value, c.u_value, 1e-13);
    EXPECT_LT(terms.accuracy.worst(), 2e-5) << c.insulation;
    const auto step = response(terms, kHours[4] + 1, [](int) { return 1.0; });
    for (size_t i = 0; i < std::size(kHours); ++i) {
      EXPECT_NEAR(step[static_cast<size_t>(kHours[i])], c.step[i], 2e-5 * c.u_value)
          << "R-" << c.insulation << ", hour " << kHours[i];
    }
  }
}

/// Leaves of 24 in, R-300 between them, slabs of 80 in: slow poles whose product is a billionth of what 4 bytes
/// resolve.
TEST(TransferFunctions, HoldEveryWallOfUpTo100Roots) {
  const SlabLayer concrete{2 / 1.127, 2 * 139.8 * 0.215}, earth{15.1 / 12 / 0.5, 15.1 / 12 * 30}, between{300, 0};
  std::vector<std::vector<SlabLayer>> walls{{{80 / 12. / 0.514, 80 / 12. * 119.9 * 0.189}, {0.7, 0}},
                                            {concrete, between, concrete},
                                            {concrete, between, concrete, between, concrete, between, concrete},
                                            {earth, between, earth, between, earth, between, earth, between, earth}};
  for (double inches = 82; inches < 86; ++inches) walls.push_back({{inches / 12 / 0.5, inches / 12 * 100 * 0.2}});
  for (size_t i = 0; i < walls.size(); ++i) {
    const TransferFunctions terms = transfer_functions(walls[i]);
    EXPECT_LT(terms.accuracy.worst(), 0.002) << i;
    EXPECT_EQ(terms.d, stored(terms.d)) << i;
    EXPECT_EQ(terms.b, stored(terms.b)) << i;
    EXPECT_NEAR(sum(terms.b) / (terms.u_value * sum(terms.d)), 1, 1e-5) << i;
  }
}

/// What is told is measured: of terms made worse by hand it is what they are worse by.
TEST(TransferFunctions, TheAccuracyIsThatOfTheTermsAtHand) {
  const std::vector<SlabLayer> slab{{0.333, 0}, {0.65, 7.5}, {14, 0.2}, {0.685, 0}};
  const TransferFunctions good = transfer_functions(slab);
  EXPECT_LT(good.accuracy.worst(), 1e-5);
  Series b = good.b;
  for (double& term : b) term *= 1.01;
  EXPECT_NEAR(response_accuracy(slab, b, good.d).step, 0.01, 1e-5);
  EXPECT_NEAR(response_accuracy(slab, b, good.d).day, 0.01, 1e-5);
  Series unstable = good.d;
  unstable[1] = -3;
  EXPECT_GT(response_accuracy(slab, good.b, unstable).worst(), 1e3);
}

/// Summed up from pulses, or from the harmonics of the transmission matrix: the same day.
TEST(ExactResponse, TheTwoRoadsToADayMeet) {
  const std::vector<SlabLayer> slab{{0.333, 0}, {0.65, 7.5}, {14, 0.2}, {0.5, 0.6}, {0.685, 0}};
  const Transmission transmission(slab);
  const ExactResponse exact(transmission, RootSearch(slab).roots_below(4).front());
  for (int k = 1; k <= ExactResponse::kHarmonics; ++k) {
    const auto harmonic = hourly_transfer(transmission, 3.14159265358979323846 * k / 12);
    EXPECT_LT(std::abs(exact.daily()[static_cast<size_t>(k) - 1] - harmonic), 1e-5 * exact.u_value()) << k;
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
      check_slab(slab);
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
    EXPECT_EQ(terms.d[1], 0.0) << "no mass, no poles";
    EXPECT_NEAR(terms.b[0], terms.u_value, 1e-7);
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

TEST(Generator, NamesTheLayersThatSlowTheResponse) {
  CTFCG generator;
  int16_t number = 0;
  const auto add = [&](float inches, float conductivity, float density, float resistance, int16_t slot) {
    generator.SetLayer(++number, true, conductivity, density, 0.2F, resistance, inches / 12, 0, slot);
  };
  add(0, 0, 0, 0.333F, 1);
  add(8, 1, 140, 0, 3);  // beside the outside air: little resistance to charge it through
  add(0, 0, 0, 20, 4);
  add(8, 1, 140, 0, 6);
  add(0, 0, 0, 20, 7);
  add(0.5F, 0.1F, 50, 0, 8);
  EXPECT_EQ(generator.slowest_layers(), std::vector<int16_t>{6});
}

}  // namespace
}  // namespace tarn
