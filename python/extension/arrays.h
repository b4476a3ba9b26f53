// Indexed properties: `[1]`, `[1, 24]`, and `[:]` for all of it as a nested list, the first subscript outermost.
#pragma once

#include "extension/members.h"

namespace tarn::python {

void add_array_types(PyObject* module);
/// What an indexed property of an object reads as; it looks into the object.
Ref array_view(PyObject* object, const MemberInfo& member);
/// All elements from nested sequences; none of them changes where one is refused.
void set_array(PyObject* object, const MemberInfo& member, PyObject* values);

}  // namespace tarn::python
