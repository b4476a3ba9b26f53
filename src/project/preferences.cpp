#include "tarn/preferences.h"

#include <algorithm>

#include "platform/file_store.h"
#include "tarn/base/log.h"
#include "tarn/platform/workspace.h"
#include "tarn/reflect/describe.h"

namespace tarn {
namespace {

const std::string& named(const std::string& file) {
  if (file.empty()) fail(ErrorNumber::FileNotFound, "There is no file to read or write; set FileName.");
  return file;
}

void write_start(const std::string& file, std::span<const std::byte> bytes) {
  Transaction transaction;
  files().write(named(file), 0, bytes, nullptr);
  transaction.commit();
}

template <typename E>
void correct(Code<E>& code, std::string_view name, const std::string& file) {
  const int16_t raw = code.raw;
  const auto table = labels<E>;
  if (std::any_of(table.begin(), table.end(), [raw](const Label& label) { return label.code == raw; })) return;
  log().message(file + " holds " + std::string(name) + " " + std::to_string(raw) +
                ", which is not a known code; 0 is used instead.");
  code = E{0};
}

}  // namespace

const ClassInfo& PRF_ProjectPrefs::info() const {
  using R = PreferencesRecord;
  using C = PRF_ProjectPrefs;
  static constexpr auto members =
      describe<C>(Failures::Trapped, property<&C::FileName>, property<&R::VentStandardCode>,
                  property<&R::EnergyStandardCode>, property<&R::LeedVersionCode>, property<&R::CurrencyUnits>,
                  method<&C::LeedVersionText>("LeedVersionCode"), method<&C::VentilationStandardText>("VentStdCode"),
                  method<&C::EnergyStandardText>("EnergyStdCode"), method<&C::Load>, method<&C::Save>);
  static const ClassInfo info(members);
  return info;
}

std::string PRF_ProjectPrefs::LeedVersionText(PRF_LEEDversions code) const {
  return std::string(text_of(labels<PRF_LEEDversions>, static_cast<int16_t>(code)));
}
std::string PRF_ProjectPrefs::VentilationStandardText(PRF_VentilationStandards code) const {
  return std::string(text_of(labels<PRF_VentilationStandards>, static_cast<int16_t>(code)));
}
std::string PRF_ProjectPrefs::EnergyStandardText(PRF_EnergyStandards code) const {
  return std::string(text_of(labels<PRF_EnergyStandards>, static_cast<int16_t>(code)));
}

void PRF_ProjectPrefs::Read() {
  PreferencesRecord read;
  const size_t got = files().read(named(FileName), 0, std::as_writable_bytes(std::span(&read, 1)));
  if (got == 0) return log().message(FileName + " holds no preferences; they stay as they are.");
  if (got < sizeof read) log().message(FileName + " is cut short; the rest reads as zeros.");
  static_cast<PreferencesRecord&>(*this) = read;
}

void PRF_ProjectPrefs::Load() {
  Read();
  correct(VentStandardCode, "VentStandardCode", FileName);
  correct(EnergyStandardCode, "EnergyStandardCode", FileName);
  correct(LeedVersionCode, "LeedVersionCode", FileName);
}

void PRF_ProjectPrefs::Save() const {
  write_start(FileName, std::as_bytes(std::span(static_cast<const PreferencesRecord*>(this), 1)));
}

const ClassInfo& RPT_ReportOptions::info() const {
  using C = RPT_ReportOptions;
  static constexpr auto members =
      describe<C>(Failures::Trapped, property<&C::FileName>, method<&C::Load>, method<&C::Save>);
  static const ClassInfo info(members);
  return info;
}

void RPT_ReportOptions::Load() {
  constexpr uint64_t kMost = 16'000'000;  // the choices of reports take kilobytes
  const uint64_t held = files().size(named(FileName));
  if (held > kMost) {
    fail(ErrorNumber::UnknownFormat, FileName + " holds " + std::to_string(held) + " bytes, more than the " +
                                         std::to_string(kMost) +
                                         " that report options can have. Restore the file from a copy.");
  }
  std::vector<std::byte> read(held);
  files().read(FileName, 0, read);
  bytes = std::move(read);
}

void RPT_ReportOptions::Save() const {
  if (const uint64_t held = files().size(named(FileName)); held > bytes.size()) {
    fail(ErrorNumber::InvalidCall, FileName + " holds " + std::to_string(held) + " bytes, more than the " +
                                       std::to_string(bytes.size()) + " to write; remove it first to shorten it.");
  }
  write_start(FileName, bytes);
}

}  // namespace tarn
