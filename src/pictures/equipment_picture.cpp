// The curves of chillers and boilers: capacity and power of each map over the entering temperature and over the load.
#include <algorithm>
#include <cmath>

#include "base/measures.h"
#include "pictures/line_chart.h"
#include "pictures/svg.h"
#include "tarn/boiler.h"
#include "tarn/chiller.h"
#include "tarn/pictures.h"
#include "tarn/reflect/members.h"

namespace tarn {
namespace {

using svg::label;
using svg::Line;
using svg::LineChart;

constexpr double kCurveLeft = 80, kCurveWide = 270, kCurveHigh = 210, kCurveStep = 360, kCurveTop = 150,
                 kCurvePageWide = kCurveLeft + 3 * kCurveStep;

const svg::Ramp kCurveColors{{68, 1, 84}, {59, 82, 139}, {33, 145, 140}, {94, 170, 60}, {214, 150, 20}};

std::string color_of(int place, int count) {
  return svg::color_of(kCurveColors, count > 1 ? static_cast<double>(place - 1) / (count - 1) : 0);
}

/// The performance map of a mode of operation in the units that are shown.
struct Map {
  const CHL_OperatingMode& mode;
  const Measures& in;
  int rows = std::clamp<int>(mode.NumRows(), 0, kMapRows), columns = std::clamp<int>(mode.NumColumns(), 0, kMapColumns);

  std::string_view unit(std::string_view property) const { return mode.info().find(property).unit_for(mode); }
  std::string shown_unit(std::string_view property) const { return std::string(in.unit(unit(property))); }
  double entering(int row) const { return in.value(mode.MapRowHeading(row), "F"); }
  double capacity(int row, int column) const { return in.value(mode.MapCapacity(row, column), unit("MapCapacity")); }
  double power(int row, int column) const { return in.value(mode.MapPower(row, column), unit("MapPower")); }
  std::string load_text(int column) const {
    const std::string text = std::to_string(mode.MapColumnHeading(column));
    const bool stages = mode.ColumnDataType == CHL_MapDataTypes::DT_CHILLER_UNLOADING_STAGES;
    return stages ? "stage " + text : text + " %";
  }
  std::string entering_text() const { return "entering water or air, " + std::string(in.unit("F")); }

  /// A line for each load, over the entering temperature.
  std::vector<Line> by_load(double (Map::*value)(int, int) const) const {
    std::vector<Line> lines;
    for (int column = 1; column <= columns; ++column) {
      Line& line = lines.emplace_back(Line{load_text(column), color_of(column, columns), {}});
      for (int row = 1; row <= rows; ++row) line.points.push_back({entering(row), (this->*value)(row, column)});
    }
    return lines;
  }
  /// A line for each entering temperature: the power over the capacity that is delivered.
  std::vector<Line> by_temperature() const {
    std::vector<Line> lines;
    for (int row = 1; row <= rows; ++row) {
      Line& line = lines.emplace_back(Line{in.measure(mode.MapRowHeading(row), "F"), color_of(row, rows), {}});
      for (int column = 1; column <= columns; ++column)
        line.points.push_back({capacity(row, column), power(row, column)});
      std::ranges::sort(line.points, {}, &Line::Point::x);
    }
    return lines;
  }
};

std::vector<LineChart> charts_of(const Map& map, double top) {
  const std::string tons = map.shown_unit("MapCapacity"), kilowatts = map.shown_unit("MapPower");
  return {{kCurveLeft, top, kCurveWide, kCurveHigh, "Capacity", map.entering_text(), tons, false,
           map.by_load(&Map::capacity)},
          {kCurveLeft + kCurveStep, top, kCurveWide, kCurveHigh, "Power", map.entering_text(), kilowatts, true,
           map.by_load(&Map::power)},
          {kCurveLeft + 2 * kCurveStep, top, kCurveWide, kCurveHigh, "Part load", "capacity, " + tons, kilowatts, true,
           map.by_temperature()}};
}

std::string full_load(const CHL_OperatingMode& mode, const std::string& name, const Measures& in) {
  const auto told = [&](std::string_view property, double value) {
    return in.measure(value, mode.info().find(property).unit_for(mode));
  };
  return name + ": full load " + told("FLCapacity", mode.FLCapacity) + ", " + told("FLPower", mode.FLPower) +
         ", leaving " + in.measure(mode.FLLeavingWaterTemp, "F") + ", entering " + in.measure(mode.FLEnteringTemp, "F");
}

}  // namespace

std::string chiller_picture(const CHL_Chiller& chiller, UnitSystem units) {
  const Measures in(units);
  std::string content;
  double top = kCurveTop;
  const std::pair<const CHL_OperatingMode*, const char*> modes[]{{&chiller.CoolingMode, "Cooling"},
                                                                 {&chiller.HeatRecoveryMode, "Heat recovery"},
                                                                 {&chiller.HeatingMode, "Heating"}};
  for (const auto& [mode, mode_name] : modes) {
    const Map map{*mode, in};
    if (map.rows == 0 && mode->FLCapacity == 0) continue;
    content += label(kCurveLeft, top - 58, svg::escaped(full_load(*mode, mode_name, in)), "font-size=\"14\"");
    if (map.rows == 0 || map.columns == 0) {
      content += label(kCurveLeft, top - 38, "no performance map", "fill=\"#666\"");
      top += 60;
      continue;
    }
    double high = 0;
    for (const LineChart& chart : charts_of(map, top)) {
      content += drawn(chart);
      high = std::max(high, height_of(chart));
    }
    top += high + 100;
  }
  const std::string name = chiller.Name.trimmed();
  return svg::page(kCurvePageWide, top - 50, kCurveLeft, name + ": performance", name,
                   std::string(text_of(labels<CHL_ChillerTypes>, chiller.ChillerType.raw)), content);
}

std::string boiler_picture(const BLR_Boiler& boiler, UnitSystem units) {
  const Measures in(units);
  Line line{"efficiency", "#b3410f", {}};
  for (int tenth = 0; tenth <= 10; ++tenth) line.points.push_back({tenth * 10.0, boiler.BoilerEff(tenth + 1)});
  const LineChart chart{kCurveLeft, kCurveTop - 20,  2 * kCurveWide, kCurveHigh, "Part load",
                        "load, %",  "efficiency, %", true,           {line}};
  const std::string name = boiler.Name.trimmed();
  return svg::page(kCurveLeft + 2 * kCurveWide + 60, kCurveTop + height_of(chart), kCurveLeft, name + ": part load",
                   name,
                   std::string(text_of(labels<BLR_FuelTypes>, static_cast<int16_t>(boiler.FuelType()))) + ", " +
                       std::string(text_of(labels<BLR_ModelingMethods>, static_cast<int16_t>(boiler.PartLoadModel()))) +
                       "; output " + in.measure(boiler.BoilerOutput, "MBH"),
                   drawn(chart));
}

}  // namespace tarn
