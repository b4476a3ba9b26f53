#include "extension/methods.h"

#include <algorithm>
#include <cstring>

#include "extension/calls.h"
#include "extension/descriptors.h"
#include "extension/values.h"

namespace tarn::python {
namespace {

PyTypeObject *method_type = nullptr, *bound_type = nullptr;

/// A method of an object.
struct Bound {
  Descriptor base;
  PyObject* owner;
};
Bound& bound_of(PyObject* self) { return *reinterpret_cast<Bound*>(self); }

size_t place_of_parameter(const MemberInfo& member, const std::string& name) {
  for (size_t i = 0; i < member.parameters.size(); ++i) {
    if (folded(member.parameters[i].name) == folded(name)) return i;
  }
  type_error(std::string(member.name) + " has no argument " + name);
}

/// The arguments in their places; null for those left out.
std::vector<PyObject*> in_places(const MemberInfo& member, PyObject* arguments, PyObject* named) {
  std::vector<PyObject*> places(member.parameters.size());
  const Py_ssize_t given = PyTuple_Size(arguments);
  if (static_cast<size_t>(given) > places.size())
    type_error(std::string(member.name) + " takes at most " + std::to_string(places.size()) + " arguments");
  for (Py_ssize_t i = 0; i < given; ++i) places[static_cast<size_t>(i)] = PyTuple_GetItem(arguments, i);
  PyObject *name = nullptr, *value = nullptr;
  for (Py_ssize_t at = 0; named && PyDict_Next(named, &at, &name, &value);) {
    PyObject*& place = places[place_of_parameter(member, utf8_of(name))];
    if (place) type_error(std::string(member.name) + " got two values for " + utf8_of(name));
    place = value;
  }
  return places;
}

/// A daily caller leaves out what only comes back.
tarn_value blank_of(const tarn_parameter& parameter, Face face) {
  tarn_value blank{};
  if (face == Face::Daily && parameter.in_out != 0 && parameter.optional == 0) {
    blank.type = parameter.type;
    if (parameter.type == TARN_TEXT) blank.as.text = "";
  }
  return blank;
}

/// A method that answers with a code in its ReturnCode has failed without an error: the reason is a message of the log.
void check_code(const std::vector<tarn_value>& values, PyObject* object, const MemberInfo& member) {
  for (size_t i = 0; i < values.size(); ++i) {
    const bool is_code = values[i].type == TARN_INT16 && std::strcmp(member.parameters[i].name, "ReturnCode") == 0;
    const int code = is_code ? values[i].as.i2 : 0;
    if (code == 0) continue;
    const std::string answer = std::string(member.name) + " answered " + std::to_string(code) + ".";
    raise(code, member.of->name + "." + member.name + "()", last_message().empty() ? answer : last_message(), object,
          &member);
  }
}

Ref answer_of(const MemberInfo& member, const tarn_value& result, const std::vector<tarn_value>& values, Face face) {
  std::vector<Ref> answers;
  if (member.type != TARN_EMPTY) answers.push_back(from_value(result, face));
  for (size_t i = 0; i < values.size(); ++i) {
    if (member.parameters[i].in_out) answers.push_back(from_value(values[i], face));
  }
  if (answers.empty()) return none();
  if (answers.size() == 1) return std::move(answers.front());
  Ref all = made(PyTuple_New(static_cast<Py_ssize_t>(answers.size())));
  for (size_t i = 0; i < answers.size(); ++i)
    answered(PyTuple_SetItem(all.get(), static_cast<Py_ssize_t>(i), answers[i].release()));
  return all;
}

int16_t index_in(PyObject* value) {
  const long index = PyLong_AsLong(made(PyNumber_Index(value)).get());
  if (index == -1 && PyErr_Occurred()) throw PythonError();
  if (index != static_cast<int16_t>(index))
    raise(6, "", "Overflow: no entity has number " + std::to_string(index) + ".");
  return static_cast<int16_t>(index);
}

/// Load and Save of a plant or a building ask which sections. For a daily caller who does not say, it is all of
/// them; false for any other call.
bool call_whole(PyObject* object, const MemberInfo& member, const std::vector<PyObject*>& places, bool by_place) {
  const Object& on = object_of(object);
  const bool asks = !member.parameters.empty() && member.parameters.front().sections != 0;
  if (on.face != Face::Daily || !asks) return false;
  const bool loads = std::strcmp(member.name, "Load") == 0;
  const auto given = std::count_if(places.begin(), places.end(), [](PyObject* place) { return place != nullptr; });
  PyObject* number = by_place ? places.front() : places.back();
  if (given != (loads ? 1 : 0) || (loads && !number)) return false;
  const int16_t index = loads ? index_in(number) : int16_t{0};
  const Ref alive = Ref::to(object);
  const Strictness strictness(on.face);
  check(unlocked([&] { return loads ? tarn_load_entity(on.handle, index) : tarn_save_entity(on.handle); }), object,
        &member);
  return true;
}

PyObject* bind(PyObject* self, PyObject* object, PyObject* /*type*/) {
  if (!object) return Ref::to(self).release();
  return giving([&] {
    required_object(object);
    auto* bound = allocate<Bound>(bound_type);
    bound->base.member = &member_of(self);
    bound->owner = Ref::to(object).release();
    return Ref(reinterpret_cast<PyObject*>(bound));
  });
}

PyObject* call_descriptor(PyObject* self, PyObject* arguments, PyObject* named) {
  return giving([&] {
    if (PyTuple_Size(arguments) < 1) type_error(std::string(member_of(self).name) + " needs the object to act on");
    PyObject* object = PyTuple_GetItem(arguments, 0);
    required_object(object);
    const Ref rest = made(PyTuple_GetSlice(arguments, 1, PyTuple_Size(arguments)));
    return call(object, member_of(self), rest.get(), named);
  });
}

PyObject* call_bound(PyObject* self, PyObject* arguments, PyObject* named) {
  return giving([&] { return call(bound_of(self).owner, member_of(self), arguments, named); });
}
void destroy_bound(PyObject* self) {
  Py_CLEAR(bound_of(self).owner);
  free_object(self);
}
PyObject* represent_bound(PyObject* self) {
  return giving([&] {
    const Ref owner = made(PyObject_Repr(bound_of(self).owner));
    return text("<" + member_of(self).of->name + "." + member_of(self).name + " of " + utf8_of(owner.get()) + ">");
  });
}
PyObject* get_owner(PyObject* self, void* /*closure*/) { return Ref::to(bound_of(self).owner).release(); }
PyObject* get_signature(PyObject* self, void* /*closure*/) {
  return giving([&] {
    const bool daily = object_of(bound_of(self).owner).face == Face::Daily;
    return help("signature", place_of(member_of(self)).get(), Py_True, daily ? Py_True : Py_False);
  });
}
PyObject* get_name(PyObject* self, void* /*closure*/) {
  return giving([&] { return text(member_of(self).name); });
}
PyObject* get_doc(PyObject* self, void* /*closure*/) {
  return giving([&] { return help("member_doc", place_of(member_of(self)).get()); });
}

PyGetSetDef bound_properties[]{{"__self__", get_owner, nullptr, nullptr, nullptr},
                               {"__signature__", get_signature, nullptr, nullptr, nullptr},
                               {"__name__", get_name, nullptr, nullptr, nullptr},
                               {"__doc__", get_doc, nullptr, nullptr, nullptr},
                               {nullptr, nullptr, nullptr, nullptr, nullptr}};
PyType_Slot bound_slots[]{{Py_tp_dealloc, slot(destroy_bound)},
                          {Py_tp_call, slot(call_bound)},
                          {Py_tp_repr, slot(represent_bound)},
                          {Py_tp_getset, bound_properties},
                          {0, nullptr}};
PyType_Spec bound_form{"tarn._tarn.BoundMethod", sizeof(Bound), 0, Py_TPFLAGS_DEFAULT, bound_slots};

PyType_Slot slots[]{{Py_tp_dealloc, slot(free_object)},    {Py_tp_descr_get, slot(bind)},
                    {Py_tp_call, slot(call_descriptor)},   {Py_tp_repr, slot(represent_descriptor)},
                    {Py_tp_getset, kDescriptorProperties}, {0, nullptr}};
PyType_Spec form{"tarn._tarn.Method", sizeof(Descriptor), 0, Py_TPFLAGS_DEFAULT, slots};

}  // namespace

void add_method_types(PyObject* module) {
  method_type = add_type(module, form);
  bound_type = add_type(module, bound_form);
}

Ref method_descriptor(const MemberInfo& member) { return descriptor(method_type, member); }

Ref call(PyObject* object, const MemberInfo& member, PyObject* arguments, PyObject* named) {
  const std::vector<PyObject*> places = in_places(member, arguments, named);
  if (call_whole(object, member, places, PyTuple_Size(arguments) > 0)) return none();
  const Object& on = object_of(object);
  Keep keep;
  std::vector<tarn_value> values;
  for (PyObject* argument : places)
    values.push_back(argument ? value_of(argument, keep) : blank_of(member.parameters[values.size()], on.face));
  tarn_value result{};
  const bool strict = is_strict(on);
  if (strict) last_message().clear();
  {
    const Ref alive = Ref::to(object);
    const Strictness strictness(on.face);
    const tarn_status status = unlocked([&] {
      return tarn_call(on.handle, member.number, values.data(), static_cast<int32_t>(values.size()), &result);
    });
    check(status, object, &member);
  }
  Ref answer = answer_of(member, result, values, on.face);
  if (strict) check_code(values, object, member);
  return answer;
}

}  // namespace tarn::python
