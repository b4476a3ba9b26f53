#include "extension/properties.h"

#include "extension/arrays.h"
#include "extension/calls.h"
#include "extension/descriptors.h"
#include "extension/values.h"

namespace tarn::python {
namespace {

PyTypeObject* property_type = nullptr;

PyObject* get(PyObject* self, PyObject* object, PyObject* /*type*/) {
  if (!object) return Ref::to(self).release();
  return giving([&] {
    const MemberInfo& member = member_of(self);
    required_object(object);
    return member.indexed() ? array_view(object, member) : read(object, member, nullptr, 0);
  });
}

int set(PyObject* self, PyObject* object, PyObject* value) {
  return doing([&] {
    const MemberInfo& member = member_of(self);
    required_object(object);
    if (!value) cannot_delete(member);
    if (member.indexed())
      set_array(object, member, value);
    else
      let(object, member, nullptr, 0, value, object_of(object).face);
  });
}

PyType_Slot slots[]{{Py_tp_dealloc, slot(free_object)},    {Py_tp_descr_get, slot(get)},
                    {Py_tp_descr_set, slot(set)},          {Py_tp_repr, slot(represent_descriptor)},
                    {Py_tp_getset, kDescriptorProperties}, {0, nullptr}};
PyType_Spec form{"tarn._tarn.Property", sizeof(Descriptor), 0, Py_TPFLAGS_DEFAULT, slots};

}  // namespace

void add_property_types(PyObject* module) { property_type = add_type(module, form); }

Ref property_descriptor(const MemberInfo& member) { return descriptor(property_type, member); }

Ref read(PyObject* object, const MemberInfo& member, const int32_t* subscripts, int32_t count) {
  const Object& on = object_of(object);
  tarn_value value;
  {
    const Strictness strictness(on.face);
    check(tarn_get(on.handle, member.number, subscripts, count, &value), object, &member);
  }
  return from_value(value, on.face);
}

void let(PyObject* object, const MemberInfo& member, const int32_t* subscripts, int32_t count, PyObject* value,
         Face face) {
  const Object& on = object_of(object);
  Keep keep;
  const tarn_value given = value_of(value, keep);
  const Strictness strictness(face);
  const auto set = face == Face::Daily ? tarn_let_allowed : tarn_let;
  check(set(on.handle, member.number, subscripts, count, &given), object, &member);
}

}  // namespace tarn::python
