// A window: up to three glass layers with one kind of gap between them, a frame, an internal shade, and the two results
// that load engines need, overall U-value and shade coefficient.
#pragma once

#include "tarn/storage/entity.h"

namespace tarn {

/// A record of the window file.
struct WindowRecord {
  Text<255> Name;
  Bool WindowType;
  R4 Height, Width;  // ft
  I2 FrameType, ShadeType;
  R4 OverallUValue;  // Btu/(hr.ft2.F)
  R4 OverallShadeCo;
  Array<I2, 3> GlassTypeID;  // below 1: no layer
  Array<Text<25>, 3> GlassNameEnglish, GlassNameMetric;
  Array<R4, 3> GlassTrans, GlassReflect, GlassAbsorp;
  Array<R4, 3> GlassThickness;     // in
  Array<R4, 3> GlassConductivity;  // Btu/(hr.ft.F)
  I2 GapTypeID;
  Text<30> GapNameEnglish, GapNameMetric;
};
static_assert(sizeof(WindowRecord) == 555);

class WIN_Window final : public Entity<WIN_Window, WindowRecord> {
 public:
  const ClassInfo& info() const override;
  const Kind& kind() const override;

  /// Sets OverallUValue and OverallShadeCo from the layers, frame, shade and size. docs/windows.md has the method.
  /// Error `DivisionByZero`, and both results as they were, for a window without area.
  void CalculatePerformance();
};

}  // namespace tarn
