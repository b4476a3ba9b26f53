// A new project with a window and a chiller, by the C++ classes.
//
//   c++ job.cpp $(pkg-config --cflags --libs tarn) -o job && ./job FOLDER

#include <tarn/base/error.h>
#include <tarn/chiller.h>
#include <tarn/project.h>
#include <tarn/shipped.h>
#include <tarn/window.h>

#include <cstdio>
#include <string>

namespace {

void make_job(const std::string& folder) {
  tarn::COM_ProjectData project;
  project.SetWorkPath(folder);
  project.FilePrefix = "JOB";
  create_project(project);

  const auto window = project.NewWindow();
  window->CreateDefault();
  window->Reset(true);
  window->Name = "South 4x5";
  window->Height = 4.0f;
  window->Width = 5.0f;
  window->CalculatePerformance();
  window->Save();

  const auto chiller = project.NewChiller();
  const auto type = static_cast<int16_t>(tarn::CHL_ChillerTypes::CT_WATER_COOLED_CENTRIFUGAL);
  chiller->CreateDefaultByType(type, tarn::shipped_file("chillers.dat"));
  chiller->Name = "CH-1";
  chiller->Save();

  std::printf("South 4x5: %.3f Btu/(hr.ft2.F)\n", static_cast<double>(window->OverallUValue));
  std::printf("CH-1: %.0f tons\n", static_cast<double>(chiller->CoolingMode.FLCapacity));
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: job FOLDER\n");
    return 2;
  }
  try {
    make_job(arguments[1]);
  } catch (const tarn::Error& error) {
    std::fprintf(stderr, "error %d: %s\n", error.number(), error.what());
    return 1;
  }
}
