// Pieces of memory that lie back to back in a file.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace tarn {

using Blocks = std::vector<std::span<std::byte>>;

size_t size_of(const Blocks& blocks);
/// Their bytes in a row.
std::vector<std::byte> gathered(const Blocks& blocks);
/// The bytes into the blocks, one after another.
void scatter(std::span<const std::byte> bytes, const Blocks& blocks);
void clear(const Blocks& blocks);
/// Any byte that is not 0.
bool hold_anything(const Blocks& blocks);

/// What blocks held, to be put back. Those of zeros, as an object has of what it never loaded, take no memory.
class Kept {
 public:
  explicit Kept(const Blocks& blocks);
  /// Whether the blocks have the same sizes.
  bool fits(const Blocks& blocks) const;
  /// Whether they also hold the same.
  bool is_in(const Blocks& blocks) const;
  /// Into blocks that it fits.
  void put_back(const Blocks& blocks) const;

 private:
  struct Block {
    size_t size;
    bool holds;
  };
  std::vector<Block> blocks_;
  std::vector<std::byte> bytes_;  // of those that hold anything
};

}  // namespace tarn
