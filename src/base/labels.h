// Enumerations beside their records: each code with the name that code uses and the text that a person reads.
// Neither need be an identifier, either may be empty, and two may share a code (the first wins when a code is looked
// up).
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tarn {

struct Label {
  int32_t code;
  std::string_view name;
  std::string_view text;
};

/// Specialised beside each enumeration: `template <> inline constexpr std::span<const Label> labels<E> = table;`
template <typename E>
inline constexpr std::span<const Label> labels{};

/// The display text of a code; empty for a code outside the table.
std::string_view text_of(std::span<const Label> table, int32_t code);

}  // namespace tarn
