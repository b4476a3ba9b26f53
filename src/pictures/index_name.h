// Names of entities, as the index has them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarn {

class Database;

/// Of a kind by its word ("Chiller"); "(missing)" where there is no row.
std::string index_name(Database& database, std::string_view kind, int16_t index);

}  // namespace tarn
