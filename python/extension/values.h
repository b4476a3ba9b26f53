// Values between Python and the library.
#pragma once

#include <list>
#include <vector>

#include "extension/objects.h"

namespace tarn::python {

/// What the library reads during a call.
struct Keep {
  std::vector<Ref> objects;
  std::list<std::vector<double>> reals;
};

/// None, Booleans, numbers (numpy's too), texts, paths, objects, and lists of numbers in any form. Error `TypeError`
/// for anything else.
tarn_value value_of(PyObject* value, Keep& keep);

/// A text of a daily face comes without the blanks at its ends.
Ref from_value(const tarn_value& value, Face face);

/// A list or tuple of any sequence but a text, numpy arrays included; null where it is none.
Ref as_list(PyObject* value);

}  // namespace tarn::python
