#include "extension/arrays.h"

#include "extension/array_values.h"
#include "extension/calls.h"
#include "extension/descriptors.h"
#include "extension/properties.h"
#include "extension/values.h"

namespace tarn::python {
namespace {

PyTypeObject* view_type = nullptr;

struct View {
  Descriptor base;
  PyObject* owner;
};
PyObject* owner_of(PyObject* self) { return reinterpret_cast<View*>(self)->owner; }

bool is_whole(PyObject* at) {
  if (!PySlice_Check(at)) return false;
  Py_ssize_t start = 0, stop = 0, step = 0;
  if (PySlice_Unpack(at, &start, &stop, &step) < 0) throw PythonError();
  return start == 0 && stop == PY_SSIZE_T_MAX && step == 1;
}

int32_t subscript_of(PyObject* at, const MemberInfo& member) {
  if (PySlice_Check(at))
    type_error(std::string(member.name) + ": [:] takes the whole array; there are no slices of a part of it");
  const Ref whole = made(PyNumber_Index(at));
  int overflow = 0;
  const long number = PyLong_AsLongAndOverflow(whole.get(), &overflow);
  if (overflow == 0 && number >= INT32_MIN && number <= INT32_MAX) return static_cast<int32_t>(number);
  const Ref written = made(PyObject_Str(whole.get()));
  raise(9, "", "Subscript out of range: " + utf8_of(written.get()));
}

std::vector<int32_t> subscripts_of(PyObject* at, const MemberInfo& member) {
  std::vector<int32_t> all;
  if (!PyTuple_Check(at)) return {subscript_of(at, member)};
  for (Py_ssize_t i = 0; i < PyTuple_Size(at); ++i) all.push_back(subscript_of(PyTuple_GetItem(at, i), member));
  return all;
}

PyObject* get_item(PyObject* self, PyObject* at) {
  return giving([&] {
    const MemberInfo& member = member_of(self);
    if (is_whole(at)) return whole_array(owner_of(self), member);
    const std::vector<int32_t> subscripts = subscripts_of(at, member);
    return read(owner_of(self), member, subscripts.data(), static_cast<int32_t>(subscripts.size()));
  });
}

int set_item(PyObject* self, PyObject* at, PyObject* value) {
  return doing([&] {
    const MemberInfo& member = member_of(self);
    if (!value) cannot_delete(member);
    if (is_whole(at)) return set_array(owner_of(self), member, value);
    const std::vector<int32_t> subscripts = subscripts_of(at, member);
    let(owner_of(self), member, subscripts.data(), static_cast<int32_t>(subscripts.size()), value,
        object_of(owner_of(self)).face);
  });
}

Py_ssize_t length(PyObject* self) { return static_cast<Py_ssize_t>(member_of(self).elements()); }

PyObject* iterate(PyObject* self) {
  return giving([&] { return made(PyObject_GetIter(whole_array(owner_of(self), member_of(self)).get())); });
}
PyObject* represent(PyObject* self) {
  return giving([&] { return made(PyObject_Repr(whole_array(owner_of(self), member_of(self)).get())); });
}
PyObject* to_list(PyObject* self, PyObject* /*none*/) {
  return giving([&] { return whole_array(owner_of(self), member_of(self)); });
}
PyObject* to_numpy(PyObject* self, PyObject* arguments, PyObject* /*named*/) {
  return giving([&] {
    PyObject* type = PyTuple_Size(arguments) > 0 ? PyTuple_GetItem(arguments, 0) : Py_None;
    return help("numpy_array", self, type);
  });
}
/// The bytes of the whole array, the first subscript fastest; None where its elements are no numbers.
PyObject* block(PyObject* self, PyObject* /*none*/) {
  return giving([&] {
    const MemberInfo& member = member_of(self);
    const auto bytes = block_of(owner_of(self), member);
    return bytes ? made(PyBytes_FromStringAndSize(bytes->data(), static_cast<Py_ssize_t>(bytes->size()))) : none();
  });
}
PyObject* get_place(PyObject* self, void* /*closure*/) {
  return giving([&] { return place_of(member_of(self)); });
}
void destroy(PyObject* self) {
  Py_CLEAR(reinterpret_cast<View*>(self)->owner);
  free_object(self);
}

PyMethodDef methods[]{{"tolist", to_list, METH_NOARGS, "All of it as a nested list, the first subscript outermost."},
                      {"__array__", function(to_numpy), METH_VARARGS | METH_KEYWORDS, "All of it as a numpy array."},
                      {"_block", block, METH_NOARGS, nullptr},
                      {nullptr, nullptr, 0, nullptr}};
PyGetSetDef properties[]{{"_place", get_place, nullptr, nullptr, nullptr},
                         {nullptr, nullptr, nullptr, nullptr, nullptr}};
PyType_Slot slots[]{{Py_tp_doc, const_cast<char*>("An indexed property: [1], [1, 24], and [:] for all of it.")},
                    {Py_tp_dealloc, slot(destroy)},
                    {Py_mp_subscript, slot(get_item)},
                    {Py_mp_ass_subscript, slot(set_item)},
                    {Py_mp_length, slot(length)},
                    {Py_tp_iter, slot(iterate)},
                    {Py_tp_repr, slot(represent)},
                    {Py_tp_methods, methods},
                    {Py_tp_getset, properties},
                    {0, nullptr}};
PyType_Spec form{"tarn._tarn.Array", sizeof(View), 0, Py_TPFLAGS_DEFAULT, slots};

}  // namespace

void add_array_types(PyObject* module) { view_type = add_type(module, form); }

Ref array_view(PyObject* object, const MemberInfo& member) {
  auto* view = allocate<View>(view_type);
  view->base.member = &member;
  view->owner = Ref::to(object).release();
  return Ref(reinterpret_cast<PyObject*>(view));
}

void set_array(PyObject* object, const MemberInfo& member, PyObject* values) {
  const std::vector<Ref> elements = elements_in(values, member);
  if (const auto bytes = filled_block(elements, member)) return let_block(object, member, *bytes);
  const Ref before = whole_array(object, member);
  try {
    let_each(object, member, elements, object_of(object).face);
  } catch (const PythonError&) {
    ErrorAside error;
    let_each(object, member, elements_in(before.get(), member), Face::Classic);
    error.raise();
  }
}

}  // namespace tarn::python
