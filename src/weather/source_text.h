// Texts of other programs, line by line and field by field. What cannot be read is refused with its line.
#pragma once

#include <charconv>
#include <cmath>
#include <limits>
#include <span>
#include <string>
#include <string_view>

#include "tarn/base/error.h"

namespace tarn {

inline constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

[[noreturn]] void refuse_line(int line, const std::string& reason);

/// The lines of a text, without their ends (LF or CR LF).
class Lines {
 public:
  explicit Lines(std::string_view text) : rest_(text) {}
  /// False after the last line.
  bool next() {
    if (rest_.empty()) return false;
    const size_t end = std::min(rest_.find('\n'), rest_.size());
    line_ = rest_.substr(0, end);
    while (line_.ends_with('\r')) line_.remove_suffix(1);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    ++number_;
    return true;
  }
  std::string_view line() const { return line_; }
  int number() const { return number_; }  // from 1

 private:
  std::string_view rest_, line_;
  int number_ = 0;
};

/// Without blanks and tabulators at both ends.
constexpr std::string_view stripped(std::string_view text) {
  const auto is_blank = [](char c) { return c == ' ' || c == '\t'; };
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

/// The fields between commas; one in quotation marks may hold commas. Returns how many there are, of which the first
/// ones are in `fields`; counting ends when those are full.
size_t split(std::string_view line, std::span<std::string_view> fields);

/// A piece of the text as a message shows it: UTF-8, no control characters, not long.
std::string quoted(std::string_view text);

/// Digits with one point among them or none, as nearly all numbers of hourly files are: a whole number below 2^53 over
/// a power of ten below 10^23, so that their quotient is the nearest there is. False for anything else.
inline bool read_plain(std::string_view field, double& value) {
  constexpr size_t kMostDigits = 15;
  constexpr double kPowers[]{1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  if (field.empty() || field.size() > kMostDigits) return false;
  int64_t digits = 0;
  size_t point = field.size() - 1;
  for (size_t i = 0; i < field.size(); ++i) {
    const char c = field[i];
    if (c >= '0' && c <= '9')
      digits = digits * 10 + (c - '0');
    else if (c == '.' && point == field.size() - 1 && i > 0)
      point = i;
    else
      return false;
  }
  value = static_cast<double>(digits) / kPowers[field.size() - 1 - point];
  return true;
}

/// A field as a number, `kNoValue` for an empty one. `what` names the field in the refusal of a text that is not a
/// number.
inline double number_in(std::string_view field, const char* what, int line) {
  field = stripped(field);
  if (field.size() > 1 && field.front() == '+' && field[1] != '-') field.remove_prefix(1);
  if (field.empty()) return kNoValue;
  double value = 0;
  if (read_plain(field, value)) return value;
  const auto [end, failed] = std::from_chars(field.data(), field.data() + field.size(), value);
  if (failed == std::errc() && end == field.data() + field.size() && std::isfinite(value)) return value;
  refuse_line(line, std::string(what) + " is " + quoted(field) + ", which is not a number");
}

/// As `number_in`, without values that stand for a missing one: nines alone from `missing` on ("99.9", "9999"), nines
/// and zeros below -990 ("-9900").
inline double reading_in(std::string_view field, const char* what, int line, double missing) {
  const double value = number_in(field, what, line);
  if (value < missing && value > -990) return value;
  const bool is_code = stripped(field).find_first_not_of(value > 0 ? "9." : "-90.") == std::string_view::npos;
  return is_code ? kNoValue : value;
}

/// A whole number that must be there.
int whole_in(std::string_view field, const char* what, int line);

}  // namespace tarn
