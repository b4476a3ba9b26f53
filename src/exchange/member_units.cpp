#include "tarn/member_units.h"

#include <algorithm>

#include "tarn/air_equipment_codes.h"
#include "tarn/air_system_codes.h"
#include "tarn/base/flow_units.h"
#include "tarn/base/value.h"
#include "tarn/code_names.h"

namespace tarn {
namespace {

/// The unit that a code stands for whose text is not the unit itself.
struct UnitOfCode {
  const Label* enumeration;
  int code;
  std::string_view unit;
};
template <auto Code>
UnitOfCode row(std::string_view unit) {
  return {labels<decltype(Code)>.data(), static_cast<int>(Code), unit};
}

std::span<const UnitOfCode> units_of_codes() {
  using Air = AS_AirflowSpec;
  using Supply = AS_SupplyAirSizingTypes;
  using Fan = AS_FanPerfUOM;
  using Power = AS_DesignPowerUOM;
  static const UnitOfCode rows[]{row<Air::VU_CFM>("CFM"),
                                 row<Air::VU_CFMSQFT>("CFM/ft2"),
                                 row<Air::VU_CFMPERSON>("CFM/person"),
                                 row<Air::VU_PERCENT_SUPPLY_AIR>("%"),
                                 row<Air::VU_ACH>("ACH"),
                                 row<Supply::SupplyTemperature>("F"),
                                 row<Supply::SupplyAirflow>("CFM"),
                                 row<Supply::SupplyAirflowPerFloorArea>("CFM/ft2"),
                                 row<Fan::BrakeHorsepower>("bhp"),
                                 row<Fan::TotalStaticPressure>("in. wg"),
                                 row<Fan::InputKW>("kW"),
                                 row<Fan::InputWPerCFM>("W/CFM"),
                                 row<Fan::AppendixGFanKW>("kW"),
                                 row<Power::DP_KW>("kW"),
                                 row<Power::DP_EER>("Btu/(hr.W)"),
                                 row<Power::DP_SEER>("Btu/(hr.W)"),
                                 row<Power::DP_HSPF>("Btu/(hr.W)")};
  return rows;
}

/// The unit that a code property of the object chooses.
std::string_view chosen_unit(const Object& object, const Member& chooser) {
  Value value;
  chooser.get(object, {}, value);
  const auto code = static_cast<int>(integer_from(value, INT32_MIN, INT32_MAX));
  const auto labels = codes_of(object, chooser);
  for (const UnitOfCode& each : units_of_codes()) {
    if (each.enumeration == labels.data() && each.code == code) return each.unit;
  }
  const auto label = std::find_if(labels.begin(), labels.end(), [&](const Label& l) { return l.code == code; });
  if (label == labels.end()) return {};
  const std::string_view said = label->text.empty() ? label->name : label->text;
  return is_unit(said) ? said : std::string_view();
}

}  // namespace

std::string_view unit_of(const Object& object, const Member& member) {
  if (!member.unit_beside.empty()) return chosen_unit(object, object.info().find(member.unit_beside));
  const std::string_view own = member.unit_for ? member.unit_for(object) : std::string_view();
  return own.empty() ? member.unit : own;
}

}  // namespace tarn
