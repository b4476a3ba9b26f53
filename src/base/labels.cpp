#include "tarn/base/labels.h"

#include <algorithm>

namespace tarn {

std::string_view text_of(std::span<const Label> table, int32_t code) {
  const auto found =
      std::find_if(table.begin(), table.end(), [code](const Label& label) { return label.code == code; });
  return found == table.end() ? std::string_view{} : found->text;
}

}  // namespace tarn
