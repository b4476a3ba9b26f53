#include "extension/calls.h"

namespace tarn::python {

thread_local constinit bool strict_thread = false;

namespace {

/// What a handler raised first; later ones follow from it.
thread_local constinit PyObject *kept_type = nullptr, *kept_value = nullptr, *kept_traceback = nullptr;

PyObject* error_class() {
  static PyObject* const error = [] {
    const Ref module = made(PyImport_ImportModule("tarn._errors"));
    return made(PyObject_GetAttrString(module.get(), "Error")).release();
  }();
  return error;
}

}  // namespace

void keep_handler_error() {
  if (kept_type) return PyErr_Clear();
  PyErr_Fetch(&kept_type, &kept_value, &kept_traceback);
}

void raise(int32_t number, const std::string& source, const std::string& description, PyObject* object,
           const MemberInfo* member) {
  const Ref code = made(PyLong_FromLong(number)), from = text(source), what = text(description);
  const Ref error = made(PyObject_CallFunctionObjArgs(error_class(), code.get(), from.get(), what.get(), nullptr));
  if (object) answered(PyObject_SetAttrString(error.get(), "object", object));
  if (member) answered(PyObject_SetAttrString(error.get(), "property", text(member->name).get()));
  PyErr_SetObject(error_class(), error.get());
  throw PythonError();
}

void check(tarn_status status, PyObject* object, const MemberInfo* member) {
  if (kept_type) {
    PyErr_Restore(std::exchange(kept_type, nullptr), std::exchange(kept_value, nullptr),
                  std::exchange(kept_traceback, nullptr));
    throw PythonError();
  }
  if (status == TARN_OK) return;
  const char *source = "", *description = "";
  const int32_t number = tarn_last_error(object ? object_of(object).handle : nullptr, &source, &description);
  raise(number, source, description, object, member);
}

std::string& last_message() {
  thread_local std::string text;
  return text;
}

}  // namespace tarn::python
