#include "platform/loose_files.h"

#include <filesystem>

#include "platform/host.h"
#include "tarn/base/error.h"
#include "tarn/base/log.h"

namespace tarn {
namespace {

void write_pieces(File& file, const Extents& extents) {
  extents.write_to(file);
  file.sync();
}

/// A whole file is made beside the old one, where a link must not become a file.
bool is_replaced(const std::string& path, const FileChange& change) {
  return change.emptied && !change.removed && !host().files->is_link(path);
}

/// What a file holds that is about to be written in place, or removed.
struct Before {
  const std::string& path;
  bool existed = false;
  uint64_t size = 0;
  Extents bytes;

  Before(const std::string& name, const FileChange& change) : path(name) {
    const auto file = host().files->open(path, OpenMode::Read);
    if (!file) return;
    existed = true;
    size = file->size();
    const auto keep = [&](uint64_t offset, size_t count) {
      std::vector<std::byte> old(count);
      old.resize(file->read(offset, old));
      if (!old.empty()) bytes.write(offset, std::move(old));
    };
    if (change.emptied) keep(0, size);
    change.extents.for_each_run([&](uint64_t offset, std::span<const std::byte> run) { keep(offset, run.size()); });
  }
  void put_back() const {
    if (!existed) return host().files->remove(path);
    const auto file = host().files->open(path, OpenMode::Create);
    file->truncate(size);
    write_pieces(*file, bytes);
  }
};

void write_one(const std::string& path, const FileChange& change) {
  FileService& files = *host().files;
  if (change.removed) {
    files.remove(path);
  } else if (is_replaced(path, change)) {
    const std::string made = path + "-new";
    try {
      const auto file = files.open(made, OpenMode::Create);
      file->truncate(0);
      files.copy_owner(path, made);
      write_pieces(*file, change.extents);
      files.rename(made, path);
    } catch (...) {
      files.remove(made);
      throw;
    }
  } else {
    const auto file = files.open(path, OpenMode::Create);
    if (change.emptied) file->truncate(0);
    return write_pieces(*file, change.extents);
  }
  files.sync_folder(std::filesystem::path(path).parent_path().string());
}

}  // namespace

void write_loose_files(const LooseWrites& writes) {
  std::vector<Before> written;
  try {
    for (const auto& [path, change] : writes) {
      if (!is_replaced(path, *change)) written.emplace_back(path, *change);
      write_one(path, *change);
    }
  } catch (...) {
    for (const Before& before : written) {
      try {
        before.put_back();
      } catch (const Error& refused) {
        log().message(refused.description() + " Its old bytes could not be put back.");
      }
    }
    throw;
  }
}

}  // namespace tarn
