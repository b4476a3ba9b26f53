#include "tarn/base/error.h"

namespace tarn {

std::string shortened(const std::string& text) {
  constexpr size_t kLongest = 2000, kHead = 1200, kTail = 600;  // bytes
  if (text.size() <= kLongest) return text;
  const auto in_character = [&](size_t at) { return (text[at] & 0xC0) == 0x80; };
  size_t head = kHead, tail = text.size() - kTail;
  while (in_character(head)) --head;
  while (in_character(tail)) ++tail;
  return text.substr(0, head) + " ... [" + std::to_string(tail - head) + " bytes left out] ... " + text.substr(tail);
}

void fail(ErrorNumber number, const std::string& description) { throw Error(number, description); }

}  // namespace tarn
