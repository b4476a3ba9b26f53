#include "base/decimals.h"

#include <gtest/gtest.h>

namespace tarn {
namespace {

TEST(Decimals, WhatRoundsToZeroHasNoSign) {
  const struct {
    double value;
    int decimals;
    const char* text;
  } cases[]{{-0.04, 1, "0.0"}, {-0.06, 1, "-0.1"}, {-0.4, 0, "0"},   {-0.0, 2, "0.00"},
            {0.04, 1, "0.0"},  {-10, 1, "-10.0"},  {-100, 0, "-100"}};
  for (const auto& c : cases) EXPECT_EQ(decimal_text(c.value, c.decimals), c.text) << c.value;
}

}  // namespace
}  // namespace tarn
