// Records of a kind as rows of a table.
#pragma once

#include "extension/python.h"

namespace tarn::python {

extern PyMethodDef kTableFunctions[];

}  // namespace tarn::python
