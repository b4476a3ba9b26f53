#include "tarn/window.h"

#include "envelope/window_performance.h"
#include "storage/kind.h"

namespace tarn {

const Kind& WIN_Window::kind() const {
  static const Kind kind{.class_name = "WIN_Window",
                         .index_table = "WindowIndex",
                         .default_word = "Window",
                         .missing_row_message = "Invalid ID number for window: ",
                         .columns = {summary<WIN_Window, &WindowRecord::OverallUValue>("fOverallUValue"),
                                     summary<WIN_Window, &WindowRecord::OverallShadeCo>("fOverallShadeCo"),
                                     summary<WIN_Window, &WindowRecord::Height>("fHeight"),
                                     summary<WIN_Window, &WindowRecord::Width>("fWidth")},
                         .reach = Reach::through_spaces("Space_Window_Links", "Window_ID")};
  return kind;
}

const ClassInfo& WIN_Window::info() const {
  using R = WindowRecord;
  using C = WIN_Window;
  static constexpr auto members = describe<C>(
      Failures::Trapped, property<&R::Name>, property<&R::WindowType>, property<&R::Height>("ft"),
      property<&R::Width>("ft"), property<&R::FrameType>, property<&R::ShadeType>,
      property<&R::OverallUValue>("Btu/(hr.ft2.F)"), property<&R::OverallShadeCo>, property<&R::GlassTypeID>,
      property<&R::GlassNameEnglish>, property<&R::GlassNameMetric>, property<&R::GlassTrans>,
      property<&R::GlassReflect>, property<&R::GlassAbsorp>, property<&R::GlassThickness>("in"),
      property<&R::GlassConductivity>("Btu/(hr.ft.F)"), property<&R::GapTypeID>, property<&R::GapNameEnglish>,
      property<&R::GapNameMetric>, property<&C::Index>, property<&C::FileName>, method<&C::Reset>("bResetAll"),
      method<&C::CalculatePerformance>, method<&C::CopyInstance>, method<&C::Clone>("nIndex"), method<&C::GetFreeIndex>,
      method<&C::Delete>("nRecNum"), method<&C::GetDBHandle>, method<&C::SetDBHandle>("DB"),
      method<&C::Load>("nRecNum"), method<&C::Save>, method<&C::CreateDefault>, method<&C::IsNameUnique>("sName"),
      event<&C::OnUpdateDependencies>("OverrideDefault"));
  static const ClassInfo info(members);
  return info;
}

void WIN_Window::CalculatePerformance() {
  const WindowPerformance result = window_performance(*this);
  OverallUValue = result.u_value;
  OverallShadeCo = result.shade_coefficient;
}

}  // namespace tarn
