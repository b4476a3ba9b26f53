// Runs a target on every file of the folders that it is given, in the order of their names: the corpora as tests.
#include <sys/resource.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "scratch.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);
/// What the targets' mutators call; nothing is changed here.
extern "C" size_t LLVMFuzzerMutate(uint8_t*, size_t size, size_t) { return size; }

int main(int count, char** folders) {
  // No input takes a gigabyte; a sanitizer needs more for itself, and has a limit of its own.
#if !defined(__SANITIZE_ADDRESS__)
  const rlimit most{rlim_t{1} << 30, rlim_t{1} << 30};
  setrlimit(RLIMIT_AS, &most);
#endif
  std::vector<std::filesystem::path> files;
  for (int i = 1; i < count; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(folders[i])) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  for (const auto& file : files) {
    std::printf("%s\n", file.c_str());
    std::fflush(stdout);
    const std::string bytes = tarn::fuzz::bytes_of(file.string());
    const std::vector<uint8_t> exact(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
  }
  if (files.empty()) std::fprintf(stderr, "There is no corpus to replay.\n");
  return files.empty() ? 1 : 0;
}
