#include "tarn/hourly_file.h"

#include <cmath>

#include "support/temp_project.h"
#include "tarn/reflect/by_name.h"

namespace tarn::test {
namespace {

/// One that passes.
void fill(HW1ReaderWriter& year) {
  year.Elevation = 6000;
  year.Latitude = 39.7F;
  year.Longitude = -105;
  year.TZMeridian = -105;
  year.SummerDB = 91;
  year.SummerWB = 91;
  year.DailyRange = 27;
  year.WinterDB = -2;
  year.SourceType = 99;
  year.Day(365).IDIFF(24) = 0.1;
}

TEST(HourlyFile, EachValueIsAtItsPlace) {
  const TempFolder folder;
  HW1ReaderWriter year;
  struct Place {
    const char* member;
    std::vector<int> subscripts;
    size_t offset;
  };
  std::vector<Place> reals{{"Latitude", {}, 40}, {"Longitude", {}, 44},  {"Elevation", {}, 48},
                           {"SummerDB", {}, 52}, {"SummerWB", {}, 56},   {"DailyRange", {}, 60},
                           {"WinterDB", {}, 64}, {"AtmosClear", {}, 68}, {"TZMeridian", {}, 72}};
  std::vector<Place> shorts{
      {"DataYear", {1}, 76}, {"DataYear", {12}, 98}, {"SourceType", {}, 112}, {"DataStatus", {}, 124}};
  std::vector<Place> scaled;
  for (const int day : {1, 365}) {
    for (const auto& [name, first] :
         {std::pair("DB", 0), std::pair("SH", 48), std::pair("IDN", 96), std::pair("IDIFF", 144)}) {
      for (const int hour : {1, 24})
        scaled.push_back({name, {day, hour}, static_cast<size_t>(192 * day + first + 2 * (hour - 1))});
    }
  }
  for (const Place& p : reals) let_property(year, p.member, static_cast<float>(p.offset), p.subscripts);
  for (const Place& p : shorts) let_property(year, p.member, static_cast<int16_t>(p.offset), p.subscripts);
  double number = 0;
  for (const Place& p : scaled) {
    const bool humidity = std::string_view(p.member) == "SH";
    let_property(year, p.member, ++number / (humidity ? 100'000 : 10), p.subscripts);
  }
  let_property(year, "CityName", std::string("Golden"));
  let_property(year, "LocationName", std::string("Colorado and other states"));
  let_property(year, "DataSource", std::string("TMY3 724666"));
  let_property(year, "ModDate", std::string("2026-11-21"));
  year.Reserved = "something";
  year.Save(folder / "A.HW1");

  const std::string bytes = bytes_of(folder / "A.HW1");
  ASSERT_EQ(bytes.size(), 70'272U);
  const auto at = [&](size_t offset, auto value) {
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
  };
  for (const Place& p : reals) EXPECT_EQ(at(p.offset, 0.0F), static_cast<float>(p.offset)) << p.member;
  for (const Place& p : shorts) EXPECT_EQ(at(p.offset, int16_t{}), static_cast<int16_t>(p.offset)) << p.member;
  int16_t stored = 0;
  for (const Place& p : scaled) EXPECT_EQ(at(p.offset, int16_t{}), ++stored) << p.member << p.offset;
  EXPECT_EQ(bytes.substr(0, 40), "Golden              Colorado and other s");
  EXPECT_EQ(bytes.substr(100, 12), "TMY3 724666 ");
  EXPECT_EQ(bytes.substr(114, 10), "2026-11-21");
  EXPECT_EQ(bytes.substr(126, 66), std::string(66, ' '));
  EXPECT_EQ(std::get<std::string>(get_property(year, "CityName")), "Golden");
  EXPECT_EQ(std::get<std::string>(get_property(year, "DataSource")), "TMY3 724666 ");
}

TEST(HourlyFile, ValuesAreRoundedToEvenAndRefusedBeyondSixteenBits) {
  HW1ReaderWriter year;
  constexpr struct {
    double value;
    int16_t tenths;
  } kTenths[]{{72.25, 722}, {72.35, 724},    {-72.25, -722},   {-0.05, 0},        {0.05, 0},
              {0.15, 2},    {3276.7, 32767}, {3276.74, 32767}, {-3276.8, -32768}, {-3276.84, -32768}};
  for (const auto& [value, tenths] : kTenths) {
    let_property(year, "DB", value, std::array{1, 1});
    EXPECT_EQ(year.Day(1).DB(1).steps, tenths) << value;
    EXPECT_EQ(std::get<double>(get_property(year, "DB", std::array{1, 1})), tenths / 10.0);
  }
  let_property(year, "SH", 0.0085, std::array{2, 3});
  EXPECT_EQ(year.Day(2).SH(3).steps, 850);
  year.Day(1).DB(1) = 70;
  for (const double value : {3276.75, -3276.95, 1e300, -1e300, std::nan(""), HUGE_VAL}) {
    EXPECT_EQ(error_number([&] { let_property(year, "DB", value, std::array{1, 1}); }), number(ErrorNumber::Overflow));
    EXPECT_EQ(year.Day(1).DB(1), 70.0) << value;
  }
  for (const auto& at : {std::array{366, 1}, std::array{1, 0}, std::array{1, 25}})
    EXPECT_EQ(error_number([&] { get_property(year, "DB", at); }), number(ErrorNumber::SubscriptOutOfRange));
  EXPECT_EQ(error_number([&] { get_property(year, "DataYear", std::array{13}); }),
            number(ErrorNumber::SubscriptOutOfRange));
}

TEST(HourlyFile, FilesAreWrittenInPlaceAndReadAsFarAsTheyGo) {
  const TempFolder folder;
  RecordingLog log;
  const std::string file = folder / "A.HW1";
  write_bytes(file, std::string(70'280, 'x'));
  HW1ReaderWriter year;
  fill(year);
  year.Save(file);
  EXPECT_EQ(bytes_of(file).substr(70'270), std::string("\1\0xxxxxxxx", 10));
  HW1ReaderWriter again;
  again.Load(file);
  EXPECT_EQ(again.Day(365).IDIFF(24), 0.1);
  EXPECT_TRUE(log.messages.empty());
  std::filesystem::resize_file(file, 70'271);
  again.Load(file);
  EXPECT_EQ(log.messages.size(), 1U);
  EXPECT_EQ(error_number([&] { again.Load(folder / "B.HW1"); }), number(ErrorNumber::FileNotFound));
  EXPECT_FALSE(std::filesystem::exists(folder / "B.HW1"));
}

TEST(HourlyFile, ContentIsJudgedByHeaderAndSolar) {
  using Change = void (*)(HW1ReaderWriter&);
  constexpr struct {
    Change change;
    int code;
  } kCases[]{
      {[](HW1ReaderWriter&) {}, 0},
      {[](HW1ReaderWriter& y) { y.Elevation = -999; }, 0},
      {[](HW1ReaderWriter& y) { y.Elevation = 15000; }, 0},
      {[](HW1ReaderWriter& y) { y.Elevation = 15001; }, 3001},
      {[](HW1ReaderWriter& y) { y.Elevation = -1000; }, 3001},
      {[](HW1ReaderWriter& y) { y.Latitude = 90.1F; }, 3001},
      {[](HW1ReaderWriter& y) { y.Latitude = -90.1F; }, 3001},
      {[](HW1ReaderWriter& y) { y.Latitude = std::nanf(""); }, 3001},
      {[](HW1ReaderWriter& y) { y.TZMeridian = 181; }, 3001},
      {[](HW1ReaderWriter& y) { y.TZMeridian = -181; }, 3001},
      {[](HW1ReaderWriter& y) { y.Longitude = 181; }, 3001},
      {[](HW1ReaderWriter& y) { y.Longitude = -181; }, 3001},
      {[](HW1ReaderWriter& y) { y.SummerDB = 151; }, 3001},
      {[](HW1ReaderWriter& y) { y.SummerDB = -56, y.SummerWB = -60, y.WinterDB = -60; }, 3001},
      {[](HW1ReaderWriter& y) { y.SummerDB = -55, y.SummerWB = -55, y.WinterDB = -60; }, 0},
      {[](HW1ReaderWriter& y) { y.SummerWB = 91.1F; }, 3001},
      {[](HW1ReaderWriter& y) { y.DailyRange = 0.9F; }, 3001},
      {[](HW1ReaderWriter& y) { y.DailyRange = 1; }, 0},
      {[](HW1ReaderWriter& y) { y.DailyRange = 100.1F; }, 3001},
      {[](HW1ReaderWriter& y) { y.WinterDB = 91; }, 3001},
      {[](HW1ReaderWriter& y) { y.SourceType = 0; }, 3001},
      {[](HW1ReaderWriter& y) { y.SourceType = 1; }, 0},
      {[](HW1ReaderWriter& y) { y.SourceType = 7; }, 0},
      {[](HW1ReaderWriter& y) { y.SourceType = 8; }, 3001},
      {[](HW1ReaderWriter& y) { y.Reserved.chars[65] = 'x'; }, 3001},
      {[](HW1ReaderWriter& y) { y.Day(365).IDIFF(24) = 0; }, 3002},
      {[](HW1ReaderWriter& y) { y.Day(365).IDIFF(24) = 999; }, 3002},
      {[](HW1ReaderWriter& y) { y.Day(365).IDIFF(24) = -1; }, 3002},
      {[](HW1ReaderWriter& y) { y.Day(365).IDIFF(24) = 0, y.Day(1).IDN(1) = 0.1; }, 0},
  };
  const TempFolder folder;
  const std::string file = folder / "A.HW1";
  for (size_t i = 0; i < std::size(kCases); ++i) {
    HW1ReaderWriter year, judge;
    fill(year);
    kCases[i].change(year);
    const std::string bytes(reinterpret_cast<const char*>(static_cast<HourlyWeather*>(&year)), sizeof(HourlyWeather));
    write_bytes(file, bytes);
    int32_t code = -1;
    std::string text;
    EXPECT_EQ(judge.ValidateHW1File(file, code, text), kCases[i].code == 0) << i;
    EXPECT_EQ(code, kCases[i].code) << i;
    EXPECT_EQ(text, code == 0      ? "No error"
                    : code == 3001 ? "HW1 file format not valid/recognizable."
                                   : "HW1 file contains no solar data.");
    EXPECT_EQ(judge.SourceType, year.SourceType) << "it is loaded, whatever the verdict";
  }
}

TEST(HourlyFile, TheNameIsJudgedFirst) {
  constexpr std::pair<const char*, bool> kNames[]{{"CITY.HW1", true},
                                                  {"city.hw1", true},
                                                  {"  CITY.HW1  ", true},
                                                  {"CITY.TXT", false},
                                                  {"A.B", true},
                                                  {".HW1", true},
                                                  {"A.TX", true},
                                                  {"A.TXT", false},
                                                  {"C:\\X.HW1\\A.B", true},
                                                  {"C:\\X\\CITY.TXT", false},
                                                  {"C:\\X\\", true},
                                                  {"CITY.HW1\\A.TXT", false},
                                                  {"/jobs/A.B", false}};
  for (const auto& [name, right] : kNames) {
    HW1ReaderWriter year;
    int32_t code = 5;
    std::string text;
    if (!right) {
      EXPECT_FALSE(year.ValidateHW1File(name, code, text)) << name;
      EXPECT_EQ(code, 3001) << name;
      continue;
    }
    // It goes on to the file, which is not there.
    EXPECT_EQ(error_number([&, n = name] { year.ValidateHW1File(n, code, text); }), number(ErrorNumber::FileNotFound))
        << name;
    EXPECT_EQ(code, 0) << name;
    EXPECT_EQ(text, "No error");
  }
}

}  // namespace
}  // namespace tarn::test
