#include "tarn/window.h"

#include <cmath>

#include "support/temp_project.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

TEST(Window, EveryFieldLiesAtItsPlaceInInterfaceOrder) {
  const struct {
    const char* name;
    ptrdiff_t offset;
    size_t size;
  } fields[]{{"Name", 0, 255},
             {"WindowType", 255, 2},
             {"Height", 257, 4},
             {"Width", 261, 4},
             {"FrameType", 265, 2},
             {"ShadeType", 267, 2},
             {"OverallUValue", 269, 4},
             {"OverallShadeCo", 273, 4},
             {"GlassTypeID", 277, 6},
             {"GlassNameEnglish", 283, 75},
             {"GlassNameMetric", 358, 75},
             {"GlassTrans", 433, 12},
             {"GlassReflect", 445, 12},
             {"GlassAbsorp", 457, 12},
             {"GlassThickness", 469, 12},
             {"GlassConductivity", 481, 12},
             {"GapTypeID", 493, 2},
             {"GapNameEnglish", 495, 30},
             {"GapNameMetric", 525, 30}};
  const auto& members = WIN_Window().info().members;
  for (size_t i = 0; i < std::size(fields); ++i) {
    EXPECT_EQ(members[i].name, fields[i].name);
    EXPECT_EQ(members[i].field()->offset(), fields[i].offset) << fields[i].name;
    EXPECT_EQ(members[i].field()->size, fields[i].size) << fields[i].name;
  }
  WIN_Window window;
  window.GlassAbsorp(3) = 1.0F;
  const auto* bytes = reinterpret_cast<const unsigned char*>(static_cast<WindowRecord*>(&window));
  EXPECT_EQ(bytes[467], 0x80);
  EXPECT_EQ(bytes[468], 0x3F);
}

TEST(Window, LayersAreOneToThree) {
  test::RecordingLog log;
  WIN_Window window;
  for (const int bad : {0, 4}) {
    const int at[]{bad};
    EXPECT_EQ(std::get<float>(get_property(window, "GlassAbsorp", at)), 0.0F);
  }
  EXPECT_EQ(log.errors, std::vector<std::string>(2, "TarnDataHandler52|WIN_Window|GlassAbsorp [PropertyGet]"));
}

/// 4 ft by 5 ft with panes of 1/8 in clear glass.
void glaze(WIN_Window& window, std::initializer_list<int> type_ids) {
  window.Height = 4.0F;
  window.Width = 5.0F;
  int n = 0;
  for (const int id : type_ids) {
    ++n;
    window.GlassTypeID(n) = static_cast<int16_t>(id);
    window.GlassTrans(n) = 0.837F;
    window.GlassReflect(n) = 0.075F;
    window.GlassAbsorp(n) = 0.088F;
    window.GlassThickness(n) = 0.118F;
    window.GlassConductivity(n) = 0.52F;
  }
}

// Worked by hand for the panes above: the glass has 0.118/12/0.52 = 0.0189103 hr.ft2.F/Btu, the films 1/1.46 + 1/5.1.
TEST(Window, WorkedExamplesHold) {
  const struct {
    std::vector<int> ids;
    int gap, frame, shade;
    double u_value;
  } cases[]{{{1}, 0, 0, 0, 1 / (1 / 1.46 + 1 / 5.1 + 0.0189103)},
            {{0, 1, 0}, 0, 0, 0, 1 / (1 / 1.46 + 1 / 5.1 + 0.0189103)},
            {{1, 1}, 1, 0, 0, 1 / (1 / 1.46 + 1 / 5.1 + 2 * 0.0189103 + 1.09649)},
            {{1, 0, 16}, 1, 0, 0, 1 / (1 / 1.46 + 1 / 5.1 + 2 * 0.0189103 + 1.89394)},
            {{1, 1}, 6, 0, 0, 1 / (1 / 1.46 + 1 / 5.1 + 2 * 0.0189103)},
            {{1}, 0, 99, 0, 1 / (1 / 1.46 + 1 / 5.1 + 0.0189103)},
            {{}, 0, 0, 1, 1 / (1 / 1.46 + 1 / 5.1 + 0.3)}};
  for (const auto& c : cases) {
    WIN_Window window;
    glaze(window, {1, 1, 1});
    for (int i = 1; i <= 3; ++i)
      window.GlassTypeID(i) = static_cast<int16_t>(i <= static_cast<int>(c.ids.size()) ? c.ids[i - 1] : 0);
    window.GapTypeID = static_cast<int16_t>(c.gap);
    window.FrameType = static_cast<int16_t>(c.frame);
    window.ShadeType = static_cast<int16_t>(c.shade);
    window.CalculatePerformance();
    EXPECT_NEAR(window.OverallUValue, c.u_value, 2e-6) << c.ids.size() << " layers, gap " << c.gap;
    EXPECT_EQ(window.GlassTrans(3), 0.837F) << "absent layers stay as they are in the record";
  }
}

TEST(Window, AWindowWithoutAreaKeepsItsResults) {
  test::RecordingLog log;
  WIN_Window window;
  glaze(window, {1});
  window.Width = 0.0F;
  window.OverallUValue = 0.5F;
  window.OverallShadeCo = 0.6F;
  std::vector<Value> none;
  Value result;
  call_method(window, window.info().find("CalculatePerformance"), none, result);
  EXPECT_EQ(window.OverallUValue, 0.5F);
  EXPECT_EQ(window.OverallShadeCo, 0.6F);
  EXPECT_EQ(log.errors, std::vector<std::string>{"TarnDataHandler52|WIN_Window|CalculatePerformance()"});
}

}  // namespace
}  // namespace tarn
