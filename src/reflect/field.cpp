#include "tarn/reflect/field.h"

#include "tarn/base/value.h"

namespace tarn {

std::byte* RecordField::place(Object& object, std::span<const Bounds> bounds, Subscripts subscripts) const {
  std::byte* element = place(object);  // a rule speaks before the subscripts are looked at
  for (size_t d = 0; d < bounds.size(); ++d) {
    if (subscripts[d] < bounds[d].first || subscripts[d] > bounds[d].last)
      subscript_out_of_range(subscripts[d], bounds[d]);
    element += steps[d] * static_cast<size_t>(subscripts[d] - bounds[d].first);
  }
  return element;
}

size_t block_width(ValueType type) {
  switch (type) {
    case ValueType::Boolean:
    case ValueType::Int16:
      return sizeof(int16_t);
    case ValueType::Int32:
      return sizeof(int32_t);
    case ValueType::Real32:
      return sizeof(float);
    case ValueType::Real64:
      return sizeof(double);
    default:
      return 0;
  }
}

void read(const RecordField& field, const std::byte* at, Blanks blanks, Value& out) {
  if (with_number(field.wire, at, [&out](auto number) { out = number; })) return;
  if (field.wire == Wire::Text) {
    const std::string_view chars(reinterpret_cast<const char*>(at), field.width);
    out = blanks == Blanks::Trimmed ? trimmed_text(chars) : utf8_from_page(chars);
  } else {
    int16_t steps = 0;
    std::memcpy(&steps, at, sizeof steps);
    out = static_cast<double>(steps) / field.per_unit;
  }
}

void write(const RecordField& field, std::byte* at, const Value& value) {
  const auto store = [at](auto number) { std::memcpy(at, &number, sizeof number); };
  switch (field.wire) {
    case Wire::Int16:
    case Wire::Code:
      return store(native<int16_t>(value));
    case Wire::Int32:
      return store(native<int32_t>(value));
    case Wire::Real32:
      return store(native<float>(value));
    case Wire::Real64:
      return store(native<double>(value));
    case Wire::Boolean:
      return store(static_cast<int16_t>(native<bool>(value) ? -1 : 0));
    case Wire::Scaled:
      return store(scaled(native<double>(value), field.per_unit));
    case Wire::Text:
      return put_text({reinterpret_cast<char*>(at), field.width}, native<std::string>(value));
  }
}

}  // namespace tarn
