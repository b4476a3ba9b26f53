// Overall U-value and shade coefficient of a window from its layers, frame, internal shade and size.
#pragma once

namespace tarn {

struct WindowRecord;

struct WindowPerformance {
  float u_value = 0;            // Btu/(hr.ft2.F), with the internal shade
  float shade_coefficient = 0;  // solar heat gain over that of 1/8 in clear glass, 0.87
};

/// Error `DivisionByZero` for a window without area.
WindowPerformance window_performance(const WindowRecord& window);

}  // namespace tarn
