// What the library says of itself, as lists and dicts: for tarn.members(), documentation, kinds and tables.
#pragma once

#include "extension/python.h"

namespace tarn::python {

extern PyMethodDef kDescriptionFunctions[];

}  // namespace tarn::python
