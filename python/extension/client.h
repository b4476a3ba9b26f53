// Functions of the library that belong to no object: databases, files by number, transactions, services.
#pragma once

#include "extension/python.h"

namespace tarn::python {

extern PyMethodDef kClientFunctions[];

}  // namespace tarn::python
