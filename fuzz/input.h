// An input as a row of numbers and texts. Past its end there are zeros and empty texts, so that any bytes are an input.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace tarn::fuzz {

class Input {
 public:
  Input(const uint8_t* data, size_t size) : left_(reinterpret_cast<const char*>(data), size) {}

  bool empty() const { return left_.empty(); }
  template <typename N>
  N number() {
    N value{};
    const std::string_view bytes = take(sizeof value);
    if (!bytes.empty()) std::memcpy(&value, bytes.data(), bytes.size());
    return value;
  }
  uint8_t byte() { return number<uint8_t>(); }
  std::string text(size_t length) { return std::string(take(length)); }
  /// Up to the end of the line, which goes with it.
  std::string line() {
    const size_t end = std::min(left_.find('\n'), left_.size());
    std::string text(take(end));
    take(1);
    return text;
  }
  std::string rest() { return std::string(take(left_.size())); }

 private:
  std::string_view take(size_t length) {
    const std::string_view taken = left_.substr(0, length);
    left_.remove_prefix(taken.size());
    return taken;
  }

  std::string_view left_;
};

}  // namespace tarn::fuzz
