#include "extension/descriptors.h"

namespace tarn::python {
namespace {

PyObject* get_name(PyObject* self, void* /*closure*/) {
  return giving([&] { return text(member_of(self).name); });
}
PyObject* get_doc(PyObject* self, void* /*closure*/) {
  return giving([&] { return help("member_doc", place_of(member_of(self)).get()); });
}
PyObject* get_class(PyObject* self, void* /*closure*/) {
  return giving([&] { return Ref::to(reinterpret_cast<PyObject*>(member_of(self).of->type)); });
}
PyObject* get_signature(PyObject* self, void* /*closure*/) {
  return giving([&] {
    const MemberInfo& member = member_of(self);
    if (member.kind != TARN_METHOD) {
      PyErr_SetString(PyExc_AttributeError, "__signature__");
      throw PythonError();
    }
    return help("signature", place_of(member).get(), Py_False, Py_True);
  });
}

}  // namespace

PyGetSetDef kDescriptorProperties[]{{"__name__", get_name, nullptr, nullptr, nullptr},
                                    {"__doc__", get_doc, nullptr, nullptr, nullptr},
                                    {"__objclass__", get_class, nullptr, nullptr, nullptr},
                                    {"__signature__", get_signature, nullptr, nullptr, nullptr},
                                    {nullptr, nullptr, nullptr, nullptr, nullptr}};

Ref descriptor(PyTypeObject* type, const MemberInfo& member) {
  auto* made_one = allocate<Descriptor>(type);
  made_one->member = &member;
  return Ref(reinterpret_cast<PyObject*>(made_one));
}

PyObject* represent_descriptor(PyObject* self) {
  return giving([&] { return text("<" + member_of(self).of->name + "." + member_of(self).name + ">"); });
}

Ref place_of(const MemberInfo& member) {
  return made(Py_BuildValue("(si)", member.of->name.c_str(), static_cast<int>(member.number)));
}

void cannot_delete(const MemberInfo& member) {
  PyErr_SetString(PyExc_AttributeError, (std::string(member.name) + " cannot be deleted").c_str());
  throw PythonError();
}

}  // namespace tarn::python
