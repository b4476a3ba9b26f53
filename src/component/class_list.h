// Every class of the component, made by its name. A new class is one row here.
#pragma once

#include <span>
#include <string_view>

#include "base/members.h"

namespace tarn {

struct ClassEntry {
  ObjectPtr (*create)();
  const ClassInfo& (*info)();
};

std::span<const ClassEntry> class_list();

/// A new object of a class; letter case does not matter. Error `CannotCreateObject` names the nearest class.
ObjectPtr create(std::string_view class_name);
const ClassInfo& class_info(std::string_view class_name);

}  // namespace tarn
