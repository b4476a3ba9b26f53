// Every class of the component, made by its name: the kinds of entity and their parts by the registry, the others by
// the list in the source file.
#pragma once

#include <span>
#include <string_view>

#include "tarn/reflect/members.h"

namespace tarn {

struct ClassEntry {
  const ClassInfo* info;
  ObjectPtr (*create)();
};

std::span<const ClassEntry> class_list();

/// A new object of a class; letter case does not matter. Error `CannotCreateObject` names the nearest class.
ObjectPtr create(std::string_view class_name);
const ClassInfo& class_info(std::string_view class_name);

}  // namespace tarn
