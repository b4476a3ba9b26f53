// The system of units in which this run of the program talks to people: --units, else TARN_UNITS, else inch-pound.
// JSON keeps the units of the files.
#pragma once

#include <string>
#include <string_view>

#include "reflect/json_text.h"
#include "tarn/member_units.h"

namespace tarn::cli {

/// "ip" or "si"; an empty option leaves the choice to TARN_UNITS. Error `UsageError`.
void choose_units(const std::string& option);
UnitSystem units();

/// The unit in which values stored in `unit` are shown.
std::string_view shown_unit(std::string_view unit);
double shown_value(double value, std::string_view unit);

/// The value of a property in the units that are shown, for a table or a CSV: a number with six digits, a text, true or
/// false. Its unit is `shown_unit(unit_of(object, property))`.
Json shown_element(const Object& object, const Member& property, Subscripts at);

/// "50 mm": six digits, and the unit.
std::string quantity(double value, std::string_view unit);
/// As in reports, with the decimals that the unit deserves, thousands separated; without the unit.
std::string figure(double value, std::string_view unit);
/// The same with the unit: "54.5 F".
std::string measure(double value, std::string_view unit);

}  // namespace tarn::cli
