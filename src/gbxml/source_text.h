// The bytes of an XML file as UTF-8 text that is safe to parse.
#pragma once

#include <string>
#include <string_view>

namespace tarn {

/// UTF-8 without its mark, from UTF-8, UTF-16 (with or without a mark) and the one-byte encodings that a declaration
/// names (ISO-8859-1, windows-1252). Errors `UnknownFormat` for other encodings, for malformed text, and for a document
/// type declaration, whose entities could expand without end or read other files.
std::string xml_text(std::string bytes);

/// From 1.
size_t line_at(std::string_view text, size_t offset);

}  // namespace tarn
