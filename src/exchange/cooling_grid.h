// The cooling map of a chiller file by ASHRAE 205 (RS0001): values over a grid of up to six axes.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "reflect/json_text.h"

namespace tarn {

/// A line for what a chiller's record has no place for.
using NotCarriedOver = std::vector<std::string>;

/// Error `UnknownFormat`.
[[noreturn]] void refuse_map(const std::string& text);

/// Up to six digits, and so many places, as messages show a number.
std::string short_number(double value);
std::string fixed(double value, int places);

/// Empty where there is no such text.
std::string text_at(const Json& owner, const char* key);

/// A group of values, or a list of numbers, under a key. Error `UnknownFormat` that names the key.
const Json& group_at(const Json& owner, const char* key);
std::vector<double> numbers_at(const Json& owner, const char* key);
/// An empty group where there is none; else as `group_at`.
Json optional_group(const Json& owner, const char* key);

class CoolingGrid {
 public:
  struct Axis {
    std::string name;
    std::vector<double> values;  // K, m3/s, Pa, stages
    size_t stride = 1;           // between neighbours, in the lists of values
  };
  struct Point {
    double watts_cooling, watts_input;
  };

  /// Errors `UnknownFormat`: an axis or a variable is missing, does not ascend, has another number of values than the
  /// grid, or has a capacity or power that is none. The order of axes is the standard's, whatever that of the text.
  explicit CoolingGrid(const Json& cooling);

  const Axis& leaving() const { return *leaving_; }    // water of the evaporator
  const Axis& entering() const { return *entering_; }  // water or air of the condenser
  const Axis& stages() const { return *stages_; }      // from the lowest capacity to the highest
  bool by_air() const;

  /// Between points capacity and input per unit of cooling are read off cubics. Kelvin. Error `UnknownFormat` for a
  /// temperature that the grid does not reach; its ends may be rounded by 0.01 K.
  Point at(double leaving, double entering, size_t stage) const;

  /// The value at which an axis without a place in a chiller's map is held, 0 where the grid has no such axis.
  double held_at(std::string_view axis) const;
  /// Those axes, as messages name them, and the points in use that are not in normal operation.
  void note(NotCarriedOver& left) const;

 private:
  void take_axes(const Json& grid);
  void take_values(const Json& lookup);
  const Axis* find(std::string_view name) const;
  const Axis* in_use(std::string_view name) const;

  std::vector<Axis> axes_;
  std::vector<double> capacity_, input_;  // W
  std::vector<bool> normal_;
  const Axis *leaving_ = nullptr, *entering_ = nullptr, *stages_ = nullptr;
  size_t held_ = 0;  // the offset of the held axes
};

}  // namespace tarn
