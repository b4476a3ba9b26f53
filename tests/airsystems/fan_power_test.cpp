#include "airsystems/fan_power.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/temp_project.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

constexpr int kNone = 0, k2001 = 1, k2004 = 2, k2007 = 3, k2010 = 4, k2013 = 5, kAny = 999;

Ptr<AS_FanPowerAdjustments> adjustments(int standard) {
  auto all = std::make_shared<AS_FanPowerAdjustments>();
  all->Setup(PRF_EnergyStandards{static_cast<int16_t>(standard)});
  return all;
}

TEST(FanPower, ItemsAreInTheirOrderWithTheirTexts) {
  const std::pair<int, const char*> rows[]{
      {1, "Fully ducted and/or exhaust air systems"},
      {2, "Return and/or exhaust airflow control devices"},
      {3, "Exhaust filters, scrubbers, or other exhaust treatment"},
      {4, "Particulate Filtration Credit: MERV 9 through 12"},
      {5, "Particulate Filtration Credit: MERV 13 through 15"},
      {6, "Particulate Filtration Credit: MERV 16 and greater, and electronically enhanced filters"},
      {7, "Carbon and other gas-phase air cleaners"},
      {9, "Evaporative humidifier/cooler in series with another cooling coil"},
      {14, "Biosafety cabinet"},
      {8, "Heat recovery device"},
      {12, "Energy Recovery Device, other than Coil Runaround Loop"},
      {13, "Coil runaround loop"},
      {10, "Sound attenuation section"},
      {19, "Exhaust system serving fume hoods"},
      {15, "Laboratory and vivarium exhaust systems in high-rise buildings"},
      {11, "Fume hood exhaust exception"},
      {16, "Systems without central cooling device"},
      {17, "Systems without central heating device"},
      {18, "Systems with central electric resistance heat"}};
  const std::string quiet =
      "Sound attenuation section (fans serving spaces with design background noise goals below NC35)";
  for (const int standard : {kNone, k2001, k2004, k2007, k2010, k2013, kAny}) {
    const auto all = adjustments(standard);
    ASSERT_EQ(all->Count(), 19) << standard;
    const auto list = all->NewEnum();
    int32_t n = 0;
    for (const auto& [factor, text] : rows) {
      const ObjectPtr walked = std::get<ObjectPtr>(list->Item(++n));
      const auto found = all->Item(AS_AFactors{static_cast<int16_t>(factor)});
      EXPECT_EQ(walked, found) << factor;
      EXPECT_EQ(static_cast<int>(found->ID), factor);
      EXPECT_EQ(found->Description, factor == 10 && standard >= k2013 ? quiet : text) << standard;
      EXPECT_EQ(found->IsCredit, factor != 11 && (factor < 16 || factor > 18)) << factor;
    }
  }
}

/// "factor:value", with "?" for one that the user may edit and "!" for one that the system decides.
std::string applying(int standard) {
  std::string text;
  const auto all = adjustments(standard);
  for (const auto& one : *all) {
    const std::string name = std::to_string(static_cast<int>(one->ID));
    if (one->AppliesToCurrentEnergyStd) {
      text += name + ":" + std::to_string(static_cast<int>(std::lround(one->DefaultValue * 100))) +
              (one->Editable ? "?" : "") + (one->AutomaticallySelected ? "!" : "") + " ";
    } else {
      EXPECT_TRUE(one->DefaultValue == 0 && !one->Editable && !one->AutomaticallySelected) << standard << " " << name;
    }
  }
  return text;
}

// Under 2007 the first item has one value only: no "?".
TEST(FanPower, EachStandardHasItsOwnItems) {
  const std::pair<int, const char*> cases[]{
      {kNone, ""},
      {k2001, ""},
      {k2004, ""},
      {7, ""},
      {k2007, "1:50 2:50 3:0? 4:50 5:90 6:0? 7:0? 9:0? 8:0? 10:15 11:-100 "},
      {k2010, "1:50? 2:50 3:0? 4:50 5:90 6:0? 7:0? 9:0? 14:0? 12:60? 13:60 10:15 19:35 15:0? "},
      {k2013, "1:50? 2:50 3:0? 4:50 5:90 6:0? 7:0? 9:0? 14:0? 12:60? 13:60 10:15 19:35 15:0? 16:-60! 17:-30! 18:-20! "},
      {kAny,
       "1:50? 2:50 3:0? 4:50 5:90 6:0? 7:0? 9:0? 14:0? 8:0? 12:60? 13:60 10:15 19:35 15:0? 11:-100 16:-60! 17:-30! "
       "18:-20! "}};
  for (const auto& [standard, text] : cases) EXPECT_EQ(applying(standard), text) << standard;
}

TEST(FanPower, LimitsFollowTheSide) {
  const auto all = adjustments(kAny);
  for (const auto& one : *all) {
    EXPECT_NE(one->IsCredit, one->IsDeduction());
    EXPECT_EQ(one->MinLimit(), one->IsCredit ? 0 : -20) << one->Description;
    EXPECT_EQ(one->MaxLimit(), one->IsCredit ? 20 : 0) << one->Description;
    EXPECT_TRUE(one->MinLimit() <= one->DefaultValue && one->DefaultValue <= one->MaxLimit()) << one->Description;
  }
  const auto turned = all->Item(AS_AFactors{16});
  let_property(*turned, "IsCredit", true);
  EXPECT_EQ(std::get<float>(get_property(*turned, "MaxLimit")), 20.0F);
  for (const char* name : {"IsDeduction", "MinLimit", "MaxLimit"}) EXPECT_TRUE(turned->info().find(name).read_only);
}

TEST(FanPower, SetupStartsOver) {
  auto all = adjustments(k2013);
  const auto kept = all->Item(AS_AFactors{16});
  all->Item(AS_AFactors{2})->DefaultValue = 7;
  all->Setup(PRF_EnergyStandards{k2007});
  EXPECT_EQ(all->Count(), 19);
  EXPECT_EQ(all->Item(AS_AFactors{2})->DefaultValue, 0.5F);
  EXPECT_FALSE(all->Item(AS_AFactors{16})->AppliesToCurrentEnergyStd);
  EXPECT_TRUE(kept->AppliesToCurrentEnergyStd);  // a client's item stays as it was
}

TEST(FanPower, UnknownFactorsFail) {
  const auto all = adjustments(k2013);
  for (const int factor : {-1, 0, 20, 999})
    EXPECT_EQ(test::error_number([&] { all->Item(AS_AFactors{static_cast<int16_t>(factor)}); }), 9) << factor;
  EXPECT_EQ(test::error_number([] { AS_FanPowerAdjustments().Item(AS_AFactors{1}); }), 9);
  EXPECT_EQ(AS_FanPowerAdjustments().Count(), 0);
  try {
    std::vector<Value> arguments{int16_t{20}};
    Value result;
    call_method(*all, all->info().find("Item"), arguments, result);
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.description(),
              "Subscript out of range: no fan power adjustment has the factor 20; factors are 1 to 19.");
  }
}

}  // namespace
}  // namespace tarn
