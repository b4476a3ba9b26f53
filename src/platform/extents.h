// Bytes that are written but not yet on the disk, by position. Never overlapping; the newest write wins.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <vector>

namespace tarn {

class Extents {
 public:
  void write(uint64_t offset, std::span<const std::byte> bytes);
  void write(uint64_t offset, std::vector<std::byte>&& bytes);
  /// Copies the bytes held here over those of `into`, which begins at `offset`.
  void overlay(uint64_t offset, std::span<std::byte> into) const;
  /// One past the last byte held.
  uint64_t end() const;
  const std::map<uint64_t, std::vector<std::byte>>& pieces() const { return pieces_; }
  /// Takes over all of a newer set.
  void merge(Extents&& newer);

 private:
  /// No piece reaches across this position afterwards.
  void split(uint64_t at);

  std::map<uint64_t, std::vector<std::byte>> pieces_;
};

}  // namespace tarn
