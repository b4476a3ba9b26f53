#include "older/adopt.h"

#include <filesystem>
#include <fstream>

#include "base/nearest.h"
#include "check/other_index.h"
#include "check/project_index.h"
#include "older/older_index.h"
#include "older/take_rows.h"
#include "project/new_index.h"
#include "tarn/platform/workspace.h"

namespace tarn::older {
namespace {

namespace fs = std::filesystem;

constexpr const char* kBefore = ".before";
constexpr const char* kUndone = ".adopted";

std::string name_of(const std::string& path) { return path.substr(path.rfind('/') + 1); }

/// The older engine keeps a file of this name as long as a program has the database open.
void refuse_open_database(const std::string& index) {
  const fs::path path(index);
  for (const auto& entry : fs::directory_iterator(path.parent_path())) {
    if (!same_word(entry.path().filename().string(), path.stem().string() + ".LDB")) continue;
    fail(ErrorNumber::DatabaseLocked, entry.path().string() +
                                          " says that the older program has the project open. Close it there; remove "
                                          "the file if a crash left it.");
  }
}

bool is_own(const std::string& index) {
  std::string head(15, '\0');
  std::ifstream(index, std::ios::binary).read(head.data(), static_cast<std::streamsize>(head.size()));
  return head == "SQLite format 3";
}

/// A damaged table of the project ends it; of another program's, it is told.
void refuse_damage(const std::string& path, const Index& old, const ProjectTables& own, Adoption& adoption) {
  std::string damage;
  for (const auto& [table, why] : old.unreadable) {
    if (table.empty() || own.find(table))
      damage += (damage.empty() ? "" : "; ") + (table.empty() ? why : table + ": " + why);
    else
      adoption.notes.push_back("The table " + table + ", which is no table of a project, cannot be read: " + why + ".");
  }
  if (damage.empty()) return;
  size_t tables = 0, rows = 0;
  for (const Table& table : old.tables) {
    const bool whole = std::ranges::find(old.unreadable, table.name, &std::pair<std::string, std::string>::first) ==
                       old.unreadable.end();
    if (!whole || !own.find(table.name)) continue;
    ++tables;
    rows += table.rows.size();
  }
  fail(ErrorNumber::UnknownFormat, path + " is damaged: " + damage + ". " + std::to_string(tables) +
                                       " tables of the project with " + std::to_string(rows) +
                                       " rows can be read. Restore the file from a copy, or 'tarn project adopt " +
                                       "--rebuild' makes the index from the record files alone.");
}

void take_old_index(const std::string& path, Database& database, Adoption& adoption, std::vector<Extra>& extras) {
  const Index old = read_index(path);
  const ProjectTables own(database);
  adoption.format = old.format;
  adoption.notes = old.notes;
  refuse_damage(path, old, own, adoption);
  const bool any = std::ranges::any_of(old.tables, [&](const Table& table) { return own.find(table.name) != nullptr; });
  if (!any)
    fail(ErrorNumber::UnknownFormat, path + " has no table of a project; it is the database of something else.");
  take_rows(old, own, database, adoption, extras);
}

/// A file that goes again unless it is kept.
class MadeFiles {
 public:
  MadeFiles() = default;
  MadeFiles(const MadeFiles&) = delete;
  MadeFiles& operator=(const MadeFiles&) = delete;
  ~MadeFiles() {
    std::error_code ignored;
    for (const std::string& path : paths_) fs::remove(path, ignored);
  }
  void add(std::string path) { paths_.push_back(std::move(path)); }
  void keep() { paths_.clear(); }

 private:
  std::vector<std::string> paths_;
};

std::string bytes_of(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// A name that this makes. The same file may be there of a program that ended before its last step; another may not.
void require_free(const std::string& path, const std::string& bytes) {
  if (fs::exists(path) && bytes_of(path) != bytes)
    fail(ErrorNumber::FileExists, path + " exists already; move it away.");
}

/// A second name of the old file, or where the file system has none, a copy.
void keep_old(const std::string& index) {
  require_free(index + kBefore, bytes_of(index));
  fs::remove(index + kBefore);
  std::error_code no_links;
  fs::create_hard_link(index, index + kBefore, no_links);
  if (no_links) fs::copy_file(index, index + kBefore);
}

}  // namespace

Adoption adopt_project(COM_ProjectData& project, const AdoptOptions& options) {
  const QuietLog quiet;
  const std::string path = project.IndexDBName(), made = path + "-adopted";
  if (!fs::exists(path)) fail(ErrorNumber::DatabaseNotFound, "There is no index database " + path + ".");
  Adoption adoption;
  adoption.index = path;
  if (is_own(path)) return adoption;
  refuse_open_database(path);
  adoption.before = path + kBefore;
  std::vector<Extra> extras;
  MadeFiles files_made;
  for (const char* ending : {"", "-journal"}) {
    system_files().remove(made + ending);  // of a program that ended before its last step
    files_made.add(made + ending);
  }
  create_index(made);
  {
    const Ptr<Database> database = Database::open(made);
    const OtherIndex other(database);
    Transaction transaction;
    if (options.rebuild)
      fill_index(project, database);
    else
      take_old_index(path, *database, adoption, extras);
    Settled report = settle_by_records(project, database);
    adoption.settled = std::move(report.settled);
    adoption.left = std::move(report.left);
    transaction.commit();
  }
  MadeFiles kept;
  for (const Extra& extra : extras) {
    const std::string csv = csv_name(path, extra.name);
    if (!options.dry_run) {
      const std::string text = csv_text(extra);
      require_free(csv, text);
      kept.add(csv);
      if (!(std::ofstream(csv, std::ios::binary) << text).flush())
        fail(ErrorNumber::DeviceError, "Cannot write " + csv + ".");
    }
    adoption.kept.push_back(csv);
  }
  if (options.dry_run) return adoption;
  keep_old(path);
  kept.add(path + kBefore);
  system_files().rename(made, path);
  kept.keep();
  system_files().sync_folder(path.substr(0, path.rfind('/') + 1));
  return adoption;
}

std::string undo_adoption(COM_ProjectData& project) {
  const std::string path = project.IndexDBName(), before = path + kBefore, aside = path + kUndone;
  if (!fs::exists(before)) {
    fail(ErrorNumber::FileNotFound,
         "There is no " + before + ": " + name_of(path) + " was not adopted, or its old index was moved away.");
  }
  if (fs::exists(aside)) fail(ErrorNumber::FileExists, aside + " exists already; move it away.");
  host().database(path)->settle();  // what was saved is complete in the record files
  std::error_code no_links;
  fs::create_hard_link(path, aside, no_links);
  if (no_links) fs::copy_file(path, aside);
  system_files().rename(before, path);
  system_files().sync_folder(path.substr(0, path.rfind('/') + 1));
  return aside;
}

}  // namespace tarn::older
