#include "platform/database.h"

#include <sqlite3.h>

#include "storage/kind.h"
#include "support/temp_project.h"

namespace tarn {
namespace {

using test::error_number;
using test::number;

class DatabaseTest : public test::ProjectTest {
 protected:
  void SetUp() override {
    ProjectTest::SetUp();
    for (int n : {1, 2, 4}) {
      const Cell values[]{cell(n), std::string("W") + std::to_string(n), cell(0.5 * n)};
      database->Execute("INSERT INTO WindowIndex (nIndex, szName, fHeight) VALUES (?,?,?)", values);
    }
  }
  Recordset all() { return database->OpenRecordset("SELECT * FROM WindowIndex ORDER BY nIndex ASC"); }
};

TEST_F(DatabaseTest, ATableIsDroppedAndMadeAnew) {
  for (int round = 0; round < 2; ++round) {
    database->Execute("INSERT INTO ShadeIndex (nIndex) VALUES (1)");
    EXPECT_EQ(database->lowest_free_index("ShadeIndex"), 2);
    database->Execute("DROP TABLE ShadeIndex");
    EXPECT_NE(test::error_number([&] { database->OpenRecordset("SELECT * FROM ShadeIndex").AtEof(); }), 0);
    database->Execute("CREATE TABLE ShadeIndex (nIndex INTEGER PRIMARY KEY, szName TEXT)");
    EXPECT_EQ(database->lowest_free_index("ShadeIndex"), 1);
  }
}

TEST_F(DatabaseTest, RecordsetsWalkSearchEditAddAndDelete) {
  auto windows = all();
  std::string names;
  for (; !windows.AtEof(); windows.MoveNext()) names += windows.Fields("szname").text();
  EXPECT_EQ(names, "W1W2W4");

  windows.FindFirst("nIndex = ?", {cell(2)});
  ASSERT_FALSE(windows.NoMatch());
  windows.Edit();
  windows.Fields("fHeight") = cell(9.0);
  windows.Update();
  windows.MoveNext();
  EXPECT_EQ(windows.Fields("nIndex").integer(), 4);
  windows.Delete();
  EXPECT_EQ(error_number([&] { windows.Edit(); }), 3167);
  windows.MoveNext();
  EXPECT_TRUE(windows.AtEof());

  windows.FindFirst("nIndex = ?", {cell(4)});
  EXPECT_TRUE(windows.NoMatch());
  windows.AddNew();
  windows.Fields("nIndex") = cell(3);
  windows.Fields("szName") = std::string("it's");
  windows.Update();
  EXPECT_EQ(rows("WindowIndex"),
            "/1.000000 W1/0.000000 /0.000000 /0.000000 /0.500000 /0.000000 \n"
            "/2.000000 W2/0.000000 /0.000000 /0.000000 /9.000000 /0.000000 \n"
            "/3.000000 it's/0.000000 /0.000000 /0.000000 /0.000000 /0.000000 \n");
}

TEST_F(DatabaseTest, MisuseIsAClearError) {
  auto none = database->OpenRecordset("SELECT * FROM WindowIndex WHERE nIndex = ?", {cell(7)});
  EXPECT_EQ(error_number([&] { none.Fields("nIndex"); }), 3021);
  EXPECT_EQ(error_number([&] { none.Edit(); }), 3021);
  EXPECT_EQ(error_number([&] { none.MoveNext(); }), 3021);
  EXPECT_EQ(error_number([&] { none.Update(); }), 3020);
  auto windows = all();
  EXPECT_EQ(error_number([&] { windows.Fields("fWeight"); }), 3265);
  EXPECT_EQ(error_number([&] { windows.Fields("fHeight") = cell(1.0); }), 3020);
  EXPECT_EQ(error_number([&] { database->Execute("DELETE FORM WindowIndex"); }), 3075);
  EXPECT_EQ(error_number([&] { database->OpenRecordset("SELECT * FROM NoTable").AtEof(); }), 3075);
  windows.FindFirst("nIndex = ?", {cell(1)});
  windows.Edit();
  windows.Fields("fHeight") = cell(3.0);
  database->Execute("DELETE FROM WindowIndex WHERE nIndex = 1");
  EXPECT_EQ(error_number([&] { windows.Update(); }), 3167);
  EXPECT_EQ(error_number([] { Engine::of_thread().Workspaces(1); }), 3265);
  EXPECT_EQ(error_number([] { Engine::of_thread().Workspaces(0).CommitTrans(); }), 3034);
}

TEST_F(DatabaseTest, QueriesOfTheClientsOwnRunAsTheyAre) {
  const struct {
    const char* sql;
    int64_t rows;
  } cases[]{{"SELECT * FROM WindowIndex WHERE nIndex > 0 LIMIT 2", 2},
            {"SELECT szName FROM WindowIndex GROUP BY szName;", 3},
            {"SELECT * FROM WindowIndex WHERE szName = 'A ORDER BY B'", 0},
            {"PRAGMA user_version", 1},
            {"SELECT * FROM (SELECT nIndex FROM WindowIndex ORDER BY nIndex)", 3}};
  for (const auto& c : cases) {
    auto found = database->OpenRecordset(c.sql);
    int64_t rows = 0;
    for (; !found.AtEof(); found.MoveNext()) ++rows;
    EXPECT_EQ(rows, c.rows) << c.sql;
    EXPECT_EQ(error_number([&] { found.AddNew(); }), number(ErrorNumber::DatabaseReadOnly)) << c.sql;
  }
  auto one = database->OpenRecordset("SELECT * FROM WindowIndex WHERE nIndex = ?", {cell(1)});
  one.FindFirst("nIndex = ? OR szName = ?", {cell(99), std::string("W2")});
  EXPECT_TRUE(one.NoMatch()) << "a search stays inside its rows";
  EXPECT_EQ(error_number([&] { database->Execute("DELETE FROM PlantIndex; DELETE FROM WindowIndex"); }), 3075);
  EXPECT_EQ(error_number([&] { database->Execute("DELETE FROM WindowIndex WHERE nIndex = ?"); }), 3075);
}

TEST_F(DatabaseTest, FilesThatAreNoIndexDatabaseAreRefusedByWhatTheyAre) {
  const struct {
    std::string bytes;
    int number;
    const char* says;
  } cases[]{{std::string("\0\1\0\0Standard Jet DB\0", 20), 3343, "older engine (Jet"},
            {std::string("\0\1\0\0Standard ACE DB\0", 20), 3343, "older engine (ACE"},
            {"a text file, not a database", 3343, "no index database"},
            {"", 3343, "no index database"},
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

TEST_F(DatabaseTest, TheLowestFreeIndexFollowsEveryChange) {
  EXPECT_EQ(database->lowest_free_index("WindowIndex"), 3);
  database->Execute("INSERT INTO WindowIndex (nIndex) VALUES (3)");
  EXPECT_EQ(database->lowest_free_index("WindowIndex"), 5);
  database->Execute("DELETE FROM WindowIndex WHERE nIndex = 2");
  EXPECT_EQ(database->lowest_free_index("WindowIndex"), 2);
  {
    Transaction undone;
    database->Execute("INSERT INTO WindowIndex (nIndex) VALUES (2)");
    EXPECT_EQ(database->lowest_free_index("WindowIndex"), 5);
  }
  EXPECT_EQ(database->lowest_free_index("WindowIndex"), 2);
  database->Execute("DELETE FROM WindowIndex");
  EXPECT_EQ(database->lowest_free_index("WindowIndex"), 1);
  database->Execute("INSERT INTO WindowIndex (nIndex) VALUES (1)");
  EXPECT_EQ(database->lowest_free_index("WindowIndex"), 2);
  database->Execute("UPDATE WindowIndex SET nIndex = 7 WHERE nIndex = 1");
  EXPECT_EQ(database->lowest_free_index("WindowIndex"), 1);
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(project.IndexDBName().c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "DELETE FROM WindowIndex", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(other);
  EXPECT_EQ(database->lowest_free_index("WindowIndex"), 1);
}

TEST_F(DatabaseTest, EverySearchOfTheLayerIsAnIndexStep) {
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

}  // namespace
}  // namespace tarn
