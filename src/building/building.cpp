#include "tarn/building.h"

#include "storage/index_row.h"
#include "storage/kind.h"
#include "storage/links.h"

namespace tarn {

BLD_Building::BLD_Building() : CopiedEntity(form(), &DefFileName) {
  named_by(general_.Name);
  Reset(true);
}

const Kind& BLD_Building::kind() const {
  using C = BLD_Building;
  static const Kind kind{.class_name = "BLD_Building",
                         .index_table = "BuildingIndex",
                         .default_word = "Building",
                         .missing_row_message = "Invalid building ID: ",
                         .columns = {computed<C, &C::simulated>("bSimulated")},
                         .flags = {changed_flag<C, &C::HasChanged>("bHasChanged")},
                         .reach = {Results::SimulationOnly, {}},
                         .row_needed = true,
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
      method<static_cast<void (C::*)(int32_t, int32_t)>(&C::Load)>("Section", "RecordNumber").chooses_sections(),
      method<static_cast<void (C::*)(int32_t, std::optional<bool>)>(&C::Save)>("Section", "bSaveAfterCalculations")
          .chooses_sections(),
      property<&C::WorkPath>, property<&C::FilePrefix>, property<&C::DefFileName>, method<&C::IsNameUnique>("sName"),
      event<&C::OnUpdateDependencies>("OverrideDefault"), method<&C::SaveDefault>);
  static const ClassInfo info(members);
  return info;
}

// ---- the file and its life

const SectionForm& BLD_Building::form() {
  using C = BLD_Building;
  static const Section sections[]{
      {.name = "BuildingGeneral",
       .size = {sizeof(BuildingGeneralRecord)},
       .blocks = [](StoredEntity& entity) -> Blocks { return {static_cast<C&>(entity).general_.bytes()}; }},
      {.name = "BuildingInputs",
       .mask = FS_STANDARD & ~FS_HEADERONLY,
       .size = {sizeof(BuildingInputsRecord)},
       .blocks = [](StoredEntity& entity) -> Blocks { return {static_cast<C&>(entity).inputs_.bytes()}; },
       .references = "*"},
      {.name = "BuildingResults",
       .mask = FS_SIMRESULTS,
       .is_result = true,
       .size = {sizeof(BuildingResultsRecord)},
       .blocks = [](StoredEntity& entity) -> Blocks { return {static_cast<C&>(entity).results_.bytes()}; }},
      {.name = "BuildingProfile",
       .mask = FS_POWERPROFILE,
       .is_result = true,
       .size = {kMeters * sizeof(BuildingProfileRecord)},
       .blocks = [](StoredEntity& entity) {
         Blocks blocks;
         for (int meter = 1; meter <= kMeters; ++meter)
           blocks.push_back(static_cast<C&>(entity).profiles_(meter).bytes());
         return blocks;
       }}};
  static const ResultFlag flags[]{
      {"bSimulated", offsetof(BuildingGeneralRecord, Simulated), section_bit(kResults) | section_bit(kProfiles)}};
  static const SectionForm form{.sections = sections,
                                .result_flags = flags,
                                .one = "building",
                                .missing_file = "Building file not found: ",
                                .missing_default = "Default building file not found: ",
                                .end_of_message = ".",
                                .row_first = true};
  return form;
}

void BLD_Building::Load(int32_t Section, int32_t RecordNumber) {
  load_selected(Section, RecordNumber);
  if ((Section & FS_STANDARD) != 0) return;
  const IndexRow row = row_of(static_cast<int16_t>(RecordNumber));
  store_name(row.text("szName"));
  general_.Simulated = row.flag("bSimulated");
}

/// A system's multiplier goes with it.
void BLD_Building::close_up(const std::vector<ClearedReference>& cleared, Sections /*sections*/) {
  for (const ClearedReference& reference : cleared) {
    if (reference.field == "SystemID") inputs_.SystemMult.items[reference.element] = 0;
  }
}

void BLD_Building::before_save(SaveContext& save) {
  if (save.form == SaveContext::Form::Default) return;
  sections_.check_loaded(save);
  if (save.form == SaveContext::Form::AsGiven) return;  // names may be shared
  sections_.select_results(save);
  if (save.after_calculations) return;
  sections_.clear_result_flags();
  HasChanged = true;
}

}  // namespace tarn
