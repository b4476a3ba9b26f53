#include "base/measures.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "base/decimals.h"

namespace tarn {

std::string six_digits(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", value);
  return text;
}

std::string grouped(double value, int decimals) {
  if (!std::isfinite(value) || std::abs(value) >= 1e15) return six_digits(value);
  std::string out = decimal_text(value, decimals);
  const size_t first = out[0] == '-' ? 1 : 0;
  for (size_t at = std::min(out.find('.'), out.size()); at > first + 3; at -= 3) out.insert(at - 3, ",");
  return out;
}

double Measures::value(double value, std::string_view unit) const {
  const std::string_view shown = this->unit(unit);
  return shown == unit ? value : convert(value, unit, shown);
}

std::string Measures::with_unit(const std::string& number, std::string_view unit) const {
  const std::string_view shown = this->unit(unit);
  return shown.empty() ? number : number + " " + std::string(shown);
}

std::string Measures::quantity(double value, std::string_view unit) const {
  return with_unit(six_digits(this->value(value, unit)), unit);
}

std::string Measures::figure(double value, std::string_view unit) const {
  return grouped(this->value(value, unit), decimals_in(system_, unit));
}

std::string Measures::measure(double value, std::string_view unit) const {
  return with_unit(figure(value, unit), unit);
}

}  // namespace tarn
