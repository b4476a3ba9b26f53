#include "base/wire.h"

namespace tarn {

void subscript_out_of_range(int subscript, Bounds bounds) {
  fail(ErrorNumber::SubscriptOutOfRange, "Subscript out of range: " + std::to_string(subscript) + ", allowed are " +
                                             std::to_string(bounds.first) + " to " + std::to_string(bounds.last) + ".");
}

}  // namespace tarn
