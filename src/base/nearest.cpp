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

namespace {

/// The candidates that a word of three letters or more is a part of, the shortest first.
std::vector<std::string_view> containing(std::string_view word, std::span<const std::string_view> candidates) {
  std::vector<std::string_view> found;
  const auto has_word = [&](std::string_view candidate) {
    const auto same = [](char x, char y) { return folded(x) == folded(y); };
    return std::search(candidate.begin(), candidate.end(), word.begin(), word.end(), same) != candidate.end();
  };
  constexpr size_t kFewest = 3;
  if (word.size() >= kFewest) std::ranges::copy_if(candidates, std::back_inserter(found), has_word);
  std::ranges::stable_sort(found, {}, &std::string_view::size);
  return found;
}

}  // namespace

std::string did_you_mean(std::string_view word, std::span<const std::string_view> candidates) {
  constexpr size_t kMostTold = 5;
  auto found = containing(word, candidates);
  if (found.empty() && !candidates.empty()) found.push_back(nearest(word, candidates));
  if (found.empty() || found.front().empty()) return "there is none.";
  std::string text = "did you mean " + std::string(found.front());
  const size_t told = std::min(found.size(), kMostTold);
  for (size_t i = 1; i < told; ++i) text += (i + 1 < found.size() ? ", " : " or ") + std::string(found[i]);
  return text + (found.size() > told ? " or one of " + std::to_string(found.size() - told) + " more?" : "?");
}

}  // namespace tarn
