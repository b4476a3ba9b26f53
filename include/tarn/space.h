// A space: the unit of load calculation. It owns its parts, and its record is their blocks in a row.
#pragma once

#include <array>

#include "tarn/reflect/collection.h"
#include "tarn/space_parts.h"
#include "tarn/storage/entity.h"

namespace tarn {

class SPC_Space final : public CopiedEntity<SPC_Space> {
 public:
  static constexpr int kWalls = 8, kRoofs = 4, kPartitions = 2;

  SPC_Space();
  const ClassInfo& info() const override;
  const Kind& kind() const override;

  // The parts themselves, not copies. Errors `SubscriptOutOfRange`.
  Ptr<SPC_General> GetSpace() { return shared_part(*this, general_); }
  Ptr<SPC_WallWindow> GetWall(int16_t nIndex) { return numbered(walls_, nIndex); }
  Ptr<SPC_Roof> GetRoof(int16_t nIndex) { return numbered(roofs_, nIndex); }
  Ptr<SPC_Partition> GetPartition(int16_t nIndex) { return numbered(partitions_, nIndex); }
  Ptr<SPC_Floor> GetFloor() { return shared_part(*this, floor_); }
  Ptr<SPC_Infiltration> GetInfiltration() { return shared_part(*this, infiltration_); }
  Ptr<SPC_People> GetPeople() { return shared_part(*this, people_); }
  Ptr<SPC_Lighting> GetLight() { return shared_part(*this, lighting_); }
  Ptr<SPC_OtherLoads> GetOtherLoads() { return shared_part(*this, other_loads_); }
  int16_t NumWalls() const { return kWalls; }
  int16_t NumRoofs() const { return kRoofs; }
  int16_t NumPartitions() const { return kPartitions; }
  int32_t GetRecordLength() const;

  std::string Name() const { return general_.Name.trimmed(); }
  void SetName(const std::string& name) { general_.Name = name; }

  /// Exposure codes of the walls, or roofs, that are in use, in their order; one that two of them share is there twice.
  Ptr<Collection> GetWallExposures() const;
  Ptr<Collection> GetRoofExposures() const;
  /// People at most; 0 where the occupancy is neither a number of people nor an area of at least 0.1 ft2 for each.
  float GetMaxOccupancy() const;
  /// Over all walls, in use or not, in ft2.
  float GrossWallArea() const;

 private:
  template <typename P, size_t N>
  Ptr<P> numbered(std::array<P, N>& parts, int number) {
    if (number < 1 || number > static_cast<int>(N)) subscript_out_of_range(number, static_cast<int>(N));
    return shared_part(*this, parts[static_cast<size_t>(number) - 1]);
  }
  float floor_area() const { return general_.FloorArea; }
  float overhead_lighting() const { return lighting_.OverheadWatt; }

  SPC_General general_;
  std::array<SPC_WallWindow, kWalls> walls_;
  std::array<SPC_Roof, kRoofs> roofs_;
  std::array<SPC_Partition, kPartitions> partitions_;
  SPC_Floor floor_;
  SPC_Infiltration infiltration_;
  SPC_People people_;
  SPC_Lighting lighting_;
  SPC_OtherLoads other_loads_;
};

}  // namespace tarn
