// Texts are UTF-8 in memory and one byte a character (code page 1252) in the files.
// The five bytes that the page leaves undefined map to the control characters of the same value, so every byte survives
// a round trip.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tarn {

/// One-byte text as UTF-8.
std::string utf8_from_page(std::string_view bytes);

/// UTF-8 text as one byte a character. Error `TypeMismatch` names a character that the page lacks or a malformed
/// sequence.
std::string page_from_utf8(std::string_view text);

/// A text of a file that does not tell its encoding: UTF-8 where it is valid, else the code page's bytes.
struct ForeignText {
  std::string text;           // UTF-8; characters that the page lacks are "?"
  bool by_page = false;       // it is no UTF-8
  bool has_replaced = false;  // it has characters that the page lacks
};
ForeignText foreign_text(std::string_view bytes);

/// Without the blanks at both ends.
std::string_view trimmed(std::string_view text);
/// Without the blanks at its end.
std::string_view without_padding(std::string_view text);

}  // namespace tarn
