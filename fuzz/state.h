// What an object holds, to see that a failure leaves it as it was.
#pragma once

#include <algorithm>
#include <string>

#include "tarn/air_system.h"
#include "tarn/reflect/members.h"

namespace tarn::fuzz {

/// Bytes of all fields and of what else an object remembers.
inline std::string state_of(Object& object) {
  std::string state;
  for_each_field(object, [&](Object& owner, const Member& field, const std::string&) {
    if (field.in_place()) state.append(reinterpret_cast<const char*>(field.place(owner)), field.field()->size);
  });
  if (const auto* entity = dynamic_cast<StoredEntity*>(&object)) state += std::to_string(entity->Index());
  auto* system = dynamic_cast<AS_AirSystem*>(&object);
  if (!system) return state;
  state += " " + std::to_string(system->m_lCurMask) + (system->DesHasChanged ? "D" : "-") +
           (system->SimHasChanged ? "S" : "-");
  for (int32_t i = 1; i <= system->GetHourlySimData()->Count(); ++i) {
    const auto hours = system->GetHourlySimData()->Item(i)->bytes();
    state.append(reinterpret_cast<const char*>(hours.data()), hours.size());
  }
  return state;
}

/// The first difference of two states; empty where they are the same.
inline std::string difference(const std::string& before, const std::string& after) {
  if (before == after) return {};
  if (before.size() != after.size())
    return "the state has " + std::to_string(after.size()) + " bytes, not " + std::to_string(before.size());
  const auto [was, is] = std::mismatch(before.begin(), before.end(), after.begin());
  return "byte " + std::to_string(was - before.begin()) + " of the state has changed";
}

}  // namespace tarn::fuzz
