// Where in a JSON text a value stands, for messages: JSON values themselves do not remember.
#pragma once

#include <string>

namespace tarn {

/// The line, from 1, on which the value of a JSON pointer ("/WIN_Window/3/Height") ends its first token; the last line
/// for a pointer that the text has not.
size_t line_of(const std::string& text, const std::string& pointer);

/// The line of a byte position.
size_t line_at(const std::string& text, size_t byte);

}  // namespace tarn
