#include <cmath>
#include <cstring>
#include <map>

#include "project/defaults.h"
#include "reflect/allowed.h"
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

tarn_value whole(int32_t value) {
  tarn_value v{};
  v.type = TARN_INT32;
  v.as.i4 = value;
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

TEST(CInterface, ValuesThatCannotBeAreRefusedWhereThatIsAskedFor) {
  Handle window("WIN_Window");
  const int32_t height = tarn_member_number(window.object, "Height");
  const int32_t thickness = tarn_member_number(window.object, "GlassThickness");
  const tarn_value low = real(-3), right = real(4);
  EXPECT_EQ(tarn_let_allowed(window.object, height, nullptr, 0, &right), TARN_OK);
  EXPECT_EQ(tarn_let_allowed(window.object, height, nullptr, 0, &low), TARN_ERROR);
  const char *source = nullptr, *description = nullptr;
  tarn_last_error(window.object, &source, &description);
  EXPECT_STREQ(source, "WIN_Window.Height");
  EXPECT_STREQ(description, "found -3 ft; allowed are 0 ft and above.");
  const float block[3]{0.1F, 0.2F, -0.3F};
  float before[3]{}, after[3]{};
  ASSERT_EQ(tarn_get_block(window.object, thickness, before, sizeof before), TARN_OK);
  EXPECT_EQ(tarn_let_block_allowed(window.object, thickness, block, sizeof block), TARN_ERROR);
  ASSERT_EQ(tarn_get_block(window.object, thickness, after, sizeof after), TARN_OK);
  EXPECT_TRUE(std::equal(before, before + 3, after)) << "all or nothing";
  EXPECT_EQ(tarn_let(window.object, height, nullptr, 0, &low), TARN_OK) << "the rule of the class";
}

/// The rule is not asked where it is known beforehand that it refuses no such number.
TEST(CInterface, NumbersThatAreSetUnaskedAreThoseThatTheRuleAllows) {
  int refused_ones = 0;
  for (int32_t c = 0; c < tarn_class_count(); ++c) {
    const Handle handle(tarn_class_name(c));
    const ObjectPtr object = create(tarn_class_name(c));
    for (size_t m = 0; m < object->info().members.size(); ++m) {
      const Member& member = object->info().members[m];
      if (member.kind != MemberKind::Property || member.indexed() || member.read_only) continue;
      for (const double number : {-HUGE_VAL, HUGE_VAL, std::nan("")}) {
        if (member.type != ValueType::Real32 && member.type != ValueType::Real64) continue;
        const tarn_value value = real(number);
        EXPECT_NE(tarn_let_allowed(handle.object, static_cast<int32_t>(m), nullptr, 0, &value), TARN_OK)
            << tarn_class_name(c) << "." << member.name;
      }
      for (const int number : {-1, 0, 1, 4, 5, 8, 9, 17, 18, 63, 64, 65, 128, 32767}) {
        bool refused = false;
        try {
          check_let(*object, member, {}, number, Given::Alone);
        } catch (const Error&) {
          refused = true;
        }
        refused_ones += refused;
        for (const tarn_value& value : {real(number), whole(number)}) {
          const tarn_status status = tarn_let_allowed(handle.object, static_cast<int32_t>(m), nullptr, 0, &value);
          const char* description = "";
          tarn_last_error(handle.object, nullptr, &description);
          const bool by_rule = status != TARN_OK && std::string_view(description).starts_with("found");
          EXPECT_EQ(by_rule, refused) << tarn_class_name(c) << "." << member.name << " = " << number;
        }
      }
    }
  }
  EXPECT_GT(refused_ones, 1000);
}

TEST(CInterface, ValuesAreConvertedAndPropertiesHaveUnits) {
  double feet = 0;
  ASSERT_EQ(tarn_convert(1.2, "m", "ft", &feet), TARN_OK);
  EXPECT_NEAR(feet, 3.93700787, 1e-8);
  EXPECT_EQ(tarn_convert(1.2, "kg", "ft", &feet), TARN_ERROR);
  const char* description = nullptr;
  EXPECT_EQ(tarn_last_error(nullptr, nullptr, &description), 13);
  EXPECT_STREQ(description, "\"kg\" is not a unit for a value in ft; units that fit are ft, m, in, mm, cm, km");
  EXPECT_EQ(tarn_convert(1.2, nullptr, "ft", &feet), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_convert(1.2, "m", "ft", nullptr), TARN_BAD_ARGUMENT);
  Handle boiler("BLR_Boiler");
  tarn_value per_ton{};
  per_ton.type = TARN_INT16;
  per_ton.as.i2 = 1;
  ASSERT_EQ(tarn_let_by_name(boiler.object, "HotWaterFlowUnits", nullptr, 0, &per_ton), TARN_OK);
  const int32_t flow = tarn_member_number(boiler.object, "HotWaterFlow");
  const char* unit = nullptr;
  ASSERT_EQ(tarn_unit(boiler.object, flow, 0, &unit), TARN_OK);
  EXPECT_STREQ(unit, "gpm/ton");
  ASSERT_EQ(tarn_unit(boiler.object, flow, 1, &unit), TARN_OK);
  EXPECT_STREQ(unit, "L/(s.kW)");
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

TEST(CInterface, DescribesTheCodesOfEnumerations) {
  const auto value_of = [](const char* enumeration, const std::string& name) {
    for (int32_t i = 0; i < tarn_code_count(enumeration); ++i) {
      tarn_code code{};
      EXPECT_EQ(tarn_describe_code(enumeration, i, &code), TARN_OK);
      if (name == code.name) return std::to_string(code.value) + " " + code.text;
    }
    return std::string("none");
  };
  EXPECT_EQ(value_of("AS_ConstituentMasks", "CCM_INPUTMASK"), "67633150 inputs and zones");
  EXPECT_EQ(value_of("bld_energycategories", "EC_NONHVAC_REMOTE_STEAM").substr(0, 2), "13");
  EXPECT_EQ(tarn_code_count("AS_Nothing"), -1);
  tarn_code code{};
  EXPECT_EQ(tarn_describe_code("AS_ConstituentMasks", 6, &code), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_describe_code("AS_ConstituentMasks", 0, nullptr), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_enumeration_name(tarn_enumeration_count()), nullptr);
  EXPECT_STREQ(tarn_enumeration_name(0), "AS_AFactors");
  Handle boiler("BLR_Boiler"), heating("AS_HeatData");
  tarn_member member{};
  ASSERT_EQ(tarn_describe("BLR_Boiler", tarn_member_number(boiler.object, "FuelType"), &member), TARN_OK);
  EXPECT_STREQ(member.enumeration, "BLR_FuelTypes");
  ASSERT_EQ(tarn_describe("BLR_Boiler", tarn_member_number(boiler.object, "Name"), &member), TARN_OK);
  EXPECT_STREQ(member.enumeration, "");
}

/// Files in memory, as a client of the C interface gives them.
struct MemoryFiles {
  std::map<std::string, std::string> bytes;
  int failing = 0;  // writes from now on fail

  static MemoryFiles& of(void* context) { return *static_cast<MemoryFiles*>(context); }
  static std::string& data(void* file) { return *static_cast<std::string*>(file); }
  tarn_files table() {
    return {this,
            [](void* c, const char* path) -> int32_t {
              return of(c).bytes.contains(path) || std::filesystem::is_directory(path);
            },
            [](void* c, const char* path, int32_t mode, void** file) -> int32_t {
              if (mode == 2 || of(c).bytes.contains(path)) *file = &of(c).bytes[path];
              return 0;
            },
            [](void*, void*) {},
            [](void*, void* file, uint64_t offset, void* into, size_t size) -> int64_t {
              if (offset >= data(file).size()) return 0;
              return static_cast<int64_t>(data(file).copy(static_cast<char*>(into), size, offset));
            },
            [](void* c, void* file, uint64_t offset, const void* from, size_t size) -> int32_t {
              if (of(c).failing) return 1;
              std::string& all = data(file);
              all.resize(std::max(all.size(), offset + size));
              all.replace(offset, size, static_cast<const char*>(from), size);
              return 0;
            },
            [](void*, void* file) { return static_cast<int64_t>(data(file).size()); },
            [](void*, void* file, uint64_t size) -> int32_t { return data(file).resize(size), 0; },
            [](void*, void*) -> int32_t { return 0; },
            [](void* c, const char* path) -> int32_t { return of(c).bytes.erase(path), 0; },
            [](void* c, const char* from, const char* to) -> int32_t {
              of(c).bytes[to] = of(c).bytes[from];
              return of(c).bytes.erase(from), 0;
            },
            [](void*, const char*) -> int32_t { return 0; }};
  }
};

class CHostTest : public test::ProjectTest {
 protected:
  void TearDown() override {
    EXPECT_EQ(tarn_set_files(nullptr), TARN_OK);
    EXPECT_EQ(tarn_set_host(nullptr), TARN_OK);
  }
};

TEST_F(CHostTest, FilesAreTheClients) {
  MemoryFiles memory;
  const tarn_files table = memory.table();
  ASSERT_EQ(tarn_set_files(&table), TARN_OK);
  saved_window("glass");
  const std::string path = project.WindowFilename();
  EXPECT_FALSE(std::filesystem::exists(path));
  ASSERT_EQ(memory.bytes[path].size(), 2 * 555U);
  EXPECT_EQ(memory.bytes[path].substr(555, 5), "glass");
  auto window = project.NewWindow();
  window->Load(1);
  EXPECT_EQ(window->Name.trimmed(), "glass");
  memory.failing = 1;
  window->Name = "other";
  window->Save();
  EXPECT_NE(log.messages.back().find("The save is complete in " + project.IndexDBName()), std::string::npos);
  EXPECT_EQ(memory.bytes[path].substr(555, 5), "glass");
  memory.failing = 0;
  auto again = project.NewWindow();
  again->Load(1);
  EXPECT_EQ(again->Name.trimmed(), "other");
  files().settle();
  EXPECT_EQ(memory.bytes[path].substr(555, 5), "other");

  tarn_files lacking = table;
  lacking.truncate = nullptr;
  EXPECT_EQ(tarn_set_files(&lacking), TARN_BAD_ARGUMENT);
}

TEST_F(CHostTest, PathsNamesAndDatabasesAreTheClients) {
  struct Answers {
    std::string text, asked;
    tarn_object* database = nullptr;
  } answers;
  tarn_host services{};
  services.context = &answers;
  services.copy_name = [](void* context, const char* name) {
    auto& a = *static_cast<Answers*>(context);
    return (a.text = std::string(name) + " (2)").c_str();
  };
  services.directory_form = [](void*, const char*) { return "/jobs/"; };
  services.database = [](void* context, const char* path) {
    auto& a = *static_cast<Answers*>(context);
    a.asked = path;
    return a.database;
  };
  const std::string index = project.IndexDBName();
  ASSERT_EQ(tarn_set_host(&services), TARN_OK);
  EXPECT_EQ(host().copy_name("glass"), "glass (2)");
  EXPECT_EQ(host().directory_form("here"), "/jobs/");
  EXPECT_EQ(host().normalise_path("/a/./b/"), "/a/b") << "the product's own";
  EXPECT_NE(test::error_number([&] { host().database(index); }), 0) << "no handle came";
  ASSERT_EQ(tarn_open_database(index.c_str(), &answers.database), TARN_OK);
  EXPECT_EQ(host().database("any"), database);
  EXPECT_EQ(answers.asked, "any");
  EXPECT_EQ(tarn_release(answers.database), TARN_OK);
  services.copy_name = [](void*, const char*) -> const char* { return nullptr; };
  ASSERT_EQ(tarn_set_host(&services), TARN_OK);
  EXPECT_EQ(test::error_number([&] { host().copy_name("glass"); }), test::number(ErrorNumber::InvalidCall));
  ASSERT_EQ(tarn_set_host(nullptr), TARN_OK);
  EXPECT_EQ(host().copy_name("glass"), "Copy of glass");
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
