#include "tarn/air_system_design.h"

#include "platform/file_store.h"
#include "platform/host.h"
#include "storage/file_names.h"
#include "tarn/base/log.h"
#include "tarn/platform/database.h"
#include "tarn/platform/recordset.h"
#include "tarn/platform/workspace.h"

namespace tarn {
namespace {

/// A number from a system's record, checked against what a system can have.
int checked_count(int count, int most, const std::string& what) {
  if (count >= 0 && count <= most) return count;
  fail(ErrorNumber::UnknownFormat, "The air system's " + what + " is " + std::to_string(count) +
                                       ", which is implausible. Load the air system again, with its inputs.");
}

std::string system_name(const SystemHeaderRecord& header) {
  const bool written = header.Name.chars[0] != '\0';
  return written ? header.Name.str() : std::string();
}

}  // namespace

/// So that views of its tables keep the design alive.
ADL_AirSystemDesign::ADL_AirSystemDesign() {
  for (ResultBlock* block : blocks()) block->belong_to(*this);
}

void ADL_AirSystemDesign::SetAirSystem(const Ptr<AS_AirSystem>& system) {
  std::vector<Ptr<ADL_TSZone>> ts_zones;
  std::vector<Ptr<ADL_HLZone>> hl_zones;
  std::vector<Ptr<ADL_DLZone>> dl_zones;
  if (system) {
    constexpr int kMostSpaces = decltype(ZoneRecord::SpaceID)::size;
    const int zones = checked_count(system->GetAirSystem()->NumZones, INT16_MAX, "number of zones");
    for (int zone = 1; zone <= zones; ++zone) {
      const int spaces = checked_count(system->GetZoneData(static_cast<int16_t>(zone))->TotalSpacesInZone, kMostSpaces,
                                       "number of spaces in zone " + std::to_string(zone));
      dl_zones.push_back(std::make_shared<ADL_DLZone>());
      dl_zones.back()->resize_spaces(spaces);
      ts_zones.push_back(std::make_shared<ADL_TSZone>());
      hl_zones.push_back(std::make_shared<ADL_HLZone>());
    }
    DXXFileHeader.SystemName = system_name(*system->GetAirSystem());
  }
  air_system_ = system;
  ts_zones_.become(std::move(ts_zones));
  hl_zones_.become(std::move(hl_zones));
  dl_zones_.become(std::move(dl_zones));
}

std::string ADL_AirSystemDesign::file_of(int16_t index) const {
  const std::string name = object_file_name(FilePrefix, index);
  return name.empty() ? name : host().directory_form(WorkPath) + name;
}

/// In the order of the file.
std::vector<ResultBlock*> ADL_AirSystemDesign::blocks() const {
  auto& self = const_cast<ADL_AirSystemDesign&>(*this);
  std::vector<ResultBlock*> all{&self.DXXFileHeader, &self.Weather, &self.SSAir, &self.DLAir, &self.HLAir, &self.SPAir};
  for (const auto& zone : ts_zones_.items) all.push_back(zone.get());
  for (const auto& zone : hl_zones_.items) all.push_back(zone.get());
  for (const auto& zone : dl_zones_.items) all.push_back(zone.get());
  return all;
}

ResultBlock::Spans ADL_AirSystemDesign::spans() const {
  ResultBlock::Spans all;
  for (ResultBlock* block : blocks()) block->add_spans(all);
  return all;
}

uint64_t ADL_AirSystemDesign::size_in_file() const { return size_of(spans()); }

std::string ADL_AirSystemDesign::system_in_file(int16_t index) const {
  ResultHeaderRecord header;
  if (const std::string path = file_of(index); !path.empty() && files().exists(path))
    files().read(path, 0, record_bytes(header));
  return header.SystemName.trimmed();
}

/// Results of another system that was deleted by another program may lie under the index.
void ADL_AirSystemDesign::check_system(const std::string& path) const {
  const Ptr<Database> database = air_system_->GetDBHandle();
  if (!database || files().size(path) < sizeof(ResultHeaderRecord)) return;
  const int16_t index = air_system_->Index();
  auto row = database->OpenRecordset("SELECT szName FROM AirSystemIndex WHERE nIndex = ?", {cell(int64_t{index})});
  if (row.AtEof()) return;
  const std::string name = row.Fields("szName").text(), in_file = system_in_file(index);
  if (in_file == name) return;
  fail(ErrorNumber::UnknownFormat, path + " has the results of the air system \"" + in_file + "\", but air system " +
                                       std::to_string(index) + " is \"" + name +
                                       "\". Run the design calculation again.");
}

void ADL_AirSystemDesign::Load() {
  if (!air_system_) return log().message("Air system object must be set before loading air system design load data.");
  const std::string path = file_of(air_system_->Index());
  if (path.empty()) return log().message("Air system design data filename is invalid");
  Transaction transaction(Transaction::Purpose::Reading);
  if (!files().exists(path)) return log().message("File does not exist: " + path);
  check_system(path);
  const ResultBlock::Spans all = spans();
  if (const uint64_t size = files().size(path), expected = size_of(all); size != expected) {
    size_t spaces = 0;
    for (const auto& zone : dl_zones_.items) spaces += zone->spaces().size();
    if (spaces == 0 && !dl_zones_.items.empty()) {
      fail(ErrorNumber::UnknownFormat, path + ": the zones of the air system have no spaces. Load the zones first " +
                                           "(SetMask CCM_INPUTMASK, then Load), then set AirSystem again.");
    }
    fail(ErrorNumber::UnknownFormat, path + " has " + std::to_string(size) + " bytes, but the results of a system of " +
                                         std::to_string(dl_zones_.items.size()) + " zones and " +
                                         std::to_string(spaces) + " spaces have " + std::to_string(expected) +
                                         ". The system has changed since, or the file is damaged: run the design " +
                                         "calculation again.");
  }
  files().read_blocks(path, 0, all);
  transaction.commit();
}

void ADL_AirSystemDesign::Save(int16_t nIndex) {
  const std::string path = file_of(nIndex);
  if (path.empty()) return log().message("Air system design data filename is invalid");
  Transaction transaction;
  files().replace(path, gathered(spans()), nullptr);
  transaction.commit();
}

std::string ADL_AirSystemDesign::Dump() const {
  std::string text = "ADL_AirSystemDesign\n";
  for (const ResultBlock* block : blocks()) text += block->Dump();
  return text;
}

const ClassInfo& ADL_AirSystemDesign::info() const {
  using C = ADL_AirSystemDesign;
  static constexpr auto members = describe<C>(
      Failures::Trapped, property<&C::AirSystem, &C::SetAirSystem>, owned<&C::DXXFileHeader>, owned<&C::Weather>,
      owned<&C::SSAir>, owned<&C::HLAir>, owned<&C::SPAir>, owned<&C::DLAir>, property<&C::TSZones>,
      property<&C::HLZones>, property<&C::DLZones>, method<&C::TSZone>("nIndex"), method<&C::HLZone>("nIndex"),
      method<&C::DLZone>("nIndex"), property<&C::WorkPath>, property<&C::sWorkPath>, property<&C::FilePrefix>,
      method<&C::Load>, method<&C::Save>("nIndex"), method<&C::Dump>);
  static const ClassInfo info(members);
  return info;
}

}  // namespace tarn
