// The file service: every byte of a record file goes through it, so that a client (or a test) can put its own in place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tarn {

class File {
 public:
  virtual ~File() = default;
  /// Bytes read, fewer than asked at the end of the file. Error `DeviceError`.
  virtual size_t read(uint64_t offset, std::span<std::byte> into) = 0;
  /// Reads bytes that lie in a row into several places.
  virtual size_t read_blocks(uint64_t offset, std::span<const std::span<std::byte>> into);
  virtual void write(uint64_t offset, std::span<const std::byte> bytes) = 0;
  virtual uint64_t size() = 0;
  virtual void truncate(uint64_t size) = 0;
  /// Returns when the bytes are on the disk.
  virtual void sync() = 0;
  /// The size of the file, where it still has its name; none where that is not known, and the file is opened anew.
  virtual std::optional<uint64_t> size_if_current() { return {}; }
};

enum class OpenMode : uint8_t { Read, Write, Create };

class FileService {
 public:
  virtual ~FileService() = default;
  virtual bool exists(const std::string& path) = 0;
  /// Null for a missing file unless it is to be created. Errors `PathNotFound`, `PermissionDenied`, `DeviceError`, each
  /// naming the file.
  virtual std::unique_ptr<File> open(const std::string& path, OpenMode mode) = 0;
  /// Removes a file; a missing one is no error.
  virtual void remove(const std::string& path) = 0;
  /// Gives a file another name in its folder; a file of that name is gone.
  virtual void rename(const std::string& from, const std::string& to) = 0;
  /// The same, but error `FileExists` where there is a file of that name.
  virtual void rename_new(const std::string& from, const std::string& to);
  /// Whether the name is one of a symbolic link.
  virtual bool is_link(const std::string& /*path*/) { return false; }
  /// Gives a new file the mode of an old one, and its owner where the system lets; nothing where there is no old one.
  virtual void copy_owner(const std::string& /*from*/, const std::string& /*to*/) {}
  /// The names in a folder; none where a client's service does not list folders.
  virtual std::vector<std::string> names(const std::string& /*folder*/) { return {}; }
  /// Brings new names, renames and removals in a folder to the disk.
  virtual void sync_folder(const std::string& folder) = 0;
};

/// Refuses to write through a symbolic link that leads out of its folder. Where this user owns both, and
/// TARN_FOLLOW_LINKS=1 is set, it is allowed. Error `PermissionDenied`.
void check_link(const std::string& path);

/// The operating system's files.
FileService& system_files();

}  // namespace tarn
