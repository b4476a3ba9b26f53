// Numbers as people read them.
#pragma once

#include <cstdio>
#include <string>

namespace tarn {

/// With so many decimals. What rounds to zero has no sign: "0.0", never "-0.0".
inline std::string decimal_text(double value, int decimals) {
  char text[400];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  std::string out(text);
  if (out.starts_with('-') && out.find_first_not_of("-0.") == std::string::npos) out.erase(0, 1);
  return out;
}

}  // namespace tarn
