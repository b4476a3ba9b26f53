#include "extension/descriptions.h"

#include "extension/calls.h"
#include "extension/members.h"

namespace tarn::python {
namespace {

/// A list of what `item` makes for each number.
template <typename F>
Ref listed(int32_t count, F item) {
  Ref list = made(PyList_New(0));
  for (int32_t i = 0; i < count; ++i) answered(PyList_Append(list.get(), item(i).get()));
  return list;
}

Ref bounds_of(const MemberInfo& member) {
  return listed(member.bound_count, [&](int32_t i) {
    const tarn_bounds& b = member.bounds[static_cast<size_t>(i)];
    return made(Py_BuildValue("(ii)", b.first, b.last));
  });
}
Ref parameters_of(const MemberInfo& member) {
  return listed(member.parameter_count, [&](int32_t i) {
    const tarn_parameter& p = member.parameters[static_cast<size_t>(i)];
    return made(Py_BuildValue("(siNNNN)", p.name, static_cast<int>(p.type), truth(p.optional != 0).release(),
                              truth(p.by_reference != 0).release(), truth(p.in_out != 0).release(),
                              truth(p.sections != 0).release()));
  });
}

/// Name, snake name, unit, kind, type, read-only, by reference, stored, bounds, parameters, width, enumeration, class.
Ref description_of(const MemberInfo& m) {
  return made(Py_BuildValue("(sssiiNNNNNiss)", m.name, m.snake.c_str(), m.unit, static_cast<int>(m.kind),
                            static_cast<int>(m.type), truth(m.read_only != 0).release(),
                            truth(m.by_reference != 0).release(), truth(m.stored != 0).release(),
                            bounds_of(m).release(), parameters_of(m).release(), static_cast<int>(m.text_width),
                            m.enumeration, m.object_class));
}

PyObject* classes(PyObject* /*module*/, PyObject* /*none*/) {
  return giving([] {
    const auto& all = class_tables();
    return listed(static_cast<int32_t>(all.size()), [&](int32_t i) { return text(all[static_cast<size_t>(i)].name); });
  });
}

PyObject* describe(PyObject* /*module*/, PyObject* name) {
  return giving([&] {
    const ClassTable* table = class_named(utf8_of(name));
    if (!table) raise(429, "", "There is no class " + utf8_of(name) + "; tarn.classes() lists them.");
    return listed(static_cast<int32_t>(table->members.size()),
                  [&](int32_t i) { return description_of(table->members[static_cast<size_t>(i)]); });
  });
}

Ref codes_of(const char* enumeration) {
  return listed(tarn_code_count(enumeration), [&](int32_t i) {
    tarn_code code{};
    check(tarn_describe_code(enumeration, i, &code));
    return made(Py_BuildValue("(sis)", code.name, static_cast<int>(code.value), code.text));
  });
}

PyObject* enumerations(PyObject* /*module*/, PyObject* /*none*/) {
  return giving([] {
    return listed(tarn_enumeration_count(), [](int32_t i) {
      const char* name = tarn_enumeration_name(i);
      return made(Py_BuildValue("(sN)", name, codes_of(name).release()));
    });
  });
}

/// Class, part, number of the member, offset, size, type, size of an element, unit of the bytes.
Ref fields_of(const tarn_entity_kind& kind) {
  return listed(kind.field_count, [&](int32_t i) {
    tarn_record_field field{};
    check(tarn_describe_record_field(kind.group, i, &field));
    return made(Py_BuildValue("(ssiiiiis)", field.class_name, field.part, static_cast<int>(field.member),
                              static_cast<int>(field.offset), static_cast<int>(field.size),
                              static_cast<int>(field.type), static_cast<int>(field.element_size), field.unit));
  });
}

/// Group, the word for one, class, factory, index table, size and fields of a record.
PyObject* kinds(PyObject* /*module*/, PyObject* /*none*/) {
  return giving([] {
    return listed(tarn_entity_kind_count(), [](int32_t i) {
      tarn_entity_kind kind{};
      check(tarn_describe_entity_kind(i, &kind));
      return made(Py_BuildValue("(sssssiN)", kind.group, kind.one, kind.class_name, kind.factory, kind.index_table,
                                static_cast<int>(kind.record_size), fields_of(kind).release()));
    });
  });
}

}  // namespace

PyMethodDef kDescriptionFunctions[]{{"classes", classes, METH_NOARGS, nullptr},
                                    {"describe", describe, METH_O, nullptr},
                                    {"enumerations", enumerations, METH_NOARGS, nullptr},
                                    {"kinds", kinds, METH_NOARGS, nullptr},
                                    {nullptr, nullptr, 0, nullptr}};

}  // namespace tarn::python
