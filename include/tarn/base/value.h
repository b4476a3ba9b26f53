// Conversions between the values of by-name faces and native types. Nothing is lost silently:
// a number that does not fit is an overflow, a text is no number, a real is an integer only when it is whole.
#pragma once

#include <concepts>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "tarn/base/error.h"
#include "tarn/base/object.h"

namespace tarn {

/// A value passed by name. The alternatives stand in the order of `ValueType`, which has one more, `Any`: the type of a
/// result that is known only after the call. How it is copied and destroyed is compiled once.
struct Value
    : std::variant<std::monostate, bool, int16_t, int32_t, float, double, std::string, ObjectPtr, std::vector<double>> {
  using variant::variant;
  using variant::operator=;
  Value() noexcept = default;
  Value(const Value& other);
  Value(Value&& other) noexcept;
  Value& operator=(const Value& other);
  Value& operator=(Value&& other) noexcept;
  ~Value();
};

enum class ValueType : uint8_t { Empty, Boolean, Int16, Int32, Real32, Real64, Text, Object, Reals, Any };

std::string_view type_name(ValueType type);

inline ValueType type_of(const Value& value) { return static_cast<ValueType>(value.index()); }

int64_t integer_from(const Value& value, int64_t least, int64_t most);
double real_from(const Value& value);
bool truth_from(const Value& value);
const std::string& text_from(const Value& value);
const std::vector<double>& reals_from(const Value& value);
[[noreturn]] void type_mismatch(const Value& found, std::string_view wanted);

template <typename T>
struct is_optional : std::false_type {};
template <typename T>
struct is_optional<std::optional<T>> : std::true_type {};
template <typename T>
struct is_pointer : std::false_type {};
template <typename T>
struct is_pointer<Ptr<T>> : std::true_type {
  using Target = T;
};

template <typename T>
constexpr ValueType value_type() {
  if constexpr (std::is_void_v<T>)
    return ValueType::Empty;
  else if constexpr (std::is_same_v<T, Value>)
    return ValueType::Any;
  else if constexpr (is_optional<T>::value)
    return value_type<typename T::value_type>();
  else if constexpr (std::is_same_v<T, bool>)
    return ValueType::Boolean;
  else if constexpr (std::is_enum_v<T> || std::is_same_v<T, int16_t>)
    return ValueType::Int16;
  else if constexpr (std::is_same_v<T, int32_t>)
    return ValueType::Int32;
  else if constexpr (std::is_same_v<T, float>)
    return ValueType::Real32;
  else if constexpr (std::is_same_v<T, double>)
    return ValueType::Real64;
  else if constexpr (is_pointer<T>::value)
    return ValueType::Object;
  else if constexpr (std::is_same_v<T, std::vector<double>>)
    return ValueType::Reals;
  else
    return ValueType::Text;
}

/// A native value from a by-name one. Errors `TypeMismatch`, `Overflow`.
template <typename T>
T native(const Value& value) {
  if constexpr (is_optional<T>::value) {
    if (std::holds_alternative<std::monostate>(value)) return std::nullopt;
    return native<typename T::value_type>(value);
  } else if constexpr (std::is_same_v<T, bool>) {
    return truth_from(value);
  } else if constexpr (std::is_enum_v<T>) {
    return static_cast<T>(native<int16_t>(value));
  } else if constexpr (std::is_integral_v<T>) {
    return static_cast<T>(integer_from(value, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
  } else if constexpr (std::is_floating_point_v<T>) {
    const double wide = real_from(value);
    const auto narrow = static_cast<T>(wide);
    if (narrow - narrow != 0 && wide - wide == 0)
      fail(ErrorNumber::Overflow, "Overflow: the number is too large for the property.");
    return narrow;
  } else if constexpr (is_pointer<T>::value) {
    if (std::holds_alternative<std::monostate>(value)) return nullptr;
    const auto* object = std::get_if<ObjectPtr>(&value);
    auto typed = object ? std::dynamic_pointer_cast<typename is_pointer<T>::Target>(*object) : nullptr;
    if (!typed && (!object || *object)) type_mismatch(value, "object of the right class");
    return typed;
  } else if constexpr (std::is_same_v<T, std::vector<double>>) {
    return reals_from(value);
  } else {
    return text_from(value);
  }
}

/// A by-name value from a native one.
void put(Value& out, bool value);
void put(Value& out, int16_t value);
void put(Value& out, int32_t value);
void put(Value& out, float value);
void put(Value& out, double value);
void put(Value& out, std::string value);
void put(Value& out, ObjectPtr value);
void put(Value& out, std::vector<double> value);
template <typename C>
void put(Value& out, Ptr<C> value) {
  put(out, ObjectPtr(std::move(value)));
}
template <std::same_as<Value> V>
void put(Value& out, V value) {
  out = std::move(value);
}
template <typename E>
requires std::is_enum_v<E>
void put(Value& out, E value) { put(out, static_cast<int16_t>(value)); }

}  // namespace tarn
