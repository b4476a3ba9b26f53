// External shading of a window: reveal, overhang, and a vertical fin on each side. Lengths in ft.
#pragma once

#include "tarn/storage/entity.h"

namespace tarn {

/// A record of the shade file.
struct ShadeRecord {
  Text<30> Name;
  R4 RevealDepth;
  R4 OvhgExt, OvhgHeight, OvhgRHExt, OvhgLHExt;  // projection, height above the window, past its right and left edges
  R4 RHFinSep, RHFinExt, RHFinHeight;            // separation from the window, projection, height
  R4 LHFinSep, LHFinExt, LHFinHeight;
};
static_assert(sizeof(ShadeRecord) == 74);

class SHD_Shade final : public Entity<SHD_Shade, ShadeRecord> {
 public:
  const ClassInfo& info() const override;
  const Kind& kind() const override;
};

}  // namespace tarn
