// A copy of a whole project, made while others may have it open.
#pragma once

#include "tarn/project.h"

namespace tarn {

/// Copies every file of a project, as they were committed last, to the folder and prefix of another; the folder is
/// made. All of it or nothing. Errors `FileExists` where that project is there already, `DatabaseNotFound` without a
/// project.
void copy_project(COM_ProjectData& from, COM_ProjectData& to);

}  // namespace tarn
