// Calls of the C interface on a project as a whole: kinds, whole records, new entities, exchange, pictures, strictness.
#include <cstring>
#include <nlohmann/json.hpp>

#include "support/temp_project.h"
#include "tarn/construction.h"
#include "tarn/tarn.h"

namespace tarn {
namespace {

class CProjectTest : public test::ProjectTest {
 protected:
  void SetUp() override {
    test::ProjectTest::SetUp();
    ASSERT_EQ(tarn_create("COM_ProjectData", &handle), TARN_OK);
    set(handle, "WorkPath", project.WorkPath());
    set(handle, "FilePrefix", project.FilePrefix);
  }
  ~CProjectTest() override { tarn_release(handle); }

  static void set(tarn_object* object, const char* name, const std::string& text) {
    tarn_value value{TARN_TEXT, static_cast<int32_t>(text.size()), {}};
    value.as.text = text.c_str();
    EXPECT_EQ(tarn_let_by_name(object, name, nullptr, 0, &value), TARN_OK);
  }
  /// Of the project's last failed call.
  int32_t error(std::string& description) const {
    const char* text = "";
    const int32_t number = tarn_last_error(handle, nullptr, &text);
    description = text;
    return number;
  }
  tarn_object* saved(const char* group, const std::string& name) {
    tarn_object* entity = nullptr;
    EXPECT_EQ(tarn_new_entity(handle, group, nullptr, &entity), TARN_OK);
    set(entity, "Name", name);
    EXPECT_EQ(tarn_compute(entity), TARN_OK);
    EXPECT_EQ(tarn_call_by_name(entity, "Save", nullptr, 0, nullptr), TARN_OK);
    EXPECT_EQ(log.details, std::vector<std::string>());
    return entity;
  }

  tarn_object* handle = nullptr;
};

TEST_F(CProjectTest, WholeRecordsAreThoseOfTheOpenTransaction) {
  tarn_release(saved("windows", "First"));
  std::vector<char> records(3 * sizeof(WindowRecord), 'x');
  int32_t count = -1;
  ASSERT_EQ(tarn_begin(), TARN_OK);
  tarn_release(saved("windows", "Second"));
  ASSERT_EQ(tarn_read_records(handle, "windows", 1, 3, records.data(), records.size(), &count), TARN_OK);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(std::string(records.data() + sizeof(WindowRecord), 7), "Second ");
  ASSERT_EQ(tarn_rollback(), TARN_OK);
  ASSERT_EQ(tarn_read_records(handle, "windows", 1, 3, records.data(), records.size(), &count), TARN_OK);
  EXPECT_EQ(count, 1);

  struct {
    const char* group;
    int32_t first, count;
    size_t bytes;
    int32_t number;
    const char* says;
  } const refused[]{
      {"windows", 0, 2, 555, 450, "2 records of 555 bytes from record 0 on do not fit into 555 bytes"},
      {"windows", -1, 1, 555, 450, "from record -1 on"},
      {"window", 0, 1, 555, 450, "did you mean windows?"},
      {"air-systems", 0, 1, 555, 5, "Each of the air-systems has a file of its own"},
      {"doors", 0, 0, 0, 53, "DOR.DAT is not there"},
  };
  for (const auto& each : refused) {
    std::string description;
    EXPECT_NE(tarn_read_records(handle, each.group, each.first, each.count, records.data(), each.bytes, &count),
              TARN_OK)
        << each.says;
    EXPECT_EQ(error(description), each.number) << each.says;
    EXPECT_NE(description.find(each.says), std::string::npos) << description;
  }
  const std::string file = project.WindowFilename();
  test::write_bytes(file, test::bytes_of(file) + "cut");
  EXPECT_EQ(tarn_read_records(handle, "windows", 1, 3, records.data(), records.size(), &count), TARN_ERROR);
  std::string description;
  EXPECT_EQ(error(description), 3343);
  EXPECT_NE(description.find("record 2 is cut short: 3 of 555 bytes"), std::string::npos) << description;
}

TEST_F(CProjectTest, FieldsOfRecordsLieWhereTheirBytesAre) {
  for (int32_t i = 0; i < tarn_entity_kind_count(); ++i) {
    tarn_entity_kind kind{};
    ASSERT_EQ(tarn_describe_entity_kind(i, &kind), TARN_OK);
    EXPECT_EQ(kind.record_size == 0, kind.field_count == 0) << kind.group;
    std::vector<bool> taken(static_cast<size_t>(kind.record_size));
    for (int32_t f = 0; f < kind.field_count; ++f) {
      tarn_record_field field{};
      ASSERT_EQ(tarn_describe_record_field(kind.group, f, &field), TARN_OK);
      ASSERT_LE(field.offset + field.size, kind.record_size) << kind.group << ", field " << f;
      for (int32_t at = field.offset; at < field.offset + field.size; ++at) {
        EXPECT_FALSE(taken[static_cast<size_t>(at)]) << kind.group << ", byte " << at;
        taken[static_cast<size_t>(at)] = true;
      }
    }
  }
  tarn_record_field thickness{};
  int32_t f = 0;
  do ASSERT_EQ(tarn_describe_record_field("walls", f++, &thickness), TARN_OK) << "no wall's thickness in ft";
  while (std::string(thickness.part) != "Layer(2)." || std::string(thickness.unit) != "ft");
  tarn_entity_kind none{};
  EXPECT_EQ(tarn_describe_entity_kind(99, &none), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_describe_record_field("windows", 99, &thickness), TARN_BAD_ARGUMENT);
}

TEST_F(CProjectTest, APictureIsFoundByTheClassOfItsObject) {
  tarn_object* wall = nullptr;
  ASSERT_EQ(tarn_new_entity(handle, "walls", nullptr, &wall), TARN_OK);
  const char* svg = nullptr;
  ASSERT_EQ(tarn_picture(wall, &svg), TARN_OK);
  EXPECT_EQ(std::string(svg).rfind("<svg", 0), 0U);
  EXPECT_EQ(tarn_picture(wall, nullptr), TARN_BAD_ARGUMENT);
  tarn_release(wall);
  ASSERT_EQ(tarn_picture(handle, &svg), TARN_OK);
  EXPECT_NE(std::string(svg).find("What rests on what"), std::string::npos);
  tarn_object* window = nullptr;
  ASSERT_EQ(tarn_new_entity(handle, "windows", nullptr, &window), TARN_OK);
  EXPECT_EQ(tarn_picture(window, &svg), TARN_ERROR);
  const char* description = "";
  EXPECT_EQ(tarn_last_error(window, nullptr, &description), 5);
  EXPECT_EQ(std::string(description).rfind("WIN_Window has no picture; walls and roofs", 0), 0U) << description;
  tarn_release(window);
}

TEST_F(CProjectTest, AHandleMayBeReleasedWhileItsProjectIsExported) {
  tarn_release(saved("windows", "South"));
  const char* text = nullptr;
  size_t calls = 0;
  struct Releasing {
    tarn_object* project;
    size_t* calls;
  } releasing{handle, &calls};
  const tarn_progress release = [](void* context, size_t, size_t) {
    auto& of = *static_cast<Releasing*>(context);
    if ((*of.calls)++ == 0) tarn_release(of.project);
  };
  ASSERT_EQ(tarn_export(handle, nullptr, release, &releasing, &text), TARN_OK);
  EXPECT_GT(calls, 0U);
  EXPECT_NE(std::string(text).find("South"), std::string::npos);
  EXPECT_EQ(tarn_export(handle, nullptr, nullptr, nullptr, &text), TARN_BAD_HANDLE);
}

TEST_F(CProjectTest, WhatRestsOnWhatNeedsAnIndex) {
  set(handle, "FilePrefix", "NONE");
  const char* text = nullptr;
  for (const tarn_status status : {tarn_uses(handle, "windows", 1, &text), tarn_compare_text(handle, "{}", 0, &text)}) {
    EXPECT_EQ(status, TARN_ERROR);
    std::string description;
    error(description);
    EXPECT_NE(description.find("NONEINX.MDB"), std::string::npos) << description;
  }
}

TEST_F(CProjectTest, AStrictThreadGetsTheFailuresThatClassesTrap) {
  tarn_object* window = saved("windows", "South");
  const int32_t trans = tarn_member_number(window, "GlassTrans"), fourth[]{4};
  tarn_value out{};
  EXPECT_EQ(tarn_get(window, trans, fourth, 1, &out), TARN_OK);
  EXPECT_EQ(log.errors.size(), 1U);
  EXPECT_EQ(tarn_set_strict(1), 0);
  EXPECT_EQ(tarn_get(window, trans, fourth, 1, &out), TARN_ERROR);
  const char* source = "";
  EXPECT_EQ(tarn_last_error(window, &source, nullptr), 9);
  EXPECT_STREQ(source, "WIN_Window.GlassTrans [PropertyGet]");
  EXPECT_EQ(log.errors.size(), 1U);
  EXPECT_EQ(tarn_set_strict(0), 1);
  tarn_release(window);
}

TEST_F(CProjectTest, ExchangeAndNames) {
  tarn_object* window = saved("windows", "South");
  int32_t index = 0;
  const char *name = nullptr, *text = nullptr;
  ASSERT_EQ(tarn_describe_entity(window, &index, &name), TARN_OK);
  EXPECT_EQ(index, 1);
  EXPECT_STREQ(name, "South");
  EXPECT_EQ(tarn_describe_entity(handle, &index, &name), TARN_BAD_ARGUMENT);
  size_t told = 0;
  const tarn_progress tell = [](void* context, size_t, size_t) { ++*static_cast<size_t*>(context); };
  ASSERT_EQ(tarn_export(handle, "windows", tell, &told, &text), TARN_OK);
  EXPECT_GT(told, 0U);
  const std::string exported = text;
  int32_t imported = 0;
  ASSERT_EQ(tarn_import(handle, exported.c_str(), nullptr, nullptr, &imported), TARN_OK);
  EXPECT_EQ(imported, 1);
  EXPECT_EQ(tarn_export(handle, "windws", nullptr, nullptr, &text), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_import(handle, "{", nullptr, nullptr, &imported), TARN_ERROR);
  EXPECT_EQ(tarn_import_gbxml(handle, "none", nullptr, nullptr, nullptr), TARN_ERROR);
  EXPECT_EQ(tarn_import_gbxml(window, "none", nullptr, nullptr, nullptr), TARN_BAD_ARGUMENT);
  EXPECT_EQ(tarn_export_gbxml(handle, nullptr, nullptr, nullptr, nullptr), TARN_BAD_ARGUMENT);
  tarn_object* space = saved("spaces", "Office");
  const char* notes = nullptr;
  ASSERT_EQ(tarn_export_gbxml(handle, nullptr, nullptr, &text, &notes), TARN_OK);
  const std::string building = (folder.path + "/building.xml");
  test::write_bytes(building, text);
  ASSERT_EQ(tarn_import_gbxml(handle, building.c_str(), nullptr, nullptr, &text), TARN_OK);
  EXPECT_EQ(nlohmann::json::parse(text)["floor_area"], 1000);
  tarn_release(space);
  EXPECT_EQ(tarn_report(handle, "metric", nullptr, nullptr, &text), TARN_BAD_ARGUMENT);
  ASSERT_EQ(tarn_report(handle, "si", nullptr, nullptr, &text), TARN_OK);
  EXPECT_NE(std::string(text).find("Values are in SI units"), std::string::npos);
  EXPECT_EQ(tarn_import_weather(window, "none", nullptr, nullptr), TARN_BAD_ARGUMENT);
  tarn_release(window);
}

}  // namespace
}  // namespace tarn
