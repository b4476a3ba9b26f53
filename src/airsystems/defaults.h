// Defaults of air systems by type. One class stands for the defaults classes of all types; the values stand in
// defaults.json.
#pragma once

#include <array>

#include "tarn/air_system.h"

namespace tarn {

struct SystemDefaults {
  int16_t type;
  std::string_view class_name;
};
extern const std::array<SystemDefaults, 21> kSystemDefaults;

/// The defaults of one system type: an operation for each component, which fills it.
class AS_SystemDefaults final : public Object {
 public:
  explicit AS_SystemDefaults(const SystemDefaults& defaults) : defaults_(defaults) {}
  const ClassInfo& info() const override;

  /// Fills a component by the number of its operation, in the order of the interface; everything that defaults.json
  /// does not state becomes zero. Error `TypeMismatch` for a component of another class.
  void populate(size_t operation, Object& component) const;

  bool ForPellNotTarn = false;  // type 1 alone: it has a second set of values

 private:
  const SystemDefaults& defaults_;
};

/// Fills a system with one zone. Errors `InvalidCall` for an unknown type and for 17, before anything changes.
void create_defaults(AS_AirSystem& system, int16_t type, bool ForPellNotTarn);

}  // namespace tarn
