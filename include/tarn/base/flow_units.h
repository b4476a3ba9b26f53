// Units of water flow, as chillers, towers and pumps store them.
#pragma once

#include "tarn/base/labels.h"

namespace tarn {

enum class COM_FlowUOM : int16_t { FU_GPM, FU_GPM_PER_TON, FU_TEMPERATURE_DIFFERENCE };
template <>
inline constexpr CodeText<COM_FlowUOM> code_table<COM_FlowUOM>[] = {
    {COM_FlowUOM::FU_GPM, "gpm"},
    {COM_FlowUOM::FU_GPM_PER_TON, "gpm/ton"},
    {COM_FlowUOM::FU_TEMPERATURE_DIFFERENCE, "delta F"},
};

}  // namespace tarn
