// Objects that list others, and database handles.
#pragma once

#include "extension/python.h"

namespace tarn::python {

void add_list_types(PyObject* module);

}  // namespace tarn::python
