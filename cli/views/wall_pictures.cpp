#include "cli/views/wall_pictures.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "cli/views/svg.h"
#include "envelope/transmission.h"

namespace tarn::cli {
namespace {

using svg::label;
using svg::number;
using svg::path;

constexpr double kPi = 3.14159265358979323846;
constexpr double kWidth = 960, kHeight = 800, kLeft = 130, kRight = 920;
constexpr double kSectionTop = 110, kSectionBottom = 400, kPulseTop = 520, kPulseBottom = 740;
constexpr double kFilm = 34;    // the width of a layer without thickness
constexpr size_t kSlices = 12;  // of a layer, for the temperatures in it
constexpr double kInside = 75;  // F
constexpr size_t kDay = 24;

/// A sunny day: the temperature outside over that inside, F, with the sun's part in it.
constexpr std::array<double, kDay> kSunny{0,  0.3,  1.3,  2.9,  5,  7.4,  10, 20.4, 30, 38.3, 44.6, 48.6,
                                          50, 48.6, 44.6, 38.3, 30, 20.4, 10, 7.4,  5,  2.9,  1.3,  0.3};
struct Hour {
  int hour;
  const char* color;
};
constexpr Hour kHours[]{{6, "#1f77b4"}, {12, "#d62728"}, {18, "#e6820e"}, {24, "#6a3d9a"}};

struct Drawn {
  int slot;
  std::string name;
  double inches, resistance, capacity;
  double from = 0, to = 0;  // on the page
};

/// Layers to scale, but for those without a thickness.
std::vector<Drawn> drawn_layers(CA_ConstructionAssly& construction) {
  const std::vector<SlabLayer> slab = construction.slab();
  std::vector<Drawn> all;
  double inches = 0, fixed = 0;
  for (int slot = 1; slot <= CA_ConstructionAssly::kLayers; ++slot) {
    CA_Layer& layer = construction.layer(slot);
    if (!layer.LayerUsed) continue;
    const SlabLayer& of = slab[all.size()];
    all.push_back({slot, layer.Name.trimmed(), double{layer.ThicknessInches()}, of.resistance, of.capacity});
    inches += all.back().inches;
    if (all.back().inches <= 0) fixed += kFilm;
  }
  const double scale = inches > 0 ? (kRight - kLeft - fixed) / inches : 0;
  double at = kLeft;
  for (Drawn& each : all) {
    each.from = at;
    at += each.inches > 0 ? each.inches * scale : kFilm;
    each.to = at;
  }
  return all;
}

/// Light insulation, heavy masonry: the darker, the more heat a layer holds.
std::string fill_of(const Drawn& layer) {
  if (layer.capacity == 0) return "#ffffff";
  const double per_foot = layer.capacity / std::max(layer.inches / 12, 1e-6);  // Btu/(ft3.F)
  const double shade = std::clamp(per_foot / 32, 0.0, 1.0);
  const int red = static_cast<int>(252 - 62 * shade), green = static_cast<int>(246 - 76 * shade),
            blue = static_cast<int>(225 - 85 * shade);
  char text[8];
  std::snprintf(text, sizeof text, "#%02x%02x%02x", red, green, blue);
  return text;
}

/// Slices of the layers, and where their borders are on the page.
struct Slices {
  std::vector<SlabLayer> slab;
  std::vector<double> borders{kLeft};

  explicit Slices(const std::vector<Drawn>& layers) {
    for (const Drawn& layer : layers) {
      for (size_t i = 1; i <= kSlices; ++i) {
        slab.push_back({layer.resistance / kSlices, layer.capacity / kSlices});
        borders.push_back(layer.from + (layer.to - layer.from) * static_cast<double>(i) / kSlices);
      }
    }
  }
};

/// Temperatures at the borders by hour of a repeated sunny day, of its mean and its harmonics.
std::array<std::vector<double>, kDay> temperatures(const Slices& slices) {
  const Transmission transmission(slices.slab);
  std::array<std::vector<double>, kDay> out;
  out.fill(std::vector<double>(slices.borders.size(), kInside));
  for (size_t k = 0; k <= kDay / 2; ++k) {
    const double frequency = 2 * kPi * static_cast<double>(k) / kDay;
    Complex harmonic = 0;
    for (size_t n = 0; n < kDay; ++n) harmonic += kSunny[n] * std::polar(1.0, -frequency * static_cast<double>(n));
    harmonic *= (k == 0 || k == kDay / 2 ? 1.0 : 2.0) / kDay;
    const std::vector<Complex> ratios = transmission.temperatures({0, std::max(frequency, 1e-9)});
    for (size_t n = 0; n < kDay; ++n) {
      const Complex now = harmonic * std::polar(1.0, frequency * static_cast<double>(n));
      for (size_t i = 0; i < ratios.size(); ++i) out[n][i] += std::real(ratios[i] * now);
    }
  }
  return out;
}

std::string section(const std::vector<Drawn>& layers) {
  std::string out;
  for (size_t i = 0; i < layers.size(); ++i) {
    const Drawn& each = layers[i];
    const double width = each.to - each.from, middle = (each.from + each.to) / 2;
    out += "<rect x=\"" + number(each.from) + "\" y=\"" + number(kSectionTop) + "\" width=\"" + number(width) +
           "\" height=\"" + number(kSectionBottom - kSectionTop) + "\" fill=\"" + fill_of(each) + "\" stroke=\"#555\"" +
           (each.capacity == 0 ? " stroke-dasharray=\"4 3\"" : "") + "/>\n";
    const std::string name = svg::escaped(each.name.empty() ? "slot " + std::to_string(each.slot) : each.name);
    const std::string size = each.inches > 0 ? number(each.inches, each.inches < 1 ? 2 : 1) + " in" : "no thickness";
    const std::string resistance = "R-" + number(each.resistance, each.resistance < 10 ? 2 : 1);
    // Upright where there is room for a line; the number below stands in the list of layers.
    const double foot = kSectionBottom - 8;
    out += "<text transform=\"translate(" + number(middle + 4) + "," + number(foot) +
           ") rotate(-90)\" font-size=\"11\" paint-order=\"stroke\" stroke=\"#fff\" stroke-width=\"3\" fill=\"#222\">" +
           (width >= 13 ? name + ", " + size + ", " + resistance : "") + "</text>\n";
    out += label(middle, kSectionBottom + 16, std::to_string(each.slot), "text-anchor=\"middle\" fill=\"#444\"");
  }
  return out + label(kLeft, kSectionTop - 10, "outside", "fill=\"#444\"") +
         label(kRight, kSectionTop - 10, "inside", "text-anchor=\"end\" fill=\"#444\"") +
         label(kLeft - 10, kSectionBottom + 16, "slot", "text-anchor=\"end\" fill=\"#444\"");
}

/// F, and C in grey beside them.
std::string temperature_axis(const svg::Scale& scale) {
  const double near = kLeft - 12, far = kLeft - 62, head = scale.to - 10;
  const std::string side = "text-anchor=\"end\"", grey = side + " fill=\"#666\"";
  std::string out = label(near, head, "F", side) + label(far, head, "C", grey);
  scale.each_mark([&](double value) {
    const double y = scale.at(value);
    out += path("M" + number(kLeft - 4) + " " + number(y) + "h-5", "stroke=\"#333\"") +
           label(near, y + 4, number(value, 0), side) + label(far, y + 4, number((value - 32) / 1.8), grey);
  });
  return out;
}

std::string temperature_lines(const std::vector<Drawn>& layers) {
  const Slices slices(layers);
  const auto by_hour = temperatures(slices);
  const svg::Scale scale = svg::scale_around(kInside, kInside + kSunny[12], 5, kSectionBottom, kSectionTop);
  std::string out;
  double legend = kLeft;
  for (const auto& [hour, color] : kHours) {
    const std::vector<double>& values = by_hour[static_cast<size_t>(hour) % kDay];
    std::string way;
    for (size_t i = 0; i < values.size(); ++i)
      way += (i == 0 ? "M" : "L") + number(slices.borders[i]) + " " + number(scale.at(values[i])) + " ";
    out += path(way, "fill=\"none\" stroke=\"" + std::string(color) + "\" stroke-width=\"2\"");
    out += path("M" + number(legend) + " 442h24", "stroke=\"" + std::string(color) + "\" stroke-width=\"3\"") +
           label(legend + 30, 446, std::to_string(hour) + " h");
    legend += 84;
  }
  out += label(legend + 6, 446, "temperatures on a sunny day, repeated; inside " + number(kInside, 0) + " F",
               "fill=\"#444\"");
  return out + temperature_axis(scale);
}

/// The flux at the inside for an hour of 1 F more outside, by the stored terms.
std::vector<double> pulse_of(const CA_ConstructionAssly& construction) {
  constexpr size_t kLongest = 24 * 60;
  constexpr double kPassed = 0.98;  // of the heat
  const double u = construction.CTrans / [&] {
    double sum = 0;
    for (int i = 1; i <= construction.CoeffUBound(); ++i) sum += double{construction.DTrans(i)};
    return sum;
  }();
  std::vector<double> flux;
  double passed = 0;
  while (flux.size() < kLongest && (flux.size() < 12 || passed < kPassed * u)) {
    const size_t n = flux.size();
    double now = n < 12 ? double{construction.BTrans(static_cast<int>(n) + 1)} : 0;
    for (size_t i = 1; i < 12 && i <= n; ++i) now -= double{construction.DTrans(static_cast<int>(i) + 1)} * flux[n - i];
    passed += now;
    flux.push_back(now);
  }
  return flux;
}

std::string pulse_chart(const CA_ConstructionAssly& construction) {
  const std::vector<double> flux = pulse_of(construction);
  const auto peak = std::max_element(flux.begin(), flux.end());
  double total = 0, half = 0;
  for (const double each : flux) total += each;
  size_t half_hour = 0;
  while (half_hour < flux.size() && half < total / 2) half += flux[half_hour++];
  // In thousandths, so that the axis has short numbers.
  const svg::Scale up = svg::scale_around(0, *peak * 1000, 4, kPulseBottom, kPulseTop);
  const double width = (kRight - kLeft) / static_cast<double>(flux.size());
  std::string bars;
  for (size_t i = 0; i < flux.size(); ++i) {
    const double top = up.at(std::max(flux[i] * 1000, 0.0));
    bars += "M" + number(kLeft + width * static_cast<double>(i), 2) + " " + number(kPulseBottom) + "V" +
            number(top, 2) + "h" + number(std::max(width * 0.85, 0.5), 2) + "V" + number(kPulseBottom) + "Z";
  }
  std::string out = path(bars, "fill=\"#7a8fa6\"") +
                    path("M" + number(kLeft) + " " + number(kPulseBottom) + "H" + number(kRight), "stroke=\"#333\"");
  const size_t every = std::max<size_t>(1, (flux.size() / 12 + 5) / 6 * 6);
  for (size_t hour = 0; hour < flux.size(); hour += flux.size() <= 18 ? 1 : every) {
    out += label(kLeft + width * (static_cast<double>(hour) + 0.42), kPulseBottom + 16, std::to_string(hour),
                 "text-anchor=\"middle\"");
  }
  out += label((kLeft + kRight) / 2, kPulseBottom + 36,
               "hours after an hour of 1 F more outside; thousandths of Btu/(hr.ft2), and mW/m2 in grey",
               "text-anchor=\"middle\" fill=\"#444\"");
  out += label(kLeft, kPulseTop - 38,
               "Heat at the inside after a one-hour pulse: most at hour " + std::to_string(peak - flux.begin()) +
                   ", half of it through by hour " + std::to_string(half_hour > 0 ? half_hour - 1 : 0),
               "font-size=\"14\" font-weight=\"bold\"");
  return out + svg::upright_axis(up, kLeft - 4, -1, {"mBtu", "mW", 3.15459, 0, 2});
}

}  // namespace

std::string wall_picture(CA_ConstructionAssly& construction) {
  const std::vector<Drawn> layers = drawn_layers(construction);
  const std::string name = construction.Name.trimmed();
  const std::string facts = "U " + number(double{construction.OverallUValue}, 4) + " Btu/(hr.ft2.F), " +
                            number(double{construction.OverallWeight}) + " lb/ft2, " +
                            number(double{construction.GetTotalThickness()}, 2) + " in; layers to scale, films dashed";
  return svg::page(kWidth, kHeight, kLeft, name + ": section and response", name, facts,
                   section(layers) + temperature_lines(layers) + pulse_chart(construction));
}

}  // namespace tarn::cli
