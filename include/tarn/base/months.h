// Months as records and members count them. 0 stands for the heating design hour.
#pragma once

#include "tarn/base/labels.h"

namespace tarn {

enum class Months : int16_t {
  DesHtg,
  January,
  February,
  March,
  April,
  May,
  June,
  July,
  August,
  September,
  October,
  November,
  December
};
template <>
inline constexpr auto code_table<Months> = codes_between<Months::DesHtg, Months::December>;

}  // namespace tarn
