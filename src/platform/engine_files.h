// The engine's file access, kept to the files of the databases that are open. A journal that lies in a project's folder
// may name other files, which the engine would delete when it plays the journal back.
#pragma once

#include <sys/stat.h>

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
  const std::string& path() const { return path_; }
  /// Whether the journal is one of a commit that is running or was interrupted.
  bool has_live_journal();

 private:
  void forget_journal();

  std::string path_, journal_name_;
  int journal_ = -1;  // kept open
  dev_t device_ = 0;
  ino_t inode_ = 0;
};
/// The last file that was refused on this thread, which is forgotten.
std::string take_refused_file();

}  // namespace tarn
