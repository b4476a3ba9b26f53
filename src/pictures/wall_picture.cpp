#include <algorithm>
#include <array>
#include <cmath>

#include "base/measures.h"
#include "envelope/transmission.h"
#include "pictures/svg.h"
#include "tarn/construction.h"
#include "tarn/pictures.h"

namespace tarn {
namespace {

using svg::label;
using svg::number;
using svg::path;
using svg::shortened;

constexpr double kPi = 3.14159265358979323846;
constexpr double kWidth = 1100, kHeight = 800, kLeft = 130, kRight = 660;
constexpr double kSectionTop = 110, kSectionBottom = 390, kPulseTop = 530, kPulseBottom = 740;
constexpr double kListLeft = 700, kListRight = 1070;  // of the list of layers beside the section
constexpr double kFilm = 30;                          // the width of a layer without thickness
constexpr double kNumber = 17;                        // from one slot number to the next, at least
constexpr double kSlice = 5;                          // the width of a slice of a layer, for the temperatures in it
constexpr double kInside = 75;                        // F
constexpr size_t kDay = 24;

/// A sunny day: the temperature outside over that inside, F, with the sun's part in it.
constexpr std::array<double, kDay> kSunny{0,  0.3,  1.3,  2.9,  5,  7.4,  10, 20.4, 30, 38.3, 44.6, 48.6,
                                          50, 48.6, 44.6, 38.3, 30, 20.4, 10, 7.4,  5,  2.9,  1.3,  0.3};
struct Hour {
  int hour;
  const char* color;
};
constexpr Hour kShownHours[]{{6, "#1f77b4"}, {12, "#d62728"}, {18, "#e6820e"}, {24, "#6a3d9a"}};

struct Drawn {
  int slot;
  std::string name;
  double inches, resistance, capacity;
  double from = 0, to = 0;  // on the page

  double middle() const { return (from + to) / 2; }
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
    all.push_back(
        {slot, layer.Name.trimmed(), std::max(0.0, double{layer.ThicknessInches()}), of.resistance, of.capacity});
    inches += all.back().inches;
    if (all.back().inches == 0) fixed += kFilm;
  }
  const double scale = inches > 0 ? (kRight - kLeft - fixed) / inches : 0;
  const double film = inches > 0 ? kFilm : (kRight - kLeft) / static_cast<double>(all.size());
  double at = kLeft;
  for (Drawn& each : all) {
    each.from = at;
    at += each.inches > 0 ? each.inches * scale : film;
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
      const double width = layer.to - layer.from;
      const int count = static_cast<int>(std::ceil(std::max(width / kSlice, 1.0)));
      for (int i = 1; i <= count; ++i) {
        slab.push_back({layer.resistance / count, layer.capacity / count});
        borders.push_back(layer.from + width * i / count);
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

std::string box(double left, double top, double width, double height, const Drawn& layer) {
  return "<rect x=\"" + number(left) + "\" y=\"" + number(top) + "\" width=\"" + number(width, 2) + "\" height=\"" +
         number(height) + "\" fill=\"" + fill_of(layer) + "\" stroke=\"#555\"" +
         (layer.capacity == 0 ? " stroke-dasharray=\"4 3\"" : "") + "/>\n";
}

/// Where the slot numbers stand below the section: below their layers, but never closer to each other than kNumber.
std::vector<double> number_places(const std::vector<Drawn>& layers) {
  std::vector<double> places;
  for (const Drawn& each : layers)
    places.push_back(places.empty() ? each.middle() : std::max(each.middle(), places.back() + kNumber));
  double most = kRight;
  for (size_t i = places.size(); i-- > 0; most = places[i] - kNumber) places[i] = std::min(places[i], most);
  return places;
}

std::string section(const std::vector<Drawn>& layers) {
  std::string out;
  const std::vector<double> places = number_places(layers);
  for (size_t i = 0; i < layers.size(); ++i) {
    const Drawn& each = layers[i];
    out += box(each.from, kSectionTop, each.to - each.from, kSectionBottom - kSectionTop, each);
    out += path("M" + number(each.middle()) + " " + number(kSectionBottom + 2) + "v4L" + number(places[i]) + " " +
                    number(kSectionBottom + 13) + "v3",
                "fill=\"none\" stroke=\"#999\"");
    out += label(places[i], kSectionBottom + 28, std::to_string(each.slot), "text-anchor=\"middle\" fill=\"#444\"");
  }
  return out + label(kLeft, kSectionTop - 10, "outside", "fill=\"#444\"") +
         label(kRight, kSectionTop - 10, "inside", "text-anchor=\"end\" fill=\"#444\"") +
         label(kLeft - 12, kSectionBottom + 28, "slot", "text-anchor=\"end\" fill=\"#444\"");
}

/// Four digits that count, and no more decimals than five.
std::string digits(double value) { return number(value, value < 0.1 ? 5 : value < 1 ? 3 : value < 100 ? 2 : 1); }

/// The layers by slot, outside first: the name, the thickness and the resistance.
std::string layer_list(const std::vector<Drawn>& layers, const Measures& in) {
  constexpr double kLine = 28, kSwatch = 16, kInches = kListRight - 60;
  constexpr size_t kLetters = 32;
  const std::string right = "text-anchor=\"end\"", grey = " fill=\"#666\"";
  double y = kSectionTop - 10;
  std::string out = label(kListLeft + 46, y, "layer", grey) +
                    label(kInches, y, std::string(in.unit("in")), right + grey) +
                    label(kListRight, y, "R-value", right + grey);
  for (const Drawn& each : layers) {
    y += kLine;
    out += box(kListLeft, y - 12, kSwatch, kSwatch, each) + label(kListLeft + 38, y, std::to_string(each.slot), right) +
           label(kListLeft + 46, y, svg::escaped(shortened(each.name, kLetters)), "font-size=\"11\"") +
           (each.inches > 0 ? label(kInches, y, digits(in.value(each.inches, "in")), right) : "") +
           label(kListRight, y, digits(in.value(each.resistance, "hr.ft2.F/Btu")), right);
  }
  return out;
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

std::string temperature_lines(const std::vector<Drawn>& layers, const Measures& in) {
  const Slices slices(layers);
  const auto by_hour = temperatures(slices);
  const svg::Scale scale = svg::scale_around(kInside, kInside + kSunny[12], 5, kSectionBottom, kSectionTop);
  std::string out;
  constexpr double kKey = kSectionBottom + 58;
  double legend = kLeft;
  for (const auto& [hour, color] : kShownHours) {
    const std::vector<double>& values = by_hour[static_cast<size_t>(hour) % kDay];
    std::string way;
    for (size_t i = 0; i < values.size(); ++i)
      way += (i == 0 ? "M" : "L") + number(slices.borders[i]) + " " + number(scale.at(values[i])) + " ";
    out += path(way, "fill=\"none\" stroke=\"" + std::string(color) + "\" stroke-width=\"2\"");
    out += path("M" + number(legend) + " " + number(kKey - 4) + "h24",
                "stroke=\"" + std::string(color) + "\" stroke-width=\"3\"") +
           label(legend + 30, kKey, std::to_string(hour) + " h");
    legend += 76;
  }
  out += label(legend + 4, kKey,
               "temperatures on a repeated sunny design day: outside, with the sun, " + in.figure(kInside, "F") +
                   " to " + in.measure(kInside + kSunny[12], "F") + ", inside " + in.measure(kInside, "F"),
               "fill=\"#444\"");
  return out + temperature_axis(scale);
}

/// The flux at the inside for an hour of 1 F more outside, by the stored terms.
struct Pulse {
  static constexpr size_t kLongest = size_t{24} * 60;
  std::vector<double> flux;  // by hour
  double whole = 0;          // what comes in at last

  explicit Pulse(const CA_ConstructionAssly& construction) {
    constexpr double kPassed = 0.98;  // of the heat
    double sum_d = 0, passed = 0;
    for (int i = 1; i <= construction.CoeffUBound(); ++i) sum_d += double{construction.DTrans(i)};
    whole = construction.CTrans / sum_d;
    while (flux.size() < kLongest && (flux.size() < 12 || passed < kPassed * whole)) {
      const size_t n = flux.size();
      double now = n < 12 ? double{construction.BTrans(static_cast<int>(n) + 1)} : 0;
      for (size_t i = 1; i < 12 && i <= n; ++i)
        now -= double{construction.DTrans(static_cast<int>(i) + 1)} * flux[n - i];
      passed += now;
      flux.push_back(now);
    }
  }

  std::string summary() const {
    const auto peak = std::max_element(flux.begin(), flux.end()) - flux.begin();
    double passed = 0;
    size_t hour = 0;
    while (hour < flux.size() && passed < whole / 2) passed += flux[hour++];
    const std::string by = "by hour " + std::to_string(hour > 0 ? hour - 1 : 0);
    return "Heat at the inside after a one-hour pulse: most at hour " + std::to_string(peak) +
           (passed < whole / 2 ? ", less than half of it " : ", half of it through ") + by;
  }
};

/// So many hours from mark to mark that there is room for their numbers.
size_t hours_between_marks(size_t hours) {
  constexpr size_t kMarks = 20;
  for (const size_t each : {1, 2, 3, 6, 12, 24, 48}) {
    if (hours <= each * kMarks) return each;
  }
  return 96;
}

/// Bars, in thousandths so that the axis has short numbers.
std::string pulse_chart(const CA_ConstructionAssly& construction) {
  constexpr double kWattPerBtu = 3.15459;
  const Pulse pulse(construction);
  const std::vector<double>& flux = pulse.flux;
  const svg::Scale up =
      svg::scale_around(0, *std::max_element(flux.begin(), flux.end()) * 1000, 4, kPulseBottom, kPulseTop);
  const double width = (kListRight - kLeft) / static_cast<double>(flux.size());
  std::string bars;
  for (size_t i = 0; i < flux.size(); ++i) {
    const double top = up.at(std::max(flux[i] * 1000, 0.0));
    bars += "M" + number(kLeft + width * static_cast<double>(i), 2) + " " + number(kPulseBottom) + "V" +
            number(top, 2) + "h" + number(std::max(width * 0.85, 0.5), 2) + "V" + number(kPulseBottom) + "Z";
  }
  std::string out =
      path(bars, "fill=\"#7a8fa6\"") +
      path("M" + number(kLeft) + " " + number(kPulseBottom) + "H" + number(kListRight), "stroke=\"#333\"");
  for (size_t hour = 0; hour < flux.size(); hour += hours_between_marks(flux.size())) {
    out += label(kLeft + width * (static_cast<double>(hour) + 0.42), kPulseBottom + 16, std::to_string(hour),
                 "text-anchor=\"middle\"");
  }
  out += label((kLeft + kListRight) / 2, kPulseBottom + 36,
               "hours after an hour of 1 F more outside; thousandths of Btu/(hr.ft2), and mW/m2 in grey",
               "text-anchor=\"middle\" fill=\"#444\"");
  out += label(kLeft, kPulseTop - 38, pulse.summary(), "font-size=\"14\" font-weight=\"bold\"");
  const int decimals = std::max(0, static_cast<int>(std::ceil(1 - std::log10(up.step * kWattPerBtu))));
  return out + svg::upright_axis(up, kLeft - 4, -1, {"mBtu", "mW", kWattPerBtu, 0, decimals});
}

}  // namespace

std::string wall_picture(CA_ConstructionAssly& construction, UnitSystem units) {
  const Measures in(units);
  const std::vector<Drawn> layers = drawn_layers(construction);
  const std::string name = construction.Name.trimmed();
  const std::string facts = "U " + in.quantity(construction.OverallUValue, "Btu/(hr.ft2.F)") + ", " +
                            in.quantity(construction.OverallWeight, "lb/ft2") + ", " +
                            in.quantity(construction.GetTotalThickness(), "in") +
                            "; layers to scale, the darker the more heat they hold; those without mass dashed";
  return svg::page(
      kWidth, kHeight, kLeft, name + ": section and response", shortened(name, 80), facts,
      section(layers) + layer_list(layers, in) + temperature_lines(layers, in) + pulse_chart(construction),
      construction.coefficients_are_stale()
          ? "the transfer functions, and the heat after a pulse, are not those of these layers; save the construction"
          : "");
}

}  // namespace tarn
