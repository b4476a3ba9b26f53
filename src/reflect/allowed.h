// What values a property can have at all, in any building: by its unit, its codes, or the list here. Who writes a value
// by hand - on the command line, in a text to import - is refused others. A client that sets a property by name keeps
// the rule of the class.
#pragma once

#include "tarn/reflect/members.h"

namespace tarn {

/// How a value comes: by itself, or in the text of a whole record. There code 0 stands for a field that was never
/// filled, and fields that a code depends on may follow it.
enum class Given : uint8_t { Alone, WithRecord };

/// Error `InvalidCall` for a value that cannot be; the text has the value, what is allowed, and the codes.
void check_allowed(const Object& object, const Member& property, const Value& value, Given given);

/// The numbers that can be, as a person reads them: "0 and above", "0 to 4"; empty where the type alone decides, and
/// for properties with codes.
std::string allowed_numbers(const Object& object, const Member& property);

}  // namespace tarn
