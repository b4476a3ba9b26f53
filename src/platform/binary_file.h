// Files by number, as block objects take them: open, read and write at a position that counts from 1, close. Each
// thread has its own. What is written is gathered and replaces the file at its close, so that a failure leaves the old
// one.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "platform/files.h"

namespace tarn {

/// Errors name the file. `BadFileHandle` for a number that is not open, `BadPosition` for a position below 1.
class BinaryFiles {
 public:
  static constexpr int16_t kMostFiles = 511;
  static BinaryFiles& of_thread();

  /// The lowest free number. To read, the file must be there (`FileNotFound`); to write, it is there at the close. One
  /// that is open to write cannot be opened again (`FileAlreadyOpen`).
  int16_t open(const std::string& path, OpenMode mode);
  /// The number is free afterwards, also where what was written cannot be stored.
  void close(int16_t number);
  /// The same, without what was written.
  void drop(int16_t number);
  /// Fills all of it and goes behind it; error `InputPastEnd`, and neither, where the file is shorter.
  void read(int16_t number, int32_t position, std::span<std::byte> into);
  void write(int16_t number, int32_t position, std::span<const std::byte> bytes);
  /// Where the last read or write ended.
  int32_t position(int16_t number) { return of(number).position; }

 private:
  struct Opened {
    std::string path;
    bool writable = false;
    std::vector<std::byte> bytes;  // of one that is open to write
    int32_t position = 1;
  };
  Opened& of(int16_t number);

  std::map<int16_t, Opened> opened_;
};

}  // namespace tarn
