// The index database of a new project, with the tables of all kinds.
#pragma once

#include <string>

namespace tarn {

/// The CREATE script.
std::string index_schema();

/// Makes the index database. Errors `FileExists`, `DatabaseFailure`.
void create_index(const std::string& path);

}  // namespace tarn
