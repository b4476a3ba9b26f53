// Moist air, in SI units, by the equations of the ASHRAE Handbook of Fundamentals, chapter Psychrometrics.
#pragma once

namespace tarn {

inline constexpr double kKelvinAtZeroCelsius = 273.15;
inline constexpr double kPascalsPerPsi = 6894.757293, kFeetPerMetre = 1 / 0.3048;

constexpr double fahrenheit(double celsius) { return celsius * 1.8 + 32; }
constexpr double celsius(double fahrenheit) { return (fahrenheit - 32) / 1.8; }

/// Of water vapour, Pa, by Hyland and Wexler (1983): over ice below 0 C, over liquid water from there. For -100 to
/// 200 C.
double saturation_pressure(double celsius);

/// Mass of vapour per mass of dry air, from the vapour's and the whole pressure, Pa. No enhancement factor.
double humidity_ratio(double vapour_pressure, double pressure);

/// Mass of vapour per mass of moist air.
double specific_humidity(double vapour_pressure, double pressure);

/// Of the standard atmosphere, Pa, at an elevation, m.
double standard_pressure(double elevation);

/// Thermodynamic wet-bulb temperature, C, to 0.001 K.
double wet_bulb(double dry_bulb, double humidity_ratio, double pressure);

}  // namespace tarn
