// The project's weather, one for each project: the design weather (WTD.DAT, table DesWeatherIndex) and the simulation
// weather (WTA.DAT, table SimWeatherIndex). Months, days and hours count from 1; a year has 365 days.
#pragma once

#include <string>
#include <vector>

#include "tarn/base/object.h"
#include "tarn/base/wire.h"
#include "tarn/platform/database.h"

namespace tarn {

inline constexpr int kDays = 365, kHours = 24, kExposures = 17;

/// A day's hours. Exposures are numbered by the engines.
struct WeatherDay {
  Array<R4, kHours> DB;                    // F
  Array<R4, kHours> SH;                    // lb vapour/lb moist air
  Array<R4, kHours> IDN;                   // Btu/(hr.ft2), direct normal
  Array<R4, kHours, kExposures> IDIFF;     // Btu/(hr.ft2), diffuse on each exposure
  Array<R4, kHours, kExposures> ITOT;      // Btu/(hr.ft2), total
  Array<R4, kHours, kExposures> SBeamTrn;  // solar beam factor, transmitted
  Array<R4, kHours, kExposures> SBeamAbs;  // absorbed
  Array<R4, kHours> AltAngle;              // of the sun, deg
  Array<R4, kHours> AziAngle, HrAngle;     // deg
  R4 DecAngle;                             // deg
};
static_assert(sizeof(WeatherDay) == 7108);

/// A month's design day.
struct DesignDay {
  Array<R4, kHours> DB, SH, IDN;
  Array<R4, kHours, kExposures> IDIFF, ITOT, SBeamTrn, SBeamAbs;
  Array<R4, kHours> AltAngle, AziAngle, HrAngle;
  R4 DecAngle;
  Array<R4, kExposures> MaxSol;  // Btu/(hr.ft2)
  R4 SolarMult;
};
static_assert(sizeof(DesignDay) == 7180);

/// The design weather file.
struct DesignWeather {
  I4 Region;  // of the user interface
  Text<20> DesCityName, DesStateName;
  R4 DesLatitude, DesLongitude;  // deg
  R4 DesElevation;               // ft
  R4 SummerDB, SummerWB;         // F, coincident
  R4 DailyRange;                 // F
  R4 WinterDB, WinterWB;         // F
  R4 AtmosClear;                 // clearness number
  R4 DesBaromPress;              // psia
  R4 GrdReflect;
  R4 SoilConductivity;  // Btu/(hr.ft.F)
  R4 DesTZMeridian;     // deg
  Bool DayLightSavings;
  I2 FirstDesMonth, FirstMonthDST, FirstDayDST, LastDesMonth, LastMonthDST, LastDayDST;
  I2 DesSourceCode;
  Text<30> DesSourceCodeString;
  Array<R4, 12> MaximumDB, MinimumDB, MaximumWB, MinimumWB;  // F
  Array<DesignDay, 12> DesDay;
};
static_assert(sizeof(DesignWeather) == 86'494);

/// The simulation weather file.
struct SimulationWeather {
  Text<20> SimCityName, SimStateName;
  Bool SimCitySelected;
  R4 SimLatitude, SimLongitude, SimTZMeridian;  // deg
  R4 SimElevation;                              // ft
  R4 SimBaromPress;                             // psia
  Text<5> SourceTypeLabel;
  I2 JanOne;  // day of the week
  Array<Bool, kDays> Holiday;
  Array<WeatherDay, kDays> SimDay;
};
static_assert(sizeof(SimulationWeather) == 2'595'219);

class WTH_Weather final : public Object, public DesignWeather, public SimulationWeather {
 public:
  using Records = std::tuple<DesignWeather, SimulationWeather>;
  WTH_Weather();
  const ClassInfo& info() const override;

  std::string DesFileName, SimFileName;
  std::string SimInputFileName;  // an `HW1ReaderWriter`'s; kept for the engines, never opened here

  Ptr<Database> GetDBHandle() const { return database_; }
  void SetDBHandle(Ptr<Database> DB) { database_ = std::move(DB); }

  /// What the files lack reads as zeros. Where a file is empty or not there, the city's name is that of the
  /// index row; no file is made. Error
  /// `NoCurrentRecord` for a table without its row.
  void Load();
  /// Design weather (its index row has city and state, or the city alone), simulation weather, then the changed flags
  /// of every system, plant and building: each in a transaction of its own, so that a failure leaves the steps before
  /// it done. Error `NoCurrentRecord` for a table without its row.
  void Save();
  /// A copy with the same database handle and weather, but without file names: the client sets those.
  Ptr<WTH_Weather> Clone() const;

  /// Adds the column Description of a table, by ID, to the list of source codes. All of it, or nothing.
  bool LoadSourceCodes(const std::string& szDatabaseName, const std::string& szTableName);
  /// From 1; empty outside the list.
  std::string SourceCode(int nIndex) const;

 private:
  Database& database() const;
  /// Sets a changed flag of every row.
  void mark_all(std::string_view table, std::string_view flag) const;

  Ptr<Database> database_;
  std::vector<std::string> source_codes_;
};

/// Statistics of a year's hours by month, filled and read by the client.
struct MonthlyStatistics {
  template <typename T>
  using Months = Array<T, 12>;
  Months<R4> MaxDB, AvgMaxDB, AvgDB, AvgMinDB, MinDB;  // F; the averages of daily extremes
  Months<R4> MaxItot, AvgItot, MinItot;                // Btu/(ft2.day), total solar on the horizontal
  Months<R4> MaxKt, AvgKt, MinKt;                      // clearness index: beside the solar above the air
  Months<I2> MaxDBDay, MaxDBHour, MinDBDay, MinDBHour, MaxItotDay, MinItotDay;
};

class WTH_Stats final : public Object, public MonthlyStatistics {
 public:
  using Unstored = MonthlyStatistics;
  const ClassInfo& info() const override;
};

}  // namespace tarn
