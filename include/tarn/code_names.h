// Names of codes that calculation engines define: exposures, frames, shades, gaps, activities, fixtures, units of
// values. They are a table in a file, codes.json, which a firm replaces by its own: docs/codes.md. A code without a
// name is a plain number.
#pragma once

#include <span>
#include <string>

#include "tarn/base/labels.h"
#include "tarn/reflect/members.h"

namespace tarn {

/// The catalogue in use: the file that TARN_CODES names, else the shipped one; empty where that is not found.
std::string code_catalogue_file();

/// The names that the catalogue has for a property's codes; empty for others. They stay while the thread uses the same
/// file. Errors `FileNotFound`, and `TypeMismatch` with file and line for a catalogue that is not right.
std::span<const Label> catalogued_codes(const Member& member);

/// The codes of a property: those of its enumeration, else of the catalogue.
std::span<const Label> codes_of(const Object& object, const Member& member);

}  // namespace tarn
