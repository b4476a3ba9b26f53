#include <cstring>

#include "project/defaults.h"
#include "support/temp_project.h"
#include "tarn/class_list.h"
#include "tarn/tarn.h"

namespace tarn {
namespace {

struct Handle {
  explicit Handle(const char* class_name) { EXPECT_EQ(tarn_create(class_name, &object), TARN_OK); }
  ~Handle() { tarn_release(object); }
  tarn_object* object = nullptr;
};

tarn_value real(double value) {
  tarn_value v{};
  v.type = TARN_REAL64;
  v.as.r8 = value;
  return v;
}

TEST(CInterface, GetsLetsAndCallsByNameAndNumber) {
  Handle window("win_window");
  EXPECT_STREQ(tarn_class_of(window.object), "WIN_Window");
  const int32_t trans = tarn_member_number(window.object, "GLASSTRANS");
  const int32_t second[]{2};
  const tarn_value value = real(0.78);
  ASSERT_EQ(tarn_let(window.object, trans, second, 1, &value), TARN_OK);
  tarn_value out{};
  ASSERT_EQ(tarn_get_by_name(window.object, "glasstrans", second, 1, &out), TARN_OK);
  EXPECT_EQ(out.type, TARN_REAL32);
  EXPECT_EQ(out.as.r4, 0.78F);
  float block[3]{};
  ASSERT_EQ(tarn_get_block(window.object, trans, block, sizeof block), TARN_OK);
  EXPECT_EQ(block[1], 0.78F);
  block[2] = 0.5F;
  ASSERT_EQ(tarn_let_block(window.object, trans, block, sizeof block), TARN_OK);
  EXPECT_EQ(tarn_get_block(window.object, trans, block, 4), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_get_block(window.object, tarn_member_number(window.object, "GlassNameEnglish"), block, 75),
            TARN_NO_MEMBER);
  tarn_value copy{};
  ASSERT_EQ(tarn_call_by_name(window.object, "CopyInstance", nullptr, 0, &copy), TARN_OK);
  const int32_t third[]{3};
  ASSERT_EQ(tarn_get(copy.as.object, trans, third, 1, &out), TARN_OK);
  EXPECT_EQ(out.as.r4, 0.5F);
  EXPECT_EQ(tarn_release(copy.as.object), TARN_OK);
}

TEST(CInterface, ChillerMapsGoIntoChillersAlone) {
  Handle chiller("CHL_Chiller"), window("WIN_Window");
  const char* notes = "as before";
  EXPECT_EQ(tarn_import_chiller(nullptr, "none", &notes), TARN_BAD_HANDLE);
  EXPECT_EQ(tarn_import_chiller(window.object, "none", &notes), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_import_chiller(chiller.object, nullptr, &notes), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_import_chiller(chiller.object, "none", nullptr), TARN_ERROR);
  const char* description = nullptr;
  EXPECT_EQ(tarn_last_error(chiller.object, nullptr, &description), 53);
  EXPECT_STREQ(description, "Cannot read none.");
  EXPECT_STREQ(notes, "as before");
}

TEST(CInterface, FilesByNumber) {
  test::TempFolder folder;
  const std::string path = folder / "blocks";
  int16_t file = 0;
  int32_t position = 0;
  EXPECT_EQ(tarn_open_file(path.c_str(), 1, nullptr), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_open_file(nullptr, 1, &file), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_open_file(path.c_str(), 0, &file), TARN_ERROR);
  EXPECT_EQ(tarn_last_error(nullptr, nullptr, nullptr), 53);
  ASSERT_EQ(tarn_open_file(path.c_str(), 1, &file), TARN_OK);
  EXPECT_EQ(file, 1) << "a call that fails leaves none open";
  Handle header("ADL_DXXFileHeader");
  tarn_value arguments[2]{};
  arguments[0].type = TARN_INT16;
  arguments[0].as.i2 = file;
  arguments[1].type = TARN_INT32;
  arguments[1].as.i4 = 5;
  ASSERT_EQ(tarn_call_by_name(header.object, "Save", arguments, 2, nullptr), TARN_OK);
  ASSERT_EQ(tarn_file_position(file, &position), TARN_OK);
  EXPECT_EQ(position, 37);
  ASSERT_EQ(tarn_close_file(file), TARN_OK);
  EXPECT_EQ(test::bytes_of(path), std::string(4, '\0') + std::string(32, ' '));
  EXPECT_EQ(tarn_close_file(file), TARN_ERROR);
  EXPECT_EQ(tarn_drop_file(file), TARN_ERROR);
  EXPECT_EQ(tarn_file_position(file, &position), TARN_ERROR);
  EXPECT_EQ(tarn_last_error(nullptr, nullptr, nullptr), 52);
}

TEST(CInterface, BadHandlesAreAnsweredByEveryCall) {
  tarn_object* released = nullptr;
  ASSERT_EQ(tarn_create("WIN_Window", &released), TARN_OK);
  ASSERT_EQ(tarn_release(released), TARN_OK);
  Handle reused("WIN_Window");
  for (tarn_object* bad : {static_cast<tarn_object*>(nullptr), released, reinterpret_cast<tarn_object*>(~uintptr_t{0}),
                           reinterpret_cast<tarn_object*>(uintptr_t{1})}) {
    tarn_value value{};
    EXPECT_EQ(tarn_release(bad), TARN_BAD_HANDLE);
    EXPECT_EQ(tarn_class_of(bad), nullptr);
    EXPECT_EQ(tarn_member_number(bad, "Name"), -1);
    EXPECT_EQ(tarn_get(bad, 0, nullptr, 0, &value), TARN_BAD_HANDLE);
    EXPECT_EQ(tarn_let(bad, 0, nullptr, 0, &value), TARN_BAD_HANDLE);
    EXPECT_EQ(tarn_call(bad, 0, nullptr, 0, &value), TARN_BAD_HANDLE);
    EXPECT_EQ(tarn_get_block(bad, 0, &value, 4), TARN_BAD_HANDLE);
    EXPECT_EQ(tarn_listen(bad, 0, nullptr, nullptr), TARN_BAD_HANDLE);
    EXPECT_EQ(tarn_execute(bad, "", nullptr, 0, nullptr), TARN_BAD_HANDLE);
    EXPECT_EQ(tarn_last_error(bad, nullptr, nullptr), 91);
  }
}

TEST(CInterface, BadArgumentsAreAStatusAndNeverACrash) {
  Handle window("WIN_Window");
  tarn_object* out = nullptr;
  tarn_value value{};
  EXPECT_EQ(tarn_create(nullptr, &out), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_create("WIN_Window", nullptr), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_create("WIN_Windows", &out), TARN_ERROR);
  const char* description = nullptr;
  EXPECT_EQ(tarn_last_error(nullptr, nullptr, &description), 429);
  EXPECT_NE(std::string(description).find("did you mean WIN_Window?"), std::string::npos);
  EXPECT_EQ(tarn_get(window.object, 999, nullptr, 0, &value), TARN_NO_MEMBER);
  EXPECT_EQ(tarn_get(window.object, -1, nullptr, 0, &value), TARN_NO_MEMBER);
  EXPECT_EQ(tarn_get_by_name(window.object, "Heigth", nullptr, 0, &value), TARN_NO_MEMBER);
  tarn_last_error(window.object, nullptr, &description);
  EXPECT_NE(std::string(description).find("did you mean Height?"), std::string::npos);
  EXPECT_EQ(tarn_get_by_name(window.object, nullptr, nullptr, 0, &value), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_get_by_name(window.object, "GlassTrans", nullptr, 0, &value), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_get_by_name(window.object, "GlassTrans", nullptr, 1, &value), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_get_by_name(window.object, "Height", nullptr, 0, nullptr), TARN_BAD_ARGUMENT);
  value.type = 77;
  EXPECT_EQ(tarn_let_by_name(window.object, "Height", nullptr, 0, &value), TARN_BAD_ARGUMENT);
  value.type = TARN_TEXT;
  value.as.text = nullptr;
  EXPECT_EQ(tarn_let_by_name(window.object, "Name", nullptr, 0, &value), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_call_by_name(window.object, "Load", nullptr, 0, &value), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_call_by_name(window.object, "Save", nullptr, -1, &value), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_execute(window.object, "SELECT 1", nullptr, 0, nullptr), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_commit(), TARN_ERROR);
  EXPECT_EQ(tarn_member_count("Nothing"), -1);
}

TEST(CInterface, DescribesEveryMemberOfEveryClass) {
  for (int32_t c = 0; c < tarn_class_count(); ++c) {
    const char* name = tarn_class_name(c);
    const auto& members = class_info(name).members;
    ASSERT_EQ(tarn_member_count(name), static_cast<int32_t>(members.size()));
    for (int32_t m = 0; m < tarn_member_count(name); ++m) {
      tarn_member out{};
      ASSERT_EQ(tarn_describe(name, m, &out), TARN_OK);
      EXPECT_EQ(std::string_view(out.name), members[static_cast<size_t>(m)].name);
      EXPECT_EQ(std::strlen(out.name), members[static_cast<size_t>(m)].name.size());
    }
  }
}

using DefaultsTest = test::ProjectTest;

TEST_F(DefaultsTest, ANewProjectHasADefaultRecordForEveryKind) {
  write_default_records(project);
  auto window = project.NewWindow();
  window->CreateDefault();
  EXPECT_EQ(window->Name.trimmed(), "Default Window");
  EXPECT_EQ(window->GlassTypeID(2), 1);
  const float stored = window->OverallUValue;
  window->CalculatePerformance();
  EXPECT_EQ(window->OverallUValue, stored);
}

}  // namespace
}  // namespace tarn
