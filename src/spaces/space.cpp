#include "tarn/space.h"

#include "storage/kind.h"

namespace tarn {

SPC_Space::SPC_Space() {
  add_block(general_.bytes());
  for (SPC_WallWindow& wall : walls_) add_block(wall.bytes());
  for (SPC_Roof& roof : roofs_) add_block(roof.bytes());
  for (SPC_Partition& partition : partitions_) add_block(partition.bytes());
  add_block(floor_.bytes());
  add_block(infiltration_.bytes());
  add_block(people_.bytes());
  add_block(lighting_.bytes());
  add_block(other_loads_.bytes());
  named_by(general_.Name);
  Reset(true);
}

const Kind& SPC_Space::kind() const {
  static const Kind kind{
      .class_name = "SPC_Space",
      .index_table = "SpaceIndex",
      .default_word = "Space",
      .missing_row_message = "Invalid Space ID number: ",
      .columns = {computed<SPC_Space, &SPC_Space::floor_area>("fFloorArea", "ft2"),
                  computed<SPC_Space, &SPC_Space::GetMaxOccupancy>("fNumPeople", "people"),
                  computed<SPC_Space, &SPC_Space::overhead_lighting>("fLightingDensity", "W/ft2")},
      .reach = {Results::DesignAndSimulation, {{Stage::Systems, {{"System_Space_Links", "Space_ID", "System_ID"}}}}},
      .link_owner = "Space"};
  return kind;
}

const ClassInfo& SPC_Space::info() const {
  using C = SPC_Space;
  using G = GeneralRecord;
  static constexpr auto members = describe<C>(
      Failures::Trapped, property<&C::m_bCloning>, forwarded<&C::general_, &G::AvgHeight>("ft"),
      method<&C::Reset>("bResetAll").by_reference(),
      forwarded<&C::general_, &G::BuildingWt>.named("BuildingWeight")("lb/ft2"), method<&C::GetWallExposures>,
      method<&C::GetRoofExposures>, method<&C::GetRecordLength>, method<&C::Clone>("nIndex"), method<&C::CopyInstance>,
      method<&C::CreateDefault>, method<&C::Delete>("nRecNum").by_reference(), property<&C::FileName>,
      forwarded<&C::general_, &G::FloorArea>("ft2"), method<&C::GetFreeIndex>, method<&C::GetDBHandle>,
      method<&C::SetDBHandle>("DB"), property<&C::Index>.read_only(), method<&C::Load>("nRecNum"),
      property<&C::Name, &C::SetName>, method<&C::GetMaxOccupancy>, method<&C::Save>, method<&C::SaveDefault>,
      part<&C::GetSpace>, part<&C::GetWall, kWalls>("nIndex"), method<&C::NumWalls>,
      part<&C::GetRoof, kRoofs>("nIndex"), method<&C::NumRoofs>, part<&C::GetPartition, kPartitions>("nIndex"),
      method<&C::NumPartitions>, part<&C::GetFloor>, part<&C::GetInfiltration>, part<&C::GetPeople>, part<&C::GetLight>,
      part<&C::GetOtherLoads>, forwarded<&C::general_, &G::OAReq1Value>.unit_by<&G::OAReq1Spec>(),
      forwarded<&C::general_, &G::OAReq2Value>.unit_by<&G::OAReq2Spec>(), forwarded<&C::general_, &G::OAReq1Spec>,
      forwarded<&C::general_, &G::OAReq2Spec>, forwarded<&C::general_, &G::SpaceUsage>,
      method<&C::IsNameUnique>("sName"), method<&C::GrossWallArea>, event<&C::OnUpdateDependencies>("OverrideDefault"));
  static const ClassInfo info(members);
  return info;
}

int32_t SPC_Space::GetRecordLength() const { return static_cast<int32_t>(record_size()); }

namespace {

template <typename Parts>
Ptr<Collection> exposures_in_use(const Parts& parts) {
  auto collection = std::make_shared<Collection>();
  for (const auto& part : parts) {
    if (part.Exposure > 0) collection->add(int16_t{part.Exposure});
  }
  return collection;
}

}  // namespace

Ptr<Collection> SPC_Space::GetWallExposures() const { return exposures_in_use(walls_); }
Ptr<Collection> SPC_Space::GetRoofExposures() const { return exposures_in_use(roofs_); }

float SPC_Space::GetMaxOccupancy() const {
  constexpr float kLeastArea = 0.1F;  // for a person, ft2
  switch (people_.Spec) {
    case SPC_OccupancySpec::TOTALPEOPLE:
      return people_.Occupancy;
    case SPC_OccupancySpec::SQFTPERPERSON:
      return people_.Occupancy >= kLeastArea ? general_.FloorArea / people_.Occupancy : 0;
  }
  return 0;
}

float SPC_Space::GrossWallArea() const {
  float sum = 0;
  for (const SPC_WallWindow& wall : walls_) sum += wall.GrossArea;
  return sum;
}

}  // namespace tarn
