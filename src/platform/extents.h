// Bytes that are written but not yet on the disk, by position. Never overlapping; the newest write wins.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <vector>

namespace tarn {

class File;

class Extents {
 public:
  void write(uint64_t offset, std::vector<std::byte> bytes);
  /// Copies the bytes held here over those of `into`, which begins at `offset`.
  void overlay(uint64_t offset, std::span<std::byte> into) const;
  /// One past the last byte held.
  uint64_t end() const;
  bool empty() const { return pieces_.empty(); }
  /// Bytes held.
  size_t size() const;
  /// Runs of bytes that lie back to back, in order, as their position and their bytes; long ones in parts.
  void for_each_run(const std::function<void(uint64_t, std::span<const std::byte>)>& take) const;
  void write_to(File& file) const;
  /// Takes over all of a newer set.
  void merge(Extents&& newer);

 private:
  /// No piece reaches across this position afterwards.
  void split(uint64_t at);

  std::map<uint64_t, std::vector<std::byte>> pieces_;
};

}  // namespace tarn
