#include "tarn/storage/blocks.h"

#include <algorithm>
#include <cstring>

namespace tarn {
namespace {

bool holds_anything(std::span<const std::byte> block) {
  // Each byte is as the one before it, and the first is 0.
  return !block.empty() &&
         (block[0] != std::byte{0} || std::memcmp(block.data(), block.data() + 1, block.size() - 1) != 0);
}

}  // namespace

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
    if (holds_anything(block)) std::memset(block.data(), 0, block.size());
  }
}

bool hold_anything(const Blocks& blocks) { return std::ranges::any_of(blocks, holds_anything); }

Kept::Kept(const Blocks& blocks) {
  blocks_.reserve(blocks.size());
  for (const auto& block : blocks) {
    blocks_.push_back({block.size(), holds_anything(block)});
    if (blocks_.back().holds) bytes_.insert(bytes_.end(), block.begin(), block.end());
  }
}

bool Kept::fits(const Blocks& blocks) const {
  return std::ranges::equal(blocks, blocks_, {}, &std::span<std::byte>::size, &Block::size);
}

bool Kept::is_in(const Blocks& blocks) const {
  if (!fits(blocks)) return false;
  const std::byte* bytes = bytes_.data();
  for (size_t i = 0; i < blocks.size(); ++i) {
    const bool same =
        blocks_[i].holds ? std::memcmp(blocks[i].data(), bytes, blocks[i].size()) == 0 : !holds_anything(blocks[i]);
    if (!same) return false;
    if (blocks_[i].holds) bytes += blocks[i].size();
  }
  return true;
}

void Kept::put_back(const Blocks& blocks) const {
  auto bytes = bytes_.begin();
  for (size_t i = 0; i < blocks.size(); ++i) {
    if (!blocks_[i].holds) {
      clear({blocks[i]});
      continue;
    }
    std::copy_n(bytes, blocks[i].size(), blocks[i].begin());
    bytes += static_cast<ptrdiff_t>(blocks[i].size());
  }
}

}  // namespace tarn
