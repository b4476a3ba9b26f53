// Parts that an object owns under a number, from 1, as a public member: `loop.Pumps(3)`.
#pragma once

#include <array>

#include "base/wire.h"

namespace tarn {

template <typename P, int N>
class Numbered {
 public:
  using Part = P;
  static constexpr int count = N;
  static constexpr std::array<Bounds, 1> bounds{Bounds(N)};

  /// Error `SubscriptOutOfRange`.
  P& operator()(int number) {
    if (number < 1 || number > N) subscript_out_of_range(number, N);
    return parts_[static_cast<size_t>(number) - 1];
  }
  const P& operator()(int number) const { return const_cast<Numbered&>(*this)(number); }

 private:
  std::array<P, N> parts_;
};

}  // namespace tarn
