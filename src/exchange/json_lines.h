// JSON texts that come from elsewhere, with the lines of what is wrong in them: JSON values themselves do not remember.
#pragma once

#include <string>

#include "reflect/json_text.h"

namespace tarn {

/// The line, from 1, on which the value of a JSON pointer ("/WIN_Window/3/Height") ends its first token; the last line
/// for a pointer that the text has not.
size_t line_of(const std::string& text, const std::string& pointer);

/// The tree of a text that comes from elsewhere. Error `TypeMismatch`, with the line, for a text that is not JSON,
/// nests too deep, has a number too large for a real, too many values, or gives an object the same key twice (letter
/// case ignored).
Json read_json(const std::string& text);

}  // namespace tarn
