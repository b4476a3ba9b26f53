#include "tarn/weather.h"

#include <charconv>

#include "storage/staleness.h"
#include "tarn/platform/workspace.h"
#include "tarn/reflect/describe.h"
#include "weather/record_file.h"

namespace tarn {
namespace {

const std::string& named(const std::string& file, std::string_view property) {
  if (file.empty())
    fail(ErrorNumber::FileNotFound, "The weather has no file to work on; set " + std::string(property) + ".");
  return file;
}

/// Replaces the table's one row by a new one.
void replace_row(Database& database, std::string_view table,
                 std::initializer_list<std::pair<std::string_view, Cell>> columns) {
  Recordset rows = database.OpenRecordset("SELECT * FROM " + std::string(table));
  rows.Delete();
  rows.AddNew();
  for (const auto& [name, value] : columns) rows.Fields(name) = value;
  rows.Update();
}

/// A cell as text, numbers included.
std::string text_of(const Cell& cell) {
  if (const auto* whole = std::get_if<int64_t>(&cell)) return std::to_string(*whole);
  if (const auto* text = std::get_if<std::string>(&cell)) return *text;
  const auto* real = std::get_if<double>(&cell);
  if (!real) return {};
  char digits[32];
  return {digits, std::to_chars(std::begin(digits), std::end(digits), *real).ptr};
}

/// Without the comma that a row has before a state which is not there.
std::string city_of(std::string row) {
  const size_t last = row.find_last_not_of(", ");
  row.resize(last == std::string::npos ? 0 : last + 1);
  return row;
}

template <typename F>
void in_transaction(F work) {
  Transaction transaction;
  work();
  transaction.commit();
}

}  // namespace

WTH_Weather::WTH_Weather() {
  for (auto* name : {&DesCityName, &DesStateName, &SimCityName, &SimStateName}) *name = "";
  DesSourceCodeString = "";
  SourceTypeLabel = "";
}

Database& WTH_Weather::database() const {
  if (!database_)
    fail(ErrorNumber::ObjectNotSet, "The WTH_Weather has no database handle; give it one with SetDBHandle.");
  return *database_;
}

void WTH_Weather::Load() {
  Transaction transaction(Transaction::Purpose::Reading);
  Text<20> design_city, city;
  design_city = city_of(database().OpenRecordset("SELECT * FROM DesWeatherIndex").Fields("szDesCityName").text());
  city = database().OpenRecordset("SELECT * FROM SimWeatherIndex").Fields("szSimCityName").text();
  DesignWeather design;
  const bool has_design = read_record(design, named(DesFileName, "DesFileName"));
  const bool has_simulation = read_record<SimulationWeather>(*this, named(SimFileName, "SimFileName"));
  static_cast<DesignWeather&>(*this) = design;
  if (!has_design) DesCityName = design_city;
  if (!has_simulation) SimCityName = city;
  transaction.commit();
}

void WTH_Weather::mark_all(std::string_view table, std::string_view flag) const {
  FlagUpdate(table, flag).run(database(), {}, {"Weather", 0, DesCityName.bytes()});
}

void WTH_Weather::Save() {
  in_transaction([this] {
    replace_row(database(), "DesWeatherIndex",
                {{"szDesCityName", DesCityName.trimmed() + ", " + DesStateName.trimmed()}});
    files().update(named(DesFileName, "DesFileName"), record_bytes<DesignWeather>(*this), database_);
  });
  in_transaction([this] {
    const std::string city = SimCityName.trimmed() + " " + SourceTypeLabel.trimmed();
    replace_row(database(), "SimWeatherIndex",
                {{"szSimCityName", std::string(trimmed(city))}, {"nJanOne", cell(int{JanOne})}});
    files().update(named(SimFileName, "SimFileName"), record_bytes<SimulationWeather>(*this), database_);
  });
  in_transaction([this] {
    for (const char* table : {"AirSystemIndex", "PlantIndex"}) {
      for (const char* flag : {"bDesHasChanged", "bSimHasChanged"}) mark_all(table, flag);
    }
    mark_all("BuildingIndex", "bHasChanged");
  });
}

Ptr<WTH_Weather> WTH_Weather::Clone() const {
  database();
  auto clone = std::make_shared<WTH_Weather>();
  clone->database_ = database_;
  static_cast<DesignWeather&>(*clone) = *this;
  static_cast<SimulationWeather&>(*clone) = *this;
  return clone;
}

bool WTH_Weather::LoadSourceCodes(const std::string& database_name, const std::string& table) {
  const Ptr<Database> database = Database::open(database_name, Database::Access::Apart);
  std::vector<std::string> codes = source_codes_;
  Recordset rows = database->OpenRecordset("SELECT * FROM " + table + " ORDER BY ID ASC");
  for (; !rows.AtEof(); rows.MoveNext()) codes.push_back(text_of(rows.Fields("Description").Value()));
  source_codes_ = std::move(codes);
  return true;
}

std::string WTH_Weather::SourceCode(int index) const {
  const auto place = static_cast<size_t>(index) - 1;  // beyond every list for 0 and less
  return place < source_codes_.size() ? source_codes_[place] : std::string();
}

const ClassInfo& WTH_Weather::info() const {
  using C = WTH_Weather;
  using D = DesignWeather;
  using S = SimulationWeather;
  using M = DesignDay;
  using W = WeatherDay;
  constexpr const char* kSolar = "Btu/(hr.ft2)";
  constexpr auto kDesign = &D::DesDay;
  constexpr auto kSimulation = &S::SimDay;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&D::Region>, property<&D::DesCityName>, property<&D::DesStateName>,
      property<&D::DesLatitude>("deg"), property<&D::DesLongitude>("deg"), property<&D::DesElevation>("ft"),
      property<&D::SummerDB>("F"), property<&D::SummerWB>("F"), property<&D::DailyRange>("delta F"),
      property<&D::WinterDB>("F"), property<&D::WinterWB>("F"), property<&D::AtmosClear>,
      property<&D::DesBaromPress>("psia"), property<&D::GrdReflect>, property<&D::SoilConductivity>("Btu/(hr.ft.F)"),
      property<&D::DesTZMeridian>("deg"), property<&D::DayLightSavings>, property<&D::FirstDesMonth>,
      property<&D::FirstMonthDST>, property<&D::FirstDayDST>, property<&D::LastDesMonth>, property<&D::LastMonthDST>,
      property<&D::LastDayDST>, property<&D::DesSourceCode>, property<&D::DesSourceCodeString>,
      looked_up<&C::SourceCode, Bounds{INT16_MAX}>, property<&D::MaximumDB>("F"), property<&D::MinimumDB>("F"),
      property<&D::MaximumWB>("F"), property<&D::MinimumWB>("F"), across<kDesign, &M::DB>("F"),
      across<kDesign, &M::SH>("lb/lb"), across<kDesign, &M::IDN>(kSolar), across<kDesign, &M::IDIFF>(kSolar),
      across<kDesign, &M::ITOT>(kSolar), across<kDesign, &M::SBeamTrn>, across<kDesign, &M::SBeamAbs>,
      across<kDesign, &M::AltAngle>("deg"), across<kDesign, &M::AziAngle>("deg"), across<kDesign, &M::HrAngle>("deg"),
      across<kDesign, &M::DecAngle>("deg"), across<kDesign, &M::MaxSol>(kSolar), across<kDesign, &M::SolarMult>,
      property<&S::SimCityName>, property<&S::SimStateName>, property<&S::SimCitySelected>,
      property<&S::SimLatitude>("deg"), property<&S::SimLongitude>("deg"), property<&S::SimTZMeridian>("deg"),
      property<&S::SimElevation>("ft"), property<&S::SimBaromPress>("psia"), property<&S::SourceTypeLabel>,
      property<&S::JanOne>, property<&S::Holiday>, across<kSimulation, &W::DB>("F"),
      across<kSimulation, &W::SH>("lb/lb"), across<kSimulation, &W::IDN>(kSolar),
      across<kSimulation, &W::IDIFF>(kSolar), across<kSimulation, &W::ITOT>(kSolar), across<kSimulation, &W::SBeamTrn>,
      across<kSimulation, &W::SBeamAbs>, across<kSimulation, &W::AltAngle>("deg"),
      across<kSimulation, &W::AziAngle>("deg"), across<kSimulation, &W::HrAngle>("deg"),
      across<kSimulation, &W::DecAngle>("deg"), property<&C::SimFileName>, property<&C::SimInputFileName>,
      property<&C::DesFileName>, method<&C::GetDBHandle>, method<&C::SetDBHandle>("DB"), method<&C::Load>,
      method<&C::LoadSourceCodes>("szDatabaseName", "szTableName"), method<&C::Save>, method<&C::Clone>);
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& WTH_Stats::info() const {
  using C = WTH_Stats;
  constexpr const char* kSolar = "Btu/(ft2.day)";
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&MonthlyStatistics::MaxDB>("F"), property<&MonthlyStatistics::AvgMaxDB>("F"),
      property<&MonthlyStatistics::AvgDB>("F"), property<&MonthlyStatistics::AvgMinDB>("F"),
      property<&MonthlyStatistics::MinDB>("F"), property<&MonthlyStatistics::MaxItot>(kSolar),
      property<&MonthlyStatistics::AvgItot>(kSolar), property<&MonthlyStatistics::MinItot>(kSolar),
      property<&MonthlyStatistics::MaxKt>, property<&MonthlyStatistics::AvgKt>, property<&MonthlyStatistics::MinKt>,
      property<&MonthlyStatistics::MaxDBDay>, property<&MonthlyStatistics::MaxDBHour>,
      property<&MonthlyStatistics::MinDBDay>, property<&MonthlyStatistics::MinDBHour>,
      property<&MonthlyStatistics::MaxItotDay>, property<&MonthlyStatistics::MinItotDay>);
  static const ClassInfo info(members);
  return info;
}

}  // namespace tarn
