#include "extension/project.h"

#include <optional>

#include "extension/calls.h"
#include "extension/objects.h"
#include "extension/values.h"

namespace tarn::python {
namespace {

/// Runs a call of the library on an object, and raises its error.
template <typename F>
void run_on(PyObject* object, F call) {
  required_object(object);
  enter_thread();
  const Strictness strictness(object_of(object).face);
  check(unlocked(call), object);
}

tarn_object* handle_of(PyObject* object) { return required_object(object).handle; }
tarn_object* handle_or_null(PyObject* object) { return object == Py_None ? nullptr : handle_of(object); }
std::optional<std::string> text_or_none(PyObject* value) {
  return value == Py_None ? std::nullopt : std::optional(utf8_of(value));
}
const char* chars(const std::optional<std::string>& value) { return value ? value->c_str() : nullptr; }

template <typename... T>
void parse(PyObject* arguments, const char* format, T*... places) {
  if (!PyArg_ParseTuple(arguments, format, places...)) throw PythonError();
}

void tell(void* handler, size_t done, size_t total) {
  if (handler == Py_None) return;
  const Lock lock;
  try {
    made(PyObject_CallFunction(static_cast<PyObject*>(handler), "nn", static_cast<Py_ssize_t>(done),
                               static_cast<Py_ssize_t>(total)));
  } catch (...) {
    set_error();
    keep_handler_error();
  }
}

PyObject* create_project(PyObject* /*module*/, PyObject* project) {
  return giving([&] {
    run_on(project, [&] { return tarn_create_project(handle_of(project)); });
    return none();
  });
}

PyObject* copy_project(PyObject* /*module*/, PyObject* arguments) {
  return giving([&] {
    PyObject *from = nullptr, *to = nullptr;
    parse(arguments, "OO", &from, &to);
    run_on(from, [&] { return tarn_copy_project(handle_of(from), handle_of(to)); });
    return none();
  });
}

PyObject* copy_entity(PyObject* /*module*/, PyObject* arguments) {
  return giving([&] {
    PyObject *from = nullptr, *group = nullptr, *to = nullptr;
    short index = 0;
    parse(arguments, "OOhO", &from, &group, &index, &to);
    const std::string kind = utf8_of(group);
    const char* copied = "";
    run_on(from, [&] { return tarn_copy_entity(handle_of(from), kind.c_str(), index, handle_of(to), &copied); });
    return text(copied);
  });
}

using UsesOf = tarn_status (*)(tarn_object*, const char*, int16_t, const char**);

template <UsesOf Call>
PyObject* uses_of(PyObject* /*module*/, PyObject* arguments) {
  return giving([&] {
    PyObject *project = nullptr, *group = nullptr;
    short index = 0;
    parse(arguments, "OOh", &project, &group, &index);
    const std::string kind = utf8_of(group);
    const char* found = "";
    run_on(project, [&] { return Call(handle_of(project), kind.c_str(), index, &found); });
    return text(found);
  });
}

using Told = tarn_status (*)(tarn_object*, const char**);

/// What a call tells of a whole project, or of another object.
template <Told Call>
PyObject* told_of(PyObject* /*module*/, PyObject* object) {
  return giving([&] {
    const char* found = "";
    run_on(object, [&] { return Call(handle_of(object), &found); });
    return text(found);
  });
}

/// With another project, or with the text of one.
PyObject* compare(PyObject* /*module*/, PyObject* arguments) {
  return giving([&] {
    PyObject *project = nullptr, *other = nullptr;
    double tolerance = 0;
    parse(arguments, "OOd", &project, &other, &tolerance);
    const auto exported = PyUnicode_Check(other) ? std::optional(utf8_of(other)) : std::nullopt;
    const char* found = "";
    run_on(project, [&] {
      return exported ? tarn_compare_text(handle_of(project), exported->c_str(), tolerance, &found)
                      : tarn_compare(handle_of(project), handle_of(other), tolerance, &found);
    });
    return text(found);
  });
}

PyObject* repair(PyObject* /*module*/, PyObject* arguments) {
  return giving([&] {
    PyObject* project = nullptr;
    int dry_run = 0, rebuild_index = 0;
    parse(arguments, "Opp", &project, &dry_run, &rebuild_index);
    const char* report = "";
    run_on(project, [&] { return tarn_repair(handle_of(project), dry_run, rebuild_index, &report); });
    return text(report);
  });
}

PyObject* new_entity(PyObject* /*module*/, PyObject* arguments) {
  return giving([&] {
    PyObject *project = nullptr, *group = nullptr, *type = nullptr;
    parse(arguments, "OOO", &project, &group, &type);
    const std::string kind = utf8_of(group);
    const auto type_name = text_or_none(type);
    tarn_object* entity = nullptr;
    run_on(project, [&] { return tarn_new_entity(handle_of(project), kind.c_str(), chars(type_name), &entity); });
    return wrapped(entity, object_of(project).face);
  });
}

PyObject* compute(PyObject* /*module*/, PyObject* entity) {
  return giving([&] {
    run_on(entity, [&] { return tarn_compute(handle_of(entity)); });
    return none();
  });
}

PyObject* describe_entity(PyObject* /*module*/, PyObject* entity) {
  return giving([&] {
    int32_t index = 0;
    const char* name = "";
    run_on(entity, [&] { return tarn_describe_entity(handle_of(entity), &index, &name); });
    return made(Py_BuildValue("(iN)", static_cast<int>(index), text(name).release()));
  });
}

PyObject* export_project(PyObject* /*module*/, PyObject* arguments) {
  return giving([&] {
    PyObject *project = nullptr, *groups = nullptr, *progress = nullptr;
    parse(arguments, "OOO", &project, &groups, &progress);
    const auto kinds = text_or_none(groups);
    const char* json = "";
    run_on(project, [&] { return tarn_export(handle_of(project), chars(kinds), tell, progress, &json); });
    return text(json);
  });
}

PyObject* import_project(PyObject* /*module*/, PyObject* arguments) {
  return giving([&] {
    PyObject *project = nullptr, *json = nullptr, *progress = nullptr;
    parse(arguments, "OOO", &project, &json, &progress);
    const std::string source = utf8_of(json);
    int32_t count = 0;
    run_on(project, [&] { return tarn_import(handle_of(project), source.c_str(), tell, progress, &count); });
    return made(PyLong_FromLong(count));
  });
}

PyObject* import_gbxml(PyObject* /*module*/, PyObject* arguments) {
  return giving([&] {
    PyObject *project = nullptr, *path = nullptr, *progress = nullptr;
    parse(arguments, "OOO", &project, &path, &progress);
    const std::string file = utf8_of(path);
    const char* account = "";
    run_on(project, [&] { return tarn_import_gbxml(handle_of(project), file.c_str(), tell, progress, &account); });
    return text(account);
  });
}

PyObject* export_gbxml(PyObject* /*module*/, PyObject* arguments) {
  return giving([&] {
    PyObject *project = nullptr, *progress = nullptr;
    parse(arguments, "OO", &project, &progress);
    const char *xml = "", *notes = "";
    run_on(project, [&] { return tarn_export_gbxml(handle_of(project), tell, progress, &xml, &notes); });
    return made(Py_BuildValue("(ss)", xml, notes));
  });
}

PyObject* report(PyObject* /*module*/, PyObject* arguments) {
  return giving([&] {
    PyObject *project = nullptr, *units = nullptr, *progress = nullptr;
    parse(arguments, "OOO", &project, &units, &progress);
    const std::string word = utf8_of(units);
    const char* html = "";
    run_on(project, [&] { return tarn_report(handle_of(project), word.c_str(), tell, progress, &html); });
    return text(html);
  });
}

PyObject* import_weather(PyObject* /*module*/, PyObject* arguments) {
  return giving([&] {
    PyObject *year = nullptr, *path = nullptr, *project = nullptr;
    parse(arguments, "OOO", &year, &path, &project);
    const std::string file = utf8_of(path);
    const char* report = "";
    run_on(year, [&] { return tarn_import_weather(handle_of(year), file.c_str(), handle_or_null(project), &report); });
    return text(report);
  });
}

PyObject* import_chiller(PyObject* /*module*/, PyObject* arguments) {
  return giving([&] {
    PyObject *chiller = nullptr, *path = nullptr;
    parse(arguments, "OO", &chiller, &path);
    const std::string file = utf8_of(path);
    const char* notes = "";
    run_on(chiller, [&] { return tarn_import_chiller(handle_of(chiller), file.c_str(), &notes); });
    return text(notes);
  });
}

}  // namespace

PyMethodDef kProjectFunctions[]{{"create_project", create_project, METH_O, nullptr},
                                {"check", told_of<tarn_check>, METH_O, nullptr},
                                {"copy_project", copy_project, METH_VARARGS, nullptr},
                                {"copy_entity", copy_entity, METH_VARARGS, nullptr},
                                {"uses", uses_of<tarn_uses>, METH_VARARGS, nullptr},
                                {"used_by", uses_of<tarn_used_by>, METH_VARARGS, nullptr},
                                {"stale", told_of<tarn_stale>, METH_O, nullptr},
                                {"graph", told_of<tarn_graph>, METH_O, nullptr},
                                {"compare", compare, METH_VARARGS, nullptr},
                                {"repair", repair, METH_VARARGS, nullptr},
                                {"new_entity", new_entity, METH_VARARGS, nullptr},
                                {"compute", compute, METH_O, nullptr},
                                {"describe_entity", describe_entity, METH_O, nullptr},
                                {"export_project", export_project, METH_VARARGS, nullptr},
                                {"import_project", import_project, METH_VARARGS, nullptr},
                                {"import_gbxml", import_gbxml, METH_VARARGS, nullptr},
                                {"export_gbxml", export_gbxml, METH_VARARGS, nullptr},
                                {"report", report, METH_VARARGS, nullptr},
                                {"import_weather", import_weather, METH_VARARGS, nullptr},
                                {"import_chiller", import_chiller, METH_VARARGS, nullptr},
                                {"picture", told_of<tarn_picture>, METH_O, nullptr},
                                {nullptr, nullptr, 0, nullptr}};

}  // namespace tarn::python
