// The classes of the library and their members, read from the C interface once, at import.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "extension/names.h"
#include "extension/python.h"
#include "tarn/tarn.h"

namespace tarn::python {

struct ClassTable;

struct MemberInfo : tarn_member {
  const ClassTable* of = nullptr;
  int32_t number = 0;
  std::string snake;  // "glass_trans" of GlassTrans
  std::vector<tarn_bounds> bounds;
  std::vector<tarn_parameter> parameters;

  bool indexed() const { return !bounds.empty(); }
  size_t size_of(size_t dimension) const {
    return static_cast<size_t>(bounds[dimension].last - bounds[dimension].first + 1);
  }
  size_t elements() const;
};

struct ClassTable {
  std::string name;
  std::vector<MemberInfo> members;                    // interface order
  std::unordered_map<std::string, size_t> by_folded;  // letters alone, in lower case
  PyTypeObject* type = nullptr;

  /// Null where the class has none. Letter case and underscores do not matter.
  const MemberInfo* find(std::string_view member_name) const;
};

/// All classes, in the order of the library; read at the first call.
std::vector<ClassTable>& class_tables();
/// Null for a name that is no class.
ClassTable* class_named(std::string_view name);
/// Of an object's class, or of the class that it derives from.
const ClassTable& table_of(PyTypeObject* type);

}  // namespace tarn::python
