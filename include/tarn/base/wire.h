// Field types that are exactly as long as their bytes in a file and have alignment 1:
// a plain struct of them in file order is the record's layout, little-endian and without padding.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

#include "tarn/base/codepage.h"
#include "tarn/base/error.h"

namespace tarn {

static_assert(std::endian::native == std::endian::little, "record files are little-endian; fields are read in place");

#pragma pack(push, 1)

/// A number in its native form.
template <typename T>
struct Number {
  using Native = T;
  constexpr Number& operator=(T v) {
    value = v;
    return *this;
  }
  constexpr operator T() const { return value; }

  T value{};
};

#pragma pack(pop)

using I2 = Number<int16_t>;
using I4 = Number<int32_t>;
using R4 = Number<float>;
using R8 = Number<double>;

/// A Boolean in 16 bits: 0 is false, anything else true; true is written as -1. A value that nobody sets keeps its
/// bits.
struct Bool {
  using Native = bool;
  constexpr Bool& operator=(bool truth) {
    bits = static_cast<int16_t>(truth ? -1 : 0);
    return *this;
  }
  constexpr operator bool() const { return bits != 0; }

  I2 bits;
};

/// Takes UTF-8, padded with blanks or cut to as many characters as there are; a character outside the code page is
/// refused and the old text stays.
void put_text(std::span<char> chars, std::string_view text);
/// Without the blanks at both ends, as UTF-8; empty for a text that was never written.
std::string trimmed_text(std::string_view chars);

/// Text of N one-byte characters, padded with blanks.
template <size_t N>
struct Text {
  using Native = std::string;
  static constexpr size_t width = N;

  Text& operator=(std::string_view text) {
    put_text(chars, text);
    return *this;
  }
  std::string_view bytes() const { return {chars.data(), N}; }
  /// All N characters, as UTF-8.
  std::string str() const { return utf8_from_page(bytes()); }
  std::string trimmed() const { return trimmed_text(bytes()); }

  std::array<char, N> chars{};
};

/// A 16-bit code of an enumeration. A code outside the enumeration is kept as it is.
template <typename E>
struct Code {
  using Native = E;
  constexpr Code& operator=(E code) {
    raw = static_cast<int16_t>(code);
    return *this;
  }
  constexpr operator E() const { return static_cast<E>(raw.value); }

  I2 raw;
};

/// Error `Overflow` for a value outside the 16-bit steps. Halves go to the even neighbour.
int16_t scaled(double value, int steps_per_unit);

/// A real number in 16 bits, by steps of a fraction of its unit.
template <int StepsPerUnit>
struct Scaled {
  using Native = double;
  static constexpr int steps_per_unit = StepsPerUnit;
  /// To the nearest step; a value that does not fit is refused and the old one stays.
  Scaled& operator=(double value) {
    steps = scaled(value, StepsPerUnit);
    return *this;
  }
  constexpr operator double() const { return static_cast<double>(steps.value) / StepsPerUnit; }

  I2 steps;
};

/// The subscripts that one dimension of an array allows, both ends included.
struct Bounds {
  int first = 1;
  int last = 1;
  constexpr int size() const { return last - first + 1; }
  constexpr Bounds() = default;
  constexpr Bounds(int upper) : last(upper) {}  // a plain number counts from 1
  constexpr Bounds(int lower, int upper) : first(lower), last(upper) {}
};

[[noreturn]] void subscript_out_of_range(int subscript, Bounds bounds);

/// Fields of one type under checked subscripts, the first varying fastest.
template <typename T, Bounds... D>
struct Array {
  using Element = T;
  static constexpr std::array<Bounds, sizeof...(D)> bounds{D...};
  static constexpr size_t size = (size_t{1} * ... * D.size());

  template <typename... S>
  T& operator()(S... subscripts) {
    static_assert(sizeof...(S) == sizeof...(D), "one subscript for each dimension");
    const int list[]{static_cast<int>(subscripts)...};
    return items[place(list)];
  }
  template <typename... S>
  const T& operator()(S... subscripts) const {
    return const_cast<Array&>(*this)(subscripts...);
  }

  /// Position of the element in storage order. Error `SubscriptOutOfRange`.
  static size_t place(const int* subscripts) {
    size_t at = 0;
    size_t stride = 1;
    for (size_t d = 0; d < bounds.size(); ++d) {
      if (subscripts[d] < bounds[d].first || subscripts[d] > bounds[d].last)
        subscript_out_of_range(subscripts[d], bounds[d]);
      at += stride * static_cast<size_t>(subscripts[d] - bounds[d].first);
      stride *= static_cast<size_t>(bounds[d].size());
    }
    return at;
  }

  std::array<T, size> items{};
};

/// The bytes of a record in place.
template <typename R>
std::span<std::byte> record_bytes(R& record) {
  static_assert(alignof(R) == 1, "a record is made of wire types only");
  return {reinterpret_cast<std::byte*>(&record), sizeof record};
}

}  // namespace tarn
