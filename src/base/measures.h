// Values with their units as people read them, in one of the two systems.
#pragma once

#include <string>
#include <string_view>

#include "tarn/base/units.h"

namespace tarn {

/// With so many decimals, thousands separated: "1,234.5".
std::string grouped(double value, int decimals);
/// With six digits.
std::string six_digits(double value);

class Measures {
 public:
  explicit Measures(UnitSystem system) : system_(system) {}

  UnitSystem system() const { return system_; }
  /// The unit in which values stored in `unit` are shown.
  std::string_view unit(std::string_view unit) const { return unit_in(system_, unit); }
  double value(double value, std::string_view unit) const;
  /// "50 mm": six digits, and the unit.
  std::string quantity(double value, std::string_view unit) const;
  /// As in reports, with the decimals that the unit deserves, thousands separated; without the unit.
  std::string figure(double value, std::string_view unit) const;
  /// The same with the unit: "54.5 F".
  std::string measure(double value, std::string_view unit) const;

 private:
  std::string with_unit(const std::string& number, std::string_view unit) const;

  UnitSystem system_;
};

}  // namespace tarn
