// A project that came from elsewhere: nothing outside of its folder is written or deleted, whatever lies in it.

#include <sqlite3.h>
#include <sys/stat.h>

#include "support/temp_project.h"

namespace tarn {
namespace {

using test::bytes_of;
using test::what_of;

class HostileTest : public test::ProjectTest {
 protected:
  void SetUp() override {
    ProjectTest::SetUp();
    saved_window("A");
    test::write_bytes(outside / "victim.DAT", "precious");
  }
  /// Closes the project, and runs statements on its database as another program does.
  void plant(const std::string& sql) {
    database.reset();
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(project.IndexDBName().c_str(), &other), SQLITE_OK);
    char* cause = nullptr;
    EXPECT_EQ(sqlite3_exec(other, sql.c_str(), nullptr, nullptr, &cause), SQLITE_OK) << (cause ? cause : "");
    sqlite3_free(cause);
    sqlite3_close(other);
  }
  std::string load() {
    return what_of([&] {
      auto window = project.NewWindow();
      window->Load(1);
    });
  }
  test::TempFolder outside;
};

TEST_F(HostileTest, RowsOfPendingBytesThatNoSaveHasWrittenAreRefused) {
  const std::string piece =
                        "X'00000000000000000200000000000000"
                        "4142'",
                    whole = ", 1, '', " + piece + ")";
  const std::string far = "X'000000000000000F02000000000000004142'", longer = "X'0000000000000000FF000000000000004142'";
  for (const std::string& row :
       {"(1, '../" + outside.path.substr(5) + "/victim.DAT'" + whole, "(1, '" + outside / "victim.DAT'" + whole,
        std::string("(1, 'JOBINX.MDB'") + whole, std::string("(1, 'OTHWIN.DAT'") + whole,
        std::string("(1, 'JOB/../X.DAT'") + whole, std::string("(1, 'JOBWIN.DAT', 3, '', ") + piece + ")",
        std::string("(1, 'JOBWIN.DAT', 1, '../victim.DAT', X'')"),
        std::string("(1, 'JOBWIN.DAT', 1, 'JOBWIN.DAT-new2', X'')"), "(1, 'JOBWIN.DAT', 0, '', " + far + ")",
        "(1, 'JOBWIN.DAT', 0, '', " + longer + ")", std::string("(1, 'JOBWIN.DAT', 0, '', X'00')")}) {
    const std::string before = bytes_of(project.WindowFilename());
    plant("DELETE FROM PendingWrites; INSERT INTO PendingWrites VALUES " + row);
    EXPECT_NE(load().find("a row 1 of pending record bytes that no save has written"), std::string::npos) << row;
    EXPECT_EQ(bytes_of(outside / "victim.DAT"), "precious") << row;
    EXPECT_EQ(bytes_of(project.WindowFilename()), before) << row;
  }
}

TEST_F(HostileTest, AJournalThatNamesAnotherFileIsNotPlayedBack) {
  plant("PRAGMA journal_mode = DELETE");
  const std::string victim = outside / "victim.DAT";
  const auto big = [](uint32_t n) {
    return std::string{static_cast<char>(n >> 24), static_cast<char>(n >> 16), static_cast<char>(n >> 8),
                       static_cast<char>(n)};
  };
  const std::string magic = "\xd9\xd5\x05\xf9\x20\xa1\x63\xd7";
  uint32_t sum = 0;
  for (const char c : victim) sum += static_cast<uint32_t>(static_cast<signed char>(c));
  const uint32_t pages = static_cast<uint32_t>(bytes_of(project.IndexDBName()).size() / 4096);
  std::string journal = magic + big(0) + big(1) + big(pages) + big(512) + big(4096);
  journal.resize(512);
  journal += big(0x40000000 / 4096 + 1) + victim + big(static_cast<uint32_t>(victim.size())) + big(sum) + magic;
  test::write_bytes(project.IndexDBName() + "-journal", journal);
  const std::string said = what_of([&] { Database::open(project.IndexDBName()); });
  EXPECT_NE(said.find("names another file, " + victim), std::string::npos) << said;
  EXPECT_EQ(bytes_of(victim), "precious");
}

TEST_F(HostileTest, LinksOutOfTheFolderAreNotWrittenThrough) {
  database->settle();
  const std::string file = project.WindowFilename(), kept = bytes_of(file), target = outside / "victim.DAT";
  test::write_bytes(target, kept);
  std::filesystem::remove(file);
  std::filesystem::create_symlink(target, file);
  auto window = project.NewWindow();
  window->Load(1);
  window->Height = 9.0F;
  EXPECT_NE(what_of([&] { window->Save(); }).find(file + " is a link to " + target), std::string::npos);
  EXPECT_EQ(bytes_of(target), kept);
  setenv("TARN_FOLLOW_LINKS", "1", 1);
  EXPECT_EQ(what_of([&] { window->Save(); }), "no error");
  unsetenv("TARN_FOLLOW_LINKS");
  EXPECT_NE(bytes_of(target), kept);
  EXPECT_TRUE(std::filesystem::is_symlink(file)) << "a link stays one";
}

TEST_F(HostileTest, TriggersDoNotRunAndViewsWithoutEndAreAnError) {
  plant("CREATE TRIGGER t AFTER UPDATE ON WindowIndex BEGIN DELETE FROM WindowIndex; END");
  database = host().database(project.IndexDBName());
  auto window = project.NewWindow();
  window->Load(1);
  window->Height = 9.0F;
  window->Save();
  EXPECT_EQ(count("WindowIndex"), 1);
  window.reset();
  plant(
      "DROP TABLE DoorIndex; CREATE VIEW DoorIndex AS WITH RECURSIVE c(nIndex) AS (SELECT 1 UNION ALL SELECT nIndex + "
      "1 "
      "FROM c) SELECT nIndex FROM c");
  database = host().database(project.IndexDBName());
  EXPECT_NE(what_of([&] { count("DoorIndex"); }).find("may hold a view in the place of a table"), std::string::npos);
}

TEST_F(HostileTest, ViewsInThePlaceOfATableDoNotFillTheMemory) {
  const std::string rows = "WITH RECURSIVE c(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM c LIMIT 999) SELECT ";
  const struct {
    std::string cell;
    const char* says;
  } cases[]{{"zeroblob(500000000)", "string or blob too big"},
            {"hex(zeroblob(1000000))", "bytes of text; the database may hold a view in the place of a table"},
            {"'a' LIKE hex(zeroblob(100))", "LIKE or GLOB pattern too complex"}};
  for (const auto& [cell, says] : cases) {
    plant("DROP VIEW IF EXISTS V; CREATE VIEW V AS " + rows + cell + " AS x FROM c");
    database = host().database(project.IndexDBName());
    EXPECT_NE(what_of([&] { database->OpenRecordset("SELECT x FROM V").AtEof(); }).find(says), std::string::npos)
        << cell;
  }
}

TEST_F(HostileTest, AReplacedFileKeepsItsMode) {
  test::write_bytes(project.WindowFilename() + ".DAT", "old");
  const std::string path = project.WindowFilename() + ".DAT";
  ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
  Transaction replaced;
  files().replace(path, std::vector<std::byte>(100'000), database);
  replaced.commit();
  struct stat status {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0640U);
  EXPECT_EQ(status.st_size, 100'000);
}

}  // namespace
}  // namespace tarn
