// What values a property can have at all, in any building: by its unit, its codes, or the list here. Who writes a value
// by hand - on the command line, in a text to import - is refused others. A client that sets a property by name keeps
// the rule of the class.
#pragma once

#include <limits>
#include <optional>

#include "tarn/reflect/members.h"

namespace tarn {

/// How a value comes: by itself, or in the text of a whole record. There code 0 stands for a field that was never
/// filled, and fields that a code depends on may follow it.
enum class Given : uint8_t { Alone, WithRecord };

/// Error `InvalidCall` for a value that cannot be; the text has the value, what is allowed, and the codes.
void check_allowed(const Object& object, const Member& property, const Value& value, Given given);

/// Sets a property as `let_property` does, if it can have the value. Else the error's source is class and property,
/// "WIN_Window.Height".
void let_allowed(Object& object, const Member& property, Subscripts at, const Value& value);
/// As the check in it; a whole array is the text of a record.
void check_let(const Object& object, const Member& property, Subscripts at, const Value& value, Given given);

/// Whole or real numbers from `least` on, up to `most` where there is a limit.
struct NumberRange {
  int least = 0;
  std::optional<int> most;
};
/// The numbers that can be; none where the type alone decides, and for properties with codes.
std::optional<NumberRange> allowed_range(const Object& object, const Member& property);
/// Numbers that `check_let` never refuses, whatever the object holds: known once for a class. Of others it tells.
struct SureNumbers {
  double least = std::numeric_limits<double>::lowest(), most = std::numeric_limits<double>::max();
  uint64_t codes = 0;  // a bit for each of 0 to 63, where only those can be

  bool has(double number) const { return codes == 0 && number >= least && number <= most; }
  bool has(int32_t number) const {
    return number >= least && number <= most && (codes == 0 || (codes >> number & 1) != 0);
  }
};
SureNumbers sure_numbers(const Object& object, const Member& property);

/// The range as a person reads it: "0 and above", "0 to 4"; empty without a range.
std::string allowed_numbers(const Object& object, const Member& property);

}  // namespace tarn
