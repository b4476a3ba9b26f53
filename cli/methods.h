// The methods that a person can call.
#pragma once

#include <string_view>
#include <vector>

#include "tarn/reflect/members.h"

namespace tarn::cli {

/// Those that take numbers and texts, and that no verb does: the ones of an entity's life are left out.
std::vector<std::string_view> plain_methods(const ClassInfo& info);

}  // namespace tarn::cli
