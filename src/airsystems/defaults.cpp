#include "airsystems/defaults.h"

#include <algorithm>

#include "airsystems/default_values.h"
#include "tarn/base/error.h"
#include "tarn/base/value.h"
#include "tarn/reflect/by_name.h"
#include "tarn/reflect/describe.h"

namespace tarn {

const std::array<SystemDefaults, 21> kSystemDefaults{{
    {1, "AS_Dflt_01_SZCAV"},      {2, "AS_Dflt_02_CAVTR"},    {3, "AS_Dflt_03_2DMZ"},  {4, "AS_Dflt_04_3DMZ"},
    {5, "AS_Dflt_05_DDCAV"},      {6, "AS_Dflt_06_MUADOAS"},  {7, "AS_Dflt_07_4PIND"}, {8, "AS_Dflt_08_VAV"},
    {9, "AS_Dflt_09_1FDDVAV"},    {10, "AS_Dflt_10_2FDDVAV"}, {11, "AS_Dflt_11_VVT"},  {12, "AS_Dflt_12_PkgDXFC"},
    {13, "AS_Dflt_13_SplitDXFC"}, {14, "AS_Dflt_14_WSHP"},    {15, "AS_Dflt_15_2PFC"}, {16, "AS_Dflt_16_4PFC"},
    {18, "AS_Dflt_18_GWSHP"},     {19, "AS_Dflt_19_GSHP"},    {20, "AS_Dflt_20_VRF"},  {21, "AS_Dflt_21_IB"},
    {22, "AS_Dflt_22_ACB"},
}};

namespace {

void call_populate(Object& defaults, size_t operation, Arguments arguments, Value& /*result*/) {
  const auto* part = std::get_if<ObjectPtr>(&arguments[0]);
  if (!part || !*part) type_mismatch(arguments[0], kDefaultComponents[operation].class_name);
  dynamic_cast<AS_SystemDefaults&>(defaults).populate(operation, **part);
}

ClassInfo described(const SystemDefaults& defaults) {
  ClassInfo info(ClassFacts{defaults.class_name, Failures::Raised});
  for (size_t i = 0; i < kDefaultComponents.size(); ++i) {
    Member operation;
    operation.name = kDefaultComponents[i].operation;
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

void AS_SystemDefaults::populate(size_t operation, Object& component) const {
  const DefaultComponent& filled = kDefaultComponents[operation];
  if (component.info().name != filled.class_name) {
    fail(ErrorNumber::TypeMismatch, std::string(defaults_.class_name) + "." + std::string(filled.operation) +
                                        " fills an " + std::string(filled.class_name) + ", not an " +
                                        std::string(component.info().name) + ".");
  }
  if (auto* header = dynamic_cast<AS_General*>(&component)) header->SetNumZones(1);
  const auto& record = system_default_records().of(defaults_, ForPellNotTarn)[operation];
  std::copy(record.begin(), record.end(), component.part_record().begin());
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
  for (size_t i = 0; i < kDefaultComponents.size(); ++i) defaults.populate(i, *kDefaultComponents[i].of(system));
}

}  // namespace tarn
