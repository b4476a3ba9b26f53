#include "extension/members.h"

namespace tarn::python {
namespace {

MemberInfo member_of(const ClassTable& table, int32_t number) {
  MemberInfo info{};
  tarn_describe(table.name.c_str(), number, &info);
  info.number = number;
  info.snake = snake_case(info.name);
  info.bounds.resize(static_cast<size_t>(info.bound_count));
  for (int32_t i = 0; i < info.bound_count; ++i)
    tarn_describe_bounds(table.name.c_str(), number, i, &info.bounds[static_cast<size_t>(i)]);
  info.parameters.resize(static_cast<size_t>(info.parameter_count));
  for (int32_t i = 0; i < info.parameter_count; ++i)
    tarn_describe_parameter(table.name.c_str(), number, i, &info.parameters[static_cast<size_t>(i)]);
  return info;
}

std::vector<ClassTable> read_tables() {
  std::vector<ClassTable> all(static_cast<size_t>(tarn_class_count()) + 1);
  for (int32_t i = 0; i < tarn_class_count(); ++i) {
    ClassTable& table = all[static_cast<size_t>(i)];
    table.name = tarn_class_name(i);
    const int32_t count = tarn_member_count(table.name.c_str());
    for (int32_t number = 0; number < count; ++number) {
      table.by_folded.emplace(folded(table.members.emplace_back(member_of(table, number)).name), number);
    }
    for (MemberInfo& member : table.members) member.of = &table;
  }
  all.back().name = "Database";  // which has no members, but functions of the extension
  return all;
}

}  // namespace

size_t MemberInfo::elements() const {
  size_t count = 1;
  for (size_t d = 0; d < bounds.size(); ++d) count *= size_of(d);
  return count;
}

const MemberInfo* ClassTable::find(std::string_view member_name) const {
  const auto found = by_folded.find(folded(member_name));
  return found == by_folded.end() ? nullptr : &members[found->second];
}

std::vector<ClassTable>& class_tables() {
  static std::vector<ClassTable> all = read_tables();
  return all;
}

ClassTable* class_named(std::string_view name) {
  static const auto by_name = [] {
    std::unordered_map<std::string_view, ClassTable*> tables;
    for (ClassTable& table : class_tables()) tables.emplace(table.name, &table);
    return tables;
  }();
  const auto found = by_name.find(name);
  return found == by_name.end() ? nullptr : found->second;
}

const ClassTable& table_of(PyTypeObject* type) {
  static std::unordered_map<PyTypeObject*, const ClassTable*> by_type;
  if (by_type.empty()) {
    for (const ClassTable& table : class_tables()) by_type.emplace(table.type, &table);
  }
  for (PyTypeObject* each = type; each; each = static_cast<PyTypeObject*>(PyType_GetSlot(each, Py_tp_base))) {
    if (const auto found = by_type.find(each); found != by_type.end()) return *found->second;
  }
  type_error("an object needs a class of the component; tarn.classes() lists them");
}

}  // namespace tarn::python
