// Where the sun stands, by day and hour of local standard time.
#pragma once

namespace tarn {

struct SunSite {
  double latitude;   // deg, north positive
  double longitude;  // deg, east positive
  double meridian;   // of the time zone, deg, east positive
};

/// Sine of the sun's altitude at a time of a day, 0 to 24 hours.
double sine_of_altitude(const SunSite& site, int day, double time);
/// Its greatest value during an hour, which ends at `hour`.
double greatest_sine(const SunSite& site, int day, int hour);
/// Its mean during an hour, 0 while the sun is down.
double mean_sine(const SunSite& site, int day, int hour);
/// Solar radiation outside the air, normal to the sun, Btu/(hr.ft2).
double solar_outside_air(int day);

}  // namespace tarn
