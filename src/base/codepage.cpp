#include "tarn/base/codepage.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "tarn/base/error.h"

namespace tarn {
namespace {

// Unicode values of the bytes 0x80 to 0x9F.
// Source: the Unicode Consortium's mapping table of code page 1252 (best fit for the five undefined bytes).
constexpr std::array<char32_t, 32> kHigh{0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                         0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                         0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                         0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

bool ascii(std::string_view text) {
  constexpr uint64_t kHighBits = 0x8080808080808080;
  for (uint64_t eight = 0; text.size() >= sizeof eight; text.remove_prefix(sizeof eight)) {
    std::memcpy(&eight, text.data(), sizeof eight);
    if ((eight & kHighBits) != 0) return false;
  }
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

void append_utf8(std::string& out, char32_t code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | (code >> 12));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
}

/// The character at `at`, which moves past it; overlong forms and surrogates are malformed.
char32_t next_code(std::string_view text, size_t& at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  const int extra = lead < 0x80 ? 0 : lead >> 5 == 6 ? 1 : lead >> 4 == 14 ? 2 : lead >> 3 == 30 ? 3 : -1;
  if (extra < 0 || at + extra >= text.size()) fail(ErrorNumber::TypeMismatch, "Text is not valid UTF-8.");
  char32_t code = extra == 0 ? lead : lead & (0x3F >> extra);
  for (int i = 1; i <= extra; ++i) {
    const auto byte = static_cast<unsigned char>(text[at + i]);
    if (byte >> 6 != 2) fail(ErrorNumber::TypeMismatch, "Text is not valid UTF-8.");
    code = code << 6 | (byte & 0x3F);
  }
  constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
  if (code < kLeast[extra] || (code >= 0xD800 && code < 0xE000))
    fail(ErrorNumber::TypeMismatch, "Text is not valid UTF-8.");
  at += 1 + extra;
  return code;
}

char page_byte(char32_t code, std::string_view character) {
  if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) return static_cast<char>(code);
  const auto* found = std::find(kHigh.begin(), kHigh.end(), code);
  if (found != kHigh.end()) return static_cast<char>(0x80 + (found - kHigh.begin()));
  char number[16];
  std::snprintf(number, sizeof number, "U+%04X", static_cast<unsigned>(code));
  fail(ErrorNumber::TypeMismatch,
       "The character '" + std::string(character) + "' (" + number +
           ") has no place in code page 1252, in which texts are stored; use another character.");
}

}  // namespace

std::string utf8_from_page(std::string_view bytes) {
  if (ascii(bytes)) return std::string(bytes);
  std::string out;
  out.reserve(bytes.size() * 2);
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    append_utf8(out, byte >= 0x80 && byte < 0xA0 ? kHigh[byte - 0x80] : byte);
  }
  return out;
}

std::string page_from_utf8(std::string_view text) {
  if (ascii(text)) return std::string(text);
  std::string out;
  out.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    const size_t start = at;
    const char32_t code = next_code(text, at);
    out += page_byte(code, text.substr(start, at - start));
  }
  return out;
}

ForeignText foreign_text(std::string_view bytes) {
  ForeignText out;
  try {
    for (size_t at = 0; at < bytes.size();) {
      const size_t start = at;
      next_code(bytes, at);
      const std::string_view character = bytes.substr(start, at - start);
      try {
        page_from_utf8(character);
        out.text += character;
      } catch (const Error&) {
        out.text += '?';
        out.has_replaced = true;
      }
    }
    return out;
  } catch (const Error&) {
    return {utf8_from_page(bytes), true, false};
  }
}

std::string_view without_padding(std::string_view text) {
  constexpr std::string_view kBlanks = "                ";  // names have some two hundred
  while (text.ends_with(kBlanks)) text.remove_suffix(kBlanks.size());
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

std::string_view trimmed(std::string_view text) {
  text = without_padding(text);
  while (text.starts_with(' ')) text.remove_prefix(1);
  return text;
}

}  // namespace tarn
