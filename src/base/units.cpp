#include "tarn/base/units.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <unordered_map>

#include "base/nearest.h"
#include "tarn/base/error.h"

namespace tarn {
namespace {

// ---- base units, by definition in SI units (NIST Special Publication 811, 2008 edition, appendix B)

/// Powers of metre, kilogram, second, kelvin, radian and person.
using Dimension = std::array<int, 6>;
constexpr Dimension kNone{}, kLength{1}, kArea{2}, kVolume{3}, kMass{0, 1}, kTime{0, 0, 1}, kTemperature{0, 0, 0, 1},
    kAngle{0, 0, 0, 0, 1}, kPersons{0, 0, 0, 0, 0, 1}, kForce{1, 1, -2}, kEnergy{2, 1, -2}, kPower{2, 1, -3},
    kFlow{3, 0, -1}, kPressure{-1, 1, -2};

using Exact = long double;                                               // so that 12 in are 1 ft to the last digit
constexpr Exact kFoot = 0.3048L, kInch = 0.0254L, kPound = 0.45359237L;  // exact
constexpr Exact kGravity = 9.80665L;                                     // exact
constexpr Exact kBtu = 1055.05585262L;                                   // exact: International Table
constexpr Exact kHour = 3600, kMinute = 60, kDay = 86400;                // exact
constexpr Exact kGallon = 231 * kInch * kInch * kInch;                   // exact: US, for liquids
constexpr Exact kCubicFoot = kFoot * kFoot * kFoot;                      // exact
constexpr Exact kHorsepower = 550 * kFoot * kPound * kGravity;           // exact: mechanical, 550 ft.lbf/s
constexpr Exact kPsi = kPound * kGravity / (kInch * kInch);              // exact
constexpr Exact kWaterColumn = 1000 * kGravity;                          // Pa/m, conventional water
constexpr Exact kMercuryColumn = 3386.389L / kInch;                      // Pa/m, conventional mercury
constexpr Exact kTonOfRefrigeration = 12000 * kBtu / kHour;              // exact
constexpr Exact kRankine = 5 / Exact{9}, kZeroC = 273.15L, kZeroF = 459.67L * kRankine;  // exact

/// What a unit of temperature counts: degrees from a zero of its own, differences alone, or either.
enum class Scale : uint8_t { Ratio, Points, Steps };

struct BaseUnit {
  std::string_view spellings;  // the first is the usual one
  Dimension dimension;
  Exact factor;
  Scale scale = Scale::Ratio;
  Exact zero = 0;  // its own zero, in kelvin
};

constexpr BaseUnit kBaseUnits[]{
    {"ft|foot|feet", kLength, kFoot},
    {"in|inch|inches", kLength, kInch},
    {"m|metre|metres|meter|meters", kLength, 1},
    {"mm", kLength, 0.001L},
    {"cm", kLength, 0.01L},
    {"km", kLength, 1000},
    {"sqft|sq ft|sf", kArea, kFoot* kFoot},
    {"cu ft|cuft", kVolume, kCubicFoot},
    {"gal|gallon|gallons", kVolume, kGallon},
    {"L|liter|liters|litre|litres", kVolume, 0.001L},
    {"mL", kVolume, 1e-6L},
    {"lb|lbs|lbm|pound|pounds", kMass, kPound},
    {"gr|grain|grains", kMass, kPound / 7000},
    {"kg", kMass, 1},
    {"g", kMass, 0.001L},
    {"hr|h|hrs|hour|hours", kTime, kHour},
    {"min|minute|minutes", kTime, kMinute},
    {"s|sec|second|seconds", kTime, 1},
    {"day|days|d", kTime, kDay},
    {"F|degF|deg F", kTemperature, kRankine, Scale::Points, kZeroF},
    {"C|degC|deg C", kTemperature, 1, Scale::Points, kZeroC},
    {"delta F|deltaF", kTemperature, kRankine, Scale::Steps},
    {"delta C|deltaC", kTemperature, 1, Scale::Steps},
    {"K|kelvin", kTemperature, 1},
    {"R|rankine", kTemperature, kRankine},
    {"deg|degree|degrees", kAngle, 3.14159265358979323846L / 180},
    {"rad", kAngle, 1},
    {"people|person|persons", kPersons, 1},
    {"%|percent|per cent", kNone, 0.01L},
    {"ppm", kNone, 1e-6L},
    {"Btu", kEnergy, kBtu},
    {"kBtu|kiloBtu", kEnergy, 1000 * kBtu},
    {"MMBtu", kEnergy, 1e6L * kBtu},
    {"J", kEnergy, 1},
    {"kJ", kEnergy, 1000},
    {"MJ", kEnergy, 1e6L},
    {"GJ", kEnergy, 1e9L},
    {"Wh", kEnergy, kHour},
    {"kWh", kEnergy, 1000 * kHour},
    {"MWh", kEnergy, 1e6L * kHour},
    {"W|watt|watts", kPower, 1},
    {"kW", kPower, 1000},
    {"MW", kPower, 1e6L},
    {"Btuh", kPower, kBtu / kHour},
    {"MBH|mbh", kPower, 1000 * kBtu / kHour},
    {"tons|ton", kPower, kTonOfRefrigeration},
    {"bhp|hp", kPower, kHorsepower},
    {"ACH", {0, 0, -1}, 1 / kHour},  // air changes an hour
    {"CFM", kFlow, kCubicFoot / kMinute},
    {"gpm", kFlow, kGallon / kMinute},
    {"Pa", kPressure, 1},
    {"kPa", kPressure, 1000},
    {"bar", kPressure, 1e5L},
    {"mbar|hPa", kPressure, 100},
    {"psia|psi", kPressure, kPsi},
    {"in. wg|in wg|in.wg|inwg|in. w.g.|in w.g.|in. w.c.|in w.c.|in. wc|in wc|in.wc|inwc|in. H2O|in H2O|inH2O",
     kPressure, kInch* kWaterColumn},
    {"ft wg|ft. wg|ftwg|ft w.g.|ft. w.g.|ft w.c.|ft wc|ftwc|ft H2O|ftH2O", kPressure, kFoot* kWaterColumn},
    {"in. Hg|in Hg|inHg", kPressure, kInch* kMercuryColumn},
    {"N", kForce, 1},
    {"lbf", kForce, kPound* kGravity},
};

// ---- the other system

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

// ---- reading

struct Unit {
  Dimension dimension{};
  Exact factor = 1;
  Scale scale = Scale::Ratio;
  Exact zero = 0;
};

/// Letters of either case, but for a first m or M: milli is not mega.
bool spells(std::string_view spelling, std::string_view text) {
  return same_word(spelling, text) && (spelling.front() == text.front() || std::tolower(spelling.front()) != 'm');
}

bool is_letter(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }

/// The base unit with the longest spelling at the beginning of a text.
const BaseUnit* first_unit(std::string_view text, size_t& length) {
  const BaseUnit* found = nullptr;
  length = 0;
  for (const BaseUnit& unit : kBaseUnits) {
    for (std::string_view left = unit.spellings; !left.empty();) {
      const size_t bar = std::min(left.find('|'), left.size());
      const std::string_view spelling = left.substr(0, bar);
      left.remove_prefix(std::min(bar + 1, left.size()));
      if (spelling.size() <= length || spelling.size() > text.size()) continue;
      const bool ends =
          spelling.size() == text.size() || !is_letter(spelling.back()) || !is_letter(text[spelling.size()]);
      if (!ends || !spells(spelling, text.substr(0, spelling.size()))) continue;
      found = &unit;
      length = spelling.size();
    }
  }
  return found;
}

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  std::optional<Unit> whole() {
    Unit unit;
    if (!expression(unit, 0) || at_ != text_.size() || !std::isfinite(unit.factor) || unit.factor == 0)
      return std::nullopt;
    return unit;
  }

 private:
  static constexpr int kDeepest = 4;          // brackets
  static constexpr int kGreatestPower = 100;  // of a dimension

  char next() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  void skip_blanks() {
    while (next() == ' ') ++at_;
  }

  /// Factors up to the end or the closing bracket.
  bool expression(Unit& unit, int depth) {
    int sign = 1;
    for (bool first = true;; first = false) {
      skip_blanks();
      Unit factor;
      if (!this->factor(factor, depth) || !multiply(unit, factor, sign, first)) return false;
      skip_blanks();
      const char c = next();
      if (c == '\0' || c == ')') return true;
      if (c == '/') sign = -1;
      if (c == '/' || c == '.' || c == '*') ++at_;
    }
  }

  bool factor(Unit& unit, int depth) {
    if (next() == '(') {
      ++at_;
      if (depth == kDeepest || !expression(unit, depth + 1) || next() != ')') return false;
      ++at_;
      unit.scale = Scale::Ratio;
      unit.zero = 0;
    } else if (next() == '1') {
      ++at_;
      return true;
    } else {
      size_t length = 0;
      const BaseUnit* base = first_unit(text_.substr(at_), length);
      if (!base) return false;
      at_ += length;
      unit = {base->dimension, base->factor, base->scale, base->zero};
    }
    return power(unit);
  }

  /// "2", "^2", "-1".
  bool power(Unit& unit) {
    const bool marked = next() == '^';
    if (marked) ++at_;
    const bool minus = next() == '-';
    if (minus) ++at_;
    if (std::isdigit(static_cast<unsigned char>(next())) == 0) return !marked && !minus;
    const int exponent = (next() - '0') * (minus ? -1 : 1);
    ++at_;
    Unit result;
    return exponent != 0 && multiply(result, unit, exponent, false) && (unit = result, true);
  }

  /// `unit` times `by` to a power. A temperature with a zero of its own stays one where it is all there is.
  static bool multiply(Unit& unit, const Unit& by, int exponent, bool first) {
    if (first && exponent == 1) {
      unit = by;
      return true;
    }
    unit.scale = Scale::Ratio;
    unit.zero = 0;
    for (size_t i = 0; i < unit.dimension.size(); ++i) {
      unit.dimension[i] += exponent * by.dimension[i];
      if (std::abs(unit.dimension[i]) > kGreatestPower) return false;
    }
    unit.factor *= std::pow(by.factor, exponent);
    return true;
  }

  std::string_view text_;
  size_t at_ = 0;
};

void replace_all(std::string& text, std::string_view what, std::string_view by) {
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
    text.replace(at, what.size(), by);
}

std::optional<Unit> read_unit(std::string_view text) {
  std::string plain(text);
  replace_all(plain, "\u00B0", "");  // degree sign
  replace_all(plain, "\u00B2", "2");
  replace_all(plain, "\u00B3", "3");
  replace_all(plain, "\u00B7", ".");
  replace_all(plain, "\u0394", "delta ");
  replace_all(plain, " per ", "/");
  return Reader(plain).whole();
}

/// A text is read once; the same few come again for every value of a table.
std::optional<Unit> unit_of(std::string_view text) {
  constexpr size_t kLongest = 60, kMost = 1000;
  if (text.empty() || text.size() > kLongest) return std::nullopt;
  thread_local std::unordered_map<std::string, std::optional<Unit>> known;
  const auto [found, added] = known.try_emplace(std::string(text));
  if (!added) return found->second;
  const auto unit = found->second = read_unit(text);
  if (known.size() > kMost) known.clear();
  return unit;
}

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
  const auto meant = unit_of(unit);
  if (!meant || meant->dimension == kNone) return nullptr;
  const auto* like = std::find_if(std::begin(kPairs), std::end(kPairs), [&](const Pair& pair) {
    const auto other = unit_of(pair.inch_pound);
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

bool is_unit(std::string_view text) { return unit_of(text).has_value(); }

double convert(double value, std::string_view from, std::string_view to) {
  const auto source = unit_of(from), target = unit_of(to);
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
  const auto target = unit_of(unit);
  if (!target) return all;
  const auto add = [&](std::string_view candidate) {
    if (fits(*unit_of(candidate), *target) && std::find(all.begin(), all.end(), candidate) == all.end())
      all.push_back(candidate);
  };
  add(unit);
  if (const Pair* pair = pair_like(unit)) add(pair->si);
  for (const Pair& pair : kPairs) {
    add(pair.inch_pound);
    add(pair.si);
  }
  for (const BaseUnit& base : kBaseUnits) add(base.spellings.substr(0, base.spellings.find('|')));
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
