// The file of an air system: its sections, and what its header says of them.
#include <tuple>

#include "platform/file_store.h"
#include "storage/index_row.h"
#include "tarn/air_system.h"

namespace tarn {
namespace {

constexpr int kMostOutputs = decltype(SystemHeaderRecord::OutputFlags)::size;

template <typename... Records>
constexpr size_t kTogether = (sizeof(Records) + ...);

template <typename Part>
constexpr size_t record_size(Part AS_AirSystem::*) {
  return sizeof(typename Part::Record);
}

HeaderCounts counts(Header header, const std::string& path) {
  const auto record = record_in<SystemHeaderRecord>(header);
  const int zones = record.NumZones, outputs = record.NumOutputs;
  if (zones < 0 || outputs < 0 || outputs > kMostOutputs) {
    fail(ErrorNumber::UnknownFormat, path + " says that it has " + std::to_string(zones) + " zones and " +
                                         std::to_string(outputs) + " outputs. Restore the file from a copy.");
  }
  return {static_cast<size_t>(zones), static_cast<size_t>(outputs)};
}

}  // namespace

const SectionForm& AS_AirSystem::form() {
  using C = AS_AirSystem;
  using H = SystemHeaderRecord;
  // The components of the input section, in the order of the file; the zones follow.
  static constexpr std::tuple kComponents{
      &C::cooling_,       &C::heating_,    &C::ventilation_,      &C::supply_duct_,  &C::return_plenum_,
      &C::supply_fan_,    &C::return_fan_, &C::supply_fan_2_,     &C::economizer_,   &C::preheat_coil_,
      &C::precool_coil_,  &C::humidifier_, &C::dehumidification_, &C::vent_reclaim_, &C::safety_factor_,
      &C::zone_schedule_, &C::water_loop_, &C::split_system_,     &C::changeover_};
  constexpr int32_t kSimulationBits = 0x03C00000;  // of CCM_SIMULATIONMASK those that no other section has
  static const Section sections[]{
      {.name = "The header",
       .mask = CCM_HEADERMASK,
       .size = {.fixed = sizeof(H)},
       .blocks = [](StoredEntity& entity) -> Blocks { return {static_cast<C&>(entity).general_.bytes()}; },
       .fit = [](StoredEntity& entity, Header header,
                 bool) { static_cast<C&>(entity).resize_zones(record_in<H>(header).NumZones); }},
      {.name = "The input section",
       .mask = CCM_INPUTMASK,
       .size = {.fixed = std::apply([](auto... part) { return (record_size(part) + ...); }, kComponents),
                .each = sizeof(ZoneRecord)},
       .blocks =
           [](StoredEntity& entity) {
             auto& system = static_cast<C&>(entity);
             Blocks blocks = std::apply([&](auto... part) { return Blocks{(system.*part).bytes()...}; }, kComponents);
             for (const Zone& zone : system.zones_) blocks.push_back(zone.data->bytes());
             return blocks;
           },
       .references = "*"},
      {.name = "The sizing results",
       .mask = CCM_SIZINGMASK,
       .is_result = true,
       .size = {.fixed = kTogether<AirSizingRecord, CoilSizingRecord>, .each = sizeof(ZoneSizingRecord)},
       .blocks =
           [](StoredEntity& entity) {
             auto& system = static_cast<C&>(entity);
             Blocks blocks{system.air_sizing_.bytes()};
             for (const Zone& zone : system.zones_) blocks.push_back(zone.sizing->bytes());
             blocks.push_back(system.coil_size_.bytes());
             return blocks;
           },
       .choices =
           [](StoredEntity& entity) {
             return static_cast<C&>(entity).air_sizing_.bytes().subspan(offsetof(AirSizingRecord, SizingMethod));
           }},
      {.name = "The simulation results",
       .mask = kSimulationBits,
       .is_result = true,
       .size = {.fixed = kTogether<UnmetLoadsRecord, LeedUnmetLoadsRecord>,
                .each = sizeof(ZoneTemperatureRecord),
                .each_output = sizeof(HourlyResultRecord)},
       .blocks =
           [](StoredEntity& entity) {
             auto& system = static_cast<C&>(entity);
             Blocks blocks;
             for (const Zone& zone : system.zones_) blocks.push_back(zone.temperature->bytes());
             blocks.insert(blocks.end(), {system.unmet_loads_.bytes(), system.leed_unmet_loads_.bytes()});
             for (const auto& item : system.hourly_.items()) blocks.push_back(item->bytes());
             return blocks;
           },
       .fit = [](StoredEntity& entity, Header header,
                 bool there) { static_cast<C&>(entity).hourly_.Resize(there ? record_in<H>(header).NumOutputs : 0); },
       .stays = false}};
  static const ResultFlag flags[]{{"bSized", offsetof(H, Sized), section_bit(kSizing)},
                                  {"bCoilDataValid", offsetof(H, CoilDataValid)},
                                  {"bSimulated", offsetof(H, Simulated), section_bit(kSimulation)}};
  static const SectionForm form{
      .sections = sections,
      .result_flags = flags,
      .counts = counts,
      .one = "air system",
      .missing_file = "File not found: ",
      .end_of_message = ".",
      .edits_drop_results = true,
      .without_default =
          [](StoredEntity& entity) {
            auto& system = static_cast<C&>(entity);
            system.SetToDefaultsByType(1);
            system.Reset(true);
          },
      .mask = [](const StoredEntity& entity) { return static_cast<const C&>(entity).m_lCurMask; },
      .companion = [](StoredEntity& entity) -> std::string& { return static_cast<C&>(entity).DLFileName; }};
  return form;
}

void AS_AirSystem::keep_design_results() {
  const std::string path = sections_.results_path_of(Index());
  if (path.empty() || !files().exists(path)) return;
  const IndexRow row = row_of(Index());
  if (!row.there()) return files().remove(path, GetDBHandle());
  struct {
    Text<32> SystemName;
  } begin;
  const std::span<std::byte> bytes = record_bytes(begin);
  files().read(path, 0, bytes);
  const std::string before = row.text("szName"), now = stored_name();
  if (before == now || begin.SystemName.trimmed() != before) return;
  begin.SystemName = now;
  files().write(path, 0, bytes, GetDBHandle());
}

}  // namespace tarn
