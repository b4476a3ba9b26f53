#include "plain_project.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "storage/kind.h"
#include "tarn/platform/database.h"

namespace tarn::bench {
namespace {

constexpr const char* kSystems =
    "UPDATE AirSystemIndex SET bSimHasChanged = -1, bDesHasChanged = -1 WHERE nIndex IN ("
    "SELECT System_ID FROM System_Space_Links WHERE Space_ID IN (SELECT Space_ID FROM Space_Window_Links WHERE "
    "Window_ID = ?1))";
constexpr const char* kPlants =
    "UPDATE PlantIndex SET bSimHasChanged = -1, bDesHasChanged = -1 WHERE nIndex IN ("
    "SELECT Plant_ID FROM Plant_System_Links WHERE System_ID IN ("
    "SELECT System_ID FROM System_Space_Links WHERE Space_ID IN (SELECT Space_ID FROM Space_Window_Links WHERE "
    "Window_ID = ?1)))";
constexpr const char* kBuildings =
    "UPDATE BuildingIndex SET bHasChanged = -1 WHERE nIndex IN ("
    "SELECT Building_ID FROM Building_Plant_Links WHERE Plant_ID IN (SELECT Plant_ID FROM Plant_System_Links WHERE "
    "System_ID IN ("
    "SELECT System_ID FROM System_Space_Links WHERE Space_ID IN (SELECT Space_ID FROM Space_Window_Links WHERE "
    "Window_ID = ?1)))"
    " UNION SELECT Building_ID FROM Building_System_Links WHERE System_ID IN ("
    "SELECT System_ID FROM System_Space_Links WHERE Space_ID IN (SELECT Space_ID FROM Space_Window_Links WHERE "
    "Window_ID = ?1)))";

void require(bool done, const std::string& what) {
  if (!done) throw std::runtime_error("The floor failed: " + what);
}

}  // namespace

sqlite3* opened(const std::string& path) {
  sqlite3* database = nullptr;
  require(sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK, path);
  require(sqlite3_exec(database, "PRAGMA temp_store = MEMORY", nullptr, nullptr, nullptr) == SQLITE_OK, path);
  return database;
}

PlainStatement::PlainStatement(sqlite3* database, const char* sql) : statement_(nullptr, &sqlite3_finalize) {
  sqlite3_stmt* statement = nullptr;
  require(sqlite3_prepare_v3(database, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr) == SQLITE_OK, sql);
  statement_.reset(statement);
}

void PlainStatement::bind(int place, std::string_view text) {
  sqlite3_bind_text(get(), place, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

bool PlainStatement::step() {
  const int result = sqlite3_step(get());
  require(result == SQLITE_ROW || result == SQLITE_DONE, sqlite3_sql(get()));
  return result == SQLITE_ROW;
}

void PlainStatement::run() {
  step();
  reset();
}

PlainProject::PlainProject(const Paths& paths)
    : database_(opened(paths.index), &sqlite3_close),
      file_(::open(paths.windows.c_str(), O_RDWR | O_CLOEXEC)),
      begin_(database_.get(), "BEGIN"),
      commit_(database_.get(), "COMMIT"),
      rollback_(database_.get(), "ROLLBACK"),
      find_(database_.get(), "SELECT rowid, * FROM WindowIndex WHERE nIndex = ? ORDER BY nIndex ASC LIMIT 1"),
      update_(database_.get(), "UPDATE WindowIndex SET fHeight = ? WHERE rowid = ?"),
      insert_(
          database_.get(),
          "INSERT INTO WindowIndex (nIndex,szName,fOverallUValue,fOverallShadeCo,fHeight,fWidth) VALUES (?,?,?,?,?,?)"),
      free_(database_.get(), "SELECT nIndex FROM WindowIndex WHERE nIndex >= ? ORDER BY nIndex ASC"),
      drop_(database_.get(), "DELETE FROM PendingWrites"),
      keep_(database_.get(), "INSERT INTO PendingWrites (abBytes) VALUES (?)"),
      chains_{PlainStatement(database_.get(), kSystems), PlainStatement(database_.get(), kPlants),
              PlainStatement(database_.get(), kBuildings)} {
  const auto statements = WIN_Window().kind().reach.statements();
  PlainStatement(database_.get(), kScratchList).run();
  for (const std::string& statement : statements) marking_.emplace_back(database_.get(), statement.c_str());
  require(file_ >= 0, paths.windows);
}

PlainProject::~PlainProject() { ::close(file_); }

void PlainProject::commit() {
  write_file();
  if (file_written_) require(::fsync(file_) == 0, "fsync");
  file_written_ = false;
  commit_.run();
}

void PlainProject::commit_as_one() {
  if (file_written_) require(::fsync(file_) == 0, "fsync");
  file_written_ = false;
  drop_.run();
  const size_t bytes = records_.size() * sizeof records_.front();
  require(sqlite3_bind_blob64(keep_.get(), 1, records_.data(), bytes, SQLITE_STATIC) == SQLITE_OK, "bind");
  keep_.run();
  commit_.run();
  write_file();
}

void PlainProject::write_file() {
  for (const auto& [index, window] : records_) {
    const ssize_t put = ::pwrite(file_, &window, sizeof window, index * static_cast<off_t>(sizeof window));
    require(put == static_cast<ssize_t>(sizeof window), "pwrite");
    file_written_ = true;
  }
  records_.clear();
}

void PlainProject::load(int index, WindowRecord& window) {
  find_.bind(1, int64_t{index});
  require(find_.step(), "no such window");
  const int64_t row = sqlite3_column_int64(find_.get(), 1);
  const size_t length = std::min<size_t>(window.Name.width, static_cast<size_t>(sqlite3_column_bytes(find_.get(), 2)));
  std::memcpy(window.Name.chars.data(), sqlite3_column_text(find_.get(), 2), length);
  window.OverallUValue = static_cast<float>(sqlite3_column_double(find_.get(), 3));
  window.OverallShadeCo = static_cast<float>(sqlite3_column_double(find_.get(), 4));
  find_.reset();
  const ssize_t got = ::pread(file_, &window, sizeof window, row * static_cast<off_t>(sizeof window));
  require(got == static_cast<ssize_t>(sizeof window), "pread");
}

void PlainProject::save(int index, const WindowRecord& window) {
  find_.bind(1, int64_t{index});
  require(find_.step(), "no such window");
  const int64_t row = sqlite3_column_int64(find_.get(), 0);
  find_.reset();
  update_.bind(1, double{window.Height});
  update_.bind(2, row);
  update_.run();
  mark(index);
  write_record(row, window);
}

void PlainProject::add(const WindowRecord& window) {
  free_.bind(1, free_mark_);
  while (free_.step() && sqlite3_column_int64(free_.get(), 0) == free_mark_) ++free_mark_;
  free_.reset();
  insert_.bind(1, free_mark_);
  insert_.bind(2, trimmed(window.Name.bytes()));
  insert_.bind(3, double{window.OverallUValue});
  insert_.bind(4, double{window.OverallShadeCo});
  insert_.bind(5, double{window.Height});
  insert_.bind(6, double{window.Width});
  insert_.run();
  mark(static_cast<int>(free_mark_));
  write_record(free_mark_, window);
}

void PlainProject::remove_above(int last) {
  PlainStatement remove(database_.get(), "DELETE FROM WindowIndex WHERE nIndex > ?");
  remove.bind(1, int64_t{last});
  remove.run();
  free_mark_ = last + 1;
}

void PlainProject::mark(int index) {
  marking_[0].run();
  marking_[1].bind(1, int64_t{index});
  marking_[1].run();
  if (sqlite3_changes(database_.get()) == 0) return;
  for (size_t i = 2; i < marking_.size(); ++i) marking_[i].run();
}

void PlainProject::mark_by_chains(int index) {
  for (PlainStatement& statement : chains_) {
    statement.bind(1, int64_t{index});
    statement.run();
  }
}

void PlainProject::write_record(int64_t index, const WindowRecord& window) { records_.emplace_back(index, window); }

void run_script(const std::string& database, const std::string& script) {
  const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> handle(opened(database), &sqlite3_close);
  char* cause = nullptr;
  const bool done = sqlite3_exec(handle.get(), script.c_str(), nullptr, nullptr, &cause) == SQLITE_OK;
  const std::string text = cause ? cause : "";
  sqlite3_free(cause);
  require(done, text);
}

}  // namespace tarn::bench
