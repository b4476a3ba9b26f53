// Every class and every member of the interface, by what is stated of it: kind, place, type, access, parameters, unit,
// codes, width, bounds, the objects that it hands out. What is not stated (null, or not there) is not compared, and a
// class may have members of its own.

#include <algorithm>
#include <map>
#include <set>

#include "reflect/json_text.h"
#include "support/expected_data.h"
#include "tarn/class_list.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

bool states(const Json& row, const std::string& key) { return row.contains(key) && !row[key].is_null(); }

std::string name_of(ValueType type) {
  static const std::map<ValueType, std::string> names{
      {ValueType::Empty, ""},      {ValueType::Boolean, "Boolean"}, {ValueType::Int16, "I2"},
      {ValueType::Int32, "I4"},    {ValueType::Real32, "R4"},       {ValueType::Real64, "R8"},
      {ValueType::Text, "text"},   {ValueType::Object, "object"},   {ValueType::Reals, "array of R8"},
      {ValueType::Any, "Variant"},
  };
  return names.at(type);
}

std::string kind_of(const Member& member) {
  constexpr std::array names{"property", "method", "event"};
  return names[static_cast<size_t>(member.kind)];
}

/// "1..3 0..23" of a property's subscripts, or of the numbers of a part.
std::string bounds_of(const Member& member) {
  std::string text;
  for (const Bounds& b : member.bounds) text += std::to_string(b.first) + ".." + std::to_string(b.last) + " ";
  if (text.empty() && member.is_part() && member.owned().fixed > 0)
    text += "1.." + std::to_string(member.owned().fixed) + " ";
  return text;
}

std::string bounds_of(const Json& list) {
  std::string text;
  for (const Json& b : list) text += std::to_string(b[0].get<int>()) + ".." + std::to_string(b[1].get<int>()) + " ";
  return text;
}

/// An object to ask for the objects that it hands out: one with a zone and a space where that is needed.
ObjectPtr sample(const std::string& class_name) {
  const ObjectPtr object = create(class_name);
  if (class_name == "AS_FanPowerAdjustments") test::call(*object, "Setup", {int16_t{5}});
  if (class_name == "URT_UtilityRate") let_property(*object, "RateType", int16_t{1});
  if (class_name == "PLT_PumpLoop") let_property(*object, "NumPumps", int16_t{1});
  if (class_name == "AS_HourlySimData") test::call(*object, "Resize", {int32_t{1}});
  if (class_name == "ADL_AirSystemDesign" || class_name == "AS_AirSystem") {
    const ObjectPtr system = class_name == "AS_AirSystem" ? object : create("AS_AirSystem");
    test::call(*system, "SetToDefaultsByType", {int16_t{8}});
    const ObjectPtr zone = test::object_of(*system, "GetZoneData");
    let_property(*zone, "SpaceID", int16_t{1}, std::array{1});
    let_property(*zone, "TotalSpacesInZone", int16_t{1});
    if (class_name == "ADL_AirSystemDesign") let_property(*object, "AirSystem", system);
  }
  return object;
}

class MembersOf {
 public:
  MembersOf(test::Comparison& to, const std::string& name)
      : comparison_(to), name_(name), info_(class_info(name)), sample_(sample(name)) {}

  void compare(const Json& row) {
    const std::string member_name = row["name"];
    const int number = info_.number(member_name);
    at_ = name_ + "." + member_name + " ";
    if (number < 0) return comparison_.fails(at_ + "name", member_name, "no such member");
    const Member& member = info_.members[static_cast<size_t>(number)];
    comparison_.compare(at_ + "name", member_name, std::string(member.name));
    if (states(row, "kind")) comparison_.compare(at_ + "kind", row["kind"].get<std::string>(), kind_of(member));
    if (states(row, "place")) comparison_.compare(at_ + "place", row["place"], rank_of(member));
    if (states(row, "type")) compare_type(row, member);
    if (states(row, "access") && member.kind == MemberKind::Property) compare_access(row["access"], member);
    if (states(row, "unit"))
      comparison_.compare(at_ + "unit", row["unit"].get<std::string>(), std::string(member.unit));
    if (states(row, "width")) comparison_.compare(at_ + "width", row["width"], static_cast<int32_t>(member.width()));
    if (states(row, "bounds")) comparison_.compare(at_ + "bounds", bounds_of(row["bounds"]), bounds_of(member));
    if (states(row, "by_reference"))
      comparison_.compare(at_ + "by_reference", row["by_reference"], member.by_reference);
    if (states(row, "codes")) compare_codes(row["codes"], member);
    if (states(row, "object")) compare_object(row["object"], member);
    if (states(row, "value")) comparison_.compare(at_ + "value", row["value"], test::call(*sample_, member_name));
    if (states(row, "parameters")) compare_parameters(row["parameters"], member);
  }

  /// The members that have a place, to number the product's in their order without those of its own.
  void set_places(const Json& rows) {
    for (const Json& row : rows) {
      if (states(row, "place")) places_.push_back(info_.number(row["name"].get<std::string>()));
    }
    std::sort(places_.begin(), places_.end());
    first_place_ = 1;
  }

 private:
  int32_t rank_of(const Member& member) const {
    const int number = static_cast<int>(&member - info_.members.data());
    return static_cast<int32_t>(std::lower_bound(places_.begin(), places_.end(), number) - places_.begin()) +
           first_place_;
  }

  void compare_type(const Json& row, const Member& member) {
    std::string type = row["type"];
    if (type == "Variant" && !states(row, "holds")) return;  // anything
    if (type == "Variant") type = row["holds"];
    if (type == "Collection") {
      comparison_.compare(at_ + "type", "object", name_of(member.type));
      const ObjectPtr list = test::object_of(*sample_, row["name"].get<std::string>());
      return comparison_.compare(at_ + "class", "Collection", list ? std::string(list->info().name) : "null");
    }
    if (type == "array") {  // the whole of a list, by its elements or as one value
      return comparison_.compare(at_ + "type", true, !member.bounds.empty() || member.type == ValueType::Reals);
    }
    comparison_.compare(at_ + "type", type, name_of(member.type));
  }

  void compare_access(const std::string& access, const Member& member) {
    if (access == "let") return comparison_.compare(at_ + "access", false, member.read_only);
    comparison_.compare(at_ + "access", access, member.read_only ? "get" : "get/let");
  }

  /// A member that holds a code knows its enumeration's names. Where names share a code - cooling's and heating's, an
  /// efficiency's and a power's - it has those that fit it, one for each code.
  void compare_codes(const std::string& enumeration, const Member& member) {
    const Json& all = test::expected_data("enumerations.json");
    if (!all.contains(enumeration)) return;
    std::map<int, std::set<std::string>> names;
    std::set<int> heating;
    for (const Json& each : all[enumeration]) {
      names[each["value"]].insert(each["name"]);
      if (each.contains("role") && each["role"] == "heating") heating.insert(each["value"].get<int>());
    }
    std::set<int> left;
    for (const auto& [code, list] : names) left.insert(code);
    for (const Label& label : member.labels) {
      left.erase(label.code);
      const std::string code = at_ + "code " + std::to_string(label.code);
      if (!names.contains(label.code)) {
        comparison_.fails(code, "none in " + enumeration, std::string(label.name));
      } else if (!names[label.code].contains(std::string(label.name))) {
        comparison_.fails(code, json_text(Json(names[label.code])), std::string(label.name));
      }
    }
    for (const int code : heating) left.erase(code);
    for (const int code : left)
      comparison_.fails(at_ + "code " + std::to_string(code), *names[code].begin(), "no label");
  }

  void compare_object(const std::string& class_name, const Member& member) {
    if (member.type != ValueType::Object) return;  // a property that is only set
    ObjectPtr object;
    try {
      object = test::object_of(*sample_, member.name);
    } catch (const Error& error) {
      return comparison_.fails(at_ + "object", class_name, error.description());
    }
    comparison_.compare(at_ + "object", class_name, object ? std::string(object->info().name) : "null");
  }

  void compare_parameters(const Json& list, const Member& member) {
    const size_t subscripts = member.kind == MemberKind::Property ? member.bounds.size() : 0;
    const size_t count = subscripts > 0 ? subscripts : member.parameters().size();
    comparison_.compare(at_ + "parameters", list.size(), static_cast<int32_t>(count));
    for (size_t i = 0; i < list.size() && i < member.parameters().size(); ++i)
      compare_parameter(list[i], member.parameters()[i]);
  }

  void compare_parameter(const Json& expected, const Parameter& found) {
    const std::string at = at_ + "parameter " + std::string(found.name) + " ";
    if (states(expected, "name"))
      comparison_.compare(at + "name", expected["name"].get<std::string>(), std::string(found.name));
    if (states(expected, "optional")) comparison_.compare(at + "optional", expected["optional"], found.optional);
    if (states(expected, "by_reference"))
      comparison_.compare(at + "by_reference", expected["by_reference"], found.by_reference || found.in_out);
    // A Variant takes what the member makes of it.
    if (states(expected, "type") && expected["type"] != "Variant")
      comparison_.compare(at + "type", expected["type"].get<std::string>(), name_of(found.type));
  }

  test::Comparison& comparison_;
  std::string name_, at_;
  const ClassInfo& info_;
  ObjectPtr sample_;
  std::vector<int> places_;
  int32_t first_place_ = 1;
};

TEST(ExpectedData, EveryMemberOfEveryClass) {
  const std::string numbered = "a method hands out the objects of a list here, by number, where their number varies";
  test::Comparison comparison(std::vector<test::Exception>{
      {"AS_HourlySimData.Item kind", numbered},
      {"ADL_AirSystemDesign.TSZone kind", numbered},
      {"ADL_AirSystemDesign.HLZone kind", numbered},
      {"ADL_AirSystemDesign.DLZone kind", numbered},
      {"ADL_HLAir.HourlyAir bounds", "a method's limits are told by LowerBound and UpperBound"},
      {"ADL_DLZone.DLSpace object", "a zone alone has no spaces; those of a design's are tested with it"},
      {"WTH_Weather.Clone object", "asks for a database; tested with one"},
      {"URT_UtilityRate.Index type", "an index has 16 bits in every other class of records, and in the file's reach"}});
  size_t members = 0;
  const Json& classes = test::expected_data("members.json");
  for (const auto& [name, rows] : classes.items()) {
    MembersOf of(comparison, name);
    of.set_places(rows);
    for (const Json& row : rows) of.compare(row);
    members += rows.size();
  }
  EXPECT_EQ(members, 1779U);
}

}  // namespace
}  // namespace tarn
