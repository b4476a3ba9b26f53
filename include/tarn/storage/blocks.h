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
/// Whether the blocks are these bytes in a row.
bool hold(const Blocks& blocks, std::span<const std::byte> bytes);
void clear(const Blocks& blocks);
/// Any byte that is not 0.
bool hold_anything(const Blocks& blocks);

}  // namespace tarn
