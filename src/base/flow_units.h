// Units of water flow, as chillers, towers and pumps store them.
#pragma once

#include "base/labels.h"

namespace tarn {

enum class COM_FlowUOM : int16_t { FU_GPM, FU_GPM_PER_TON, FU_TEMPERATURE_DIFFERENCE };
inline constexpr Label kFlowUnits[]{
    {0, "FU_GPM", "gpm"}, {1, "FU_GPM_PER_TON", "gpm/ton"}, {2, "FU_TEMPERATURE_DIFFERENCE", "F"}};
template <>
inline constexpr std::span<const Label> labels<COM_FlowUOM> = kFlowUnits;

}  // namespace tarn
