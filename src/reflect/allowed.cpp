#include "reflect/allowed.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "base/sentence.h"
#include "tarn/base/error.h"
#include "tarn/base/value.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

/// Units of lengths, areas, properties of materials, flows and counts: quantities that are 0 or more.
constexpr std::string_view kNeverNegative[]{
    "ft",         "in",           "ft2",    "lb/ft2", "lb/ft3", "Btu/(hr.ft.F)", "Btu/(hr.ft2.F)",
    "Btu/(lb.F)", "hr.ft2.F/Btu", "people", "gal",    "cfm",    "CFM",           "gpm"};

/// Properties with such a unit that have a sign: terms of a series, and the height of an outdoor unit above or below.
constexpr std::string_view kSigned[]{"BTrans", "CTrans", "PipeHeight"};

/// Numbers that stand for something without being an enumeration: the frames that the method of windows knows, the
/// exposures of the weather's solar table and the profiles of a schedule, 0 for a slot not in use.
constexpr struct Numbered {
  std::string_view class_name, property;
  int last;
} kNumbered[]{{"WIN_Window", "FrameType", 4},
              {"SPC_WallWindow", "Exposure", 17},
              {"SPC_Roof", "Exposure", 17},
              {"SCH_Schedule", "Applicable", 8}};

template <typename List>
bool has(const List& list, std::string_view word) {
  return std::find(std::begin(list), std::end(list), word) != std::end(list);
}

[[noreturn]] void refuse(const std::string& found, const std::string& allowed) {
  fail(ErrorNumber::InvalidCall, "found " + found + "; " + allowed);
}

std::string text_of(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.7g", value);
  return text;
}

bool is_never_negative(const Member& property) {
  return has(kNeverNegative, property.unit) && !has(kSigned, property.name);
}

/// Null for a property that the list has not.
const Numbered* numbered(const Object& object, const Member& property) {
  for (const Numbered& row : kNumbered) {
    if (row.class_name == object.info().name && row.property == property.name) return &row;
  }
  return nullptr;
}

void check_real(const Member& property, double value) {
  if (std::isnan(value)) refuse("NaN", "allowed are finite numbers");
  if (std::isinf(value)) refuse(value > 0 ? "Infinity" : "-Infinity", "allowed are finite numbers");
  if (value >= 0 || !is_never_negative(property)) return;
  const std::string unit(property.unit);
  refuse(text_of(value) + " " + unit, "allowed are 0 " + unit + " and above");
}

void check_code(std::span<const Label> labels, int code) {
  if (std::any_of(labels.begin(), labels.end(), [code](const Label& label) { return label.code == code; })) return;
  std::string codes;
  for (const Label& label : labels) {
    if (!codes.empty()) codes += ", ";
    codes += std::to_string(label.code) + " " + std::string(label.text.empty() ? label.name : label.text);
  }
  refuse("code " + std::to_string(code), "the codes are " + codes);
}

void check_text(const Member& property, const std::string& text) {
  if (property.width() == 0 || text.size() <= property.width()) return;
  if (const size_t length = page_from_utf8(text).size(); length > property.width()) {
    fail(ErrorNumber::TypeMismatch, "\"" + text + "\" has " + std::to_string(length) + " characters, allowed are " +
                                        std::to_string(property.width()));
  }
}

bool is_number(const Value& value) { return type_of(value) >= ValueType::Int16 && type_of(value) <= ValueType::Real64; }

/// A number as the property holds it; other values, and those that its setter refuses, as they are.
Value as_held(const Member& property, const Value& value) {
  if (!is_number(value)) return value;
  const double number = real_from(value);
  if (property.type == ValueType::Real32 || property.type == ValueType::Real64) return number;
  const bool whole = number == std::nearbyint(number) && std::abs(number) <= INT32_MAX;
  return whole ? Value(static_cast<int32_t>(number)) : Value();
}

}  // namespace

void check_allowed(const Object& object, const Member& property, const Value& value, Given given) {
  switch (type_of(value)) {
    case ValueType::Real32:
      return check_real(property, double{std::get<float>(value)});
    case ValueType::Real64:
      return check_real(property, std::get<double>(value));
    case ValueType::Text:
      return check_text(property, std::get<std::string>(value));
    case ValueType::Int16:
    case ValueType::Int32:
      break;
    default:
      return;
  }
  const auto number = static_cast<int>(integer_from(value, INT32_MIN, INT32_MAX));
  if (const Numbered* row = numbered(object, property); row && (number < 0 || number > row->last))
    refuse(std::to_string(number), "allowed are 0 to " + std::to_string(row->last));
  if (given == Given::WithRecord && (number == 0 || property.labels_for)) return;
  if (const auto labels = property.labels_of(object); !labels.empty()) check_code(labels, number);
}

void check_let(const Object& object, const Member& property, Subscripts at, const Value& value, Given given) {
  try {
    check_allowed(object, property, as_held(property, value), given);
  } catch (const Error& error) {
    throw Error(error.number(), source_of(object.info(), element_name(property, at)), sentence(error.description()));
  }
}

void let_allowed(Object& object, const Member& property, Subscripts at, const Value& value) {
  if (property.kind == MemberKind::Property && !property.read_only)
    check_let(object, property, at, value, Given::Alone);
  let_property(object, property, at, value);
}

std::optional<NumberRange> allowed_range(const Object& object, const Member& property) {
  if (const Numbered* row = numbered(object, property)) return NumberRange{0, row->last};
  const bool real = property.type == ValueType::Real32 || property.type == ValueType::Real64;
  if (real && is_never_negative(property)) return NumberRange{};
  return {};
}

SureNumbers sure_numbers(const Object& object, const Member& property) {
  constexpr int kBits = 64;
  constexpr SureNumbers kNone{0, -1, 0};
  if (property.labels_vary) return kNone;
  SureNumbers sure;
  if (const auto range = allowed_range(object, property)) {
    sure.least = range->least;
    if (range->most) sure.most = *range->most;
  }
  if (property.labels.empty()) return sure;
  sure.least = std::max(sure.least, 0.0);
  sure.most = std::min(sure.most, kBits - 1.0);
  for (const Label& label : property.labels) {
    if (label.code >= 0 && label.code < kBits) sure.codes |= uint64_t{1} << label.code;
  }
  return sure.codes == 0 ? kNone : sure;
}

std::string allowed_numbers(const Object& object, const Member& property) {
  const auto range = allowed_range(object, property);
  if (!range) return {};
  return std::to_string(range->least) + (range->most ? " to " + std::to_string(*range->most) : " and above");
}

}  // namespace tarn
