// A door: an opaque part, and an optional glazed part with its own area, U-value and shade coefficient.
#pragma once

#include "tarn/base/labels.h"
#include "tarn/storage/entity.h"

namespace tarn {

enum class DOR_AreaSpec : int16_t { DAS_AREA = 0, DAS_HEIGHT_AND_WIDTH = 1 };
template <>
inline constexpr auto code_table<DOR_AreaSpec> =
    codes_between<DOR_AreaSpec::DAS_AREA, DOR_AreaSpec::DAS_HEIGHT_AND_WIDTH>;

/// A record of the door file.
struct DoorRecord {
  Text<255> Name;
  R4 GrossArea;               // ft2
  R4 SolidUValue;             // Btu/(hr.ft2.F)
  R4 GlassArea, GlassUValue;  // ft2, Btu/(hr.ft2.F)
  R4 GlassShadeCo;
  Bool GlassShaded;
  Code<DOR_AreaSpec> AreaSpec;
  R4 Height, Width;  // ft
};
static_assert(sizeof(DoorRecord) == 287);

class DOR_Door final : public Entity<DOR_Door, DoorRecord> {
 public:
  const ClassInfo& info() const override;
  const Kind& kind() const override;
  /// True when it ran to its end.
  bool Delete(std::optional<int16_t> nRecNum = {});
};

}  // namespace tarn
