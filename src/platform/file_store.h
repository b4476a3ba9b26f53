// Where record bytes live. Writes belong to the workspace's transaction: later reads inside it see them, they reach the
// disk at the outermost commit, and a rollback drops them, level by level. See docs/transactions.md for the commit.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/file_change.h"
#include "platform/files.h"
#include "tarn/base/object.h"
#include "tarn/platform/workspace.h"

namespace tarn {

class Database;

class FileStore {
 public:
  /// A file's writes at one level, with the database whose commit they belong to (none: committed on their own).
  struct Pending {
    Ptr<Database> owner;
    FileChange change;
  };
  using Level = std::unordered_map<std::string, Pending>;
  class View;

  /// A file to read in several steps of one transaction.
  View view(const std::string& path);

  /// Bytes that the file holds from `offset`, as the open transaction sees it; fewer than asked at its end.
  size_t read(const std::string& path, uint64_t offset, std::span<std::byte> into);
  /// Fills memory from bytes that lie back to back in a file; with zeros where it has ended.
  void read_blocks(const std::string& path, uint64_t from, std::span<const std::span<std::byte>> blocks);
  /// Error where the file, or the folder of a new file, cannot be written. It is raised here, not at the commit.
  void write(const std::string& path, uint64_t offset, std::vector<std::byte> bytes, Ptr<Database> owner);
  void write(const std::string& path, uint64_t offset, std::span<const std::byte> bytes, Ptr<Database> owner) {
    write(path, offset, std::vector<std::byte>(bytes.begin(), bytes.end()), std::move(owner));
  }
  /// The file begins with these bytes afterwards; a longer file keeps its tail. Only the blocks that change are
  /// written; where they are many, the file is replaced instead, which writes each byte once.
  void update(const std::string& path, std::span<const std::byte> bytes, const Ptr<Database>& owner);
  /// The whole file becomes these bytes.
  void replace(const std::string& path, std::vector<std::byte> bytes, Ptr<Database> owner);
  void remove(const std::string& path, Ptr<Database> owner);
  uint64_t size(const std::string& path);
  bool exists(const std::string& path);

  FileStore() = default;
  ~FileStore();
  FileStore(const FileStore&) = delete;
  FileStore& operator=(const FileStore&) = delete;

  /// A database whose committed saves lie over the files until they are applied.
  void attach(Database& database) { databases_.push_back(&database); }
  void detach(Database& database) { std::erase(databases_, &database); }
  /// `Database::settle` of each of them.
  void settle();

  // For the workspace:
  void begin() { levels_.emplace_back(); }
  void merge_down();
  void drop();
  /// The writes of the outermost level, which a commit takes.
  Level& outermost() { return levels_.front(); }
  enum class Wanted : uint8_t { ToRead, ToWrite };
  /// The open database that keeps the file's bytes; one that takes part in the transaction comes first. Null for none.
  Database* keeper(const std::string& path, Wanted wanted) const;

 private:
  struct Handle {
    std::unique_ptr<File> file;             // null where there is none
    const FileChange* committed = nullptr;  // what lies over it
    bool writable = false;
    bool kept = false;             // from an earlier transaction, and not looked at in this one
    std::optional<uint64_t> size;  // as it was when first asked for; writes wait for the commit
  };
  FileChange& pending(const std::string& path, Ptr<Database> owner);
  Handle& opened(const std::string& path, OpenMode mode);

  std::vector<Database*> databases_;
  std::vector<Level> levels_;
  std::unordered_map<std::string, Handle> handles_;  // by path; of the transaction, and a few of earlier ones
};

/// A file as the open transaction sees it; without one, the view is one of its own.
class FileStore::View {
 public:
  View(FileStore& files, const std::string& path);
  size_t read(uint64_t offset, std::span<std::byte> into) const;
  void read_blocks(uint64_t from, std::span<const std::span<std::byte>> blocks) const;
  uint64_t size() const;

 private:
  FileStore& files_;
  std::optional<Transaction> own_;
  std::string path_;
  Handle& handle_;
};

inline FileStore::View FileStore::view(const std::string& path) { return {*this, path}; }
inline size_t FileStore::read(const std::string& path, uint64_t offset, std::span<std::byte> into) {
  return view(path).read(offset, into);
}
inline void FileStore::read_blocks(const std::string& path, uint64_t from,
                                   std::span<const std::span<std::byte>> blocks) {
  view(path).read_blocks(from, blocks);
}
inline uint64_t FileStore::size(const std::string& path) { return view(path).size(); }

/// Record bytes as the thread's open transaction sees them.
FileStore& files();

}  // namespace tarn
