#include "older/jet_values.h"

#include <glib.h>  // before mdbtools.h, which would take it as C
#include <mdbtools.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <stdexcept>

#include "tarn/base/codepage.h"

namespace tarn::older {
namespace {

void append_utf8(std::string& to, uint32_t point) {
  const auto byte = [&](uint32_t bits) { to += static_cast<char>(bits); };
  const auto rest = [&](int shift) { byte(0x80 | ((point >> shift) & 0x3F)); };
  if (point < 0x80) return byte(point);
  if (point < 0x800) {
    byte(0xC0 | (point >> 6));
  } else if (point < 0x10000) {
    byte(0xE0 | (point >> 12));
    rest(6);
  } else {
    byte(0xF0 | (point >> 18));
    rest(12);
    rest(6);
  }
  rest(0);
}

/// The units of a text. One that begins with FF FE has one byte for each unit, with the high byte 0, until a byte 0
/// changes to two bytes, and the next one back.
std::u16string units_of(std::string_view bytes) {
  const bool compressed = bytes.starts_with("\xFF\xFE");
  if (compressed) bytes.remove_prefix(2);
  std::u16string units;
  for (bool narrow = compressed; !bytes.empty();) {
    const auto low = static_cast<unsigned char>(bytes[0]);
    if (compressed && low == 0) {
      narrow = !narrow;
      bytes.remove_prefix(1);
    } else if (narrow) {
      units += static_cast<char16_t>(low);
      bytes.remove_prefix(1);
    } else if (bytes.size() < 2) {
      break;
    } else {
      units += static_cast<char16_t>(number_at<uint16_t>(bytes, 0));
      bytes.remove_prefix(2);
    }
  }
  return units;
}

std::string utf8_from_units(const std::u16string& units) {
  constexpr uint32_t kReplacement = 0xFFFD;
  const auto is_high = [](char16_t unit) { return (unit & 0xFC00) == 0xD800; };
  const auto is_low = [](char16_t unit) { return (unit & 0xFC00) == 0xDC00; };
  std::string text;
  for (size_t i = 0; i < units.size(); ++i) {
    if (is_high(units[i]) && i + 1 < units.size() && is_low(units[i + 1])) {
      append_utf8(text, 0x10000 + ((units[i] & 0x3FFU) << 10) + (units[i + 1] & 0x3FFU));
      ++i;
    } else {
      append_utf8(text, is_high(units[i]) || is_low(units[i]) ? kReplacement : units[i]);
    }
  }
  return text;
}

/// Days since 1899-12-30, to the second.
std::string date_text(double days) {
  constexpr double kMost = 3e6;
  if (!(std::abs(days) < kMost)) return {};
  const double whole = std::floor(days);
  const auto seconds = static_cast<int>(std::lround((days - whole) * 86400));
  auto day = static_cast<int64_t>(whole) - 25569 + 719468;  // from 0000-03-01, by 400-year cycles
  const int64_t era = (day >= 0 ? day : day - 146096) / 146097;
  const auto of_era = static_cast<int>(day - era * 146097);
  const int year_of_era = (of_era - of_era / 1460 + of_era / 36524 - of_era / 146096) / 365;
  const int of_year = of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
  const int shifted = (5 * of_year + 2) / 153, month = shifted < 10 ? shifted + 3 : shifted - 9;
  const int64_t year = year_of_era + era * 400 + (month <= 2 ? 1 : 0);
  std::array<char, 96> text{};
  std::snprintf(text.data(), text.size(), "%04lld-%02d-%02dT%02d:%02d:%02d", static_cast<long long>(year), month,
                of_year - (153 * shifted + 2) / 5 + 1, seconds / 3600 % 24, seconds / 60 % 60, seconds % 60);
  return text.data();
}

/// Four words, the highest first, as decimal digits with `scale` of them after the point.
std::string decimal_text(bool negative, std::array<uint32_t, 4> words, int scale) {
  std::string digits;
  while (words != std::array<uint32_t, 4>{} || digits.size() <= static_cast<size_t>(scale)) {
    uint64_t rest = 0;
    for (uint32_t& word : words) {
      const uint64_t whole = (rest << 32) | word;
      word = static_cast<uint32_t>(whole / 10);
      rest = whole % 10;
    }
    digits.insert(digits.begin(), static_cast<char>('0' + rest));
  }
  if (scale > 0) digits.insert(digits.size() - static_cast<size_t>(scale), ".");
  return (negative ? "-" : "") + digits;
}

std::string money_text(int64_t ten_thousandths) {
  const auto size =
      ten_thousandths < 0 ? 0 - static_cast<uint64_t>(ten_thousandths) : static_cast<uint64_t>(ten_thousandths);
  return decimal_text(ten_thousandths < 0, {0, 0, static_cast<uint32_t>(size >> 32), static_cast<uint32_t>(size)}, 4);
}

std::string guid_text(std::string_view bytes) {
  std::array<char, 96> text{};
  const std::string rest = hex_of(bytes.substr(8, 8));
  std::snprintf(text.data(), text.size(), "{%08X-%04X-%04X-%.4s-%.12s}", number_at<uint32_t>(bytes, 0),
                number_at<uint16_t>(bytes, 4), number_at<uint16_t>(bytes, 6), rest.c_str(), rest.c_str() + 4);
  return text.data();
}

}  // namespace

std::string hex_of(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const char byte : bytes) {
    text += kDigits[static_cast<unsigned char>(byte) >> 4];
    text += kDigits[static_cast<unsigned char>(byte) & 15];
  }
  return text;
}

std::string text_of(std::string_view bytes, Texts texts) {
  return texts == Texts::OneByte ? utf8_from_page(bytes) : utf8_from_units(units_of(bytes));
}

std::string_view type_name(int type) {
  switch (type) {
    case MDB_BOOL:
      return "Yes/No";
    case MDB_BYTE:
      return "Byte";
    case MDB_INT:
      return "Integer";
    case MDB_LONGINT:
      return "Long";
    case MDB_MONEY:
      return "Currency";
    case MDB_FLOAT:
      return "Single";
    case MDB_DOUBLE:
      return "Double";
    case MDB_DATETIME:
      return "Date/Time";
    case MDB_TEXT:
      return "Text";
    case MDB_OLE:
      return "OLE";
    case MDB_MEMO:
      return "Memo";
    case MDB_REPID:
      return "GUID";
    case MDB_NUMERIC:
      return "Decimal";
    default:
      return "Binary";
  }
}

nlohmann::json value_of(int type, int scale, std::string_view bytes, Texts texts) {
  switch (type) {
    case MDB_BYTE:
      return number_at<uint8_t>(bytes, 0);
    case MDB_INT:
      return number_at<int16_t>(bytes, 0);
    case MDB_LONGINT:
      return number_at<int32_t>(bytes, 0);
    case MDB_MONEY:
      return money_text(number_at<int64_t>(bytes, 0));
    case MDB_FLOAT:
      return {{"f", number_at<uint32_t>(bytes, 0)}};
    case MDB_DOUBLE:
      return {{"d", number_at<uint64_t>(bytes, 0)}};
    case MDB_DATETIME:
      return date_text(number_at<double>(bytes, 0));
    case MDB_TEXT:
      return text_of(bytes, texts);
    case MDB_REPID:
      number_at<std::array<char, 16>>(bytes, 0);
      return guid_text(bytes);
    case MDB_NUMERIC:
      return decimal_text((number_at<uint8_t>(bytes, 0) & 0x80) != 0, number_at<std::array<uint32_t, 4>>(bytes, 1),
                          scale);
    default:
      return hex_of(bytes);
  }
}

}  // namespace tarn::older
