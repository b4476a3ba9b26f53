#include "check/project_copy.h"

#include <ctime>
#include <filesystem>

#include "check/inspection.h"
#include "platform/host.h"

namespace tarn {
namespace {

std::string time_text() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char text[32];
  return {text, std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", &local)};
}

std::string name_of(const std::string& path) { return path.substr(path.rfind('/') + 1); }

/// Bytes go through the file service of the project, into files of the system.
void copy_file(const std::string& from, const std::string& to) {
  const auto source = host().files->open(from, OpenMode::Read);
  if (!source) return;
  const auto target = system_files().open(to, OpenMode::Create);
  std::vector<std::byte> piece(size_t{1} << 16);
  for (uint64_t at = 0;;) {
    const size_t got = source->read(at, piece);
    target->write(at, std::span(piece).first(got));
    at += got;
    if (got < piece.size()) break;
  }
  target->sync();
  system_files().copy_owner(from, to);
}

}  // namespace

ProjectCopy::ProjectCopy(const COM_ProjectData& project) {
  const std::string from = host().directory_form(project.WorkPath());
  const std::string first = from + project.FilePrefix + "-before-repair-" + time_text();
  folder_ = first;
  for (int again = 2; !std::filesystem::create_directory(folder_); ++again)
    folder_ = first + "-" + std::to_string(again);
  for (const std::string& name : project_files(project)) {
    if (!name.starts_with(name_of(project.IndexDBName()))) copy_file(from + name, folder_ + "/" + name);
  }
}

ProjectCopy::~ProjectCopy() {
  std::error_code ignored;
  if (!kept_) std::filesystem::remove_all(folder_, ignored);
}

const std::string& ProjectCopy::keep() {
  kept_ = true;
  return folder_;
}

/// By a connection of its own: the engine copies nothing from one that writes.
void ProjectCopy::add_index(const COM_ProjectData& project) const {
  const std::string path = project.IndexDBName();
  Database::open(path, Database::Access::Apart)->copy_to(folder_ + "/" + name_of(path));
  system_files().sync_folder(folder_);
}

void ProjectCopy::take_index(const COM_ProjectData& project) {
  keep();
  const std::string path = project.IndexDBName();
  for (const char* ending : {"", "-journal"}) {
    if (system_files().exists(path + ending))
      system_files().rename(path + ending, folder_ + "/" + name_of(path) + ending);
  }
  system_files().sync_folder(folder_);
}

}  // namespace tarn
