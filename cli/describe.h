// The classes as a person reads of them.
#pragma once

#include <string>

#include "tarn/reflect/members.h"

namespace tarn::cli {

/// "GlassTrans(1 to 3)", "Load(nRecNum I2)".
std::string signature(const Member& member);

/// The codes of the member's enumeration, else of the code catalogue.
std::span<const Label> named_codes(const Member& member);

/// Bytes of an object's record, those of an entity with its parts; of a file of its own without lists that grow.
size_t record_length(Object& object);

}  // namespace tarn::cli
