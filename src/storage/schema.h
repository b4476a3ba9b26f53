// The index database: an index table for every kind with a summary row for every entity, and a link table for every
// pair of kinds of which one uses the other. The client makes the database; the layer itself never makes or alters
// tables.
#pragma once

#include <span>
#include <string>

#include "tarn/storage/entity.h"

namespace tarn {

/// The CREATE script of a new index database for these kinds, each given by one of its entities: columns from the
/// kinds, link tables from what their fields refer to; keys and indexes; the single rows of the weather tables.
std::string index_schema(std::span<const Ptr<StoredEntity>> kinds);

/// Whether a table is there that projects made long ago lack.
bool has_table(Database& database, const std::string& name);

}  // namespace tarn
