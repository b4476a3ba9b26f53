// Files of a client in memory, for the C interface's file service: from a certain call on, every call fails.
#pragma once

#include <cstring>
#include <map>
#include <memory>
#include <string>

#include "scratch.h"
#include "tarn/tarn.h"

namespace tarn::fuzz {

class ClientFiles {
 public:
  ClientFiles() {
    services.context = this;
    services.exists = [](void* on, const char* path) { return static_cast<int32_t>(of(on).files_.contains(path)); };
    services.open = [](void* on, const char* path, int32_t mode, void** file) { return of(on).open(path, mode, file); };
    services.close = [](void*, void* file) { delete static_cast<Bytes*>(file); };
    services.read = [](void* on, void* file, uint64_t offset, void* data, size_t bytes) -> int64_t {
      if (of(on).fails()) return -1;
      const std::string& held = **static_cast<Bytes*>(file);
      if (offset >= held.size()) return 0;
      const size_t got = std::min<size_t>(bytes, held.size() - offset);
      std::memcpy(data, held.data() + offset, got);
      return static_cast<int64_t>(got);
    };
    services.write = [](void* on, void* file, uint64_t offset, const void* data, size_t bytes) {
      std::string& held = **static_cast<Bytes*>(file);
      if (of(on).fails() || offset + bytes > kDisk) return 1;
      if (held.size() < offset + bytes) held.resize(offset + bytes);
      std::memcpy(held.data() + offset, data, bytes);
      return 0;
    };
    services.size = [](void* on, void* file) -> int64_t {
      return of(on).fails() ? -1 : static_cast<int64_t>((*static_cast<Bytes*>(file))->size());
    };
    services.truncate = [](void* on, void* file, uint64_t size) {
      if (of(on).fails() || size > kDisk) return 1;
      (*static_cast<Bytes*>(file))->resize(size);
      return 0;
    };
    services.sync = [](void* on, void*) { return static_cast<int32_t>(of(on).fails()); };
    services.remove = [](void* on, const char* path) {
      of(on).files_.erase(path);
      return static_cast<int32_t>(of(on).fails());
    };
    services.rename = [](void* on, const char* from, const char* to) {
      auto moved = of(on).files_.extract(from);
      if (moved.empty() || of(on).fails()) return 1;
      of(on).files_[to] = std::move(moved.mapped());
      return 0;
    };
    services.sync_folder = [](void* on, const char*) { return static_cast<int32_t>(of(on).fails()); };
  }
  ClientFiles(const ClientFiles&) = delete;
  ClientFiles& operator=(const ClientFiles&) = delete;

  /// With the record files of a project.
  void fill(const Scratch& scratch) {
    for (const auto& [name, bytes] : scratch.files()) files_[scratch / name] = std::make_shared<std::string>(bytes);
  }

  tarn_files services{};
  size_t calls_left = 0;

 private:
  using Bytes = std::shared_ptr<std::string>;  // of an open file, which may have lost its name
  static constexpr uint64_t kDisk = uint64_t{1} << 26;

  static ClientFiles& of(void* context) { return *static_cast<ClientFiles*>(context); }
  bool fails() { return calls_left == 0 || --calls_left == 0; }
  int32_t open(const char* path, int32_t mode, void** file) {
    if (fails()) return 1;
    auto found = files_.find(path);
    if (found == files_.end() && mode == 2) found = files_.emplace(path, std::make_shared<std::string>()).first;
    *file = found == files_.end() ? nullptr : new Bytes(found->second);
    return 0;
  }

  std::map<std::string, Bytes> files_;  // by path
};

}  // namespace tarn::fuzz
