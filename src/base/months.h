// Months as records and members count them. 0 stands for the heating design hour.
#pragma once

#include "base/labels.h"

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
inline constexpr Label kMonths[]{{0, "DesHtg", ""},   {1, "January", ""},   {2, "February", ""}, {3, "March", ""},
                                 {4, "April", ""},    {5, "May", ""},       {6, "June", ""},     {7, "July", ""},
                                 {8, "August", ""},   {9, "September", ""}, {10, "October", ""}, {11, "November", ""},
                                 {12, "December", ""}};
template <>
inline constexpr std::span<const Label> labels<Months> = kMonths;

}  // namespace tarn
