#include "platform/lock_holder.h"

#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

namespace tarn {

// A line of /proc/locks: "1: POSIX  ADVISORY  WRITE 4711 08:01:131 1073741825 1073741825". Another descriptor of the
// file must not be opened to ask: its close would drop this process's own locks.
std::string lock_holder(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return {};
  const std::string inode = ":" + std::to_string(status.st_ino);
  std::ifstream locks("/proc/locks");
  std::string reader;
  for (std::string line; std::getline(locks, line);) {
    std::istringstream words(line);
    std::string number, kind, advice, access, process, file;
    words >> number >> kind >> advice >> access >> process >> file;
    if (kind != "POSIX" || !file.ends_with(inode) || process == std::to_string(::getpid())) continue;
    std::string name;
    std::getline(std::ifstream("/proc/" + process + "/comm"), name);
    name = (name.empty() ? "a program" : name) + " (process " + process + ")";
    if (access == "WRITE") return name;
    reader = name;  // which a commit waits for
  }
  return reader;
}

}  // namespace tarn
