#include "tarn/storage/blocks.h"

#include <algorithm>
#include <cstring>

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
  for (const auto& block : blocks) {
    if (!block.empty()) std::memset(block.data(), 0, block.size());
  }
}

bool hold(const Blocks& blocks, std::span<const std::byte> bytes) {
  if (size_of(blocks) != bytes.size()) return false;
  for (const auto& block : blocks) {
    if (!block.empty() && std::memcmp(block.data(), bytes.data(), block.size()) != 0) return false;
    bytes = bytes.subspan(block.size());
  }
  return true;
}

bool hold_anything(const Blocks& blocks) {
  // Each byte is as the one before it, and the first is 0.
  return std::ranges::any_of(blocks, [](const auto& block) {
    return !block.empty() &&
           (block[0] != std::byte{0} || std::memcmp(block.data(), block.data() + 1, block.size() - 1) != 0);
  });
}

}  // namespace tarn
