#include "storage/file_names.h"

namespace tarn {

std::string object_file_name(const std::string& prefix, int index) {
  if (prefix.empty()) return {};
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string digits;
  for (unsigned rest = index & 0xFFFF; rest != 0 || digits.size() < 2; rest /= 16)
    digits.insert(0, 1, kDigits[rest % 16]);
  return prefix + digits + ".DAT";
}

}  // namespace tarn
