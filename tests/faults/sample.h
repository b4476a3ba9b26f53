// The project that faults meet, what is done to it, and what it holds.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tarn/project.h"

namespace tarn::faults {

/// A folder of its own in the temporary folder.
class Folder {
 public:
  Folder();
  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  /// Becomes a copy of another.
  void copy(const std::string& from) const;
  const std::string path;
};

/// The project of a folder, prefix JOB.
void place(COM_ProjectData& project, const std::string& folder);

/// Two entities of each kind, with defaults, preferences and results of a system; the weather's year is large.
enum class Weather : bool { None, Year };
void make_sample(const std::string& folder, Weather weather);

struct Operation {
  std::string name;
  /// What is to be done, which may be tried again after a failure.
  std::function<std::function<void()>(COM_ProjectData&)> prepare;
  bool makes_project = false;  // in an empty folder
  Weather weather = Weather::None;
};
std::vector<Operation> all_operations();

/// What the project holds, as its classes and its open database tell: a line for each table, each file and the
/// exchange text. "none" where there is no project.
std::string state_of(COM_ProjectData& project);
/// As the folder has it, each record file as it lies there, for a project that nobody has open; with what should not
/// be there.
std::string files_of(const std::string& folder);

}  // namespace tarn::faults
