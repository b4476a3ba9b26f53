// Values and whole objects as JSON, by their members tables: every stored field once, under its name.
#pragma once

#include <functional>
#include <string>

#include "reflect/json_text.h"
#include "tarn/reflect/members.h"

namespace tarn {

/// A value as JSON: 4-byte reals in their shortest form that reads back the same, NaN and infinities as texts.
Json to_json(const Value& value);
/// Error `TypeMismatch` for what the type cannot hold.
Value from_json(const Json& json, ValueType type);

/// A property's value, arrays nested with the first subscript outermost. Texts come without their padding; null is a
/// text that was never written (NUL characters alone).
Json to_json(Object& object, const Member& property);
/// Appends a property's value as JSON text: what `to_json` gives, without the values in between.
void write_json(std::string& out, Object& object, const Member& property);
/// Adds all stored fields of an object to a JSON object, parts nested. A code of an enumeration is {"code", "text"}.
void add_stored_fields(Object& object, Json& json);

/// The field or the part that a key of an object's JSON names, null for neither.
const Member* json_member(const ClassInfo& info, std::string_view key);
/// Whether the JSON of an object has all of its fields, parts included.
bool is_complete(const ClassInfo& info, const Json& json);
/// How the fields of an object are set from JSON.
struct FieldSetting {
  std::function<void(const std::string&)>
      at;  // called before each field is set, with its place, a JSON pointer from the object's
  std::function<int32_t(std::string_view kind, int32_t index)> follow;  // gives the index that a reference becomes
  std::string_view beside;                                              // a key of the object to leave alone
  std::span<const Label> (*codes)(const Member&) = nullptr;             // names of codes that are no enumeration's
};
/// Sets the fields of an object and its parts that the JSON has.
void set_fields_from_json(Object& object, const Json& json, const FieldSetting& how = {});

/// Sets a property from JSON. A text that is too long, a number that does not fit and a wrong shape are refused, and
/// the message names class, property and what is allowed; so is a value that cannot be, as `check_allowed` says.
void set_from_json(Object& object, const Member& property, const Json& json);
/// The code that {"code": 3, "text": ...}, a name or text of the labels, or a plain number stands for. Error
/// `TypeMismatch` names the nearest right name.
Json code_json(std::span<const Label> labels, const Json& json);
/// As a client sets one element of an indexed property, or a plain property: by its rule, where it has one.
void set_from_json(Object& object, const Member& property, Subscripts at, const Json& json);

}  // namespace tarn
