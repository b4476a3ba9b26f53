#include "cli/units.h"

#include <cstdlib>

#include "base/measures.h"
#include "base/nearest.h"
#include "cli/command.h"
#include "reflect/json.h"
#include "tarn/base/value.h"

namespace tarn::cli {
namespace {

Measures current(UnitSystem::InchPound);

}  // namespace

void choose_units(const std::string& option) {
  const char* setting = std::getenv("TARN_UNITS");
  const std::string word = !option.empty() ? option : setting ? setting : "";
  if (!word.empty() && !same_word(word, "si") && !same_word(word, "ip"))
    throw UsageError((option.empty() ? "TARN_UNITS" : "--units") + std::string(" is \"") + word +
                     "\"; it is ip or si.");
  current = Measures(same_word(word, "si") ? UnitSystem::SI : UnitSystem::InchPound);
}

UnitSystem units() { return current.system(); }
std::string_view shown_unit(std::string_view unit) { return current.unit(unit); }
double shown_value(double value, std::string_view unit) { return current.value(value, unit); }
std::string quantity(double value, std::string_view unit) { return current.quantity(value, unit); }
std::string figure(double value, std::string_view unit) { return current.figure(value, unit); }
std::string measure(double value, std::string_view unit) { return current.measure(value, unit); }

Json shown_element(const Object& object, const Member& property, Subscripts at) {
  Value value;
  property.get(object, at, value);
  const Json json = to_json(value);
  if (!json.is_number_float()) return json;
  const double value_shown = shown_value(json.get<double>(), unit_of(object, property));
  return std::stod(shown(Json(value_shown)));
}

}  // namespace tarn::cli
