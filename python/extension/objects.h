// Objects of the component as Python holds them: a handle, the thread that it belongs to, and the face it shows.
#pragma once

#include "extension/members.h"
#include "extension/python.h"
#include "tarn/tarn.h"

namespace tarn::python {

/// Classic objects trap and pad as their class does; daily ones raise every failure, and their texts are trimmed. What
/// an object hands out has its face.
enum class Face : bool { Classic, Daily };

struct Object {
  PyObject ob_base;
  tarn_object* handle;
  unsigned long thread;
  Face face;
  PyObject* listeners;  // a dict by the names of events; null without any
  PyObject* weak_references;
};

inline Object& object_of(PyObject* self) { return *reinterpret_cast<Object*>(self); }
bool is_object(PyObject* value);
/// Error `TypeError` for anything else.
Object& required_object(PyObject* value);

/// The Python object of a handle that the library gave out; None for a null one.
Ref wrapped(tarn_object* handle, Face face);

/// A thread's first steps - its log and its yield - and the release of its objects that ended on others.
void enter_thread();

void add_object_types(PyObject* module);
/// A type for each class of the library, made from its members; they become attributes of the module.
void add_classes(PyObject* module);

extern PyTypeObject* object_type;      // what all of them derive from
extern PyTypeObject* collection_type;  // those with Count and Item: len(), iteration
extern PyTypeObject* database_type;    // execute(), rows()

}  // namespace tarn::python
