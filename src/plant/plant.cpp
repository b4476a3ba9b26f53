#include "tarn/plant.h"

#include <algorithm>

#include "storage/kind.h"
#include "storage/links.h"
#include "tarn/base/log.h"
#include "tarn/platform/workspace.h"

namespace tarn {
namespace {

[[noreturn]] void senseless(const std::string& path, const std::string& what, int count, int most) {
  fail(ErrorNumber::UnknownFormat, path + " says that it has " + std::to_string(count) + " " + what +
                                       "; allowed are 0 to " + std::to_string(most) +
                                       ". Restore the file from a copy.");
}

}  // namespace

PLT_Plant::PLT_Plant() : CopiedEntity(form(), &DefFileName) {
  named_by(General.Name);
  General.plant = this;
  Reset(true);
}

const Kind& PLT_Plant::kind() const {
  using C = PLT_Plant;
  static const Kind kind{
      .class_name = "PLT_Plant",
      .index_table = "PlantIndex",
      .default_word = "Plant",
      .missing_row_message = "Plant not found in table (PlantIndex) where index = ",
      .columns = {computed<C, &C::type>("nType"), computed<C, &C::sized>("bSized"),
                  computed<C, &C::simulated>("bSimulated")},
      .flags = {changed_flag<C, &C::SimHasChanged>("bSimHasChanged"),
                changed_flag<C, &C::DesHasChanged>("bDesHasChanged")},
      .reach = {Results::DesignAndSimulation,
                {{Stage::Buildings, {{"Building_Plant_Links", "Plant_ID", "Building_ID"}}}}},
      .row_needed = true,
      .no_table_message = "Could not open recordset object.\nSQL:  SELECT * FROM PlantIndex ORDER BY nIndex ASC\n",
      .name_query_message = "Query for duplicate name checking failed: ",
      .lost_row_message = "Cannot find plant record in index database",
      .link_owner = "Plant"};
  return kind;
}

const ClassInfo& PLT_Plant::info() const {
  using C = PLT_Plant;
  static constexpr auto members = describe<C>(
      Failures::Raised, property<&C::m_bCloning>, owned<&C::ServiceHotWaterDetails>,
      owned<&C::SizingLoadsClg, &C::there<kSizing>, &C::set<kSizing>>,
      owned<&C::SizingLoadsHtg, &C::there<kSizing>, &C::set<kSizing>>, owned<&C::General>, owned<&C::Details>,
      owned<&C::UnmetLoadsClg, &C::there<kUnmet>, &C::set<kUnmet>>,
      owned<&C::UnmetLoadsHtg, &C::there<kUnmet>, &C::set<kUnmet>>,
      owned<&C::LEEDUnmetLoadsClg, &C::there<kLeed>, &C::set<kLeed>>,
      owned<&C::LEEDUnmetLoadsHtg, &C::there<kLeed>, &C::set<kLeed>>,
      owned<&C::HourlySimData, &C::there<kHourly>, &C::set<kHourly>>,
      owned<&C::EqptSizingResults, &C::there<kSizing>, &C::set<kSizing>>, owned<&C::SystemSelect>,
      owned<&C::DesignProfile, &C::there<kProfile>, &C::set<kProfile>>, property<&C::WorkPath>,
      property<&C::FilePrefix>, property<&C::DefFileName>, method<&C::Reset>("bResetAll"), method<&C::Clone>("nIndex"),
      method<&C::CreateDefault>, method<&C::WriteDefaultsFile>("strFileName"), method<&C::Delete>("nRecNum"),
      method<static_cast<void (C::*)(int32_t, int16_t)>(&C::Load)>("nOpMode", "nRecNum").chooses_sections(),
      method<static_cast<void (C::*)(int32_t, std::optional<bool>&)>(&C::Save)>("nOpMode", "bSaveAfterCalculation")
          .chooses_sections(),
      property<&C::FileName>, method<&C::GetFreeIndex>, property<&C::Index>.read_only(), method<&C::GetDBHandle>,
      method<&C::SetDBHandle>("DB"), property<&C::SimHasChanged>.kept_in_row(),
      property<&C::DesHasChanged>.kept_in_row(), method<&C::IsNameUnique>("sName"),
      event<&C::OnUpdateDependencies>("OverrideDefault"), method<&C::SaveDefault>);
  static const ClassInfo info(members);
  return info;
}

// ---- sections of the file

namespace {

HeaderCounts counts(Header header, const std::string& path) {
  const int outputs = record_in<PlantHeaderRecord>(header).NumOutputs;
  if (outputs < 0 || outputs > kOutputFlags) senseless(path, "outputs", outputs, kOutputFlags);
  return {.outputs = static_cast<size_t>(outputs)};
}

void check_systems(const StoredEntity& entity, const std::string& path) {
  const int systems = static_cast<const PLT_Plant&>(entity).SystemSelect.NumSystems();
  if (systems < 0 || systems > kPlantSystems) senseless(path, "systems", systems, kPlantSystems);
}

void check_lists(const StoredEntity& entity, const std::string& path) {
  auto& details = const_cast<PLT_Details&>(static_cast<const PLT_Plant&>(entity).Details);
  for (const PLT_EquipmentList* list : details.lists()) {
    if (list->NumEquipment() < 0 || list->NumEquipment() > kPlantEquipment)
      senseless(path, "pieces in " + list->Name(), list->NumEquipment(), kPlantEquipment);
  }
  for (const PLT_PumpLoop* loop : details.loops()) {
    if (loop->NumPumps() < 0 || loop->NumPumps() > kPumps)
      senseless(path, "pumps in " + loop->Name(), loop->NumPumps(), kPumps);
  }
}

constexpr size_t kDetailsSize =
    sizeof(PlantDetailsRecord) + 2 * sizeof(ConfigurationRecord) +
    PLT_Details::kLists * (sizeof(EquipmentListRecord) + kPlantEquipment * sizeof(EquipmentRecord)) +
    PLT_Details::kLoops * (sizeof(PumpLoopRecord) + kPumps * sizeof(PumpRecord)) + sizeof(ServiceHotWaterRecord) +
    sizeof(PumpRecord);

/// The memory of parts of a plant that lie one after another.
template <auto... Part>
Blocks parts_of(StoredEntity& entity) {
  return {(static_cast<PLT_Plant&>(entity).*Part).bytes()...};
}

}  // namespace

const SectionForm& PLT_Plant::form() {
  using C = PLT_Plant;
  using H = PlantHeaderRecord;
  static const Section sections[]{
      {.name = "General", .size = {sizeof(H)}, .blocks = parts_of<&C::General>},
      {.name = "SystemSelect",
       .mask = CCM_SYSTEM_SELECT,
       .size = {sizeof(SystemSelectRecord)},
       .blocks = parts_of<&C::SystemSelect>,
       .check = check_systems,
       .references = "System"},
      {.name = "Details",
       .mask = CCM_DETAILS,
       .size = {kDetailsSize},
       .blocks = [](StoredEntity& entity) { return static_cast<C&>(entity).detail_blocks(); },
       .check = check_lists,
       .references = "*"},
      {.name = "Sizing",
       .mask = CCM_PLANTSIZING,
       .is_result = true,
       .size = {2 * sizeof(PlantSizingRecord) + sizeof(EquipmentSizingRecord)},
       .blocks = parts_of<&C::SizingLoadsClg, &C::SizingLoadsHtg, &C::EqptSizingResults>},
      {.name = "DesignProfile",
       .mask = CCM_DESPROFILE,
       .is_result = true,
       .size = {sizeof(DesignProfileRecord)},
       .blocks = parts_of<&C::DesignProfile>},
      {.name = "UnmetLoads",
       .mask = CCM_UNMETLOADS,
       .is_result = true,
       .size = {2 * sizeof(PlantUnmetLoadsRecord)},
       .blocks = parts_of<&C::UnmetLoadsClg, &C::UnmetLoadsHtg>},
      {.name = "LEEDUnmetLoads",
       .mask = CCM_LEEDUNMETLOADS,
       .is_result = true,
       .size = {2 * sizeof(PlantLeedUnmetLoadsRecord)},
       .blocks = parts_of<&C::LEEDUnmetLoadsClg, &C::LEEDUnmetLoadsHtg>},
      {.name = "HourlySimData",
       .mask = CCM_HOURLYSIMDATA,
       .is_result = true,
       .size = {.each_output = sizeof(HourlyResultRecord)},
       .blocks =
           [](StoredEntity& entity) {
             Blocks blocks;
             for (const auto& item : static_cast<C&>(entity).HourlySimData.items()) blocks.push_back(item->bytes());
             return blocks;
           },
       .fit =
           [](StoredEntity& entity, Header header, bool there) {
             static_cast<C&>(entity).HourlySimData.Resize(there ? record_in<H>(header).NumOutputs : 0);
           },
       .stays = false}};  // hours stand under the outputs of the header that they were read with
  constexpr Sections kOfSimulation = section_bit(kUnmet) | section_bit(kLeed) | section_bit(kHourly);
  static const ResultFlag flags[]{{"bSized", offsetof(H, Sized), section_bit(kSizing)},
                                  {"bSimulated", offsetof(H, Simulated), kOfSimulation}};
  static const SectionForm form{.sections = sections,
                                .result_flags = flags,
                                .counts = counts,
                                .one = "plant",
                                .missing_file = "Plant data file not found.  File name:  ",
                                .missing_default = "Default Plant data file not found.  File name:  "};
  return form;
}

Blocks PLT_Plant::detail_blocks() {
  Blocks blocks;
  blocks.reserve(5 + PLT_Details::kLists * (1 + kPlantEquipment) + PLT_Details::kLoops * (1 + kPumps));
  blocks = {Details.bytes(), Details.ConfigCooling.bytes(), Details.ConfigHeating.bytes()};
  for (PLT_EquipmentList* list : Details.lists()) {
    blocks.push_back(list->bytes());
    for (int i = 1; i <= kPlantEquipment; ++i) blocks.push_back(list->Equipment(i).bytes());
  }
  for (PLT_PumpLoop* loop : Details.loops()) {
    blocks.push_back(loop->bytes());
    for (int i = 1; i <= kPumps; ++i) blocks.push_back(loop->Pumps(i).bytes());
  }
  blocks.insert(blocks.end(), {ServiceHotWaterDetails.bytes(), ServiceHotWaterDetails.Pump.bytes()});
  return blocks;
}

// ---- life

void PLT_Plant::WriteDefaultsFile(const std::string& strFileName) {
  Transaction transaction;
  sections_.write_default(strFileName);
  transaction.commit();
}

void PLT_Plant::check_details(const SaveContext& save) const {
  if (!save.selects(kDetails)) return;
  auto& details = const_cast<PLT_Details&>(Details);
  for (const PLT_PumpLoop* loop : details.loops()) loop->Validate();
  for (const PLT_EquipmentList* list : details.lists()) {
    for (int i = 1; i <= list->NumEquipment(); ++i) {
      const PLT_Equipment& piece = list->Equipment(i);
      if (piece.EquipmentID != 0 && PLT_Equipment::kind_of(piece).empty())
        fail(ErrorNumber::InvalidCall, "Unknown equipment library ID: " + std::to_string(piece.LibraryID.raw));
    }
  }
}

void PLT_Plant::before_save(SaveContext& save) {
  if (save.form == SaveContext::Form::Default) return;
  sections_.check_loaded(save);
  if (save.form == SaveContext::Form::AsGiven) {
    take_free_name();
    return check_details(save);
  }
  if (!IsNameUnique()) {
    fail(ErrorNumber::InvalidCall, "A plant already exists with the name [" + stored_name() +
                                       "]\nPlease specify a unique plant name and try again.");
  }
  check_details(save);
  close_up({}, save.sections);
  sections_.select_results(save);
  if (save.after_calculations) return;
  if (has_other_outputs()) sections_.drop(save, kHourly);  // its hours would stand under wrong ones
  sections_.clear_result_flags();
  DesHasChanged = SimHasChanged = true;
}

/// Others than those of the file.
bool PLT_Plant::has_other_outputs() const {
  const std::vector<std::byte> header = sections_.stored_header(Index());
  if (header.empty()) return false;
  const auto stored = record_in<PlantHeaderRecord>(header);
  const PlantHeaderRecord& own = General;
  return stored.NumOutputs != own.NumOutputs ||
         !std::ranges::equal(stored.OutputFlags.items, own.OutputFlags.items, {}, &I2::value, &I2::value);
}

/// Lists that lost an entry close up, and leave out what can have no link row.
void PLT_Plant::close_up(const std::vector<ClearedReference>& /*cleared*/, Sections sections) {
  if ((sections & section_bit(kSystems)) != 0) SystemSelect.pack();
  if ((sections & section_bit(kDetails)) == 0) return;
  for (PLT_EquipmentList* list : Details.lists()) {
    for (int i = 1; i <= list->NumEquipment(); ++i) {
      const PLT_Equipment& piece = list->Equipment(i);
      if (piece.EquipmentID != 0 && PLT_Equipment::kind_of(piece).empty())
        log().message("Plant " + std::to_string(Index()) + ", " + list->Name() + ": equipment " +
                      std::to_string(piece.EquipmentID) + " is of library " + std::to_string(piece.LibraryID.raw) +
                      ", which does not exist; it is left out.");
    }
    list->pack();
  }
}

std::function<void()> PLT_Plant::keep_rest() {
  return [this, hourly = HourlySimData.items()] { HourlySimData.set_items(hourly); };
}

}  // namespace tarn
