// A year of weather as a picture: four panels of 24 hours by 365 days, a scale in both units beside each.
#include <array>
#include <cmath>
#include <functional>
#include <vector>

#include "pictures/svg.h"
#include "tarn/hourly_file.h"
#include "tarn/pictures.h"
#include "weather/calendar.h"
#include "weather/psychrometrics.h"

namespace tarn {
namespace {

using svg::color_of;
using svg::label;
using svg::number;
using svg::Ramp;

constexpr double kDayWidth = 2.4, kHourHeight = 7;
constexpr double kMapLeft = 64, kMapTop = 74, kPanelGap = 62;
constexpr double kMapWide = kDays * kDayWidth, kMapHigh = kHours * kHourHeight;
constexpr double kScaleLeft = kMapLeft + kMapWide + 24, kScaleWidth = 18;
constexpr double kPageWidth = kScaleLeft + kScaleWidth + 170;
constexpr size_t kShades = 32;

/// Color ramps: cold to hot with the lightest in the middle; light to dark; dark to light.
const Ramp kTemperature{{49, 54, 149},   {69, 117, 180}, {116, 173, 209}, {171, 217, 233}, {224, 243, 248},
                        {254, 224, 144}, {253, 174, 97}, {244, 109, 67},  {215, 48, 39},   {165, 0, 38}};
const Ramp kHumidity{{247, 252, 240}, {224, 243, 219}, {204, 235, 197}, {168, 221, 181}, {123, 204, 196},
                     {78, 179, 211},  {43, 140, 190},  {8, 104, 172},   {8, 64, 129}};
const Ramp kSolar{{20, 20, 40},   {66, 10, 104},  {147, 38, 103}, {188, 55, 84},  {221, 81, 58},
                  {243, 120, 25}, {252, 165, 10}, {246, 215, 70}, {252, 255, 164}};

struct Panel {
  std::string title, unit, si_unit;
  const Ramp& ramp;
  double least, most, step;  // of the scale, in IP units
  int decimals, si_decimals;
  std::function<double(int day, int hour)> value;  // NaN for a missing one
  std::function<double(double)> si;
};

size_t shade_of(const Panel& panel, double value) {
  const double share = (value - panel.least) / (panel.most - panel.least);
  return static_cast<size_t>(std::clamp(share * double{kShades}, 0.0, double{kShades} - 1));
}

/// One path a shade: a stroke for every run of hours of a day.
std::string cells(const Panel& panel, double top) {
  std::array<std::string, kShades> paths;
  for (int day = 1; day <= kDays; ++day) {
    for (int hour = 1; hour <= kHours;) {
      const double value = panel.value(day, hour);
      int end = hour + 1;
      if (std::isnan(value)) {
        hour = end;
        continue;
      }
      const size_t shade = shade_of(panel, value);
      while (end <= kHours && !std::isnan(panel.value(day, end)) && shade_of(panel, panel.value(day, end)) == shade)
        ++end;
      // Hour 1 is at the bottom.
      const double y = top + kMapHigh - (hour - 1) * kHourHeight;
      paths[shade] += "M" + number(kMapLeft + (day - 0.5) * kDayWidth) + " " + number(y, 0) + "v" +
                      number(-(end - hour) * kHourHeight, 0);
      hour = end;
    }
  }
  std::string out;
  for (size_t shade = 0; shade < kShades; ++shade) {
    if (paths[shade].empty()) continue;
    out += "<path stroke=\"" + color_of(panel.ramp, (static_cast<double>(shade) + 0.5) / double{kShades}) + "\" d=\"" +
           paths[shade] + "\"/>\n";
  }
  return out;
}

std::string axes(double top) {
  std::string out;
  for (int month = 1; month <= 12; ++month) {
    const double left = kMapLeft + kDaysBefore[static_cast<size_t>(month) - 1] * kDayWidth;
    if (month > 1)
      out += "<path stroke=\"#fff\" stroke-opacity=\".35\" stroke-width=\"1\" d=\"M" + number(left) + " " +
             number(top) + "v" + number(kMapHigh) + "\"/>\n";
    out += label(left + days_in(month) * kDayWidth / 2, top + kMapHigh + 15,
                 std::string(kMonthNames[static_cast<size_t>(month) - 1].substr(0, 3)), "text-anchor=\"middle\"");
  }
  for (int clock = 0; clock <= 24; clock += 6) {
    out += label(kMapLeft - 8, top + kMapHigh - clock * kHourHeight + 4, std::to_string(clock) + " h",
                 "text-anchor=\"end\"");
  }
  return out;
}

std::string scale(const Panel& panel, double top) {
  std::string out;
  const double high = kMapHigh / double{kShades};
  for (size_t shade = 0; shade < kShades; ++shade) {
    out += "<rect x=\"" + number(kScaleLeft) + "\" y=\"" +
           number(top + kMapHigh - static_cast<double>(shade + 1) * high, 2) + "\" width=\"" + number(kScaleWidth) +
           "\" height=\"" + number(high + 0.3, 2) + "\" fill=\"" +
           color_of(panel.ramp, (static_cast<double>(shade) + 0.5) / double{kShades}) + "\"/>\n";
  }
  const double right = kScaleLeft + kScaleWidth;
  out += label(right + 52, top - 16, panel.unit, "text-anchor=\"end\"") +
         label(right + 126, top - 16, panel.si_unit, "text-anchor=\"end\"");
  const auto steps = static_cast<int>((panel.most - panel.least) / panel.step + 0.01);
  for (int step = 0; step <= steps; ++step) {
    const double value = panel.least + step * panel.step;
    const double y = top + kMapHigh * (1 - (value - panel.least) / (panel.most - panel.least));
    out += "<path stroke=\"#333\" stroke-width=\"1\" d=\"M" + number(right) + " " + number(y) + "h5\"/>\n" +
           label(right + 52, y + 4, number(value, panel.decimals), "text-anchor=\"end\"") +
           label(right + 126, y + 4, number(panel.si(value), panel.si_decimals), "text-anchor=\"end\" fill=\"#666\"");
  }
  return out;
}

std::string drawn(const Panel& panel, double top) {
  return label(kMapLeft, top - 8, panel.title, "font-weight=\"bold\"") + "<rect x=\"" + number(kMapLeft) + "\" y=\"" +
         number(top) + "\" width=\"" + number(kMapWide) + "\" height=\"" + number(kMapHigh) + "\" fill=\"#bbb\"/>\n" +
         "<g fill=\"none\" stroke-width=\"" + number(kDayWidth + 0.15, 2) + "\">\n" + cells(panel, top) + "</g>\n" +
         axes(top) + scale(panel, top);
}

/// Whole steps around the values of a quantity.
struct Range {
  double least = 1e9, most = -1e9;
  void add(double value) {
    if (std::isnan(value)) return;
    least = std::min(least, value);
    most = std::max(most, value);
  }
  void widen(double step) {
    if (least > most) least = most = 0;
    least = std::floor(least / step) * step;
    most = std::max(std::ceil(most / step) * step, least + step);
  }
};

Panel panel_of(std::string title, std::string unit, std::string si_unit, const Ramp& ramp, double step, int decimals,
               int si_decimals, std::function<double(int, int)> value, std::function<double(double)> si) {
  Range range;
  for (int day = 1; day <= kDays; ++day) {
    for (int hour = 1; hour <= kHours; ++hour) range.add(value(day, hour));
  }
  range.widen(step);
  return {std::move(title), std::move(unit), std::move(si_unit), ramp,         range.least, range.most, step,
          decimals,         si_decimals,     std::move(value),   std::move(si)};
}

}  // namespace

std::string weather_picture(const HW1ReaderWriter& year) {
  constexpr double kGramsPerKilogram = 1000, kWattsPerSquareMetre = 1 / 0.316998;
  const auto known = [](double value) { return value == kMissingSolar ? std::nan("") : value; };
  const auto watts = [](double value) { return value * kWattsPerSquareMetre; };
  const std::array panels{panel_of(
                              "Dry-bulb", "F", "C", kTemperature, 10, 0, 1,
                              [&](int d, int h) { return double{year.Day(d).DB(h)}; }, celsius),
                          panel_of(
                              "Specific humidity", "lb/lb", "g/kg", kHumidity, 0.002, 3, 0,
                              [&](int d, int h) { return double{year.Day(d).SH(h)}; },
                              [](double value) { return value * kGramsPerKilogram; }),
                          panel_of(
                              "Direct normal solar", "Btu/hr.ft\u00B2", "W/m\u00B2", kSolar, 50, 0, 0,
                              [&](int d, int h) { return known(year.Day(d).IDN(h)); }, watts),
                          panel_of(
                              "Diffuse solar on the horizontal", "Btu/hr.ft\u00B2", "W/m\u00B2", kSolar, 25, 0, 0,
                              [&](int d, int h) { return known(year.Day(d).IDIFF(h)); }, watts)};
  const double height = kMapTop + panels.size() * (kMapHigh + kPanelGap);
  const std::string place = year.CityName.trimmed() + ", " + year.LocationName.trimmed();
  const std::string site = "latitude " + number(year.Latitude, 2) + ", longitude " + number(year.Longitude, 2) + ", " +
                           number(year.Elevation, 0) + " ft (" + number(year.Elevation * 0.3048, 0) + " m); " +
                           year.DataSource.trimmed() +
                           "; each column a day, hours of local standard time upwards; grey is missing";
  std::string content;
  double top = kMapTop;
  for (const Panel& panel : panels) {
    content += drawn(panel, top);
    top += kMapHigh + kPanelGap;
  }
  return svg::page(kPageWidth, height, kMapLeft, place + ": a year of hourly weather", place, site, content);
}

}  // namespace tarn
