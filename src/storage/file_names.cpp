#include "storage/file_names.h"

#include <cstdio>

namespace tarn {

std::string object_file_name(const std::string& prefix, int index) {
  if (prefix.empty()) return {};
  char number[16];
  std::snprintf(number, sizeof number, "%02X", index & 0xFFFF);
  return prefix + number + ".DAT";
}

}  // namespace tarn
