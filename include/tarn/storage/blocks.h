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
bool hold_anything(const Blocks& blocks);

}  // namespace tarn
