// The form of an exchange text as a JSON Schema (draft 2020-12), from the members tables: what export writes passes it,
// and what it refuses an import refuses too.
#pragma once

#include <string>

namespace tarn::cli {

std::string exchange_schema();

}  // namespace tarn::cli
