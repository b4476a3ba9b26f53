// Messages that are put together.
#pragma once

#include <string>
#include <string_view>

namespace tarn {

/// With a full stop, where the text ends without one: another sentence follows it.
inline std::string sentence(std::string text) {
  if (!text.empty() && std::string_view(".?!").find(text.back()) == std::string_view::npos) text += '.';
  return text;
}

}  // namespace tarn
