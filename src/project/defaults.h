// The default records of a new project, from the table in project/defaults.json.
#pragma once

#include "tarn/project.h"

namespace tarn {

class StoredEntity;

/// Writes record 0 of every kind in the table into the project's files.
void write_default_records(COM_ProjectData& project);

/// Fills an entity as that record, for a project without one; false for what has none.
bool fill_product_default(StoredEntity& entity);

}  // namespace tarn
