#include "extension/client.h"

#include "extension/calls.h"
#include "extension/objects.h"
#include "extension/services.h"

namespace tarn::python {
namespace {

/// Runs a call of the library, after a thread's first steps, and raises its error.
template <typename F>
void run(F call, PyObject* object = nullptr) {
  enter_thread();
  check(unlocked(call), object);
}

PyObject* create_index(PyObject* /*module*/, PyObject* path) {
  return giving([&] {
    const std::string file = utf8_of(path);
    run([&] { return tarn_create_index(file.c_str()); });
    return none();
  });
}

PyObject* open_database(PyObject* /*module*/, PyObject* path) {
  return giving([&] {
    const std::string file = utf8_of(path);
    tarn_object* database = nullptr;
    run([&] { return tarn_open_database(file.c_str(), &database); });
    return wrapped(database, Face::Classic);
  });
}

PyObject* shipped_file(PyObject* /*module*/, PyObject* name) {
  return giving([&] {
    const char* path = tarn_shipped_file(utf8_of(name).c_str());
    if (path) return text(path);
    check(TARN_ERROR);
    return none();
  });
}

PyObject* settle_database(PyObject* /*module*/, PyObject* database) {
  return giving([&] {
    tarn_object* handle = required_object(database).handle;
    run([&] { return tarn_settle_database(handle); }, database);
    return none();
  });
}

template <tarn_status (*Call)()>
PyObject* plain(PyObject* /*module*/, PyObject* /*none*/) {
  return giving([] {
    run(Call);
    return none();
  });
}

PyObject* open_file(PyObject* /*module*/, PyObject* arguments) {
  return giving([&] {
    PyObject* path = nullptr;
    int write = 0;
    if (!PyArg_ParseTuple(arguments, "Op", &path, &write)) throw PythonError();
    const std::string file = utf8_of(path);
    int16_t number = 0;
    run([&] { return tarn_open_file(file.c_str(), write, &number); });
    return made(PyLong_FromLong(number));
  });
}

/// A call on a file by its number.
template <typename F>
PyObject* on_file(PyObject* number, F call) {
  return giving([&] {
    const long file = PyLong_AsLong(number);
    if (file == -1 && PyErr_Occurred()) throw PythonError();
    return call(static_cast<int16_t>(file));
  });
}
PyObject* close_file(PyObject* /*module*/, PyObject* number) {
  return on_file(number, [](int16_t file) {
    run([&] { return tarn_close_file(file); });
    return none();
  });
}
PyObject* drop_file(PyObject* /*module*/, PyObject* number) {
  return on_file(number, [](int16_t file) {
    run([&] { return tarn_drop_file(file); });
    return none();
  });
}
PyObject* file_position(PyObject* /*module*/, PyObject* number) {
  return on_file(number, [](int16_t file) {
    int32_t position = 0;
    check(tarn_file_position(file, &position));
    return made(PyLong_FromLong(position));
  });
}

PyObject* set_log(PyObject* /*module*/, PyObject* handler) {
  set_log_handler(handler);
  return none().release();
}
PyObject* set_yield(PyObject* /*module*/, PyObject* handler) {
  set_yield_handler(handler);
  return none().release();
}

PyObject* set_strict(PyObject* /*module*/, PyObject* on) {
  return giving([&] {
    const bool strict = answered(PyObject_IsTrue(on)) != 0;
    return truth(std::exchange(strict_thread, strict));
  });
}

PyObject* daily(PyObject* /*module*/, PyObject* object) {
  return giving([&] {
    required_object(object).face = Face::Daily;
    return Ref::to(object);
  });
}

}  // namespace

PyMethodDef kClientFunctions[]{{"create_index", create_index, METH_O, nullptr},
                               {"open_database", open_database, METH_O, nullptr},
                               {"shipped_file", shipped_file, METH_O, nullptr},
                               {"settle", plain<tarn_settle>, METH_NOARGS, nullptr},
                               {"settle_database", settle_database, METH_O, nullptr},
                               {"begin", plain<tarn_begin>, METH_NOARGS, nullptr},
                               {"commit", plain<tarn_commit>, METH_NOARGS, nullptr},
                               {"rollback", plain<tarn_rollback>, METH_NOARGS, nullptr},
                               {"open_file", open_file, METH_VARARGS, nullptr},
                               {"close_file", close_file, METH_O, nullptr},
                               {"drop_file", drop_file, METH_O, nullptr},
                               {"file_position", file_position, METH_O, nullptr},
                               {"set_log", set_log, METH_O, nullptr},
                               {"set_yield", set_yield, METH_O, nullptr},
                               {"set_strict", set_strict, METH_O, nullptr},
                               {"daily", daily, METH_O, nullptr},
                               {nullptr, nullptr, 0, nullptr}};

}  // namespace tarn::python
