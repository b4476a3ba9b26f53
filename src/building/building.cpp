#include "building/building.h"

namespace tarn {

BLD_Building::BLD_Building() { Reset(true); }

const Kind& BLD_Building::kind() const {
  using C = BLD_Building;
  static const Kind kind{
      .class_name = "BLD_Building",
      .index_table = "BuildingIndex",
      .default_word = "Building",
      .missing_row_message = "Invalid building ID: ",
      .columns = {computed<C, &C::simulated>("bSimulated"), computed<C, &C::has_changed>("bHasChanged")},
      .links = {{"Building_Schedule_Links", "Building_ID"},
                {"Building_ElectricRate_Links", "Building_ID"},
                {"Building_FuelRate_Links", "Building_ID"},
                {"Building_System_Links", "Building_ID"},
                {"Building_Plant_Links", "Building_ID"}},
      .reach = {Results::SimulationOnly, {}},
      .saved_anew = true,
      .link_owner = "Building"};
  return kind;
}

const ClassInfo& BLD_Building::info() const {
  using C = BLD_Building;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&C::m_bCloning>, part<&C::GetBuildingGeneral>, part<&C::GetBuildingInputs>,
      parts<&C::GetBuildingResults, &C::there<kResults>, &C::set<kResults>>,
      parts<&C::GetBuildingProfile, &C::profile_count, &C::set<kProfiles>>("Index"), method<&C::Reset>("ResetAll"),
      method<&C::Clone>("Index"), method<&C::CreateDefault>, method<&C::Delete>("RecordNumber"),
      method<&C::GetFreeIndex>, property<&C::HasChanged>.kept_in_row(), method<&C::SetDBHandle>("DB"),
      method<&C::GetDBHandle>, property<&C::Index>.read_only(),
      method<static_cast<void (C::*)(int32_t, int32_t)>(&C::Load)>("Section", "RecordNumber"),
      method<static_cast<void (C::*)(int32_t, std::optional<bool>)>(&C::Save)>("Section", "bSaveAfterCalculations"),
      property<&C::WorkPath>, property<&C::FilePrefix>, property<&C::DefFileName>, method<&C::IsNameUnique>("sName"),
      event<&C::OnUpdateDependencies>("OverrideDefault"));
  static const ClassInfo info(members);
  return info;
}

// ---- sections of the file

int32_t BLD_Building::mask_of(size_t section) const {
  constexpr int32_t kMasks[]{FS_HEADERONLY, FS_STANDARD & ~FS_HEADERONLY, FS_SIMRESULTS, FS_POWERPROFILE};
  return kMasks[section];
}

BLD_Building::Ends BLD_Building::ends_of(std::span<const std::byte> /*header*/, const std::string& /*path*/) const {
  constexpr uint64_t kEndOfInputs = sizeof(BuildingGeneralRecord) + sizeof(BuildingInputsRecord),
                     kEndOfResults = kEndOfInputs + sizeof(BuildingResultsRecord);
  return {sizeof(BuildingGeneralRecord), kEndOfInputs, kEndOfResults,
          kEndOfResults + kMeters * sizeof(BuildingProfileRecord)};
}

BLD_Building::Blocks BLD_Building::blocks(size_t section) {
  switch (section) {
    case kGeneral:
      return {general_.bytes()};
    case kInputs:
      return {inputs_.bytes()};
    case kResults:
      return {results_.bytes()};
    default:
      Blocks profiles;
      for (int meter = 1; meter <= kMeters; ++meter) profiles.push_back(profiles_(meter).bytes());
      return profiles;
  }
}

// ---- life

std::string BLD_Building::no_file_message(const std::string& path) const {
  return "Building file not found: " + (path.empty() ? "the building has no FilePrefix" : path) + ".";
}

std::string BLD_Building::no_default_message() const { return "Default building file not found: " + DefFileName + "."; }

void BLD_Building::Load(int32_t Section, int32_t RecordNumber) {
  const auto index = static_cast<int16_t>(RecordNumber);
  if (index != RecordNumber || row_of(index).NoMatch())
    fail(ErrorNumber::NoCurrentRecord, std::string(kind().missing_row_message) + std::to_string(RecordNumber));
  load(Section, index);
}

void BLD_Building::clear_references(const std::string& title, const std::function<bool(const Use&)>& lost) {
  const auto before = inputs_.SystemID;
  MaskedEntity::clear_references(title, lost);
  for (int slot = 1; slot <= kBuildingSystems; ++slot) {
    if (before(slot) != 0 && inputs_.SystemID(slot) == 0) inputs_.SystemMult(slot) = 0;
  }
}

void BLD_Building::before_save() {
  check_loaded();
  select_results();
  if (after_calculations_) return;
  general_.Simulated = false;
  HasChanged = true;
}

void BLD_Building::write_record(int16_t index) {
  const std::string path = file_of(index);
  if (path.empty()) fail(ErrorNumber::FileNotFound, "The building has no file name; set its WorkPath and FilePrefix.");
  write_file(path, true);
}

void BLD_Building::read_default() {
  MaskedEntity::read_default();
  general_.Simulated = false;
}

}  // namespace tarn
