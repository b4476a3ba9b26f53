#include "extension/values.h"

#include "extension/calls.h"

namespace tarn::python {
namespace {

tarn_value integer(PyObject* value) {
  tarn_value out{};
  int overflow = 0;
  const long number = PyLong_AsLongAndOverflow(value, &overflow);
  if (overflow == 0 && number == -1 && PyErr_Occurred()) throw PythonError();
  if (overflow == 0 && number >= INT32_MIN && number <= INT32_MAX) {
    out.type = TARN_INT32;
    out.as.i4 = static_cast<int32_t>(number);
    return out;
  }
  out.type = TARN_REAL64;
  out.as.r8 = PyLong_AsDouble(value);
  if (PyErr_Occurred()) {
    PyErr_Clear();
    raise(6, "", "Overflow: int too large to convert to float");
  }
  return out;
}

tarn_value real(double number) {
  tarn_value out{};
  out.type = TARN_REAL64;
  out.as.r8 = number;
  return out;
}

tarn_value text_value(PyObject* value, Keep& keep) {
  Ref bytes(PyUnicode_AsUTF8String(value));
  if (!bytes) {
    PyErr_Clear();
    bytes = made(PyUnicode_AsEncodedString(value, "utf-8", "surrogatepass"));
  }
  tarn_value out{};
  out.type = TARN_TEXT;
  out.length = static_cast<int32_t>(PyBytes_Size(bytes.get()));
  out.as.text = PyBytes_AsString(bytes.get());
  keep.objects.push_back(std::move(bytes));
  return out;
}

tarn_value reals(PyObject* list, Keep& keep) {
  std::vector<double>& numbers = keep.reals.emplace_back();
  const Py_ssize_t count = answered(PySequence_Size(list));
  for (Py_ssize_t i = 0; i < count; ++i) {
    const Ref item = made(PySequence_GetItem(list, i));
    numbers.push_back(PyFloat_AsDouble(item.get()));
    if (numbers.back() == -1 && PyErr_Occurred()) throw PythonError();
  }
  tarn_value out{};
  out.type = TARN_REALS;
  out.length = static_cast<int32_t>(numbers.size());
  out.as.reals = numbers.data();
  return out;
}

/// What is no value of Python's own: numpy's, paths, other numbers.
tarn_value foreign(PyObject* value, Keep& keep) {
  if (PyObject_HasAttrString(value, "__fspath__")) return text_value(made(PyOS_FSPath(value)).get(), keep);
  if (PyObject_HasAttrString(value, "tolist")) {
    const Ref plain = made(PyObject_CallMethod(value, "tolist", nullptr));
    return value_of(plain.get(), keep);
  }
  if (PyIndex_Check(value)) return integer(made(PyNumber_Index(value)).get());
  if (const Ref list = as_list(value)) return reals(list.get(), keep);
  if (PyNumber_Check(value)) return real(PyFloat_AsDouble(made(PyNumber_Float(value)).get()));
  const Ref type_name = made(PyObject_GetAttrString(reinterpret_cast<PyObject*>(Py_TYPE(value)), "__name__"));
  type_error("a " + utf8_of(type_name.get()) +
             " cannot be a member's value; give a number, Boolean, text, path, object or list of numbers");
}

bool is_blank(char c) { return c == ' ' || c == '\0'; }

}  // namespace

tarn_value value_of(PyObject* value, Keep& keep) {
  if (PyFloat_Check(value)) return real(PyFloat_AsDouble(value));
  if (PyBool_Check(value)) {
    tarn_value out{};
    out.type = TARN_BOOLEAN;
    out.as.boolean = value == Py_True;
    return out;
  }
  if (PyLong_Check(value)) return integer(value);
  if (PyUnicode_Check(value)) return text_value(value, keep);
  if (value == Py_None) return {};
  if (is_object(value)) {
    tarn_value out{};
    out.type = TARN_OBJECT;
    out.as.object = object_of(value).handle;
    return out;
  }
  return foreign(value, keep);
}

Ref from_value(const tarn_value& value, Face face) {
  switch (value.type) {
    case TARN_BOOLEAN:
      return truth(value.as.boolean != 0);
    case TARN_INT16:
      return made(PyLong_FromLong(value.as.i2));
    case TARN_INT32:
      return made(PyLong_FromLong(value.as.i4));
    case TARN_REAL32:
      return made(PyFloat_FromDouble(double{value.as.r4}));
    case TARN_REAL64:
      return made(PyFloat_FromDouble(value.as.r8));
    case TARN_TEXT: {
      const char *from = value.as.text, *to = from + value.length;
      if (face == Face::Daily) {
        while (to > from && is_blank(to[-1])) --to;
        while (from < to && is_blank(*from)) ++from;
      }
      return made(PyUnicode_DecodeUTF8(from, to - from, "replace"));
    }
    case TARN_REALS: {
      Ref list = made(PyList_New(value.length));
      for (int32_t i = 0; i < value.length; ++i)
        answered(PyList_SetItem(list.get(), i, made(PyFloat_FromDouble(value.as.reals[i])).release()));
      return list;
    }
    case TARN_OBJECT:
      return wrapped(value.as.object, face);
    default:
      return none();
  }
}

Ref as_list(PyObject* value) {
  if (PyList_Check(value) || PyTuple_Check(value)) return Ref::to(value);
  if (PyObject_HasAttrString(value, "tolist")) {
    Ref list = made(PyObject_CallMethod(value, "tolist", nullptr));
    return PyList_Check(list.get()) ? std::move(list) : Ref();
  }
  const bool is_sequence = PySequence_Check(value) && !PyUnicode_Check(value) && !PyBytes_Check(value) &&
                           !PyByteArray_Check(value) && !is_object(value);
  return is_sequence ? made(PySequence_List(value)) : Ref();
}

}  // namespace tarn::python
