#include "platform/file_store.h"

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "platform/host.h"
#include "tarn/base/error.h"
#include "tarn/platform/database.h"

namespace tarn {
namespace {

/// One name for each file, whatever the current folder is.
std::string absolute(const std::string& path) {
  if (path.empty()) fail(ErrorNumber::FileNotFound, "There is no file without a name.");
  const bool plain =
      path.starts_with('/') && path.find("/.") == std::string::npos && path.find("//") == std::string::npos;
  return plain ? path : std::filesystem::absolute(path).lexically_normal().string();
}

}  // namespace

FileStore::Handle* FileStore::for_reading(const std::string& path, OpenMode mode, Handle& once) {
  const auto kept = handles_.find(path);
  if (kept != handles_.end()) return &kept->second;
  FileService& files = *host().files;
  // Inside a client's transaction a reader makes no file: a rollback must leave none.
  if (levels_.size() > 1) mode = OpenMode::Read;
  Handle handle;
  try {
    handle = {files.open(path, mode), mode != OpenMode::Read, {}};
  } catch (const Error& refused) {
    if (mode == OpenMode::Read || refused.number() != static_cast<int>(ErrorNumber::PermissionDenied)) throw;
    handle = {files.open(path, OpenMode::Read), false, {}};
  }
  if (!handle.file) return nullptr;
  Handle& place = levels_.empty() ? once : handles_[path];
  place = std::move(handle);
  return &place;
}

size_t FileStore::read(const std::string& name, uint64_t offset, std::span<std::byte> into, OpenMode mode) {
  const std::string path = absolute(name);
  Handle once;
  Handle* handle = for_reading(path, mode, once);
  size_t got = handle ? handle->file->read(offset, into) : 0;
  std::fill(into.begin() + static_cast<ptrdiff_t>(got), into.end(), std::byte{0});
  for (const Level& level : levels_) {
    const auto found = level.find(path);
    if (found == level.end()) continue;
    const Extents& extents = found->second.extents;
    if (found->second.emptied) {
      std::fill(into.begin(), into.end(), std::byte{0});
      got = 0;
    }
    extents.overlay(offset, into);
    if (extents.end() > offset) got = std::max<size_t>(got, std::min<uint64_t>(extents.end() - offset, into.size()));
  }
  return got;
}

void FileStore::read_blocks(const std::string& path, uint64_t from, std::span<const std::span<std::byte>> blocks) {
  constexpr size_t kLarge = 4096;
  std::vector<std::byte> buffer;
  for (size_t i = 0; i < blocks.size();) {
    if (blocks[i].size() >= kLarge) {
      read(path, from, blocks[i], OpenMode::Read);
      from += blocks[i++].size();
      continue;
    }
    size_t end = i, size = 0;
    while (end < blocks.size() && blocks[end].size() < kLarge) size += blocks[end++].size();
    buffer.resize(size);
    read(path, from, buffer, OpenMode::Read);
    from += size;
    for (auto next = buffer.begin(); i < end; next += static_cast<ptrdiff_t>(blocks[i++].size()))
      std::copy_n(next, blocks[i].size(), blocks[i].begin());
  }
}

/// The file's writes at the innermost level. A file that cannot be written is found here, not at the commit.
FileStore::Pending& FileStore::pending(const std::string& path, Ptr<Database> owner) {
  if (levels_.empty()) fail(ErrorNumber::NoTransaction, "Record bytes are written inside a transaction only: " + path);
  const auto kept = handles_.find(path);
  if (kept == handles_.end() || !kept->second.writable) {
    const std::string folder = std::filesystem::path(path).parent_path().string();
    if (auto file = host().files->open(path, OpenMode::Write)) {
      handles_[path] = {std::move(file), true, {}};
    } else if (!folder.empty() && !host().files->exists(folder)) {
      fail(ErrorNumber::PathNotFound, "The folder of " + path + " does not exist.");
    }
  }
  Pending& place = levels_.back()[path];
  if (!place.owner) place.owner = std::move(owner);
  return place;
}

void FileStore::write(const std::string& name, uint64_t offset, std::span<const std::byte> bytes, Ptr<Database> owner) {
  Pending& place = pending(absolute(name), std::move(owner));
  place.removed = false;
  place.extents.write(offset, bytes);
}

void FileStore::update(const std::string& path, std::span<const std::byte> bytes, const Ptr<Database>& owner) {
  constexpr size_t kBlock = 4096, kRead = 16 * kBlock, kMuch = 16 * kBlock;
  std::vector<std::byte> old(kRead);
  std::vector<std::pair<size_t, size_t>> changes;  // offset and size
  size_t changed = 0;
  const bool replaceable = size(path) <= bytes.size();
  for (size_t start = 0; start < bytes.size(); start += kRead) {
    const auto now = bytes.subspan(start, std::min(kRead, bytes.size() - start));
    const size_t got = read(path, start, std::span(old).first(now.size()), OpenMode::Read);
    for (size_t at = 0; at < now.size(); at += kBlock) {
      const size_t block = std::min(kBlock, now.size() - at);
      // The first block is asked for too, so that a file which cannot be written is found at once.
      if (start + at > 0 && at + block <= got && std::memcmp(now.data() + at, old.data() + at, block) == 0) continue;
      changes.emplace_back(start + at, block);
      changed += block;
    }
    if (changed > kMuch && replaceable) return replace(path, {bytes.begin(), bytes.end()}, owner);
  }
  for (const auto& [offset, size] : changes) write(path, offset, bytes.subspan(offset, size), owner);
}

void FileStore::replace(const std::string& name, std::vector<std::byte> bytes, Ptr<Database> owner) {
  Pending& place = pending(absolute(name), std::move(owner));
  place.emptied = true;
  place.removed = false;
  place.extents = {};
  if (!bytes.empty()) place.extents.write(0, std::move(bytes));
}

void FileStore::remove(const std::string& name, Ptr<Database> owner) {
  if (!exists(name)) return;
  replace(name, {}, std::move(owner));
  levels_.back()[absolute(name)].removed = true;
}

bool FileStore::exists(const std::string& name) {
  const std::string path = absolute(name);
  for (auto level = levels_.rbegin(); level != levels_.rend(); ++level) {
    const auto found = level->find(path);
    if (found != level->end()) return !found->second.removed;
  }
  return host().files->exists(path);
}

uint64_t FileStore::size(const std::string& name) {
  const std::string path = absolute(name);
  Handle once;
  Handle* handle = for_reading(path, OpenMode::Read, once);
  if (handle && !handle->size) handle->size = handle->file->size();
  uint64_t end = handle ? *handle->size : 0;
  for (const Level& level : levels_) {
    const auto found = level.find(path);
    if (found == level.end()) continue;
    if (found->second.emptied) end = 0;
    end = std::max(end, found->second.extents.end());
  }
  return end;
}

void FileStore::merge_down() {
  Level top = std::move(levels_.back());
  levels_.pop_back();
  Level& below = levels_.back();
  below.merge(top);  // what remains above is in both
  for (auto& [path, newer] : top) {
    Pending& older = below.at(path);
    if (!older.owner) older.owner = newer.owner;
    older.removed = newer.removed;
    if (newer.emptied) {
      older.emptied = true;
      older.extents = {};
    }
    older.extents.merge(std::move(newer.extents));
  }
}

void FileStore::drop() {
  levels_.pop_back();
  if (levels_.empty()) handles_.clear();
}

}  // namespace tarn
