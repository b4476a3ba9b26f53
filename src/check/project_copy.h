// The copy of a project that a repair keeps beside it: a folder with the record files and the index database as they
// were.
#pragma once

#include <string>

#include "tarn/platform/database.h"
#include "tarn/project.h"

namespace tarn {

class ProjectCopy {
 public:
  /// Makes the folder and copies the record files, of which nothing may be pending.
  explicit ProjectCopy(const COM_ProjectData& project);
  /// Without `keep`, it is removed again: nothing was changed.
  ~ProjectCopy();
  ProjectCopy(const ProjectCopy&) = delete;
  ProjectCopy& operator=(const ProjectCopy&) = delete;
  /// Its folder, which stays from now on.
  const std::string& keep();
  /// An index that can be read is copied by the engine, as it was last committed.
  void add_index(const COM_ProjectData& project) const;
  /// Another one is moved there with its journal, never opened as a file. The copy stays.
  void take_index(const COM_ProjectData& project);

 private:
  std::string folder_;
  bool kept_ = false;
};

}  // namespace tarn
