#include "exchange/cooling_grid.h"

#include <algorithm>
#include <cmath>

#include "plant/chiller_map.h"
#include "tarn/base/error.h"

namespace tarn {
namespace {

// The axes in the standard's order, the last of which varies fastest. An axis without a place in a chiller's map is
// held at the value nearest to `held`: flows at their highest, which is design; 40 % is 75 F wet bulb at 95 F.
constexpr const char *kLeavingWaterAxis = "evaporator_liquid_leaving_temperature",
                     *kEnteringWaterAxis = "condenser_liquid_entering_temperature",
                     *kEnteringAirAxis = "condenser_air_entering_drybulb_temperature",
                     *kStage = "compressor_sequence_number";
constexpr struct {
  const char* name;
  double held;
} kAxes[]{{"evaporator_liquid_volumetric_flow_rate", HUGE_VAL},
          {kLeavingWaterAxis, 0},
          {"condenser_liquid_volumetric_flow_rate", HUGE_VAL},
          {kEnteringWaterAxis, 0},
          {kEnteringAirAxis, 0},
          {"condenser_air_entering_relative_humidity", 0.4},
          {"ambient_pressure", 101325},
          {kStage, 0}};
constexpr size_t kMostPoints = 1'000'000;
constexpr double kMostWatts = 1e9;

size_t nearest(const std::vector<double>& values, double wanted) {
  if (wanted == HUGE_VAL) return values.size() - 1;
  const auto farther = [wanted](double one, double other) { return std::abs(one - wanted) < std::abs(other - wanted); };
  return static_cast<size_t>(std::min_element(values.begin(), values.end(), farther) - values.begin());
}

size_t held_place(const CoolingGrid::Axis& axis) {
  const auto known =
      std::find_if(std::begin(kAxes), std::end(kAxes), [&](const auto& k) { return axis.name == k.name; });
  return known == std::end(kAxes) ? 0 : nearest(axis.values, known->held);
}

/// A temperature on an axis; a rounded end of the axis takes its place.
double on_axis(const CoolingGrid::Axis& axis, double kelvin) {
  constexpr double kRounding = 0.01;
  const double first = axis.values.front(), last = axis.values.back();
  if (kelvin < first - kRounding || kelvin > last + kRounding) {
    const auto shown = [](double k) { return short_number(k * 1.8 - 459.67); };
    refuse_map("its " + axis.name + " goes from " + shown(first) + " to " + shown(last) + " F, which leaves out the " +
               shown(kelvin) + " F that are needed");
  }
  return std::clamp(kelvin, first, last);
}

std::vector<double> watts(const Json& lookup, const char* name, size_t size) {
  std::vector<double> values = numbers_at(lookup, name);
  if (values.size() != size)
    refuse_map(std::string(name) + " has " + std::to_string(values.size()) + " values, where its grid has " +
               std::to_string(size));
  const auto wrong = std::find_if(values.begin(), values.end(), [](double w) { return !(w > 0 && w <= kMostWatts); });
  if (wrong != values.end())
    refuse_map("value " + std::to_string(wrong - values.begin() + 1) + " of " + name + " is " + short_number(*wrong) +
               " W; allowed are values above 0, up to 1e9");
  return values;
}

}  // namespace

void refuse_map(const std::string& text) { fail(ErrorNumber::UnknownFormat, text); }

std::string short_number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", value);
  return text;
}

std::string fixed(double value, int places) {
  char text[32];
  std::snprintf(text, sizeof text, "%.*f", places, value);
  return text;
}

std::string text_at(const Json& owner, const char* key) {
  const auto found = owner.find(key);
  return found != owner.end() && found->is_string() ? found->get<std::string>() : "";
}

Json optional_group(const Json& owner, const char* key) {
  return owner.contains(key) ? group_at(owner, key) : Json::object();
}

const Json& group_at(const Json& owner, const char* key) {
  const auto found = owner.find(key);
  if (found == owner.end() || !found->is_object())
    refuse_map("it has no \"" + std::string(key) + "\"" + (found == owner.end() ? "" : " with named values"));
  return *found;
}

std::vector<double> numbers_at(const Json& owner, const char* key) {
  const auto found = owner.find(key);
  if (found == owner.end()) refuse_map("its cooling map has no " + std::string(key));
  const bool numbers =
      found->is_array() && std::all_of(found->begin(), found->end(), [](const Json& v) { return v.is_number(); });
  if (!numbers) refuse_map(std::string(key) + " is no list of numbers");
  return found->get<std::vector<double>>();
}

CoolingGrid::CoolingGrid(const Json& cooling) {
  take_axes(group_at(cooling, "grid_variables"));
  take_values(group_at(cooling, "lookup_variables"));
}

bool CoolingGrid::by_air() const { return entering_->name == kEnteringAirAxis; }

const CoolingGrid::Axis* CoolingGrid::find(std::string_view name) const {
  const auto found = std::find_if(axes_.begin(), axes_.end(), [name](const Axis& a) { return a.name == name; });
  return found == axes_.end() ? nullptr : &*found;
}

const CoolingGrid::Axis* CoolingGrid::in_use(std::string_view name) const {
  const Axis* axis = find(name);
  if (!axis) refuse_map("its cooling map has no " + std::string(name));
  return axis;
}

void CoolingGrid::take_axes(const Json& grid) {
  for (const auto& known : kAxes) {
    if (grid.contains(known.name)) axes_.push_back({known.name, numbers_at(grid, known.name)});
  }
  for (const auto& [name, values] : grid.items()) {
    if (find(name)) continue;
    axes_.insert(axes_.begin(), {name, numbers_at(grid, name.c_str())});
    if (axes_.front().values.size() > 1) refuse_map("its cooling map has an axis that the standard has not: " + name);
  }
  size_t size = 1;
  for (auto axis = axes_.rbegin(); axis != axes_.rend(); ++axis) {
    const auto& values = axis->values;
    if (values.empty() || std::adjacent_find(values.begin(), values.end(), std::greater_equal<>()) != values.end())
      refuse_map("the values of " + axis->name + " do not ascend");
    axis->stride = size;
    size *= values.size();
    if (size > kMostPoints) refuse_map("its cooling map has more than " + std::to_string(kMostPoints) + " points");
  }
  leaving_ = in_use(kLeavingWaterAxis);
  stages_ = in_use(kStage);
  const Axis *air = find(kEnteringAirAxis), *water = find(kEnteringWaterAxis);
  if (!air && !water) refuse_map("its cooling map has no entering temperature of the condenser's air or water");
  if (air && water) refuse_map("its cooling map has entering temperatures of both air and water of the condenser");
  entering_ = air ? air : water;
  for (const Axis& axis : axes_) {
    if (&axis != leaving_ && &axis != stages_ && &axis != entering_) held_ += held_place(axis) * axis.stride;
  }
}

void CoolingGrid::take_values(const Json& lookup) {
  const size_t size = axes_.front().stride * axes_.front().values.size();
  capacity_ = watts(lookup, "net_evaporator_capacity", size);
  input_ = watts(lookup, "input_power", size);
  const auto states = lookup.find("operation_state");
  if (states == lookup.end()) return;
  if (!states->is_array() || states->size() != size)
    refuse_map("operation_state has " + std::to_string(states->size()) + " values, where its grid has " +
               std::to_string(size));
  for (const Json& state : *states) normal_.push_back(state == "NORMAL");
}

CoolingGrid::Point CoolingGrid::at(double leaving, double entering, size_t stage) const {
  double capacity = 0, input_per_watt = 0;
  for (const auto& [row, by_row] : shares(entering_->values, on_axis(*entering_, entering))) {
    for (const auto& [place, by_place] : shares(leaving_->values, on_axis(*leaving_, leaving))) {
      const size_t i = held_ + row * entering_->stride + place * leaving_->stride + stage * stages_->stride;
      capacity += by_row * by_place * capacity_[i];
      input_per_watt += by_row * by_place * input_[i] / capacity_[i];
    }
  }
  if (!(capacity > 0 && input_per_watt > 0))
    refuse_map("capacity or power falls below 0 between the points of stage " + short_number(stages_->values[stage]));
  return {capacity, capacity * input_per_watt};
}

double CoolingGrid::held_at(std::string_view name) const {
  const Axis* axis = find(name);
  return axis ? axis->values[held_place(*axis)] : 0;
}

void CoolingGrid::note(NotCarriedOver& left) const {
  for (const Axis& axis : axes_) {
    if (&axis == leaving_ || &axis == stages_ || &axis == entering_) continue;
    const bool design_flow = axis.name.ends_with("flow_rate") && axis.values.size() == 1;
    if (design_flow) continue;
    left.push_back(axis.name + " (held at " + short_number(axis.values[held_place(axis)]) +
                   (axis.values.size() > 1 ? ", not its other values)" : ")"));
  }
  const auto others = std::count(normal_.begin(), normal_.end(), false);
  if (others > 0) left.push_back("operation_state (" + std::to_string(others) + " points are not NORMAL)");
}

}  // namespace tarn
