#include "extension/services.h"

#include "extension/calls.h"

namespace tarn::python {
namespace {

PyObject *log_handler = nullptr, *yield_handler = nullptr;

Ref text_or_none(const char* value) { return value ? text(value) : none(); }

/// What a handler of the log raises is reported, and the operation goes on.
void log(void* /*context*/, const char* message, const char* component, const char* class_name, const char* procedure,
         const char* detail) {
  if (Py_IsInitialized() == 0) return;  // the thread's last objects end after the interpreter
  last_message() = message;
  const Lock lock;
  if (!log_handler) return;
  ErrorAside error;  // as an object may end while one is raised
  try {
    const Ref all[]{text_or_none(message), text_or_none(component), text_or_none(class_name), text_or_none(procedure),
                    text_or_none(detail)};
    made(PyObject_CallFunctionObjArgs(log_handler, all[0].get(), all[1].get(), all[2].get(), all[3].get(), all[4].get(),
                                      nullptr));
  } catch (...) {
    set_error();
    PyErr_WriteUnraisable(log_handler);
  }
  error.put_back();
}

void yield(void* /*context*/) {
  if (Py_IsInitialized() == 0) return;
  const Lock lock;
  if (!yield_handler) return;
  try {
    made(PyObject_CallObject(yield_handler, nullptr));
  } catch (...) {
    set_error();
    keep_handler_error();
  }
}

void replace(PyObject*& place, PyObject* handler) { const Ref old(std::exchange(place, Ref::to(handler).release())); }

}  // namespace

void install_services() {
  tarn_set_log(log, nullptr);
  tarn_set_yield(yield, nullptr);
}

void set_log_handler(PyObject* handler) { replace(log_handler, handler); }
void set_yield_handler(PyObject* handler) { replace(yield_handler, handler); }

}  // namespace tarn::python
