#include "platform/binary_file.h"

#include <algorithm>
#include <filesystem>
#include <limits>

#include "platform/file_store.h"
#include "tarn/base/error.h"
#include "tarn/platform/workspace.h"

namespace tarn {
namespace {

/// Where the bytes end, counted from 0.
size_t end_of(int32_t position, size_t size, const std::string& path) {
  if (position < 1) {
    fail(ErrorNumber::BadPosition,
         "Positions in " + path + " count from 1; there is no position " + std::to_string(position) + ".");
  }
  const size_t end = static_cast<size_t>(position) - 1 + size;
  if (end >= static_cast<size_t>(std::numeric_limits<int32_t>::max()))
    fail(ErrorNumber::Overflow, "Overflow: " + path + " has no positions above 2147483647.");
  return end;
}

/// What is open to write lies in memory.
void check_size(uint64_t size, const std::string& path) {
  constexpr uint64_t kMost = 512'000'000;  // the results of a system take some megabytes
  if (size <= kMost) return;
  fail(ErrorNumber::Overflow, "Overflow: " + path + " cannot have " + std::to_string(size) +
                                  " bytes; a file that is open to write has at most " + std::to_string(kMost) + ".");
}

}  // namespace

BinaryFiles& BinaryFiles::of_thread() {
  thread_local BinaryFiles files;
  return files;
}

BinaryFiles::Opened& BinaryFiles::of(int16_t number) {
  const auto found = opened_.find(number);
  if (found == opened_.end())
    fail(ErrorNumber::BadFileHandle, "Bad file name or number: no file is open as " + std::to_string(number) + ".");
  return found->second;
}

int16_t BinaryFiles::open(const std::string& name, OpenMode mode) {
  if (name.empty()) fail(ErrorNumber::BadFileHandle, "Bad file name or number: the name is empty.");
  Opened file;
  file.path = std::filesystem::absolute(name).lexically_normal().string();
  file.writable = mode != OpenMode::Read;
  for (const auto& [number, other] : opened_) {
    if (other.path == file.path && (other.writable || file.writable))
      fail(ErrorNumber::FileAlreadyOpen, "File already open: " + name + " as " + std::to_string(number) + ".");
  }
  const bool there = files().exists(file.path);
  if (!there && mode != OpenMode::Create) fail(ErrorNumber::FileNotFound, "There is no file " + name + ".");
  if (there && file.writable) {
    const uint64_t size = files().size(file.path);
    check_size(size, file.path);
    file.bytes.resize(size);
    files().read(file.path, 0, file.bytes);
  }
  int16_t number = 1;
  while (opened_.contains(number)) ++number;
  if (number > kMostFiles) fail(ErrorNumber::TooManyFiles, "Too many files are open; close some.");
  opened_[number] = std::move(file);
  return number;
}

void BinaryFiles::close(int16_t number) {
  Opened file = std::move(of(number));
  opened_.erase(number);
  if (!file.writable) return;
  Transaction transaction;
  files().replace(file.path, std::move(file.bytes), nullptr);
  transaction.commit();
}

void BinaryFiles::drop(int16_t number) {
  of(number);
  opened_.erase(number);
}

void BinaryFiles::read(int16_t number, int32_t position, std::span<std::byte> into) {
  Opened& file = of(number);
  const size_t end = end_of(position, into.size(), file.path), start = end - into.size();
  const size_t size = file.writable ? file.bytes.size() : files().size(file.path);
  if (end > size) {
    fail(ErrorNumber::InputPastEnd, "Input past end of file: " + file.path + " has " + std::to_string(size) +
                                        " bytes, " + std::to_string(end) + " are needed.");
  }
  if (file.writable)
    std::copy_n(file.bytes.begin() + static_cast<ptrdiff_t>(start), into.size(), into.begin());
  else
    files().read(file.path, start, into);
  file.position = static_cast<int32_t>(end) + 1;
}

void BinaryFiles::write(int16_t number, int32_t position, std::span<const std::byte> bytes) {
  Opened& file = of(number);
  if (!file.writable)
    fail(ErrorNumber::PermissionDenied, file.path + " was opened for reading; open it for writing to change it.");
  const size_t end = end_of(position, bytes.size(), file.path);
  check_size(end, file.path);
  if (file.bytes.size() < end) file.bytes.resize(end);
  std::copy(bytes.begin(), bytes.end(), file.bytes.begin() + static_cast<ptrdiff_t>(end - bytes.size()));
  file.position = static_cast<int32_t>(end) + 1;
}

}  // namespace tarn
