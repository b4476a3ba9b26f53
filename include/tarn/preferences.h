// The project's preferences and report options: one record each, at the start of a file of its own; no index row.
#pragma once

#include <string>
#include <vector>

#include "tarn/base/design_standards.h"
#include "tarn/base/object.h"
#include "tarn/base/wire.h"

namespace tarn {

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
