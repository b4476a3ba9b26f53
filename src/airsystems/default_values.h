// The default values of all system types, from the JSON text of airsystems/defaults.json. "common" has the components
// of a VAV system; each type, under the name of its defaults class, what differs from them; and
// "AS_Dflt_01_SZCAV.ForPellNotTarn" what differs from type 1 with that switch. Components have the names of the
// operations that fill them ("CoolSys" of PopulateCoolSys), fields and codes those of the interface.
#pragma once

#include <array>
#include <string_view>
#include <vector>

#include "tarn/air_system.h"

namespace tarn {

struct SystemDefaults;

/// A component of a system and the operation of the defaults classes that fills it.
struct DefaultComponent {
  std::string_view operation;
  std::string_view class_name;
  ObjectPtr (*of)(AS_AirSystem&);  // of the first zone, for those of zones

  std::string_view name() const { return operation.substr(std::string_view("Populate").size()); }
};
/// In the order of the interface.
extern const std::array<DefaultComponent, 24> kDefaultComponents;

/// Bytes of the components' records, in the order of `kDefaultComponents`.
using ComponentRecords = std::array<std::vector<std::byte>, 24>;

struct SystemDefaultRecords {
  std::vector<ComponentRecords> of_type;  // in the order of `kSystemDefaults`
  ComponentRecords for_pell;              // type 1 with `ForPellNotTarn`

  const ComponentRecords& of(const SystemDefaults& type, bool ForPellNotTarn) const;
};

/// What the JSON does not state is zero, apart from the curves of direct expansion. Errors of the values
/// (`NoSuchMember`, `TypeMismatch`, `Overflow`) name type, component and property.
SystemDefaultRecords read_system_defaults(std::string_view json);

/// The library's own, read once.
const SystemDefaultRecords& system_default_records();

/// airsystems/defaults.json.
extern const char* const system_default_values;

}  // namespace tarn
