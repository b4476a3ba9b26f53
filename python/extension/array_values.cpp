#include "extension/array_values.h"

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>

#include "extension/calls.h"
#include "extension/properties.h"
#include "extension/values.h"

namespace tarn::python {
namespace {

/// Bytes of an element in a block; 0 where elements do not move so.
size_t width_of(int32_t type) {
  switch (type) {
    case TARN_BOOLEAN:
    case TARN_INT16:
      return sizeof(int16_t);
    case TARN_INT32:
    case TARN_REAL32:
      return sizeof(int32_t);
    case TARN_REAL64:
      return sizeof(double);
    default:
      return 0;
  }
}

template <typename N>
N number_at(const char* place) {
  N number{};
  std::memcpy(&number, place, sizeof number);
  return number;
}

Ref element_at(int32_t type, const char* place) {
  switch (type) {
    case TARN_BOOLEAN:
      return truth(number_at<int16_t>(place) != 0);
    case TARN_INT16:
      return made(PyLong_FromLong(number_at<int16_t>(place)));
    case TARN_INT32:
      return made(PyLong_FromLong(number_at<int32_t>(place)));
    case TARN_REAL32:
      return made(PyFloat_FromDouble(double{number_at<float>(place)}));
    default:
      return made(PyFloat_FromDouble(number_at<double>(place)));
  }
}

using Element = std::function<Ref(size_t place, const std::vector<int32_t>& subscripts)>;

/// Nested lists of what `element` gives by the place in a block and by the subscripts.
Ref nested(const MemberInfo& member, const Element& element, std::vector<int32_t>& at, size_t place, size_t step) {
  const size_t dimension = at.size();
  if (dimension == member.bounds.size()) return element(place, at);
  const size_t size = member.size_of(dimension);
  Ref list = made(PyList_New(static_cast<Py_ssize_t>(size)));
  for (size_t i = 0; i < size; ++i) {
    at.push_back(member.bounds[dimension].first + static_cast<int32_t>(i));
    Ref item = nested(member, element, at, place + i * step, step * size);
    at.pop_back();
    answered(PyList_SetItem(list.get(), static_cast<Py_ssize_t>(i), item.release()));
  }
  return list;
}
Ref nested(const MemberInfo& member, const Element& element) {
  std::vector<int32_t> at;
  return nested(member, element, at, 0, 1);
}

[[noreturn]] void wrong_shape(const MemberInfo& member, size_t dimension) {
  std::string sizes;
  for (size_t d = dimension; d < member.bounds.size(); ++d)
    sizes += (sizes.empty() ? "" : " x ") + std::to_string(member.size_of(d));
  PyErr_SetString(PyExc_ValueError, (std::string(member.name) + " takes a list of " + sizes + " values").c_str());
  throw PythonError();
}

void take_elements(PyObject* values, const MemberInfo& member, size_t dimension, size_t place, size_t step,
                   std::vector<Ref>& out) {
  const Ref list = as_list(values);
  const size_t size = member.size_of(dimension);
  if (!list || static_cast<size_t>(PySequence_Size(list.get())) != size) wrong_shape(member, dimension);
  for (size_t i = 0; i < size; ++i) {
    Ref item = made(PySequence_GetItem(list.get(), static_cast<Py_ssize_t>(i)));
    if (dimension + 1 < member.bounds.size())
      take_elements(item.get(), member, dimension + 1, place + i * step, step * size, out);
    else
      out[place + i * step] = std::move(item);
  }
}

template <typename N>
bool put_integer(PyObject* element, char* place) {
  if (!PyLong_Check(element)) return false;
  int overflow = 0;
  const long number = PyLong_AsLongAndOverflow(element, &overflow);
  if (overflow != 0 || number < std::numeric_limits<N>::min() || number > std::numeric_limits<N>::max()) return false;
  const auto fits = static_cast<N>(number);
  std::memcpy(place, &fits, sizeof fits);
  return true;
}
template <typename N>
bool put_real(PyObject* element, char* place) {
  if (!PyFloat_Check(element) && !PyLong_Check(element)) return false;
  const double number = PyFloat_AsDouble(element);
  if (number == -1 && PyErr_Occurred()) {
    PyErr_Clear();
    return false;
  }
  if (std::isfinite(number) && std::abs(number) > double{std::numeric_limits<N>::max()}) return false;
  const auto fits = static_cast<N>(number);
  std::memcpy(place, &fits, sizeof fits);
  return true;
}
bool put_truth(PyObject* element, char* place) {
  const int is_true = PyObject_IsTrue(element);
  if (is_true < 0) PyErr_Clear();
  const auto bits = static_cast<int16_t>(is_true > 0 ? -1 : 0);
  std::memcpy(place, &bits, sizeof bits);
  return is_true >= 0 && (PyBool_Check(element) || PyLong_Check(element) || PyFloat_Check(element));
}

bool put(int32_t type, PyObject* element, char* place) {
  switch (type) {
    case TARN_BOOLEAN:
      return put_truth(element, place);
    case TARN_INT16:
      return put_integer<int16_t>(element, place);
    case TARN_INT32:
      return put_integer<int32_t>(element, place);
    case TARN_REAL32:
      return put_real<float>(element, place);
    default:
      return put_real<double>(element, place);
  }
}

}  // namespace

std::optional<std::vector<char>> block_of(PyObject* object, const MemberInfo& member) {
  const size_t width = width_of(member.type);
  if (width == 0) return std::nullopt;
  std::vector<char> bytes(width * member.elements());
  const Object& on = object_of(object);
  const Strictness strictness(on.face);
  if (tarn_get_block(on.handle, member.number, bytes.data(), bytes.size()) != TARN_OK) return std::nullopt;
  return bytes;
}

Ref whole_array(PyObject* object, const MemberInfo& member) {
  if (const auto bytes = block_of(object, member)) {
    const size_t width = width_of(member.type);
    return nested(member,
                  [&](size_t place, const auto&) { return element_at(member.type, bytes->data() + place * width); });
  }
  return nested(member, [&](size_t, const std::vector<int32_t>& at) {
    return read(object, member, at.data(), static_cast<int32_t>(at.size()));
  });
}

std::vector<Ref> elements_in(PyObject* values, const MemberInfo& member) {
  std::vector<Ref> elements(member.elements());
  take_elements(values, member, 0, 0, 1, elements);
  return elements;
}

std::optional<std::vector<char>> filled_block(const std::vector<Ref>& elements, const MemberInfo& member) {
  const size_t width = width_of(member.type);
  if (width == 0) return std::nullopt;
  std::vector<char> bytes(width * elements.size());
  for (size_t i = 0; i < elements.size(); ++i) {
    if (!put(member.type, elements[i].get(), bytes.data() + i * width)) return std::nullopt;
  }
  return bytes;
}

void let_block(PyObject* object, const MemberInfo& member, const std::vector<char>& bytes) {
  const Object& on = object_of(object);
  const Strictness strictness(on.face);
  const auto set = on.face == Face::Daily ? tarn_let_block_allowed : tarn_let_block;
  check(set(on.handle, member.number, bytes.data(), bytes.size()), object, &member);
}

void let_each(PyObject* object, const MemberInfo& member, const std::vector<Ref>& elements, Face face) {
  nested(member, [&](size_t place, const std::vector<int32_t>& at) {
    let(object, member, at.data(), static_cast<int32_t>(at.size()), elements[place].get(), face);
    return none();
  });
}

}  // namespace tarn::python
