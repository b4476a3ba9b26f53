#include "tarn/base/units.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "base/unit_text.h"
#include "tarn/base/error.h"

namespace tarn {
namespace {

/// A unit of the files and the one that SI engineers use for it, with the decimals of each in reports.
struct Pair {
  std::string_view inch_pound, si;
  int decimals, si_decimals;
};

constexpr Pair kPairs[]{
    {"ft", "m", 0, 0},
    {"in", "mm", 2, 0},
    {"ft2", "m2", 0, 1},
    {"gal", "L", 0, 0},
    {"lb", "kg", 0, 0},
    {"lb/ft2", "kg/m2", 2, 1},
    {"lb/ft3", "kg/m3", 2, 0},
    {"lb/lb", "g/kg", 5, 2},
    {"lb/hr", "kg/hr", 1, 1},
    {"F", "C", 1, 1},
    {"delta F", "K", 1, 1},
    {"1/F", "1/K", 5, 5},
    {"1/F2", "1/K2", 7, 7},
    {"Btu/hr", "W", 0, 0},
    {"MBH", "kW", 1, 1},
    {"kBtu", "kWh", 0, 0},
    {"kBtu/day", "kWh/day", 1, 1},
    {"tons", "kW", 1, 1},
    {"ton.hr", "kWh", 1, 0},
    {"bhp", "kW", 2, 2},
    {"hp", "kW", 2, 2},
    {"Btu/lb", "kJ/kg", 1, 1},
    {"Btu/(lb.F)", "kJ/(kg.K)", 3, 3},
    {"Btu/(hr.ft2)", "W/m2", 1, 0},
    {"Btu/(ft2.day)", "Wh/(m2.day)", 0, 0},
    {"Btu/(hr.ft.F)", "W/(m.K)", 3, 3},
    {"Btu/(hr.ft2.F)", "W/(m2.K)", 3, 3},
    {"hr.ft2.F/Btu", "m2.K/W", 2, 3},
    {"Btu/(hr.gal.F)", "W/(L.K)", 3, 3},
    {"Btu/(hr.CFM.F)", "W/(K.L/s)", 3, 3},
    {"Btu/(hr.CFM)", "W/(L/s)", 0, 0},
    {"Btu/(hr.W)", "W/W", 2, 2},
    {"CFM", "L/s", 0, 0},
    {"CFM/ft2", "L/(s.m2)", 2, 2},
    {"CFM/person", "L/(s.person)", 1, 1},
    {"CFM/ton", "L/(s.kW)", 0, 1},
    {"W/CFM", "W/(L/s)", 2, 2},
    {"W/ft2", "W/m2", 2, 1},
    {"gpm", "L/s", 1, 2},
    {"gpm/ton", "L/(s.kW)", 2, 3},
    {"W/gpm", "W/(L/s)", 1, 0},
    {"gal/(person.day)", "L/(person.day)", 1, 1},
    {"ft2/ton", "m2/kW", 0, 1},
    {"ft2/person", "m2/person", 0, 1},
    {"kW/ton", "kW/kW", 2, 3},
    {"MBH/ton", "kW/kW", 2, 3},
    {"MBH/MBH", "kW/kW", 2, 3},
    {"kW/MBH", "kW/kW", 2, 3},
    {"psia", "kPa", 2, 1},
    {"in. wg", "Pa", 2, 0},
    {"ft wg", "kPa", 0, 1},
    {"%", "%", 0, 0},
    {"people", "people", 0, 0},
    {"W", "W", 0, 0},
    {"kW", "kW", 2, 2},
};

const Pair* pair_of(std::string_view unit) {
  const auto* found =
      std::find_if(std::begin(kPairs), std::end(kPairs), [&](const Pair& pair) { return pair.inch_pound == unit; });
  if (found != std::end(kPairs)) return found;
  found = std::find_if(std::begin(kPairs), std::end(kPairs), [&](const Pair& pair) { return pair.si == unit; });
  return found == std::end(kPairs) ? nullptr : found;
}

/// The same for other spellings of a unit: "in. w.c." is "in. wg", "cfm" is "CFM".
const Pair* pair_like(std::string_view unit) {
  if (const Pair* found = pair_of(unit)) return found;
  const auto meant = unit_of_text(unit);
  if (!meant || meant->dimension == Dimension{}) return nullptr;
  const auto* like = std::find_if(std::begin(kPairs), std::end(kPairs), [&](const Pair& pair) {
    const auto other = unit_of_text(pair.inch_pound);
    return other->dimension == meant->dimension && other->scale == meant->scale &&
           std::abs(other->factor / meant->factor - 1) < 1e-15L;
  });
  return like == std::end(kPairs) ? nullptr : like;
}

bool fits(const Unit& from, const Unit& to) {
  return from.dimension == to.dimension && (from.scale != Scale::Steps || to.scale != Scale::Points);
}

[[noreturn]] void refuse(std::string_view from, std::string_view to, bool is_unit) {
  std::string list;
  for (const std::string_view unit : units_that_fit(to)) list += (list.empty() ? "" : ", ") + std::string(unit);
  fail(ErrorNumber::TypeMismatch, "\"" + std::string(from.substr(0, 60)) + "\" is " +
                                      (is_unit ? "not a unit for a value in " + std::string(to) : "not a known unit") +
                                      (list.empty() ? "" : "; units that fit are " + list));
}

}  // namespace

bool is_unit(std::string_view text) { return unit_of_text(text).has_value(); }

double convert(double value, std::string_view from, std::string_view to) {
  const auto source = unit_of_text(from), target = unit_of_text(to);
  if (!target) refuse(to, "", false);
  if (!source || !fits(*source, *target)) refuse(from, to, source.has_value());
  if (from == to) return value;
  const bool steps = source->scale == Scale::Steps || target->scale == Scale::Steps;
  const Exact kelvin = value * source->factor + (steps ? 0 : source->zero);
  return static_cast<double>((kelvin - (steps ? 0 : target->zero)) / target->factor);
}

std::string_view unit_in(UnitSystem system, std::string_view unit) {
  const Pair* pair = pair_like(unit);
  if (!pair) return unit;
  if (system == UnitSystem::SI) return pair->si;
  return pair_of(unit) == pair ? pair->inch_pound : unit;  // a spelling of its own stays
}

int decimals_in(UnitSystem system, std::string_view unit) {
  constexpr int kUsual = 2;
  const Pair* pair = pair_like(unit);
  return !pair ? kUsual : system == UnitSystem::SI ? pair->si_decimals : pair->decimals;
}

std::vector<std::string_view> units_that_fit(std::string_view unit) {
  std::vector<std::string_view> all;
  const auto target = unit_of_text(unit);
  if (!target) return all;
  const auto add = [&](std::string_view candidate) {
    if (fits(*unit_of_text(candidate), *target) && std::find(all.begin(), all.end(), candidate) == all.end())
      all.push_back(candidate);
  };
  add(unit);
  if (const Pair* pair = pair_like(unit)) add(pair->si);
  for (const Pair& pair : kPairs) {
    add(pair.inch_pound);
    add(pair.si);
  }
  for (const std::string_view name : base_unit_names()) add(name);
  return all;
}

std::optional<Measured> measured_in(std::string_view text) {
  const auto trim = [&text] {
    while (text.starts_with(' ')) text.remove_prefix(1);
    while (text.ends_with(' ')) text.remove_suffix(1);
  };
  trim();
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  double value = 0;
  const auto [end, failed] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (failed != std::errc() || !std::isfinite(value)) return std::nullopt;
  text.remove_prefix(static_cast<size_t>(end - text.data()));
  trim();
  return Measured{value, text};
}

}  // namespace tarn
