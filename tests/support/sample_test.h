// What tests of the sample project share: it lies in a folder of its own, and the clock stands.
#pragma once

#include <gtest/gtest.h>

#include "support/sample_project.h"
#include "support/temp_project.h"

namespace tarn::test {

class SampleTest : public testing::Test {
 protected:
  void SetUp() override {
    project.SetWorkPath(folder.path);
    project.FilePrefix = "JOB";
    host().now = [this] { return now; };
    make_sample(project);
  }
  void TearDown() override { host().now = standard_host().now; }

  static bool says(const std::string& page, const std::string& text) { return page.find(text) != std::string::npos; }

  TempFolder folder;
  COM_ProjectData project;
  std::string now = "2026-11-22 10:00:00";
};

}  // namespace tarn::test
