// Subjects that the help explains in a few lines: `tarn help TOPIC`.
#pragma once

#include <span>
#include <string_view>

namespace tarn::cli {

struct Topic {
  std::string_view name, title;
  std::string_view text;
};
std::span<const Topic> topics();

}  // namespace tarn::cli
