#include "tarn/chiller_import.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <numeric>

#include "exchange/chiller_ratings.h"
#include "exchange/cooling_grid.h"
#include "exchange/json_lines.h"
#include "plant/chiller_map.h"
#include "reflect/json_text.h"
#include "tarn/base/value.h"
#include "tarn/chiller.h"

namespace tarn {
namespace {

constexpr double kLeavingWater = 44, kEnteringAir = 95, kEnteringWater = 85;  // F
constexpr double kGpmPerCubicMetre = 15850.323;                               // a second
constexpr size_t kLargestFile = 16'000'000;

double fahrenheit(double kelvin) { return kelvin * 1.8 - 459.67; }
double kelvin(double fahrenheit) { return (fahrenheit + 459.67) / 1.8; }

// ---- full load and the map

/// At most this many places of an axis, evenly, both ends included.
std::vector<size_t> chosen(const CoolingGrid::Axis& axis, size_t most, NotCarriedOver& left) {
  std::vector<size_t> all(axis.values.size());
  std::iota(all.begin(), all.end(), size_t{0});
  if (all.size() <= most) return all;
  left.push_back(std::to_string(all.size() - most) + " of the " + std::to_string(all.size()) + " values of " +
                 axis.name + " (the map has " + std::to_string(most) + ")");
  std::vector<size_t> some;
  for (size_t i = 0; i < most; ++i) some.push_back((i * (all.size() - 1) + (most - 1) / 2) / (most - 1));
  return some;
}

void fill_map(CHL_OperatingMode& mode, const CoolingGrid& grid, NotCarriedOver& left) {
  const auto rows = chosen(grid.entering(), kMapRows, left), stages = chosen(grid.stages(), kMapColumns, left);
  mode.SetNumRows(static_cast<int16_t>(rows.size()));
  mode.SetNumColumns(static_cast<int16_t>(stages.size()));
  mode.ColumnDataType = CHL_MapDataTypes::DT_CHILLER_UNLOADING_STAGES;
  for (size_t c = 0; c < stages.size(); ++c) {
    const double stage = grid.stages().values[stages[c]];
    if (stage < 1 || stage > INT16_MAX || stage != std::floor(stage))
      refuse_map(grid.stages().name + " " + short_number(stage) + " is no stage");
    mode.MapColumnHeading.items[c] = static_cast<int16_t>(stage);
  }
  for (size_t r = 0; r < rows.size(); ++r) {
    const double entering = grid.entering().values[rows[r]];
    mode.MapRowHeading.items[r] = static_cast<float>(fahrenheit(entering));
    for (size_t c = 0; c < stages.size(); ++c) {
      const int row = static_cast<int>(r) + 1, column = static_cast<int>(c) + 1;
      const auto point = grid.at(kelvin(kLeavingWater), entering, stages[c]);
      mode.MapCapacity(row, column) = static_cast<float>(point.watts_cooling / 1000 / kKWPerTon);
      mode.MapPower(row, column) = static_cast<float>(point.watts_input / 1000);
    }
  }
}

void fill_full_load(CHL_OperatingMode& mode, const CoolingGrid& grid) {
  const double entering = grid.by_air() ? kEnteringAir : kEnteringWater;
  const auto point = grid.at(kelvin(kLeavingWater), kelvin(entering), grid.stages().values.size() - 1);
  mode.FLLeavingWaterTemp = static_cast<float>(kLeavingWater);
  mode.FLEnteringTemp = static_cast<float>(entering);
  mode.FLCapacity = static_cast<float>(point.watts_cooling / 1000 / kKWPerTon);
  mode.FLPower = static_cast<float>(point.watts_input / 1000);
  mode.FLPowerUnits = CHL_InputPower::InputPower_Absolute;
  const auto gpm = [&grid](const char* axis) { return static_cast<float>(grid.held_at(axis) * kGpmPerCubicMetre); };
  mode.EvapFlow = gpm("evaporator_liquid_volumetric_flow_rate");
  if (!grid.by_air()) mode.CondFlow = gpm("condenser_liquid_volumetric_flow_rate");
}

// ---- other leaving water

/// y = 1 + a x + b x2, by least squares; b is 0 where there are fewer than two places beside 0.
struct Correction {
  double a = 0, b = 0;
  double at(double x) const { return 1 + a * x + b * x * x; }
};

Correction fitted(const std::vector<std::pair<double, double>>& points) {
  double xx = 0, xxx = 0, xxxx = 0, xy = 0, xxy = 0;
  for (const auto& [x, y] : points) {
    xx += x * x, xxx += x * x * x, xxxx += x * x * x * x, xy += x * (y - 1), xxy += x * x * (y - 1);
  }
  if (points.size() < 2) return xx > 0 ? Correction{xy / xx, 0} : Correction{};
  const double determinant = xx * xxxx - xxx * xxx;
  return {(xy * xxxx - xxy * xxx) / determinant, (xxy * xx - xy * xxx) / determinant};
}

/// From full load at the leaving temperatures of the file.
void fill_correction(CHL_OperatingMode& mode, const CoolingGrid& grid, std::vector<std::string>& said) {
  const size_t full = grid.stages().values.size() - 1;
  const double entering = kelvin(mode.FLEnteringTemp);
  const auto base = grid.at(kelvin(kLeavingWater), entering, full);
  std::vector<std::pair<double, double>> capacity, power;
  for (const double leaving : grid.leaving().values) {
    const double x = fahrenheit(leaving) - kLeavingWater;
    if (std::abs(x) < 0.1) continue;
    const auto point = grid.at(leaving, entering, full);
    capacity.emplace_back(x, point.watts_cooling / base.watts_cooling);
    power.emplace_back(x, point.watts_input / base.watts_input);
  }
  if (capacity.empty()) return;
  const Correction of_capacity = fitted(capacity), of_power = fitted(power);
  mode.TempCapCoeffA = static_cast<float>(of_capacity.a), mode.TempCapCoeffB = static_cast<float>(of_capacity.b);
  mode.TempPwrCoeffA = static_cast<float>(of_power.a), mode.TempPwrCoeffB = static_cast<float>(of_power.b);
  const auto worst = [](const Correction& correction, const std::vector<std::pair<double, double>>& points) {
    double most = 0;
    for (const auto& [x, y] : points) most = std::max(most, 100 * std::abs(correction.at(x) / y - 1));
    return fixed(most, 1) + " %";
  };
  said.push_back("Other leaving water, " + fixed(fahrenheit(grid.leaving().values.front()), 0) + " to " +
                 fixed(fahrenheit(grid.leaving().values.back()), 0) + " F: corrected at full load within " +
                 worst(of_capacity, capacity) + " of the map's capacity and " + worst(of_power, power) +
                 " of its power.");
}

// ---- the record

/// As much of a text as there is room for.
template <size_t N>
void take_text(Text<N>& field, const std::string& text, const std::string& what, NotCarriedOver& left) {
  try {
    field = text;
    if (field.trimmed() != trimmed(text)) left.push_back("the end of " + what + " \"" + text + "\"");
  } catch (const Error&) {  // a character that the code page has not
    field = "";
    left.push_back(what + " \"" + text + "\"");
  }
}

/// A description up to its colon; of a longer one the last words, in which machines of one source differ.
std::string short_name(const std::string& description, size_t room) {
  std::string name = description.substr(0, description.find(':'));
  if (name.empty()) name = description;
  if (name.size() <= room) return name;
  const size_t word = name.find(' ', name.size() - room - 1);
  return word == std::string::npos ? name : name.substr(word + 1);
}

struct MachineType {
  CHL_ChillerTypes code;
  std::string words;  // what the code does not say, for the notes
};

/// Without a compressor the scroll, whose machines are the smallest.
MachineType machine_type(const Json& product, const Json& performance, bool air_cooled, NotCarriedOver& left) {
  using enum CHL_ChillerTypes;
  static constexpr struct {
    const char* compressor;
    CHL_ChillerTypes water, air;
    const char *beside_water, *beside_air;
  } kTypes[]{{"CENTRIFUGAL", CT_WATER_COOLED_CENTRIFUGAL, CT_AIR_COOLED_PACKAGED_SCREW, "", "centrifugal"},
             {"SCREW", CT_WATER_COOLED_ROTARY_SCREW, CT_AIR_COOLED_PACKAGED_SCREW, "", ""},
             {"ROTARY", CT_WATER_COOLED_ROTARY_SCREW, CT_AIR_COOLED_PACKAGED_SCREW, "rotary", "rotary"},
             {"RECIPROCATING", CT_WATER_COOLED_PACKAGED_RECIPROCATING, CT_AIR_COOLED_PACKAGED_RECIPROCATING, "", ""},
             {"SCROLL", CT_WATER_COOLED_PACKAGED_SCROLL, CT_AIR_COOLED_PACKAGED_SCROLL, "", ""}};
  const std::string compressor = text_at(product, "compressor_type");
  const auto* row = std::find_if(std::begin(kTypes), std::end(kTypes),
                                 [&](const auto& type) { return compressor == type.compressor; });
  if (row == std::end(kTypes)) {
    left.push_back(compressor.empty() ? "compressor_type (the file does not tell it; taken as a scroll)"
                                      : "compressor_type \"" + compressor + "\" (taken as a scroll)");
    --row;
  }
  MachineType type{air_cooled ? row->air : row->water, air_cooled ? row->beside_air : row->beside_water};
  const std::string condenser = text_at(performance, "condenser_type");
  const bool evaporative = condenser == "EVAPORATIVE";
  if (evaporative) type.words = "evaporative" + (type.words.empty() ? "" : ", " + type.words);
  if (!condenser.empty() && (evaporative || condenser == "AIR") != air_cooled)
    left.push_back("condenser_type \"" + condenser + "\" (the map's entering temperature says otherwise)");
  return type;
}

void fill_record(ChillerRecord& record, const Json& text, const CoolingGrid& grid, const CHL_OperatingMode& mode,
                 NotCarriedOver& left) {
  const Json& metadata = group_at(text, "metadata");
  const Json product = optional_group(optional_group(text, "description"), "product_information");
  const std::string model = text_at(product, "model_number"), described = text_at(metadata, "description");
  if (model.empty()) {
    const std::string name = short_name(described, record.Name.width);
    take_text(record.Name, name, "the name", left);
    if (name != described) left.push_back("the rest of the description \"" + described + "\"");
  } else {
    take_text(record.Name, model, "the name", left);
  }
  const MachineType type = machine_type(product, group_at(text, "performance"), grid.by_air(), left);
  take_text(record.Notes, type.words + (type.words.empty() ? "" : "; ") + "ASHRAE 205 " + text_at(metadata, "id"),
            "the identifier", left);
  record.SourceFluid = grid.by_air() ? CHL_SourceFluids::AirSource : CHL_SourceFluids::WaterSource;
  record.FunctionType = CHL_FunctionTypes::FT_CoolingOnly;
  record.ChillerType = type.code;
  record.DesInputSource = record.PerfMapSource = CHL_DataSourceTypes::IS_PUBLIC_IMPORTED_DATA;
  record.AutoSize = false;
  record.FuelType = CHL_FuelTypes::CFT_ELECTRIC;
  record.DXFCUOM = CHL_DXFCUOM::DXFC_UOM_Relative;
  if (!grid.by_air()) left.emplace_back("MinECWT (the file does not have it; 0 F is no limit)");
  record.HotGasBypass = product.contains("hot_gas_bypass_installed") && product.at("hot_gas_bypass_installed") == true;
  // The lowest stage, of the highest, in the row nearest to full load.
  const auto& headings = mode.MapRowHeading.items;
  const auto nearest = std::min_element(headings.begin(), headings.begin() + mode.NumRows(), [&](float a, float b) {
    return std::abs(a - mode.FLEnteringTemp) < std::abs(b - mode.FLEnteringTemp);
  });
  const int row = static_cast<int>(nearest - headings.begin()) + 1;
  record.MinUnloading = 100 * mode.MapCapacity(row, 1) / mode.MapCapacity(row, int{mode.NumColumns()});
}

/// Keys that are not among those with a place.
/// In alphabetical order, whatever the order of the file.
void note_others(const Json& object, const std::string& where, std::initializer_list<std::string_view> taken,
                 NotCarriedOver& left) {
  const auto known = static_cast<ptrdiff_t>(left.size());
  for (const auto& [key, value] : object.items()) {
    if (std::find(taken.begin(), taken.end(), key) == taken.end()) left.push_back(where + key);
  }
  std::sort(left.begin() + known, left.end());
}

void note_the_rest(const Json& text, const CoolingGrid& grid, const std::string& iplv_from, NotCarriedOver& left) {
  const Json& performance = group_at(text, "performance");
  const Json description = optional_group(text, "description");
  note_others(text, "", {"metadata", "description", "performance"}, left);
  note_others(group_at(text, "metadata"), "",
              {"data_model", "schema", "schema_version", "id", "description", "data_timestamp", "data_version"}, left);
  note_others(description, "",
              {"product_information", "rating_ahri_550_590", iplv_from == "iplv_si" ? "rating_ahri_551_591" : ""},
              left);
  note_others(optional_group(description, "product_information"), "",
              {"model_number", "compressor_type", "hot_gas_bypass_installed"}, left);
  note_others(optional_group(description, "rating_ahri_550_590"),
              "rating_ahri_550_590: ", {"net_refrigerating_capacity", "input_power", "cop", "iplv_ip"}, left);
  note_others(
      performance, "",
      {"performance_map_cooling", "condenser_type", "cycling_degradation_coefficient", "compressor_speed_control_type"},
      left);
  note_others(group_at(group_at(performance, "performance_map_cooling"), "lookup_variables"), "",
              {"input_power", "net_evaporator_capacity", "operation_state"}, left);
  grid.note(left);
}

std::string text_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string text;
  for (std::array<char, 1 << 16> piece; file.read(piece.data(), piece.size()) || file.gcount() > 0;) {
    text.append(piece.data(), static_cast<size_t>(file.gcount()));
    if (text.size() > kLargestFile)
      refuse_map("it is larger than a chiller's map can be: more than " + std::to_string(kLargestFile / 1'000'000) +
                 " MB");
  }
  if (!file.eof()) fail(ErrorNumber::FileNotFound, "Cannot read " + path + ".");
  return text;
}

std::vector<std::string> take(CHL_Chiller& chiller, const Json& text) {
  if (!text.is_object()) refuse_map("it is no chiller in the JSON form of ASHRAE 205");
  const Json& metadata = group_at(text, "metadata");
  const std::string schema = text_at(metadata, "schema"), model = text_at(metadata, "data_model");
  if (schema != "RS0001") refuse_map("its schema is \"" + schema + "\", where a chiller's is RS0001");
  if (!model.empty() && model != "ASHRAE_205") refuse_map("its data model is \"" + model + "\", not ASHRAE_205");
  const Json& performance = group_at(text, "performance");
  const CoolingGrid grid(group_at(performance, "performance_map_cooling"));
  std::vector<std::string> said;
  NotCarriedOver left;
  CHL_Chiller made;
  fill_map(made.CoolingMode, grid, left);
  fill_full_load(made.CoolingMode, grid);
  fill_record(made, text, grid, made.CoolingMode, left);
  const StatedRating stated = stated_by(text);
  tell_full_load(made.CoolingMode, stated, said);
  fill_iplv(made, performance, stated, said, left);
  fill_correction(made.CoolingMode, grid, said);
  note_the_rest(text, grid, stated.iplv_from, left);
  std::string line = "Not carried over: ";
  for (size_t i = 0; i < left.size(); ++i) line += (i == 0 ? "" : "; ") + left[i];
  if (!left.empty()) said.push_back(line + ".");

  static_cast<ChillerRecord&>(chiller) = made;
  static_cast<OperatingModeRecord&>(chiller.CoolingMode) = made.CoolingMode;
  for (CHL_OperatingMode* other : {&chiller.HeatRecoveryMode, &chiller.HeatingMode})
    static_cast<OperatingModeRecord&>(*other) = {};
  return said;
}

}  // namespace

std::vector<std::string> import_chiller(CHL_Chiller& chiller, const std::string& path) {
  std::string why;
  try {
    const std::string text = text_of(path);
    return take(chiller, read_json(text));
  } catch (const Error& error) {
    if (error.number() == static_cast<int>(ErrorNumber::FileNotFound)) throw;
    why = error.what();
  } catch (const Json::exception& error) {
    why = error.what();
  }
  refuse_map(path + ": " + why + (why.ends_with('.') ? "" : "."));
}

}  // namespace tarn
