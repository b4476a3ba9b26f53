// Functions of the library that take a project or one of its objects as a whole.
#pragma once

#include "extension/python.h"

namespace tarn::python {

extern PyMethodDef kProjectFunctions[];

}  // namespace tarn::python
