#include "airsystems/defaults.h"

#include "airsystems/air_system_fixture.h"
#include "airsystems/default_values.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

using test::AirSystemTest;
using test::bytes_of;

TEST_F(AirSystemTest, EveryTypeHasItsDefaults) {
  const struct {
    int16_t type, system_type, equipment;
    const char* name;
    float supply_temperature;
    int16_t terminal;
  } cases[]{{1, 1, 1, "SZCAV Defaults", 58, 1},   {2, 2, 1, "CAVRH Defaults", 55, 2},
            {6, 6, 2, "TEMPER Defaults", 55, 1},  {8, 8, 1, "VAV Defaults", 55, 4},
            {14, 14, 6, "WSHP Defaults", 58, 11}, {20, 13, 6, "VRF Defaults", 58, 11},
            {22, 22, 6, "ACB Defaults", 58, 14}};
  AS_AirSystem system;
  for (const auto& c : cases) {
    system.SetToDefaultsByType(c.type);
    const SystemHeaderRecord& header = *system.GetAirSystem();
    EXPECT_EQ(header.Name.trimmed(), c.name);
    EXPECT_EQ(header.SystemType.raw, c.system_type) << c.name;
    EXPECT_EQ(header.EquipClass.raw, c.equipment) << c.name;
    EXPECT_EQ(system.GetCoolSys()->SupAirVal, c.supply_temperature) << c.name;
    EXPECT_EQ(system.GetZoneData(1)->TermType.raw, c.terminal) << c.name;
    EXPECT_EQ(system.GetZoneData(1)->Name.trimmed(), "Zone 1");
    EXPECT_EQ(header.NumZones, 1);
    EXPECT_FALSE(header.Sized || header.Simulated || header.HWCoilsExists);
    EXPECT_TRUE(system.GetHeatSys()->Schedule(12));
    const bool direct = system.GetCoolSys()->Source.raw == 1 || system.GetCoolSys()->Source.raw == 2;
    EXPECT_EQ(system.GetCoolSys()->PLR1Coeff(1) != 0, direct) << c.name;
  }
  for (const auto& [type, says] : {std::pair{0, "Unknown system type: 0"},
                                   {23, "Unknown system type: 23"},
                                   {17, "System type 17 is no longer used."}}) {
    try {
      system.SetToDefaultsByType(static_cast<int16_t>(type));
      ADD_FAILURE() << type;
    } catch (const Error& error) {
      EXPECT_EQ(error.description(), says);
    }
    EXPECT_EQ(system.GetAirSystem()->Name.trimmed(), "ACB Defaults");
  }
  system.SetToDefaults();
  EXPECT_EQ(system.GetAirSystem()->Name.trimmed(), "Default System");
}

TEST_F(AirSystemTest, ASecondTypeLeavesNothingOfTheFirst) {
  AS_AirSystem fresh, used;
  for (const SystemDefaults& first : kSystemDefaults) {
    used.SetToDefaultsByType(first.type);
    used.GetAirSystem()->SetNumZones(5);
    used.GetZoneData(1)->SpaceID(50) = 9;
    used.GetCoolSys()->Cap1Coeff(6, 8) = 1.0;
    used.GetCoilSize()->MaxPrecool = 3.0F;
    used.SetToDefaultsByType(22);
    fresh.SetToDefaultsByType(22);
    std::string one, other;
    const auto dump = [](Object& object, std::string& out) {
      for_each_field(object, [&](Object& owner, const Member& field, const std::string& prefix) {
        (out += prefix) += field.name;
        out.append(reinterpret_cast<const char*>(field.place(owner)), field.field()->size);
      });
    };
    dump(fresh, one);
    dump(used, other);
    EXPECT_TRUE(one == other) << first.class_name;
  }
}

TEST_F(AirSystemTest, DefaultsClassesFillTheirComponentsByName) {
  for (const SystemDefaults& row : kSystemDefaults) {
    AS_SystemDefaults defaults(row);
    EXPECT_EQ(defaults.info().name, row.class_name);
    EXPECT_EQ(defaults.info().members.size(), row.type == 1 ? 25U : 24U);
  }
  AS_SystemDefaults single(kSystemDefaults[0]);
  let_property(single, "ForPellNotTarn", true);
  auto header = std::make_shared<AS_General>();
  std::vector<Value> arguments{std::static_pointer_cast<Object>(header)};
  Value nothing;
  call_method(single, single.info().find("PopulateAirSystem"), arguments, nothing);
  EXPECT_EQ(header->Name.trimmed(), "Default System");
  EXPECT_EQ(header->EquipClass.raw, 2);
  EXPECT_THROW(call_method(single, single.info().find("PopulateCoolSys"), arguments, nothing), Error);
  AS_AirSystem system;
  create_defaults(system, 1, true);
  EXPECT_EQ(system.GetCoolSys()->Source.raw, 1);
  EXPECT_FALSE(system.GetCoolSys()->AutoSize || system.GetHeatSys()->AutoSize);
  EXPECT_EQ(system.GetSupplyFan()->PerfUnits.raw, 0);
  EXPECT_EQ(system.GetSupplyFan()->Efficiency, 0.84F);
  EXPECT_EQ(system.GetZoneData(1)->OccCoolSetpt, 80.0F);
  EXPECT_EQ(system.GetAirSizing()->CoolingSupplyTemp, 58.0F);
}

TEST_F(AirSystemTest, WrongDefaultsAreErrorsThatNameTheirPlace) {
  const struct {
    std::string right, wrong, says;
  } cases[]{
      {"\"AS_Dflt_05_DDCAV\"", "\"AS_Dflt_05_DDVAC\"", "AS_Dflt_05_DDVAC; did you mean AS_Dflt_05_DDCAV?"},
      {"\"AS_Dflt_05_DDCAV\": {", "\"AS_Dflt_05_DDCAV\": {\"CoolSis\": {},",
       "AS_Dflt_05_DDCAV, CoolSis: there is no such component; did you mean CoolSys?"},
      {"\"EconomizerType\"", "\"EconomiserType\"", "common, Economizer: AS_EconomizerData has no field EconomiserType"},
      {"\"KWValue\": [", "\"KWValue\": [1.0, ", "common, SupplyFan: AS_FanData.KWValue: found array of 12"},
      {"\"CompressorType\": \"VRF_Rotary\"", "\"CompressorType\": \"VRF_Rotor\"",
       "AS_Dflt_20_VRF, SplitSystem: AS_SplitSystemData.CompressorType: found \"VRF_Rotor\"; did you mean "
       "VRF_Rotary?"}};
  for (const auto& c : cases) {
    std::string json = system_default_values;
    json.replace(json.find(c.right), c.right.size(), c.wrong);
    try {
      read_system_defaults(json);
      ADD_FAILURE() << c.wrong;
    } catch (const Error& error) {
      EXPECT_NE(error.description().find(c.says), std::string::npos) << error.description();
    }
  }
}

}  // namespace
}  // namespace tarn
