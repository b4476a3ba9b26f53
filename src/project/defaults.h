// The default records of a new project, from the table in project/defaults.json.
#pragma once

#include <string>

#include "project/project.h"

namespace tarn {

/// Writes record 0 of every kind in the table into the project's files.
void write_default_records(COM_ProjectData& project);

}  // namespace tarn
