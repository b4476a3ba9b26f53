#include "extension/python.h"

namespace tarn::python {

Ref text(const std::string& utf8) {
  return made(PyUnicode_DecodeUTF8(utf8.data(), static_cast<Py_ssize_t>(utf8.size()), "replace"));
}

std::string utf8_of(PyObject* object) {
  const Ref path = PyUnicode_Check(object) ? Ref::to(object) : made(PyOS_FSPath(object));
  if (PyBytes_Check(path.get())) return PyBytes_AsString(path.get());
  const Ref bytes = made(PyUnicode_AsEncodedString(path.get(), "utf-8", "surrogatepass"));
  return {PyBytes_AsString(bytes.get()), static_cast<size_t>(PyBytes_Size(bytes.get()))};
}

void type_error(const std::string& what) {
  PyErr_SetString(PyExc_TypeError, what.c_str());
  throw PythonError();
}

void set_error() noexcept {
  try {
    throw;
  } catch (const PythonError&) {
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::exception& other) {
    PyErr_SetString(PyExc_RuntimeError, other.what());
  } catch (...) {
    PyErr_SetString(PyExc_RuntimeError, "unknown failure");
  }
}

PyTypeObject* add_type(PyObject* module, PyType_Spec& form, PyObject* base) {
  const Ref bases = base ? made(PyTuple_Pack(1, base)) : Ref();
  Ref type = made(PyType_FromSpecWithBases(&form, bases.get()));
  const std::string name = form.name;
  answered(PyObject_SetAttrString(module, name.substr(name.rfind('.') + 1).c_str(), type.get()));
  return reinterpret_cast<PyTypeObject*>(type.release());  // lives as long as the program
}

}  // namespace tarn::python
