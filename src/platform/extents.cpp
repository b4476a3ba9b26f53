#include "platform/extents.h"

#include <algorithm>

#include "platform/host.h"

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

void Extents::write(uint64_t offset, std::vector<std::byte> bytes) {
  const uint64_t end = offset + bytes.size();
  auto after = pieces_.lower_bound(offset);
  const auto before = after == pieces_.begin() ? pieces_.end() : std::prev(after);
  const bool meets_next = after != pieces_.end() && after->first < end;
  const bool meets_last = before != pieces_.end() && before->first + before->second.size() > offset;
  if (meets_next && after->first == offset && after->second.size() == bytes.size()) {
    after->second = std::move(bytes);
    return;
  }
  if (meets_next || meets_last) {
    split(offset);
    split(end);
    after = pieces_.erase(pieces_.lower_bound(offset), pieces_.lower_bound(end));
  }
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

size_t Extents::size() const {
  size_t size = 0;
  for (const auto& [offset, bytes] : pieces_) size += bytes.size();
  return size;
}

void Extents::for_each_run(const std::function<void(uint64_t, std::span<const std::byte>)>& take) const {
  constexpr size_t kMost = 65'536;  // of bytes that are joined
  std::vector<std::byte> joined;
  for (auto piece = pieces_.begin(); piece != pieces_.end();) {
    const auto& [offset, bytes] = *piece;
    uint64_t end = offset + bytes.size();
    auto next = std::next(piece);
    if (next == pieces_.end() || next->first != end) {
      take(offset, bytes);
    } else {
      joined.assign(bytes.begin(), bytes.end());
      for (; next != pieces_.end() && next->first == end && joined.size() < kMost; ++next) {
        joined.insert(joined.end(), next->second.begin(), next->second.end());
        end += next->second.size();
      }
      take(offset, joined);
    }
    piece = next;
  }
}

void Extents::write_to(File& file) const {
  for_each_run([&](uint64_t offset, std::span<const std::byte> bytes) { file.write(offset, bytes); });
}

uint64_t Extents::end() const {
  if (pieces_.empty()) return 0;
  const auto& [offset, bytes] = *pieces_.rbegin();
  return offset + bytes.size();
}

}  // namespace tarn
