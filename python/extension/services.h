// What the library calls on each thread: the log, and the yield of long calculations.
#pragma once

#include "extension/python.h"

namespace tarn::python {

/// For the calling thread.
void install_services();
/// The functions that are called, for all threads: the log's gets text, component, class_name, procedure and detail.
void set_log_handler(PyObject* handler);
void set_yield_handler(PyObject* handler);

}  // namespace tarn::python
