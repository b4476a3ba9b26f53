#include "gbxml/source_text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>

#include "tarn/base/codepage.h"
#include "tarn/base/error.h"

namespace tarn {
namespace {

[[noreturn]] void refuse(size_t line, const std::string& why) {
  fail(ErrorNumber::UnknownFormat, "line " + std::to_string(line) + ": " + why);
}

void append_utf8(std::string& out, char32_t c) {
  const auto byte = [&](char32_t bits) { out += static_cast<char>(bits); };
  if (c < 0x80) return byte(c);
  if (c < 0x800) {
    byte(0xC0 | c >> 6);
  } else {
    if (c < 0x10000) {
      byte(0xE0 | c >> 12);
    } else {
      byte(0xF0 | c >> 18);
      byte(0x80 | (c >> 12 & 0x3F));
    }
    byte(0x80 | (c >> 6 & 0x3F));
  }
  byte(0x80 | (c & 0x3F));
}

std::string from_utf16(std::string_view bytes, bool big_endian) {
  std::string out;
  out.reserve(bytes.size() / 2);
  const auto unit = [&](size_t at) {
    const auto first = static_cast<unsigned char>(bytes[at]), second = static_cast<unsigned char>(bytes[at + 1]);
    return static_cast<char32_t>(big_endian ? first << 8 | second : second << 8 | first);
  };
  for (size_t at = 0; at + 1 < bytes.size(); at += 2) {
    char32_t c = unit(at);
    if (c >= 0xD800 && c < 0xE000) {
      const bool pair = c < 0xDC00 && at + 3 < bytes.size() && unit(at + 2) >= 0xDC00 && unit(at + 2) < 0xE000;
      if (!pair) refuse(line_at(out, out.size()), "the text is malformed UTF-16");
      c = 0x10000 + ((c - 0xD800) << 10) + (unit(at + 2) - 0xDC00);
      at += 2;
    }
    append_utf8(out, c);
  }
  return out;
}

/// The end of characters below 128, eight at a time.
size_t end_of_ascii(std::string_view text, size_t at) {
  constexpr uint64_t kHighBits = 0x8080808080808080;
  for (uint64_t eight = 0; at + sizeof eight <= text.size(); at += sizeof eight) {
    std::memcpy(&eight, text.data() + at, sizeof eight);
    if ((eight & kHighBits) != 0) break;
  }
  while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) ++at;
  return at;
}

/// Neither longer than it need be, nor half of a pair of UTF-16, nor past U+10FFFF, by the byte after the first.
bool may_follow(unsigned char lead, unsigned char second) {
  if (lead == 0xE0) return second >= 0xA0;
  if (lead == 0xED) return second < 0xA0;
  if (lead == 0xF0) return second >= 0x90;
  return lead != 0xF4 || second < 0x90;
}

/// The place of the first malformed sequence, npos for none.
size_t malformed_utf8(std::string_view text) {
  for (size_t at = 0; at < text.size();) {
    if (const size_t end = end_of_ascii(text, at); end > at) {
      at = end;
      continue;
    }
    const auto lead = static_cast<unsigned char>(text[at]);
    const size_t length = lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
    if (length == 0 || at + length > text.size()) return at;
    if (length > 2 && !may_follow(lead, static_cast<unsigned char>(text[at + 1]))) return at;
    for (size_t i = 1; i < length; ++i) {
      if ((static_cast<unsigned char>(text[at + i]) & 0xC0) != 0x80) return at;
    }
    at += length;
  }
  return std::string_view::npos;
}

/// The encoding that the declaration names, in small letters; empty for none.
std::string declared_encoding(std::string_view text) {
  if (!text.starts_with("<?xml")) return {};
  const std::string_view declaration = text.substr(0, text.find("?>"));
  const size_t name = declaration.find("encoding");
  if (name == std::string_view::npos) return {};
  const size_t open = declaration.find_first_of("\"'", name);
  if (open == std::string_view::npos) return {};
  const size_t close = declaration.find(declaration[open], open + 1);
  std::string encoding(declaration.substr(open + 1, close - open - 1));
  std::ranges::transform(encoding, encoding.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; });
  return encoding;
}

std::string from_one_byte(std::string bytes) {
  const std::string encoding = declared_encoding(bytes);
  if (encoding == "iso-8859-1" || encoding == "latin1" || encoding == "windows-1252" || encoding == "cp1252")
    return utf8_from_page(bytes);
  if (!encoding.empty() && encoding != "utf-8" && encoding != "utf8" && encoding != "us-ascii")
    refuse(1, "the file is encoded as " + encoding + "; save it as UTF-8");
  const size_t wrong = malformed_utf8(bytes);
  if (wrong != std::string_view::npos)
    refuse(line_at(bytes, wrong), "the text is malformed UTF-8; save the file as UTF-8");
  return bytes;
}

/// The place of the first reference such as "&#xD800;" to what is no character (XML 1.0, production 2), npos for none.
size_t wrong_reference(std::string_view text) {
  const char* const end = text.data() + text.size();
  for (size_t at = text.find("&#"); at != std::string_view::npos; at = text.find("&#", at + 2)) {
    const bool is_hexadecimal = text.substr(at + 2).starts_with('x');
    uint32_t c = 0;
    const auto error =
        std::from_chars(text.data() + at + (is_hexadecimal ? 3 : 2), end, c, is_hexadecimal ? 16 : 10).ec;
    if (error == std::errc::invalid_argument) continue;  // the parser leaves it as it is
    const bool is_character = c == '\t' || c == '\n' || c == '\r' || (c >= ' ' && c < 0xD800) ||
                              (c >= 0xE000 && c < 0xFFFE) || (c >= 0x10000 && c < 0x110000);
    if (error != std::errc{} || !is_character) return at;
  }
  return std::string_view::npos;
}

/// The place of a document type declaration, which stands before the root element; npos for none.
size_t document_type(std::string_view text) {
  for (size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at + 1)) {
    const std::string_view rest = text.substr(at + 1);
    if (rest.starts_with("!DOCTYPE")) return at;
    if (!rest.starts_with('!') && !rest.starts_with('?')) break;
  }
  return std::string_view::npos;
}

}  // namespace

size_t line_at(std::string_view text, size_t offset) {
  const auto end = text.begin() + static_cast<ptrdiff_t>(std::min(offset, text.size()));
  return 1 + static_cast<size_t>(std::count(text.begin(), end, '\n'));
}

std::string xml_text(std::string bytes) {
  using namespace std::string_view_literals;
  const std::string_view all = bytes;
  std::string text;
  if (all.starts_with("\xFF\xFE"sv) || all.starts_with("<\0"sv)) {
    text = from_utf16(all.substr(all.front() == '<' ? 0 : 2), false);
  } else if (all.starts_with("\xFE\xFF"sv) || all.starts_with("\0<"sv)) {
    text = from_utf16(all.substr(all.front() == '\0' ? 0 : 2), true);
  } else {
    if (all.starts_with("\xEF\xBB\xBF"sv)) bytes.erase(0, 3);
    text = from_one_byte(std::move(bytes));
  }
  const size_t type = document_type(text);
  if (type != std::string::npos)
    refuse(line_at(text, type),
           "the file has a document type declaration (<!DOCTYPE>), which gbXML does not use and which is not read, as "
           "its entities can expand without end; delete it");
  const size_t reference = wrong_reference(text);
  if (reference != std::string::npos)
    refuse(line_at(text, reference), "\"" + text.substr(reference, text.find_first_of(";\"< ", reference) - reference) +
                                         "\" refers to no character; delete it");
  return text;
}

}  // namespace tarn
