#include "tarn/base/wire.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tarn {

int16_t scaled(double value, int steps_per_unit) {
  const double steps = std::nearbyint(value * steps_per_unit);
  if (!(steps >= INT16_MIN && steps <= INT16_MAX)) {
    char text[120];
    std::snprintf(text, sizeof text, "Overflow: %g is beyond what 16 bits hold in steps of 1/%d.", value,
                  steps_per_unit);
    fail(ErrorNumber::Overflow, text);
  }
  return static_cast<int16_t>(steps);
}

void put_text(std::span<char> chars, std::string_view text) {
  const std::string bytes = page_from_utf8(text);
  const size_t used = std::min(chars.size(), bytes.size());
  std::copy_n(bytes.data(), used, chars.data());
  std::fill(chars.begin() + static_cast<ptrdiff_t>(used), chars.end(), ' ');
}

std::string trimmed_text(std::string_view chars) {
  return chars.starts_with('\0') ? std::string() : utf8_from_page(trimmed(chars));
}

void subscript_out_of_range(int subscript, Bounds bounds) {
  fail(ErrorNumber::SubscriptOutOfRange, "Subscript out of range: " + std::to_string(subscript) + ", allowed are " +
                                             std::to_string(bounds.first) + " to " + std::to_string(bounds.last) + ".");
}

}  // namespace tarn
