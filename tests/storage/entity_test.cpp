#include "tarn/storage/entity.h"

#include "project/defaults.h"
#include "project/kinds.h"
#include "storage/kind.h"
#include "support/temp_project.h"
#include "tarn/boiler.h"
#include "tarn/plant.h"
#include "tarn/reflect/by_name.h"
#include "tarn/shade.h"

namespace tarn {
namespace {

using test::bytes_of;
using test::error_number;

using EntityTest = test::ProjectTest;

TEST_F(EntityTest, NewEntitiesTakeTheLowestFreeIndexAndADefaultName) {
  for (int n = 1; n <= 4; ++n) EXPECT_EQ(saved_window("")->Index(), n);
  auto window = project.NewWindow();
  window->Save();
  EXPECT_EQ(window->Name.trimmed(), "Window  5");
  window->Delete(3);
  EXPECT_EQ(window->GetFreeIndex(), 3);
  window->Name = "   ";
  window->Save();
  EXPECT_EQ(window->Index(), 3);
  EXPECT_EQ(window->Name.trimmed(), "Window  3");
  EXPECT_EQ(database->OpenRecordset("SELECT szName FROM WindowIndex WHERE nIndex = 3").Fields("szName").text(),
            "Window  3");
}

TEST_F(EntityTest, RecordsLieAtIndexTimesLengthAndComeBackUnchanged) {
  saved_window("first");
  auto window = project.NewWindow();
  std::string odd(555, '\0');
  for (size_t i = 0; i < odd.size(); ++i) odd[i] = static_cast<char>(i * 37 + 11);
  odd[0] = 'n';
  odd[255] = '\7';  // a Boolean that is neither 0 nor -1
  std::copy(odd.begin(), odd.end(), reinterpret_cast<char*>(static_cast<WindowRecord*>(window.get())));
  window->Save();
  const std::string file = bytes_of(project.WindowFilename());
  ASSERT_EQ(file.size(), 3U * 555);
  const std::string stored = file.substr(1110);
  EXPECT_EQ(stored.substr(255), odd.substr(255));
  auto read = project.NewWindow();
  read->Load(2);
  read->Save();
  EXPECT_EQ(bytes_of(project.WindowFilename()), file);
}

TEST_F(EntityTest, TheRecordWinsOverTheIndexRow) {
  saved_window("record");
  database->Execute("UPDATE WindowIndex SET szName = 'row', fOverallUValue = 9");
  auto window = project.NewWindow();
  window->Load(1);
  EXPECT_EQ(window->Name.trimmed(), "record");
  EXPECT_EQ(window->OverallUValue, 0.0F);
}

TEST_F(EntityTest, AFailedLoadLeavesTheObjectAsItWas) {
  saved_window("A");
  auto window = saved_window("B");
  window->FileName = folder / "none/W.DAT";
  EXPECT_NE(error_number([&] { window->Load(1); }), 0);
  EXPECT_EQ(window->Index(), 2);
  EXPECT_EQ(window->Name.trimmed(), "B");
}

TEST_F(EntityTest, AMissingRowIsLoggedAndTheRecordAtTheOwnIndexRead) {
  auto window = saved_window("A");
  window->Name = "changed";
  window->Load(7);
  EXPECT_EQ(log.messages, std::vector<std::string>{"Invalid ID number for window: 7"});
  EXPECT_EQ(window->Index(), 1);
  EXPECT_EQ(window->Name.trimmed(), "A");
}

TEST_F(EntityTest, ASaveWhoseRowIsGoneWritesNothing) {
  auto window = saved_window("A");
  const std::string before = bytes_of(project.WindowFilename());
  database->Execute("DELETE FROM WindowIndex");
  window->Height = 9.0F;
  EXPECT_EQ(error_number([&] { window->Save(); }), 3021);
  EXPECT_EQ(bytes_of(project.WindowFilename()), before);
  EXPECT_EQ(window->Index(), 1);
}

TEST_F(EntityTest, DeleteRemovesRowAndLinksAndLeavesTheBytes) {
  saved_window("A");
  auto window = saved_window("B");
  database->Execute("INSERT INTO Space_Window_Links VALUES (5, 1), (5, 2), (6, 2)");
  const std::string before = bytes_of(project.WindowFilename());
  window->Delete();
  EXPECT_EQ(window->Index(), 0);
  EXPECT_EQ(window->Name.trimmed(), "B");
  EXPECT_EQ(count("WindowIndex"), 1);
  EXPECT_EQ(rows("Space_Window_Links"), "/5.000000 /1.000000 \n");
  EXPECT_EQ(bytes_of(project.WindowFilename()), before);
}

TEST_F(EntityTest, ClonesAreUnsavedCopiesAndTwinsAreExact) {
  auto window = saved_window("A");
  window->Height = 3.5F;
  window->Save();
  saved_window("B");
  auto clone = window->Clone();
  EXPECT_EQ(clone->Index(), 0);
  EXPECT_EQ(clone->Height, 3.5F);
  EXPECT_EQ(clone->Name.trimmed(), "Copy of A");
  EXPECT_EQ(clone->FileName, window->FileName);
  EXPECT_FALSE(clone->m_bCloning);
  auto other = window->Clone(int16_t{2});
  EXPECT_EQ(other->Index(), 0);
  EXPECT_EQ(other->Height, 0.0F);
  EXPECT_EQ(other->Name.trimmed(), "Copy of A") << "by the name of the object that is asked";
  EXPECT_EQ(window->Name.trimmed(), "A");
  auto twin = window->CopyInstance();
  EXPECT_EQ(twin->Index(), 1);
  EXPECT_EQ(twin->Name.str(), window->Name.str());
  clone->Save();
  EXPECT_EQ(clone->Index(), 3);
}

TEST_F(EntityTest, ANamelessObjectNamesItsCloneByWhatItCopies) {
  write_default_records(project);
  saved_window("A");
  auto shade = project.NewShade();
  shade->Name = "Awning";
  shade->Save();
  auto boiler = project.NewBoiler();
  boiler->CreateDefault();
  boiler->Name = "Gas";
  boiler->Save();
  auto plant = project.NewPlant();
  plant->CreateDefault();
  plant->Reset(true);
  plant->General.Name = "Hot water";
  plant->Save();
  EXPECT_EQ(project.NewWindow()->Clone(int16_t{1})->Name.trimmed(), "Copy of A");
  EXPECT_EQ(project.NewShade()->Clone(int16_t{1})->Name.trimmed(), "Copy of Awning");
  EXPECT_EQ(project.NewBoiler()->Clone(int16_t{1})->Name.trimmed(), "Copy of Gas");
  EXPECT_EQ(project.NewPlant()->Clone(int16_t{1})->General.Name.trimmed(), "Copy of Hot water");
  EXPECT_EQ(project.NewWindow()->Clone()->Name.trimmed(), "") << "nameless, as what it copies";
}

TEST_F(EntityTest, TheDefaultRecordIsRecordZero) {
  auto window = project.NewWindow();
  window->Name = "Template";
  window->Height = 4.0F;
  window->SaveDefault();
  EXPECT_EQ(bytes_of(project.WindowFilename()).size(), 555U);
  auto made = saved_window("A");
  made->CreateDefault();
  EXPECT_EQ(made->Index(), 0);
  EXPECT_EQ(made->Height, 4.0F);
  made->Reset(true);
  EXPECT_EQ(made->Name.bytes().front(), '\0');
}

TEST_F(EntityTest, NamesAreUniqueToTheLetterCase) {
  auto a = saved_window("A");
  auto b = saved_window("B");
  const struct {
    const char* name;
    bool unique;
  } cases[]{{"A", false}, {" A ", false}, {"a", true}, {"B", true}, {"", true}, {"C", true}};
  for (const auto& c : cases) EXPECT_EQ(b->IsNameUnique(std::string(c.name)), c.unique) << c.name;
}

TEST_F(EntityTest, AnApostropheIsACharacterOfANameForEveryKind) {
  write_default_records(project);
  for (const EntityKind& kind : entity_kinds()) {
    const auto entity = make_entity(project, kind);
    const std::string table(entity->kind().index_table);
    database->Execute("INSERT INTO " + table + " (nIndex, szName) VALUES (7, 'O''Hara ''s')");
    for (const auto& [name, unique] : {std::pair("O'Hara 's", false), {"O'Hara", true}, {"' OR '1'='1", true}})
      EXPECT_EQ(entity->IsNameUnique(name), unique) << kind.group << " " << name;
  }
  EXPECT_TRUE(log.errors.empty());
  auto shade = project.NewShade();
  shade->Name = "A name of thirty characters, a";
  shade->Save();
  EXPECT_FALSE(project.NewShade()->IsNameUnique("A name of thirty characters, and more")) << "as it would be stored";
}

TEST_F(EntityTest, IndexesEndAt32767) {
  database->Execute(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 32767) INSERT INTO WindowIndex "
      "(nIndex) SELECT i FROM n");
  auto window = project.NewWindow();
  EXPECT_EQ(error_number([&] { window->Save(); }), 6);
  EXPECT_EQ(window->Index(), 0);
  database->Execute("DELETE FROM WindowIndex WHERE nIndex = 32767");
  window->Save();
  EXPECT_EQ(window->Index(), 32767);
}

TEST_F(EntityTest, PartialRecordsAreLoggedAndNeverExtendedSilently) {
  saved_window("A");
  const std::string whole = bytes_of(project.WindowFilename());
  test::write_bytes(project.WindowFilename(), whole.substr(0, 1000));
  auto window = project.NewWindow();
  window->Load(1);
  ASSERT_EQ(log.messages.size(), 1U);
  EXPECT_NE(log.messages[0].find("Record 1 of " + project.WindowFilename() + " is cut short: 445 of 555"),
            std::string::npos);
  EXPECT_EQ(bytes_of(project.WindowFilename()).size(), 1000U);
  saved_window("B");
  ASSERT_EQ(log.messages.size(), 2U);
  EXPECT_NE(log.messages[1].find("ends in a partial record (1)"), std::string::npos) << log.messages[1];
}

TEST_F(EntityTest, ATrappedFailureLeavesNoOpenFileAndNoTransaction) {
  saved_window("first");  // after which the engine's journal is there and open
  auto window = project.NewWindow();
  window->FileName = folder / "none/W.DAT";
  const auto descriptors = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
  count("WindowIndex");
  const auto before = descriptors();
  std::vector<Value> number{int32_t{1}};
  std::vector<Value> none;
  Value result;
  call_method(*window, window->info().find("Load"), number, result);
  call_method(*window, window->info().find("Save"), none, result);
  window->SetDBHandle(nullptr);
  call_method(*window, window->info().find("GetFreeIndex"), none, result);
  EXPECT_EQ(std::get<int16_t>(result), 0);
  EXPECT_EQ(log.errors,
            (std::vector<std::string>{"TarnDataHandler52|WIN_Window|Load()", "TarnDataHandler52|WIN_Window|Save()",
                                      "TarnDataHandler52|WIN_Window|GetFreeIndex()"}));
  EXPECT_EQ(descriptors(), before);
  EXPECT_EQ(Engine::of_thread().Workspaces(0).depth(), 0U);
  window->SetDBHandle(database);
  window->FileName = project.WindowFilename();
  window->Save();
  EXPECT_EQ(window->Index(), 2);
}

}  // namespace
}  // namespace tarn
