#include "plant/plant.h"

#include <algorithm>

#include "base/log.h"
#include "platform/workspace.h"

namespace tarn {
namespace {

constexpr int32_t kSectionMasks[]{CCM_ALL,        CCM_SYSTEM_SELECT, CCM_DETAILS,        CCM_PLANTSIZING,
                                  CCM_DESPROFILE, CCM_UNMETLOADS,    CCM_LEEDUNMETLOADS, CCM_HOURLYSIMDATA};

PlantHeaderRecord header_in(std::span<const std::byte> bytes) {
  PlantHeaderRecord record;
  if (!bytes.empty()) std::copy(bytes.begin(), bytes.end(), std::as_writable_bytes(std::span(&record, 1)).begin());
  return record;
}

[[noreturn]] void senseless(const std::string& path, const std::string& what, int count, int most) {
  fail(ErrorNumber::UnknownFormat, path + " says that it has " + std::to_string(count) + " " + what +
                                       "; allowed are 0 to " + std::to_string(most) +
                                       ". Restore the file from a copy.");
}

}  // namespace

PLT_Plant::PLT_Plant() {
  General.plant = this;
  Reset(true);
}

const Kind& PLT_Plant::kind() const {
  using C = PLT_Plant;
  static const Kind kind{
      .class_name = "PLT_Plant",
      .index_table = "PlantIndex",
      .default_word = "Plant",
      .missing_row_message = {},
      .columns = {computed<C, &C::type>("nType"), computed<C, &C::sized>("bSized"),
                  computed<C, &C::simulated>("bSimulated"), computed<C, &C::sim_has_changed>("bSimHasChanged"),
                  computed<C, &C::des_has_changed>("bDesHasChanged")},
      .links = {{"Building_Plant_Links", "Plant_ID"},
                {"Plant_System_Links", "Plant_ID"},
                {"Plant_Schedule_Links", "Plant_ID"},
                {"Plant_Equipment_Links", "Plant_ID"},
                {"Plant_Tower_Links", "Plant_ID"},
                {"Plant_Chiller_Links", "Plant_ID"},
                {"Plant_Boiler_Links", "Plant_ID"}},
      .reach = {Results::DesignAndSimulation,
                {{Stage::Buildings, {{"Building_Plant_Links", "Plant_ID", "Building_ID"}}}}},
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
      method<static_cast<void (C::*)(int32_t, int16_t)>(&C::Load)>("nOpMode", "nRecNum"),
      method<static_cast<void (C::*)(int32_t, std::optional<bool>&)>(&C::Save)>("nOpMode", "bSaveAfterCalculation"),
      property<&C::FileName>, method<&C::GetFreeIndex>, property<&C::Index>.read_only(), method<&C::GetDBHandle>,
      method<&C::SetDBHandle>("DB"), property<&C::SimHasChanged>.kept_in_row(),
      property<&C::DesHasChanged>.kept_in_row(), method<&C::IsNameUnique>("sName"),
      event<&C::OnUpdateDependencies>("OverrideDefault"));
  static const ClassInfo info(members);
  return info;
}

// ---- sections of the file

int32_t PLT_Plant::mask_of(size_t section) const { return kSectionMasks[section]; }

PLT_Plant::Ends PLT_Plant::ends_of(std::span<const std::byte> header, const std::string& path) const {
  const int outputs = header_in(header).NumOutputs;
  if (outputs < 0 || outputs > kOutputFlags) senseless(path, "outputs", outputs, kOutputFlags);
  constexpr size_t kDetailsSize =
      sizeof(PlantDetailsRecord) + 2 * sizeof(ConfigurationRecord) +
      PLT_Details::kLists * (sizeof(EquipmentListRecord) + kPlantEquipment * sizeof(EquipmentRecord)) +
      PLT_Details::kLoops * (sizeof(PumpLoopRecord) + kPumps * sizeof(PumpRecord)) + sizeof(ServiceHotWaterRecord) +
      sizeof(PumpRecord);
  const size_t sizes[]{sizeof(PlantHeaderRecord),
                       sizeof(SystemSelectRecord),
                       kDetailsSize,
                       2 * sizeof(PlantSizingRecord) + sizeof(EquipmentSizingRecord),
                       sizeof(DesignProfileRecord),
                       2 * sizeof(PlantUnmetLoadsRecord),
                       2 * sizeof(PlantLeedUnmetLoadsRecord),
                       static_cast<size_t>(outputs) * sizeof(HourlyResultRecord)};
  Ends ends;
  uint64_t end = 0;
  for (const size_t size : sizes) ends.push_back(end += size);
  return ends;
}

PLT_Plant::Blocks PLT_Plant::blocks(size_t section) {
  Blocks blocks;
  switch (section) {
    case kHeader:
      return {General.bytes()};
    case kSystems:
      return {SystemSelect.bytes()};
    case kDetails:
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
      break;
    case kSizing:
      return {SizingLoadsClg.bytes(), SizingLoadsHtg.bytes(), EqptSizingResults.bytes()};
    case kProfile:
      return {DesignProfile.bytes()};
    case kUnmet:
      return {UnmetLoadsClg.bytes(), UnmetLoadsHtg.bytes()};
    case kLeed:
      return {LEEDUnmetLoadsClg.bytes(), LEEDUnmetLoadsHtg.bytes()};
    case kHourly:
      for (const auto& item : HourlySimData.items()) blocks.push_back(item->bytes());
      break;
  }
  return blocks;
}

void PLT_Plant::make_room(size_t section, std::span<const std::byte> header, bool there) {
  if (section == kHourly) HourlySimData.Resize(there ? header_in(header).NumOutputs : 0);
}

void PLT_Plant::check_counts(const std::string& path) const {
  if (selected(kSystems) && (SystemSelect.NumSystems() < 0 || SystemSelect.NumSystems() > kPlantSystems))
    senseless(path, "systems", SystemSelect.NumSystems(), kPlantSystems);
  auto& details = const_cast<PLT_Details&>(Details);
  for (const PLT_EquipmentList* list : details.lists()) {
    if (list->NumEquipment() < 0 || list->NumEquipment() > kPlantEquipment)
      senseless(path, "pieces in " + list->Name(), list->NumEquipment(), kPlantEquipment);
  }
  for (const PLT_PumpLoop* loop : details.loops()) {
    if (loop->NumPumps() < 0 || loop->NumPumps() > kPumps)
      senseless(path, "pumps in " + loop->Name(), loop->NumPumps(), kPumps);
  }
}

// ---- life

Recordset PLT_Plant::row_of(int16_t index) const {
  database();  // without one, that is the error
  try {
    return SectionedEntity::row_of(index);
  } catch (const Error& error) {
    throw Error(
        error.number(), {},
        "Could not open recordset object.\nSQL:  SELECT * FROM PlantIndex ORDER BY nIndex ASC\n" + error.description());
  }
}

std::string PLT_Plant::no_file_message(const std::string& path) const {
  return "Plant data file not found.  File name:  " + path;
}

void PLT_Plant::no_row(int16_t index) {
  fail(ErrorNumber::NoCurrentRecord,
       "Plant not found in table (" + std::string(kind().index_table) + ") where index = " + std::to_string(index));
}

void PLT_Plant::Load(int32_t nOpMode, int16_t nRecNum) { load(nOpMode, nRecNum); }

void PLT_Plant::Load(int16_t nRecNum) { load(CCM_ALL, nRecNum); }

void PLT_Plant::Save(int32_t nOpMode, std::optional<bool>& bSaveAfterCalculation) {
  save(nOpMode, bSaveAfterCalculation.value_or(false));
}

void PLT_Plant::check_details() const {
  if (!selected(kDetails)) return;
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

void PLT_Plant::before_save() {
  as_given_ = false;
  check_loaded();
  if (!IsNameUnique()) {
    fail(ErrorNumber::InvalidCall, "A plant already exists with the name [" + stored_name() +
                                       "]\nPlease specify a unique plant name and try again.");
  }
  check_details();
  after_clearing();
  select_results();
  if (after_calculations_) return;
  drop_misplaced_hours();
  General.Sized = false;
  General.Simulated = false;
  DesHasChanged = SimHasChanged = true;
}

void PLT_Plant::before_restore() {
  SectionedEntity::before_restore();
  check_details();
}

/// Hourly results belong to outputs by their order: with other outputs they would be read as the wrong ones.
void PLT_Plant::drop_misplaced_hours() {
  const std::string path = file_of(Index);
  if (!has_file(path)) return;
  const PlantHeaderRecord stored = header_in(header_of_file(path)), &own = General;
  if (stored.NumOutputs == own.NumOutputs &&
      std::ranges::equal(stored.OutputFlags.items, own.OutputFlags.items, {}, &I2::value, &I2::value))
    return;
  drop(kHourly);
}

bool PLT_Plant::knows_links(std::string_view kind) const { return selected(kind == "System" ? kSystems : kDetails); }

/// Closes gaps in the lists, and leaves out entries that cannot have a link row.
void PLT_Plant::after_clearing() {
  if (selected(kSystems)) SystemSelect.pack();
  if (!selected(kDetails)) return;
  for (PLT_EquipmentList* list : Details.lists()) {
    for (int i = 1; i <= list->NumEquipment(); ++i) {
      const PLT_Equipment& piece = list->Equipment(i);
      if (piece.EquipmentID != 0 && PLT_Equipment::kind_of(piece).empty())
        log().message("Plant " + std::to_string(Index) + ", " + list->Name() + ": equipment " +
                      std::to_string(piece.EquipmentID) + " is of library " + std::to_string(piece.LibraryID.raw) +
                      ", which does not exist; it is left out.");
    }
    list->pack();
  }
}

void PLT_Plant::write_record(int16_t index) {
  const std::string path = file_of(index);
  if (path.empty()) fail(ErrorNumber::FileNotFound, "The plant has no file name; set its WorkPath and FilePrefix.");
  write_file(path, true);
}

std::string PLT_Plant::no_default_message() const {
  return "Default Plant data file not found.  File name:  " + DefFileName;
}

void PLT_Plant::read_default() {
  MaskedEntity::read_default();
  General.Sized = false;
  General.Simulated = false;
}

std::function<void()> PLT_Plant::keep_rest() {
  return [this, rest = MaskedEntity::keep_rest(), hourly = HourlySimData.items()] {
    rest();
    HourlySimData.set_items(hourly);
  };
}

}  // namespace tarn
