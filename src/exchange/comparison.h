// Whether two objects of a class say the same.
#pragma once

#include "tarn/base/object.h"

namespace tarn {

/// Every stored field of the objects and of their parts is the same, references by their indexes; reals and texts as
/// `compare` takes them.
bool same_content(Object& first, Object& second);

}  // namespace tarn
