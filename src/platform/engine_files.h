// The engine's file access, kept to the files of the databases that are open. A journal that lies in a project's folder
// may name other files, which the engine would delete when it plays the journal back.
#pragma once

#include <string>

namespace tarn {

/// The name of the file access for `sqlite3_open_v2`.
const char* engine_files();
/// A database whose own files may be touched while this lives.
class EngineFile {
 public:
  explicit EngineFile(std::string path);
  ~EngineFile();
  EngineFile(const EngineFile&) = delete;
  EngineFile& operator=(const EngineFile&) = delete;

 private:
  std::string path_;
};
/// The last file that was refused on this thread, which is forgotten.
std::string take_refused_file();

}  // namespace tarn
