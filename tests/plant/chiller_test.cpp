#include "plant/chiller.h"

#include <cmath>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "exchange/chiller_import.h"
#include "project/shipped.h"
#include "reflect/by_name.h"
#include "support/temp_project.h"

namespace tarn {
namespace {

using Json = nlohmann::ordered_json;

constexpr size_t kRecord = 5464, kOwn = 268, kMode = 1732;

std::string bytes(CHL_Chiller& chiller) {
  const ChillerRecord& own = chiller;
  std::string all(reinterpret_cast<const char*>(&own), sizeof own);
  for (CHL_OperatingMode* mode : {&chiller.CoolingMode, &chiller.HeatRecoveryMode, &chiller.HeatingMode})
    all.append(reinterpret_cast<const char*>(mode->bytes().data()), mode->bytes().size());
  return all;
}

class ChillerTest : public test::ProjectTest {
 protected:
  void SetUp() override {
    ProjectTest::SetUp();
    chiller = project.NewChiller();
    chiller->CreateDefaultByType(3, shipped);
    chiller->HeatRecoveryMode.FLCapacity = 21.0F;
    chiller->HeatingMode.FLCapacity = 22.0F;
    chiller->Save();
  }
  std::string state() {
    return bytes(*chiller) + std::to_string(chiller->Index) + test::bytes_of(project.ChillerFilename()) +
           rows("ChillerIndex");
  }

  /// The action fails with this message, or with one that begins so where it ends in a colon, and changes nothing.
  template <typename F>
  void refused(F action, const std::string& message) {
    const std::string before = state();
    const bool open = message.ends_with(": ");
    try {
      action();
      ADD_FAILURE() << "not refused: " << message;
    } catch (const Error& error) {
      EXPECT_EQ(std::string(error.what()).substr(0, open ? message.size() : std::string::npos), message);
    }
    EXPECT_TRUE(state() == before) << message;
  }

  const std::string shipped = shipped_file("chillers.dat");
  Ptr<CHL_Chiller> chiller;
};

TEST(ChillerRecords, LieAsTheirFileHasThem) {
  EXPECT_EQ(test::layout(CHL_Chiller().info()),
            "SourceFluid@30+2 Name@0+30 FunctionType@32+2 ChillerType@34+2 Notes@36+64 DesInputSource@100+2 "
            "PerfMapSource@102+2 AutoSize@104+2 FuelType@106+2 EngineEff@108+4 AvgOperatingLoss@112+4 "
            "UnitElectric@116+4 SteamHeatContent@120+4 MinECWT@124+4 MinUnloading@128+4 HotGasBypass@132+2 "
            "DXFreeCooling@134+2 DXFCUOM@136+2 HeatRecoveryMethod@138+2 MaxHeatRecovery@140+4 IPLV@144+4 "
            "DXFCDeltaT@148+40 DXFCCapacity@188+40 DXFCPower@228+40 ");
  EXPECT_EQ(test::layout(CHL_OperatingMode().info()),
            "FLLeavingWaterTemp@0+4 FLEnteringTemp@4+4 FLCapacity@8+4 FLPower@12+4 FLPowerUnits@16+2 EvapFlow@18+4 "
            "EvapFlowUnits@22+2 CondFlow@24+4 CondFlowUnits@28+2 NumRows@30+2 NumColumns@32+2 ColumnDataType@34+2 "
            "MapRowHeading@36+40 MapColumnHeading@76+40 MapCapacity@116+800 MapPower@916+800 TempPwrCoeffA@1716+4 "
            "TempPwrCoeffB@1720+4 TempCapCoeffA@1724+4 TempCapCoeffB@1728+4 ");
}

TEST_F(ChillerTest, ItsFileHoldsTheThreeModesLastAndItsRowShowsTwo) {
  chiller->HeatRecoveryMode.MapPower(2, 3) = 0.5F;
  chiller->Notes = std::string(70, 'n');
  chiller->Name = std::string(20, 'a') + std::string(16, 'b');
  chiller->FunctionType = CHL_FunctionTypes::FT_Reversible;
  float value = 1;
  for (CHL_OperatingMode* mode : {&chiller->CoolingMode, &chiller->HeatingMode}) {
    mode->EvapFlow = ++value;
    mode->CondFlow = ++value;
    mode->EvapFlowUnits = COM_FlowUOM{static_cast<int16_t>(value - 3)};
    mode->CondFlowUnits = COM_FlowUOM{static_cast<int16_t>(value - 2)};
  }
  chiller->Save();
  const std::string file = test::bytes_of(project.ChillerFilename());
  EXPECT_TRUE(file == std::string(kRecord, '\0') + bytes(*chiller));
  EXPECT_EQ(file.substr(kRecord, 32), std::string(20, 'a') + std::string(10, 'b') + std::string("\2\0", 2));
  EXPECT_EQ(file.substr(kRecord + 36, 66), std::string(64, 'n') + std::string("\1\0", 2));
  EXPECT_EQ(file.substr(kRecord + kOwn + kMode + 916 + 4 * (1 + 10 * 2), 4), std::string("\0\0\0\x3F", 4));
  std::ostringstream row;
  auto all = database->OpenRecordset("SELECT * FROM ChillerIndex");
  for (const auto& column : all.columns())
    row << column << "=" << all.Fields(column).text() << all.Fields(column).real() << " ";
  EXPECT_EQ(row.str(),
            "nIndex=1 szName=aaaaaaaaaaaaaaaaaaaabbbbbbbbbb0 nChillerType=3 nFunctionType=20 nFuelType=3 "
            "bAutoSizeCapacity=-1 fFLCapacityClg=200 fFLCapacityHtg=22 fEvapFlowClg=2 nEvapFlowUnitsClg=0 "
            "fEvapFlowHtg=4 nEvapFlowUnitsHtg=2 fCondFlowClg=3 nCondFlowUnitsClg=1 fCondFlowHtg=5 "
            "nCondFlowUnitsHTg=3 ");
}

TEST_F(ChillerTest, BadCallsSayWhyAndChangeNothing) {
  CHL_DXFCUOM unit{};
  std::vector<double> delta{1}, power{2}, capacity{3};
  const auto create = [&](int16_t type, const std::string& file) { chiller->CreateDefaultByType(type, file); };
  const auto curve = [&](int16_t option) {
    chiller->GetDXFCDefaults(CHL_DXFCOptions{option}, unit, delta, power, capacity);
  };
  const std::string none = folder / "none.dat", part = folder / "part.dat";
  test::write_bytes(part, std::string(2 * kRecord - 1, '\0'));
  const std::string types = " has no chiller type ";
  refused([&] { create(1, ""); }, "Chiller defaults file was not specified.");
  refused([&] { create(1, none); }, "Chiller defaults file was not found." + none);
  refused([&] { create(0, shipped); }, shipped + types + "0; its types are 1 to 12.");
  refused([&] { create(13, shipped); }, shipped + types + "13; its types are 1 to 12.");
  refused([&] { create(2, part); }, part + types + "2; its types are 1 to 1.");
  refused([&] { curve(0); }, "Invalid DXFC option");
  refused([&] { curve(3); }, "Invalid DXFC option");
  refused([&] { chiller->Load(7); }, "Cannot find chiller record in database for record #7");
  refused([&] { import_chiller(*chiller, none); }, "Cannot read " + none + ".");
  EXPECT_EQ(static_cast<int>(unit) + delta[0] + power[0] + capacity[0], 6);
  EXPECT_FALSE(std::filesystem::exists(none));
}

TEST_F(ChillerTest, EveryShippedTypeMeetsItsRatingAndFallsOffFromThere) {
  const std::string file = test::bytes_of(shipped);
  ASSERT_EQ(file.size(), 12 * kRecord);
  for (int16_t type = 1; type <= 12; ++type) {
    SCOPED_TRACE(type);
    chiller->CreateDefaultByType(type, shipped);
    EXPECT_TRUE(bytes(*chiller) == file.substr(kRecord * (type - 1), kRecord));
    EXPECT_EQ(chiller->ChillerType.raw, type);
    EXPECT_EQ(chiller->SourceFluid.raw, type < 10 ? 2 : 1);
    const CHL_OperatingMode& mode = chiller->CoolingMode;
    EXPECT_EQ(mode.FLEnteringTemp, type < 10 ? 85.0F : 95.0F);
    const int last = mode.NumColumns();
    EXPECT_EQ(mode.MapColumnHeading(last), 100);
    int rated = 0;
    for (int row = 1; row <= mode.NumRows(); ++row) {
      if (mode.MapRowHeading(row) == mode.FLEnteringTemp) {
        ++rated;
        EXPECT_NEAR(mode.MapCapacity(row, last), mode.FLCapacity, 1e-5 * mode.FLCapacity);
        EXPECT_NEAR(mode.MapPower(row, last), mode.FLPower, 1e-5 * mode.FLPower);
      }
      for (int column = 2; column <= last; ++column)
        EXPECT_GT(mode.MapPower(row, column), mode.MapPower(row, column - 1)) << row << " " << column;
      if (row > 1 && mode.MapRowHeading(row - 1) >= 75) {
        EXPECT_LT(mode.MapCapacity(row, last), mode.MapCapacity(row - 1, last)) << row;
      }
    }
    EXPECT_EQ(rated, 1);
  }
  for (const auto option : {CHL_DXFCOptions::DXFC_NonIntegrated, CHL_DXFCOptions::DXFC_Integrated}) {
    CHL_DXFCUOM unit{};
    std::vector<double> delta(3), power, capacity;
    chiller->GetDXFCDefaults(option, unit, delta, power, capacity);
    EXPECT_EQ(unit, CHL_DXFCUOM::DXFC_UOM_Relative);
    EXPECT_TRUE(delta.size() == 10 && power.size() == 10 && capacity.size() == 10 && capacity[9] == 1);
    for (const auto* list : {&delta, &capacity}) EXPECT_TRUE(std::is_sorted(list->begin(), list->end()));
  }
}

TEST_F(ChillerTest, CopiesKeepTheModes) {
  auto other = project.NewChiller();
  const std::string modes = bytes(*chiller).substr(kOwn);
  for (const auto& copy : {chiller->Clone(), other->Clone(1), chiller->CopyInstance()})
    EXPECT_TRUE(bytes(*copy).substr(kOwn) == modes);
  EXPECT_TRUE(bytes(*chiller->CopyInstance()) == bytes(*chiller));
  EXPECT_EQ(chiller->Clone()->Index, 0);
  other->Load(1);
  EXPECT_TRUE(bytes(*other) == bytes(*chiller));
  EXPECT_EQ(std::get<std::string>(get_property(*chiller, "Name")), "Packaged screw, water-cooled");
}

// A map of our own in the JSON form: functions of a point, which the conversion by hand takes as well.

constexpr const char *kLeaving = "evaporator_liquid_leaving_temperature", *kStage = "compressor_sequence_number",
                     *kAir = "condenser_air_entering_drybulb_temperature",
                     *kWater = "condenser_liquid_entering_temperature",
                     *kFlow = "evaporator_liquid_volumetric_flow_rate";

using Grid = std::vector<std::pair<std::string, std::vector<double>>>;
using Point = std::map<std::string, double>;

double watts_in(Point at) {
  return 9000 * at[kStage] * (at[kAir] + at[kWater] - 250 + std::pow(at[kLeaving] - 270, 2) / 99) * (2 + at[kFlow]);
}
double watts_cooling(Point at) {
  return 310 * at[kStage] * (at[kLeaving] - 250 - std::pow(at[kAir] + at[kWater] - 280, 2) / 99) * (1 + at[kFlow]);
}

Json text_of(const Grid& grid) {
  Json axes = Json::object(), in = Json::array(), cooling = Json::array();
  size_t size = 1;
  for (const auto& [name, values] : grid) {
    axes[name] = values;
    size *= values.size();
  }
  for (size_t i = 0; i < size; ++i) {
    Point at;
    size_t rest = i;  // the last axis varies fastest
    for (auto axis = grid.rbegin(); axis != grid.rend(); rest /= axis++->second.size())
      at[axis->first] = axis->second[rest % axis->second.size()];
    in.push_back(watts_in(at));
    cooling.push_back(watts_cooling(at));
  }
  const Json values{{"input_power", in}, {"net_evaporator_capacity", cooling}};
  return {{"metadata", {{"schema", "RS0001"}, {"description", "Numbers of our own, none of a maker's"}}},
          {"performance",
           {{"performance_map_cooling", {{"grid_variables", axes}, {"lookup_variables", values}}},
            {"compressor_speed_control_type", "DISCRETE"}}}};
}

double kelvin(double fahrenheit) { return (fahrenheit - 32) * 5 / 9 + 273.15; }

/// What lies on the straight line between the values of an axis around `x`.
template <typename F>
double between(const std::vector<double>& axis, double x, F value) {
  const auto above = std::find_if(axis.begin() + 1, axis.end() - 1, [x](double v) { return v >= x; });
  return (value(above[-1]) * (above[0] - x) + value(above[0]) * (x - above[-1])) / (above[0] - above[-1]);
}

void expect_converted(const CHL_OperatingMode& mode, const Grid& grid) {
  std::map<std::string, std::vector<double>> axes(grid.begin(), grid.end());
  const auto& stages = axes[kStage];
  const std::string warm = axes.count(kAir) ? kAir : kWater;
  const double flow = axes.count(kFlow) ? axes[kFlow].back() : 0, design = warm == kAir ? 95 : 85;
  constexpr double kTon = 12000 * 1055.05585262 / 3600, kGallon = 0.003785411784;  // W, m3
  const auto expect = [](double got, double want) { EXPECT_NEAR(got, want, std::abs(want) * 0x1p-23); };
  const auto at = [&](auto f, double temperature, double stage) {
    const auto slice = [&](double t) {
      return f({{kLeaving, t}, {warm, temperature}, {kStage, stage}, {kFlow, flow}});
    };
    return between(axes[kLeaving], kelvin(44), slice);
  };
  const auto full = [&](auto f) {
    return between(axes[warm], kelvin(design), [&](double t) { return at(f, t, stages.back()); });
  };
  expect(mode.FLCapacity, full(watts_cooling) / kTon);
  expect(mode.FLPower, full(watts_in) / 1000);
  expect(mode.EvapFlow, flow * 60 / kGallon);
  EXPECT_TRUE(mode.FLEnteringTemp == design && mode.FLLeavingWaterTemp == 44 && mode.FLPowerUnits.raw == 1);
  EXPECT_EQ(mode.ColumnDataType, CHL_MapDataTypes::DT_CHILLER_UNLOADING_STAGES);
  const int entering = static_cast<int>(axes[warm].size());
  ASSERT_EQ(int{mode.NumRows()}, std::min(entering, 10));
  ASSERT_EQ(int{mode.NumColumns()}, std::min(static_cast<int>(stages.size()), 20));
  for (int r = 1; r <= mode.NumRows(); ++r) {
    // All there are, or evenly thinned out with both ends.
    const auto place = static_cast<size_t>(std::lround((entering - 1.0) * (r - 1) / (mode.NumRows() - 1)));
    const double temperature = axes[warm][place];
    expect(mode.MapRowHeading(r), (temperature - 273.15) * 9 / 5 + 32);
    for (int c = 1; c <= mode.NumColumns(); ++c) {
      const double stage = mode.MapColumnHeading(c);
      EXPECT_EQ(std::count(stages.begin(), stages.end(), stage), 1);
      expect(mode.MapCapacity(r, c), at(watts_cooling, temperature, stage) / kTon);
      expect(mode.MapPower(r, c), at(watts_in, temperature, stage) / 1000);
    }
  }
}

const Grid kAirCooled{{kLeaving, {278, 284}}, {kAir, {300, 308.5, 315}}, {kStage, {1, 2}}};

TEST_F(ChillerTest, AnImportedMapIsThatOfAConversionByHandAndSaysWhatItLeft) {
  using Lines = std::vector<std::string>;
  const struct {
    Grid grid;
    Lines left;
  } cases[]{{kAirCooled, {}},
            {{{kStage, {1, 2, 3}},
              {kFlow, {0.01, 0.02, 0.03}},
              {kWater, {290, kelvin(85), 310}},
              {kLeaving, {279, 285, 287}}},
             {std::string(kFlow) + ", which is held at 0.03: its other values"}},
            {{{kAir, {290, 293, 296, 299, 302, 305, 308, 311, 314, 317, 320, 323}},
              {kLeaving, {275, kelvin(44), 280}},
              {kStage, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21}}},
             {std::string("2 of the 12 values of ") + kAir + ", as the map has 10",
              std::string("1 of the 21 values of ") + kStage + ", as the map has 20"}}};
  const std::string path = folder / "map.json";
  for (const auto& c : cases) {
    test::write_bytes(path, text_of(c.grid).dump());
    const Lines left = import_chiller(*chiller, path);
    chiller->Save();
    auto loaded = project.NewChiller();
    loaded->Load(chiller->Index);
    EXPECT_TRUE(bytes(*loaded) == bytes(*chiller));
    expect_converted(loaded->CoolingMode, c.grid);
    EXPECT_EQ(loaded->SourceFluid.raw, loaded->CoolingMode.FLEnteringTemp == 95 ? 1 : 2);
    EXPECT_EQ(loaded->Name.str(), "Numbers of our own, none of a ");
    EXPECT_TRUE(bytes(*loaded).substr(kOwn + kMode) == std::string(2 * kMode, '\0'));
    Lines expected = c.left;
    for (const char* always : {"the end of the name \"Numbers of our own, none of a maker's\"",
                               "compressor_type, which the file does not tell: the type is taken as a scroll",
                               "compressor_speed_control_type", "other leaving water temperatures than 44 F",
                               "IPLV, which the file does not have"})
      expected.emplace_back(always);
    EXPECT_EQ(left, expected);
  }
}

TEST_F(ChillerTest, WhatIsNoMapIsRefusedAndTheChillerStays) {
  const std::string none = " is not a chiller in the JSON form of ASHRAE 205: ", leaving = kLeaving, air = kAir;
  const Json good = text_of(kAirCooled);
  const auto with = [&](const std::string& pointer, const Json& value) {
    Json text = good;
    text[Json::json_pointer(pointer)] = value;
    return text.dump();
  };
  const auto renamed = [&](size_t axis) {
    Grid grid = kAirCooled;
    grid[axis].first = "other";
    return text_of(grid).dump();
  };
  const std::string map = "/performance/performance_map_cooling/", grid = map + "grid_variables/",
                    lookup = map + "lookup_variables/";
  const struct {
    std::string text, says;
  } cases[]{{with("/metadata/schema", "RS0002"), ": its schema is \"RS0002\", where a chiller's is RS0001."},
            {with("/metadata", {{"id", "7"}}), ": its schema is \"\", where a chiller's is RS0001."},
            {good.dump().substr(0, 500), none},
            {with(map + "lookup_variables", {{"net_evaporator_capacity", Json::array()}}), none},
            {renamed(0), ": its cooling map has no " + leaving + "."},
            {renamed(1), ": it has no entering temperature of the condenser."},
            {renamed(2), ": its cooling map has no compressor_sequence_number."},
            {with(lookup + "input_power/12", 1), ": input_power has 13 values, where its grid has 12."},
            {with(lookup + "net_evaporator_capacity", Json::array()),
             ": net_evaporator_capacity has 0 values, where its grid has 12."},
            {with(lookup + "input_power/3", nullptr), none},
            {with(lookup + "operation_state", Json::array({"NORMAL"})),
             ": operation_state has 1 values, where its grid has 12."},
            {with("/metadata/data_model", "OTHER"), ": its data model is \"OTHER\", not ASHRAE_205."},
            {with(grid + kAir, {300, 300, 315}), ": the values of " + air + " are not in ascending order."},
            {with(grid + kLeaving, Json::array()), ": the values of " + leaving + " are not in ascending order."},
            {with(grid + kLeaving, {280, 284}),
             ": its " + leaving + " goes from 44.33 to 51.53 F, which does not reach the 44 F that is needed."},
            {with(grid + kLeaving, {270, 279}),
             ": its " + leaving + " goes from 26.33 to 42.53 F, which does not reach the 44 F that is needed."},
            {with(grid + kAir, {290, 300, 308}),
             ": its " + air + " goes from 62.33 to 94.73 F, which does not reach the 95 F that is needed."},
            {with(grid + kStage, {1, 70000}), ": compressor_sequence_number 70000 is not a stage number."},
            {with(lookup + "input_power/3", 1e300), ": input_power of 6.97222e+299 W is not a possible value."}};
  const std::string path = folder / "map.json";
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    test::write_bytes(path, c.text);
    refused([&] { import_chiller(*chiller, path); }, path + c.says);
  }
  refused([&] { import_chiller(*chiller, folder.path); }, "Cannot read " + folder.path + ".");
}

}  // namespace
}  // namespace tarn
