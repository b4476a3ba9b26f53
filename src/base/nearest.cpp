#include "base/nearest.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <vector>

namespace tarn {
namespace {

int folded(char c) { return std::tolower(static_cast<unsigned char>(c)); }

/// Levenshtein's distance.
size_t edits(std::string_view a, std::string_view b) {
  std::vector<size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), size_t{0});
  for (size_t i = 0; i < a.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i + 1;
    for (size_t j = 0; j < b.size(); ++j) {
      const size_t replaced = diagonal + (folded(a[i]) == folded(b[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

}  // namespace

bool same_word(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  if (std::memcmp(a.data(), b.data(), a.size()) == 0) return true;
  return std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return folded(x) == folded(y); });
}

std::string_view nearest(std::string_view word, std::span<const std::string_view> candidates) {
  constexpr size_t kLongest = 100;  // no name is as long; a text of megabytes would take minutes
  word = word.substr(0, kLongest);
  std::string_view best;
  size_t least = SIZE_MAX;
  for (const std::string_view candidate : candidates) {
    // A shortened word is compared with the beginning of the candidate.
    const size_t distance = std::min(edits(word, candidate), edits(word, candidate.substr(0, word.size())) + 1);
    if (distance >= least) continue;
    best = candidate;
    least = distance;
  }
  return best;
}

std::string did_you_mean(std::string_view word, std::span<const std::string_view> candidates) {
  const auto best = nearest(word, candidates);
  return best.empty() ? "there is none." : "did you mean " + std::string(best) + "?";
}

}  // namespace tarn
