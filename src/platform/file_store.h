// Where record bytes live. Writes belong to the workspace's transaction: later reads inside it see them, they reach the
// disk at the outermost commit, and a rollback drops them, level by level. See docs/transactions.md for the commit.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/extents.h"
#include "platform/files.h"
#include "tarn/base/object.h"

namespace tarn {

class Database;

class FileStore {
 public:
  /// A file's writes at one level, with the database whose commit they belong to (none: committed on their own).
  struct Pending {
    Ptr<Database> owner;
    bool emptied = false;  // what the file held before is gone
    bool removed = false;  // and so is the file
    Extents extents;
  };
  using Level = std::unordered_map<std::string, Pending>;

  /// Bytes that the file holds from `offset`, as the open transaction sees it; fewer than asked at its end.
  size_t read(const std::string& path, uint64_t offset, std::span<std::byte> into, OpenMode mode);
  /// Fills memory from bytes that lie back to back in a file: large pieces in place, the small ones between them by one
  /// read.
  void read_blocks(const std::string& path, uint64_t from, std::span<const std::span<std::byte>> blocks);
  /// Error where the file, or the folder of a new file, cannot be written. It is raised here, not at the commit.
  void write(const std::string& path, uint64_t offset, std::span<const std::byte> bytes, Ptr<Database> owner);
  /// The file begins with these bytes afterwards; a longer file keeps its tail. Only the blocks that change are
  /// written; where they are many, the file is replaced instead, which writes each byte once.
  void update(const std::string& path, std::span<const std::byte> bytes, const Ptr<Database>& owner);
  /// The whole file becomes these bytes.
  void replace(const std::string& path, std::vector<std::byte> bytes, Ptr<Database> owner);
  void remove(const std::string& path, Ptr<Database> owner);
  uint64_t size(const std::string& path);
  bool exists(const std::string& path);

  // For the workspace:
  void begin() { levels_.emplace_back(); }
  void merge_down();
  void drop();
  /// The writes of the outermost level.
  const Level& outermost() const { return levels_.front(); }

 private:
  struct Handle {
    std::unique_ptr<File> file;
    bool writable = false;
    std::optional<uint64_t> size;  // as it was when first asked for; writes wait for the commit
  };
  Pending& pending(const std::string& path, Ptr<Database> owner);
  /// The file for reading, null where there is none; kept open while a transaction runs, else in `once`.
  Handle* for_reading(const std::string& path, OpenMode mode, Handle& once);

  std::vector<Level> levels_;
  std::unordered_map<std::string, Handle> handles_;  // until the outermost level ends
};

/// Record bytes as the thread's open transaction sees them.
FileStore& files();

}  // namespace tarn
