#include "tarn/storage/blocks.h"

#include <algorithm>

namespace tarn {

size_t size_of(const Blocks& blocks) {
  size_t size = 0;
  for (const auto& block : blocks) size += block.size();
  return size;
}

std::vector<std::byte> gathered(const Blocks& blocks) {
  std::vector<std::byte> bytes;
  bytes.reserve(size_of(blocks));
  for (const auto& block : blocks) bytes.insert(bytes.end(), block.begin(), block.end());
  return bytes;
}

void scatter(std::span<const std::byte> bytes, const Blocks& blocks) {
  for (const auto& block : blocks) {
    std::copy_n(bytes.begin(), block.size(), block.begin());
    bytes = bytes.subspan(block.size());
  }
}

void clear(const Blocks& blocks) {
  for (const auto& block : blocks) std::fill(block.begin(), block.end(), std::byte{0});
}

bool hold_anything(const Blocks& blocks) {
  const auto is_set = [](std::byte byte) { return byte != std::byte{0}; };
  return std::ranges::any_of(blocks, [&](const auto& block) { return std::ranges::any_of(block, is_set); });
}

}  // namespace tarn
