// Units of measure as texts, the way engineers write them: "Btu/(hr.ft2.F)", "W/m2.K", "in. wg". Files are in
// inch-pound units; every face that shows or takes SI units converts here. docs/units.md is the page of it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

enum class UnitSystem : uint8_t { InchPound, SI };

/// Whether a text is a unit: base units with powers, their products (".", "*", a blank) and quotients; what follows a
/// "/" divides, up to the closing bracket. Alone, "F" and "C" are temperatures; "delta F", "K" and "R" are differences
/// of temperature too, as F and C are within larger units.
bool is_unit(std::string_view text);

/// A value in another unit of the same dimension. Error `TypeMismatch` for a text that is no unit, for another
/// dimension, and for a difference where a temperature is wanted; the message names units that fit. A temperature unit
/// counts as a difference where one is wanted: 9 F are 5 K there.
double convert(double value, std::string_view from, std::string_view to);

/// The unit in which engineers of a system state what is in `unit`: "mm" for "in", "W/(m2.K)" for "Btu/(hr.ft2.F)".
/// The unit itself where both systems share it, and where it is not known.
std::string_view unit_in(UnitSystem system, std::string_view unit);

/// Decimals of a value of a report that is in `unit`, stated in the unit of a system.
int decimals_in(UnitSystem system, std::string_view unit);

/// Texts of units to which a value in `unit` can be converted, the most usual first; empty for a text that is no unit.
std::vector<std::string_view> units_that_fit(std::string_view unit);

/// "1.2m", "0.04 W/m.K", "5": a number and what follows it, empty for a number alone. Nothing for a text that does not
/// begin with a finite number.
struct Measured {
  double value;
  std::string_view unit;
};
std::optional<Measured> measured_in(std::string_view text);

}  // namespace tarn
