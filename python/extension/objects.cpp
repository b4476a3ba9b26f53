#include "extension/objects.h"

#include "extension/calls.h"
#include "extension/events.h"
#include "extension/methods.h"
#include "extension/properties.h"
#include "extension/services.h"

namespace tarn::python {

PyTypeObject* object_type = nullptr;

namespace {

/// Handles by the thread that must release them, of objects that ended on another. The interpreter's lock guards them.
std::unordered_map<unsigned long, std::vector<tarn_object*>>& orphans() {
  static auto* const all = new std::unordered_map<unsigned long, std::vector<tarn_object*>>;  // outlives all objects
  return *all;
}

Ref new_object(PyTypeObject* type, tarn_object* handle, Face face) {
  auto* object = allocate<Object>(type);
  object->handle = handle;
  object->thread = PyThread_get_thread_ident();
  object->face = face;
  return Ref(reinterpret_cast<PyObject*>(object));
}

PyObject* create(PyTypeObject* type, PyObject* arguments, PyObject* named) {
  return giving([&] {
    enter_thread();
    const ClassTable& table = table_of(type);
    if (table.type == type && (PyTuple_Size(arguments) > 0 || (named && PyDict_Size(named) > 0)))
      type_error(table.name + "() takes no arguments");
    tarn_object* handle = nullptr;
    check(tarn_create(table.name.c_str(), &handle));
    return new_object(type, handle, Face::Classic);
  });
}

int traverse(PyObject* self, visitproc visit, void* arg) {
  Py_VISIT(object_of(self).listeners);
  Py_VISIT(Py_TYPE(self));
  return 0;
}
int clear(PyObject* self) {
  Py_CLEAR(object_of(self).listeners);
  return 0;
}

void destroy(PyObject* self) {
  PyObject_GC_UnTrack(self);
  Object& object = object_of(self);
  if (object.weak_references) PyObject_ClearWeakRefs(self);
  if (object.listeners) forget_listeners(self);
  clear(self);
  if (object.handle && object.thread == PyThread_get_thread_ident())
    tarn_release(object.handle);
  else if (object.handle)
    orphans()[object.thread].push_back(object.handle);
  free_object(self);
}

/// The right spelling of a name that Python did not find; raises what is wrong with it where there is none.
Ref respelled(PyObject* self, PyObject* name) {
  ErrorAside error;
  if (!error.is(PyExc_AttributeError)) error.raise();
  const std::string wanted = utf8_of(name);
  const MemberInfo* found = table_of(Py_TYPE(self)).find(wanted);
  const bool misspelled = found && found->name != wanted && found->snake != wanted;
  if (misspelled) return text(found->name);
  // A derived class's own attribute says itself what it lacks.
  if (!found && PyObject_HasAttr(reinterpret_cast<PyObject*>(Py_TYPE(self)), name) != 0) error.raise();
  help("no_such_member", self, name);
  throw PythonError();
}

PyObject* get_attribute(PyObject* self, PyObject* name) {
  if (PyObject* found = PyObject_GenericGetAttr(self, name)) return found;
  return giving([&] { return made(PyObject_GenericGetAttr(self, respelled(self, name).get())); });
}

int set_attribute(PyObject* self, PyObject* name, PyObject* value) {
  if (PyObject_GenericSetAttr(self, name, value) == 0) return 0;
  return doing([&] { return answered(PyObject_GenericSetAttr(self, respelled(self, name).get(), value)); });
}

/// A method that is a function of tarn/_help.py; its argument does not matter there.
constexpr char kNames[] = "names", kHtml[] = "as_html", kCopied[] = "copied", kPickle[] = "refuse_pickle";
template <const char* Function>
PyObject* helped(PyObject* self, PyObject* /*argument*/) {
  return giving([&] { return help(Function, self); });
}

PyObject* represent(PyObject* self) {
  return giving([&] { return help("represented", self); });
}

PyObject* is_daily(PyObject* self, void* /*closure*/) {
  return giving([&] { return truth(object_of(self).face == Face::Daily); });
}

PyMethodDef methods[]{
    {"__dir__", helped<kNames>, METH_NOARGS, nullptr},
    {"_repr_html_", helped<kHtml>, METH_NOARGS, "The picture of what has one, else a table of the properties."},
    {"__copy__", helped<kCopied>, METH_NOARGS, nullptr},
    {"__deepcopy__", helped<kCopied>, METH_O, nullptr},
    {"__reduce_ex__", helped<kPickle>, METH_O, nullptr},
    {nullptr, nullptr, 0, nullptr}};
PyMemberDef members[]{{"__weaklistoffset__", T_PYSSIZET, offsetof(Object, weak_references), READONLY, nullptr},
                      {nullptr, 0, 0, 0, nullptr}};
PyGetSetDef properties[]{
    {"_daily", is_daily, nullptr, "Whether the object is of the daily face: strict, its texts trimmed.", nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr}};
PyType_Slot slots[]{
    {Py_tp_doc, const_cast<char*>("An object of the component. Names of members are found without regard "
                                  "to case.")},
    {Py_tp_new, slot(create)},
    {Py_tp_dealloc, slot(destroy)},
    {Py_tp_traverse, slot(traverse)},
    {Py_tp_clear, slot(clear)},
    {Py_tp_getattro, slot(get_attribute)},
    {Py_tp_setattro, slot(set_attribute)},
    {Py_tp_repr, slot(represent)},
    {Py_tp_methods, methods},
    {Py_tp_members, members},
    {Py_tp_getset, properties},
    {0, nullptr}};
PyType_Spec form{"tarn._tarn.Object", sizeof(Object), 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE | Py_TPFLAGS_HAVE_GC,
                 slots};

Ref descriptor_of(const MemberInfo& member) {
  switch (member.kind) {
    case TARN_METHOD:
      return method_descriptor(member);
    case TARN_EVENT:
      return event_descriptor(member);
    default:
      return property_descriptor(member);
  }
}

std::string doc_of(const ClassTable& table) {
  std::string doc = table.name + ":";
  for (const MemberInfo& member : table.members)
    doc += std::string(&member == &table.members.front() ? " " : ", ") + member.name;
  return doc;
}

/// The attributes of a class: each member by its name, and in snake case.
Ref attributes_of(const ClassTable& table) {
  Ref space = made(PyDict_New());
  answered(PyDict_SetItemString(space.get(), "__slots__", made(PyTuple_New(0)).get()));
  answered(PyDict_SetItemString(space.get(), "__module__", text("tarn").get()));
  answered(PyDict_SetItemString(space.get(), "__doc__", text(doc_of(table)).get()));
  for (const MemberInfo& member : table.members) {
    const Ref descriptor = descriptor_of(member);
    answered(PyDict_SetItemString(space.get(), member.snake.c_str(), descriptor.get()));
    answered(PyDict_SetItemString(space.get(), member.name, descriptor.get()));
  }
  return space;
}

PyTypeObject* base_of(const ClassTable& table) {
  if (table.name == "Database") return database_type;
  return table.find("Count") && table.find("Item") ? collection_type : object_type;
}

}  // namespace

bool is_object(PyObject* value) { return PyObject_TypeCheck(value, object_type) != 0; }

Object& required_object(PyObject* value) {
  if (!is_object(value)) type_error("an object of the component is needed here, such as a COM_ProjectData");
  return object_of(value);
}

Ref wrapped(tarn_object* handle, Face face) {
  if (!handle) return none();
  const ClassTable* table = class_named(tarn_class_of(handle));
  return new_object(table->type, handle, face);
}

void enter_thread() {
  static thread_local bool entered = false;
  if (!entered) {
    entered = true;
    install_services();
  }
  if (orphans().empty()) return;
  const auto own = orphans().find(PyThread_get_thread_ident());
  if (own == orphans().end()) return;
  const std::vector<tarn_object*> handles = std::move(own->second);
  orphans().erase(own);
  for (tarn_object* handle : handles) tarn_release(handle);
}

void add_object_types(PyObject* module) { object_type = add_type(module, form); }

void add_classes(PyObject* module) {
  const Ref names = made(PyList_New(0));
  answered(PyObject_SetAttrString(module, "__all__", names.get()));
  for (ClassTable& table : class_tables()) {
    const Ref space = attributes_of(table);
    Ref type = made(PyObject_CallFunction(reinterpret_cast<PyObject*>(&PyType_Type), "s(O)O", table.name.c_str(),
                                          reinterpret_cast<PyObject*>(base_of(table)), space.get()));
    answered(PyObject_SetAttrString(module, table.name.c_str(), type.get()));
    answered(PyList_Append(names.get(), text(table.name).get()));
    table.type = reinterpret_cast<PyTypeObject*>(type.release());  // lives as long as the program
  }
}

}  // namespace tarn::python
