#include "tarn/platform/cell.h"

#include "tarn/base/value.h"

namespace tarn {

Cell::Cell(const Cell& other) = default;
Cell::Cell(Cell&& other) noexcept = default;
Cell& Cell::operator=(const Cell& other) = default;
Cell& Cell::operator=(Cell&& other) noexcept = default;
Cell::~Cell() = default;

Cell cell(const Value& value) {
  switch (type_of(value)) {
    case ValueType::Empty:
    case ValueType::Object:
    case ValueType::Reals:
      return {};
    case ValueType::Boolean:
      return cell(std::get<bool>(value));
    case ValueType::Text:
      return std::get<std::string>(value);
    case ValueType::Int16:
    case ValueType::Int32:
      return integer_from(value, INT32_MIN, INT32_MAX);
    default:
      return real_from(value);
  }
}

Value value_of(const Cell& cell) {
  if (const auto* number = std::get_if<int64_t>(&cell)) {
    return *number >= INT32_MIN && *number <= INT32_MAX ? Value(static_cast<int32_t>(*number))
                                                        : Value(static_cast<double>(*number));
  }
  if (const auto* real = std::get_if<double>(&cell)) return *real;
  if (const auto* text = std::get_if<std::string>(&cell)) return *text;
  return {};
}

}  // namespace tarn
