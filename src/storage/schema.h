// The index database: an index table for every kind with a summary row for every entity, and a link table for every
// pair of kinds of which one uses the other. The client makes the database; the layer itself never makes or alters
// tables.
#pragma once

#include <string>

namespace tarn {

/// The CREATE script of a new index database, its keys and indexes, and the single rows of the weather tables.
std::string index_schema();

/// Makes the index database of a project. Errors `FileExists`, `DatabaseFailure`.
void create_index(const std::string& path);

}  // namespace tarn
