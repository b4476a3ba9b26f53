#include "tarn/platform/recordset.h"

#include "support/temp_project.h"

namespace tarn {
namespace {

using test::error_number;
using test::number;

/// Three windows, W1, W2 and W4, as high as half their index.
class RecordsetTest : public test::ProjectTest {
 protected:
  void SetUp() override {
    ProjectTest::SetUp();
    for (int n : {1, 2, 4}) {
      const Cell values[]{cell(n), std::string("W") + std::to_string(n), cell(0.5 * n)};
      database->Execute("INSERT INTO WindowIndex (nIndex, szName, fHeight) VALUES (?,?,?)", values);
    }
  }
  /// The names from the current row on: "W1 W2 ".
  static std::string rest(Recordset& windows) {
    std::string names;
    for (; !windows.AtEof(); windows.MoveNext()) names += windows.Fields("szName").text() + " ";
    return names;
  }
  double height(int index) {
    return database->OpenRecordset("SELECT * FROM WindowIndex WHERE nIndex = ?", {cell(index)})
        .Fields("fHeight")
        .real();
  }
  static void add(Recordset& windows, int index, const std::string& name) {
    windows.AddNew();
    windows.Fields("nIndex") = cell(index);
    windows.Fields("szName") = name;
    windows.Update();
  }
  Recordset all() { return database->OpenRecordset("SELECT * FROM WindowIndex ORDER BY nIndex ASC"); }
};

TEST_F(RecordsetTest, RecordsetsWalkSearchEditAddAndDelete) {
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

TEST_F(RecordsetTest, MisuseIsAClearError) {
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

TEST_F(RecordsetTest, QueriesOfTheClientsOwnRunAsTheyAre) {
  const struct {
    const char* sql;
    int64_t rows;
  } cases[]{{"SELECT * FROM WindowIndex WHERE nIndex > 0 LIMIT 2", 2},
            {"SELECT szName FROM WindowIndex GROUP BY szName;", 3},
            {"PRAGMA user_version", 1},
            {"SELECT * FROM (SELECT nIndex FROM WindowIndex ORDER BY nIndex)", 3},
            {"SELECT * FROM WindowIndex W, WindowIndex V WHERE W.nIndex = V.nIndex", 3},
            {"SELECT nIndex AS n FROM WindowIndex", 3},
            {"SELECT DISTINCT szName FROM WindowIndex", 3},
            {"SELECT * FROM WindowIndex WHERE nIndex = 1 UNION SELECT * FROM WindowIndex WHERE nIndex = 2", 2},
            {"SELECT * FROM TallWindows", 2},
            {"SELECT * FROM WindowIndex ORDER BY nIndex limit 1 -- one", 1}};
  database->Execute("CREATE VIEW TallWindows AS SELECT * FROM WindowIndex WHERE fHeight >= 1");
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

TEST_F(RecordsetTest, OnlyUpdateWritesAndEveryOtherStepEndsAnEdit) {
  const struct {
    const char* name;
    std::function<void(Recordset&)> step;
  } cases[]{{"MoveNext", [](Recordset& r) { r.MoveNext(); }},
            {"FindFirst", [](Recordset& r) { r.FindFirst("nIndex = 2"); }},
            {"a search in vain", [](Recordset& r) { r.FindFirst("nIndex = 9"); }},
            {"Delete", [](Recordset& r) { r.Delete(); }},
            {"Close", [](Recordset& r) { r.Close(); }}};
  for (const auto& c : cases) {
    for (const bool adds : {false, true}) {
      Transaction undone;
      auto windows = all();
      adds ? windows.AddNew() : windows.Edit();
      windows.Fields("fHeight") = cell(9.0);
      c.step(windows);
      EXPECT_EQ(error_number([&] { windows.Update(); }), number(ErrorNumber::EditNotStarted)) << c.name;
      EXPECT_EQ(count("WindowIndex WHERE fHeight = 9"), 0) << c.name;
    }
  }
  auto windows = all();
  windows.Edit();
  windows.Fields("fHeight") = cell(9.0);
  windows.Edit();
  windows.Fields("szName") = std::string("new");
  windows.Update();
  EXPECT_EQ(height(1), 0.5);
  EXPECT_EQ(count("WindowIndex WHERE szName = 'new'"), 1);
}

TEST_F(RecordsetTest, AddedAndFoundRowsAppear) {
  const std::string query = "SELECT * FROM WindowIndex WHERE nIndex <> 3 ORDER BY nIndex";
  auto untouched = database->OpenRecordset(query);
  add(untouched, 3, "W3");
  EXPECT_EQ(rest(untouched), "W1 W2 W4 W3 ") << "added before the first walk, though the query leaves it out";

  auto walked = database->OpenRecordset(query);
  walked.MoveNext();
  add(walked, 5, "W5");
  EXPECT_EQ(walked.Fields("nIndex").integer(), 2) << "the current row stays";
  EXPECT_EQ(rest(walked), "W2 W4 W5 ");
  add(walked, 6, "W6");
  EXPECT_EQ(rest(walked), "W6 ") << "at the end";

  auto found = database->OpenRecordset(query);
  EXPECT_FALSE(found.AtEof());
  database->Execute("INSERT INTO WindowIndex (nIndex, szName) VALUES (7, 'W7')");
  found.FindFirst("szName = ?", {std::string("W7")});
  ASSERT_FALSE(found.NoMatch());
  found.Edit();
  found.Fields("fHeight") = cell(3.5);
  found.Update();
  EXPECT_EQ(height(7), 3.5);
  found.FindFirst("nIndex = 5");
  EXPECT_EQ(rest(found), "W5 W6 W7 ");

  auto empty = database->OpenRecordset("SELECT * FROM ShadeIndex");
  EXPECT_TRUE(empty.AtEof());
  add(empty, 1, "S1");
  EXPECT_EQ(rest(empty), "S1 ");
}

TEST_F(RecordsetTest, AfterASearchInVainTheCurrentRowStays) {
  auto windows = all();
  windows.FindFirst("nIndex = 9");
  EXPECT_TRUE(windows.NoMatch());
  EXPECT_EQ(windows.Fields("nIndex").integer(), 1);
  windows.FindFirst("nIndex = 2");
  windows.FindFirst("nIndex = 9");
  EXPECT_TRUE(windows.NoMatch());
  EXPECT_EQ(windows.Fields("nIndex").integer(), 2);
  windows.MoveNext();
  windows.FindFirst("nIndex = 9");
  EXPECT_FALSE(windows.AtEof());
  windows.Delete();
  EXPECT_EQ(count("WindowIndex WHERE nIndex = 4"), 0);
  windows.MoveNext();
  windows.FindFirst("nIndex = 4");
  EXPECT_TRUE(windows.NoMatch());
  EXPECT_TRUE(windows.AtEof());

  auto read_only = database->OpenRecordset("SELECT nIndex + 0 AS n FROM WindowIndex ORDER BY nIndex DESC");
  read_only.FindFirst("n < 4");
  EXPECT_EQ(read_only.Fields("n").integer(), 2);
  read_only.MoveNext();
  EXPECT_EQ(read_only.Fields("n").integer(), 1);
}

TEST_F(RecordsetTest, AQueryOfOneTableIsUpdatableHoweverItIsWritten) {
  for (const char* sql : {"select * from WindowIndex where nIndex = 2",
                          "SELECT *\nFROM WindowIndex\nWHERE szName = 'W2'\nORDER BY nIndex;",
                          "SELECT * FROM WindowIndex WHERE szName = \"W2\" OR szName = 'it''s ORDER BY'",
                          "SELECT * FROM WindowIndex WHERE (nIndex > 1) AND (nIndex < 4)",
                          "SELECT * FROM WindowIndex WHERE nIndex IN (2, 3)",
                          "SELECT * FROM [WindowIndex] WHERE nIndex in (SELECT MAX(nIndex) FROM WindowIndex "
                          "WHERE nIndex < 4 GROUP BY 1 > 0)",
                          "SELECT * FROM \"WindowIndex\" WHERE nIndex = 2 -- the second",
                          "/* one */ SELECT nIndex, fHeight FROM WindowIndex "
                          "WHERE nIndex = 2 OR (nIndex = 2)"}) {
    Transaction undone;
    auto windows = database->OpenRecordset(sql);
    windows.FindFirst("nIndex = ? -- any", {cell(2)});
    ASSERT_FALSE(windows.NoMatch()) << sql;
    windows.FindFirst("nIndex = 1 OR nIndex = 4");
    EXPECT_TRUE(windows.NoMatch()) << sql << ": a search stays inside its rows";
    windows.Edit();
    windows.Fields("fHeight") = cell(9.0);
    windows.Update();
    windows.MoveNext();
    EXPECT_TRUE(windows.AtEof()) << sql;
    EXPECT_EQ(height(1) * height(2) * height(4), 0.5 * 9.0 * 2.0) << sql;
    windows.AddNew();
    windows.Fields("nIndex") = cell(8);
    windows.Update();
    EXPECT_EQ(count("WindowIndex"), 4) << sql;
  }
}

TEST_F(RecordsetTest, AClosedRecordsetIsAnError) {
  auto windows = all();
  windows.MoveNext();
  windows.Close();
  windows.Close();
  const std::function<void()> uses[]{[&] { windows.AtEof(); },          [&] { windows.MoveNext(); },
                                     [&] { windows.Fields("nIndex"); }, [&] { windows.FindFirst("nIndex = 1"); },
                                     [&] { windows.AddNew(); },         [&] { windows.Edit(); },
                                     [&] { windows.Delete(); }};
  for (const auto& use : uses) EXPECT_EQ(error_number(use), number(ErrorNumber::ObjectNotSet)) << &use - uses;
}

}  // namespace
}  // namespace tarn
