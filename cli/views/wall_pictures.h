// Walls and roofs as a person sees them on a page.
#pragma once

#include <string>

#include "tarn/construction.h"

namespace tarn::cli {

/// A self-contained picture (SVG): the section to scale with the temperatures in it on a sunny day, and the heat that
/// comes in after an hour of warmth. Error `InvalidCall`, with the reason, where the layers have no response.
std::string wall_picture(CA_ConstructionAssly& construction);

}  // namespace tarn::cli
