// Objects that list others: len() and iteration. Database handles: statements of one's own.

#include "extension/lists.h"

#include "extension/calls.h"
#include "extension/methods.h"
#include "extension/properties.h"
#include "extension/values.h"

namespace tarn::python {

PyTypeObject *collection_type = nullptr, *database_type = nullptr;

namespace {

const MemberInfo& member_named(PyObject* self, const char* name) { return *table_of(Py_TYPE(self)).find(name); }

Py_ssize_t length(PyObject* self) {
  return doing<Py_ssize_t>([&] {
    const Ref count = read(self, member_named(self, "Count"), nullptr, 0);
    return PyLong_AsSsize_t(count.get());
  });
}

/// Keyed ones list themselves, by NewEnum, in their order.
Ref listed(PyObject* self) {
  const MemberInfo* lister = table_of(Py_TYPE(self)).find("NewEnum");
  if (!lister) return Ref::to(self);
  const Ref none_given = made(PyTuple_New(0));
  return lister->kind == TARN_METHOD ? call(self, *lister, none_given.get(), nullptr) : read(self, *lister, nullptr, 0);
}

Ref items(PyObject* self) {
  const Ref list = listed(self);
  const MemberInfo& item = member_named(list.get(), "Item");
  Ref all = made(PyList_New(0));
  const Py_ssize_t count = answered(length(list.get()));
  for (Py_ssize_t i = 1; i <= count; ++i) {
    const Ref place = made(Py_BuildValue("(n)", i));
    answered(PyList_Append(all.get(), call(list.get(), item, place.get(), nullptr).get()));
  }
  return all;
}

PyObject* iterate(PyObject* self) {
  return giving([&] { return made(PyObject_GetIter(items(self).get())); });
}
PyObject* represent(PyObject* self) {
  return giving([&] { return made(PyObject_Repr(items(self).get())); });
}
PyObject* to_list(PyObject* self, PyObject* /*none*/) {
  return giving([&] { return items(self); });
}

PyMethodDef collection_methods[]{{"tolist", to_list, METH_NOARGS, "The items as a list."},
                                 {nullptr, nullptr, 0, nullptr}};
PyType_Slot collection_slots[]{
    {Py_tp_doc, const_cast<char*>("What has Count and Item: list(...), len(...) and `in` work too.")},
    {Py_sq_length, slot(length)},
    {Py_tp_iter, slot(iterate)},
    {Py_tp_repr, slot(represent)},
    {Py_tp_methods, collection_methods},
    {0, nullptr}};
PyType_Spec collection_form{"tarn._tarn.Collection", sizeof(Object), 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE,
                            collection_slots};

/// A statement with its parameters, as a method of a database gets them.
struct Statement {
  std::string sql;
  Keep keep;
  std::vector<tarn_value> parameters;

  explicit Statement(PyObject* arguments) {
    if (PyTuple_Size(arguments) < 1) type_error("give an SQL statement, and a value for each of its ?");
    sql = utf8_of(PyTuple_GetItem(arguments, 0));
    for (Py_ssize_t i = 1; i < PyTuple_Size(arguments); ++i)
      parameters.push_back(value_of(PyTuple_GetItem(arguments, i), keep));
  }
  int32_t count() const { return static_cast<int32_t>(parameters.size()); }
};

PyObject* execute(PyObject* self, PyObject* arguments) {
  return giving([&] {
    const Statement statement(arguments);
    int32_t changed = 0;
    const tarn_status status = unlocked([&] {
      return tarn_execute(object_of(self).handle, statement.sql.c_str(), statement.parameters.data(), statement.count(),
                          &changed);
    });
    check(status, self);
    return made(PyLong_FromLong(changed));
  });
}

/// The rows that a query found, as dicts.
struct Found {
  Ref rows;
  Face face;
};
void add_row(void* context, const char* const* names, const tarn_value* values, int32_t count) {
  const Lock lock;
  auto& found = *static_cast<Found*>(context);
  try {
    const Ref row = made(PyDict_New());
    for (int32_t i = 0; i < count; ++i)
      answered(PyDict_SetItemString(row.get(), names[i], from_value(values[i], found.face).get()));
    answered(PyList_Append(found.rows.get(), row.get()));
  } catch (...) {
    set_error();
    keep_handler_error();
  }
}

PyObject* rows(PyObject* self, PyObject* arguments) {
  return giving([&] {
    const Statement statement(arguments);
    Found found{made(PyList_New(0)), object_of(self).face};
    const tarn_status status = unlocked([&] {
      return tarn_query(object_of(self).handle, statement.sql.c_str(), statement.parameters.data(), statement.count(),
                        add_row, &found);
    });
    check(status, self);
    return std::move(found.rows);
  });
}

PyMethodDef database_methods[]{
    {"execute", execute, METH_VARARGS,
     "execute($self, sql, /, *parameters)\n--\n\nRuns a statement of the client's own; returns the number of rows "
     "changed."},
    {"rows", rows, METH_VARARGS,
     "rows($self, sql, /, *parameters)\n--\n\nThe rows of a query, each a dict of column names and values."},
    {nullptr, nullptr, 0, nullptr}};
PyType_Slot database_slots[]{{Py_tp_doc, const_cast<char*>("The shared handle of an open index database.")},
                             {Py_tp_methods, database_methods},
                             {0, nullptr}};
PyType_Spec database_form{"tarn._tarn.DatabaseHandle", sizeof(Object), 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE,
                          database_slots};

}  // namespace

void add_list_types(PyObject* module) {
  collection_type = add_type(module, collection_form, reinterpret_cast<PyObject*>(object_type));
  database_type = add_type(module, database_form, reinterpret_cast<PyObject*>(object_type));
}

}  // namespace tarn::python
