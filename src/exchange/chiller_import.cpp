#include "exchange/chiller_import.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <nlohmann/json.hpp>
#include <numeric>

#include "base/value.h"
#include "plant/chiller.h"

namespace tarn {
namespace {

using Json = nlohmann::ordered_json;

constexpr double kLeavingWater = 44, kEnteringAir = 95, kEnteringWater = 85;  // F
constexpr double kWattsPerTon = 3516.85284207, kWattsPerKW = 1000;
constexpr double kGpmPerCubicMetre = 15850.323;  // a second

double fahrenheit(double kelvin) { return kelvin * 1.8 - 459.67; }
double kelvin(double fahrenheit) { return (fahrenheit + 459.67) / 1.8; }

std::string shown(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", value);
  return text;
}

[[noreturn]] void refuse(const std::string& text) { fail(ErrorNumber::UnknownFormat, text); }

struct Axis {
  std::string name;
  std::vector<double> values;
  size_t stride = 1;

  bool is(std::string_view what) const { return name.find(what) != std::string::npos; }
};

/// Where a value lies between two neighbours of an axis.
struct Place {
  size_t low = 0, high = 0;
  double weight = 0;  // of the higher one
};

/// A value at the end of an axis may be rounded in the file; hundredths of a kelvin are.
Place place_on(const Axis& axis, double value) {
  constexpr double kRounding = 0.01;
  if (value > axis.values.back() - kRounding && value < axis.values.back() + kRounding) value = axis.values.back();
  if (value > axis.values.front() - kRounding && value < axis.values.front() + kRounding) value = axis.values.front();
  const auto above = std::lower_bound(axis.values.begin(), axis.values.end(), value);
  if (above == axis.values.end() || (above == axis.values.begin() && *above != value)) {
    refuse("its " + axis.name + " goes from " + shown(fahrenheit(axis.values.front())) + " to " +
           shown(fahrenheit(axis.values.back())) + " F, which does not reach the " + shown(fahrenheit(value)) +
           " F that is needed");
  }
  const auto high = static_cast<size_t>(above - axis.values.begin());
  if (*above == value) return {high, high, 0};
  return {high - 1, high, (value - axis.values[high - 1]) / (axis.values[high] - axis.values[high - 1])};
}

/// The cooling map: its axes, the last varying fastest, and its values.
class Map {
 public:
  Map(const Json& cooling, std::vector<std::string>& notes) : lookup_(cooling.at("lookup_variables")) {
    for (const auto& [name, values] : cooling.at("grid_variables").items()) {
      axes_.push_back({name, values.get<std::vector<double>>()});
      const auto& list = axes_.back().values;
      if (list.empty() || std::adjacent_find(list.begin(), list.end(), std::greater_equal<>()) != list.end())
        refuse("the values of " + name + " are not in ascending order");
    }
    size_t size = 1;
    for (auto axis = axes_.rbegin(); axis != axes_.rend(); ++axis) {
      axis->stride = size;
      size *= axis->values.size();
    }
    for (const char* name : {"input_power", "net_evaporator_capacity", "operation_state"}) {
      if (name == std::string_view("operation_state") && !lookup_.contains(name)) continue;
      if (lookup_.at(name).size() != size)
        refuse(std::string(name) + " has " + std::to_string(lookup_.at(name).size()) + " values, where its grid has " +
               std::to_string(size));
    }
    leaving_ = &axis("evaporator_liquid_leaving_temperature");
    stages_ = &axis("compressor_sequence_number");
    const auto is_entering = [](const Axis& a) { return a.is("condenser") && a.is("entering") && a.is("temperature"); };
    const auto entering = std::find_if(axes_.begin(), axes_.end(), is_entering);
    const auto dry_bulb =
        std::find_if(axes_.begin(), axes_.end(), [](const Axis& a) { return a.is("entering_drybulb"); });
    if (entering == axes_.end() && dry_bulb == axes_.end()) refuse("it has no entering temperature of the condenser");
    entering_ = dry_bulb != axes_.end() ? &*dry_bulb : &*entering;
    leaving_at_ = place_on(*leaving_, kelvin(kLeavingWater));
    fix_others(notes);
  }

  const Axis& entering() const { return *entering_; }
  const Axis& stages() const { return *stages_; }
  bool air_cooled() const { return entering_->is("air"); }

  /// The value of a variable at 44 F leaving water, by the places on the two axes that are left.
  double at(const char* variable, size_t row, size_t stage) const {
    const Json& values = lookup_.at(variable);
    const size_t base = fixed_ + row * entering_->stride + stage * stages_->stride;
    const double low = values.at(base + leaving_at_.low * leaving_->stride).get<double>();
    const double high = values.at(base + leaving_at_.high * leaving_->stride).get<double>();
    const double value = low + (high - low) * leaving_at_.weight;
    if (std::abs(value) > 1e12) refuse(std::string(variable) + " of " + shown(value) + " W is not a possible value");
    return value;
  }

  /// Points of the slice that are not in normal operation.
  int not_normal() const {
    const auto states = lookup_.find("operation_state");
    if (states == lookup_.end()) return 0;
    int count = 0;
    for (size_t row = 0; row < entering_->values.size(); ++row) {
      for (size_t stage = 0; stage < stages_->values.size(); ++stage) {
        const size_t base = fixed_ + row * entering_->stride + stage * stages_->stride;
        for (const size_t place : {leaving_at_.low, leaving_at_.high}) {
          if (states->at(base + place * leaving_->stride) != "NORMAL") {
            ++count;
            break;
          }
        }
      }
    }
    return count;
  }

  /// The design value of an axis that a chiller's map does not have; 0 where the file has no such axis.
  double fixed_value(std::string_view what, std::string_view quantity) const {
    for (const Axis& a : axes_) {
      if (a.is(what) && a.is(quantity)) return a.values[fixed_place(a)];
    }
    return 0;
  }

 private:
  const Axis& axis(std::string_view name) const {
    const auto found = std::find_if(axes_.begin(), axes_.end(), [name](const Axis& a) { return a.name == name; });
    if (found == axes_.end()) refuse("its cooling map has no " + std::string(name));
    return *found;
  }

  /// Flows at their highest, which is design; pressure nearest to sea level; others in the middle.
  static size_t fixed_place(const Axis& a) {
    if (a.is("flow")) return a.values.size() - 1;
    if (a.is("pressure")) {
      const auto farther = [](double one, double other) { return std::abs(one - 101325) < std::abs(other - 101325); };
      return static_cast<size_t>(std::min_element(a.values.begin(), a.values.end(), farther) - a.values.begin());
    }
    return a.values.size() / 2;
  }

  void fix_others(std::vector<std::string>& notes) {
    for (const Axis& a : axes_) {
      if (&a == leaving_ || &a == stages_ || &a == entering_) continue;
      fixed_ += fixed_place(a) * a.stride;
      if (a.values.size() == 1 && a.is("liquid") && a.is("flow")) continue;  // the design flow
      notes.push_back(a.name + ", which is held at " + shown(a.values[fixed_place(a)]) +
                      (a.values.size() > 1 ? ": its other values" : ""));
    }
  }

  const Json& lookup_;
  std::vector<Axis> axes_;
  const Axis *leaving_ = nullptr, *entering_ = nullptr, *stages_ = nullptr;
  Place leaving_at_;
  size_t fixed_ = 0;
};

/// At most this many places of an axis, evenly, both ends included.
std::vector<size_t> chosen(const Axis& axis, size_t most, std::vector<std::string>& notes) {
  std::vector<size_t> all(axis.values.size());
  std::iota(all.begin(), all.end(), size_t{0});
  if (all.size() <= most) return all;
  notes.push_back(std::to_string(all.size() - most) + " of the " + std::to_string(all.size()) + " values of " +
                  axis.name + ", as the map has " + std::to_string(most));
  std::vector<size_t> some;
  for (size_t i = 0; i < most; ++i) some.push_back((i * (all.size() - 1) + (most - 1) / 2) / (most - 1));
  return some;
}

void fill_mode(CHL_OperatingMode& mode, const Map& map, std::vector<std::string>& notes) {
  const auto rows = chosen(map.entering(), kMapRows, notes), stages = chosen(map.stages(), kMapColumns, notes);
  static_cast<OperatingModeRecord&>(mode) = {};
  mode.SetNumRows(static_cast<int16_t>(rows.size()));
  mode.SetNumColumns(static_cast<int16_t>(stages.size()));
  mode.ColumnDataType = CHL_MapDataTypes::DT_CHILLER_UNLOADING_STAGES;
  for (size_t c = 0; c < stages.size(); ++c) {
    const double stage = map.stages().values[stages[c]];
    if (stage < 1 || stage > INT16_MAX || stage != std::floor(stage))
      refuse("compressor_sequence_number " + shown(stage) + " is not a stage number");
    mode.MapColumnHeading.items[c] = static_cast<int16_t>(stage);
  }
  for (size_t r = 0; r < rows.size(); ++r) {
    mode.MapRowHeading.items[r] = static_cast<float>(fahrenheit(map.entering().values[rows[r]]));
    for (size_t c = 0; c < stages.size(); ++c) {
      const int row = static_cast<int>(r) + 1, column = static_cast<int>(c) + 1;
      mode.MapCapacity(row, column) =
          static_cast<float>(map.at("net_evaporator_capacity", rows[r], stages[c]) / kWattsPerTon);
      mode.MapPower(row, column) = static_cast<float>(map.at("input_power", rows[r], stages[c]) / kWattsPerKW);
    }
  }
  // Stages count from the lowest capacity to the highest.
  const double design = map.air_cooled() ? kEnteringAir : kEnteringWater;
  const size_t full = map.stages().values.size() - 1;
  const Place place = place_on(map.entering(), kelvin(design));
  const auto at_design = [&](const char* variable) {
    const double low = map.at(variable, place.low, full), high = map.at(variable, place.high, full);
    return low + (high - low) * place.weight;
  };
  mode.FLLeavingWaterTemp = static_cast<float>(kLeavingWater);
  mode.FLEnteringTemp = static_cast<float>(design);
  mode.FLCapacity = static_cast<float>(at_design("net_evaporator_capacity") / kWattsPerTon);
  mode.FLPower = static_cast<float>(at_design("input_power") / kWattsPerKW);
  mode.FLPowerUnits = CHL_InputPower::InputPower_Absolute;
  mode.EvapFlow = static_cast<float>(map.fixed_value("evaporator", "flow") * kGpmPerCubicMetre);
  if (!map.air_cooled()) mode.CondFlow = static_cast<float>(map.fixed_value("condenser", "flow") * kGpmPerCubicMetre);
}

std::string text_at(const Json& json, const char* key) {
  return json.is_object() && json.contains(key) && json.at(key).is_string() ? json.at(key).get<std::string>() : "";
}

/// As much of a text as the field has room for.
template <size_t N>
void take_text(Text<N>& field, const std::string& text, const std::string& what, std::vector<std::string>& notes) {
  try {
    field = text;
    if (field.trimmed() != trimmed(text)) notes.push_back("the end of " + what + " \"" + text + "\"");
  } catch (const Error&) {  // a character that code page 1252 lacks
    field = "";
    notes.push_back(what + " \"" + text + "\"");
  }
}

/// By what the file says of the compressor. Where it says nothing, a scroll, which has the smallest machines.
CHL_ChillerTypes type_of(const Json& product, bool air_cooled, std::vector<std::string>& notes) {
  const std::string compressor = text_at(product, "compressor_type");
  if (compressor.empty())
    notes.push_back("compressor_type, which the file does not tell: the type is taken as a scroll");
  using enum CHL_ChillerTypes;
  if (compressor == "CENTRIFUGAL" && !air_cooled) return CT_WATER_COOLED_CENTRIFUGAL;
  if (compressor == "SCREW" || compressor == "ROTARY")
    return air_cooled ? CT_AIR_COOLED_PACKAGED_SCREW : CT_WATER_COOLED_ROTARY_SCREW;
  if (compressor == "RECIPROCATING")
    return air_cooled ? CT_AIR_COOLED_PACKAGED_RECIPROCATING : CT_WATER_COOLED_PACKAGED_RECIPROCATING;
  return air_cooled ? CT_AIR_COOLED_PACKAGED_SCROLL : CT_WATER_COOLED_PACKAGED_SCROLL;
}

void fill_record(ChillerRecord& record, const Json& text, const Map& map, const CHL_OperatingMode& mode,
                 std::vector<std::string>& notes) {
  const Json none = Json::object();
  const Json& metadata = text.at("metadata");
  const Json& description = text.contains("description") ? text.at("description") : none;
  const Json& product = description.contains("product_information") ? description.at("product_information") : none;
  std::string name = text_at(product, "model_number");
  if (name.empty()) name = text_at(metadata, "description");
  take_text(record.Name, name, "the name", notes);
  take_text(record.Notes, "ASHRAE 205 " + text_at(metadata, "id"), "the identifier", notes);
  const std::string condenser = text_at(text.at("performance"), "condenser_type");
  if (!condenser.empty() && (condenser == "AIR") != map.air_cooled())
    notes.push_back("condenser_type, which does not fit the map; the map's temperature is taken");
  record.SourceFluid = map.air_cooled() ? CHL_SourceFluids::AirSource : CHL_SourceFluids::WaterSource;
  record.FunctionType = CHL_FunctionTypes::FT_CoolingOnly;
  record.ChillerType = type_of(product, map.air_cooled(), notes);
  record.DesInputSource = record.PerfMapSource = CHL_DataSourceTypes::IS_PUBLIC_IMPORTED_DATA;
  record.AutoSize = false;
  record.FuelType = CHL_FuelTypes::CFT_ELECTRIC;
  record.DXFCUOM = CHL_DXFCUOM::DXFC_UOM_Relative;
  record.MinECWT = mode.MapRowHeading(1);
  record.HotGasBypass = product.contains("hot_gas_bypass_installed") && product.at("hot_gas_bypass_installed") == true;
  // Capacity of the lowest stage over that of the highest, in the row nearest to full load.
  int row = 1;
  for (int r = 1; r <= mode.NumRows(); ++r) {
    if (std::abs(mode.MapRowHeading(r) - mode.FLEnteringTemp) < std::abs(mode.MapRowHeading(row) - mode.FLEnteringTemp))
      row = r;
  }
  const float most = mode.MapCapacity(row, int{mode.NumColumns()});
  record.MinUnloading = most > 0 ? 100 * mode.MapCapacity(row, 1) / most : 0;
}

/// Notes the keys that are not in the list of those taken over.
void note_others(const Json& object, const std::string& where, std::initializer_list<std::string_view> taken,
                 std::vector<std::string>& notes) {
  for (const auto& [key, value] : object.items()) {
    if (std::find(taken.begin(), taken.end(), key) == taken.end()) notes.push_back(where + key);
  }
}

/// What a chiller's record has no place for.
void note_the_rest(const Json& text, const Map& map, std::vector<std::string>& notes) {
  const Json& performance = text.at("performance");
  note_others(text, "", {"metadata", "description", "performance"}, notes);
  note_others(text.at("metadata"), "metadata: ",
              {"data_model", "schema", "schema_version", "id", "description", "data_timestamp", "data_version"}, notes);
  if (text.contains("description")) {
    note_others(text.at("description"), "description: ", {"product_information"}, notes);
    if (text.at("description").contains("product_information")) {
      note_others(text.at("description").at("product_information"),
                  "product_information: ", {"model_number", "compressor_type", "hot_gas_bypass_installed"}, notes);
    }
  }
  note_others(performance, "", {"performance_map_cooling", "condenser_type"}, notes);
  note_others(performance.at("performance_map_cooling").at("lookup_variables"),
              "performance_map_cooling: ", {"input_power", "net_evaporator_capacity", "operation_state"}, notes);
  if (const int points = map.not_normal(); points > 0)
    notes.push_back("operation_state: " + std::to_string(points) + " points of the map are not NORMAL");
  notes.push_back("other leaving water temperatures than 44 F");
  notes.push_back("IPLV, which the file does not have");
}

}  // namespace

std::vector<std::string> import_chiller(CHL_Chiller& chiller, const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) fail(ErrorNumber::FileNotFound, "Cannot read " + path + ".");
  std::vector<std::string> notes;
  try {
    const Json text = Json::parse(file);
    const std::string schema = text_at(text.at("metadata"), "schema");
    if (schema != "RS0001") refuse("its schema is \"" + schema + "\", where a chiller's is RS0001");
    const std::string model = text_at(text.at("metadata"), "data_model");
    if (!model.empty() && model != "ASHRAE_205") refuse("its data model is \"" + model + "\", not ASHRAE_205");
    const Json& performance = text.at("performance");
    const Map map(performance.at("performance_map_cooling"), notes);
    CHL_OperatingMode mode;
    fill_mode(mode, map, notes);
    ChillerRecord record{};
    fill_record(record, text, map, mode, notes);
    note_the_rest(text, map, notes);
    static_cast<ChillerRecord&>(chiller) = record;
    static_cast<OperatingModeRecord&>(chiller.CoolingMode) = mode;
    for (CHL_OperatingMode* other : {&chiller.HeatRecoveryMode, &chiller.HeatingMode})
      static_cast<OperatingModeRecord&>(*other) = {};
  } catch (const std::ios_base::failure&) {
    fail(ErrorNumber::FileNotFound, "Cannot read " + path + ".");
  } catch (const nlohmann::json::exception& error) {
    refuse(path + " is not a chiller in the JSON form of ASHRAE 205: " + error.what());
  } catch (const Error& error) {
    const std::string_view what = error.what();
    throw Error(error.number(), error.source(), path + ": " + std::string(what) + (what.ends_with('.') ? "" : "."));
  }
  return notes;
}

}  // namespace tarn
