#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "tarn/base/error.h"

namespace tarn {
namespace {

[[noreturn]] void fail_on(const std::string& path, const std::string& action) {
  const int cause = errno;
  const std::string text = "Cannot " + action + " " + path + ": " + std::strerror(cause) + ".";
  switch (cause) {
    case ENOENT:
      fail(ErrorNumber::FileNotFound, text);
    case ENOTDIR:
      fail(ErrorNumber::PathNotFound, text);
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
      fail(ErrorNumber::PermissionDenied, text);
    default:
      fail(ErrorNumber::DeviceError, text);
  }
}

}  // namespace

size_t File::read_blocks(uint64_t offset, std::span<const std::span<std::byte>> into) {
  size_t done = 0;
  for (const auto& place : into) {
    const size_t got = read(offset + done, place);
    done += got;
    if (got < place.size()) break;
  }
  return done;
}

namespace {

class SystemFile final : public File {
 public:
  SystemFile(std::string path, int descriptor) : path_(std::move(path)), descriptor_(descriptor) {}
  ~SystemFile() override { ::close(descriptor_); }
  SystemFile(const SystemFile&) = delete;
  SystemFile& operator=(const SystemFile&) = delete;

  size_t read(uint64_t offset, std::span<std::byte> into) override {
    size_t done = 0;
    while (done < into.size()) {
      const ssize_t got =
          ::pread(descriptor_, into.data() + done, into.size() - done, static_cast<off_t>(offset + done));
      if (got < 0 && errno == EINTR) continue;
      if (got < 0) fail_on(path_, "read");
      if (got == 0) break;
      done += static_cast<size_t>(got);
    }
    return done;
  }
  size_t read_blocks(uint64_t offset, std::span<const std::span<std::byte>> into) override {
    size_t done = 0;
    while (!into.empty()) {
      std::array<iovec, 256> places;
      const size_t count = std::min(into.size(), places.size());
      size_t wanted = 0;
      for (size_t i = 0; i < count; ++i) {
        places[i] = {into[i].data(), into[i].size()};
        wanted += into[i].size();
      }
      const ssize_t got =
          ::preadv(descriptor_, places.data(), static_cast<int>(count), static_cast<off_t>(offset + done));
      // The rest of a read that was cut short, if there is any, is asked for place by place.
      if (got < 0 || static_cast<size_t>(got) < wanted) return done + File::read_blocks(offset + done, into);
      done += wanted;
      into = into.subspan(count);
    }
    return done;
  }
  void write(uint64_t offset, std::span<const std::byte> bytes) override {
    size_t done = 0;
    while (done < bytes.size()) {
      const ssize_t put =
          ::pwrite(descriptor_, bytes.data() + done, bytes.size() - done, static_cast<off_t>(offset + done));
      if (put < 0 && errno == EINTR) continue;
      if (put < 0) fail_on(path_, "write");
      done += static_cast<size_t>(put);
    }
  }
  uint64_t size() override {
    struct stat status {};
    if (::fstat(descriptor_, &status) != 0) fail_on(path_, "examine");
    return static_cast<uint64_t>(status.st_size);
  }
  void truncate(uint64_t size) override {
    if (::ftruncate(descriptor_, static_cast<off_t>(size)) != 0) fail_on(path_, "shorten");
  }
  void sync() override {
    if (::fsync(descriptor_) != 0) fail_on(path_, "store");
  }
  std::optional<uint64_t> size_if_current() override {
    struct stat named {};
    if (::stat(path_.c_str(), &named) != 0) return {};
    if (inode_ == 0) {
      struct stat opened {};
      if (::fstat(descriptor_, &opened) != 0) return {};
      device_ = opened.st_dev;
      inode_ = opened.st_ino;
    }
    if (named.st_ino != inode_ || named.st_dev != device_) return {};
    return static_cast<uint64_t>(named.st_size);
  }

 private:
  std::string path_;
  int descriptor_;
  dev_t device_ = 0;
  ino_t inode_ = 0;  // 0 until it is asked for
};

class SystemFiles final : public FileService {
 public:
  bool exists(const std::string& path) override { return ::access(path.c_str(), F_OK) == 0; }

  std::unique_ptr<File> open(const std::string& path, OpenMode mode) override {
    const int flags = mode == OpenMode::Read ? O_RDONLY : mode == OpenMode::Write ? O_RDWR : O_RDWR | O_CREAT;
    if (mode != OpenMode::Read) check_link(path);
    const int descriptor = ::open(path.c_str(), flags | O_CLOEXEC, 0666);
    if (descriptor < 0) {
      if (errno == ENOENT && mode != OpenMode::Create) return nullptr;
      if (errno == ENOENT) errno = ENOTDIR;  // the folder is what is missing
      fail_on(path, "open");
    }
    return std::make_unique<SystemFile>(path, descriptor);
  }
  void remove(const std::string& path) override {
    if (::unlink(path.c_str()) != 0 && errno != ENOENT) fail_on(path, "remove");
  }
  void rename(const std::string& from, const std::string& to) override {
    if (::rename(from.c_str(), to.c_str()) != 0) fail_on(from, "rename");
  }
  void rename_new(const std::string& from, const std::string& to) override {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return;
    if (errno != EINVAL && errno != ENOSYS && errno != EEXIST) fail_on(from, "rename");
    FileService::rename_new(from, to);  // tells that it exists, or the file system has no such check
  }
  bool is_link(const std::string& path) override {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
  }
  void copy_owner(const std::string& from, const std::string& to) override {
    struct stat status {};
    if (::stat(from.c_str(), &status) != 0) return;
    if (::chown(to.c_str(), status.st_uid, status.st_gid) != 0 && errno != EPERM) fail_on(to, "give an owner to");
    if (::chmod(to.c_str(), status.st_mode & 07777) != 0) fail_on(to, "set the mode of");
  }
  std::vector<std::string> names(const std::string& folder) override {
    std::vector<std::string> all;
    std::error_code unreadable;  // then there is nothing to see
    for (const auto& entry : std::filesystem::directory_iterator(folder, unreadable))
      all.push_back(entry.path().filename().string());
    return all;
  }
  void sync_folder(const std::string& folder) override {
    const int descriptor = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) fail_on(folder, "open");
    const bool stored = ::fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP;  // some file systems cannot
    const int cause = errno;
    ::close(descriptor);
    errno = cause;
    if (!stored) fail_on(folder, "store");
  }
};

}  // namespace

void FileService::rename_new(const std::string& from, const std::string& to) {
  if (exists(to)) fail(ErrorNumber::FileExists, to + " exists already; remove it first, or choose another name.");
  rename(from, to);
}

void check_link(const std::string& path) {
  struct stat link {};
  if (::lstat(path.c_str(), &link) != 0 || !S_ISLNK(link.st_mode)) return;
  namespace fs = std::filesystem;
  std::error_code unknown;
  const fs::path target = fs::weakly_canonical(path, unknown);
  if (!unknown && target.parent_path() == fs::weakly_canonical(fs::path(path).parent_path(), unknown)) return;
  struct stat file {};
  const bool own = link.st_uid == ::geteuid() && (::stat(path.c_str(), &file) != 0 || file.st_uid == ::geteuid());
  const char* const told = std::getenv("TARN_FOLLOW_LINKS");
  if (own && told && std::string_view(told) == "1") return;
  fail(ErrorNumber::PermissionDenied,
       path + " is a link to " + target.string() +
           ", outside of its folder, and is not written. Put the file itself there; or, where both are yours, set "
           "TARN_FOLLOW_LINKS=1.");
}

FileService& system_files() {
  static SystemFiles files;
  return files;
}

}  // namespace tarn
