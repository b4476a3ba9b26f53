#include "tarn/copy.h"

#include "check/sound_project.h"
#include "tarn/compare.h"

namespace tarn::test {
namespace {

std::string differences(COM_ProjectData& first, COM_ProjectData& second) {
  return differences_json(compare(*comparable_project(first), *comparable_project(second)));
}

TEST(Copy, HasWhatWasSavedLast) {
  SoundProject of;
  const auto window = of.project.NewWindow();  // its bytes may wait in the index
  window->Load(1);
  window->Height = window->Height + 1;
  window->Save();
  COM_ProjectData copy;
  copy.SetWorkPath(of.folder / "deep/copies");
  copy.FilePrefix = "TALL";
  copy_project(of.project, copy);
  EXPECT_EQ(differences(of.project, copy), "[]");
  EXPECT_EQ(check_project(copy), std::vector<CheckFinding>());

  const auto changed = copy.NewWindow();
  changed->Load(1);
  changed->Height = 1;
  changed->Save();
  window->Load(1);
  EXPECT_NE(window->Height, 1) << "they are two projects";
}

TEST(Copy, NeverGoesOverAProject) {
  SoundProject of, other;
  const auto before = other.bytes();
  EXPECT_THROW(copy_project(of.project, other.project), Error);
  EXPECT_THROW(copy_project(of.project, of.project), Error);
  EXPECT_EQ(other.bytes(), before);
  COM_ProjectData none, target;
  none.SetWorkPath(of.folder / "none");
  none.FilePrefix = "JOB";
  target.SetWorkPath(of.folder / "target");
  target.FilePrefix = "JOB";
  EXPECT_THROW(copy_project(none, target), Error);
  EXPECT_FALSE(std::filesystem::exists(of.folder / "target"));
}

}  // namespace
}  // namespace tarn::test
