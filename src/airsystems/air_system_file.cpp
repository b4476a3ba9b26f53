// The file of an air system: its name, where its sections lie, what is read and what is written.
#include <algorithm>

#include "airsystems/air_system.h"
#include "platform/host.h"
#include "platform/workspace.h"

namespace tarn {
namespace {

constexpr uint64_t kHeader = sizeof(SystemHeaderRecord);
constexpr uint64_t kInputs = 5204;  // with the header, without zones
constexpr int kMostOutputs = decltype(SystemHeaderRecord::OutputFlags)::size;

FileStore& files() { return Engine::of_thread().Workspaces(0).files(); }

/// Fills blocks that lie back to back in a file: large ones in place, the small ones between them by one read.
void read_blocks(const std::string& path, uint64_t from, std::span<const std::span<std::byte>> blocks) {
  constexpr size_t kLarge = 4096;
  std::vector<std::byte> buffer;
  for (size_t i = 0; i < blocks.size();) {
    if (blocks[i].size() >= kLarge) {
      files().read(path, from, blocks[i], OpenMode::Read);
      from += blocks[i++].size();
      continue;
    }
    size_t end = i, size = 0;
    while (end < blocks.size() && blocks[end].size() < kLarge) size += blocks[end++].size();
    buffer.resize(size);
    files().read(path, from, buffer, OpenMode::Read);
    from += size;
    for (auto next = buffer.begin(); i < end; next += static_cast<ptrdiff_t>(blocks[i++].size()))
      std::copy_n(next, blocks[i].size(), blocks[i].begin());
  }
}

void append(std::vector<std::byte>& out, std::span<const std::byte> bytes) {
  out.insert(out.end(), bytes.begin(), bytes.end());
}

}  // namespace

/// Two hexadecimal digits at least: "0A.DAT", "100.DAT".
std::string AS_AirSystem::file_of(int index) const {
  if (FilePrefix.empty()) return {};
  char number[16];
  std::snprintf(number, sizeof number, "%02X", index);
  return host().directory_form(WorkPath) + FilePrefix + number + ".DAT";
}

bool AS_AirSystem::selected(Section section) const {
  constexpr int32_t kMasks[]{CCM_HEADERMASK, CCM_INPUTMASK, CCM_SIZINGMASK, 0x03C00000};
  return (m_lCurMask & kMasks[static_cast<size_t>(section)]) != 0;
}

AS_AirSystem::Shape AS_AirSystem::shape_of(int zones, int outputs) {
  const auto n = static_cast<uint64_t>(zones);
  Shape shape{zones, outputs, kHeader, 0, 0, 0};
  shape.inputs = kInputs + n * sizeof(ZoneRecord);
  shape.sizing = shape.inputs + sizeof(AirSizingRecord) + n * sizeof(ZoneSizingRecord) + sizeof(CoilSizingRecord);
  shape.simulation = shape.sizing + n * sizeof(ZoneTemperatureRecord) + sizeof(UnmetLoadsRecord) +
                     sizeof(LeedUnmetLoadsRecord) + static_cast<uint64_t>(outputs) * sizeof(HourlyResultRecord);
  return shape;
}

/// A file ends where one of its sections ends.
AS_AirSystem::Shape AS_AirSystem::checked_shape(const SystemHeaderRecord& header, uint64_t size,
                                                const std::string& path) {
  const int zones = header.NumZones, outputs = header.NumOutputs;
  if (size < kHeader) {
    fail(ErrorNumber::UnknownFormat, path + " is cut inside its header: " + std::to_string(size) + " of " +
                                         std::to_string(kHeader) + " bytes. Restore the file from a copy.");
  }
  if (zones < 0 || outputs < 0 || outputs > kMostOutputs) {
    fail(ErrorNumber::UnknownFormat, path + " says that it has " + std::to_string(zones) + " zones and " +
                                         std::to_string(outputs) + " outputs. Restore the file from a copy.");
  }
  const Shape shape = shape_of(zones, outputs);
  if (size != shape.header && size != shape.inputs && size != shape.sizing && size != shape.simulation) {
    fail(ErrorNumber::UnknownFormat, path + " ends inside a section, at byte " + std::to_string(size) + ": with " +
                                         std::to_string(zones) + " zones its sections end at " +
                                         std::to_string(shape.header) + ", " + std::to_string(shape.inputs) + ", " +
                                         std::to_string(shape.sizing) + " and " + std::to_string(shape.simulation) +
                                         ". Restore the file from a copy.");
  }
  return shape;
}

/// The memory of a section's records, in their order.
std::vector<std::span<std::byte>> AS_AirSystem::section_blocks(Section section) {
  std::vector<std::span<std::byte>> blocks;
  switch (section) {
    case Section::Header:
      return {general_.bytes()};
    case Section::Inputs:
      blocks = {cooling_.bytes(),          heating_.bytes(),      ventilation_.bytes(),   supply_duct_.bytes(),
                return_plenum_.bytes(),    supply_fan_.bytes(),   return_fan_.bytes(),    supply_fan_2_.bytes(),
                economizer_.bytes(),       preheat_coil_.bytes(), precool_coil_.bytes(),  humidifier_.bytes(),
                dehumidification_.bytes(), vent_reclaim_.bytes(), safety_factor_.bytes(), zone_schedule_.bytes(),
                water_loop_.bytes(),       split_system_.bytes(), changeover_.bytes()};
      for (const Zone& zone : zones_) blocks.push_back(zone.data->bytes());
      break;
    case Section::Sizing:
      blocks = {air_sizing_.bytes()};
      for (const Zone& zone : zones_) blocks.push_back(zone.sizing->bytes());
      blocks.push_back(coil_size_.bytes());
      break;
    case Section::Simulation:
      for (const Zone& zone : zones_) blocks.push_back(zone.temperature->bytes());
      blocks.insert(blocks.end(), {unmet_loads_.bytes(), leed_unmet_loads_.bytes()});
      for (int32_t i = 1; i <= hourly_.Count(); ++i) blocks.push_back(hourly_.Item(i)->bytes());
      break;
  }
  return blocks;
}

void AS_AirSystem::read_sections(const std::string& path) {
  SystemHeaderRecord header;
  files().read(path, 0, std::as_writable_bytes(std::span(&header, 1)), OpenMode::Read);
  const Shape shape = checked_shape(header, files().size(path), path);
  const uint64_t size = files().size(path);
  resize_zones(shape.zones);
  if (selected(Section::Header)) static_cast<SystemHeaderRecord&>(general_) = header;
  const auto read_section = [&](Section section, uint64_t from, uint64_t to) {
    if (!selected(section) || size < to) return false;
    read_blocks(path, from, section_blocks(section));
    return true;
  };
  read_section(Section::Inputs, shape.header, shape.inputs);
  if (selected(Section::Simulation)) hourly_.Resize(size >= shape.simulation ? shape.outputs : 0);
  // Sections that are not selected stay unknown here; a save carries them over.
  has_sizing_ = read_section(Section::Sizing, shape.inputs, shape.sizing);
  has_simulation_ = read_section(Section::Simulation, shape.sizing, shape.simulation);
  if (!has_sizing_ || !has_simulation_) clear_results();
}

/// Zeroes the results that are not there.
void AS_AirSystem::clear_results() {
  const auto clear = [this](Section section) {
    for (const auto& block : section_blocks(section)) std::fill(block.begin(), block.end(), std::byte{0});
  };
  if (!has_sizing_) clear(Section::Sizing);
  if (has_simulation_) return;
  clear(Section::Simulation);
  hourly_.Resize(0);
}

/// The file as it lies there, in its sections; empty for a new system.
AS_AirSystem::OldFile AS_AirSystem::old_file(const std::string& path) {
  OldFile old{{}, shape_of(0, 0)};
  if (!files().exists(path)) return old;
  old.bytes.resize(files().size(path));
  files().read(path, 0, old.bytes, OpenMode::Read);
  SystemHeaderRecord header{};
  std::copy_n(old.bytes.begin(), std::min<size_t>(old.bytes.size(), kHeader),
              std::as_writable_bytes(std::span(&header, 1)).begin());
  old.shape = checked_shape(header, old.bytes.size(), path);
  return old;
}

/// A header that the mask does not select is that of the file, in the index row as well.
void AS_AirSystem::take_unselected_header() {
  const std::string path = file_of(Index);
  if (selected(Section::Header) || path.empty() || !files().exists(path)) return;
  SystemHeaderRecord header;
  files().read(path, 0, std::as_writable_bytes(std::span(&header, 1)), OpenMode::Read);
  checked_shape(header, files().size(path), path);
  const int16_t zones = general_.NumZones;
  static_cast<SystemHeaderRecord&>(general_) = header;
  if (selected(Section::Inputs)) general_.NumZones = zones;
}

/// Appends a section for the new file: from memory where it is selected, else as the old file has it. Returns its size,
/// 0 where neither has it.
uint64_t AS_AirSystem::add_section(Section section, const OldFile& old, std::vector<std::byte>& out) {
  const uint64_t ends[]{0, old.shape.header, old.shape.inputs, old.shape.sizing, old.shape.simulation};
  const auto number = static_cast<size_t>(section);
  const size_t before = out.size();
  const bool in_memory = section == Section::Inputs || (section == Section::Sizing ? has_sizing_ : has_simulation_);
  if (selected(section) && in_memory) {
    if (section == Section::Simulation) hourly_.Resize(general_.NumOutputs);
    for (const auto& block : section_blocks(section)) append(out, block);
  } else if (!selected(section) && old.bytes.size() >= ends[number + 1]) {
    append(out, std::span(old.bytes).subspan(ends[number], ends[number + 1] - ends[number]));
  }
  return out.size() - before;
}

void AS_AirSystem::write_record(int16_t index) {
  const std::string path = file_of(index);
  if (path.empty())
    fail(ErrorNumber::FileNotFound, "The air system has no file name; set its WorkPath and FilePrefix.");
  changeover_.Begin = "STARTCO";
  changeover_.End = "ENDCO";
  const bool by_user = selected(Section::Inputs) && !after_calculations_ && !as_given_;
  const bool all = (m_lCurMask & CCM_MASKALL) == CCM_MASKALL;
  const OldFile old = all ? OldFile{{}, shape_of(0, 0)} : old_file(path);
  const Shape shape = shape_of(general_.NumZones, general_.NumOutputs);
  std::vector<std::byte> out;
  out.reserve(shape.simulation);
  append(out, general_.bytes());
  // What lies behind has its place by what lies before, also where that was never stored.
  const auto add = [&](Section section, uint64_t start, uint64_t end) {
    const size_t before = out.size();
    out.resize(std::max<size_t>(before, start));
    const uint64_t size = add_section(section, old, out);
    if (size == 0) out.resize(before);
    if (size == 0 || (out.size() == end && before <= start)) return;
    fail(ErrorNumber::InvalidCall,
         "The number of zones or outputs has changed, but sections that depend on it are not selected by the mask. "
         "Select them with SetMask before Load and Save.");
  };
  add(Section::Inputs, shape.header, shape.inputs);
  if (!by_user) {
    add(Section::Sizing, shape.inputs, shape.sizing);
    add(Section::Simulation, shape.sizing, shape.simulation);
  }
  files().replace(path, std::move(out), GetDBHandle());
}

void AS_AirSystem::remove_files(int16_t index) {
  if (index == 0) return;  // never stored; the file of index 0 is the default's
  if (const std::string path = file_of(index); !path.empty()) files().remove(path, GetDBHandle());
  if (DLFileName.empty()) return;
  const bool has_folder = DLFileName.find('/') != std::string::npos;
  files().remove(has_folder ? DLFileName : host().directory_form(WorkPath) + DLFileName, GetDBHandle());
}

/// Header, inputs and zones; what a failed operation puts back.
std::vector<std::byte> AS_AirSystem::record() const {
  std::vector<std::byte> out;
  out.reserve(kInputs + zones_.size() * sizeof(ZoneRecord));
  auto& self = const_cast<AS_AirSystem&>(*this);
  for (const Section section : {Section::Header, Section::Inputs}) {
    for (const auto& block : self.section_blocks(section)) append(out, block);
  }
  return out;
}

std::function<void()> AS_AirSystem::keep_rest() {
  return [this, des = DesHasChanged, sim = SimHasChanged, sizing = has_sizing_, simulation = has_simulation_,
          hourly = hourly_.items()] {
    DesHasChanged = des;
    SimHasChanged = sim;
    has_sizing_ = sizing;
    has_simulation_ = simulation;
    hourly_.set_items(hourly);
  };
}

void AS_AirSystem::set_record(std::span<const std::byte> bytes) {
  resize_zones(static_cast<int>((bytes.size() - kInputs) / sizeof(ZoneRecord)));
  for (const Section section : {Section::Header, Section::Inputs}) {
    for (const auto& block : section_blocks(section)) {
      std::copy_n(bytes.begin(), block.size(), block.begin());
      bytes = bytes.subspan(block.size());
    }
  }
}

}  // namespace tarn
