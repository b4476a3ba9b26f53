// Bad input of every sort: a clear error or log entry that names the file or the field, and nothing lost.

#include <sqlite3.h>

#include "project/defaults.h"
#include "project/kinds.h"
#include "support/temp_project.h"
#include "tarn/weather.h"

namespace tarn {
namespace {

class BadInputTest : public test::ProjectTest {
 protected:
  void SetUp() override {
    ProjectTest::SetUp();
    window = saved_window("A");
    saved_window("B");
  }
  void TearDown() override { sqlite3_close(other); }
  std::string state() { return rows("WindowIndex") + test::bytes_of(project.WindowFilename()); }
  void in_file(const std::string& path) {
    window->FileName = path;
    window->Save();
  }

  Ptr<WIN_Window> window;
  sqlite3* other = nullptr;
};

TEST_F(BadInputTest, IsNamedAndNothingIsLost) {
  const std::string win = project.WindowFilename();
  const struct {
    const char* what;
    std::function<void()> act;
    ErrorNumber number;  // {} where it is logged, and the operation goes on
    std::string says;
  } cases[]{
      {"folder missing", [&] { in_file(folder / "none/W.DAT"); }, ErrorNumber::PathNotFound, "none/W.DAT"},
      {"file not writable", [&] { in_file(folder.path); }, ErrorNumber::PermissionDenied, folder.path},
      {"no file name", [&] { in_file(""); }, ErrorNumber::FileNotFound, "FileName"},
      {"no database handle",
       [&] {
         window->SetDBHandle(nullptr);
         window->Save();
       },
       ErrorNumber::ObjectNotSet, "SetDBHandle"},
      {"file that is not a database",
       [&] {
         test::write_bytes(folder / "X.MDB", "text");
         Database::open(folder / "X.MDB");
       },
       ErrorNumber::UnknownFormat, "X.MDB"},
      {"locked database",
       [&] {
         ASSERT_EQ(sqlite3_open(project.IndexDBName().c_str(), &other), SQLITE_OK);
         ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
         window->Save();
       },
       ErrorNumber::DatabaseLocked, "JOBINX.MDB"},
      {"character outside the code page", [&] { window->Name = "日"; }, ErrorNumber::TypeMismatch, "U+65E5"},
      {"record without row", [&] { window->Load(9); }, {}, "Invalid ID number for window: 9"},
      {"row without record",
       [&] {
         Transaction undone;
         database->Execute("INSERT INTO WindowIndex (nIndex) VALUES (3)");
         window->Load(3);
       },
       ErrorNumber::InputPastEnd, win + " ends before record 3: it has 1665 bytes"},
      {"row without file",
       [&] {
         window->FileName = folder / "GONE.DAT";
         window->Load(2);
       },
       ErrorNumber::FileNotFound, "GONE.DAT, which has record 2, is not there"},
      {"partial record",
       [&] {
         const std::string whole = test::bytes_of(win);
         test::write_bytes(win, whole.substr(0, 1200));
         window->Load(2);
         test::write_bytes(win, whole);
       },
       {},
       "Record 2 of " + win + " is cut short"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    window = project.NewWindow();
    window->Load(1);
    window->Height = 9.0F;
    log.messages.clear();
    const std::string before = state();
    std::string said;
    int failed = 0;
    try {
      c.act();
      said = log.messages.empty() ? "" : log.messages.front();
    } catch (const Error& error) {
      failed = error.number();
      said = error.description();
      EXPECT_EQ(window->Index(), 1);
    }
    EXPECT_EQ(failed, test::number(c.number));
    EXPECT_NE(said.find(c.says), std::string::npos) << said;
    sqlite3_close(other);
    other = nullptr;
    EXPECT_EQ(state(), before);
    EXPECT_EQ(Engine::of_thread().Workspaces(0).depth(), 0U);
  }
}

TEST_F(BadInputTest, ReadingMakesNoFile) {
  std::filesystem::remove_all(folder.path + "/bare");
  std::filesystem::create_directory(folder.path + "/bare");
  COM_ProjectData bare;
  bare.SetWorkPath(folder / "bare");
  bare.FilePrefix = "JOB";
  create_index(bare.IndexDBName());
  const auto files = [&] { return std::distance(std::filesystem::directory_iterator(folder / "bare"), {}); };
  const auto before = files();
  for (const EntityKind& kind : entity_kinds()) {
    const auto entity = make_entity(bare, kind);
    test::error_number([&] { entity->Load(1); });
    test::error_number([&] { entity->CreateDefault(); });
    EXPECT_EQ(files(), before) << kind.group;
  }
  bare.NewWeather()->Load();
  EXPECT_EQ(files(), before) << "weather";
}

TEST_F(BadInputTest, AKindWithoutADefaultRecordHasTheProductsOwn) {
  test::TempFolder with;
  COM_ProjectData standard;
  standard.SetWorkPath(with.path);
  standard.FilePrefix = "JOB";
  create_index(standard.IndexDBName());
  write_default_records(standard);
  for (const EntityKind& kind : entity_kinds()) {
    if (kind.one == "air system" || kind.one == "plant" || kind.one == "building" || kind.one == "boiler") continue;
    const auto wanted = make_entity(standard, kind), entity = make_entity(project, kind);
    wanted->CreateDefault();
    for (const char* file : {"no file", "a record of zeros"}) {  // as the first entity of a file leaves it
      entity->CreateDefault();
      EXPECT_TRUE(gathered(entity->file().blocks()) == gathered(wanted->file().blocks())) << kind.one << ", " << file;
      EXPECT_EQ(entity->Index(), 0);
      test::write_bytes(entity->file().default_path(), std::string(size_of(entity->file().blocks()), '\0'));
    }
  }
}

}  // namespace
}  // namespace tarn
