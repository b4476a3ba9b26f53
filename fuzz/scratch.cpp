#include "scratch.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "finding.h"
#include "support/sample_project.h"

namespace tarn::fuzz {

namespace {

namespace fs = std::filesystem;

constexpr const char* kVictim = "precious";
constexpr timespec kLongAgo{1'000'000'000, 0};  // of a file that nothing has touched since it was put back

bool is_untouched(const std::string& path, size_t size) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && static_cast<size_t>(status.st_size) == size &&
         status.st_mtim.tv_sec == kLongAgo.tv_sec;
}

void write_old(const std::string& path, const std::string& bytes) {
  fs::remove_all(path);
  write_bytes(path, bytes);
  const timespec times[]{kLongAgo, kLongAgo};
  utimensat(AT_FDCWD, path.c_str(), times, 0);
}

}  // namespace

void write_bytes(const std::string& path, const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }

std::string bytes_of(const std::string& path) {
  std::ifstream in(path, std::ios::binary | std::ios::ate);
  std::string bytes(in ? static_cast<size_t>(in.tellg()) : 0, '\0');
  in.seekg(0).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

Scratch::Scratch(const std::function<void(COM_ProjectData&)>& fill) {
  root_ = (fs::temp_directory_path() / "tarn-fuzz-XXXXXX").string();
  require(mkdtemp(root_.data()) != nullptr, "there is no folder to work in; set TMPDIR");
  folder_ = root_ + "/project";
  fs::create_directory(folder_);
  write_bytes(root_ + "/victim.DAT", kVictim);
  if (!fill) return;
  std::thread([&] {
    COM_ProjectData project;
    place(project);
    fill(project);
  }).join();
  for (const auto& entry : fs::directory_iterator(folder_)) {
    if (entry.path().extension() != ".MDB-journal") files_[entry.path().filename()] = bytes_of(entry.path());
  }
}

Scratch::~Scratch() {
  std::error_code ignored;
  fs::remove_all(root_, ignored);
}

void Scratch::place(COM_ProjectData& project) const {
  project.SetWorkPath(folder_);
  project.FilePrefix = "JOB";
}

void Scratch::put_back() const {
  for (const auto& entry : fs::directory_iterator(folder_)) {
    if (!files_.contains(entry.path().filename())) fs::remove_all(entry.path());
  }
  for (const auto& [name, bytes] : files_) {
    if (const std::string path = *this / name; !is_untouched(path, bytes.size())) write_old(path, bytes);
  }
}

void Scratch::run_as_it_is(const std::function<void()>& action) const {
  const fs::path before = fs::current_path();
  fs::current_path(folder_);
  std::thread([&] {
    const std::string refused = refusal(action);
    require(refused.empty(), "an error reached nobody: " + refused);
  }).join();
  fs::current_path(before);
  std::string outside;
  for (const auto& entry : fs::directory_iterator(root_)) outside += entry.path().filename().string() + " ";
  require(outside == "project victim.DAT " || outside == "victim.DAT project ", "beside the project are: " + outside);
  require(bytes_of(root_ + "/victim.DAT") == kVictim, "a file outside of the project's folder has changed");
}

void Scratch::run(const std::function<void()>& action) const {
  put_back();
  run_as_it_is(action);
}

std::string Scratch::change() const {
  for (const auto& entry : fs::directory_iterator(folder_)) {
    const std::string name = entry.path().filename();
    if (!files_.contains(name) && !name.ends_with("-journal")) return name + " is new";
  }
  for (const auto& [name, bytes] : files_) {
    const std::string path = *this / name;
    if (!is_untouched(path, bytes.size()) && bytes_of(path) != bytes) return name + " has changed";
  }
  return {};
}

void make_project(COM_ProjectData& project) {
  create_index(project.IndexDBName());
  write_default_records(project);
  test::make_library(project);
  test::make_users(project);
}

}  // namespace tarn::fuzz
