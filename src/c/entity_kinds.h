// Kinds of entity by the names that clients of the C interface know.
#pragma once

#include <string>

#include "c/c_support.h"
#include "project/kinds.h"

namespace tarn {

/// By group, "air-systems". Error `WrongArgumentCount` names the nearest one.
const EntityKind& kind_named(const char* group);

/// The object of a handle as one of a class. Error `WrongArgumentCount`: "The object is no project."
template <typename C>
C& object_as(HandleSlot& slot, const char* what) {
  auto* object = dynamic_cast<C*>(slot.fast);
  if (!object) bad_argument("The object is no " + std::string(what) + ".");
  return *object;
}

}  // namespace tarn
