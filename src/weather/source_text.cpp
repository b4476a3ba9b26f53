#include "weather/source_text.h"

#include <algorithm>

#include "tarn/base/codepage.h"

namespace tarn {

void refuse_line(int line, const std::string& reason) {
  fail(ErrorNumber::UnknownFormat, "line " + std::to_string(line) + ": " + reason + ".");
}

std::string quoted(std::string_view text) {
  constexpr size_t kLongest = 40;
  std::string shown(text.substr(0, kLongest));
  std::replace_if(
      shown.begin(), shown.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, '?');
  return "\"" + foreign_text(shown).text + "\"";
}

size_t split(std::string_view line, std::span<std::string_view> fields) {
  size_t count = 0;
  while (count < fields.size()) {
    const std::string_view start = stripped(line);
    size_t end = std::min(line.find(','), line.size());
    std::string_view field = line.substr(0, end);
    if (start.starts_with('"')) {
      const std::string_view quoted = start.substr(1);
      const size_t close = std::min(quoted.find('"'), quoted.size());
      field = quoted.substr(0, close);
      const auto behind = static_cast<size_t>(field.data() + field.size() - line.data());
      end = std::min(line.find(',', behind), line.size());
    }
    fields[count++] = field;
    if (end == line.size()) break;
    line.remove_prefix(end + 1);
  }
  return count;
}

int whole_in(std::string_view field, const char* what, int line) {
  constexpr size_t kMostDigits = 5;
  int plain = 0;  // digits alone, as nearly all are
  const auto [end, failed] = std::from_chars(field.data(), field.data() + field.size(), plain);
  if (failed == std::errc() && end == field.data() + field.size() && field.size() <= kMostDigits) return plain;
  const double value = number_in(field, what, line);
  if (value == std::floor(value) && std::abs(value) <= 99999) return static_cast<int>(value);
  refuse_line(line, std::string(what) + " is " + quoted(stripped(field)) + ", which is not a whole number");
}

}  // namespace tarn
