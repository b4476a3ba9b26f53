// The unit of a property of one object: that of the members table, or the one that the object itself decides.
#pragma once

#include <string_view>

#include "tarn/base/units.h"
#include "tarn/reflect/members.h"

namespace tarn {

/// The unit that a property's values are stored in. Where a code beside it chooses ("HotWaterFlowUnits"), the unit of
/// that code; empty for one that stands for no unit. Where the owner decides and there is none, the members table's
/// text, "kW or MBH". Errors of `catalogued_codes`.
std::string_view unit_of(const Object& object, const Member& member);

}  // namespace tarn
