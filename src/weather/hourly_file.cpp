#include "tarn/hourly_file.h"

#include <algorithm>

#include "tarn/platform/workspace.h"
#include "tarn/reflect/describe.h"
#include "weather/record_file.h"

namespace tarn {
namespace {

bool within(float value, float least, float most) { return value >= least && value <= most; }

bool is_reading(const Scaled<10>& solar) { return solar.steps > 0 && solar != kMissingSolar; }

}  // namespace

HW1ReaderWriter::HW1ReaderWriter() {
  CityName = "";
  LocationName = "";
  DataSource = "";
  ModDate = "";
  Reserved = "";
}

void HW1ReaderWriter::Load(const std::string& file) {
  if (!files().exists(file)) fail(ErrorNumber::FileNotFound, "There is no hourly weather file " + file + ".");
  if (!read_record<HourlyWeather>(*this, file)) log().message(file + " is empty; all of it is zeros.");
}

void HW1ReaderWriter::Save(const std::string& file) {
  Reserved = "";
  Transaction transaction;
  files().write(file, 0, record_bytes<HourlyWeather>(*this), nullptr);
  transaction.commit();
}

/// Judged by the characters after the last backslash or slash. Names of up to four characters pass: they are too short
/// for the ending.
bool HW1ReaderWriter::is_hourly_name(const std::string& file) {
  constexpr std::string_view kEnding = ".HW1";
  std::string name(trimmed(file));
  name.erase(0, name.find_last_of("\\/") + 1);
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  const auto characters = std::count_if(name.begin(), name.end(), [](char c) { return (c & 0xC0) != 0x80; });
  return characters <= static_cast<ptrdiff_t>(kEnding.size()) || name.ends_with(kEnding);
}

bool HW1ReaderWriter::has_valid_header() const {
  return within(Elevation, -999, 15000) && within(Latitude, -90, 90) && within(TZMeridian, -180, 180) &&
         within(Longitude, -180, 180) && within(SummerDB, -55, 150) && SummerWB <= SummerDB &&
         within(DailyRange, 1, 100) && WinterDB < SummerDB &&
         ((SourceType >= 1 && SourceType <= 7) || SourceType == 99) &&
         Reserved.bytes().find_first_not_of(' ') == std::string_view::npos;
}

bool HW1ReaderWriter::has_solar() const {
  const auto any = [](const auto& hours) { return std::any_of(hours.items.begin(), hours.items.end(), is_reading); };
  return std::any_of(Day.items.begin(), Day.items.end(),
                     [&any](const HourlyDay& day) { return any(day.IDN) || any(day.IDIFF); });
}

HourlyVerdict verdict_of(const HW1ReaderWriter& year) {
  if (!year.has_valid_header()) return kHourlyInvalid;
  return year.has_solar() ? kHourlyPassed : kHourlyDark;
}

bool HW1ReaderWriter::ValidateHW1File(const std::string& file, int32_t& code, std::string& text) {
  const auto conclude = [&](const HourlyVerdict& verdict) {
    code = verdict.code;
    text = verdict.text;
    return code == kHourlyPassed.code;
  };
  conclude(kHourlyPassed);
  if (!is_hourly_name(file)) return conclude(kHourlyInvalid);
  Load(file);
  return conclude(verdict_of(*this));
}

const ClassInfo& HW1ReaderWriter::info() const {
  using C = HW1ReaderWriter;
  using R = HourlyWeather;
  using D = HourlyDay;
  constexpr const char* kSolar = "Btu/(hr.ft2)";
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&R::CityName>.trimmed(), property<&R::LocationName>.trimmed(),
      property<&R::Latitude>("deg"), property<&R::Longitude>("deg"), property<&R::Elevation>("ft"),
      property<&R::SummerDB>("F"), property<&R::SummerWB>("F"), property<&R::DailyRange>("delta F"),
      property<&R::WinterDB>("F"), property<&R::AtmosClear>, property<&R::TZMeridian>("deg"), property<&R::DataYear>,
      property<&R::DataSource>, property<&R::SourceType>, property<&R::ModDate>, property<&R::DataStatus>,
      across<&R::Day, &D::DB>("F"), across<&R::Day, &D::SH>("lb/lb"), across<&R::Day, &D::IDN>(kSolar),
      across<&R::Day, &D::IDIFF>(kSolar), method<&C::Load>("filespec"), method<&C::Save>("filespec"),
      method<&C::ValidateHW1File>("HW1FileName", "errCode", "errDesc"), property<&R::Reserved>.reserved());
  static const ClassInfo info(members);
  return info;
}

}  // namespace tarn
