#include "tarn/member_units.h"

#include "tarn/base/value.h"
#include "tarn/chiller.h"
#include "tarn/class_list.h"
#include "tarn/code_names.h"
#include "tarn/cooling_tower.h"
#include "tarn/space_parts.h"

namespace tarn {
namespace {

void expect_known(const std::string& unit, const std::string& where) {
  EXPECT_TRUE(is_unit(unit)) << where << ": " << unit;
  const std::string si(unit_in(UnitSystem::SI, unit));
  ASSERT_TRUE(is_unit(si)) << where << ": " << si;
  EXPECT_NEAR(convert(convert(0.78, unit, si), si, unit), 0.78, 1e-13) << where << ": " << unit << ", " << si;
  for (const char* inch_pound : {"ft", "in", "Btu", "lb", "F", "CFM", "gpm", "gal", "tons", "MBH", "bhp", "psi"}) {
    const bool has_it = unit.find(inch_pound) != std::string::npos;
    EXPECT_TRUE(!has_it || si != unit) << where << ": " << unit << " has no SI unit";
  }
}

TEST(MemberUnits, EveryUnitOfTheMembersTablesIsKnown) {
  size_t count = 0;
  for (const ClassEntry& entry : class_list()) {
    for (const Member& member : entry.info->members) {
      const std::string where = std::string(entry.info->name) + "." + std::string(member.name);
      for (std::string left(member.unit); !left.empty(); ++count) {
        const size_t end = std::min(left.find(" or "), left.size());
        expect_known(left.substr(0, end), where);
        left.erase(0, end + 4);
      }
      if (member.unit_beside.empty()) continue;
      const ObjectPtr object = entry.create();
      const Member& chooser = entry.info->find(member.unit_beside);
      size_t known = 0;
      for (const Label& label : codes_of(*object, chooser)) {
        chooser.let(*object, {}, Value(static_cast<int16_t>(label.code)));
        const std::string unit(unit_of(*object, member));
        if (!unit.empty()) expect_known(unit, where);
        known += unit.empty() ? 0 : 1;
      }
      EXPECT_GE(known, 2U) << where << ": no units of the codes of " << member.unit_beside;
    }
  }
  EXPECT_GT(count, 400U);
}

TEST(MemberUnits, FollowTheObject) {
  CHL_Chiller chiller;
  const auto unit = [](const Object& object, const char* property) {
    return unit_of(object, object.info().find(property));
  };
  chiller.CoolingMode.FLPowerUnits = CHL_InputPower::InputPower_Relative;
  chiller.HeatingMode.FLPowerUnits = CHL_InputPower::InputPower_Absolute;
  struct {
    CHL_FuelTypes fuel;
    const char *iplv, *cooling, *heating;
  } const cases[]{{CHL_FuelTypes::CFT_ELECTRIC, "kW/ton", "kW/ton", "kW"},
                  {CHL_FuelTypes::CFT_NATURAL_GAS, "MBH/ton", "MBH/ton", "MBH"}};
  for (const auto& row : cases) {
    chiller.FuelType = row.fuel;
    EXPECT_EQ(unit(chiller, "IPLV"), row.iplv);
    EXPECT_EQ(unit(chiller.CoolingMode, "FLPower"), row.cooling);
    EXPECT_EQ(unit(chiller.HeatingMode, "FLPower"), row.heating);
    EXPECT_EQ(unit(chiller.HeatingMode, "MapCapacity"), "MBH");
  }
  EXPECT_EQ(unit(CHL_OperatingMode(), "FLPower"), "kW or MBH") << "of no chiller";
  TWR_CoolingTower tower;
  tower.CondPumpFlowUnits = COM_FlowUOM::FU_TEMPERATURE_DIFFERENCE;
  EXPECT_EQ(unit(tower, "CondPumpFlow"), "delta F");
  tower.CondPumpFlowUnits = COM_FlowUOM{77};
  EXPECT_EQ(unit(tower, "CondPumpFlow"), "") << "a code that is none";
  SPC_Lighting lighting;
  lighting.OverheadSpec = 2;
  EXPECT_EQ(unit(lighting, "OverheadWatt"), "W/ft2") << "by the code catalogue";
}

}  // namespace
}  // namespace tarn
