// The file of an air system: its name, where its sections lie, what is read and what is written.
#include <algorithm>

#include "airsystems/air_system.h"
#include "platform/host.h"
#include "platform/workspace.h"

namespace tarn {
namespace {

constexpr uint64_t kInputsEnd = 5204;  // with the header, without zones
constexpr int kMostOutputs = decltype(SystemHeaderRecord::OutputFlags)::size;

}  // namespace

bool AS_AirSystem::selected(size_t section) const {
  constexpr int32_t kMasks[]{CCM_HEADERMASK, CCM_INPUTMASK, CCM_SIZINGMASK, 0x03C00000};
  return (m_lCurMask & kMasks[section]) != 0;
}

AS_AirSystem::Ends AS_AirSystem::ends_of(std::span<const std::byte> header, const std::string& path) const {
  SystemHeaderRecord record;
  std::copy(header.begin(), header.end(), std::as_writable_bytes(std::span(&record, 1)).begin());
  const int zones = record.NumZones, outputs = record.NumOutputs;
  if (zones < 0 || outputs < 0 || outputs > kMostOutputs) {
    fail(ErrorNumber::UnknownFormat, path + " says that it has " + std::to_string(zones) + " zones and " +
                                         std::to_string(outputs) + " outputs. Restore the file from a copy.");
  }
  const auto n = static_cast<uint64_t>(zones);
  Ends ends{sizeof(SystemHeaderRecord), kInputsEnd + n * sizeof(ZoneRecord), 0, 0};
  ends[kSizing] = ends[kInputs] + sizeof(AirSizingRecord) + n * sizeof(ZoneSizingRecord) + sizeof(CoilSizingRecord);
  ends[kSimulation] = ends[kSizing] + n * sizeof(ZoneTemperatureRecord) + sizeof(UnmetLoadsRecord) +
                      sizeof(LeedUnmetLoadsRecord) + static_cast<uint64_t>(outputs) * sizeof(HourlyResultRecord);
  return ends;
}

AS_AirSystem::Blocks AS_AirSystem::blocks(size_t section) {
  Blocks blocks;
  switch (section) {
    case kHeader:
      return {general_.bytes()};
    case kInputs:
      blocks = {cooling_.bytes(),          heating_.bytes(),      ventilation_.bytes(),   supply_duct_.bytes(),
                return_plenum_.bytes(),    supply_fan_.bytes(),   return_fan_.bytes(),    supply_fan_2_.bytes(),
                economizer_.bytes(),       preheat_coil_.bytes(), precool_coil_.bytes(),  humidifier_.bytes(),
                dehumidification_.bytes(), vent_reclaim_.bytes(), safety_factor_.bytes(), zone_schedule_.bytes(),
                water_loop_.bytes(),       split_system_.bytes(), changeover_.bytes()};
      for (const Zone& zone : zones_) blocks.push_back(zone.data->bytes());
      break;
    case kSizing:
      blocks = {air_sizing_.bytes()};
      for (const Zone& zone : zones_) blocks.push_back(zone.sizing->bytes());
      blocks.push_back(coil_size_.bytes());
      break;
    case kSimulation:
      for (const Zone& zone : zones_) blocks.push_back(zone.temperature->bytes());
      blocks.insert(blocks.end(), {unmet_loads_.bytes(), leed_unmet_loads_.bytes()});
      for (int32_t i = 1; i <= hourly_.Count(); ++i) blocks.push_back(hourly_.Item(i)->bytes());
      break;
  }
  return blocks;
}

void AS_AirSystem::make_room(size_t section, std::span<const std::byte> header, bool there) {
  SystemHeaderRecord record;
  if (!header.empty()) std::copy(header.begin(), header.end(), std::as_writable_bytes(std::span(&record, 1)).begin());
  if (section == kHeader) resize_zones(record.NumZones);
  if (section == kSimulation) hourly_.Resize(there ? record.NumOutputs : 0);
}

void AS_AirSystem::write_record(int16_t index) {
  const std::string path = file_of(index);
  if (path.empty())
    fail(ErrorNumber::FileNotFound, "The air system has no file name; set its WorkPath and FilePrefix.");
  changeover_.Begin = "STARTCO";
  changeover_.End = "ENDCO";
  const bool by_user = selected(kInputs) && !after_calculations_ && !as_given_;
  write_file(path, !by_user);
}

void AS_AirSystem::remove_files(int16_t index) {
  SectionedEntity::remove_files(index);
  if (index == 0 || DLFileName.empty()) return;
  const bool has_folder = DLFileName.find('/') != std::string::npos;
  files().remove(has_folder ? DLFileName : host().directory_form(WorkPath) + DLFileName, GetDBHandle());
}

std::function<void()> AS_AirSystem::keep_rest() {
  return [this, rest = SectionedEntity::keep_rest(), hourly = hourly_.items()] {
    rest();
    hourly_.set_items(hourly);
  };
}

void AS_AirSystem::set_record(std::span<const std::byte> bytes) {
  resize_zones(static_cast<int>((bytes.size() - kInputsEnd) / sizeof(ZoneRecord)));
  SectionedEntity::set_record(bytes);
}

}  // namespace tarn
