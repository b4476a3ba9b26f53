#include "extension/tables.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <vector>

#include "extension/calls.h"
#include "extension/objects.h"

namespace tarn::python {
namespace {

/// The texts of a record: bytes of all elements, and of one.
struct TextField {
  size_t offset, size, width;
};

std::vector<TextField> text_fields(const tarn_entity_kind& kind) {
  std::vector<TextField> texts;
  for (int32_t i = 0; i < kind.field_count; ++i) {
    tarn_record_field field{};
    check(tarn_describe_record_field(kind.group, i, &field));
    if (field.type == TARN_TEXT)
      texts.push_back({static_cast<size_t>(field.offset), static_cast<size_t>(field.size),
                       static_cast<size_t>(field.element_size)});
  }
  return texts;
}

/// NULs in the place of the blanks at the end of a text, eight at a time while all of them are blanks.
void trim(char* text, char* end) {
  constexpr size_t kStep = 8;
  constexpr std::array<char, kStep> kBlanks{' ', ' ', ' ', ' ', ' ', ' ', ' ', ' '};
  while (end - text >= static_cast<ptrdiff_t>(kStep) && std::memcmp(end - kStep, kBlanks.data(), kStep) == 0) {
    end -= kStep;
    std::memset(end, 0, kStep);
  }
  while (end > text && end[-1] == ' ') *--end = '\0';
}

tarn_entity_kind kind_of(const std::string& group) {
  tarn_entity_kind kind{};
  for (int32_t i = 0; i < tarn_entity_kind_count(); ++i) {
    check(tarn_describe_entity_kind(i, &kind));
    if (group == kind.group) return kind;
  }
  type_error("there is no kind " + group);
}

std::vector<int32_t> integers(PyObject* list) {
  std::vector<int32_t> all(static_cast<size_t>(answered(PySequence_Size(list))));
  for (size_t i = 0; i < all.size(); ++i) {
    const Ref item = made(PySequence_GetItem(list, static_cast<Py_ssize_t>(i)));
    const long number = PyLong_AsLong(item.get());
    if (number == -1 && PyErr_Occurred()) throw PythonError();
    all[i] = static_cast<int32_t>(number);
  }
  return all;
}

/// Records by their indexes, which rise, some at a time.
class Records {
 public:
  Records(PyObject* project, const tarn_entity_kind& kind) : project_(project), kind_(kind), bytes_(kAtOnce * size()) {}

  size_t size() const { return static_cast<size_t>(kind_.record_size); }
  const char* at(int32_t index) {
    if (index < first_ || index >= first_ + count_) read(index);
    if (index >= first_ + count_)
      raise(62, "",
            std::string("The record file of the ") + kind_.group + " ends before record " + std::to_string(index) +
                ". tarn.check tells more.");
    return bytes_.data() + static_cast<size_t>(index - first_) * size();
  }

 private:
  static constexpr int32_t kAtOnce = 256;  // small enough for a cache

  void read(int32_t index) {
    first_ = index;
    check(tarn_read_records(object_of(project_).handle, kind_.group, first_, kAtOnce, bytes_.data(), bytes_.size(),
                            &count_),
          project_);
  }

  PyObject* project_;
  const tarn_entity_kind& kind_;
  std::vector<char> bytes_;
  int32_t first_ = 0, count_ = 0;
};

/// The records of entities by their indexes, each behind its index as an int32_t, texts ended by NULs: a bytearray.
PyObject* read_rows(PyObject* /*module*/, PyObject* arguments) {
  return giving([&] {
    PyObject *project = nullptr, *group = nullptr, *list = nullptr;
    if (!PyArg_ParseTuple(arguments, "OOO", &project, &group, &list)) throw PythonError();
    required_object(project);
    const tarn_entity_kind kind = kind_of(utf8_of(group));
    const std::vector<int32_t> indexes = integers(list);
    const std::vector<TextField> texts = text_fields(kind);
    Records records(project, kind);
    const size_t row = records.size() + sizeof(int32_t);
    Ref rows = made(PyByteArray_FromStringAndSize(nullptr, static_cast<Py_ssize_t>(indexes.size() * row)));
    char* to = PyByteArray_AsString(rows.get());
    for (const int32_t index : indexes) {
      std::memcpy(to, &index, sizeof index);
      char* record = to + sizeof index;
      std::memcpy(record, records.at(index), records.size());
      for (const TextField& text : texts) {
        for (char* each = record + text.offset; each < record + text.offset + text.size; each += text.width)
          trim(each, each + text.width);
      }
      to += row;
    }
    return rows;
  });
}

}  // namespace

PyMethodDef kTableFunctions[]{{"read_rows", read_rows, METH_VARARGS, nullptr}, {nullptr, nullptr, 0, nullptr}};

}  // namespace tarn::python
