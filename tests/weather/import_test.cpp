// Years of other programs, and all that real files do to their readers.
#include <cmath>
#include <functional>

#include "support/temp_project.h"
#include "tarn/weather_import.h"
#include "weather/calendar.h"
#include "weather/psychrometrics.h"
#include "weather/year_review.h"

namespace tarn::test {
namespace {

/// An hour of a smooth year, as the three forms write it.
struct Hour {
  int month = 1, day = 1, hour = 1, year = 2001, minute = 0;
  std::string dry_bulb, dew_point, humidity = "50", pressure = "98000", direct, diffuse;
};

Hour hour_at(int month, int day, int hour) {
  const double season = -std::cos(2 * 3.14159265 * (30.5 * (month - 1) + day) / 365);
  const bool day_time = hour > 7 && hour < 18;
  const auto number = [](double value) {
    char text[16];
    std::snprintf(text, sizeof text, "%.1f", value);
    return std::string(text);
  };
  Hour out;
  out.month = month;
  out.day = day;
  out.hour = hour;
  const double dry_bulb = 10 + 12 * season + 4 * std::cos((hour - 15) * 3.14159265 / 12);
  out.dry_bulb = number(dry_bulb);
  out.dew_point = number(dry_bulb - 8);
  out.direct = day_time ? "500" : "0";
  out.diffuse = day_time ? "100" : "0";
  return out;
}

std::vector<Hour> year_of(bool leap = false) {
  std::vector<Hour> hours;
  for (int month = 1; month <= 12; ++month) {
    for (int day = 1; day <= days_in(month) + (leap && month == 2 ? 1 : 0); ++day) {
      for (int hour = 1; hour <= 24; ++hour) hours.push_back(hour_at(month, day, hour));
    }
  }
  return hours;
}

std::string epw_row(const Hour& h) {
  std::string text;
  for (const int number : {h.year, h.month, h.day, h.hour, h.minute}) text += std::to_string(number) + ",";
  return text + "?9?9," + h.dry_bulb + "," + h.dew_point + "," + h.humidity + "," + h.pressure + ",0,0,0,0," +
         h.direct + "," + h.diffuse + ",0,0,0,0,0,0.0,9,8\n";
}

const std::string kLocation = "LOCATION,Golden,CO,USA,TMY3,724666,39.74,-105.18,-7.0,280.0\n";
const std::string kDesign =
    "DESIGN CONDITIONS,1,2009 Handbook,,Heating,12,-18.8,-15.5,-21.6,Cooling,7,15.2,33,15.7,32,15.5,Extremes,11.1\n";
const std::string kHolidays = "HOLIDAYS/DAYLIGHT SAVINGS,No,0,0,0\n";
const std::string kPeriods = "DATA PERIODS,1,1,Data,Sunday, 1/ 1,12/31\n";

std::string epw(const std::vector<Hour>& hours,
                const std::string& header = kLocation + kDesign + kHolidays + kPeriods) {
  std::string text = header;
  for (const Hour& h : hours) text += epw_row(h);
  return text;
}

std::string tmy3(const std::vector<Hour>& hours) {
  std::string text =
      "724666,\"GOLDEN, NREL\",CO,-7.0,39.740,-105.180,280\r\n"
      "Date (MM/DD/YYYY),Time (HH:MM),DNI source,DNI (W/m^2),DHI (W/m^2),Dry-bulb (C),Dry-bulb source,Dew-point "
      "(C),RHum "
      "(%),Pressure (mbar),Pressure source\r\n";
  for (const Hour& h : hours) {
    char date[32];
    std::snprintf(date, sizeof date, "%02d/%02d/%04d,%02d:%02d", h.month, h.day, h.year, h.hour, h.minute);
    text += std::string(date) + ",1," + h.direct + "," + h.diffuse + "," + h.dry_bulb + ",A," + h.dew_point + "," +
            h.humidity + "," + std::to_string(std::stoi(h.pressure) / 100) + ",A\r\n";
  }
  return text;
}

std::string tmy2(const std::vector<Hour>& hours) {
  std::string text = " 94018 GOLDEN_NREL            CO  -7 N 39 44 W 105 11   280\n";
  const auto tenths = [](const std::string& value) { return static_cast<int>(std::lround(std::stod(value) * 10)); };
  for (const Hour& h : hours) {
    char row[160];
    std::snprintf(row, sizeof row,
                  " %02d%2d%2d%2d%4d%4d%4d?0%4d?0%4d?0%4d?0%4d?0%4d?0%4d?0%2d?0%2d?0%4d?0%4d?0%3d?0%4d?0", h.year % 100,
                  h.month, h.day, h.hour, 0, 0, 0, std::stoi(h.direct), std::stoi(h.diffuse), 0, 0, 0, 0, 0, 0,
                  tenths(h.dry_bulb), tenths(h.dew_point), std::stoi(h.humidity), std::stoi(h.pressure) / 100);
    text += std::string(row) + "\n";
  }
  return text;
}

std::string imported(HW1ReaderWriter& year, const std::string& text) {
  try {
    std::string notes;
    for (const std::string& note : import_weather_text(year, text).notes) notes += note + "\n";
    return notes;
  } catch (const Error& error) {
    return "refused: " + error.description();
  }
}

std::string hourly_bytes(const HW1ReaderWriter& year) {
  return {reinterpret_cast<const char*>(year.Day.items.data()), sizeof year.Day};
}

/// The year that every readable variant must give.
const HW1ReaderWriter& plain() {
  static const auto year = [] {
    auto made = std::make_unique<HW1ReaderWriter>();
    EXPECT_EQ(imported(*made, epw(year_of())), "");
    return made;
  }();
  return *year;
}

TEST(WeatherImport, ConvertsUnitsAndHeader) {
  const HW1ReaderWriter& year = plain();
  EXPECT_EQ(year.CityName.trimmed() + "/" + year.LocationName.trimmed() + "/" + year.DataSource.trimmed(),
            "Golden/CO/TMY3 724666");
  EXPECT_FLOAT_EQ(year.Elevation, 280 / 0.3048F);
  EXPECT_FLOAT_EQ(year.TZMeridian, -105);
  EXPECT_FLOAT_EQ(year.SummerDB, 91.4F);
  EXPECT_FLOAT_EQ(year.SummerWB, 60.26F);
  EXPECT_FLOAT_EQ(year.WinterDB, -1.84F);
  EXPECT_FLOAT_EQ(year.DailyRange, 27.36F);
  EXPECT_EQ(year.DataYear(12), 2001);
  EXPECT_EQ(verdict_of(year).code, 0);

  // ASHRAE Handbook of Fundamentals 2009, chapter 1, table 3: 0.6113 kPa at 0 C, 3.1693 at 25 C, 0.10326 over ice at
  // -20 C. W = 0.621945 p / (98 - p), specific humidity W / (1 + W).
  auto hours = year_of();
  hours[0].dew_point = "25.0";
  hours[0].dry_bulb = "30.0";
  hours[1].dew_point = "-20.0";
  hours[2].dew_point = "0.0";
  HW1ReaderWriter humid;
  imported(humid, epw(hours));
  EXPECT_EQ(humid.Day(1).SH(1).steps, 2036);  // 0.02078 / 1.02078
  EXPECT_EQ(humid.Day(1).SH(2).steps, 66);
  EXPECT_EQ(humid.Day(1).SH(3).steps, 389);
  EXPECT_EQ(humid.Day(1).DB(1), 86.0);
  EXPECT_EQ(humid.Day(1).IDN(12), 158.5);
  EXPECT_EQ(humid.Day(1).IDIFF(12), 31.7);
}

TEST(WeatherImport, TheThreeFormsAgree) {
  for (const std::string& text : {tmy3(year_of()), tmy2(year_of())}) {
    HW1ReaderWriter year;
    EXPECT_NE(imported(year, text).find("no readable design conditions"), std::string::npos);
    EXPECT_EQ(hourly_bytes(year), hourly_bytes(plain()));
    EXPECT_NEAR(year.Latitude, 39.74, 0.01);
    EXPECT_NEAR(year.Longitude, -105.18, 0.01);
    EXPECT_TRUE(year.CityName.trimmed().starts_with("GOLDEN")) << year.CityName.trimmed();
    EXPECT_EQ(verdict_of(year).code, 0);
  }
}

using Hours = std::vector<Hour>;
struct Quirk {
  const char* name;
  std::function<std::string()> text;
  const char* said;       // in the notes or the refusal
  bool same_year = true;  // the hours are those of the plain year
};

std::string changed(const std::function<void(Hours&)>& change, bool leap = false) {
  auto hours = year_of(leap);
  change(hours);
  return epw(hours);
}
std::string with_header(const std::string& header, bool leap = false) { return epw(year_of(leap), header); }
std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

const Quirk kRead[]{
    {"8784 rows", [] { return with_header(kLocation + "HOLIDAYS/DAYLIGHT SAVINGS,Yes,0,0,0\n" + kDesign, true); },
     "29 February is left out, 24 rows"},
    {"a flag that denies them", [] { return with_header(kLocation + kDesign + kHolidays, true); },
     "though the header says that the year has none"},
    {"a flag that claims them", [] { return with_header(kLocation + kDesign + "HOLIDAYS/DAYLIGHT SAVINGS,Yes\n"); },
     "there are no rows of it"},
    {"an empty flag", [] { return with_header(kLocation + kDesign + "HOLIDAYS/DAYLIGHT SAVINGS,,0,0,0\n"); },
     "line 3: the leap year flag is empty"},
    {"other header words",
     [] { return with_header("Location" + kLocation.substr(8) + kDesign + "Holidays/Daylight Saving,No,0\n"); },
     "\"Holidays/Daylight Saving\" is taken for HOLIDAYS/DAYLIGHT SAVINGS"},
    {"a header line of its own", [] { return with_header(kLocation + "MADE BY,hand\n" + kDesign); },
     "line 2: \"MADE BY\" is not a header word"},
    {"humidity above 100 per cent", [] { return changed([](Hours& h) { h[9].humidity = "107"; }); },
     "relative humidity is above 100 % (humidity is computed from the dew point) in 1 hour, first in line 14"},
    {"hours 0 to 23",
     [] {
       return changed([](Hours& h) {
         for (Hour& hour : h) --hour.hour;
       });
     },
     "hours are stamped 0 to 23"},
    {"midnight as hour 0 of the next day",
     [] {
       return changed([](Hours& h) {
         for (size_t i = 23; i < h.size(); i += 24) {
           h[i].month = h[(i + 1) % h.size()].month;
           h[i].day = h[(i + 1) % h.size()].day;
           h[i].hour = 0;
         }
       });
     },
     "midnight is stamped as hour 0"},
    {"midnight as hour 0 of the same day",
     [] {
       return changed([](Hours& h) {
         for (size_t i = 23; i < h.size(); i += 24) h[i].hour = 0;
       });
     },
     "midnight is stamped as hour 0"},
    {"midnight as hour 0 in a leap year",
     [] {
       return changed(
           [](Hours& h) {
             for (size_t i = 23; i < h.size(); i += 24) {
               h[i].month = h[(i + 1) % h.size()].month;
               h[i].day = h[(i + 1) % h.size()].day;
               h[i].hour = 0;
             }
           },
           true);
     },
     "29 February is left out, 24 rows"},
    {"half-hour stamps from 0:30",
     [] {
       return changed([](Hours& h) {
         for (Hour& hour : h) {
           --hour.hour;
           hour.minute = 30;
         }
       });
     },
     "stamped inside their hours, the first at minute 30"},
    {"half-hour stamps from 1:30",
     [] {
       return changed([](Hours& h) {
         for (Hour& hour : h) hour.minute = 30;
       });
     },
     "stamped inside their hours, the first at minute 30"},
    {"minute 60",
     [] {
       return changed([](Hours& h) {
         for (Hour& hour : h) hour.minute = 60;
       });
     },
     ""},
    {"rows out of order", [] { return changed([](Hours& h) { std::rotate(h.begin(), h.begin() + 2000, h.end()); }); },
     "rows are out of order, the first in line 6765"},
    {"CR LF and a byte-order mark", [] { return "\xEF\xBB\xBF" + replaced(epw(year_of()), "\n", "\r\n"); }, ""},
    {"no line end at last",
     [] {
       const std::string text = epw(year_of());
       return text.substr(0, text.size() - 1);
     },
     ""},
    {"blanks and plus signs", [] { return replaced(epw(year_of()), ",98000,", ", +98000 ,"); }, ""},
    {"a name in UTF-8", [] { return with_header(replaced(kLocation, "Golden", "Z\xC3\xBCrich") + kDesign); }, ""},
    {"a name in the code page", [] { return with_header(replaced(kLocation, "Golden", "Z\xFCrich") + kDesign); },
     "read as code page 1252: Z\xC3\xBCrich"},
    {"a name beyond the code page",
     [] {
       return with_header(replaced(kLocation, "Golden",
                                   "\xC5\x81\xC3\xB3"
                                   "d\xC5\xBA") +
                          kDesign);
     },
     "characters that code page 1252 lacks"},
    {"a name with a comma", [] { return with_header(replaced(kLocation, "Golden", "Golden, at the mill") + kDesign); },
     ""},
    {"a long name", [] { return with_header(replaced(kLocation, "Golden", "Golden at the old mill") + kDesign); },
     "the city's name is cut to 20 characters: Golden at the old mi"},
    {"no design conditions", [] { return with_header(kLocation + "DESIGN CONDITIONS,0\n" + kHolidays); },
     "no readable design conditions"},
    {"months of several years", [] { return changed([](Hours& h) { h[0].year = 1999; }); },
     "January has rows of 2 years; most are of 2001"},
    {"a sign lost", [] { return with_header(replaced(kLocation, "-105.18", "105.18") + kDesign); },
     "longitude and time zone are more than 45 degrees apart"},
    {"a dry-bulb is missing", [] { return changed([](Hours& h) { h[14].dry_bulb = "99.9"; }); },
     "the dry-bulb is missing in 1 hour, first in line 19; the gaps are filled by a straight line", false},
    {"an empty dew point", [] { return changed([](Hours& h) { h[5].dew_point = ""; }); },
     "the dew point is missing in 1 hour, first in line 10; it is computed from the relative humidity", false},
    {"a pressure is missing", [] { return changed([](Hours& h) { h[5].pressure = "999999"; }); },
     "the pressure is missing in 1 hour, first in line 10; the pressure of the standard atmosphere"},
    {"solar is missing", [] { return changed([](Hours& h) { h[12].direct = "9999"; }); },
     "the direct normal solar is missing, and marked with 999, in 1 hour, first in line 17", false},
    {"solar below 0", [] { return changed([](Hours& h) { h[2].direct = "-1"; }); },
     "the direct normal solar is below 0, and taken as 0, in 1 hour, first in line 7"},
    {"dew above dry-bulb", [] { return changed([](Hours& h) { h[5].dew_point = "20"; }); },
     "the dew point is above the dry-bulb, and kept in 1 hour, first in line 10", false},
    {"TMY3 codes", [] { return replaced(tmy3(year_of()), ",980,", ",-9900,"); },
     "the pressure is missing in 8760 hours", false},
    {"midnight as hour 0 of the same day in a leap year",
     [] {
       return changed(
           [](Hours& h) {
             for (size_t i = 23; i < h.size(); i += 24) h[i].hour = 0;
           },
           true);
     },
     "midnight is stamped as hour 0"},
    {"fields after the elevation", [] { return with_header(replaced(kLocation, "280.0", "280.0,7") + kDesign); },
     "the fields after the elevation are ignored"},
    {"two design conditions",
     [] { return with_header(kLocation + replaced(kDesign, "CONDITIONS,1,", "CONDITIONS,2,") + kHolidays); },
     "of the 2 sets of design conditions the first is used"},
    {"a pressure of the sea", [] { return changed([](Hours& h) { h[5].pressure = "109000"; }); },
     "the pressure is more than 8 % off the standard at the elevation", false},
    {"a year of two digits",
     [] {
       return changed([](Hours& h) {
         for (Hour& hour : h) hour.year = 88;
       });
     },
     "January has a year of two digits; it is read as 1988"},
    {"illuminance columns",
     [] { return replaced(tmy3(year_of()), "DNI source,DNI (W/m^2)", "DN illum (lx),DNI (W/m^2)"); }, ""},
    {"an old end mark", [] { return epw(year_of()) + "\x1A"; }, ""},
};

TEST(WeatherImport, ReadsRealFilesAndSaysWhatItMadeOfThem) {
  for (const Quirk& quirk : kRead) {
    HW1ReaderWriter year;
    const std::string notes = imported(year, quirk.text());
    EXPECT_NE(notes.find(quirk.said), std::string::npos) << quirk.name << ": " << notes;
    EXPECT_FALSE(notes.starts_with("refused")) << quirk.name << ": " << notes;
    if (*quirk.said == '\0' && notes.find("no readable design conditions") == std::string::npos) {
      EXPECT_EQ(notes, "") << quirk.name;
    }
    EXPECT_EQ(hourly_bytes(year) == hourly_bytes(plain()), quirk.same_year) << quirk.name;
  }
}

const Quirk kRefused[]{
    {"a missing row", [] { return changed([](Hours& h) { h.erase(h.begin() + 30); }); },
     "line 34: 1 of 8760 hours is missing; the first, after this line, is 2 January hour 7"},
    {"a short year", [] { return changed([](Hours& h) { h.resize(5000); }); }, "3760 of 8760 hours are missing"},
    {"a row twice", [] { return changed([](Hours& h) { h.push_back(h[3]); }); },
     "line 8765: a second row for 1 January hour 4; line 8 has that hour already"},
    {"two rows an hour", [] { return with_header(kLocation + kDesign + "DATA PERIODS,1,2,Data,Sunday\n"); },
     "line 3: there are 2 rows an hour"},
    {"a word for a number", [] { return changed([](Hours& h) { h[8].dry_bulb = "cold"; }); },
     "line 13: the dry-bulb is \"cold\", which is not a number"},
    {"a long gap",
     [] {
       return changed([](Hours& h) {
         for (int i = 100; i < 107; ++i) h[i].dry_bulb = "99.9";
       });
     },
     "line 105: the dry-bulb is missing from here for 7 hours; only gaps of up to 6 hours are filled"},
    {"a dry-bulb in F", [] { return changed([](Hours& h) { h[8].dry_bulb = "86"; }); },
     "line 13: a dry-bulb of 86 C is implausible"},
    {"a pressure in millibar", [] { return changed([](Hours& h) { h[8].pressure = "980"; }); },
     "line 13: a pressure of 980 Pa is implausible"},
    {"a month of 13", [] { return changed([](Hours& h) { h[8].month = 13; }); },
     "line 13: the month is 13, outside 1 to 12"},
    {"30 February", [] { return changed([](Hours& h) { h[8].month = 2, h[8].day = 30; }); },
     "line 13: the day is 30, outside 1 to 29"},
    {"hour 25", [] { return changed([](Hours& h) { h[8].hour = 25; }); }, "line 13: the hour is 25, outside 0 to 24"},
    {"a row cut off", [] { return epw(year_of()).substr(0, 200'000); }, "line "},
    {"no latitude", [] { return with_header(replaced(kLocation, "39.74", "")); }, "line 1: the latitude is empty"},
    {"a latitude of 93", [] { return with_header(replaced(kLocation, "39.74", "93")); },
     "line 1: the latitude is 93, outside -90 to 90"},
    {"a TMY3 without a column", [] { return replaced(tmy3(year_of()), "Dew-point (C)", "Wet-bulb (C)"); },
     "line 2: there is no column Dew-point"},
    {"hours 0 to 23 out of order",
     [] {
       return changed([](Hours& h) {
         for (Hour& hour : h) --hour.hour;
         std::swap(h[0], h[1]);
       });
     },
     "the rows' order does not tell whether"},
    {"one stamp inside its hour", [] { return changed([](Hours& h) { h[7].minute = 1; }); },
     "line 12: the minute is 1, but in the row before it is 0"},
    {"hours 0 and 24", [] { return changed([](Hours& h) { h[0].hour = 0; }); },
     "line 5: the hour is 0 in a file that has hour 24 as well, in line 28"},
    {"solar in Btu", [] { return replaced(tmy3(year_of()), "DNI (W/m^2)", "DNI (Btu/ft^2)"); },
     "line 2: the column DNI is headed \"DNI (Btu/ft^2)\""},
    {"two columns of a name", [] { return replaced(tmy3(year_of()), "Pressure source", "Dry-bulb (C)"); },
     "line 2: there are two columns Dry-bulb"},
    {"two locations", [] { return with_header(kLocation + kLocation); }, "line 2: a second location"},
    {"a huge value", [] { return changed([](Hours& h) { h[8].dry_bulb = "150"; }); },
     "line 13: a dry-bulb of 150 C is implausible"},
    {"a site below what a file can hold", [] { return with_header(replaced(kLocation, "280.0", "-430")); },
     "line 1: the elevation, m, is -430, outside -304 to 4572"},
    {"CR alone", [] { return replaced(epw(year_of()), "\n", "\r"); }, "line 1: lines end with CR alone"},
    {"a NUL in a number", [] { return replaced(epw(year_of()), ",98000,", std::string(",98\0,", 5)); },
     "line 5: the pressure is \"98?\", which is not a number"},
    {"header lines without end", [] { return kLocation + replaced(std::string(9000, 'x'), "xxx", "HOL\n"); },
     "there is no row of hourly data up to this line"},
    {"UTF-16", [] { return std::string("\xFF\xFEL\0O\0", 6); }, "line 1: this is text in UTF-16"},
    {"another text", [] { return std::string("Dear all,\nplease find the weather.\n"); },
     "line 1: this is neither an EPW file"},
    {"nothing", [] { return std::string(); }, "line 1: this is neither an EPW file"},
    {"a header alone", [] { return kLocation + kDesign; }, "there are no rows of hourly data"},
};

TEST(WeatherImport, RefusesTheOthersByLineAndReason) {
  for (const Quirk& quirk : kRefused) {
    HW1ReaderWriter year;
    year.CityName = "before";
    const std::string said = imported(year, quirk.text());
    EXPECT_TRUE(said.starts_with("refused: ")) << quirk.name << ": " << said;
    EXPECT_NE(said.find(quirk.said), std::string::npos) << quirk.name << ": " << said;
    EXPECT_EQ(year.CityName.trimmed(), "before") << quirk.name;
  }
}

TEST(WeatherImport, AYearBecomesTheSimulationWeather) {
  HW1ReaderWriter year;
  const ImportedWeather read = import_weather_text(year, epw(year_of()));
  WTH_Weather weather;
  weather.SimDay(5).ITOT(12, 3) = 100;  // of another place
  use_as_simulation(weather, year, read);
  EXPECT_EQ(weather.SimCityName.trimmed() + weather.SimStateName.trimmed() + weather.SourceTypeLabel.trimmed(),
            "GoldenCOTMY3");
  EXPECT_TRUE(weather.SimCitySelected);
  EXPECT_NEAR(weather.SimBaromPress, 98000 / 6894.757, 1e-4);
  EXPECT_EQ(weather.JanOne, 7);
  EXPECT_FLOAT_EQ(weather.SimDay(365).DB(24), static_cast<float>(year.Day(365).DB(24)));
  EXPECT_EQ(weather.SimDay(5).ITOT(12, 3), 0);
}

TEST(WeatherReview, FindsWhatCannotBe) {
  const auto clean = findings_of(plain());
  EXPECT_TRUE(clean.empty()) << clean[0].what << " " << clean[0].value << " " << clean[0].day;
  const struct {
    const char* what;
    void (*damage)(HourlyDay&);
  } cases[]{{"hours are missing", [](HourlyDay& d) { d.DB(5) = 0, d.SH(5) = 0; }},
            {"direct normal solar is marked", [](HourlyDay& d) { d.IDN(12) = 999; }},
            {"outside -90 to 135 F", [](HourlyDay& d) { d.DB(5) = 150; }},
            {"jumps by more than 27 F", [](HourlyDay& d) { d.DB(5) = d.DB(5) + 40; }},
            {"more than saturated", [](HourlyDay& d) { d.SH(5) = d.SH(5) + 0.012; }},
            {"humidity jumps", [](HourlyDay& d) { d.SH(5) = d.SH(5) + 0.009; }},
            {"outside 0 to 450", [](HourlyDay& d) { d.IDN(12) = 460; }},
            {"the sun shines at night", [](HourlyDay& d) { d.IDN(2) = 5; }},
            {"the sun shines at night", [](HourlyDay& d) { d.IDIFF(23) = 5; }}};
  for (const auto& [what, damage] : cases) {
    HW1ReaderWriter year;
    static_cast<HourlyWeather&>(year) = plain();
    damage(year.Day(200));
    bool found = false;
    for (const Finding& finding : findings_of(year))
      found |= finding.what.find(what) != std::string::npos && finding.day == 200;
    EXPECT_TRUE(found) << what;
  }
  HW1ReaderWriter still;
  static_cast<HourlyWeather&>(still) = plain();
  for (int day = 40; day <= 41; ++day) {
    for (int hour = 1; hour <= 24; ++hour) {
      still.Day(day).DB(hour) = 50;
      still.Day(day).SH(hour) = 0.004;
    }
  }
  ASSERT_FALSE(findings_of(still).empty());
  EXPECT_EQ(findings_of(still).back().count, 48);
}

TEST(WeatherReview, StatisticsAreThoseOfTheHours) {
  HW1ReaderWriter year;
  static_cast<HourlyWeather&>(year) = plain();
  for (HourlyDay& day : year.Day.items) {
    for (int hour = 1; hour <= 24; ++hour) {
      day.DB(hour) = hour == 15 ? 70 : 50;
      day.IDN(hour) = 0;
      day.IDIFF(hour) = hour == 12 ? 100 : 0;
    }
  }
  year.Day(day_of_year(7, 20)).DB(16) = 95;
  year.Day(day_of_year(7, 21)).DB(4) = 30;
  year.Day(day_of_year(7, 22)).IDIFF(12) = 200;
  year.Day(day_of_year(7, 23)).IDIFF(12) = 999;
  WTH_Stats s;
  fill_statistics(s, year);
  EXPECT_EQ(s.MaxDB(7), 95);
  EXPECT_EQ(s.MaxDBDay(7), 20);
  EXPECT_EQ(s.MaxDBHour(7), 16);
  EXPECT_EQ(s.MinDB(7), 30);
  EXPECT_EQ(s.MinDBDay(7), 21);
  EXPECT_EQ(s.MinDBHour(7), 4);
  EXPECT_FLOAT_EQ(s.AvgMaxDB(7), (30 * 70 + 95) / 31.0F);
  EXPECT_FLOAT_EQ(s.AvgMinDB(7), (30 * 50 + 30) / 31.0F);
  EXPECT_FLOAT_EQ(s.AvgDB(1), (23 * 50 + 70) / 24.0F);
  EXPECT_EQ(s.MaxItot(7), 200);
  EXPECT_EQ(s.MaxItotDay(7), 22);
  EXPECT_EQ(s.MinItot(7), 100) << "the day with a missing reading is left out";
  EXPECT_FLOAT_EQ(s.AvgItot(7), (29 * 100 + 200) / 30.0F);
  // Outside the air on 21 June at latitude 39.74: 41.8 MJ/m2 (ASHRAE's tables give 41.7 at 40 N), 3680 Btu/ft2.
  EXPECT_NEAR(s.MinKt(6), 100 / 3685.0, 0.0002);
}

}  // namespace
}  // namespace tarn::test
