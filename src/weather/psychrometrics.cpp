#include "weather/psychrometrics.h"

#include <cmath>

namespace tarn {
namespace {

constexpr double kMassRatio = 0.621945;  // of the molar masses of water and dry air

}  // namespace

double saturation_pressure(double celsius) {
  const double t = celsius + kKelvinAtZeroCelsius;
  if (celsius < 0) {
    return std::exp(-5.6745359e3 / t + 6.3925247 +
                    t * (-9.677843e-3 + t * (6.2215701e-7 + t * (2.0747825e-9 - t * 9.4840240e-13))) +
                    4.1635019 * std::log(t));
  }
  return std::exp(-5.8002206e3 / t + 1.3914993 + t * (-4.8640239e-2 + t * (4.1764768e-5 - t * 1.4452093e-8)) +
                  6.5459673 * std::log(t));
}

double humidity_ratio(double vapour_pressure, double pressure) {
  return kMassRatio * vapour_pressure / (pressure - vapour_pressure);
}

double specific_humidity(double vapour_pressure, double pressure) {
  const double ratio = humidity_ratio(vapour_pressure, pressure);
  return ratio / (1 + ratio);
}

double standard_pressure(double elevation) { return 101325 * std::pow(1 - 2.25577e-5 * elevation, 5.2559); }

namespace {

/// The humidity ratio of air with this dry-bulb and wet-bulb: the balance of enthalpies at the wick.
double humidity_ratio_over(double wet_bulb, double dry_bulb, double pressure) {
  const double saturated = humidity_ratio(saturation_pressure(wet_bulb), pressure);
  if (wet_bulb >= 0) {
    return ((2501 - 2.326 * wet_bulb) * saturated - 1.006 * (dry_bulb - wet_bulb)) /
           (2501 + 1.86 * dry_bulb - 4.186 * wet_bulb);
  }
  return ((2830 - 0.24 * wet_bulb) * saturated - 1.006 * (dry_bulb - wet_bulb)) /
         (2830 + 1.86 * dry_bulb - 2.1 * wet_bulb);
}

}  // namespace

double wet_bulb(double dry_bulb, double humidity_ratio, double pressure) {
  double low = dry_bulb - 60;
  double high = dry_bulb;
  while (high - low > 0.001) {
    const double middle = (low + high) / 2;
    (humidity_ratio_over(middle, dry_bulb, pressure) < humidity_ratio ? low : high) = middle;
  }
  return high;
}

}  // namespace tarn
