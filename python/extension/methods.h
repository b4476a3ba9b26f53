// Methods of objects.
#pragma once

#include "extension/members.h"

namespace tarn::python {

void add_method_types(PyObject* module);
/// A descriptor that gives the method of an object, with its signature.
Ref method_descriptor(const MemberInfo& member);

/// Calls a method: the result, and behind it the in/out arguments as they came back; those alone where there is no
/// result. Arguments by name are found without regard to case.
Ref call(PyObject* object, const MemberInfo& member, PyObject* arguments, PyObject* named);

}  // namespace tarn::python
