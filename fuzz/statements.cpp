// Statements of a client, a line each: those that a transaction rolls back have changed nothing, whatever they are, and
// none makes or touches another file. A line that begins with '?' is the criteria of a search in the rows of the line
// before; '!' edits, '+' adds, '-' deletes there.
#include <algorithm>
#include <chrono>
#include <optional>

#include "finding.h"
#include "input.h"
#include "mutate.h"
#include "platform/host.h"
#include "scratch.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"

namespace tarn::fuzz {
namespace {

const Scratch& scratch() {
  static const Scratch sample(make_project);
  return sample;
}

/// The texts and numbers of some rows.
void walk(Recordset& rows) {
  constexpr int kMostRows = 100;
  for (int row = 0; row < kMostRows && !rows.AtEof(); ++row, rows.MoveNext()) {
    for (const std::string& column : rows.columns()) rows.Fields(column).text();
  }
}

void change_row(Recordset& rows, char how, const std::string& text) {
  if (how == '-') return rows.Delete();
  if (how == '!') rows.Edit();
  if (how == '+') rows.AddNew();
  const size_t equals = std::min(text.find('='), text.size());
  rows.Fields(text.substr(0, equals)) = cell(text.substr(std::min(equals + 1, text.size())));
  rows.Update();
}

void run(Database& database, Input input) {
  const std::vector<Cell> parameters{cell(1), cell(2.5), cell(std::string("three"))};
  const auto used = [&](const std::string& sql) {
    const auto count = static_cast<size_t>(std::count(sql.begin(), sql.end(), '?'));
    return std::vector<Cell>(parameters.begin(),
                             parameters.begin() + static_cast<ptrdiff_t>(std::min<size_t>(count, 3)));
  };
  constexpr int kMostLines = 30;
  constexpr std::chrono::seconds kEnough(1);  // a statement without end takes as long as the database lets it
  const auto start = std::chrono::steady_clock::now();
  std::optional<Recordset> rows;
  for (int i = 0; i < kMostLines && !input.empty() && std::chrono::steady_clock::now() - start < kEnough; ++i) {
    const std::string line = input.line();
    const char how = line.empty() ? ' ' : line.front();
    refusal([&] {
      if (rows && how == '?') return rows->FindFirst(line.substr(1), used(line.substr(1)));
      if (rows && (how == '!' || how == '+' || how == '-')) return change_row(*rows, how, line.substr(1));
      if (database.Execute(line, used(line)) > 0) return;
      rows.emplace(database.OpenRecordset(line, used(line)));
      walk(*rows);
    });
  }
}

void run_and_roll_back(const Input& input) {
  COM_ProjectData project;
  scratch().place(project);
  const auto database = host().database(project.IndexDBName());
  Workspace& workspace = Engine::of_thread().Workspaces(0);
  workspace.BeginTrans();
  run(*database, input);
  require(workspace.depth() == 1, "a statement has begun or ended a transaction");
  workspace.Rollback();
}

}  // namespace
}  // namespace tarn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tarn::fuzz;
  scratch().run([=] { run_and_roll_back(Input(data, size)); });
  const std::string change = scratch().change();
  require(change.empty(), "after statements that were rolled back " + change);
  return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t most, unsigned seed) {
  using namespace tarn::fuzz;
  return mutated(data, size, most, seed, [](std::string& text, Mutator& random) {
    constexpr std::string_view kPieces[]{
        "SELECT * FROM WindowIndex",
        "SELECT ",
        "DELETE FROM SpaceIndex",
        "UPDATE WindowIndex SET szName = ?",
        "INSERT INTO DoorIndex (nIndex, szName) VALUES (7, ?)",
        "COMMIT",
        "END",
        "ROLLBACK",
        "BEGIN",
        "SAVEPOINT a",
        "RELEASE a",
        "ATTACH 'x.db' AS x",
        "DETACH main",
        "PRAGMA synchronous = 0",
        "PRAGMA journal_mode = MEMORY",
        "SELECT * FROM pragma_journal_mode",
        "VACUUM INTO 'x.db'",
        "VACUUM",
        "ANALYZE",
        "REINDEX",
        "DROP TABLE WallIndex",
        "CREATE TEMP TABLE t AS SELECT 1",
        "CREATE VIEW v AS SELECT * FROM SpaceIndex",
        "CREATE TRIGGER r AFTER INSERT ON WallIndex BEGIN DELETE FROM WallIndex; END",
        "CREATE VIRTUAL TABLE f USING fts5(a)",
        "CREATE VIRTUAL TABLE r USING rtree(a, b, c)",
        "EXPLAIN ",
        "ALTER TABLE RoofIndex RENAME TO x",
        "SELECT load_extension('x')",
        "SELECT writefile('x.db', 'a')",
        "WITH RECURSIVE c(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM c LIMIT 99) SELECT n FROM c",
        " WHERE nIndex = ?",
        " ORDER BY szName",
        " LIMIT 3",
        "/* */",
        "-- ",
        ";",
        "?nIndex = 1",
        "?szName = ?",
        "!szName=x",
        "+nIndex=9",
        "-",
        "zeroblob(1000000000)",
        "randomblob(999999999)",
        "printf('%.*c', 999999999, 'x')",
        " UNION ",
        " JOIN SpaceIndex"};
    const size_t at = random.once_in(2) ? text.size() : random.below(text.size() + 1);
    const std::string piece(random.one_of(kPieces));
    text.insert(at, random.once_in(2) ? "\n" + piece + "\n" : piece);
  });
}
