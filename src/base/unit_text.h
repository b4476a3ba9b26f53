// What the text of a unit means in SI base units.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace tarn {

/// Powers of metre, kilogram, second, kelvin, radian and person.
using Dimension = std::array<int, 6>;

using Exact = long double;  // so that 12 in are 1 ft to the last digit

/// What a unit of temperature counts: degrees from a zero of its own, or differences alone. Others are ratios; so are K
/// and R, whose zero is the absolute one.
enum class Scale : uint8_t { Ratio, Points, Steps };

struct Unit {
  Dimension dimension{};
  Exact factor = 1;  // the unit in SI base units
  Scale scale = Scale::Ratio;
  Exact zero = 0;  // its own zero, in kelvin
};

/// Nothing for a text that is no unit. A text is read once in a thread: the same few come again for every value of a
/// table.
std::optional<Unit> unit_of_text(std::string_view text);

/// The usual spelling of each base unit.
std::vector<std::string_view> base_unit_names();

}  // namespace tarn
