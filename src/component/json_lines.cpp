#include "component/json_lines.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <vector>

namespace tarn {
namespace {

using Json = nlohmann::ordered_json;

/// Reads characters and counts the lines behind it.
struct CountingIterator {
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  const char* at;
  size_t* line;

  reference operator*() const { return *at; }
  CountingIterator& operator++() {
    if (*at == '\n') ++*line;
    ++at;
    return *this;
  }
  CountingIterator operator++(int) {
    const CountingIterator before = *this;
    ++*this;
    return before;
  }
  bool operator==(const CountingIterator& other) const { return at == other.at; }
  bool operator!=(const CountingIterator& other) const { return at != other.at; }
};

/// Follows a parse by its places, and stops at the one looked for.
struct Finder : nlohmann::json_sax<Json> {
  Finder(std::string pointer, const size_t& line) : wanted(std::move(pointer)), now(line) {}

  struct Level {
    bool array;
    size_t element;
    std::string key;
  };
  std::string wanted;
  const size_t& now;
  std::vector<Level> levels;

  /// A value begins here; false stops the parse.
  bool value() {
    std::string here;
    if (!levels.empty() && levels.back().array) ++levels.back().element;
    for (const Level& level : levels) here += "/" + (level.array ? std::to_string(level.element - 1) : level.key);
    return here != wanted;
  }
  bool open(bool array) {
    if (!value()) return false;
    levels.push_back({array, 0, {}});
    return true;
  }
  bool close() {
    levels.pop_back();
    return true;
  }

  bool null() override { return value(); }
  bool boolean(bool) override { return value(); }
  bool number_integer(number_integer_t) override { return value(); }
  bool number_unsigned(number_unsigned_t) override { return value(); }
  bool number_float(number_float_t, const string_t&) override { return value(); }
  bool string(string_t&) override { return value(); }
  bool binary(binary_t&) override { return value(); }
  bool start_object(size_t) override { return open(false); }
  bool end_object() override { return close(); }
  bool start_array(size_t) override { return open(true); }
  bool end_array() override { return close(); }
  bool key(string_t& name) override {
    levels.back().key = name;
    return true;
  }
  bool parse_error(size_t, const std::string&, const nlohmann::detail::exception&) override { return false; }
};

}  // namespace

size_t line_at(const std::string& text, size_t byte) {
  const auto end = text.begin() + static_cast<ptrdiff_t>(std::min(byte, text.size()));
  return 1 + static_cast<size_t>(std::count(text.begin(), end, '\n'));
}

size_t line_of(const std::string& text, const std::string& pointer) {
  size_t line = 1;
  Finder finder(pointer, line);
  Json::sax_parse(CountingIterator{text.data(), &line}, CountingIterator{text.data() + text.size(), &line}, &finder);
  return line;
}

}  // namespace tarn
