#include "platform/extents.h"

#include <algorithm>

namespace tarn {

void Extents::split(uint64_t at) {
  auto after = pieces_.upper_bound(at);
  if (after == pieces_.begin()) return;
  auto& [start, bytes] = *std::prev(after);
  if (start == at || start + bytes.size() <= at) return;
  const auto cut = bytes.begin() + static_cast<ptrdiff_t>(at - start);
  pieces_.emplace_hint(after, at, std::vector<std::byte>(cut, bytes.end()));
  bytes.erase(cut, bytes.end());
}

void Extents::write(uint64_t offset, std::span<const std::byte> bytes) {
  const auto same = pieces_.find(offset);
  if (same != pieces_.end() && same->second.size() == bytes.size()) {
    std::copy(bytes.begin(), bytes.end(), same->second.begin());
    return;
  }
  write(offset, std::vector<std::byte>(bytes.begin(), bytes.end()));
}

void Extents::write(uint64_t offset, std::vector<std::byte>&& bytes) {
  const uint64_t end = offset + bytes.size();
  split(offset);
  split(end);
  const auto after = pieces_.erase(pieces_.lower_bound(offset), pieces_.lower_bound(end));
  pieces_.emplace_hint(after, offset, std::move(bytes));
}

void Extents::merge(Extents&& newer) {
  for (auto& [offset, bytes] : newer.pieces_) write(offset, std::move(bytes));
}

void Extents::overlay(uint64_t offset, std::span<std::byte> into) const {
  auto piece = pieces_.upper_bound(offset);
  if (piece != pieces_.begin()) --piece;
  const uint64_t end = offset + into.size();
  for (; piece != pieces_.end() && piece->first < end; ++piece) {
    const uint64_t from = std::max(offset, piece->first);
    const uint64_t to = std::min(end, piece->first + piece->second.size());
    if (from < to) std::copy_n(piece->second.data() + (from - piece->first), to - from, into.data() + (from - offset));
  }
}

uint64_t Extents::end() const {
  if (pieces_.empty()) return 0;
  const auto& [offset, bytes] = *pieces_.rbegin();
  return offset + bytes.size();
}

}  // namespace tarn
