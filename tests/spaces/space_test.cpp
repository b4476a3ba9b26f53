#include "tarn/space.h"

#include "support/temp_project.h"
#include "tarn/base/value.h"
#include "tarn/construction.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

class SpaceTest : public test::ProjectTest {
 protected:
  int16_t new_wall() {
    auto wall = project.NewWall();
    wall->layer(2).LayerUsed = true;
    wall->layer(2).ThermalResistance = 5.0F;
    wall->Save();
    return wall->Index();
  }
  /// The other side's indexes in a link table of space 1: "1 3 ".
  std::string linked(const std::string& kind) {
    std::string text;
    auto found =
        database->OpenRecordset("SELECT * FROM Space_" + kind + "_Links WHERE Space_ID = 1 ORDER BY " + kind + "_ID");
    for (; !found.AtEof(); found.MoveNext()) text += std::to_string(found.Fields(kind + "_ID").integer()) + " ";
    return text;
  }
};

TEST_F(SpaceTest, BlocksLieAsTheirFileHasThem) {
  const struct {
    const char* class_name;
    std::string layout, expected;
  } cases[]{
      {"general", test::layout(SPC_General().info()),
       "Name@0+24 FloorArea@24+4 AvgHeight@28+4 BuildingWt@32+4 SpaceUsage@38+4 OAReq1Value@42+8 "
       "OAReq2Value@52+8 OAReq1Spec@50+2 OAReq2Spec@60+2 AreaSpec@62+2 Length@64+4 Width@68+4 "},
      {"wall", test::layout(SPC_WallWindow().info()),
       "Exposure@0+2 GrossArea@2+4 WallType@6+2 WindowType@8+4 WindowQty@12+4 WindowShade@16+4 DoorType@20+2 "
       "DoorQty@22+2 "
       "WallAreaSpec@24+2 WallWidth@26+4 WallHeight@30+4 "},
      {"roof", test::layout(SPC_Roof().info()),
       "Exposure@0+2 Slope@2+2 GrossArea@4+4 RoofType@8+2 SkylightType@10+2 SkylightQty@12+2 AreaSpec@14+2 Length@16+4 "
       "Width@20+4 "},
      {"partition", test::layout(SPC_Partition().info()),
       "PartitionType@0+2 Area@2+4 UValue@6+4 MaxSpaceTemp@10+4 MaxAmbient@14+4 MinSpaceTemp@18+4 MinAmbient@22+4 "},
      {"floor", test::layout(SPC_Floor().info()),
       "FloorType@0+2 Area@2+4 OverallUValue@6+4 ExposedPerimeter@10+4 SlabInsulR@14+4 Depth@18+4 WallUValue@22+4 "
       "WallInsulR@26+4 WallInsulDepth@30+4 MaxSpaceTemp@34+4 MaxAmbient@38+4 MinSpaceTemp@42+4 MinAmbient@46+4 "
       "AreaSpec@50+2 Length@52+4 Width@56+4 Carpeted@60+2 "},
      {"infiltration", test::layout(SPC_Infiltration().info()),
       "CoolSpec@0+2 CoolCFM@2+4 HeatSpec@6+2 HeatCFM@8+4 TypeSpec@12+2 TypeCFM@14+4 CalcWhenFanOn@18+2 "
       "DirExhaustAir@20+4 "},
      {"people", test::layout(SPC_People().info()),
       "Spec@0+2 Occupancy@2+4 ActLevel@6+2 SensibleHeat@8+4 LatentHeat@12+4 Schedule@16+2 RadiantConvSplit@18+4 "
       "UnoccDiv@22+4 "},
      {"lighting", test::layout(SPC_Lighting().info()),
       "OverheadSpec@0+2 OverheadWatt@2+4 BallastMult@6+4 OverheadFixture@10+2 OverheadSchedule@12+2 TaskSpec@14+2 "
       "TaskWatt@16+4 TaskSchedule@20+2 OvhdRadConvSplit@22+4 OvhdUnoccDiv@26+4 TskLightRadConvSplit@30+4 "
       "TskLightUnoccDiv@34+4 "},
      {"other loads", test::layout(SPC_OtherLoads().info()),
       "MiscSensibleHeat@0+4 MiscSensibleSchedule@4+2 MiscLatentHeat@6+4 MiscLatentSchedule@10+2 ElecEqptSpec@12+2 "
       "ElecEqptHeatGain@14+4 ElecEqptSchedule@18+2 ElecRadConvSplit@20+4 ElecUnoccDiv@24+4 MiscRadConvSplit@28+4 "
       "MiscSensUnoccDiv@32+4 MiscLatUnoccDiv@36+4 "}};
  for (const auto& c : cases) EXPECT_EQ(c.layout, c.expected) << c.class_name;
}

TEST_F(SpaceTest, TheRecordIsTheBlocksInARow) {
  auto space = project.NewSpace();
  EXPECT_EQ(space->GetRecordLength(), 682);
  // A byte of its own for each block's first field, and the reserved field.
  space->SetName("Office");
  space->GetSpace()->Reserved = 0x1234;
  for (int16_t i = 1; i <= 8; ++i) space->GetWall(i)->Exposure = i;
  for (int16_t i = 1; i <= 4; ++i) space->GetRoof(i)->Exposure = static_cast<int16_t>(20 + i);
  for (int16_t i = 1; i <= 2; ++i) space->GetPartition(i)->PartitionType = static_cast<int16_t>(30 + i);
  space->GetFloor()->FloorType = 40;
  space->GetInfiltration()->CoolSpec = 41;
  space->GetPeople()->Spec = static_cast<SPC_OccupancySpec>(42);
  space->GetLight()->OverheadSpec = 43;
  space->GetOtherLoads()->ElecEqptSpec = 44;
  space->Save();
  const std::string bytes = test::bytes_of(project.SpaceFilename()).substr(682);
  ASSERT_EQ(bytes.size(), 682U);
  EXPECT_EQ(bytes.substr(0, 24), "Office" + std::string(18, ' '));
  EXPECT_EQ(bytes.substr(36, 2), "\x34\x12");
  for (const auto& [at, value] : {std::pair{72, 1},
                                  {72 + 7 * 34, 8},
                                  {344, 21},
                                  {344 + 3 * 24, 24},
                                  {440, 31},
                                  {466, 32},
                                  {492, 40},
                                  {554, 41},
                                  {578, 42},
                                  {604, 43},
                                  {642 + 12, 44}}) {
    EXPECT_EQ(bytes[static_cast<size_t>(at)], value) << at;
  }
  auto read = project.NewSpace();
  read->Load(1);
  read->Save();
  EXPECT_EQ(test::bytes_of(project.SpaceFilename()).substr(682), bytes);
}

TEST_F(SpaceTest, RowAndForwardedPropertiesShowTheParts) {
  auto space = project.NewSpace();
  for (const auto& [name, value] :
       {std::pair{"FloorArea", 1000.0}, {"AvgHeight", 9.0}, {"BuildingWeight", 70.0}, {"OAReq1Value", 17.5}})
    let_property(*space, name, value);
  let_property(*space, "SpaceUsage", int32_t{70000});
  EXPECT_EQ(space->GetSpace()->BuildingWt, 70.0F);
  EXPECT_EQ(space->GetSpace()->SpaceUsage, 70000);
  EXPECT_EQ(std::get<double>(get_property(*space, "OAReq1Value")), 17.5);
  space->GetPeople()->Spec = SPC_OccupancySpec::SQFTPERPERSON;
  space->GetPeople()->Occupancy = 200.0F;
  space->GetLight()->OverheadWatt = 1.5F;
  space->Save();
  EXPECT_EQ(space->Name(), "Space  1");
  EXPECT_EQ(rows("SpaceIndex"), "/1.000000 Space  1/0.000000 /1000.000000 /5.000000 /1.500000 \n");
  const struct {
    int16_t code;
    float occupancy, people;
  } cases[]{{0, 7, 7}, {1, 0.05F, 0}, {1, 0.1F, 10000}, {1, 200, 5}, {2, 7, 0}};
  for (const auto& c : cases) {
    space->GetPeople()->Spec = static_cast<SPC_OccupancySpec>(c.code);
    space->GetPeople()->Occupancy = c.occupancy;
    EXPECT_FLOAT_EQ(space->GetMaxOccupancy(), c.people) << c.code << " " << c.occupancy;
  }
  space->Load(5);
  EXPECT_EQ(log.messages, std::vector<std::string>{"Invalid Space ID number: 5"});
}

TEST_F(SpaceTest, ExposuresAreThoseOfTheSlotsInUse) {
  auto space = project.NewSpace();
  for (const auto& [slot, exposure] : {std::pair{2, 4}, {5, 1}, {8, 4}})
    space->GetWall(static_cast<int16_t>(slot))->Exposure = static_cast<int16_t>(exposure);
  space->GetWall(1)->GrossArea = 10.0F;
  space->GetWall(2)->GrossArea = 20.0F;
  space->GetRoof(3)->Exposure = -1;
  const auto walls = space->GetWallExposures();
  ASSERT_EQ(walls->Count(), 3);
  EXPECT_EQ(std::get<int16_t>(walls->Item(1)) * 100 + std::get<int16_t>(walls->Item(2)) * 10 +
                std::get<int16_t>(walls->Item(3)),
            414);
  EXPECT_EQ(space->GetRoofExposures()->Count(), 0);
  EXPECT_EQ(space->GrossWallArea(), 30.0F) << "used or not";
  for (const auto& bad : {std::pair{"GetWall", 9}, {"GetRoof", 5}, {"GetPartition", 3}, {"GetWall", 0}}) {
    std::vector<Value> arguments{int16_t{static_cast<int16_t>(bad.second)}};
    Value result;
    call_method(*space, space->info().find(bad.first), arguments, result);
    EXPECT_EQ(type_of(result), ValueType::Empty) << bad.first;
  }
  const int third[]{3};
  get_property(*space->GetWall(1), "WindowType", third);
  EXPECT_EQ(log.errors.back(), "TarnDataHandler52|SPC_WallWindow|WindowType [PropertyGet]");
}

TEST_F(SpaceTest, PartsKeepTheirSpaceAlive) {
  Ptr<SPC_WallWindow> wall = project.NewSpace()->GetWall(3);
  wall->GrossArea = 120.0F;
  EXPECT_EQ(wall->GrossArea, 120.0F);
}

TEST_F(SpaceTest, LinkRowsAreExactlyWhatThePartsReferTo) {
  auto space = project.NewSpace();
  space->GetWall(1)->WallType = 3;
  space->GetWall(2)->WallType = 3;
  space->GetWall(3)->WallType = 1;
  space->GetWall(1)->WindowType(2) = 5;
  space->GetRoof(1)->SkylightType = 6;
  space->GetRoof(4)->RoofType = 2;
  space->GetWall(8)->DoorType = 4;
  space->GetWall(8)->WindowShade(1) = 9;
  space->GetPeople()->Schedule = 1;
  space->GetLight()->OverheadSchedule = 2;
  space->GetLight()->TaskSchedule = 3;
  space->GetOtherLoads()->MiscSensibleSchedule = 4;
  space->GetOtherLoads()->MiscLatentSchedule = 5;
  space->GetOtherLoads()->ElecEqptSchedule = 1;
  space->Save();
  space->Save();
  EXPECT_EQ(linked("Wall") + "/" + linked("Roof") + "/" + linked("Window") + "/" + linked("Door") + "/" +
                linked("Shade") + "/" + linked("Schedule"),
            "1 3 /2 /5 6 /4 /9 /1 2 3 4 5 ");
  space->GetWall(3)->WallType = 7;
  space->GetPeople()->Schedule = 0;
  space->GetRoof(1)->SkylightType = 0;
  space->Save();
  EXPECT_EQ(linked("Wall") + "/" + linked("Window") + "/" + linked("Schedule"), "3 7 /5 /1 2 3 4 5 ");
  link("System_Space_Links (4, 1)");
  space->Delete();
  for (const char* kind : {"Wall", "Roof", "Window", "Door", "Shade", "Schedule"}) EXPECT_EQ(linked(kind), "") << kind;
  EXPECT_EQ(count("System_Space_Links"), 0);
}

TEST_F(SpaceTest, NegativeReferencesAreNoLinksAndStay) {
  const auto space = project.NewSpace();
  space->GetPeople()->Schedule = -3;
  space->Save();
  EXPECT_EQ(rows("Space_Schedule_Links"), "");
  const auto again = project.NewSpace();
  again->Load(space->Index());
  EXPECT_EQ(again->GetPeople()->Schedule, -3);
  EXPECT_TRUE(log.messages.empty());
}

TEST_F(SpaceTest, AWallThatTakesAFreedIndexIsInheritedByNobody) {
  ASSERT_EQ(new_wall() * 10 + new_wall(), 12);
  auto space = project.NewSpace();
  space->GetWall(1)->WallType = 1;
  space->GetWall(2)->WallType = 2;
  space->Save();
  auto open = project.NewSpace();  // loaded before the wall goes
  open->Load(1);
  const auto clone = open->Clone();
  auto unsaved = project.NewWall();
  EXPECT_NE(test::error_number([&] { unsaved->StoredEntity::Save(); }), 0) << "a failure elsewhere changes nothing";
  project.NewWall()->Delete(2);
  EXPECT_EQ(new_wall(), 2);
  open->GetWall(3)->WallType = 1;
  open->GetWall(4)->WallType = 2;  // the new one, by the client's own will
  open->Save();
  EXPECT_EQ(linked("Wall"), "1 2 ");
  EXPECT_EQ(open->GetWall(2)->WallType * 10 + open->GetWall(4)->WallType, 2);
  EXPECT_EQ(log.messages,
            std::vector<std::string>{"Space 1, Wall(2).WallType: Wall 2 was deleted; the reference is cleared."});
  clone->Save();
  EXPECT_EQ(count("Space_Wall_Links WHERE Space_ID = 2"), 1);
  // A delete that is rolled back does not count.
  {
    Transaction undone;
    project.NewWall()->Delete(1);
  }
  open->Save();
  EXPECT_EQ(open->GetWall(1)->WallType, 1);
}

TEST_F(SpaceTest, AReferenceWhoseLinkRowWasLostComesBackWithTheNextSave) {
  ASSERT_EQ(new_wall() * 10 + new_wall(), 12);
  auto space = project.NewSpace();
  for (int i = 1; i <= 3; ++i) space->GetWall(static_cast<int16_t>(i))->WallType = static_cast<int16_t>(i % 2 + 1);
  space->Save();
  project.NewWall()->Delete(1);
  ASSERT_EQ(new_wall(), 1);
  database->Execute("DELETE FROM Space_Wall_Links");
  log.messages.clear();
  const std::string lost =
      ": Wall 2 exists, but the link row that leads to it is missing. The reference reads as 0; the record still has "
      "it, "
      "and the next save, or 'tarn project repair', puts both back.";
  space->Load(1);
  EXPECT_EQ(log.messages,
            (std::vector<std::string>{"Space 1, Wall(2).WallType: Wall 1 was deleted; the reference is cleared.",
                                      "Space 1, Wall(1).WallType" + lost, "Space 1, Wall(3).WallType" + lost}));
  EXPECT_EQ(space->GetWall(1)->WallType + space->GetWall(2)->WallType + space->GetWall(3)->WallType, 0);
  space->GetWall(1)->WallAreaSpec.raw = 1;  // beside the reference
  space->GetWall(3)->WallType = 1;          // the client's own
  {
    Transaction undone;
    space->Save();
    EXPECT_EQ(linked("Wall"), "1 2 ");
  }
  EXPECT_EQ(space->GetWall(1)->WallType, 0);
  space->Save();
  EXPECT_EQ(linked("Wall"), "1 2 ");
  space->Load(1);
  EXPECT_EQ(space->GetWall(1)->WallType * 100 + space->GetWall(2)->WallType * 10 + space->GetWall(3)->WallType, 201);
  EXPECT_EQ(count("DeletedUses"), 0) << "settled by the save";
}

TEST_F(SpaceTest, ATwinBringsBackWhatAnotherObjectChanged) {
  ASSERT_EQ(new_wall() * 10 + new_wall(), 12);
  auto space = project.NewSpace();
  space->GetWall(1)->WallType = 1;
  space->Save();
  const auto twin = space->CopyInstance();
  space->GetWall(1)->WallType = 2;
  space->Save();
  EXPECT_EQ(linked("Wall"), "2 ");
  twin->Save();
  EXPECT_EQ(twin->GetWall(1)->WallType, 1);
  EXPECT_EQ(linked("Wall"), "1 ");
}

TEST_F(SpaceTest, LoadClearsReferencesWithoutALinkAndKeepsTheRest) {
  auto space = project.NewSpace();
  space->GetWall(1)->WindowType(1) = 3;
  space->GetWall(1)->WindowType(2) = 4;
  space->GetWall(4)->WindowShade(2) = 3;
  space->Save();
  EXPECT_EQ(log.messages[0], "Space 1, Wall(1).WindowType(1) refers to Window 3, which is not there.");
  log.messages.clear();
  database->Execute("DELETE FROM Space_Window_Links WHERE Window_ID = 3");
  space->Load(1);
  EXPECT_EQ(log.messages, std::vector<std::string>{
                              "Space 1, Wall(1).WindowType(1): Window 3 was deleted; the reference is cleared."});
  EXPECT_EQ(space->GetWall(1)->WindowType(1) * 100 + space->GetWall(1)->WindowType(2) * 10 +
                space->GetWall(4)->WindowShade(2),
            43);
}

TEST_F(SpaceTest, ARollbackTakesIndexesBackWithTheRows) {
  auto first = project.NewSpace();
  {
    Transaction undone;
    first->Save();
    EXPECT_EQ(first->Index(), 1);
  }
  EXPECT_EQ(first->Index(), 0);
  auto second = project.NewSpace();
  second->SetName("second");
  second->Save();
  first->Save();
  EXPECT_EQ(first->Index() * 10 + second->Index(), 21);
  {
    Transaction undone;
    second->Delete();
  }
  EXPECT_EQ(second->Index(), 1);
  second->Save();
  EXPECT_EQ(count("SpaceIndex"), 2);
}

TEST_F(SpaceTest, EachWayReachesWhenItIsTheOnlyOne) {
  auto space = project.NewSpace();
  space->Save();
  EXPECT_EQ(marks(*space, "System_Space_Links (4, 1)"), "S S");
  EXPECT_EQ(marks(*space, "System_Space_Links (4, 1); Plant_System_Links (5, 4); Building_Plant_Links (6, 5)"),
            "SPB SPB");
  EXPECT_EQ(marks(*space, "System_Space_Links (4, 1); Building_System_Links (6, 4)"), "SB SB");
  EXPECT_EQ(marks(*space, "System_Space_Links (4, 2)"), " ");
}

TEST_F(SpaceTest, CopiesHoldAllParts) {
  auto space = project.NewSpace();
  space->SetName("A");
  space->GetRoof(4)->Slope = 30;
  space->GetOtherLoads()->MiscLatUnoccDiv = 0.5F;
  space->Save();
  const auto clone = space->Clone(int16_t{1});
  EXPECT_EQ(clone->GetRoof(4)->Slope, 30);
  EXPECT_EQ(clone->Name(), "Copy of A");
  const auto twin = space->CopyInstance();
  EXPECT_EQ(twin->GetOtherLoads()->MiscLatUnoccDiv, 0.5F);
  EXPECT_EQ(twin->Index(), 1);
}

}  // namespace
}  // namespace tarn
