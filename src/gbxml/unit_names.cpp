#include "gbxml/unit_names.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <string>

#include "tarn/base/error.h"
#include "tarn/base/units.h"

namespace tarn {
namespace {

/// The names of the enumerations of the gbXML schema 6.01, each as so many of a unit of the table of units.
struct NamedUnit {
  std::string_view name, unit;
  double count = 1;
};
constexpr NamedUnit kNames[]{
    {"Kilometers", "km"},
    {"Meters", "m"},
    {"Centimeters", "cm"},
    {"Millimeters", "mm"},
    {"Miles", "ft", 5280},
    {"Yards", "ft", 3},
    {"Feet", "ft"},
    {"Inches", "in"},
    {"SquareKilometers", "km2"},
    {"SquareMeters", "m2"},
    {"SquareCentimeters", "cm2"},
    {"SquareMillimeters", "mm2"},
    {"SquareMiles", "ft2", 5280.0 * 5280},
    {"SquareYards", "ft2", 9},
    {"SquareFeet", "ft2"},
    {"SquareInches", "in2"},
    {"CubicKilometers", "km3"},
    {"CubicMeters", "m3"},
    {"CubicCentimeters", "cm3"},
    {"CubicMillimeters", "mm3"},
    {"CubicMiles", "ft3", 5280.0 * 5280 * 5280},
    {"CubicYards", "ft3", 27},
    {"CubicFeet", "ft3"},
    {"CubicInches", "in3"},
    {"F", "F"},
    {"C", "C"},
    {"K", "K"},
    {"R", "R"},
    {"WPerSquareMeterK", "W/(m2.K)"},
    {"BtuPerHourSquareFtF", "Btu/(hr.ft2.F)"},
    {"SquareMeterKPerW", "m2.K/W"},
    {"HrSquareFtFPerBTU", "hr.ft2.F/Btu"},
    {"WPerCmC", "W/(cm.K)"},
    {"WPerMeterK", "W/(m.K)"},
    {"BtuPerHourFtF", "Btu/(hr.ft.F)"},
    {"GramsPerCubicCm", "g/cm3"},
    {"LbsPerCubicIn", "lb/in3"},
    {"LbsPerCubicFt", "lb/ft3"},
    {"KgPerCubicM", "kg/m3"},
    {"JPerKgK", "J/(kg.K)"},
    {"BTUPerLbF", "Btu/(lb.F)"},
    {"WattPerPerson", "W"},
    {"BtuPerHourPerson", "Btu/hr"},
    {"WattPerSquareMeter", "W/m2"},
    {"WattPerSquareFoot", "W/ft2"},
    {"CFMPerSquareFoot", "CFM/ft2"},
    {"LPerSecPerSquareM", "L/(s.m2)"},
    {"CubicMPerSecPerSquareM", "m3/(s.m2)"},
    {"CubicMPerHourPerSquareM", "m3/(hr.m2)"},
    {"CFM", "CFM"},
    {"CubicMPerHr", "m3/hr"},
    {"LPerSec", "L/s"},
    {"LPM", "L/min"},
    {"GPH", "gpm", 1 / 60.0},
    {"GPM", "gpm"},
    {"SquareFtPerPerson", "ft2"},
    {"SquareMPerPerson", "m2"},
    {"Watt", "W"},
    {"Kilowatt", "kW"},
    {"Horsepower", "hp"},
    {"BtuPerHour", "Btu/hr"},
    {"BTUPerHourSquareFootDegreeF", "Btu/(hr.ft2.F)"},
    {"WattsPerSecondSquareMeterDegreeC", "W/(m2.K)"},
    {"Percent", "%"},
    {"Fraction", "%", 100},
};

/// What one of a named unit is in another; texts of units are read once. NaN where it is of something else.
double factor(const NamedUnit& from, std::string_view to) {
  thread_local std::map<std::string, double, std::less<>> known[std::size(kNames)];
  auto& of_unit = known[&from - kNames];
  auto found = of_unit.find(to);
  if (found == of_unit.end()) {
    double one = std::numeric_limits<double>::quiet_NaN();
    try {
      one = from.count * convert(1, from.unit, to);
    } catch (const Error&) {  // of something else
    }
    found = of_unit.emplace(to, one).first;
  }
  return found->second;
}

}  // namespace

std::optional<double> from_gbxml_unit(double value, std::string_view name, std::string_view unit) {
  const auto* const from = std::ranges::find(kNames, name, &NamedUnit::name);
  if (from == std::end(kNames)) return {};
  const bool is_temperature = name.size() == 1;  // "F", "C", "K", "R"; these have zeros of their own
  if (unit == "F") return is_temperature ? std::optional(convert(value, from->unit, unit)) : std::nullopt;
  const double one = factor(*from, unit);
  return std::isnan(one) ? std::nullopt : std::optional(value * one);
}

}  // namespace tarn
