// A part of an entity: an object with its piece of the entity's record or file.
#pragma once

#include <array>

#include "tarn/base/object.h"
#include "tarn/base/wire.h"

namespace tarn {

/// With its piece of the record: `R`.
template <typename R>
class Part : public Object, public R {
 public:
  using Record = R;
  std::span<std::byte> bytes() { return record_bytes(static_cast<R&>(*this)); }
  std::span<std::byte> part_record() final { return bytes(); }
};

/// Parts that an object owns under a number, from 1, as a public member: `loop.Pumps(3)`.
template <typename P, int N>
class Parts {
 public:
  using Part = P;
  static constexpr int count = N;
  static constexpr std::array<Bounds, 1> bounds{Bounds(N)};

  /// Error `SubscriptOutOfRange`.
  P& operator()(int number) {
    if (number < 1 || number > N) subscript_out_of_range(number, N);
    return parts_[static_cast<size_t>(number) - 1];
  }
  const P& operator()(int number) const { return const_cast<Parts&>(*this)(number); }

 private:
  std::array<P, N> parts_;
};

}  // namespace tarn
