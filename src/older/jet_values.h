// Values of a Jet database from their bytes.
#pragma once

#include <cstdint>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace tarn::older {

enum class Texts : uint8_t { OneByte, Utf16 };

/// Little-endian. Error `std::runtime_error` for bytes that are not there.
template <typename T>
T number_at(std::string_view bytes, size_t at) {
  if (bytes.size() < at + sizeof(T)) throw std::runtime_error("a field is shorter than its type");
  T number;
  std::memcpy(&number, bytes.data() + at, sizeof number);
  return number;
}

std::string hex_of(std::string_view bytes);
/// UTF-8. Half a pair of UTF-16 units becomes U+FFFD.
std::string text_of(std::string_view bytes, Texts texts);
std::string_view type_name(int type);
/// By a type of libmdb that has its bytes in the row. A Single or Double is {"f": bits} or {"d": bits}, as JSON has
/// neither infinities nor NaN; a type that no table of a project has is a text.
nlohmann::json value_of(int type, int scale, std::string_view bytes, Texts texts);

}  // namespace tarn::older
