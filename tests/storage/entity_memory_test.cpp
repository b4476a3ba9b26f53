#include "storage/entity_memory.h"

#include <sqlite3.h>

#include "storage/kind.h"
#include "support/temp_project.h"

namespace tarn {
namespace {

using test::error_number;

class EntityMemoryTest : public test::ProjectTest {
 protected:
  int64_t free_index(const std::string& table) { return database->memory<FreeIndexes>().lowest(table); }
};

TEST_F(EntityMemoryTest, TheLowestFreeIndexFollowsEveryChange) {
  database->Execute("INSERT INTO WindowIndex (nIndex) VALUES (1), (2), (4)");
  EXPECT_EQ(free_index("WindowIndex"), 3);
  database->Execute("INSERT INTO WindowIndex (nIndex) VALUES (3)");
  EXPECT_EQ(free_index("WindowIndex"), 5);
  database->Execute("DELETE FROM WindowIndex WHERE nIndex = 2");
  EXPECT_EQ(free_index("WindowIndex"), 2);
  {
    Transaction undone;
    database->Execute("INSERT INTO WindowIndex (nIndex) VALUES (2)");
    EXPECT_EQ(free_index("WindowIndex"), 5);
  }
  EXPECT_EQ(free_index("WindowIndex"), 2);
  database->Execute("DELETE FROM WindowIndex");
  EXPECT_EQ(free_index("WindowIndex"), 1);
  database->Execute("INSERT INTO WindowIndex (nIndex) VALUES (1)");
  EXPECT_EQ(free_index("WindowIndex"), 2);
  database->Execute("UPDATE WindowIndex SET nIndex = 7 WHERE nIndex = 1");
  EXPECT_EQ(free_index("WindowIndex"), 1);
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(project.IndexDBName().c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "DELETE FROM WindowIndex", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(other);
  EXPECT_EQ(free_index("WindowIndex"), 1);
}

TEST_F(EntityMemoryTest, ATableIsDroppedAndMadeAnew) {
  for (int round = 0; round < 2; ++round) {
    database->Execute("INSERT INTO ShadeIndex (nIndex) VALUES (1)");
    EXPECT_EQ(free_index("ShadeIndex"), 2);
    database->Execute("DROP TABLE ShadeIndex");
    EXPECT_NE(test::error_number([&] { database->OpenRecordset("SELECT * FROM ShadeIndex").AtEof(); }), 0);
    database->Execute("CREATE TABLE ShadeIndex (nIndex INTEGER PRIMARY KEY, szName TEXT)");
    EXPECT_EQ(free_index("ShadeIndex"), 1);
  }
}

TEST_F(EntityMemoryTest, EverySearchOfTheLayerIsAnIndexStep) {
  auto window = project.NewWindow();
  std::vector<std::string> searches{
      "SELECT * FROM WindowIndex WHERE nIndex = ?1 ORDER BY nIndex ASC LIMIT 1",
      "SELECT * FROM WindowIndex WHERE szName = ?1 AND nIndex <> ?2",
      "DELETE FROM Space_Window_Links WHERE Window_ID = ?1",
      "SELECT * FROM Space_Wall_Links WHERE Space_ID = ?1 AND Wall_ID = ?2",
      "SELECT Count(*) FROM Plant_Equipment_Links WHERE Library_ID = ?1 AND Equipment_ID = ?2"};
  for (const std::string& statement : window->kind().reach.statements()) searches.push_back(statement);
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(project.IndexDBName().c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, kScratchList, nullptr, nullptr, nullptr), SQLITE_OK);
  for (const std::string& search : searches) {
    if (search == "DELETE FROM temp.Found") continue;
    sqlite3_stmt* plan = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(other, ("EXPLAIN QUERY PLAN " + search).c_str(), -1, &plan, nullptr), SQLITE_OK)
        << search;
    while (sqlite3_step(plan) == SQLITE_ROW) {
      const std::string step = reinterpret_cast<const char*>(sqlite3_column_text(plan, 3));
      const bool scan = step.starts_with("SCAN") && step.find("SUBQUERY") == std::string::npos && step != "SCAN Found";
      EXPECT_FALSE(scan) << search << ": " << step;
    }
    sqlite3_finalize(plan);
  }
  sqlite3_close(other);
}

TEST_F(EntityMemoryTest, WhatASaveMadeInMemoryMayGoWithItsTransaction) {
  add_dependants();
  link("Space_Window_Links (9, 1); System_Space_Links (4, 9)");
  {
    Transaction undone;
    saved_window("A");
    EXPECT_EQ(marked(), "S");
  }
  EXPECT_EQ(marked(), "");
  saved_window("B");
  EXPECT_EQ(marked(), "S");
}

TEST_F(EntityMemoryTest, ASaveWhoseRowIsGoneTakesNoOtherRow) {
  saved_window("A");
  auto window = saved_window("B");
  database->Execute("DELETE FROM WindowIndex WHERE nIndex = 2");
  EXPECT_EQ(error_number([&] { window->Save(); }), 3021);
  EXPECT_EQ(count("WindowIndex WHERE szName = 'A' AND nIndex = 1"), 1);
}

}  // namespace
}  // namespace tarn
