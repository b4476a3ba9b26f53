// Events of objects: an attribute that holds the handler. A handler gets the in/out arguments, and what it returns
// takes their place.
#pragma once

#include "extension/members.h"

namespace tarn::python {

void add_event_types(PyObject* module);
Ref event_descriptor(const MemberInfo& member);
/// Before an object ends: its handlers are not called any more.
void forget_listeners(PyObject* object);

}  // namespace tarn::python
