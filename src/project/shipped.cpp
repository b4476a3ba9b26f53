#include "tarn/shipped.h"

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>

#include "tarn/base/error.h"

namespace tarn {
namespace {

/// The folder of the program or library that this code is linked into.
std::filesystem::path own_folder() {
  Dl_info info{};
  std::error_code ignored;
  if (dladdr(reinterpret_cast<const void*>(&shipped_file), &info) == 0 || !info.dli_fname) return {};
  const auto program = std::filesystem::read_symlink("/proc/self/exe", ignored);
  // A program's own name may be relative to a folder that is no longer the current one.
  const std::filesystem::path file = info.dli_fname;
  const bool is_program = file.filename() == program.filename();
  return std::filesystem::canonical(is_program ? program : file, ignored).parent_path();
}

}  // namespace

std::string shipped_file(std::string_view name) {
  const char* set = std::getenv("TARN_SHARE");
  if (set && *set) {
    if (const auto path = std::filesystem::path(set) / name; std::filesystem::exists(path)) return path.string();
    fail(ErrorNumber::FileNotFound,
         "TARN_SHARE names " + std::string(set) + ", which has no " + std::string(name) + ".");
  }
  constexpr int kLevels = 5;  // folders upward: from a Python package in lib/python3/dist-packages to share
  std::filesystem::path folder = own_folder();
  for (int level = 0; level < kLevels && !folder.empty(); ++level, folder = folder.parent_path()) {
    if (const auto path = folder / "share" / "tarn" / name; std::filesystem::exists(path)) return path.string();
  }
  if (const auto path = std::filesystem::path(TARN_INSTALLED_SHARE) / name; std::filesystem::exists(path))
    return path.string();
  fail(ErrorNumber::FileNotFound, "The shipped file " + std::string(name) +
                                      " was not found beside the program; set TARN_SHARE to the folder that holds it.");
}

}  // namespace tarn
