// The sections of a report, each as HTML below its heading, in the order of the page.
#pragma once

#include <string>

#include "report/source.h"

namespace tarn::report {

std::string project_section(const Source& source);
std::string stale_section(const Source& source);
std::string graph_section(const Source& source);
std::string spaces_section(const Source& source);
std::string envelope_section(const Source& source);
std::string windows_section(const Source& source);
std::string schedules_section(const Source& source);
std::string systems_section(const Source& source);
std::string plant_section(const Source& source);
std::string costs_section(const Source& source);
std::string weather_section(const Source& source);
std::string results_section(const Source& source);
std::string check_section(const Source& source);

/// Up to so many entities of a kind are shown unfolded.
constexpr size_t kShownOpen = 3;

}  // namespace tarn::report
