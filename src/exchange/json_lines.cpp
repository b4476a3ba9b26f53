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
  /// A value without parts; false stops the parse, here and below.
  virtual bool value(Json&& json) = 0;
  /// An array or an object begins.
  virtual bool open(bool array) = 0;
  virtual bool close() = 0;

  bool null() override { return value(nullptr); }
  bool boolean(bool given) override { return value(given); }
  bool number_integer(number_integer_t given) override { return value(given); }
  bool number_unsigned(number_unsigned_t given) override { return value(given); }
  bool number_float(number_float_t given, const string_t&) override { return value(given); }
  bool string(string_t& given) override { return value(std::move(given)); }
  bool binary(binary_t&) override { return false; }
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

  bool value(Json&& /*json*/) override { return next(); }
  bool next() {
    std::string here;
    if (!levels.empty() && levels.back().array) ++levels.back().element;
    for (const Level& level : levels) here += "/" + (level.array ? std::to_string(level.element - 1) : level.key);
    return here != wanted;
  }
  bool open(bool array) override {
    if (!next()) return false;
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

/// Makes a tree of a text, and refuses what would be lost in it, such as a repeated key, or could not be held in one.
struct Reader : Walk {
  explicit Reader(const LineCounter& lines) : counter(lines) {}

  static constexpr size_t kDeepest = 32;
  static constexpr size_t kMostValues = 10'000'000;  // what a tree of them holds in half a gigabyte
  struct Level {
    Json* json;
    std::string key;                                    // of the next value of an object
    std::set<std::string> keys;                         // in small letters
    std::vector<std::pair<std::string, Json>> members;  // until it ends: one at a time the object would copy its keys
  };
  const LineCounter& counter;
  Json all;
  std::vector<Level> levels;
  std::string wrong;
  size_t values = 0;

  bool refuse(const std::string& what) {
    wrong = "line " + std::to_string(counter.line) + ": " + what;
    return false;
  }
  /// Null for one value too many.
  Json* add(Json&& json) {
    if (++values > kMostValues) {
      refuse("the text has more than " + std::to_string(kMostValues) + " values, which no project has.");
      return nullptr;
    }
    if (levels.empty()) return &(all = std::move(json));
    Level& level = levels.back();
    if (level.json->is_array()) return &level.json->emplace_back(std::move(json));
    return &level.members.emplace_back(std::move(level.key), std::move(json)).second;
  }
  bool value(Json&& json) override { return add(std::move(json)) != nullptr; }
  bool open(bool array) override {
    Json* const json = add(array ? Json::array() : Json::object());
    if (!json) return false;
    levels.push_back({json, {}, {}, {}});
    return levels.size() <= kDeepest || refuse("the text nests deeper than " + std::to_string(kDeepest) + " levels.");
  }
  bool close() override {
    Level& level = levels.back();
    if (auto* object = level.json->get_ptr<Json::object_t*>()) {
      object->reserve(level.members.size());
      // At the end, without the search for a key that is known to be new.
      for (auto& [key, json] : level.members) object->emplace_back(std::move(key), std::move(json));
    }
    levels.pop_back();
    return true;
  }

  bool key(string_t& name) override {
    std::string folded = name;
    for (char& c : folded) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
    Level& level = levels.back();
    if (!level.keys.insert(std::move(folded)).second) return refuse("the key \"" + name + "\" appears twice.");
    level.key = std::move(name);
    return true;
  }
  bool parse_error(size_t, const std::string&, const nlohmann::detail::exception& error) override {
    const bool number = dynamic_cast<const Json::out_of_range*>(&error) != nullptr;
    return refuse((number ? "a number is too large: " : "the text is not JSON: ") + std::string(error.what()));
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

Json read_json(const std::string& text) {
  LineCounter counter;
  Reader reader(counter);
  read_through(text, counter, reader);
  if (!reader.wrong.empty()) fail(ErrorNumber::TypeMismatch, reader.wrong);
  return std::move(reader.all);
}

}  // namespace tarn
