// Tables of window performance, drawn from results: what a window's U-value and shade coefficient say of the gap, the
// frame and the shade is compared, so that neither the tables nor the formulas of the product are repeated here.

#include <cmath>

#include "reflect/json_text.h"
#include "support/expected_data.h"
#include "tarn/base/value.h"
#include "tarn/class_list.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

/// Panes of one resistance each, transparent unless their solar properties are given.
struct Panes {
  std::vector<int> types = {};
  double resistance = 0;  // of each, hr.ft2.F/Btu
  double transmitted = 1, absorbed = 0;
  int gap = 0, frame = 0, shade = 0;
  double height = 4, width = 5;  // ft
};

struct Performance {
  double u_value, shade_coefficient;
};

Performance performance(const Panes& panes) {
  const ObjectPtr window = create("WIN_Window");
  const auto let = [&](const char* name, double value) { let_property(*window, name, value); };
  let("Height", panes.height);
  let("Width", panes.width);
  let("GapTypeID", panes.gap);
  let("FrameType", panes.frame);
  let("ShadeType", panes.shade);
  for (int i = 1; i <= static_cast<int>(panes.types.size()); ++i) {
    const std::array at{i};
    let_property(*window, "GlassTypeID", panes.types[static_cast<size_t>(i - 1)], at);
    let_property(*window, "GlassTrans", panes.transmitted, at);
    let_property(*window, "GlassAbsorp", panes.absorbed, at);
    let_property(*window, "GlassThickness", 12 * panes.resistance, at);
    let_property(*window, "GlassConductivity", 1.0, at);
  }
  test::call(*window, "CalculatePerformance");
  return {real_from(get_property(*window, "OverallUValue")), real_from(get_property(*window, "OverallShadeCo"))};
}

double resistance_of(const Panes& panes) { return 1 / performance(panes).u_value; }

std::string row_title(const std::string& what, const Json& row) { return what + " " + json_text(row[0]); }

// The window stores its results in 4 bytes; quotients of their differences keep fewer digits.
constexpr double kTolerance = 2e-5;

double constant(const std::string& name) {
  for (const Json& row : test::expected_table("Constants of window performance")["rows"]) {
    if (row[0] == name) return row[1];
  }
  ADD_FAILURE() << name;
  return 0;
}

TEST(ExpectedData, GapsOfWindows) {
  test::Comparison comparison;
  const Json& table = test::expected_table("Thermal resistance of a window's gap");
  const double without = resistance_of({.types = {1}});
  for (const Json& row : table["rows"]) {
    for (const int glass : {1, 14, 15, 16, 17, 18}) {
      const Json& coated = table["low_emissivity_glass"];
      const bool low = std::find(coated.begin(), coated.end(), glass) != coated.end();
      const double gap = resistance_of({.types = {1, glass}, .gap = row[0]}) - without;
      comparison.compare_near(row_title("gap", row) + " glass " + std::to_string(glass), row[low ? 1 : 2], gap,
                              kTolerance);
    }
  }
}

/// One pane has no edge of glass: U is shared between glass and frame. Two panes of other U-values give both unknowns.
TEST(ExpectedData, FramesOfWindows) {
  test::Comparison comparison;
  const Panes thin{.types = {1}}, thick{.types = {1}, .resistance = 0.5};
  const double thin_glass = performance(thin).u_value, thick_glass = performance(thick).u_value;
  for (const Json& row : test::expected_table("Window frames")["rows"]) {
    Panes framed = thin, framed_thick = thick;
    framed.frame = framed_thick.frame = row[0];
    const double u = performance(framed).u_value, u_thick = performance(framed_thick).u_value;
    const double share = 1 - (u - u_thick) / (thin_glass - thick_glass);
    comparison.compare_near(row_title("frame", row) + " share", row[1], share, kTolerance);
    const double frame_u = share < kTolerance ? 0 : (u - (1 - share) * thin_glass) / share;
    comparison.compare_near(row_title("frame", row) + " U-value", row[2], frame_u, kTolerance);
  }
}

/// Through an opening without glass comes what the shade does not absorb; the two numbers count by their sum alone.
TEST(ExpectedData, ShadesOfWindows) {
  test::Comparison comparison;
  const double open = performance({}).shade_coefficient;
  for (const Json& row : test::expected_table("Internal shades of windows")["rows"]) {
    const double share = performance({.shade = row[0]}).shade_coefficient / open;
    comparison.compare_near(row_title("shade", row), row[1].get<double>() + row[2].get<double>(), share, kTolerance);
    if (row[0] == 0) continue;
    comparison.compare_near(row_title("shade", row) + " resistance", constant("resistance of an internal shade"),
                            resistance_of({.shade = row[0]}) - resistance_of({}), kTolerance);
  }
}

TEST(ExpectedData, ConstantsOfWindows) {
  test::Comparison comparison;
  const auto compare = [&](const std::string& name, double found) {
    comparison.compare_near(name, constant(name), found, 5e-5);
  };
  const double reference = 1 / performance({}).shade_coefficient;
  compare("solar heat gain of the reference glass", reference);

  // A black pane of resistance r gives (1/out) / (1/in + 1/out + r) of the sun to the inside, with the films of summer.
  const auto inverse_gain = [&](double r) {
    return 1 / (reference *
                performance({.types = {1}, .resistance = r, .transmitted = 0, .absorbed = 1}).shade_coefficient);
  };
  const double summer = inverse_gain(1) - inverse_gain(0);
  const double inside = summer / (inverse_gain(0) - 1);
  compare("outside film conductance, summer", summer);
  compare("inside film conductance", inside);
  compare("outside film conductance, winter", 1 / (resistance_of({}) - 1 / inside));

  // Behind a pane that reflects the sun, only the frame gains.
  const Json& frame = test::expected_table("Window frames")["rows"][2];
  const double frame_gain = reference * performance({.types = {1}, .transmitted = 0, .frame = 2}).shade_coefficient;
  compare("frame solar factor: multiplier", frame_gain / frame[1].get<double>() / frame[2].get<double>() * summer);

  // A conductivity of 0.0001 is none, the next one is one.
  const auto resists = [&](double conductivity) {
    const ObjectPtr window = create("WIN_Window");
    let_property(*window, "Height", 1.0);
    let_property(*window, "Width", 1.0);
    let_property(*window, "GlassTypeID", int16_t{1}, std::array{1});
    let_property(*window, "GlassThickness", 12.0, std::array{1});
    let_property(*window, "GlassConductivity", conductivity, std::array{1});
    test::call(*window, "CalculatePerformance");
    return real_from(get_property(*window, "OverallUValue")) < 0.01;
  };
  const double least = constant("least conductivity, resistance and solar denominator that count");
  EXPECT_FALSE(resists(0.99 * least));
  EXPECT_TRUE(resists(1.01 * least));
}

/// The edge of the glass: two panes in a frame, around the U-value below which the edge differs.
TEST(ExpectedData, EdgesOfGlass) {
  test::Comparison comparison;
  const Json& frame = test::expected_table("Window frames")["rows"][1];
  const double share = frame[1], frame_u = frame[2];
  const double limit = constant("edge of glass: centre U-value below which it differs");
  const double band = constant("edge band, in") / 12;
  const double panes_without_glass = resistance_of({.types = {1, 1}});
  for (const double centre_u : {0.2, 0.4, 0.6, limit - 0.005, limit + 0.005}) {
    const double pane = std::max(0.0, (1 / centre_u - panes_without_glass) / 2);
    for (const auto& [height, width] : {std::pair(4.0, 5.0), std::pair(2.0, 8.0)}) {
      const Panes panes{.types = {1, 1}, .resistance = pane, .frame = 1, .height = height, .width = width};
      Panes unframed = panes;
      unframed.frame = 0;
      const double u = performance(unframed).u_value;
      const double edge_u = u >= limit
                                ? u
                                : constant("edge of glass: factor of the square") * u * u +
                                      constant("edge of glass: factor") * u + constant("edge of glass: constant");
      // The frame's width from its area, the same on all sides: area = 2 b (height + width) - 4 b^2.
      const double half = height + width, area = height * width;
      const double b = (half - std::sqrt(half * half - 4 * share * area)) / 4;
      const double centre = (height - 2 * b - 2 * band) * (width - 2 * b - 2 * band);
      const double edge = area * (1 - share) - centre;
      const double expected = (centre * u + edge * edge_u + share * area * frame_u) / area;
      comparison.compare_near("centre " + std::to_string(u) + ", width " + std::to_string(width), expected,
                              performance(panes).u_value, kTolerance);
    }
  }
}

}  // namespace
}  // namespace tarn
