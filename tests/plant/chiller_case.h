// A project with one chiller, of a shipped type, saved.
#pragma once

#include <sstream>

#include "support/temp_project.h"
#include "tarn/chiller.h"
#include "tarn/shipped.h"

namespace tarn::test {

inline constexpr size_t kRecord = 5464, kOwn = 268, kMode = 1732;

inline std::string bytes(CHL_Chiller& chiller) {
  const ChillerRecord& own = chiller;
  std::string all(reinterpret_cast<const char*>(&own), sizeof own);
  for (CHL_OperatingMode* mode : {&chiller.CoolingMode, &chiller.HeatRecoveryMode, &chiller.HeatingMode})
    all.append(reinterpret_cast<const char*>(mode->bytes().data()), mode->bytes().size());
  return all;
}

class ChillerTest : public ProjectTest {
 protected:
  void SetUp() override {
    ProjectTest::SetUp();
    chiller = project.NewChiller();
    chiller->CreateDefaultByType(3, shipped);
    chiller->HeatRecoveryMode.FLCapacity = 21.0F;
    chiller->HeatingMode.FLCapacity = 22.0F;
    chiller->Save();
  }
  std::string state() {
    return bytes(*chiller) + std::to_string(chiller->Index()) + bytes_of(project.ChillerFilename()) +
           rows("ChillerIndex");
  }

  /// The action fails with this message, or with one that begins so where it ends in a colon, and changes nothing.
  template <typename F>
  void refused(F action, const std::string& message) {
    const std::string before = state();
    const bool open = message.ends_with(": ");
    try {
      action();
      ADD_FAILURE() << "not refused: " << message;
    } catch (const Error& error) {
      EXPECT_EQ(std::string(error.what()).substr(0, open ? message.size() : std::string::npos), message);
    }
    EXPECT_TRUE(state() == before) << message;
  }

  const std::string shipped = shipped_file("chillers.dat");
  Ptr<CHL_Chiller> chiller;
};

}  // namespace tarn::test
