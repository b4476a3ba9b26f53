// A folder of the program's own with a project in it, which is as it was at first before each input, and a file beside
// the project that nothing may touch.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tarn/project.h"

namespace tarn::fuzz {

class Scratch {
 public:
  /// Without `fill` the project's folder is empty.
  explicit Scratch(const std::function<void(COM_ProjectData&)>& fill = {});
  ~Scratch();
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  const std::string& folder() const { return folder_; }  // of the project
  std::string operator/(const std::string& name) const { return folder_ + "/" + name; }
  const std::map<std::string, std::string>& files() const { return files_; }  // by name: bytes at first
  void place(COM_ProjectData& project) const;

  /// Writes again what was touched since, removes what was made, and runs `action` on a thread of its own with the
  /// project's folder as the current one: engine, handles, open files and log belong to a thread, so that nothing of an
  /// input is left for the next. Afterwards nothing outside of the folder is other than before.
  void run(const std::function<void()>& action) const;
  /// The same in two steps: what another program does to the files comes between them.
  void put_back() const;
  void run_as_it_is(const std::function<void()>& action) const;

  /// What is other in the project's folder than at first, but for the engine's journal; empty for nothing.
  std::string change() const;

 private:
  std::string root_, folder_;
  std::map<std::string, std::string> files_;
};

/// A project with an entity of every kind, without weather.
void make_project(COM_ProjectData& project);

void write_bytes(const std::string& path, const std::string& bytes);
std::string bytes_of(const std::string& path);

}  // namespace tarn::fuzz
