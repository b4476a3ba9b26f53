#include "tarn/copy.h"

#include <filesystem>
#include <set>

#include "check/inspection.h"
#include "platform/file_store.h"
#include "platform/host.h"
#include "tarn/platform/workspace.h"

namespace tarn {
namespace {

namespace fs = std::filesystem;

void needs_no_files(const COM_ProjectData& project) {
  const auto names = fs::exists(project.WorkPath()) ? project_files(project) : std::vector<std::string>();
  if (!names.empty()) {
    fail(ErrorNumber::FileExists, host().directory_form(project.WorkPath()) + names.front() +
                                      " is there already; copy to another folder or prefix.");
  }
}

/// What a save has committed may wait in the index for its place in the files; a file may wait there as a whole.
std::set<std::string> record_files(const COM_ProjectData& project, Database& database) {
  const std::vector<std::string> on_disk = project_files(project);
  std::set<std::string> names(on_disk.begin(), on_disk.end());
  for (const char* ending : {"", "-journal", "-wal", "-shm"})
    names.erase(fs::path(project.IndexDBName()).filename().string() + ending);
  auto pending = database.OpenRecordset("SELECT szFile, szReplacement FROM PendingWrites");
  for (; !pending.AtEof(); pending.MoveNext()) {
    names.insert(pending.Fields("szFile").text());
    names.erase(pending.Fields("szReplacement").text());
  }
  return names;
}

/// As the open transaction sees the file.
void copy_bytes(const std::string& from, const std::string& to) {
  const auto target = system_files().open(to, OpenMode::Create);
  std::vector<std::byte> piece(size_t{1} << 20);
  const uint64_t size = files().size(from);
  for (uint64_t at = 0; at < size; at += piece.size()) {
    const auto part = std::span(piece).first(std::min<uint64_t>(piece.size(), size - at));
    files().read(from, at, part);
    target->write(at, part);
  }
  target->sync();
}

}  // namespace

void copy_project(COM_ProjectData& from, COM_ProjectData& to) {
  const std::string index = from.IndexDBName();
  const auto source = host().database(index);
  needs_no_files(to);
  fs::create_directories(to.WorkPath());
  const std::string folder = host().directory_form(from.WorkPath()), into = host().directory_form(to.WorkPath());
  std::vector<std::string> made;
  try {
    Transaction reading(Transaction::Purpose::Reading);
    source->join(Database::Part::Reading);  // nobody commits until it ends
    for (const std::string& name : record_files(from, *source)) {
      if (!files().exists(folder + name)) continue;  // to be removed
      made.push_back(into + to.FilePrefix + name.substr(from.FilePrefix.size()));
      copy_bytes(folder + name, made.back());
    }
    made.push_back(to.IndexDBName());
    Database::open(index, Database::Access::Apart)->copy_to(to.IndexDBName(), Database::PendingRows::InPlace);
    system_files().sync_folder(into);
  } catch (...) {
    std::error_code ignored;
    for (const std::string& path : made) fs::remove(path, ignored);
    throw;
  }
}

}  // namespace tarn
