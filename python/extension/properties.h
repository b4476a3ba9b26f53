// Properties of objects as attributes.
#pragma once

#include "extension/members.h"
#include "extension/objects.h"

namespace tarn::python {

void add_property_types(PyObject* module);
/// A descriptor that reads and sets a property by its number; of an indexed one it gives a view.
Ref property_descriptor(const MemberInfo& member);

/// One value: of a plain property, or of an element by its subscripts.
Ref read(PyObject* object, const MemberInfo& member, const int32_t* subscripts, int32_t count);
void let(PyObject* object, const MemberInfo& member, const int32_t* subscripts, int32_t count, PyObject* value,
         Face face);

}  // namespace tarn::python
