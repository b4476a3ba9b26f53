#include "pictures/line_chart.h"

#include <algorithm>
#include <cmath>

#include "pictures/svg.h"

namespace tarn::svg {
namespace {

constexpr double kKeyWide = 78, kKeyHigh = 16, kAxisHigh = 44;

size_t keys_in_a_row(const LineChart& chart) { return std::max<size_t>(1, static_cast<size_t>(chart.wide / kKeyWide)); }

std::string axes(const LineChart& chart, const Scale& x, const Scale& y) {
  const double bottom = chart.top + chart.high;
  std::string out;
  x.each_mark([&](double value) {
    out += path("M" + number(x.at(value)) + " " + number(bottom) + "v5", "stroke=\"#333\"") +
           label(x.at(value), bottom + 17, number(value, decimals_of(x)), "text-anchor=\"middle\"");
  });
  y.each_mark([&](double value) {
    out += path("M" + number(chart.left) + " " + number(y.at(value)) + "h" + number(chart.wide), "stroke=\"#ddd\"") +
           label(chart.left - 7, y.at(value) + 4, number(value, decimals_of(y)), "text-anchor=\"end\"");
  });
  return out +
         path("M" + number(chart.left) + " " + number(chart.top) + "V" + number(bottom) + "h" + number(chart.wide),
              "fill=\"none\" stroke=\"#333\"") +
         label(chart.left + chart.wide / 2, bottom + 33, escaped(chart.across),
               "text-anchor=\"middle\" fill=\"#444\"") +
         label(chart.left - 7, chart.top - 10, escaped(chart.up), "fill=\"#444\"") +
         label(chart.left - 7, chart.top - 28, escaped(chart.title), "font-weight=\"bold\"");
}

std::string key(const LineChart& chart) {
  std::string out;
  for (size_t i = 0; i < chart.lines.size(); ++i) {
    const double left = chart.left + static_cast<double>(i % keys_in_a_row(chart)) * kKeyWide;
    const double y =
        chart.top + chart.high + kAxisHigh + kKeyHigh / 2 + static_cast<double>(i / keys_in_a_row(chart)) * kKeyHigh;
    out += path("M" + number(left) + " " + number(y - 4) + "h14",
                "stroke-width=\"3\" stroke=\"" + chart.lines[i].color + "\"") +
           label(left + 18, y, escaped(chart.lines[i].name), "font-size=\"11\"");
  }
  return out;
}

/// Damaged files have values that are no numbers, or of which no axis has any use.
bool can_be_drawn(const Line::Point& point) {
  constexpr double kMost = 1e9;
  return std::abs(point.x) < kMost && std::abs(point.y) < kMost;
}

}  // namespace

std::string drawn(const LineChart& chart) {
  double least_x = HUGE_VAL, most_x = -HUGE_VAL, least = HUGE_VAL, most = -HUGE_VAL;
  for (const Line& line : chart.lines) {
    for (const Line::Point& point : line.points) {
      if (!can_be_drawn(point)) continue;
      least_x = std::min(least_x, point.x);
      most_x = std::max(most_x, point.x);
      least = std::min(least, point.y);
      most = std::max(most, point.y);
    }
  }
  if (least_x > most_x) return label(chart.left, chart.top, escaped(chart.title) + ": no values that can be drawn");
  if (chart.from_zero) least = std::min(least, 0.0);
  const Scale x = scale_around(least_x, std::max(most_x, least_x + 1), 5, chart.left, chart.left + chart.wide);
  const Scale y = scale_around(least, std::max(most, least + 1e-3), 5, chart.top + chart.high, chart.top);
  std::string out = axes(chart, x, y);
  for (const Line& line : chart.lines) {
    std::string way, dots;
    for (const Line::Point& point : line.points) {
      if (!can_be_drawn(point)) continue;
      const std::string at = number(x.at(point.x), 2) + " " + number(y.at(point.y), 2);
      way += (way.empty() ? "M" : "L") + at;
      dots += "M" + at + "h0";
    }
    out += path(way, "fill=\"none\" stroke-width=\"1.8\" stroke=\"" + line.color + "\"") +
           path(dots, "fill=\"none\" stroke-width=\"5\" stroke-linecap=\"round\" stroke=\"" + line.color + "\"");
  }
  return out + key(chart);
}

double height_of(const LineChart& chart) {
  const auto rows = static_cast<double>((chart.lines.size() + keys_in_a_row(chart) - 1) / keys_in_a_row(chart));
  return chart.high + kAxisHigh + kKeyHigh * rows;
}

}  // namespace tarn::svg
