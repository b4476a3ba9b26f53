// The hourly weather file: a header and a year of dry-bulb, humidity and solar radiation in scaled 16-bit integers.
// Days 1 to 365 (no 29 February), hours 1 to 24; hour 1 ends at 1 o'clock.
#pragma once

#include <string>

#include "tarn/base/object.h"
#include "tarn/base/wire.h"
#include "tarn/weather.h"

namespace tarn {

struct HourlyDay {
  Array<Scaled<10>, kHours> DB;       // F
  Array<Scaled<100'000>, kHours> SH;  // lb vapour/lb moist air
  Array<Scaled<10>, kHours> IDN;      // Btu/(hr.ft2), direct normal
  Array<Scaled<10>, kHours> IDIFF;    // Btu/(hr.ft2), diffuse on the horizontal
};
static_assert(sizeof(HourlyDay) == 192);

struct HourlyWeather {
  Text<20> CityName, LocationName;
  R4 Latitude, Longitude;  // deg
  R4 Elevation;            // ft
  R4 SummerDB, SummerWB;   // F
  R4 DailyRange;           // F
  R4 WinterDB;             // F
  R4 AtmosClear;           // clearness number
  R4 TZMeridian;           // deg
  Array<I2, 12> DataYear;
  Text<12> DataSource;
  I2 SourceType;  // 1 to 7, or 99
  Text<10> ModDate;
  I2 DataStatus;
  Text<66> Reserved;
  Array<HourlyDay, kDays> Day;
};
static_assert(sizeof(HourlyWeather) == 70'272);

/// A reading of `IDN` or `IDIFF` that is missing.
inline constexpr double kMissingSolar = 999;

class HW1ReaderWriter final : public Object, public HourlyWeather {
 public:
  using Record = HourlyWeather;
  HW1ReaderWriter();
  const ClassInfo& info() const override;

  /// Reads a whole file. What a short file lacks reads as zero; this is logged. Errors `FileNotFound`,
  /// `PermissionDenied`.
  void Load(const std::string& filespec);
  /// Writes the file in place; a longer one keeps its tail.
  void Save(const std::string& filespec);
  /// Loads a file and judges it: 0 for a valid file, 3001 for a wrong name or header, 3002 for a file without solar
  /// data. The name is judged first; a file with a wrong name is not loaded.
  bool ValidateHW1File(const std::string& HW1FileName, int32_t& errCode, std::string& errDesc);

  // What the verdict is made of:
  static bool is_hourly_name(const std::string& file);
  bool has_valid_header() const;
  bool has_solar() const;
};

struct HourlyVerdict {
  int32_t code;
  std::string_view text;
};
inline constexpr HourlyVerdict kHourlyPassed{0, "No error"};
inline constexpr HourlyVerdict kHourlyInvalid{3001, "HW1 file format not valid/recognizable."};
inline constexpr HourlyVerdict kHourlyDark{3002, "HW1 file contains no solar data."};

/// The verdict on what is loaded, whatever the file's name.
HourlyVerdict verdict_of(const HW1ReaderWriter& year);

}  // namespace tarn
