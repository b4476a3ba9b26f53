// A small project with an entity of every kind, results and weather, without any damage; and damage to it, done as
// another program or a bad disk would.
#pragma once

#include <sqlite3.h>

#include "support/sample_project.h"
#include "support/temp_project.h"
#include "tarn/check.h"

namespace tarn::test {

/// Closed when it is made, so that others can damage its files.
class SoundProject {
 public:
  SoundProject() {
    project.SetWorkPath(folder.path);
    project.FilePrefix = "JOB";
    make_sample(project);
  }
  explicit SoundProject(const SoundProject& of) {
    std::filesystem::copy(of.folder.path, folder.path);
    project.SetWorkPath(folder.path);
    project.FilePrefix = "JOB";
  }

  std::string path(const std::string& suffix) const { return folder / ("JOB" + suffix); }
  /// Statements as another program's, which nothing of ours refuses.
  void sql(const std::string& statements) const {
    sqlite3* handle = nullptr;
    sqlite3_open(path("INX.MDB").c_str(), &handle);
    char* message = nullptr;
    sqlite3_exec(handle, statements.c_str(), nullptr, nullptr, &message);
    EXPECT_EQ(message, nullptr) << message;
    sqlite3_close(handle);
  }
  void poke(const std::string& suffix, size_t at, const std::string& bytes) const {
    std::fstream file(path(suffix), std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(static_cast<std::streamoff>(at));
    file << bytes;
  }
  template <typename N>
  void poke(const std::string& suffix, size_t at, N number) const {
    poke(suffix, at, std::string(reinterpret_cast<const char*>(&number), sizeof number));
  }
  void resize(const std::string& suffix, uint64_t size) const { std::filesystem::resize_file(path(suffix), size); }
  uint64_t size(const std::string& suffix) const { return std::filesystem::file_size(path(suffix)); }
  /// In one read: there are many, and large ones.
  static std::string contents(const std::string& path) {
    std::error_code missing;
    const auto size = std::filesystem::file_size(path, missing);
    std::string bytes(missing ? 0 : size, '\0');
    std::ifstream(path, std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
  }
  /// Names and bytes of all files.
  std::map<std::string, std::string> bytes() const {
    std::map<std::string, std::string> all;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path)) {
      const std::string at = entry.path().string();
      all[at] = entry.is_directory() ? "folder" : contents(at);
    }
    return all;
  }

  TempFolder folder;
  RecordingLog log;
  mutable COM_ProjectData project;
};

}  // namespace tarn::test
