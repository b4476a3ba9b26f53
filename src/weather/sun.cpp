#include "weather/sun.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tarn {
namespace {

constexpr double kRadians = std::numbers::pi / 180;

/// The angle of the earth's orbit, 0 on 1 January.
double year_angle(int day) { return 2 * std::numbers::pi * (day - 1) / 365; }

/// Radians. Series of Spencer (1971).
double declination(double g) {
  return 0.006918 - 0.399912 * std::cos(g) + 0.070257 * std::sin(g) - 0.006758 * std::cos(2 * g) +
         0.000907 * std::sin(2 * g) - 0.002697 * std::cos(3 * g) + 0.00148 * std::sin(3 * g);
}

/// Equation of time: how far the sun is ahead of the clock, minutes. The same source.
double equation_of_time(double g) {
  return 229.18 * (0.000075 + 0.001868 * std::cos(g) - 0.032077 * std::sin(g) - 0.014615 * std::cos(2 * g) -
                   0.040849 * std::sin(2 * g));
}

constexpr int kSteps = 6;  // in an hour

}  // namespace

double sine_of_altitude(const SunSite& site, int day, double time) {
  const double g = year_angle(day);
  const double delta = declination(g);
  const double minutes = 4 * (site.longitude - site.meridian) + equation_of_time(g);
  const double hour_angle = (15 * (time - 12) + minutes / 4) * kRadians;
  const double phi = site.latitude * kRadians;
  return std::sin(phi) * std::sin(delta) + std::cos(phi) * std::cos(delta) * std::cos(hour_angle);
}

double greatest_sine(const SunSite& site, int day, int hour) {
  double greatest = -1;
  for (int step = 0; step <= kSteps; ++step)
    greatest = std::max(greatest, sine_of_altitude(site, day, hour - 1 + step / double{kSteps}));
  return greatest;
}

double mean_sine(const SunSite& site, int day, int hour) {
  double sum = 0;
  for (int step = 0; step < kSteps; ++step)
    sum += std::max(0.0, sine_of_altitude(site, day, hour - 1 + (step + 0.5) / kSteps));
  return sum / kSteps;
}

double solar_outside_air(int day) {
  constexpr double kSolarConstant = 1367 * 0.316998;  // Btu/(hr.ft2) of W/m2
  return kSolarConstant * (1 + 0.033 * std::cos(2 * std::numbers::pi * day / 365));
}

}  // namespace tarn
