// A project as one page for a browser: what it holds, what is stale and why, pictures, and what a check finds.
#pragma once

#include <string>

#include "tarn/base/progress.h"
#include "tarn/base/units.h"
#include "tarn/project.h"

namespace tarn {

/// The page as HTML, in UTF-8, self-contained: nothing is loaded from elsewhere, and it reads without its script. What
/// cannot be read is told where it would stand. Nothing of the project is changed. `progress` is called after each
/// section. Errors `DatabaseNotFound`, `DatabaseLocked` as of `check_project`.
std::string report_html(COM_ProjectData& project, UnitSystem units = UnitSystem::InchPound,
                        const Progress& progress = {});

}  // namespace tarn
