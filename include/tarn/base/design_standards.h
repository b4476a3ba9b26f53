// Standards that a project is designed under, as its preferences name them.
#pragma once

#include "tarn/base/labels.h"

namespace tarn {

enum class PRF_VentilationStandards : int16_t {
  USER_DEFINED = 0,
  ASHRAE_Std_62_2001 = 1,
  ASHRAE_Std_62_1_2004 = 2,
  ASHRAE_Std_62_1_2007 = 3,
  ASHRAE_Std_62_1_2010 = 4,
  ASHRAE_Std_62_1_2013 = 5,
  ASHRAE_Std_62_1_2016 = 6
};
template <>
inline constexpr CodeText<PRF_VentilationStandards> code_table<PRF_VentilationStandards>[] = {
    {PRF_VentilationStandards::USER_DEFINED, "User-Defined"},
    {PRF_VentilationStandards::ASHRAE_Std_62_2001, "ASHRAE Std 62-2001", "ASHRAE_Std_62-2001"},
    {PRF_VentilationStandards::ASHRAE_Std_62_1_2004, "ASHRAE Std 62.1-2004"},
    {PRF_VentilationStandards::ASHRAE_Std_62_1_2007, "ASHRAE Std 62.1-2007"},
    {PRF_VentilationStandards::ASHRAE_Std_62_1_2010, "ASHRAE Std 62.1-2010"},
    {PRF_VentilationStandards::ASHRAE_Std_62_1_2013, "ASHRAE Std 62.1-2013"},
    {PRF_VentilationStandards::ASHRAE_Std_62_1_2016, "ASHRAE Std 62.1-2016"},
};

// The texts of 2001 and of any standard are empty, and the last name is spelled as every client knows it.
enum class PRF_EnergyStandards : int16_t {
  Not_Defined = 0,
  ASHRAE_STD_90_1_2001 = 1,
  ASHRAE_Std_90_1_2004 = 2,
  ASHRAE_Std_90_1_2007 = 3,
  ASHRAE_Std_90_1_2010 = 4,
  ASHRAE_STD_90_1_2013 = 5,
  AHSRA3_STD_90_1_ANY = 999
};
template <>
inline constexpr CodeText<PRF_EnergyStandards> code_table<PRF_EnergyStandards>[] = {
    {PRF_EnergyStandards::Not_Defined, "Not Defined"},
    {PRF_EnergyStandards::ASHRAE_STD_90_1_2001},
    {PRF_EnergyStandards::ASHRAE_Std_90_1_2004, "ASHRAE Std 90.1-2004"},
    {PRF_EnergyStandards::ASHRAE_Std_90_1_2007, "ASHRAE Std 90.1-2007"},
    {PRF_EnergyStandards::ASHRAE_Std_90_1_2010, "ASHRAE Std 90.1-2010"},
    {PRF_EnergyStandards::ASHRAE_STD_90_1_2013, "ASHRAE Std 90.1-2013"},
    {PRF_EnergyStandards::AHSRA3_STD_90_1_ANY},
};

enum class PRF_LEEDversions : int16_t { NotDefined = 0, LEED_NC_2_2 = 1, LEED_2009 = 2, LEED_v4 = 3 };
template <>
inline constexpr CodeText<PRF_LEEDversions> code_table<PRF_LEEDversions>[] = {
    {PRF_LEEDversions::NotDefined, "Not Applicable", "0. Not Defined"},
    {PRF_LEEDversions::LEED_NC_2_2, "LEED-NC 2.2", "1. LEED-NC 2.2"},
    {PRF_LEEDversions::LEED_2009, "LEED 2009", "2. LEED 2009"},
    {PRF_LEEDversions::LEED_v4, "LEED v4", "3. LEED v4"},
};

}  // namespace tarn
