#include "exchange/computing.h"

#include <algorithm>
#include <cmath>

#include "tarn/base/units.h"
#include "tarn/code_names.h"
#include "tarn/window.h"

namespace tarn {
namespace {

/// "13 mm argon" of "1/2 in argon"; a name without such a width is the same in both.
std::string metric_name(std::string_view name) {
  const auto above = measured_in(name);
  if (!above || !above->unit.starts_with('/')) return std::string(name);
  const auto below = measured_in(above->unit.substr(1));
  if (!below || below->value == 0 || !below->unit.starts_with("in ")) return std::string(name);
  const double width = convert(above->value / below->value, "in", "mm");
  return std::to_string(std::lround(width)) + " mm" + std::string(below->unit.substr(2));
}

void name_gap(WIN_Window& window) {
  const auto names = catalogued_codes(window.info().find("GapTypeID"));
  const auto own = std::ranges::find(names, int{window.GapTypeID}, &Label::code);
  const std::string name(own == names.end() ? "" : own->name);
  const auto is_of_another = [&](const std::string& text, auto shown) {
    return text != shown(name) &&
           std::ranges::any_of(names, [&](const Label& each) { return text == shown(each.name); });
  };
  const auto as_it_is = [](std::string_view text) { return std::string(text); };
  if (is_of_another(window.GapNameEnglish.trimmed(), as_it_is)) window.GapNameEnglish = name;
  if (is_of_another(window.GapNameMetric.trimmed(), metric_name)) window.GapNameMetric = metric_name(name);
}

}  // namespace

void compute_inputs(StoredEntity& entity, const EntityKind& kind) {
  if (kind.compute) kind.compute(entity);
  if (auto* window = dynamic_cast<WIN_Window*>(&entity)) name_gap(*window);
}

}  // namespace tarn
