// Files under a number, for the Load and Save of result blocks: open, read and write at a position that counts from 1,
// close. Each thread has its own numbers. Writes are kept in memory and replace the file when it is closed, so that a
// failure leaves the old file.
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

  /// Returns the lowest free number. A file to read must exist (`FileNotFound`); a file to write is made when it is
  /// closed. A file that is open for writing cannot be opened again (`FileAlreadyOpen`).
  int16_t open(const std::string& path, OpenMode mode);
  /// The number is free afterwards, even where the writes cannot be stored.
  void close(int16_t number);
  /// Closes the file and drops what was written to it.
  void drop(int16_t number);
  /// Fills all of `into` and moves the position past it. Where the file is shorter: error `InputPastEnd`, nothing is
  /// filled, and the position stays.
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
