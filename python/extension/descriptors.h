// What the descriptors of properties, methods and events share: the member that they stand for, and its documentation.
#pragma once

#include "extension/members.h"
#include "extension/python.h"

namespace tarn::python {

struct Descriptor {
  PyObject ob_base;
  const MemberInfo* member;
};
inline const MemberInfo& member_of(PyObject* descriptor) { return *reinterpret_cast<Descriptor*>(descriptor)->member; }
Ref descriptor(PyTypeObject* type, const MemberInfo& member);

/// `__name__`, `__doc__`, `__objclass__`, `__signature__`.
extern PyGetSetDef kDescriptorProperties[];
PyObject* represent_descriptor(PyObject* self);

/// The class and the number of a member, by which Python's side finds it.
Ref place_of(const MemberInfo& member);
[[noreturn]] void cannot_delete(const MemberInfo& member);

}  // namespace tarn::python
