#include "storage/file_names.h"

namespace tarn {

std::string object_file_name(const std::string& prefix, int index) {
  if (prefix.empty()) return {};
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const unsigned number = index & 0xFFFF;
  std::string name = prefix;
  for (int shift = 12; shift >= 0; shift -= 4) {
    if (shift <= 4 || number >> shift != 0) name += kDigits[number >> shift & 0xF];
  }
  return name += ".DAT";
}

}  // namespace tarn
