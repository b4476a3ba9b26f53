#include "airsystems/defaults.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "airsystems/dx_coefficients.h"
#include "base/nearest.h"
#include "base/value.h"
#include "reflect/by_name.h"
#include "reflect/describe.h"

namespace tarn {
namespace {

struct Operation {
  std::string_view name;       // of the operation
  std::string_view component;  // in the tables
  std::string_view class_name;
  ObjectPtr (*of)(AS_AirSystem&);
};

template <auto Get>
ObjectPtr component(AS_AirSystem& system) {
  return (system.*Get)();
}
template <auto Get>
ObjectPtr of_zone_1(AS_AirSystem& system) {
  return (system.*Get)(1);
}

using S = AS_AirSystem;
constexpr Operation kOperations[]{
    {"PopulateAirSystem", "AirSystem", "AS_General", component<&S::GetAirSystem>},
    {"PopulateCoolSys", "CoolSys", "AS_CoolData", component<&S::GetCoolSys>},
    {"PopulateHeatSys", "HeatSys", "AS_HeatData", component<&S::GetHeatSys>},
    {"PopulateOutVent", "OutVent", "AS_OutdoorVent", component<&S::GetOutVent>},
    {"PopulateSupplyDuct", "SupplyDuct", "AS_SupplyDuct", component<&S::GetSupplyDuct>},
    {"PopulateRetPlenum", "RetPlenum", "AS_RetPlenum", component<&S::GetRetPlenum>},
    {"PopulateSupplyFan", "SupplyFan", "AS_FanData", component<&S::GetSupplyFan>},
    {"PopulateReturnFan", "ReturnFan", "AS_FanData", component<&S::GetReturnFan>},
    {"PopulateSupplyFan2", "SupplyFan2", "AS_FanData", component<&S::GetSupplyFan2>},
    {"PopulateEconomizer", "Economizer", "AS_EconomizerData", component<&S::GetEconomizer>},
    {"PopulatePreHeat", "PreHeat", "AS_CoilData", component<&S::GetPreheatCoil>},
    {"PopulatePreCool", "PreCool", "AS_CoilData", component<&S::GetPrecoolCoil>},
    {"PopulateHumidity", "Humidity", "AS_HumidityData", component<&S::GetHumidity>},
    {"PopulateDehumid", "Dehumid", "AS_DehumidData", component<&S::GetDehumid>},
    {"PopulateVentRec", "VentRec", "AS_VentReclaim", component<&S::GetVentReclaim>},
    {"PopulateSafetyFac", "SafetyFac", "AS_SafetyFactor", component<&S::GetSafetyFactor>},
    {"PopulateZoneSched", "ZoneSched", "AS_ZoneSchedule", component<&S::GetZoneSchedule>},
    {"PopulateWCSystemData", "WCSystemData", "AS_WCSystemData", component<&S::GetWCSystemData>},
    {"PopulateSplitSystem", "SplitSystem", "AS_SplitSystemData", component<&S::GetSplitSystemData>},
    {"PopulateChangeover", "Changeover", "AS_ChangeoverControl", component<&S::GetChangeoverControlData>},
    {"PopulateASD", "ASD", "AS_AirSizing", component<&S::GetAirSizing>},
    {"PopulateCSD", "CSD", "AS_CoilSize", component<&S::GetCoilSize>},
    {"PopulateZoneData", "ZoneData", "AS_ZoneData", of_zone_1<&S::GetZoneData>},
    {"PopulateZSD", "ZSD", "AS_ZoneSizingData", of_zone_1<&S::GetZoneSizing>}};

/// The values of type 1 that differ with `ForPellNotTarn`.
constexpr std::string_view kForPell =
    "CoolSys: Source=1 AutoSize=false HeatSys: AutoSize=false SupplyFan: PerfUnits=0 Efficiency=0.84 "
    "ZoneData: OccCoolSetpt=80 ASD: CoolingSupplyTemp=58";

std::string_view next_word(std::string_view& text) {
  const size_t start = std::min(text.find_first_not_of(' '), text.size());
  const size_t end = std::min(text.find(' ', start), text.size());
  const std::string_view word = text.substr(start, end - start);
  text.remove_prefix(end);
  return word;
}

Value value_of(std::string_view text) {
  if (text == "true" || text == "false") return text == "true";
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

/// "Property=value", "Property=value,value" from element 1 on, "Property=*value" for all elements.
void set(Object& object, std::string_view word) {
  const size_t equals = word.find('=');
  const Member& member = object.info().find(word.substr(0, equals));
  std::string_view values = word.substr(equals + 1);
  const bool all = values.starts_with('*');
  if (all) values.remove_prefix(1);
  for_each_element(member, [&](Subscripts at) {
    if (values.empty()) return;
    const size_t end = std::min(values.find(','), values.size());
    member.let(object, at, value_of(values.substr(0, end)));
    if (!all) values.remove_prefix(std::min(end + 1, values.size()));
  });
}

void clear(Object& object) {
  const auto zero = [&object](const Member& field) {
    if (field.stored()) std::memset(field.place(object), 0, field.field()->size);
  };
  std::for_each(object.info().members.begin(), object.info().members.end(), zero);
  std::for_each(object.info().reserved.begin(), object.info().reserved.end(), zero);
}

/// The words of a component in "Component: words Component: words".
std::string_view words_of(std::string_view all, std::string_view component) {
  for (std::string_view rest = all; !rest.empty();) {
    const std::string_view word = next_word(rest);
    if (!word.ends_with(':') || word.substr(0, word.size() - 1) != component) continue;
    const size_t colon = rest.find(':');
    if (colon == std::string_view::npos) return rest;
    return rest.substr(0, rest.rfind(' ', colon));
  }
  return {};
}

void call_populate(Object& defaults, size_t operation, Arguments arguments, Value& /*result*/) {
  const auto* part = std::get_if<ObjectPtr>(&arguments[0]);
  if (!part || !*part) type_mismatch(arguments[0], kOperations[operation].class_name);
  dynamic_cast<AS_SystemDefaults&>(defaults).populate(operation, **part);
}

ClassInfo described(const SystemDefaults& defaults) {
  ClassInfo info(ClassFacts{defaults.class_name, Failures::Raised});
  for (size_t i = 0; i < std::size(kOperations); ++i) {
    Member operation;
    operation.name = kOperations[i].name;
    operation.kind = MemberKind::Method;
    operation.form = Method{call_populate, i, 1, {{{"component", ValueType::Object}}}};
    info.add(operation);
  }
  if (defaults.type == 1) info.add(property<&AS_SystemDefaults::ForPellNotTarn>);
  return info;
}

}  // namespace

const ClassInfo& AS_SystemDefaults::info() const {
  static const auto all = [] {
    std::vector<ClassInfo> infos;
    for (const SystemDefaults& each : kSystemDefaults) infos.push_back(described(each));
    return infos;
  }();
  return all[static_cast<size_t>(&defaults_ - kSystemDefaults.data())];
}

void AS_SystemDefaults::apply(size_t operation, Object& component, std::string_view words) const {
  while (!words.empty()) {
    if (const std::string_view word = next_word(words); !word.empty()) set(component, word);
  }
  shared_steps(operation, component);
}

namespace {

template <typename Component, typename Holder>
void set_curves(Component& to, const Holder& from) {
  to.PLR1Coeff = from.PLR1Coeff;
  to.Cap1Coeff = from.Cap1Coeff;
  to.CapCFM1Coeff = from.CapCFM1Coeff;
  to.Pow1Coeff = from.Pow1Coeff;
  to.PowCFM1Coeff = from.PowCFM1Coeff;
}

template <typename Component>
void set_cooling_curves(Component& to, const ACDX_Coeff_Holder_Clg& from) {
  set_curves(to, from);
  to.LowTempCapMult = from.LowTempCapMult;
  to.LowTempPowMult = from.LowTempPowMult;
}

/// Elsewhere the coefficients stay zero. The codes are those of heat pumps where the source heats.
bool is_direct_expansion(AS_HeatCoolSourceTypes source) {
  return source == AS_HeatCoolSourceTypes::ST_AIR_COOLED_DX || source == AS_HeatCoolSourceTypes::ST_WATER_COOLED_DX;
}

/// The curves of an air-source unit, or of the type's water-source one.
template <typename Holder>
Holder curves_of(AS_HeatCoolSourceTypes source, int16_t system_type) {
  const auto rating = water_rating(system_type);
  return source == AS_HeatCoolSourceTypes::ST_WATER_COOLED_DX && rating ? Holder(*rating) : Holder();
}

}  // namespace

/// Availability in every month, reclaim's effectiveness, the curves of direct-expansion coils.
void AS_SystemDefaults::shared_steps(size_t operation, Object& component) const {
  const std::string_view name = kOperations[operation].component;
  if (name == "VentRec") set(component, "ReclaimType=1"), set(component, "ThermEff=0.5");
  if (name == "CoolSys" || name == "HeatSys" || name == "PreHeat" || name == "PreCool" || name == "VentRec")
    set(component, "Schedule=*true");
  if (auto* cooling = dynamic_cast<AS_CoolData*>(&component); cooling && is_direct_expansion(cooling->Source))
    set_cooling_curves(*cooling, curves_of<ACDX_Coeff_Holder_Clg>(cooling->Source, defaults_.system_type));
  if (auto* coil = dynamic_cast<AS_CoilData*>(&component);
      coil && name == "PreCool" && is_direct_expansion(coil->Source))
    set_cooling_curves(*coil, curves_of<ACDX_Coeff_Holder_Clg>(coil->Source, defaults_.system_type));
  if (auto* heating = dynamic_cast<AS_HeatData*>(&component); heating && is_direct_expansion(heating->Source)) {
    const auto from = curves_of<ACDX_Coeff_Holder_Htg>(heating->Source, defaults_.system_type);
    set_curves(*heating, from);
    heating->Cap2Coeff = from.Cap2Coeff;
    heating->CapCFM2Coeff = from.CapCFM2Coeff;
    heating->Pow2Coeff = from.Pow2Coeff;
    heating->PowCFM2Coeff = from.PowCFM2Coeff;
  }
}

void AS_SystemDefaults::populate(size_t operation, Object& component) const {
  const Operation& op = kOperations[operation];
  if (component.info().name != op.class_name) {
    fail(ErrorNumber::TypeMismatch, std::string(defaults_.class_name) + "." + std::string(op.name) + " fills an " +
                                        std::string(op.class_name) + ", not an " + std::string(component.info().name) +
                                        ".");
  }
  clear(component);
  std::string words;
  const auto vav = std::find_if(kVavDefaults.begin(), kVavDefaults.end(),
                                [&op](const ComponentDefaults& each) { return each.component == op.component; });
  if (vav != kVavDefaults.end()) words += vav->words;
  (words += ' ') += words_of(defaults_.differences, op.component);
  if (ForPellNotTarn) (words += ' ') += words_of(kForPell, op.component);
  if (auto* header = dynamic_cast<AS_General*>(&component)) {
    header->Name = ForPellNotTarn ? "Default System" : defaults_.name;
    header->SystemType = AS_SystemTypes{defaults_.system_type};
    header->EquipClass = ForPellNotTarn ? AS_EquipmentTypes::ET_PKG_RTU : AS_EquipmentTypes{defaults_.equip_class};
    header->SetNumZones(1);
  }
  if (auto* zone = dynamic_cast<AS_ZoneData*>(&component)) zone->Name = "Zone 1";
  apply(operation, component, words);
}

void create_defaults(AS_AirSystem& system, int16_t type, bool ForPellNotTarn) {
  const AS_SystemTypes asked{type};
  if (asked < AS_SystemTypes::SingleZoneCAV || asked > AS_SystemTypes::ActiveChilledBeam)
    fail(ErrorNumber::InvalidCall, "Unknown system type: " + std::to_string(type));
  if (asked == AS_SystemTypes::ConvectiveCoolingAndHeating)
    fail(ErrorNumber::InvalidCall, "System type " + std::to_string(type) + " is no longer used.");
  const auto row = std::find_if(kSystemDefaults.begin(), kSystemDefaults.end(),
                                [type](const SystemDefaults& each) { return each.type == type; });
  AS_SystemDefaults defaults(*row);
  defaults.ForPellNotTarn = ForPellNotTarn;
  system.begin_anew();
  for (size_t i = 0; i < std::size(kOperations); ++i) defaults.populate(i, *kOperations[i].of(system));
}

}  // namespace tarn
