#include "exchange/json_lines.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <vector>

#include "reflect/json_text.h"
#include "tarn/base/error.h"

namespace tarn {
namespace {

/// The line of the last character but one: the parser reads one character beyond a number before it reports the number.
struct LineCounter {
  size_t line = 1;
  bool at_end_of_line = false;
};

/// Reads characters and counts the lines it has passed.
struct CountingIterator {
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  const char* at;
  LineCounter* counter;

  reference operator*() const { return *at; }
  CountingIterator& operator++() {
    if (counter->at_end_of_line) ++counter->line;
    counter->at_end_of_line = *at == '\n';
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

/// A parse of which every value counts alike.
struct Walk : nlohmann::json_sax<Json> {
  /// A value begins here; false stops the parse.
  virtual bool value() = 0;
  virtual bool open(bool array) = 0;
  virtual bool close() = 0;

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
};

/// Follows a parse by its places, and stops at the one looked for.
struct Finder : Walk {
  explicit Finder(std::string pointer) : wanted(std::move(pointer)) {}

  struct Level {
    bool array;
    size_t element;
    std::string key;
  };
  std::string wanted;
  std::vector<Level> levels;

  bool value() override {
    std::string here;
    if (!levels.empty() && levels.back().array) ++levels.back().element;
    for (const Level& level : levels) here += "/" + (level.array ? std::to_string(level.element - 1) : level.key);
    return here != wanted;
  }
  bool open(bool array) override {
    if (!value()) return false;
    levels.push_back({array, 0, {}});
    return true;
  }
  bool close() override {
    levels.pop_back();
    return true;
  }

  bool key(string_t& name) override {
    levels.back().key = name;
    return true;
  }
  bool parse_error(size_t, const std::string&, const nlohmann::detail::exception&) override { return false; }
};

/// Refuses what would be lost in a tree of JSON values, such as a repeated key, or could not be held in one.
struct Checker : Walk {
  explicit Checker(const LineCounter& lines) : counter(lines) {}

  static constexpr size_t kDeepest = 32;
  static constexpr size_t kMostValues = 10'000'000;  // what a tree of them holds in half a gigabyte
  const LineCounter& counter;
  std::vector<std::set<std::string>> keys;  // of each open object or array
  std::string wrong;
  size_t values = 0;

  bool refuse(size_t line, const std::string& what) {
    wrong = "line " + std::to_string(line) + ": " + what;
    return false;
  }
  bool value() override {
    return ++values <= kMostValues || refuse(counter.line, "the text has more than " + std::to_string(kMostValues) +
                                                               " values, which no project has.");
  }
  bool open(bool /*array*/) override {
    if (!value()) return false;
    keys.emplace_back();
    return keys.size() <= kDeepest ||
           refuse(counter.line, "the text nests deeper than " + std::to_string(kDeepest) + " levels.");
  }
  bool close() override {
    keys.pop_back();
    return true;
  }

  bool key(string_t& name) override {
    std::string folded = name;
    for (char& c : folded) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
    if (!keys.back().insert(std::move(folded)).second)
      return refuse(counter.line, "the key \"" + name + "\" appears twice.");
    return true;
  }
  bool parse_error(size_t, const std::string&, const nlohmann::detail::exception& error) override {
    const bool number = dynamic_cast<const Json::out_of_range*>(&error) != nullptr;
    return refuse(counter.line,
                  (number ? "a number is too large: " : "the text is not JSON: ") + std::string(error.what()));
  }
};

}  // namespace

template <typename Handler>
void read_through(const std::string& text, LineCounter& counter, Handler& handler) {
  Json::sax_parse(CountingIterator{text.data(), &counter}, CountingIterator{text.data() + text.size(), &counter},
                  &handler);
}

size_t line_of(const std::string& text, const std::string& pointer) {
  LineCounter counter;
  Finder finder(pointer);
  read_through(text, counter, finder);
  return counter.line;
}

void check_json(const std::string& text) {
  LineCounter counter;
  Checker checker(counter);
  read_through(text, counter, checker);
  if (!checker.wrong.empty()) fail(ErrorNumber::TypeMismatch, checker.wrong);
}

}  // namespace tarn
