#include "tarn/chiller_import.h"

#include <cmath>
#include <map>
#include <nlohmann/json.hpp>

#include "plant/chiller_case.h"
#include "reflect/json_text.h"

namespace tarn {
namespace {
using test::bytes, test::kOwn, test::kMode;
using ChillerImportTest = test::ChillerTest;

// A map of our own in the JSON form: a capacity and an input per watt of cooling that are quadratic in both
// temperatures, so that what lies between four points is known exactly.

constexpr const char *kLeaving = "evaporator_liquid_leaving_temperature", *kStage = "compressor_sequence_number",
                     *kAir = "condenser_air_entering_drybulb_temperature",
                     *kWater = "condenser_liquid_entering_temperature",
                     *kFlow = "evaporator_liquid_volumetric_flow_rate",
                     *kHumidity = "condenser_air_entering_relative_humidity";

using Grid = std::vector<std::pair<std::string, std::vector<double>>>;
using Point = std::map<std::string, double>;
using Lines = std::vector<std::string>;

double watts_cooling(Point at) {
  const double warm = at[kAir] + at[kWater] - 280, cold = at[kLeaving] - 270;
  return 310 * at[kStage] * (20 + cold - cold * cold / 99 - warm * warm / 150) * (1 + at[kFlow] + at[kHumidity]);
}
double input_per_watt(Point at) {
  const double warm = at[kAir] + at[kWater] - 280, cold = at[kLeaving] - 270;
  return (0.1 + warm / 200 + warm * warm / 9000 - cold / 300) * (1 + at[kStage] / 10) * (1 + at[kFlow]);
}
double watts_in(Point at) { return watts_cooling(at) * input_per_watt(at); }

/// The axes stand in the text as in the grid; the values lie in the standard's order.
Json text_of(const Grid& grid) {
  Json axes = Json::object(), in = Json::array(), cooling = Json::array();
  Grid order;
  size_t size = 1;
  for (const char* name : {kFlow, kLeaving, kWater, kAir, kHumidity, kStage, "other"}) {
    for (const auto& axis : grid) {
      if (axis.first == name) order.push_back(axis);
    }
  }
  for (const auto& [name, values] : grid) {
    axes[name] = values;
    size *= values.size();
  }
  for (size_t i = 0; i < size; ++i) {
    Point at;
    size_t rest = i;  // the last axis varies fastest
    for (auto axis = order.rbegin(); axis != order.rend(); rest /= axis++->second.size())
      at[axis->first] = axis->second[rest % axis->second.size()];
    in.push_back(watts_in(at));
    cooling.push_back(watts_cooling(at));
  }
  const Json values{{"input_power", in}, {"net_evaporator_capacity", cooling}};
  return {{"metadata", {{"schema", "RS0001"}, {"description", "Numbers of our own, none of a maker's"}}},
          {"performance",
           {{"performance_map_cooling", {{"grid_variables", axes}, {"lookup_variables", values}}},
            {"compressor_speed_control_type", "CONTINUOUS"}}}};
}

double kelvin(double fahrenheit) { return (fahrenheit - 32) * 5 / 9 + 273.15; }

/// What lies on the straight line between the values of an axis around `x`; by four points the curve itself.
template <typename F>
double between(const std::vector<double>& axis, double x, F value) {
  if (axis.size() >= 4) return value(x);
  const auto above = std::find_if(axis.begin() + 1, axis.end() - 1, [x](double v) { return v >= x; });
  return (value(above[-1]) * (above[0] - x) + value(above[0]) * (x - above[-1])) / (above[0] - above[-1]);
}

constexpr double kTon = 12000 * 1055.05585262 / 3600, kGallon = 0.003785411784;  // W, m3

void expect_converted(const CHL_OperatingMode& mode, const Grid& grid) {
  std::map<std::string, std::vector<double>> axes(grid.begin(), grid.end());
  const auto& stages = axes[kStage];
  const std::string warm = axes.count(kAir) ? kAir : kWater;
  const double flow = axes.count(kFlow) ? axes[kFlow].back() : 0, design = warm == kAir ? 95 : 85,
               humidity = axes.count(kHumidity) ? 0.45 : 0;
  const auto expect = [](double got, double want) { EXPECT_NEAR(got, want, std::abs(want) * 0x1p-22); };
  const auto at = [&](auto f, double temperature, double stage) {
    return between(axes[warm], temperature, [&](double t) {
      return between(axes[kLeaving], kelvin(44), [&](double leaving) {
        return f({{kLeaving, leaving}, {warm, t}, {kStage, stage}, {kFlow, flow}, {kHumidity, humidity}});
      });
    });
  };
  const auto expect_point = [&](double tons, double kilowatts, double temperature, double stage) {
    const double watts = at(watts_cooling, temperature, stage);
    expect(tons, watts / kTon);
    expect(kilowatts, watts * at(input_per_watt, temperature, stage) / 1000);
  };
  expect_point(mode.FLCapacity, mode.FLPower, kelvin(design), stages.back());
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
      expect_point(mode.MapCapacity(r, c), mode.MapPower(r, c), temperature, stage);
    }
  }
  // Four leaving temperatures hold a parabola.
  for (const double leaving : axes[kLeaving]) {
    if (axes[kLeaving].size() < 4) break;
    const double x = (leaving - kelvin(44)) * 1.8;
    const auto full = [&](auto f, double t) {
      return f({{kLeaving, t}, {warm, kelvin(design)}, {kStage, stages.back()}, {kFlow, flow}, {kHumidity, humidity}});
    };
    EXPECT_NEAR(1 + mode.TempCapCoeffA * x + mode.TempCapCoeffB * x * x,
                full(watts_cooling, leaving) / full(watts_cooling, kelvin(44)), 1e-5);
    EXPECT_NEAR(1 + mode.TempPwrCoeffA * x + mode.TempPwrCoeffB * x * x,
                full(watts_in, leaving) / full(watts_in, kelvin(44)), 0.01);
  }
}

const Grid kAirCooled{{kLeaving, {278, 284}}, {kAir, {300, 308.5, 315}}, {kStage, {1, 2}}};
const Grid kSmooth{{kStage, {1, 2, 3, 4}}, {kAir, {284, 292, 300, 308, 316}}, {kLeaving, {275, 279, 283, 287}}};

TEST_F(ChillerImportTest, AnImportedMapIsThatOfAConversionByHandAndSaysWhatItLeft) {
  const std::string no_iplv = "IPLV (the file states none, and its map does not have the temperatures to compute one)";
  const struct {
    Grid grid;
    Lines left;
  } cases[]{{kAirCooled, {no_iplv}},
            {kSmooth, {}},
            {{{kStage, {1, 2, 3}},
              {kFlow, {0.01, 0.02, 0.03}},
              {kWater, {290, kelvin(85), 310}},
              {kLeaving, {279, 285, 287}}},
             {"MinECWT (the file does not have it; 0 F is no limit)",
              std::string(kFlow) + " (held at 0.03, not its other values)"}},
            {{{kHumidity, {0.2, 0.45, 0.8}},
              {kAir, {290, 293, 296, 299, 302, 305, 308, 311, 314, 317, 320, 323}},
              {kLeaving, {275, kelvin(44), 280}},
              {kStage, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21}}},
             {"2 of the 12 values of " + std::string(kAir) + " (the map has 10)",
              "1 of the 21 values of " + std::string(kStage) + " (the map has 20)", no_iplv,
              std::string(kHumidity) + " (held at 0.45, not its other values)"}}};
  const std::string path = folder / "map.json";
  for (const auto& c : cases) {
    test::write_bytes(path, json_text(text_of(c.grid)));
    const Lines said = import_chiller(*chiller, path);
    chiller->Save();
    auto loaded = project.NewChiller();
    loaded->Load(chiller->Index());
    EXPECT_TRUE(bytes(*loaded) == bytes(*chiller));
    expect_converted(loaded->CoolingMode, c.grid);
    EXPECT_EQ(loaded->SourceFluid.raw, loaded->CoolingMode.FLEnteringTemp == 95 ? 1 : 2);
    EXPECT_EQ(loaded->MinECWT, 0);
    EXPECT_TRUE(bytes(*loaded).substr(kOwn + kMode) == std::string(2 * kMode, '\0'));
    // All that is left stands in one line, and nothing else.
    Lines left = c.left;
    left.emplace_back("the rest of the description \"Numbers of our own, none of a maker's\"");
    left.emplace_back("compressor_type (the file does not tell it; taken as a scroll)");
    size_t size = std::string("Not carried over: .").size() + 2 * (left.size() - 1);
    for (const std::string& each : left) {
      EXPECT_NE(said.back().find(each), std::string::npos) << each << '\n' << said.back();
      size += each.size();
    }
    EXPECT_EQ(said.back().size(), size) << said.back();
  }
}

/// Tons per kW of the smooth map, entering air and fraction of full load; below its first stage it cycles.
double smooth_cop(double air, double load, double cycling_loss) {
  const auto point = [](double f, double stage) {
    return Point{{kLeaving, kelvin(44)}, {kAir, kelvin(f)}, {kStage, stage}};
  };
  const double stage = load * watts_cooling(point(95, 4)) / watts_cooling(point(air, 1));
  const double loss = stage < 1 ? 1 + cycling_loss * (1 - stage) : 1;
  return 1 / (input_per_watt(point(air, std::max(stage, 1.0))) * loss);
}

TEST_F(ChillerImportTest, ImportTakesTheStatedPartLoadValueElseComputesItAndSaysHowFarTheMapIs) {
  const auto by_map = [](double loss) {
    return 0.01 * smooth_cop(95, 1, loss) + 0.42 * smooth_cop(80, 0.75, loss) + 0.45 * smooth_cop(65, 0.5, loss) +
           0.12 * smooth_cop(55, 0.25, loss);
  };
  const double map = by_map(0.13), full = smooth_cop(95, 1, 0);
  const std::string path = folder / "map.json", words = "/metadata/description",
                    ip = "/description/rating_ahri_550_590/", si = "/description/rating_ahri_551_591/";
  const auto number = [](const char* format, double value) {
    char text[40];
    std::snprintf(text, sizeof text, format, value);
    return std::string(text);
  };
  const auto rounded = [&](double value) { return std::stod(number("%.6g", value)); };
  const double close = rounded(map * 1.05), eer = rounded(close * 3.412142), kw = rounded(3.516853 / close);
  const std::string off = "; the map gives a COP of " + number("%.3f", map) + " (-4.8 %).";
  const struct {
    Json::json_pointer at;
    Json value;
    double cop;
    std::string says;
  } cases[]{
      {Json::json_pointer(words), "no rating", map, "computed from the map by AHRI 550/590; the file states none."},
      {Json::json_pointer("/performance/cycling_degradation_coefficient"), 0.5, by_map(0.5), "computed from the map"},
      {Json::json_pointer(words), "9 ton, 2.9 COP, " + number("%.6g", close) + " IPLV chiller", close,
       "from the description: " + number("%.6g", close) + off},
      {Json::json_pointer(ip + "iplv_ip"), close, close, "from iplv_ip: " + number("%.6g", close) + off},
      {Json::json_pointer(ip + "iplv_ip"), eer, close,
       "from iplv_ip: " + number("%.6g", eer) + ", read as Btu/Wh" + off},
      {Json::json_pointer(si + "iplv_si"), kw, close,
       "from iplv_si: " + number("%.6g", kw) + ", read as kW/ton" + off}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.at.to_string() + json_text(c.value));
    Json text = text_of(kSmooth);
    text[c.at] = c.value;
    test::write_bytes(path, json_text(text));
    const Lines said = import_chiller(*chiller, path);
    EXPECT_NEAR(3.516853 / chiller->IPLV, c.cop, 2e-3 * c.cop);
    EXPECT_TRUE(said[1].starts_with("IPLV: ") && said[1].find(c.says) != std::string::npos) << said[1];
    EXPECT_EQ(said.back().find("IPLV ("), std::string::npos) << said.back();
  }
  Json text = text_of(kSmooth);
  for (const auto& [ratio, told_off] : {std::pair(1.02, "+2.0"), {0.98, "-2.0"}, {1.0002, "0.0"}, {0.9998, "0.0"}}) {
    text[Json::json_pointer(ip + "cop")] = rounded(full / ratio);
    test::write_bytes(path, json_text(text));
    const std::string told = import_chiller(*chiller, path)[0];
    EXPECT_NE(told.find("the stated COP is " + number("%.6g", rounded(full / ratio)) + " (map " + told_off + " %)."),
              std::string::npos)
        << told;
  }
}

TEST_F(ChillerImportTest, ImportKeepsTheTypeAndTellsMachinesOfOneSourceApart) {
  using enum CHL_ChillerTypes;
  const struct {
    const char *compressor, *condenser, *description;
    CHL_ChillerTypes type;
    const char *name, *notes;
  } cases[]{
      {"CENTRIFUGAL", "LIQUID", "Handbook 2022 appendix J curve set 'A': 0-150 ton", CT_WATER_COOLED_CENTRIFUGAL,
       "2022 appendix J curve set 'A'", "ASHRAE 205 7"},
      {"ROTARY", "LIQUID", "Handbook 2022 appendix J curve set 'B': 0-150 ton", CT_WATER_COOLED_ROTARY_SCREW,
       "2022 appendix J curve set 'B'", "rotary; ASHRAE 205 7"},
      {"RECIPROCATING", "AIR", "Curve set C: all", CT_AIR_COOLED_PACKAGED_RECIPROCATING, "Curve set C", "ASHRAE 205 7"},
      {"CENTRIFUGAL", "EVAPORATIVE", "Set D", CT_AIR_COOLED_PACKAGED_SCREW, "Set D",
       "evaporative, centrifugal; ASHRAE 205 7"}};
  const std::string path = folder / "map.json";
  for (const auto& c : cases) {
    SCOPED_TRACE(c.description);
    Grid grid = kAirCooled;
    if (c.condenser == std::string("LIQUID")) grid[1] = {kWater, {290, 300, 310}};
    Json text = text_of(grid);
    text["metadata"]["description"] = c.description;
    text["metadata"]["id"] = "7";
    text["performance"]["condenser_type"] = c.condenser;
    text["description"]["product_information"]["compressor_type"] = c.compressor;
    test::write_bytes(path, json_text(text));
    const std::string left = import_chiller(*chiller, path).back();
    EXPECT_EQ(CHL_ChillerTypes{chiller->ChillerType}, c.type);
    EXPECT_EQ(chiller->Name.trimmed(), c.name);
    EXPECT_EQ(chiller->Notes.trimmed(), c.notes);
    EXPECT_EQ(left.find("_type"), std::string::npos) << left;
  }
}

TEST_F(ChillerImportTest, WhatIsNoMapIsRefusedAndTheChillerStays) {
  const std::string leaving = kLeaving, air = kAir, watts = " W; allowed are values above 0, up to 1e9.";
  const Json good = text_of(kAirCooled);
  const auto with = [&](const std::string& pointer, const Json& value) {
    Json text = good;
    text[Json::json_pointer(pointer)] = value;
    return json_text(text);
  };
  const auto with_axis = [&](size_t place, const std::pair<std::string, std::vector<double>>& axis) {
    Grid grid = kAirCooled;
    if (place < grid.size()) grid[place] = axis;
    if (place == grid.size()) grid.push_back(axis);
    return json_text(text_of(grid));
  };
  const std::string map = "/performance/performance_map_cooling/", grid = map + "grid_variables/",
                    lookup = map + "lookup_variables/", power = lookup + "input_power/3";
  const struct {
    std::string text, says;
  } cases[]{
      {with("/metadata/schema", "RS0002"), ": its schema is \"RS0002\", where a chiller's is RS0001."},
      {with("/metadata", {{"id", "7"}}), ": its schema is \"\", where a chiller's is RS0001."},
      {with("/metadata/data_model", "OTHER"), ": its data model is \"OTHER\", not ASHRAE_205."},
      {"[1, 2]", ": it is no chiller in the JSON form of ASHRAE 205."},
      {json_text(good).substr(0, 500), ": line 1: the text is not JSON: "},
      {with("/performance", 3), ": it has no \"performance\" with named values."},
      {with("/metadata/notes", {{"x", 1}, {"X", 2}}), ": line 1: the key \"X\" appears twice."},
      {std::string(1'000'000, '['), ": line 1: the text nests deeper than 32 levels."},
      {std::string(16'000'001, ' '), ": it is larger than a chiller's map can be: more than 16 MB."},
      {with(map + "lookup_variables", {{"net_evaporator_capacity", Json::array()}}),
       ": net_evaporator_capacity has 0 values, where its grid has 12."},
      {with_axis(0, {"other", {1, 2}}), ": its cooling map has an axis that the standard has not: other."},
      {with_axis(0, {"other", {1}}), ": its cooling map has no " + leaving + "."},
      {with_axis(1, {"other", {1}}), ": its cooling map has no entering temperature of the condenser's air or water."},
      {with_axis(2, {"other", {1}}), ": its cooling map has no compressor_sequence_number."},
      {with_axis(3, {kWater, {290}}),
       ": its cooling map has entering temperatures of both air and water of the "
       "condenser."},
      {with(lookup + "input_power/12", 1), ": input_power has 13 values, where its grid has 12."},
      {with(power, nullptr), ": input_power is no list of numbers."},
      {with(power, 0), ": value 4 of input_power is 0" + watts},
      {with(power, 1e300), ": value 4 of input_power is 1e+300" + watts},
      {with(lookup + "net_evaporator_capacity/0", -5), ": value 1 of net_evaporator_capacity is -5" + watts},
      {with(lookup + "operation_state", Json::array({"NORMAL"})),
       ": operation_state has 1 values, where its grid has 12."},
      {with("/description/rating_ahri_550_590/cop", -1), ": cop is -1; allowed are numbers above 0."},
      {with(grid + kAir, {300, 300, 315}), ": the values of " + air + " do not ascend."},
      {with(grid + kLeaving, Json::array()), ": the values of " + leaving + " do not ascend."},
      {with(grid + kLeaving, {280, 284}),
       ": its " + leaving + " goes from 44.33 to 51.53 F, which leaves out the 44 F that are needed."},
      {with(grid + kLeaving, {270, 279}),
       ": its " + leaving + " goes from 26.33 to 42.53 F, which leaves out the 44 F that are needed."},
      {with(grid + kAir, {290, 300, 308}),
       ": its " + air + " goes from 62.33 to 94.73 F, which leaves out the 95 F that are needed."},
      {with(grid + kStage, {1, 70000}), ": compressor_sequence_number 70000 is no stage."}};
  const std::string path = folder / "map.json";
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text.substr(0, 300));
    test::write_bytes(path, c.text);
    refused([&] { import_chiller(*chiller, path); }, path + c.says);
  }
  refused([&] { import_chiller(*chiller, folder.path); }, "Cannot read " + folder.path + ".");
}

}  // namespace
}  // namespace tarn
