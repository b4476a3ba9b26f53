#include "base/unit_text.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string>
#include <unordered_map>

#include "base/nearest.h"

namespace tarn {
namespace {

// ---- base units, by definition in SI units: NIST Special Publication 811, 2008 edition, appendix B. All are exact but
// the column of mercury, which is conventional.

constexpr Dimension kNone{}, kLength{1}, kArea{2}, kVolume{3}, kMass{0, 1}, kTime{0, 0, 1}, kTemperature{0, 0, 0, 1},
    kAngle{0, 0, 0, 0, 1}, kPersons{0, 0, 0, 0, 0, 1}, kForce{1, 1, -2}, kEnergy{2, 1, -2}, kPower{2, 1, -3},
    kFlow{3, 0, -1}, kPressure{-1, 1, -2};

constexpr Exact kFoot = 0.3048L, kInch = 0.0254L, kPound = 0.45359237L, kGravity = 9.80665L;
constexpr Exact kHour = 3600, kMinute = 60, kDay = 86400;
constexpr Exact kBtu = 1055.05585262L;  // International Table
constexpr Exact kSquareFoot = kFoot * kFoot, kCubicFoot = kFoot * kFoot * kFoot;
constexpr Exact kGallon = 231 * kInch * kInch * kInch;          // US, for liquids
constexpr Exact kHorsepower = 550 * kFoot * kPound * kGravity;  // mechanical, 550 ft.lbf/s
constexpr Exact kPsi = kPound * kGravity / (kInch * kInch);
constexpr Exact kWaterColumn = 1000 * kGravity;      // Pa/m, conventional water
constexpr Exact kMercuryColumn = 3386.389L / kInch;  // Pa/m
constexpr Exact kTonOfRefrigeration = 12000 * kBtu / kHour;
constexpr Exact kRankine = 5 / Exact{9}, kZeroC = 273.15L, kZeroF = 459.67L * kRankine;

struct BaseUnit {
  std::string_view spellings;  // the first is the usual one
  Dimension dimension;
  Exact factor;
  Scale scale = Scale::Ratio;
  Exact zero = 0;
};

constexpr BaseUnit kBaseUnits[]{
    {"ft|foot|feet", kLength, kFoot},
    {"in|inch|inches", kLength, kInch},
    {"m|metre|metres|meter|meters", kLength, 1},
    {"mm", kLength, 0.001L},
    {"cm", kLength, 0.01L},
    {"km", kLength, 1000},
    {"sqft|sq ft|sf", kArea, kSquareFoot},
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

// ---- reading

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

/// The unit before another one without a point between them, as people write below a slash: the "m" of "W/mK".
const BaseUnit* glued_unit(std::string_view text, size_t& length) {
  const size_t letters = static_cast<size_t>(std::find_if_not(text.begin(), text.end(), is_letter) - text.begin());
  for (size_t split = letters; split-- > 1;) {
    size_t after = 0;
    const BaseUnit* unit = first_unit(text.substr(0, split), length);
    if (unit && length == split && first_unit(text.substr(split), after)) return unit;
  }
  return nullptr;
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
      Unit one;
      if (!factor(one, depth, sign < 0) || !multiply(unit, one, sign, first)) return false;
      skip_blanks();
      const char c = next();
      if (c == '\0' || c == ')') return true;
      if (c == '/') sign = -1;
      if (c == '/' || c == '.' || c == '*') ++at_;
    }
  }

  bool factor(Unit& unit, int depth, bool below) {
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
      if (!base && below) base = glued_unit(text_.substr(at_), length);
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
    const Unit base = unit;
    unit = {};
    return exponent != 0 && multiply(unit, base, exponent, false);
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

}  // namespace

std::optional<Unit> unit_of_text(std::string_view text) {
  constexpr size_t kLongest = 60, kMost = 1000;
  if (text.empty() || text.size() > kLongest) return std::nullopt;
  thread_local std::unordered_map<std::string, std::optional<Unit>> known;
  const auto [found, added] = known.try_emplace(std::string(text));
  if (!added) return found->second;
  const auto unit = found->second = read_unit(text);
  if (known.size() > kMost) known.clear();
  return unit;
}

std::vector<std::string_view> base_unit_names() {
  std::vector<std::string_view> names;
  for (const BaseUnit& unit : kBaseUnits) names.push_back(unit.spellings.substr(0, unit.spellings.find('|')));
  return names;
}

}  // namespace tarn
