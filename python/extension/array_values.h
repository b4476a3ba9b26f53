// Whole arrays between Python's nested lists, whose first subscript is the outermost, and the library's blocks, whose
// first subscript varies fastest.
#pragma once

#include <optional>
#include <vector>

#include "extension/members.h"
#include "extension/objects.h"

namespace tarn::python {

/// A nested list.
Ref whole_array(PyObject* object, const MemberInfo& member);

/// The elements of nested sequences in the order of blocks. Error `ValueError` for another shape than the array's.
std::vector<Ref> elements_in(PyObject* values, const MemberInfo& member);

/// Null where the elements do not move as a block.
std::optional<std::vector<char>> block_of(PyObject* object, const MemberInfo& member);
/// The elements as a block; null where one of them needs the care of an element's own setting.
std::optional<std::vector<char>> filled_block(const std::vector<Ref>& elements, const MemberInfo& member);
void let_block(PyObject* object, const MemberInfo& member, const std::vector<char>& bytes);
/// Every element by its own setting; those that were there before come back with the classic face, which refuses less.
void let_each(PyObject* object, const MemberInfo& member, const std::vector<Ref>& elements, Face face);

}  // namespace tarn::python
