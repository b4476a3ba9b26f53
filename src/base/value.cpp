#include "tarn/base/value.h"

#include <cmath>

namespace tarn {

Value::Value(const Value& other) = default;
Value::Value(Value&& other) noexcept = default;
Value& Value::operator=(const Value& other) = default;
Value& Value::operator=(Value&& other) noexcept = default;
Value::~Value() = default;

std::string_view type_name(ValueType type) {
  constexpr std::string_view names[]{"", "Boolean", "I2", "I4", "R4", "R8", "text", "object", "reals", "any"};
  return names[static_cast<size_t>(type)];
}

void type_mismatch(const Value& found, std::string_view wanted) {
  const auto name = type_name(type_of(found));
  fail(ErrorNumber::TypeMismatch, "Type mismatch: found " + std::string(name.empty() ? "nothing" : name) + ", wanted " +
                                      std::string(wanted) + ".");
}

namespace {

/// The numeric alternatives as a double, which holds every one of them exactly; false for the others.
bool numeric(const Value& value, double& out) {
  switch (type_of(value)) {
    case ValueType::Boolean:
      out = std::get<bool>(value) ? -1 : 0;
      return true;
    case ValueType::Int16:
      out = std::get<int16_t>(value);
      return true;
    case ValueType::Int32:
      out = std::get<int32_t>(value);
      return true;
    case ValueType::Real32:
      out = static_cast<double>(std::get<float>(value));
      return true;
    case ValueType::Real64:
      out = std::get<double>(value);
      return true;
    default:
      return false;
  }
}

}  // namespace

int64_t integer_from(const Value& value, int64_t least, int64_t most) {
  double number = 0;
  if (!numeric(value, number) || number != std::floor(number)) type_mismatch(value, "whole number");
  if (number < static_cast<double>(least) || number > static_cast<double>(most)) {
    fail(ErrorNumber::Overflow,
         "Overflow: the number must lie between " + std::to_string(least) + " and " + std::to_string(most) + ".");
  }
  return static_cast<int64_t>(number);
}

double real_from(const Value& value) {
  double number = 0;
  if (!numeric(value, number)) type_mismatch(value, "number");
  return number;
}

bool truth_from(const Value& value) {
  double number = 0;
  if (!numeric(value, number)) type_mismatch(value, "Boolean");
  return number != 0;
}

const std::string& text_from(const Value& value) {
  const auto* text = std::get_if<std::string>(&value);
  if (!text) type_mismatch(value, "text");
  return *text;
}

const std::vector<double>& reals_from(const Value& value) {
  const auto* reals = std::get_if<std::vector<double>>(&value);
  if (!reals) type_mismatch(value, "list of reals");
  return *reals;
}

void put(Value& out, bool value) { out = value; }
void put(Value& out, int16_t value) { out = value; }
void put(Value& out, int32_t value) { out = value; }
void put(Value& out, float value) { out = value; }
void put(Value& out, double value) { out = value; }
void put(Value& out, std::string value) { out = std::move(value); }
void put(Value& out, ObjectPtr value) { out = std::move(value); }
void put(Value& out, std::vector<double> value) { out = std::move(value); }

}  // namespace tarn
