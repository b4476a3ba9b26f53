#include "extension/names.h"

namespace tarn::python {
namespace {

bool is_upper(char c) { return c >= 'A' && c <= 'Z'; }
bool is_lower(char c) { return c >= 'a' && c <= 'z'; }

}  // namespace

std::string folded(std::string_view name) {
  std::string out;
  for (const char c : name) {
    if (c != '_') out += static_cast<char>(is_upper(c) ? c - 'A' + 'a' : c);
  }
  return out;
}

std::string snake_case(std::string_view name) {
  std::string out;
  for (size_t i = 0; i < name.size(); ++i) {
    const bool after_word = i > 0 && name[i - 1] != '_' && !is_upper(name[i - 1]);
    const bool ends_capitals = i > 0 && is_upper(name[i - 1]) && i + 1 < name.size() && is_lower(name[i + 1]);
    if (is_upper(name[i]) && (after_word || ends_capitals)) out += '_';
    out += is_upper(name[i]) ? static_cast<char>(name[i] - 'A' + 'a') : name[i];
  }
  return out;
}

}  // namespace tarn::python
