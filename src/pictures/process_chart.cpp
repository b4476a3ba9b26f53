// The air's path through a system on a psychrometric chart: states in order, lines between them, labels where there is
// room.
#include "pictures/process_chart.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "pictures/design_states.h"
#include "pictures/svg.h"
#include "weather/psychrometrics.h"

namespace tarn {
namespace {

using svg::label;
using svg::number;
using svg::path;
using svg::Scale;

constexpr double kPlotHigh = 440;

struct Spot {
  double x, y;
};
double distance(Spot a, Spot b) { return std::hypot(a.x - b.x, a.y - b.y); }
std::string at(Spot s) { return number(s.x) + " " + number(s.y); }

struct State {
  int point;
  double dry_bulb, ratio;  // F, lb/lb
  Spot spot{};
};

struct Box {
  double left, top, wide, high;
  Box widened(double by) const { return {left - by, top - by, wide + 2 * by, high + 2 * by}; }
  bool has(Spot s) const { return s.x > left && s.x < left + wide && s.y > top && s.y < top + high; }
  double shared(const Box& other) const {
    const double w = std::min(left + wide, other.left + other.wide) - std::max(left, other.left);
    const double h = std::min(top + high, other.top + other.high) - std::max(top, other.top);
    return w > 0 && h > 0 ? w * h : 0;
  }
};

struct Chart {
  const PsychroRecord& air;
  double pressure, top;
  std::vector<State> states;
  Scale dry_bulbs{}, ratios{};

  Chart(const PsychroRecord& states_of, double pascals, double upper);
  Spot spot(double dry_bulb, double ratio) const { return {dry_bulbs.at(dry_bulb), ratios.at(ratio)}; }
  Box frame() const { return {kChartLeft, top, kChartWide, kPlotHigh}; }
};

/// Within what a chart of comfort air can show.
bool is_drawable(const PsychroRecord& air, int point) {
  const double bulb = air.DryBulb(point), ratio = air.HumidityRatio(point);
  return is_passed(air, point) && bulb > -60 && bulb < 180 && ratio >= 0 && ratio < 0.1;
}

Chart::Chart(const PsychroRecord& states_of, double pascals, double upper)
    : air(states_of), pressure(pascals), top(upper) {
  double coldest = 60, warmest = 80, wettest = 0.008;
  for (int point = 1; point <= kAirPoints; ++point) {
    if (!is_drawable(air, point)) continue;
    states.push_back({point, air.DryBulb(point), air.HumidityRatio(point)});
    coldest = std::min(coldest, states.back().dry_bulb);
    warmest = std::max(warmest, states.back().dry_bulb);
    wettest = std::max(wettest, states.back().ratio);
  }
  dry_bulbs = svg::scale_around(coldest - 6, warmest + 6, 8, kChartLeft, kChartRight);
  ratios = svg::scale_around(0, wettest * 1.12, 8, top + kPlotHigh, top);
  for (State& state : states) state.spot = spot(state.dry_bulb, state.ratio);
}

// ---- the chart without the air

double ratio_at(const Chart& chart, double dry_bulb, double relative_humidity) {
  const double vapour = relative_humidity * saturation_pressure(celsius(dry_bulb));
  return vapour < chart.pressure ? humidity_ratio(vapour, chart.pressure) : HUGE_VAL;
}

/// A line of one relative humidity, with its number where it leaves the chart; on the upper edge only from `room`
/// on, which moves then.
std::string humidity_line(const Chart& chart, int percent, double& room) {
  std::string way;
  Spot last{kChartLeft, chart.top + kPlotHigh};
  const double steps = 240, width = (chart.dry_bulbs.most - chart.dry_bulbs.least) / steps;
  bool inside = true;
  for (int i = 0; i <= steps && inside; ++i) {
    const double bulb = chart.dry_bulbs.least + i * width, ratio = ratio_at(chart, bulb, percent / 100.0);
    inside = ratio <= chart.ratios.most;
    const Spot next = chart.spot(bulb, std::min(ratio, chart.ratios.most));
    if (!inside) {  // to the upper edge, on the line's last slope
      const double before = ratio_at(chart, bulb - width, percent / 100.0);
      const double share = std::isfinite(ratio) ? (chart.ratios.most - before) / (ratio - before) : 1;
      last = {last.x + (next.x - last.x) * share, chart.top};
    } else {
      last = next;
    }
    way += (way.empty() ? "M" : "L") + at(last);
  }
  const bool saturation = percent == 100;
  std::string out =
      path(way, std::string("fill=\"none\" stroke=\"") + (saturation ? "#555\" stroke-width=\"1.8\"" : "#d3dbe3\""));
  if (percent % 20 != 0) return out;
  const std::string text = std::to_string(percent) + " %", look = "fill=\"#8797a6\" font-size=\"11\" text-anchor=";
  if (inside) return out + label(kChartRight - 5, last.y - 5, text, look + "\"end\"");
  constexpr double kApart = 40;
  if (last.x < room) return out;
  room = last.x + kApart;
  return out + label(last.x, chart.top - 5, text, look + "\"middle\"");
}

std::string background(const Chart& chart) {
  const double bottom = chart.top + kPlotHigh;
  std::string out;
  chart.ratios.each_mark([&](double ratio) {
    out += path("M" + at({kChartLeft, chart.ratios.at(ratio)}) + "h" + number(kChartWide), "stroke=\"#eee\"");
  });
  chart.dry_bulbs.each_mark([&](double bulb) {
    const double x = chart.dry_bulbs.at(bulb);
    out += path("M" + at({x, chart.top}) + "v" + number(kPlotHigh), "stroke=\"#eee\"") +
           path("M" + at({x, bottom}) + "v5", "stroke=\"#333\"") +
           label(x, bottom + 19, number(bulb, 0), "text-anchor=\"middle\"") +
           label(x, bottom + 35, number(celsius(bulb)), "text-anchor=\"middle\" fill=\"#666\"");
  });
  double room = kChartLeft;
  for (int percent = 100; percent >= 10; percent -= 10) out += humidity_line(chart, percent, room);
  out += path(
      "M" + at({kChartLeft, chart.top}) + "v" + number(kPlotHigh) + "h" + number(kChartWide) + "v" + number(-kPlotHigh),
      "fill=\"none\" stroke=\"#333\"");
  out += label(kChartLeft - 26, bottom + 19, "dry-bulb, F", "text-anchor=\"end\"") +
         label(kChartLeft - 26, bottom + 35, "C", "text-anchor=\"end\" fill=\"#666\"");
  return out + svg::upright_axis(chart.ratios, kChartRight, 1, {"lb/lb", "g/kg", 1000, 3, 0});
}

// ---- the air

/// By the point that a line leads to: what treats outdoor air, what cools, heats, wets and moves, what takes the load.
const char* color_to(int point) {
  using enum ADL_AirPoints;
  switch (static_cast<ADL_AirPoints>(point)) {
    case CoolingCoilLeaving:
      return "#1f6fb2";
    case HeatingCoilLeaving:
      return "#d1493b";
    case HumidifierLeaving:
      return "#2a9d8f";
    case SupplyFanLeaving:
    case SupplyToZones:
      return "#777777";
    case Room:
      return "#e08a1e";
    case PlenumLeaving:
    case ReturnFanLeaving:
    case Exhaust:
      return "#8a6bb1";
    default:
      return "#5a7d3a";
  }
}

/// A line with a head in its middle, where there is room for one.
std::string way_between(Spot from, Spot to, const char* color, const char* more = "") {
  std::string out =
      path("M" + at(from) + "L" + at(to), std::string("stroke-width=\"2.2\" stroke=\"") + color + "\" " + more);
  const double length = distance(from, to);
  if (length < 36) return out;
  const Spot along{(to.x - from.x) / length, (to.y - from.y) / length};
  const auto beside = [&](double forward, double aside) {
    return Spot{(from.x + to.x) / 2 + along.x * forward - along.y * aside,
                (from.y + to.y) / 2 + along.y * forward + along.x * aside};
  };
  return out + path("M" + at(beside(7, 0)) + "L" + at(beside(-5, 5)) + "L" + at(beside(-5, -5)) + "Z",
                    std::string("fill=\"") + color + "\"");
}

/// From state to state, and from the last of the returning air to the mixed.
struct Way {
  const State *from, *to;
  bool returns;
};

std::vector<Way> ways_of(const Chart& chart) {
  std::vector<Way> all;
  const State *mixed = nullptr, *returning = nullptr;
  for (size_t i = 0; i < chart.states.size(); ++i) {
    const State& state = chart.states[i];
    if (i > 0) all.push_back({&chart.states[i - 1], &state, false});
    if (state.point == static_cast<int>(ADL_AirPoints::Mixed)) mixed = &state;
    if (state.point >= static_cast<int>(ADL_AirPoints::Room) && state.point < static_cast<int>(ADL_AirPoints::Exhaust))
      returning = &state;
  }
  if (mixed && returning) all.push_back({returning, mixed, true});
  return all;
}

/// States that lie on each other, and their label.
struct Group {
  std::vector<const State*> states;
  Box box{};
};

std::string text_of_state(const State& state) { return std::string(text_of(labels<ADL_AirPoints>, state.point)); }

std::vector<Group> groups_of(const Chart& chart) {
  constexpr double kNear = 13;
  std::vector<Group> all;
  for (const State& state : chart.states) {
    const auto near = std::ranges::find_if(all, [&](const Group& group) {
      return std::ranges::any_of(group.states, [&](const State* s) { return distance(s->spot, state.spot) < kNear; });
    });
    (near == all.end() ? all.emplace_back() : *near).states.push_back(&state);
  }
  return all;
}

constexpr double kLine = 15, kGap = 3;

/// The box of a label in a direction from its group, at a distance.
Box box_at(const Group& group, double angle, double far) {
  size_t letters = 0;
  Spot middle{0, 0};
  for (const State* state : group.states) {
    letters = std::max(letters, text_of_state(*state).size());
    middle.x += state->spot.x / static_cast<double>(group.states.size());
    middle.y += state->spot.y / static_cast<double>(group.states.size());
  }
  const double wide = 6.1 * static_cast<double>(letters) + 26;
  const double high = kLine * static_cast<double>(group.states.size()) + 4;
  const double x = middle.x + std::cos(angle) * far, y = middle.y + std::sin(angle) * far;
  return {x - wide / 2 + std::cos(angle) * wide / 2, y - high / 2 + std::sin(angle) * high / 2, wide, high};
}

Spot nearest_of(const Box& box, Spot s) {
  return {std::clamp(s.x, box.left, box.left + box.wide), std::clamp(s.y, box.top, box.top + box.high)};
}

/// What a label would hide: the frame most, other labels and states, then lines; whether it would be read as another
/// state's; how far away it would be.
double cost_of(const Chart& chart, const std::vector<Group>& groups, const Group& own, const std::vector<Way>& ways,
               const Box& box, double far) {
  double cost = far / 10 + (box.wide * box.high - box.shared(chart.frame()));
  for (const Group& other : groups) {
    if (const double shared = &other == &own ? 0 : box.widened(kGap).shared(other.box); shared > 0)
      cost += 400 + shared;
    for (const State* state : other.states) {
      const double near = distance(state->spot, nearest_of(box, state->spot));
      cost += near < 6 ? 400 : &other == &own ? 0 : std::max(0.0, 24 - near) / 2;
    }
  }
  for (const Way& way : ways) {
    for (int i = 0; i <= 40; ++i) {
      const double share = i / 40.0;
      const Spot between{way.from->spot.x + (way.to->spot.x - way.from->spot.x) * share,
                         way.from->spot.y + (way.to->spot.y - way.from->spot.y) * share};
      if (box.has(between)) cost += 12;
    }
  }
  return cost;
}

void place_labels(const Chart& chart, std::vector<Group>& groups, const std::vector<Way>& ways) {
  for (Group& group : groups) {
    double least = std::numeric_limits<double>::max();
    Box best{};
    for (const double far : {12.0, 20.0, 32.0, 48.0, 70.0, 100.0, 140.0}) {
      for (int direction = 0; direction < 16; ++direction) {
        const Box box = box_at(group, direction * std::numbers::pi / 8, far);
        const double cost = cost_of(chart, groups, group, ways, box, far);
        if (cost >= least) continue;
        least = cost;
        best = box;
      }
    }
    group.box = best;
  }
}

/// A line from a state to its label, where that is not beside it.
std::string leader(const Group& group) {
  const Box& box = group.box;
  const auto gap = [&](const State* state) { return distance(state->spot, nearest_of(box, state->spot)); };
  const State* state = *std::ranges::min_element(group.states, {}, gap);
  if (gap(state) < 14) return "";
  return path("M" + at(state->spot) + "L" + at(nearest_of(box, state->spot)), "stroke=\"#999\" stroke-width=\".8\"");
}

std::string labelled(const Group& group) {
  const Box& box = group.box;
  std::string out = "<rect x=\"" + number(box.left) + "\" y=\"" + number(box.top) + "\" width=\"" + number(box.wide) +
                    "\" height=\"" + number(box.high) + "\" rx=\"3\" fill=\"#fff\" fill-opacity=\".85\"/>\n";
  double y = box.top + 13;
  for (const State* state : group.states) {
    out += label(box.left + 20, y, std::to_string(state->point), "font-weight=\"bold\" text-anchor=\"end\"") +
           label(box.left + 25, y, text_of_state(*state));
    y += kLine;
  }
  return out;
}

std::string key(const Chart& chart) {
  std::string out;
  double y = chart.top + 10;
  for (const State& state : chart.states) {
    out += label(kKeyLeft + 18, y, std::to_string(state.point), "font-weight=\"bold\" text-anchor=\"end\"") +
           label(kKeyLeft + 26, y, text_of_state(state)) +
           label(kKeyLeft + 26, y + 15,
                 number(state.dry_bulb) + " F (" + number(celsius(state.dry_bulb)) + " C), " + number(state.ratio, 5) +
                     " lb/lb (" + number(state.ratio * 1000) + " g/kg)",
                 "fill=\"#666\" font-size=\"11\"");
    y += 33.5;
  }
  return out;
}

}  // namespace

std::string process_chart(const ADL_AirSystemDesign& design, double top) {
  const auto peak = cooling_peak(design);
  const PsychroRecord& air = peak ? design.SPAir.at(peak->month, peak->hour) : *design.SPAir.SPAirHtg;
  const Chart chart(air, pressure_of(design), top + 46);
  std::string out = label(kChartLeft, top + 4, "The air at " + (peak ? hour_text(peak) : std::string("heating design")),
                          "font-weight=\"bold\" font-size=\"14\"") +
                    background(chart);
  if (chart.states.empty()) return out + label(kKeyLeft, chart.top + 10, "no states of the air");
  const auto ways = ways_of(chart);
  auto groups = groups_of(chart);
  place_labels(chart, groups, ways);
  for (const Way& way : ways) {
    out += way_between(way.from->spot, way.to->spot, way.returns ? "#8a6bb1" : color_to(way.to->point),
                       way.returns ? "stroke-dasharray=\"5 4\"" : "");
  }
  for (const Group& group : groups) out += leader(group) + labelled(group);
  for (const State& state : chart.states) {
    out += "<circle cx=\"" + number(state.spot.x) + "\" cy=\"" + number(state.spot.y) +
           "\" r=\"4.2\" fill=\"#fff\" stroke=\"#222\" stroke-width=\"1.6\"/>\n";
  }
  return out + key(chart);
}

}  // namespace tarn
