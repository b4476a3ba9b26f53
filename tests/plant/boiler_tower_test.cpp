#include "support/temp_project.h"
#include "tarn/boiler.h"
#include "tarn/chiller.h"
#include "tarn/cooling_tower.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

void call(Object& object, const char* method, std::vector<Value> arguments = {}) {
  Value result;
  call_method(object, object.info().find(method), arguments, result);
}

class BoilerTowerTest : public test::ProjectTest {
 protected:
  void SetUp() override {
    ProjectTest::SetUp();
    boiler = project.NewBoiler();
    boiler->SetFuelType(BLR_FuelTypes::BFT_FUEL_OIL);
    boiler->SetPartLoadModel(BLR_ModelingMethods::MM_CONDENSING_BOILER);
    boiler->AutoSize = true;
    boiler->BoilerOutput = 1200.5F;
    boiler->HotWaterFlow = 85.25F;
    boiler->HotWaterFlowUnits = COM_FlowUOM::FU_GPM_PER_TON;
    boiler->BoilerEff(11) = 0.5F;
    boiler->Name = std::string(35, 'b') + "c";
    boiler->Save();
    tower = project.NewCoolingTower();
    tower->Name = std::string(35, 't') + "u";
    tower->ECWTModel = TWR_ModelingMethods::TM_DRY_COOLER;
    tower->AvgECWT(13) = 0.5F;
    tower->CondPumpFlow = 3.25F;
    tower->CondPumpFlowUnits = COM_FlowUOM::FU_TEMPERATURE_DIFFERENCE;
    tower->Save();
  }
  template <typename R>
  static std::string bytes(const R& record) {
    return {reinterpret_cast<const char*>(&record), sizeof record};
  }
  std::string own() { return bytes<BoilerRecord>(*boiler) + bytes<TowerRecord>(*tower); }
  std::string state() {
    return own() + std::to_string(boiler->Index()) + std::to_string(tower->Index()) + rows("BoilerIndex") +
           rows("TowerIndex") + test::bytes_of(project.BoilerFilename()) + test::bytes_of(project.TowerFilename());
  }

  Ptr<BLR_Boiler> boiler;
  Ptr<TWR_CoolingTower> tower;
};

TEST_F(BoilerTowerTest, RecordsAndRowsLieAsTheirFilesHaveThem) {
  EXPECT_EQ(test::layout(boiler->info()),
            "Name@0+35 AutoSize@41+2 BoilerOutput@43+4 BoilerInput@47+4 BoilerEff@51+44 FuelType@95+2 MiscKW@97+4 "
            "PartLoadModel@101+2 HotWaterFlow@103+4 HotWaterFlowUnits@107+2 BoilerType@35+2 DesignHWST@37+4 ");
  EXPECT_EQ(test::layout(tower->info()),
            "Name@0+35 ECWTModel@35+2 DesignWetBulb@37+4 DesignRange@41+4 DesignApproach@45+4 AirFlow@49+4 "
            "AirFlowUnits@53+2 FanPower@55+4 FanPowerUnits@59+2 TowerControl@61+2 LowSpdAirflow@63+2 FanElecEff@65+4 "
            "AvgECWT@69+52 CondPumpFlow@121+4 CondPumpFlowUnits@125+2 ");
  const std::string half("\0\0\0\x3F", 4);  // 0.5
  const std::string boilers = test::bytes_of(project.BoilerFilename()),
                    towers = test::bytes_of(project.TowerFilename());
  EXPECT_EQ(boilers, std::string(109, '\0') + bytes<BoilerRecord>(*boiler));
  EXPECT_EQ(boilers.substr(109, 37), std::string(35, 'b') + std::string(2, '\0'));
  EXPECT_EQ(boilers.substr(109 + 91, 6), half + std::string("\5\0", 2));
  EXPECT_EQ(towers, std::string(127, '\0') + bytes<TowerRecord>(*tower));
  EXPECT_EQ(towers.substr(127, 37), std::string(35, 't') + std::string("\4\0", 2));
  EXPECT_EQ(towers.substr(127 + 117, 4), half);
  const auto row = [this](const std::string& columns, const std::string& table) {
    return rows("(SELECT " + columns + " FROM " + table + ")");
  };
  EXPECT_EQ(
      row("nIndex, szName, nFuelType, fBoilerOutput, bAutoSizeCapacity, fHotWaterFlow, nHWFlowUnits", "BoilerIndex"),
      "/1.000000 " + std::string(35, 'b') + "/0.000000 /5.000000 /1200.500000 /-1.000000 /85.250000 /1.000000 \n");
  EXPECT_EQ(row("nIndex, szName, nECWTModel, fCondPumpFlow, nCondPumpFlowUnits", "TowerIndex"),
            "/1.000000 " + std::string(35, 't') + "/0.000000 /4.000000 /3.250000 /2.000000 \n");
}

TEST_F(BoilerTowerTest, NamesComeTrimmedAndCopiesAreWhole) {
  boiler->Name = " short  ";
  tower->Name = "small";
  for (Object* one : {static_cast<Object*>(boiler.get()), static_cast<Object*>(tower.get())})
    EXPECT_EQ(std::get<std::string>(get_property(*one, "Name")).size(), 5U);
  const std::string record = own();
  EXPECT_EQ(bytes<BoilerRecord>(*boiler->CopyInstance()) + bytes<TowerRecord>(*tower->CopyInstance()), record);
  EXPECT_EQ(bytes<BoilerRecord>(*boiler->Clone()).substr(35), record.substr(35, 74));
  EXPECT_EQ(bytes<TowerRecord>(*tower->Clone(1)).substr(35), record.substr(109 + 35));
}

TEST_F(BoilerTowerTest, BadCallsSayWhyAndChangeNothing) {
  const std::string good = test::bytes_of(project.BoilerFilename());
  const std::string size = "Size of boiler data file does not match size of boiler data structure.";
  const auto set = [&](const char* name, int value) {
    return [&, name, value] { let_property(*boiler, name, value); };
  };
  const auto load = [&](StoredEntity& entity, int16_t record) {
    return [&entity, record] { call(entity, "Load", {record}); };
  };
  const auto create = [&] { call(*boiler, "CreateDefault"); };
  const struct {
    std::function<void()> act;
    std::string source, message;
    std::string file = "";
  } cases[]{
      {set("FuelType", 2), "BLR_Boiler.FuelType [PropertyLet]", "Invalid value for FuelType: 2", good},
      {set("FuelType", 9), "BLR_Boiler.FuelType [PropertyLet]", "Invalid value for FuelType: 9", good},
      {set("PartLoadModel", 0), "BLR_Boiler.PartLoadModel [PropertyLet]", "Invalid value for PartLoadModel: 0", good},
      {set("PartLoadModel", 5), "BLR_Boiler.PartLoadModel [PropertyLet]", "Invalid value for PartLoadModel: 5", good},
      {load(*boiler, 1), "Load()", size},
      {create, "CreateDefault()", size},
      {load(*boiler, 1), "Load()", size, good + "x"},
      {create, "CreateDefault()", size, good.substr(1)},
      {load(*boiler, 7), "BLR_Boiler.Load()", "Cannot find boiler record in database for record #7", good},
      {load(*tower, 7), "TWR_CoolingTower.Load()", "Cannot find tower record in database for record #7", good}};
  for (const auto& c : cases) {
    test::write_bytes(project.BoilerFilename(), c.file);
    const std::string before = state();
    try {
      c.act();
      ADD_FAILURE() << c.message;
    } catch (const Error& error) {
      EXPECT_EQ(error.what(), c.message);
      EXPECT_EQ(error.source(), c.source);
    }
    EXPECT_TRUE(state() == before) << c.message;
  }
  test::remove_file(project.BoilerFilename());
  EXPECT_THROW(boiler->Load(1), Error);
  for (const int fuel : {3, 8}) EXPECT_NO_THROW(set("FuelType", fuel)());
  for (const int model : {1, 4}) EXPECT_NO_THROW(set("PartLoadModel", model)());
  EXPECT_EQ(boiler->FuelType(), BLR_FuelTypes::BFT_REMOTE_SOURCE_STEAM);
}

TEST_F(BoilerTowerTest, EachRouteReachesWhenItIsTheOnlyOne) {
  auto chiller = project.NewChiller();
  chiller->Save();
  const struct {
    std::string links;
    const char *chiller, *boiler, *tower;
  } cases[]{
      {"Plant_Chiller_Links (5, 1)", "p", "", ""},
      {"Plant_Chiller_Links (5, 1); Building_Plant_Links (6, 5)", "pB", "", ""},
      {"Plant_Equipment_Links (5, 10, 1)", "p", "", ""},
      {"Plant_Equipment_Links (5, 10, 1); Building_Plant_Links (6, 5)", "pB", "", ""},
      {"System_Boiler_Links (4, 1)", "", "s", ""},
      {"System_Boiler_Links (4, 1); Plant_System_Links (5, 4)", "", "sp", ""},
      {"System_Boiler_Links (4, 1); Building_System_Links (6, 4)", "", "sB", ""},
      {"System_Boiler_Links (4, 1); Plant_System_Links (5, 4); Building_Plant_Links (6, 5)", "", "spB", ""},
      {"Plant_Boiler_Links (5, 1)", "", "p", ""},
      {"Plant_Boiler_Links (5, 1); Building_Plant_Links (6, 5)", "", "pB", ""},
      {"Plant_Equipment_Links (5, 20, 1)", "", "p", ""},
      {"Plant_Equipment_Links (5, 20, 1); Building_Plant_Links (6, 5)", "", "pB", ""},
      {"System_Tower_Links (4, 1)", "", "", "s"},
      {"System_Tower_Links (4, 1); Plant_System_Links (5, 4)", "", "", "sp"},
      {"System_Tower_Links (4, 1); Building_System_Links (6, 4)", "", "", "sB"},
      {"System_Tower_Links (4, 1); Plant_System_Links (5, 4); Building_Plant_Links (6, 5)", "", "", "spB"},
      {"Plant_Tower_Links (5, 1)", "", "", "p"},
      {"Plant_Tower_Links (5, 1); Building_Plant_Links (6, 5)", "", "", "pB"},
      {"Plant_System_Links (5, 4); Building_Plant_Links (6, 5); Building_System_Links (6, 4)", "", "", ""},
      {"System_Boiler_Links (4, 2); System_Tower_Links (4, 2); Plant_Boiler_Links (5, 2); Plant_Tower_Links (5, 2); "
       "Plant_Chiller_Links (5, 2); Plant_Equipment_Links (5, 10, 2); Plant_Equipment_Links (5, 20, 2)",
       "", "", ""}};
  for (const auto& c : cases) {
    const auto both = [](const std::string& marked) { return marked + " " + marked; };
    EXPECT_EQ(marks(*chiller, c.links), both(c.chiller)) << c.links;
    EXPECT_EQ(marks(*boiler, c.links), both(c.boiler)) << c.links;
    EXPECT_EQ(marks(*tower, c.links), both(c.tower)) << c.links;
  }
}

TEST_F(BoilerTowerTest, ADeleteTakesTheRowsThatNameItAndNoOthers) {
  const std::vector<std::string> tables{"Plant_Chiller_Links", "Plant_Boiler_Links", "Plant_Tower_Links",
                                        "System_Boiler_Links", "System_Tower_Links"};
  for (const std::string& table : tables) link(table + " (3, 1); " + table + " (3, 2)");
  for (const char* library : {"10", "20"})
    link(std::string("Plant_Equipment_Links (3, ") + library + ", 1); Plant_Equipment_Links (3, " + library + ", 2)");
  auto chiller = project.NewChiller();
  chiller->Save();
  const struct {
    StoredEntity& entity;
    std::vector<std::string> gone;
  } cases[]{{*chiller,
             {"Plant_Chiller_Links WHERE Chiller_ID = 1",
              "Plant_Equipment_Links WHERE Library_ID = 10 AND Equipment_ID = 1", "ChillerIndex WHERE nIndex = 1"}},
            {*boiler,
             {"Plant_Boiler_Links WHERE Boiler_ID = 1", "System_Boiler_Links WHERE Boiler_ID = 1",
              "Plant_Equipment_Links WHERE Library_ID = 20 AND Equipment_ID = 1", "BoilerIndex WHERE nIndex = 1"}},
            {*tower,
             {"Plant_Tower_Links WHERE Tower_ID = 1", "System_Tower_Links WHERE Tower_ID = 1",
              "TowerIndex WHERE nIndex = 1"}}};
  const auto all = [&] {
    int64_t sum = count("Plant_Equipment_Links") + count("ChillerIndex") + count("BoilerIndex") + count("TowerIndex");
    for (const std::string& table : tables) sum += count(table);
    return sum;
  };
  for (const auto& c : cases) {
    const int64_t before = all();
    for (const auto& rows_of : c.gone) EXPECT_EQ(count(rows_of), 1) << rows_of;
    c.entity.Delete();
    for (const auto& rows_of : c.gone) EXPECT_EQ(count(rows_of), 0) << rows_of;
    EXPECT_EQ(all(), before - static_cast<int64_t>(c.gone.size()));
    EXPECT_EQ(c.entity.Index(), 0);
  }
}

}  // namespace
}  // namespace tarn
