// The nine parts of a space, each with its block of the space record. Codes whose meaning belongs to engines and user
// interfaces (exposure, usage, activity, fixture, floor, partition kinds, units of values) are plain numbers here.
// Fields that hold the index of another entity say so in the members tables.
#pragma once

#include "tarn/base/labels.h"
#include "tarn/storage/part.h"

namespace tarn {

enum class SPC_AreaInputMode : int16_t { AIM_DIRECT = 0, AIM_DIMENSIONS = 1 };
template <>
inline constexpr auto code_table<SPC_AreaInputMode> =
    codes_between<SPC_AreaInputMode::AIM_DIRECT, SPC_AreaInputMode::AIM_DIMENSIONS>;

enum class SPC_OccupancySpec : int16_t { TOTALPEOPLE = 0, SQFTPERPERSON = 1 };
template <>
inline constexpr CodeText<SPC_OccupancySpec> code_table<SPC_OccupancySpec>[] = {
    {SPC_OccupancySpec::TOTALPEOPLE, "people"},
    {SPC_OccupancySpec::SQFTPERPERSON, "ft2 per person"},
};

struct GeneralRecord {
  Text<24> Name;
  R4 FloorArea;   // ft2
  R4 AvgHeight;   // ft
  R4 BuildingWt;  // lb/ft2
  I2 Reserved;
  I4 SpaceUsage;
  R8 OAReq1Value;
  I2 OAReq1Spec;
  R8 OAReq2Value;
  I2 OAReq2Spec;
  Code<SPC_AreaInputMode> AreaSpec;
  R4 Length, Width;  // ft
};
static_assert(sizeof(GeneralRecord) == 72);

/// An exterior wall with its windows, their external shades, and its doors.
struct WallWindowRecord {
  I2 Exposure;   // 0: the slot is not in use
  R4 GrossArea;  // ft2
  I2 WallType;
  Array<I2, 2> WindowType, WindowQty, WindowShade;
  I2 DoorType, DoorQty;
  Code<SPC_AreaInputMode> WallAreaSpec;
  R4 WallWidth, WallHeight;  // ft
};
static_assert(sizeof(WallWindowRecord) == 34);

struct RoofRecord {
  I2 Exposure;  // 0: the slot is not in use
  I2 Slope;
  R4 GrossArea;  // ft2
  I2 RoofType;
  I2 SkylightType, SkylightQty;
  Code<SPC_AreaInputMode> AreaSpec;
  R4 Length, Width;  // ft
};
static_assert(sizeof(RoofRecord) == 24);

struct PartitionRecord {
  I2 PartitionType;
  R4 Area;                      // ft2
  R4 UValue;                    // Btu/(hr.ft2.F)
  R4 MaxSpaceTemp, MaxAmbient;  // F, of the adjacent space and outdoors in the same hour
  R4 MinSpaceTemp, MinAmbient;  // F
};
static_assert(sizeof(PartitionRecord) == 26);

struct FloorRecord {
  I2 FloorType;
  R4 Area;                      // ft2
  R4 OverallUValue;             // Btu/(hr.ft2.F)
  R4 ExposedPerimeter;          // ft
  R4 SlabInsulR;                // hr.ft2.F/Btu
  R4 Depth;                     // ft below grade
  R4 WallUValue;                // Btu/(hr.ft2.F)
  R4 WallInsulR;                // hr.ft2.F/Btu
  R4 WallInsulDepth;            // ft
  R4 MaxSpaceTemp, MaxAmbient;  // F, below the floor and outdoors in the same hour
  R4 MinSpaceTemp, MinAmbient;  // F
  Code<SPC_AreaInputMode> AreaSpec;
  R4 Length, Width;  // ft
  Bool Carpeted;
};
static_assert(sizeof(FloorRecord) == 62);

struct InfiltrationRecord {
  I2 CoolSpec;
  R4 CoolCFM;
  I2 HeatSpec;
  R4 HeatCFM;
  I2 TypeSpec;
  R4 TypeCFM;
  Bool CalcWhenFanOn;
  R4 DirExhaustAir;  // cfm
};
static_assert(sizeof(InfiltrationRecord) == 24);

struct PeopleRecord {
  Code<SPC_OccupancySpec> Spec;
  R4 Occupancy;  // people, or ft2 per person
  I2 ActLevel;
  R4 SensibleHeat, LatentHeat;  // Btu/hr per person
  I2 Schedule;
  R4 RadiantConvSplit;  // radiant part
  R4 UnoccDiv;
};
static_assert(sizeof(PeopleRecord) == 26);

struct LightingRecord {
  I2 OverheadSpec;
  R4 OverheadWatt;
  R4 BallastMult;
  I2 OverheadFixture;
  I2 OverheadSchedule;
  I2 TaskSpec;
  R4 TaskWatt;
  I2 TaskSchedule;
  R4 OvhdRadConvSplit, OvhdUnoccDiv;
  R4 TskLightRadConvSplit, TskLightUnoccDiv;
};
static_assert(sizeof(LightingRecord) == 38);

struct OtherLoadsRecord {
  R4 MiscSensibleHeat;  // Btu/hr
  I2 MiscSensibleSchedule;
  R4 MiscLatentHeat;  // Btu/hr
  I2 MiscLatentSchedule;
  I2 ElecEqptSpec;
  R4 ElecEqptHeatGain;
  I2 ElecEqptSchedule;
  R4 ElecRadConvSplit, ElecUnoccDiv;
  R4 MiscRadConvSplit, MiscSensUnoccDiv, MiscLatUnoccDiv;
};
static_assert(sizeof(OtherLoadsRecord) == 40);

struct SPC_General final : Part<GeneralRecord> {
  const ClassInfo& info() const override;
};
struct SPC_WallWindow final : Part<WallWindowRecord> {
  const ClassInfo& info() const override;
};
struct SPC_Roof final : Part<RoofRecord> {
  const ClassInfo& info() const override;
};
struct SPC_Partition final : Part<PartitionRecord> {
  const ClassInfo& info() const override;
};
struct SPC_Floor final : Part<FloorRecord> {
  const ClassInfo& info() const override;
};
struct SPC_Infiltration final : Part<InfiltrationRecord> {
  const ClassInfo& info() const override;
};
struct SPC_People final : Part<PeopleRecord> {
  const ClassInfo& info() const override;
};
struct SPC_Lighting final : Part<LightingRecord> {
  const ClassInfo& info() const override;
};
struct SPC_OtherLoads final : Part<OtherLoadsRecord> {
  const ClassInfo& info() const override;
};

}  // namespace tarn
