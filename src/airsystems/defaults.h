// Defaults of air systems by type: the VAV set, and for each other type the values that differ. They stand in tables;
// one class reads them and stands for the defaults classes of all types.
#pragma once

#include <array>

#include "airsystems/air_system.h"

namespace tarn {

/// Words "Property=value" for one component.
struct ComponentDefaults {
  std::string_view component;
  std::string_view words;
};
struct SystemDefaults {
  int16_t type;
  std::string_view class_name;
  std::string_view name;  // of the system
  int16_t system_type, equip_class;
  std::string_view differences;  // "Component: words Component: words"
};
extern const std::array<ComponentDefaults, 21> kVavDefaults;
extern const std::array<SystemDefaults, 21> kSystemDefaults;

/// The defaults of one system type: an operation for each component, which fills it.
class AS_SystemDefaults final : public Object {
 public:
  explicit AS_SystemDefaults(const SystemDefaults& defaults) : defaults_(defaults) {}
  const ClassInfo& info() const override;

  /// Fills a component by the number of its operation, in the order of the interface; everything that the tables do not
  /// state becomes zero. Error `TypeMismatch` for a component of another class.
  void populate(size_t operation, Object& component) const;

  bool ForPellNotTarn = false;  // type 1 alone: other values for eight properties

 private:
  void apply(size_t operation, Object& component, std::string_view words) const;
  void shared_steps(size_t operation, Object& component) const;

  const SystemDefaults& defaults_;
};

/// Fills a system with one zone. Errors `InvalidCall` for an unknown type and for 17, before anything changes.
void create_defaults(AS_AirSystem& system, int16_t type, bool ForPellNotTarn);

}  // namespace tarn
