#include "platform/file_store.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <optional>

#include "platform/host.h"
#include "tarn/base/error.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"

namespace tarn {
namespace {

/// One name for each file, whatever the current folder is.
std::string absolute(const std::string& path) {
  thread_local std::string last;  // a file is asked for several times in a row
  if (!path.empty() && path == last) return path;
  if (path.empty()) fail(ErrorNumber::FileNotFound, "There is no file without a name.");
  bool plain = path.front() == '/';
  for (size_t at = 0; plain && at != std::string::npos; at = path.find('/', at + 1))
    plain = at + 1 < path.size() && path[at + 1] != '/' && path[at + 1] != '.';
  if (plain) return last = path;
  return std::filesystem::absolute(path).lexically_normal().string();
}

}  // namespace

FileStore::View::View(FileStore& files, const std::string& path)
    : files_(files),
      own_(files.levels_.empty() ? std::optional<Transaction>(std::in_place, Transaction::Purpose::Reading)
                                 : std::nullopt),
      path_(absolute(path)),
      handle_(files.opened(path_, OpenMode::Read)) {}

Database* FileStore::keeper(const std::string& path, Wanted wanted) const {
  Database* found = nullptr;
  for (Database* each : databases_) {
    if (!each->keeps(path) || (wanted == Wanted::ToWrite && each->read_only())) continue;
    if (Engine::of_thread().Workspaces(0).has_enlisted(each->Name())) return each;
    if (!found) found = each;
  }
  return found;
}

/// The file as it was committed last. It stays open, also for later transactions, while it keeps its name.
FileStore::Handle& FileStore::opened(const std::string& path, OpenMode mode) {
  const auto known = handles_.find(path);
  const bool serves = known != handles_.end() && (mode == OpenMode::Read || known->second.writable);
  if (serves && !known->second.kept) return known->second;
  Database* const database = keeper(path, Wanted::ToRead);
  Handle handle;
  handle.committed = database ? database->pending(path) : nullptr;
  // The name may be the old file's as long as the new one has not taken its place.
  const bool replaced = handle.committed && !handle.committed->replacement.empty();
  if (serves && !replaced) handle.size = known->second.file->size_if_current();
  if (handle.size) {
    handle.file = std::move(known->second.file);
    handle.writable = known->second.writable;
    return known->second = std::move(handle);
  }
  FileService& files = *host().files;
  if (replaced) handle.file = files.open(database->pending_path(*handle.committed), mode);
  if (!handle.file) handle.file = files.open(path, mode);  // the new file has its place already
  handle.writable = handle.file && mode == OpenMode::Write;
  return handles_[path] = std::move(handle);
}

namespace {

/// Lays a change over bytes of a file, of which `got` are there.
size_t overlay(const FileChange& change, uint64_t offset, std::span<std::byte> into, size_t got) {
  if (change.emptied && change.replacement.empty()) {
    std::fill(into.begin(), into.end(), std::byte{0});
    got = 0;
  }
  change.extents.overlay(offset, into);
  const uint64_t end = change.extents.end();
  return end > offset ? std::max<size_t>(got, std::min<uint64_t>(end - offset, into.size())) : got;
}

/// Whether the file that has the name, or is going to have it, holds all of the change.
bool is_in_file(const FileChange& change) {
  return change.extents.empty() && !(change.emptied && change.replacement.empty());
}

uint64_t size_after(const FileChange& change, uint64_t size) {
  return std::max(change.emptied && change.replacement.empty() ? 0 : size, change.extents.end());
}

}  // namespace

size_t FileStore::View::read(uint64_t offset, std::span<std::byte> into) const {
  size_t got = handle_.file ? handle_.file->read(offset, into) : 0;
  std::fill(into.begin() + static_cast<ptrdiff_t>(got), into.end(), std::byte{0});
  if (handle_.committed) got = overlay(*handle_.committed, offset, into, got);
  for (const Level& level : files_.levels_) {
    if (const auto found = level.find(path_); found != level.end())
      got = overlay(found->second.change, offset, into, got);
  }
  return got;
}

void FileStore::View::read_blocks(uint64_t from, std::span<const std::span<std::byte>> blocks) const {
  const bool as_in_file = handle_.file && (!handle_.committed || is_in_file(*handle_.committed)) &&
                          std::ranges::none_of(files_.levels_, [&](const Level& each) { return each.contains(path_); });
  size_t size = 0;
  for (const auto& block : blocks) size += block.size();
  if (as_in_file && handle_.file->read_blocks(from, blocks) == size) return;
  std::vector<std::byte> bytes(size);
  read(from, bytes);
  auto next = bytes.begin();
  for (const auto& block : blocks) {
    std::copy_n(next, block.size(), block.begin());
    next += static_cast<ptrdiff_t>(block.size());
  }
}

uint64_t FileStore::View::size() const {
  if (!handle_.size) handle_.size = handle_.file ? handle_.file->size() : 0;
  uint64_t size = *handle_.size;
  if (handle_.committed) size = size_after(*handle_.committed, size);
  for (const Level& level : files_.levels_) {
    if (const auto found = level.find(path_); found != level.end()) size = size_after(found->second.change, size);
  }
  return size;
}

/// The file's writes at the innermost level. A file that cannot be written is found here, not at the commit.
FileChange& FileStore::pending(const std::string& path, Ptr<Database> owner) {
  if (levels_.empty()) fail(ErrorNumber::NoTransaction, "Record bytes are written inside a transaction only: " + path);
  if (!opened(path, OpenMode::Write).file) {
    const std::string folder = std::filesystem::path(path).parent_path().string();
    if (!folder.empty() && !host().files->exists(folder))
      fail(ErrorNumber::PathNotFound, "The folder of " + path + " does not exist.");
  }
  Pending& place = levels_.back()[path];
  if (!place.owner) place.owner = std::move(owner);
  return place.change;
}

void FileStore::write(const std::string& name, uint64_t offset, std::vector<std::byte> bytes, Ptr<Database> owner) {
  FileChange& change = pending(absolute(name), std::move(owner));
  change.removed = false;
  change.extents.write(offset, std::move(bytes));
}

void FileStore::update(const std::string& path, std::span<const std::byte> bytes, const Ptr<Database>& owner) {
  constexpr size_t kBlock = 4096, kRead = 16 * kBlock, kMuch = 16 * kBlock;
  std::vector<std::byte> old(kRead);
  std::vector<std::pair<size_t, size_t>> changes;  // offset and size
  size_t changed = 0;
  const bool replaceable = size(path) <= bytes.size();
  for (size_t start = 0; start < bytes.size(); start += kRead) {
    const auto now = bytes.subspan(start, std::min(kRead, bytes.size() - start));
    const size_t got = read(path, start, std::span(old).first(now.size()));
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
  FileChange& change = pending(absolute(name), std::move(owner));
  change = {true, false, {}, {}};
  if (!bytes.empty()) change.extents.write(0, std::move(bytes));
}

void FileStore::remove(const std::string& name, Ptr<Database> owner) {
  if (!exists(name)) return;
  pending(absolute(name), std::move(owner)) = {true, true, {}, {}};
}

bool FileStore::exists(const std::string& name) {
  std::optional<Transaction> own;
  if (levels_.empty()) own.emplace(Transaction::Purpose::Reading);
  const std::string path = absolute(name);
  for (auto level = levels_.rbegin(); level != levels_.rend(); ++level) {
    const auto found = level->find(path);
    if (found != level->end()) return !found->second.change.removed;
  }
  if (handles_.contains(path)) {
    const Handle& handle = opened(path, OpenMode::Read);
    return handle.committed ? !handle.committed->removed : handle.file != nullptr;
  }
  if (Database* const database = keeper(path, Wanted::ToRead)) {
    if (const FileChange* change = database->pending(path)) return !change->removed;
  }
  return host().files->exists(path);
}

/// At the end of the thread; databases that live on are done with record files.
FileStore::~FileStore() {
  while (!databases_.empty()) databases_.back()->close();
}

void FileStore::settle() {
  for (Database* database : databases_) database->settle();
}

void FileStore::merge_down() {
  Level top = std::move(levels_.back());
  levels_.pop_back();
  Level& below = levels_.back();
  below.merge(top);  // what remains above is in both
  for (auto& [path, newer] : top) {
    Pending& older = below.at(path);
    if (!older.owner) older.owner = newer.owner;
    older.change.merge(std::move(newer.change));
  }
}

void FileStore::drop() {
  levels_.pop_back();
  if (!levels_.empty()) return;
  constexpr size_t kMostKept = 16;  // a file for each kind
  if (handles_.size() > kMostKept) handles_.clear();
  std::erase_if(handles_, [](const auto& handle) { return !handle.second.file; });
  for (auto& [path, handle] : handles_) handle.kept = true;
}

}  // namespace tarn
