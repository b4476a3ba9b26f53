// The zones of an air system: add, remove, set.

#include <algorithm>

#include "base/nearest.h"
#include "cli/assignments.h"
#include "cli/entities.h"
#include "tarn/air_system.h"

namespace tarn::cli {
namespace {

/// The number of a zone that a word gives, or names.
int16_t zone_of(AS_AirSystem& system, const std::string& word) {
  const int16_t count = system.GetAirSystem()->NumZones;
  std::vector<std::string> names;
  for (int16_t zone = 1; zone <= count; ++zone) names.push_back(system.GetZoneData(zone)->Name.trimmed());
  for (int16_t zone = 1; zone <= count; ++zone) {
    if (word == std::to_string(zone) || folded(names[static_cast<size_t>(zone) - 1]) == folded(word)) return zone;
  }
  const std::vector<std::string_view> known(names.begin(), names.end());
  throw UsageError("The air system has no zone \"" + word + "\"; it has " + std::to_string(count) +
                   (count == 1 ? " zone: " : " zones: ") + did_you_mean(word, known));
}

ZoneRecord& record_of(AS_AirSystem& system, int zone) { return *system.GetZoneData(static_cast<int16_t>(zone)); }

/// After the others, as the type of the system has it.
int16_t add_zone(AS_AirSystem& system) {
  const auto zone = static_cast<int16_t>(system.GetAirSystem()->NumZones + 1);
  system.GetAirSystem()->SetNumZones(zone);
  AS_AirSystem standard;
  standard.SetToDefaultsByType(static_cast<int16_t>(system.SystemType()));
  record_of(system, zone) = record_of(standard, 1);
  system.GetZoneData(zone)->Name = "Zone " + std::to_string(zone);
  return zone;
}

/// Those after it move up.
void remove_zone(AS_AirSystem& system, int16_t zone) {
  const int16_t count = system.GetAirSystem()->NumZones;
  if (count == 1) throw UsageError("An air system has one zone at least; delete the air system instead.");
  for (int16_t place = zone; place < count; ++place) record_of(system, place) = record_of(system, place + 1);
  system.GetAirSystem()->SetNumZones(static_cast<int16_t>(count - 1));
}

}  // namespace

int kind_zone(const Call& call) {
  const std::string action = call.words.empty() ? "" : call.words[0];
  const size_t first = action == "add" ? 2 : 3;  // of the assignments
  const bool known = action == "add" || action == "remove" || action == "set";
  if (!known || call.words.size() < first || (action == "remove" && call.words.size() > first) ||
      (action == "set" && call.words.size() == first)) {
    throw UsageError(
        "Write tarn air-systems zone add N [Property=value ...], zone remove N ZONE, or zone set N ZONE "
        "Property=value ...; ZONE is its number or name.");
  }
  Loaded on(call, Use::Writing, 1);
  auto& system = dynamic_cast<AS_AirSystem&>(*on.entity);
  const int16_t zone = action == "add" ? add_zone(system) : zone_of(system, call.words[2]);
  const std::string name = system.GetZoneData(zone)->Name.trimmed();
  if (action == "remove") remove_zone(system, zone);
  std::vector<std::string> assignments;
  for (size_t i = first; i < call.words.size(); ++i)
    assignments.push_back("ZoneData(" + std::to_string(zone) + ")." + call.words[i]);
  const auto edited = edit(system, on.kind, assignments);
  const std::string what = action == "add" ? "made" : action == "remove" ? "removed" : "set";
  const std::string told = action == "remove" ? name : system.GetZoneData(zone)->Name.trimmed();
  Done done = saved(system, on.kind, "saved: zone " + std::to_string(zone) + " " + told + " " + what, edited);
  done.json["zone"] = zone;
  return tell(call, on, {done});
}

}  // namespace tarn::cli
