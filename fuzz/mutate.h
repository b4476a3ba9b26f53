// Changes of files and texts that know their form, repeatable by their seed; among them are the fuzzer's own.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t most);

namespace tarn::fuzz {

class Mutator {
 public:
  explicit Mutator(uint64_t seed) : random_(seed) {}

  /// From 0 to below `count`.
  size_t below(size_t count) { return count == 0 ? 0 : random_() % count; }
  bool once_in(size_t count) { return below(count) == 0; }
  template <typename T, size_t N>
  const T& one_of(const T (&items)[N]) {
    return items[below(N)];
  }

  /// One change of any bytes; `other` lends pieces.
  void change_bytes(std::string& bytes, const std::string& other) {
    const size_t at = below(bytes.size() + 1), length = 1 + below(once_in(4) ? 2000 : 16);
    switch (below(6)) {
      case 0:
        if (at < bytes.size()) bytes[at] = static_cast<char>(bytes[at] ^ (1 << below(8)));
        break;
      case 1:
        bytes.resize(at);
        break;
      case 2:
        bytes.insert(at, length, static_cast<char>(below(256)));
        break;
      case 3:
        bytes.erase(at, length);
        break;
      case 4:
        for (size_t i = at; i < std::min(bytes.size(), at + length); ++i) bytes[i] = static_cast<char>(random_());
        break;
      default: {
        const size_t from = below(other.size() + 1);
        bytes.replace(at, once_in(2) ? length : bytes.size() - at,
                      other.substr(from, once_in(2) ? length : other.size()));
      }
    }
  }

  /// A 16-bit number of a file, at a byte.
  void set_number(std::string& bytes, size_t at) {
    constexpr int16_t kNumbers[]{0, 1, 2, 3, 4, 20, 22, 23, 50, 51, 1000, 32767, -1, -32768};
    const int16_t number = one_of(kNumbers);
    if (at + sizeof number <= bytes.size()) std::memcpy(bytes.data() + at, &number, sizeof number);
  }

  /// A value, a key or a line of a JSON text becomes another.
  void change_json(std::string& text) {
    const size_t from = below(text.size() + 1);
    if (once_in(6)) {
      const size_t line = std::min(text.find('\n', from), text.size());
      const size_t next = std::min(text.find('\n', line + 1), text.size());
      if (once_in(2))
        text.erase(line, next - line);
      else
        text.insert(next, text.substr(line, next - line));
      return;
    }
    constexpr const char* kValues[]{"0",
                                    "-1",
                                    "1",
                                    "3",
                                    "32767",
                                    "32768",
                                    "-32769",
                                    "2147483648",
                                    "1e39",
                                    "1e999",
                                    "0.5",
                                    "[]",
                                    "[1, 2]",
                                    "[[1], [2, 3]]",
                                    "{}",
                                    "{\"a\": 1}",
                                    "null",
                                    "true",
                                    "\"\"",
                                    "\"x\"",
                                    "\"\\u0000\\ud800\"",
                                    "\"\xff\"",
                                    "18446744073709551616"};
    constexpr std::string_view kEnds = ",]}\n";
    const size_t start = text.find_first_of(once_in(5) ? "\"" : ":[,", from);
    if (start == std::string::npos) return;
    const size_t end = std::min(text.find_first_of(kEnds, start + 1), text.size());
    text.replace(start + 1, end - start - 1, one_of(kValues));
  }

 private:
  std::mt19937_64 random_;
};

/// What `LLVMFuzzerCustomMutator` does: one change in two is the fuzzer's, the others are `change(text, random)`.
template <typename F>
size_t mutated(uint8_t* data, size_t size, size_t most, unsigned seed, F change) {
  Mutator random(seed);
  if (random.once_in(2)) return LLVMFuzzerMutate(data, size, most);
  std::string text(reinterpret_cast<const char*>(data), size);
  change(text, random);
  if (text.size() > most) text.resize(most);
  std::memcpy(data, text.data(), text.size());
  return text.size();
}

}  // namespace tarn::fuzz
