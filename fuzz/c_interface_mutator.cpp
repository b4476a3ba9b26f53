// Changes of the scripts of fuzz/c_interface.cpp: calls of members that a class has, with what they take.
#include <string>

#include "mutate.h"
#include "tarn/class_list.h"

namespace tarn::fuzz {
namespace {

template <typename N>
std::string bytes_of_number(N number) {
  return {reinterpret_cast<const char*>(&number), sizeof number};
}

std::string counted(std::string_view text) { return static_cast<char>(text.size()) + std::string(text); }

std::string value_of(ValueType type, Mutator& random) {
  constexpr std::string_view kTexts[]{"", "x", "JOBINX.MDB", "JOBWIN.DAT", "JOBP01.DAT", "JOBHW1.DAT", "\xC3\xA9", "."};
  constexpr int16_t kNumbers[]{0, 1, 2, 3, 8, -1, 99, 32767, -32768};
  constexpr float kReals[]{0, 1, -1, 0.5F, 1e30F};
  if (random.once_in(12)) type = static_cast<ValueType>(random.below(12));
  std::string value(1, static_cast<char>(type));
  const int16_t number = random.one_of(kNumbers);
  if (type == ValueType::Boolean) value += static_cast<char>(random.below(2));
  if (type == ValueType::Int16) value += bytes_of_number(number);
  if (type == ValueType::Int32) value += bytes_of_number<int32_t>(number);
  if (type == ValueType::Real32) value += bytes_of_number(random.one_of(kReals));
  if (type == ValueType::Real64) value += bytes_of_number<double>(random.one_of(kReals));
  if (type == ValueType::Text) value += counted(random.one_of(kTexts));
  if (type == ValueType::Reals) value += '\2' + bytes_of_number(random.one_of(kReals)) + bytes_of_number(1.0F);
  if (type == ValueType::Object) value += static_cast<char>(random.below(6));
  return value;
}

/// A new object of some class, and calls of members that it has.
std::string calls_of_a_class(Mutator& random) {
  const auto classes = class_list();
  const size_t number = random.below(classes.size());
  const auto& members = classes[number].info->members;
  std::string script{15, 1, static_cast<char>(number)};
  for (size_t calls = 1 + random.below(5); calls > 0; --calls) {
    const Member& member = members[random.below(members.size())];
    script += {3, static_cast<char>(254)};
    script += counted(member.name) + static_cast<char>(member.bounds.size());
    for (const Bounds& bounds : member.bounds)
      script += static_cast<char>(bounds.first + static_cast<int>(random.below(3)));
    const bool is_property = member.kind == MemberKind::Property;
    const auto parameters = member.parameters();
    script += static_cast<char>(is_property ? 1 : parameters.size());
    if (is_property) script += value_of(member.type, random);
    for (const Parameter& each : parameters) script += value_of(each.type, random);
    script += static_cast<char>(is_property ? random.below(2) : 2);
  }
  return script;
}

}  // namespace
}  // namespace tarn::fuzz

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t most, unsigned seed) {
  using namespace tarn::fuzz;
  return mutated(data, size, most, seed, [](std::string& script, Mutator& random) {
    constexpr std::string_view kNames[]{"NewWindow",
                                        "NewAirSystem",
                                        "NewPlant",
                                        "NewBuilding",
                                        "NewSpace",
                                        "NewWall",
                                        "NewElectricRate",
                                        "NewAirSystemDesign",
                                        "Load",
                                        "Save",
                                        "Delete",
                                        "Clone",
                                        "SELECT * FROM WindowIndex",
                                        "DROP TABLE SpaceIndex"};
    const size_t at = random.below(script.size() + 1);
    if (random.once_in(2)) {
      script += calls_of_a_class(random);
    } else if (random.once_in(2)) {
      script.insert(at, counted(random.one_of(kNames)));
    } else {
      std::string call;  // which, of what, which member, and what it is given
      for (const size_t below : {26, 6, 60, 1, 3, 10, 4, 1, 3}) call += static_cast<char>(random.below(below));
      script.insert(at, call);
    }
  });
}
