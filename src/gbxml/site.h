// The place of the building and its design weather.
#pragma once

#include "gbxml/filling.h"

namespace tarn {

/// Where the project has no design city yet; it is left as it is otherwise.
void fill_site(Filling& filling);

}  // namespace tarn
