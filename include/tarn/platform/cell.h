// One column's value in a row of the index database, and what it is as a by-name value.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "tarn/base/object.h"

namespace tarn {

struct Value;

/// One column's value in a row. How it is copied and destroyed is compiled once.
struct Cell : std::variant<std::monostate, int64_t, double, std::string> {
  using variant::variant;
  using variant::operator=;
  Cell() noexcept = default;
  Cell(const Cell& other);
  Cell(Cell&& other) noexcept;
  Cell& operator=(const Cell& other);
  Cell& operator=(Cell&& other) noexcept;
  ~Cell();
};

/// Booleans are -1 and 0, as in the files.
inline Cell cell(bool value) { return int64_t{value ? -1 : 0}; }
inline Cell cell(int64_t value) { return value; }
inline Cell cell(int value) { return int64_t{value}; }
inline Cell cell(double value) { return value; }
inline Cell cell(std::string value) { return value; }
/// A by-name value as a cell.
Cell cell(const Value& value);
Value value_of(const Cell& cell);

}  // namespace tarn
