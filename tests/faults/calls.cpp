#include "calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdarg>

namespace tarn::faults {
namespace {

std::string folder;
std::function<Fate(const Call&)> fate_of;
thread_local bool inside = false;      // of `fate_of`
std::array<std::string, 1024> opened;  // by descriptor

template <typename F>
F* system_call(const char* name) {
  return reinterpret_cast<F*>(dlsym(RTLD_NEXT, name));
}

bool watched(const std::string& path) { return fate_of && !inside && path.starts_with(folder); }

const std::string& path_of(int descriptor) {
  static const std::string none;
  return descriptor >= 0 && static_cast<size_t>(descriptor) < opened.size() ? opened[descriptor] : none;
}

/// Makes the call as its fate has it. `whole` makes it; `part` makes half of it, where there is a half.
template <typename Whole, typename Part>
ssize_t meet(const Call& call, Whole whole, Part part) {
  if (!watched(call.path)) return whole();
  inside = true;
  const Fate fate = fate_of(call);
  inside = false;
  switch (fate) {
    case Fate::DiesBefore:
      _exit(kDied);
    case Fate::DiesTorn:
      part();
      _exit(kDied);
    case Fate::DiesAfter:
      whole();
      _exit(kDied);
    case Fate::Fails:
    case Fate::IsFull:
      errno = fate == Fate::Fails ? EIO : ENOSPC;
      return -1;
    case Fate::IsShort:
      return part();
    case Fate::Passes:
      break;
  }
  return call.kind == Kind::Sync ? 0 : whole();
}

template <typename Whole>
ssize_t meet(const Call& call, Whole whole) {
  return meet(call, whole, whole);
}

int open_file(const char* path, int flags, int mode) {
  static auto* const real = system_call<int(const char*, int, ...)>("open");
  const bool creates = (flags & O_CREAT) != 0 && access(path, F_OK) != 0;
  const auto whole = [&] { return real(path, flags, mode); };
  const auto descriptor = static_cast<int>(meet({creates ? Kind::Create : Kind::Open, path}, whole));
  if (descriptor >= 0 && static_cast<size_t>(descriptor) < opened.size())
    opened[descriptor] = watched(path) ? path : std::string();
  return descriptor;
}

ssize_t read_file(int descriptor, void* into, size_t size, off_t offset) {
  static auto* const real = system_call<ssize_t(int, void*, size_t, off_t)>("pread");
  return meet({Kind::Read, path_of(descriptor), {}, static_cast<uint64_t>(offset)},
              [&] { return real(descriptor, into, size, offset); });
}

ssize_t read_places(int descriptor, const iovec* places, int count, off_t offset) {
  static auto* const real = system_call<ssize_t(int, const iovec*, int, off_t)>("preadv");
  return meet({Kind::Read, path_of(descriptor), {}, static_cast<uint64_t>(offset)},
              [&] { return real(descriptor, places, count, offset); });
}

ssize_t write_file(int descriptor, const void* from, size_t size, off_t offset) {
  static auto* const real = system_call<ssize_t(int, const void*, size_t, off_t)>("pwrite");
  const std::span bytes(static_cast<const std::byte*>(from), size);
  return meet(
      {Kind::Write, path_of(descriptor), {}, static_cast<uint64_t>(offset), bytes},
      [&] { return real(descriptor, from, size, offset); },
      [&] { return real(descriptor, from, (size + 1) / 2, offset); });
}

int truncate_file(int descriptor, off_t size) {
  static auto* const real = system_call<int(int, off_t)>("ftruncate");
  return static_cast<int>(meet({Kind::Truncate, path_of(descriptor), {}, static_cast<uint64_t>(size)},
                               [&] { return ssize_t{real(descriptor, size)}; }));
}

int sync_file(int descriptor, const char* name) {
  return static_cast<int>(
      meet({Kind::Sync, path_of(descriptor)}, [&] { return ssize_t{system_call<int(int)>(name)(descriptor)}; }));
}

}  // namespace

void watch(const std::string& in, std::function<Fate(const Call&)> fate) {
  folder = in;
  fate_of = std::move(fate);
}

}  // namespace tarn::faults

using namespace tarn::faults;

extern "C" {

int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const int mode = (flags & O_CREAT) != 0 ? va_arg(rest, int) : 0;
  va_end(rest);
  return open_file(path, flags, mode);
}
int open64(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const int mode = (flags & O_CREAT) != 0 ? va_arg(rest, int) : 0;
  va_end(rest);
  return open_file(path, flags, mode);
}
ssize_t pread(int fd, void* into, size_t size, off_t offset) { return read_file(fd, into, size, offset); }
ssize_t pread64(int fd, void* into, size_t size, off64_t offset) { return read_file(fd, into, size, offset); }
ssize_t preadv(int fd, const iovec* places, int count, off_t offset) { return read_places(fd, places, count, offset); }
ssize_t preadv64(int fd, const iovec* places, int count, off64_t offset) {
  return read_places(fd, places, count, offset);
}
ssize_t pwrite(int fd, const void* from, size_t size, off_t offset) { return write_file(fd, from, size, offset); }
ssize_t pwrite64(int fd, const void* from, size_t size, off64_t offset) { return write_file(fd, from, size, offset); }
int ftruncate(int fd, off_t size) noexcept { return truncate_file(fd, size); }
int ftruncate64(int fd, off64_t size) noexcept { return truncate_file(fd, size); }
int fsync(int fd) { return sync_file(fd, "fsync"); }
int fdatasync(int fd) { return sync_file(fd, "fdatasync"); }
int unlink(const char* path) noexcept {
  return static_cast<int>(
      meet({Kind::Remove, path}, [&] { return ssize_t{system_call<int(const char*)>("unlink")(path)}; }));
}
int rename(const char* from, const char* to) noexcept {
  return static_cast<int>(meet({Kind::Rename, from, to}, [&] {
    return ssize_t{system_call<int(const char*, const char*)>("rename")(from, to)};
  }));
}
int renameat2(int from_at, const char* from, int to_at, const char* to, unsigned flags) noexcept {
  return static_cast<int>(meet({Kind::Rename, from, to}, [&] {
    return ssize_t{
        system_call<int(int, const char*, int, const char*, unsigned)>("renameat2")(from_at, from, to_at, to, flags)};
  }));
}

}  // extern "C"
