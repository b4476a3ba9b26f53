#include "extension/events.h"

#include <memory>

#include "extension/calls.h"
#include "extension/descriptors.h"
#include "extension/values.h"

namespace tarn::python {
namespace {

PyTypeObject* event_type = nullptr;

/// A handler as the library knows it: by a number, as the object that it was set on may end before what it listens to.
/// The object has the handler.
struct Listening {
  PyObject* owner;  // which takes it away when it ends
  const MemberInfo* member;
  std::list<std::string> texts;  // of the last answer, which the library reads after the handler is back
};
using Listenings = std::unordered_map<uintptr_t, std::shared_ptr<Listening>>;

/// Of all threads, as an object may end on another one than its own. The interpreter's lock guards them.
Listenings& listenings() {
  static auto* const all = new Listenings;  // outlives all objects
  return *all;
}
uintptr_t next_number() {
  static uintptr_t number = 0;
  return ++number;
}

Ref arguments_of(const Listening& listening, const tarn_value* values, int32_t count) {
  const Face face = object_of(listening.owner).face;
  Ref arguments = made(PyTuple_New(count));
  for (int32_t i = 0; i < count; ++i)
    answered(PyTuple_SetItem(arguments.get(), i, from_value(values[i], face).release()));
  return arguments;
}

void take_answer(Listening& listening, PyObject* answer, tarn_value* values, int32_t count) {
  if (answer == Py_None) return;
  const Ref answers = PyTuple_Check(answer) ? Ref::to(answer) : made(PyTuple_Pack(1, answer));
  const Py_ssize_t given = PyTuple_Size(answers.get());
  if (given > count)
    type_error(std::string("the handler of ") + listening.member->name + " answered " + std::to_string(given) +
               " values, at most " + std::to_string(count));
  listening.texts.clear();
  Keep keep;
  for (Py_ssize_t i = 0; i < given; ++i) {
    values[i] = value_of(PyTuple_GetItem(answers.get(), i), keep);
    if (values[i].type == TARN_REALS) type_error("a handler cannot answer a list of numbers");
    if (values[i].type == TARN_TEXT) values[i].as.text = listening.texts.emplace_back(values[i].as.text).c_str();
  }
}

int32_t forward(void* context, tarn_value* values, int32_t count) {
  const Lock lock;
  const auto found = listenings().find(reinterpret_cast<uintptr_t>(context));
  if (found == listenings().end()) return 0;
  const std::shared_ptr<Listening> listening = found->second;  // which its own handler may take away
  try {
    const Ref alive = Ref::to(listening->owner);
    const Ref handler = Ref::to(PyDict_GetItemString(object_of(alive.get()).listeners, listening->member->name));
    const Ref arguments = arguments_of(*listening, values, count);
    const Ref answer = made(PyObject_CallObject(handler.get(), arguments.get()));
    take_answer(*listening, answer.get(), values, count);
    return 0;
  } catch (...) {
    set_error();
    keep_handler_error();
    return 1;
  }
}

void stop(PyObject* owner, const MemberInfo& member) {
  std::erase_if(listenings(),
                [&](const auto& each) { return each.second->owner == owner && each.second->member == &member; });
}

PyObject* get(PyObject* self, PyObject* object, PyObject* /*type*/) {
  if (!object) return Ref::to(self).release();
  return giving([&] {
    PyObject* handlers = required_object(object).listeners;
    PyObject* handler = handlers ? PyDict_GetItemString(handlers, member_of(self).name) : nullptr;
    return handler ? Ref::to(handler) : none();
  });
}

int set(PyObject* self, PyObject* object, PyObject* handler) {
  return doing([&] {
    const MemberInfo& member = member_of(self);
    Object& on = required_object(object);
    if (!handler) cannot_delete(member);
    if (!on.listeners) on.listeners = made(PyDict_New()).release();
    if (handler == Py_None) {
      check(tarn_listen(on.handle, member.number, nullptr, nullptr), object, &member);
      stop(object, member);
      if (PyDict_GetItemString(on.listeners, member.name)) answered(PyDict_DelItemString(on.listeners, member.name));
      return;
    }
    const uintptr_t number = next_number();
    check(tarn_listen(on.handle, member.number, forward, reinterpret_cast<void*>(number)), object, &member);
    answered(PyDict_SetItemString(on.listeners, member.name, handler));
    stop(object, member);
    listenings().emplace(number, std::make_shared<Listening>(Listening{object, &member, {}}));
  });
}

PyType_Slot slots[]{{Py_tp_dealloc, slot(free_object)},    {Py_tp_descr_get, slot(get)},
                    {Py_tp_descr_set, slot(set)},          {Py_tp_repr, slot(represent_descriptor)},
                    {Py_tp_getset, kDescriptorProperties}, {0, nullptr}};
PyType_Spec form{"tarn._tarn.Event", sizeof(Descriptor), 0, Py_TPFLAGS_DEFAULT, slots};

}  // namespace

void add_event_types(PyObject* module) { event_type = add_type(module, form); }

Ref event_descriptor(const MemberInfo& member) { return descriptor(event_type, member); }

void forget_listeners(PyObject* object) {
  std::erase_if(listenings(), [&](const auto& each) { return each.second->owner == object; });
}

}  // namespace tarn::python
