// The stable ABI of Python 3.9, and owners of its objects. Inside, a Python error is a C++ exception; the functions
// that Python calls turn it back.
#pragma once

#define Py_LIMITED_API 0x03090000
#define PY_SSIZE_T_CLEAN
#include <Python.h>
#include <structmember.h>

#include <exception>
#include <new>
#include <string>
#include <utility>

namespace tarn::python {

/// A Python error is set.
struct PythonError {};

/// A reference that this owns.
class Ref {
 public:
  Ref() = default;
  explicit Ref(PyObject* given) : object_(given) {}
  static Ref to(PyObject* borrowed) {
    Py_XINCREF(borrowed);
    return Ref(borrowed);
  }
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Ref& operator=(Ref&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  Ref(const Ref&) = delete;
  Ref& operator=(const Ref&) = delete;
  ~Ref() { Py_XDECREF(object_); }

  PyObject* get() const { return object_; }
  PyObject* release() { return std::exchange(object_, nullptr); }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  PyObject* object_ = nullptr;
};

/// What a call of Python made; null is its error.
inline Ref made(PyObject* object) {
  if (!object) throw PythonError();
  return Ref(object);
}
/// The answer of a call that gives -1 for an error.
template <typename N>
N answered(N number) {
  if (number < 0) throw PythonError();
  return number;
}
inline Ref none() { return Ref::to(Py_None); }
inline Ref truth(bool value) { return Ref::to(value ? Py_True : Py_False); }

Ref text(const std::string& utf8);
/// UTF-8 of a `str`, or of a path. Error `TypeError` for anything else; lone surrogates pass.
std::string utf8_of(PyObject* object);
[[noreturn]] void type_error(const std::string& what);

/// Sets the Python error of the C++ exception being handled.
void set_error() noexcept;

/// A Python error that is set, laid aside while other things are done.
class ErrorAside {
 public:
  ErrorAside() { PyErr_Fetch(&type_, &value_, &traceback_); }
  ~ErrorAside() {
    for (PyObject* part : {type_, value_, traceback_}) Py_XDECREF(part);
  }
  ErrorAside(const ErrorAside&) = delete;
  ErrorAside& operator=(const ErrorAside&) = delete;

  bool is(PyObject* exception) const { return type_ && PyErr_GivenExceptionMatches(type_, exception) != 0; }
  void put_back() {
    PyErr_Restore(std::exchange(type_, nullptr), std::exchange(value_, nullptr), std::exchange(traceback_, nullptr));
  }
  [[noreturn]] void raise() {
    put_back();
    throw PythonError();
  }

 private:
  PyObject *type_ = nullptr, *value_ = nullptr, *traceback_ = nullptr;
};

/// Runs a function that Python called, which returns an object or, for an error, null.
template <typename F>
PyObject* giving(F function) noexcept {
  try {
    return function().release();
  } catch (...) {
    set_error();
    return nullptr;
  }
}
/// One that returns 0, or a number, and -1 for an error.
template <typename N = int, typename F>
N doing(F function) noexcept {
  try {
    if constexpr (std::is_void_v<decltype(function())>) {
      function();
      return 0;
    } else {
      return function();
    }
  } catch (...) {
    set_error();
    return -1;
  }
}

/// A function of tarn/_help.py: what is plain Python, as speed does not matter there.
template <typename... A>
Ref help(const char* function, A*... arguments) {
  const Ref module = made(PyImport_ImportModule("tarn._help"));
  const Ref callable = made(PyObject_GetAttrString(module.get(), function));
  return made(PyObject_CallFunctionObjArgs(callable.get(), arguments..., nullptr));
}

/// A slot's or a method's function as Python's tables take it.
template <typename F>
void* slot(F* function) {
  return reinterpret_cast<void*>(function);
}
template <typename F>
PyCFunction function(F* with_keywords) {
  return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(with_keywords));
}

/// Other threads of Python run meanwhile.
class WithoutLock {
 public:
  WithoutLock() : state_(PyEval_SaveThread()) {}
  ~WithoutLock() { PyEval_RestoreThread(state_); }
  WithoutLock(const WithoutLock&) = delete;
  WithoutLock& operator=(const WithoutLock&) = delete;

 private:
  PyThreadState* state_;
};
/// Runs a call of the library that may take time, or wait for another thread.
template <typename F>
auto unlocked(F call) {
  const WithoutLock others_run;
  return call();
}
/// The interpreter's lock in a function that the library calls.
class Lock {
 public:
  Lock() : state_(PyGILState_Ensure()) {}
  ~Lock() { PyGILState_Release(state_); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

 private:
  PyGILState_STATE state_;
};

/// A type made of slots, added to the module under the last word of its name.
PyTypeObject* add_type(PyObject* module, PyType_Spec& form, PyObject* base = nullptr);

/// Frees an object of such a type, whose members are gone already.
inline void free_object(PyObject* self) {
  PyTypeObject* type = Py_TYPE(self);
  reinterpret_cast<freefunc>(PyType_GetSlot(type, Py_tp_free))(self);
  Py_DECREF(type);
}
template <typename T>
T* allocate(PyTypeObject* type) {
  return reinterpret_cast<T*>(made(reinterpret_cast<allocfunc>(PyType_GetSlot(type, Py_tp_alloc))(type, 0)).release());
}

}  // namespace tarn::python
