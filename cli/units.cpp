#include "cli/units.h"

#include <cmath>
#include <cstdlib>

#include "base/nearest.h"
#include "cli/command.h"
#include "reflect/json.h"
#include "tarn/base/value.h"

namespace tarn::cli {
namespace {

UnitSystem chosen = UnitSystem::InchPound;

std::string with_unit(const std::string& number, std::string_view unit) {
  const std::string_view shown = shown_unit(unit);
  return shown.empty() ? number : number + " " + std::string(shown);
}

}  // namespace

void choose_units(const std::string& option) {
  const char* setting = std::getenv("TARN_UNITS");
  const std::string word = !option.empty() ? option : setting ? setting : "";
  if (!word.empty() && !same_word(word, "si") && !same_word(word, "ip"))
    throw UsageError((option.empty() ? "TARN_UNITS" : "--units") + std::string(" is \"") + word +
                     "\"; it is ip or si.");
  chosen = same_word(word, "si") ? UnitSystem::SI : UnitSystem::InchPound;
}

UnitSystem units() { return chosen; }

std::string_view shown_unit(std::string_view unit) { return unit_in(chosen, unit); }

double shown_value(double value, std::string_view unit) {
  const std::string_view shown = shown_unit(unit);
  return shown == unit ? value : convert(value, unit, shown);
}

Json shown_element(const Object& object, const Member& property, Subscripts at) {
  Value value;
  property.get(object, at, value);
  const Json json = to_json(value);
  if (!json.is_number_float()) return json;
  const double value_shown = shown_value(json.get<double>(), unit_of(object, property));
  return std::stod(shown(Json(value_shown)));
}

std::string quantity(double value, std::string_view unit) {
  return with_unit(shown(Json(shown_value(value, unit))), unit);
}

std::string figure(double value, std::string_view unit) {
  return grouped(shown_value(value, unit), decimals_in(chosen, unit));
}

std::string measure(double value, std::string_view unit) { return with_unit(figure(value, unit), unit); }

}  // namespace tarn::cli
