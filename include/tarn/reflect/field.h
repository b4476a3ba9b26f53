// A field of a record as a row of data: where it lies and in which wire type. One function reads it and one writes it,
// whatever class it belongs to, for every face.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>

#include "tarn/base/object.h"
#include "tarn/base/value.h"
#include "tarn/base/wire.h"

namespace tarn {

/// Subscripts of an indexed property, in the order of its bounds.
using Subscripts = std::span<const int>;

enum class Wire : uint8_t { Int16, Int32, Real32, Real64, Boolean, Text, Code, Scaled };

struct RecordField {
  static constexpr size_t kMostDimensions = 4;

  Wire wire = Wire::Int16;
  bool placed = false;    // `record_of` is known
  bool covers = false;    // stands for its bytes of the record, which no other member does
  bool by_rule = false;   // the record is reached by `->`: another one for each object, or refused
  uint16_t width = 0;     // of one text, in characters
  uint32_t per_unit = 0;  // steps of a scaled number
  uint32_t size = 0;      // in bytes, all elements; of one record, where there is a list of them
  uint32_t stride = 0;    // of a field of every record in a list, from one record to the next
  uint32_t records = 0;   // in that list
  std::array<uint32_t, kMostDimensions> steps{};  // in bytes, from one subscript to the next, for each dimension
  std::string_view name;                          // in the record
  std::string_view record;                        // the name of its struct
  const void* at = nullptr;                       // the field, and the record around it, in a blank one
  const void* blank = nullptr;
  std::byte* (*record_of)(Object&) = nullptr;  // where an object has the record. Throws where a rule refuses it

  size_t offset() const { return static_cast<size_t>(static_cast<const char*>(at) - static_cast<const char*>(blank)); }
  std::byte* place(Object& object) const { return record_of(object) + offset(); }
  /// Of the element at checked subscripts. Error `SubscriptOutOfRange`.
  std::byte* place(Object& object, std::span<const Bounds> bounds, Subscripts subscripts) const;
};

/// The type of a field's values on a by-name face.
constexpr ValueType value_type(Wire wire) {
  constexpr ValueType types[]{ValueType::Int16,   ValueType::Int32, ValueType::Real32, ValueType::Real64,
                              ValueType::Boolean, ValueType::Text,  ValueType::Int16,  ValueType::Real64};
  return types[static_cast<size_t>(wire)];
}

/// Bytes of one element of these values as they move in blocks; 0 where they do not.
size_t block_width(ValueType type);

/// Calls `action` with the number or truth that lies in place; returns whether the wire type is one of them. Scaled
/// numbers are none: their steps are not their value.
template <typename F>
bool with_number(Wire wire, const std::byte* at, F&& action) {
  const auto as = [at]<typename N>(N number) {
    std::memcpy(&number, at, sizeof number);
    return number;
  };
  switch (wire) {
    case Wire::Int16:
    case Wire::Code:
      action(as(int16_t{}));
      return true;
    case Wire::Int32:
      action(as(int32_t{}));
      return true;
    case Wire::Real32:
      action(as(float{}));
      return true;
    case Wire::Real64:
      action(as(double{}));
      return true;
    case Wire::Boolean:
      action(as(int16_t{}) != 0);
      return true;
    default:
      return false;
  }
}

enum class Blanks : uint8_t { Kept, Trimmed };

/// An element's value. A text is read with its blanks or without them.
void read(const RecordField& field, const std::byte* at, Blanks blanks, Value& out);
/// Errors `TypeMismatch`, `Overflow`; the old value stays.
void write(const RecordField& field, std::byte* at, const Value& value);

}  // namespace tarn
