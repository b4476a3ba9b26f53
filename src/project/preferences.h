// The project's preferences and report options: one record each, at the start of a file of its own; no index row.
#pragma once

#include <string>
#include <vector>

#include "base/labels.h"
#include "base/object.h"
#include "base/wire.h"

namespace tarn {

enum class PRF_VentilationStandards : int16_t {};
inline constexpr Label kVentilationStandards[]{{0, "USER_DEFINED", "User-Defined"},
                                               {1, "ASHRAE_Std_62-2001", "ASHRAE Std 62-2001"},
                                               {2, "ASHRAE_Std_62_1_2004", "ASHRAE Std 62.1-2004"},
                                               {3, "ASHRAE_Std_62_1_2007", "ASHRAE Std 62.1-2007"},
                                               {4, "ASHRAE_Std_62_1_2010", "ASHRAE Std 62.1-2010"},
                                               {5, "ASHRAE_Std_62_1_2013", "ASHRAE Std 62.1-2013"},
                                               {6, "ASHRAE_Std_62_1_2016", "ASHRAE Std 62.1-2016"}};
template <>
inline constexpr std::span<const Label> labels<PRF_VentilationStandards> = kVentilationStandards;

// The texts of 2001 and of any standard are empty, and the last name is spelled as every client knows it.
enum class PRF_EnergyStandards : int16_t {};
inline constexpr Label kEnergyStandards[]{{0, "Not_Defined", "Not Defined"},
                                          {1, "ASHRAE_STD_90_1_2001", ""},
                                          {2, "ASHRAE_Std_90_1_2004", "ASHRAE Std 90.1-2004"},
                                          {3, "ASHRAE_Std_90_1_2007", "ASHRAE Std 90.1-2007"},
                                          {4, "ASHRAE_Std_90_1_2010", "ASHRAE Std 90.1-2010"},
                                          {5, "ASHRAE_STD_90_1_2013", "ASHRAE Std 90.1-2013"},
                                          {999, "AHSRA3_STD_90_1_ANY", ""}};
template <>
inline constexpr std::span<const Label> labels<PRF_EnergyStandards> = kEnergyStandards;

enum class PRF_LEEDversions : int16_t {};
inline constexpr Label kLeedVersions[]{{0, "0. Not Defined", "Not Applicable"},
                                       {1, "1. LEED-NC 2.2", "LEED-NC 2.2"},
                                       {2, "2. LEED 2009", "LEED 2009"},
                                       {3, "3. LEED v4", "LEED v4"}};
template <>
inline constexpr std::span<const Label> labels<PRF_LEEDversions> = kLeedVersions;

/// The record of the preferences file.
struct PreferencesRecord {
  Code<PRF_VentilationStandards> VentStandardCode;
  Code<PRF_EnergyStandards> EnergyStandardCode;
  Code<PRF_LEEDversions> LeedVersionCode;
  Text<5> CurrencyUnits;
};
static_assert(sizeof(PreferencesRecord) == 11);

class PRF_ProjectPrefs final : public Object, public PreferencesRecord {
 public:
  using Record = PreferencesRecord;
  PRF_ProjectPrefs() { CurrencyUnits = "$"; }
  const ClassInfo& info() const override;

  std::string FileName;
  /// The display text of a code, empty for a code without one.
  std::string LeedVersionText(PRF_LEEDversions LeedVersionCode) const;
  std::string VentilationStandardText(PRF_VentilationStandards VentStdCode) const;
  std::string EnergyStandardText(PRF_EnergyStandards EnergyStdCode) const;
  /// Codes outside their tables become 0, and are logged.
  void Load();
  /// As `Load`, but the codes stay as they are stored.
  void Read();
  void Save() const;
};

/// The choices of the reports: bytes that this layer stores without interpreting them.
class RPT_ReportOptions final : public Object {
 public:
  const ClassInfo& info() const override;

  std::string FileName;
  std::vector<std::byte> bytes;
  void Load();
  void Save() const;
};

}  // namespace tarn
