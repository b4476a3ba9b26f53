// The default records of a new project, from the table in component/defaults.json.
#pragma once

#include <string>

#include "storage/project.h"

namespace tarn {

/// Writes record 0 of every kind in the table into the project's files.
void write_default_records(COM_ProjectData& project);

}  // namespace tarn
