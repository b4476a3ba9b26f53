// The lower of the two charts of design results, and where both lie on the page.
#pragma once

#include <string>

#include "tarn/air_system_design.h"

namespace tarn {

/// The left and right edges of the charts on the page, and where their keys begin.
inline constexpr double kChartLeft = 118, kChartRight = kChartLeft + 660, kChartWide = kChartRight - kChartLeft;
inline constexpr double kKeyLeft = kChartRight + 128;

/// The psychrometric chart alone, with its upper edge at `top`; at heating design where there is no cooling peak.
std::string process_chart(const ADL_AirSystemDesign& design, double top);
inline constexpr double kProcessChartHeight = 560;

}  // namespace tarn
