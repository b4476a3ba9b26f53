#include "tarn/platform/database.h"

#include <sqlite3.h>

#include "storage/kind.h"
#include "support/temp_project.h"

namespace tarn {
namespace {

using test::error_number;
using test::number;
using DatabaseTest = test::ProjectTest;

TEST_F(DatabaseTest, FilesThatAreNoIndexDatabaseAreRefusedByWhatTheyAre) {
  const struct {
    std::string bytes;
    int number;
    const char* says;
  } cases[]{{std::string("\0\1\0\0Standard Jet DB\0", 20), 3343, "older engine (Jet"},
            {std::string("\0\1\0\0Standard ACE DB\0", 20), 3343, "older engine (ACE"},
            {"a text file, not a database", 3343, "is not an index database"},
            {"", 3343, "is not an index database"},
            {"SQLite format 3" + std::string(4000, '\7'), 3343, "damaged"}};
  for (const auto& c : cases) {
    const std::string path = folder / "X.MDB";
    test::write_bytes(path, c.bytes);
    try {
      Database::open(path);
      ADD_FAILURE() << c.says;
    } catch (const Error& error) {
      EXPECT_EQ(error.number(), c.number);
      EXPECT_NE(error.description().find(c.says), std::string::npos) << error.what();
      EXPECT_NE(error.description().find(path), std::string::npos) << error.what();
    }
  }
  EXPECT_EQ(error_number([&] { Database::open(folder / "NONE.MDB"); }), number(ErrorNumber::DatabaseNotFound));
  EXPECT_EQ(error_number([&] { create_index(project.IndexDBName()); }), number(ErrorNumber::FileExists));
}

TEST_F(DatabaseTest, ALockedDatabaseIsAnErrorAndNothingIsWritten) {
  auto window = saved_window("A");
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(project.IndexDBName().c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  const std::string before = test::bytes_of(project.WindowFilename());
  window->Height = 7.0F;
  EXPECT_EQ(error_number([&] { window->Save(); }), number(ErrorNumber::DatabaseLocked));
  EXPECT_EQ(test::bytes_of(project.WindowFilename()), before);
  EXPECT_EQ(Engine::of_thread().Workspaces(0).depth(), 0U);
  sqlite3_close(other);
  window->Save();
  EXPECT_NE(test::bytes_of(project.WindowFilename()), before);
}

TEST_F(DatabaseTest, TransactionsAndSettingsAreNotChangedByStatements) {
  const struct {
    const char* sql;
    const char* refused;
  } cases[]{{"BEGIN", "BEGIN"},
            {"BEGIN IMMEDIATE", "BEGIN"},
            {"  /* done */ -- now\n\tcommit;", "COMMIT"},
            {"END TRANSACTION", "COMMIT"},
            {"RollBack", "ROLLBACK"},
            {"SAVEPOINT mine", "SAVEPOINT"},
            {"SAVEPOINT s2", "SAVEPOINT"},
            {"ROLLBACK TO s2", "ROLLBACK"},
            {"RELEASE s2", "RELEASE"},
            {"EXPLAIN COMMIT", "COMMIT"},
            {"ATTACH 'other.db' AS other", "ATTACH"},
            {"ATTACH ? AS other", "ATTACH"},
            {"DETACH other", "DETACH"},
            {"PRAGMA user_version = 7", "PRAGMA user_version"},
            {"PRAGMA main.journal_mode(wal)", "PRAGMA journal_mode"},
            {"pragma synchronous=OFF", "PRAGMA synchronous"},
            {"PRAGMA writable_schema = 1", "PRAGMA writable_schema"},
            {"PRAGMA wal_checkpoint", "PRAGMA wal_checkpoint"}};
  Transaction outer;
  saved_window("A");
  Transaction inner;
  saved_window("B");  // the same words have been run by the layer itself
  for (const auto& c : cases) {
    for (const bool query : {false, true}) {
      try {
        query ? static_cast<void>(database->OpenRecordset(c.sql).AtEof()) : static_cast<void>(database->Execute(c.sql));
        ADD_FAILURE() << c.sql;
      } catch (const Error& error) {
        const std::string says = error.description();
        EXPECT_EQ(error.number(), number(ErrorNumber::StatementRejected)) << c.sql;
        EXPECT_TRUE(says.starts_with(std::string(c.refused) + " is refused")) << says;
        EXPECT_NE(says.find("CommitTrans"), std::string::npos) << says;
        EXPECT_NE(says.find("tarn_commit"), std::string::npos) << says;
      }
    }
  }
  inner.commit();
  outer.commit();
  EXPECT_EQ(count("WindowIndex"), 2);
  for (const char* reads : {"PRAGMA user_version", "PRAGMA table_info(WindowIndex)", "PRAGMA main.journal_mode"})
    EXPECT_FALSE(database->OpenRecordset(reads).AtEof()) << reads;
  EXPECT_EQ(database->OpenRecordset("SELECT 'BEGIN' AS word").Fields("word").text(), "BEGIN");
  database->Execute("VACUUM");
}

}  // namespace
}  // namespace tarn
