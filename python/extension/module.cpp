// The extension `tarn._tarn`: one type for each class of the component, made from its members as the library lists
// them, and the functions that the package is made of. Nothing here knows a class.

#include "extension/arrays.h"
#include "extension/client.h"
#include "extension/descriptions.h"
#include "extension/events.h"
#include "extension/lists.h"
#include "extension/methods.h"
#include "extension/objects.h"
#include "extension/project.h"
#include "extension/properties.h"
#include "extension/tables.h"

namespace tarn::python {
namespace {

PyModuleDef definition{PyModuleDef_HEAD_INIT, "tarn._tarn", nullptr, -1, nullptr, nullptr, nullptr, nullptr, nullptr};

Ref new_module() {
  Ref module = made(PyModule_Create(&definition));
  for (PyMethodDef* functions : {kClientFunctions, kDescriptionFunctions, kProjectFunctions, kTableFunctions})
    answered(PyModule_AddFunctions(module.get(), functions));
  answered(PyModule_AddStringConstant(module.get(), "__version__", TARN_VERSION));
  add_object_types(module.get());
  add_list_types(module.get());
  add_array_types(module.get());
  add_property_types(module.get());
  add_method_types(module.get());
  add_event_types(module.get());
  add_classes(module.get());
  enter_thread();
  return module;
}

}  // namespace
}  // namespace tarn::python

// The name is Python's. NOLINTNEXTLINE(bugprone-reserved-identifier)
PyMODINIT_FUNC PyInit__tarn() { return tarn::python::giving(tarn::python::new_module); }
