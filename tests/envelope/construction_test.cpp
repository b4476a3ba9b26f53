#include "tarn/construction.h"

#include <cmath>
#include <cstring>

#include "storage/kind.h"
#include "support/temp_project.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

constexpr int kRecord = 3187;

class ConstructionTest : public test::ProjectTest {
 protected:
  static void set(CA_Layer& layer, const std::string& name, float inches, float conductivity, float density,
                  float heat) {
    layer.Name = name;
    layer.LayerUsed = true;
    layer.SetThicknessInches(inches);
    layer.Conductivity = conductivity;
    layer.Density = density;
    layer.SpecificHeat = heat;
  }
  Ptr<CA_ConstructionAssly> brick_wall() {
    auto wall = project.NewWall();
    wall->Name = "Brick";
    set(wall->layer(2), "brick", 6.0F, 0.5F, 120.0F, 0.19F);
    return wall;
  }
  std::string record(int index) const {
    return test::bytes_of(project.WallFilename()).substr(static_cast<size_t>(index) * kRecord, kRecord);
  }
  static float real_at(const std::string& bytes, size_t at) {
    float value = 0;
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
  }
};

TEST_F(ConstructionTest, RecordsLieAsTheirFilesHaveThem) {
  EXPECT_EQ(test::layout(CA_ConstructionAssly().info()),
            "Absorptivity@255+4 Color@259+2 BTrans@277+48 CTrans@373+4 DTrans@325+48 InsideSurfaceResistance@261+4 "
            "Name@0+255 OutsideSurfaceResistance@265+4 OverallUValue@269+4 OverallWeight@273+4 ");
  EXPECT_EQ(test::layout(CA_Layer().info()),
            "Name@0+255 LayerUsed@255+2 Thickness@257+4 Conductivity@261+4 Density@265+4 SpecificHeat@269+4 "
            "ThermalResistance@273+4 Weight@277+4 ");
  auto wall = brick_wall();
  wall->Color = 3;
  wall->OverallUValue = 0.25F;
  wall->layer(10).Weight = 9.0F;
  wall->Save();
  EXPECT_EQ(test::bytes_of(project.WallFilename()).size(), 2U * kRecord);
  const std::string bytes = record(1);
  EXPECT_EQ(bytes.substr(0, 7), "Brick  ");
  EXPECT_EQ(bytes[259], 3);
  EXPECT_EQ(real_at(bytes, 269), 0.25F);
  EXPECT_EQ(real_at(bytes, 277), float{wall->BTrans(1)});
  EXPECT_EQ(real_at(bytes, 325), 1.0F);
  EXPECT_EQ(real_at(bytes, 373), float{wall->CTrans});
  EXPECT_EQ(bytes.substr(377 + 281, 7), "brick  ");
  EXPECT_EQ(bytes.substr(377 + 281 + 255, 2), "\xFF\xFF");
  EXPECT_EQ(real_at(bytes, 377 + 281 + 257), 0.5F) << "feet in the file";
  EXPECT_EQ(real_at(bytes, 377 + 9 * 281 + 277), 9.0F);
  const auto row = rows("WallIndex");
  EXPECT_EQ(row, "/1.000000 Brick/0.000000 /0.250000 /0.000000 /6.000000 \n") << "inches in the table";
}

TEST_F(ConstructionTest, InchesAreInchesOnEveryPathAndReadBytesStay) {
  auto wall = brick_wall();
  wall->layer(2).SetThicknessInches(0.3F);
  EXPECT_EQ(wall->layer(2).ThicknessInches(), 0.3F);
  wall->Save();
  EXPECT_EQ(wall->layer(2).ThicknessInches(), 0.3F);
  wall->layer(2).LayerUsed = false;
  EXPECT_NE(test::error_number([&] { wall->StoredEntity::Save(); }), 0);
  EXPECT_EQ(wall->layer(2).ThicknessInches(), 0.3F) << "after a failed save";
  // Feet that are not a twelfth of any real: a load and a save do not change them.
  std::string file = test::bytes_of(project.WallFilename());
  const float feet = 0.29999998F;
  std::memcpy(file.data() + kRecord + 377 + 281 + 257, &feet, 4);
  test::write_bytes(project.WallFilename(), file);
  auto read = project.NewWall();
  read->Load(1);
  EXPECT_EQ(read->layer(2).ThicknessInches(), feet * 12);
  read->Save();
  EXPECT_EQ(real_at(record(1), 377 + 281 + 257), feet);
}

/// The slots as "A-B----" and so on: a letter for a used layer, '-' for an unused one.
std::string slots(CA_ConstructionAssly& wall) {
  std::string text;
  for (int i = 1; i <= 10; ++i) text += wall.layer(i).LayerUsed ? wall.layer(i).Name.trimmed().front() : '-';
  return text;
}

void fill(CA_ConstructionAssly& wall, unsigned pattern) {
  for (int i = 1; i <= 10; ++i) {
    wall.layer(i).Name = std::string(1, static_cast<char>('A' + i - 1));
    wall.layer(i).LayerUsed = (pattern >> (i - 1) & 1U) != 0;
    wall.layer(i).SetThicknessInches(static_cast<float>(i));
  }
}

/// The same on a text of ten letters, step by step.
void model_remove(std::string& slots, size_t at) {
  const std::string kept{slots.front(), slots.back()};
  for (size_t i = at; i + 1 <= 10; ++i) slots[i - 1] = slots[i < 10 ? i : 9];
  slots[8] = '-';
  slots.front() = kept[0];
  slots.back() = kept[1];
}
int model_insert(std::string& slots, size_t at) {
  const std::string kept{slots.front(), slots.back()};
  for (size_t i = 10; i > at; --i) slots[i - 1] = slots[i - 2];
  slots[at - 1] = 'N';
  size_t ends = at;
  for (size_t j = at; j > 2; --j) {
    if (slots[j - 2] != '-') continue;
    model_remove(slots, j - 1);
    --ends;
  }
  slots.front() = kept[0];
  slots.back() = kept[1];
  return static_cast<int>(ends);
}

TEST_F(ConstructionTest, LayersAreInsertedAndRemovedAtAllPlacesOfAllFillings) {
  CA_ConstructionAssly wall;
  for (unsigned pattern = 0; pattern < 1024; ++pattern) {
    for (int16_t at = 2; at <= 9; ++at) {
      fill(wall, pattern);
      std::string model = slots(wall);
      const std::string before = model;
      const int ends = model_insert(model, static_cast<size_t>(at));
      EXPECT_EQ(wall.InsertLayer(at), ends) << before << " at " << at;
      ASSERT_EQ(slots(wall), model) << before << " insert at " << at;
      EXPECT_EQ(wall.layer(1).ThicknessInches(), 1.0F);
      EXPECT_EQ(wall.layer(10).ThicknessInches(), 10.0F);
      EXPECT_EQ(wall.layer(ends).Name.trimmed(), "New Layer");
      EXPECT_EQ(wall.layer(ends).Conductivity, 1.0F);
      fill(wall, pattern);
      model = before;
      model_remove(model, static_cast<size_t>(at));
      EXPECT_EQ(wall.RemoveLayer(at), at);
      ASSERT_EQ(slots(wall), model) << before << " remove at " << at;
      EXPECT_EQ(wall.layer(9).Name.trimmed(), "Not used");
    }
  }
  EXPECT_TRUE(log.messages.empty());
}

TEST_F(ConstructionTest, PlacesOutsideTheSequenceAreLoggedAndChangeNothing) {
  CA_ConstructionAssly wall;
  fill(wall, 6);
  for (const int16_t at : std::initializer_list<int16_t>{-1, 0, 1, 10, 11}) {
    EXPECT_EQ(wall.InsertLayer(at), 0);
    EXPECT_EQ(wall.RemoveLayer(at), 0);
    EXPECT_EQ(
        log.messages[0],
        "Insertion point cannot be below the lower bound or above the upper bound of the Layer sequence. nInsertAt=" +
            std::to_string(at));
    EXPECT_EQ(
        log.messages[1],
        "Removal point cannot be below the lower bound or above the upper bound of the Layer sequence. nRemoveAt=" +
            std::to_string(at));
    log.messages.clear();
  }
  EXPECT_EQ(slots(wall), "-BC-------");
  for (const int bad : {0, 11}) EXPECT_EQ(test::error_number([&] { wall.GetLayer(static_cast<int16_t>(bad)); }), 9);
}

TEST_F(ConstructionTest, ASaveWithoutTransferFunctionsWritesNothingAndSaysWhy) {
  auto wall = brick_wall();
  wall->Save();
  const std::string file = test::bytes_of(project.WallFilename());
  const std::string table = rows("WallIndex");
  const struct {
    void (*spoil)(CA_Layer&);
    const char* reason;
  } cases[]{{[](CA_Layer& l) { l.LayerUsed = false; }, "no layer is used"},
            {[](CA_Layer& l) { l.SetThicknessInches(0); }, "the layers have no thermal resistance"},
            {[](CA_Layer& l) { l.Conductivity = 0; },
             "layer 2 has a thickness, but neither conductivity nor thermal resistance"},
            {[](CA_Layer& l) { l.Density = 3e38F; }, "the layers are too heavy"},
            {[](CA_Layer& l) { l.SetThicknessInches(0), l.ThermalResistance = -1; },
             "layer 2 has a negative thermal resistance"},
            {[](CA_Layer& l) { l.Conductivity = HUGE_VALF; }, "layer 2 has a value that is infinite or no number"}};
  for (const auto& c : cases) {
    wall->Load(1);
    wall->Name = "changed";
    c.spoil(wall->layer(2));
    auto code = CA_ReturnCodes::CA_ERR_NOERR;
    log.messages.clear();
    wall->Save(code);
    EXPECT_EQ(code, CA_ReturnCodes::CA_ERR_TFCG) << c.reason;
    ASSERT_EQ(log.messages.size(), 1U) << c.reason;
    EXPECT_NE(log.messages[0].find(c.reason), std::string::npos) << log.messages[0];
    EXPECT_NE(log.messages[0].find("Wall 1 (changed)"), std::string::npos) << log.messages[0];
    for (int i = 1; i <= 12; ++i) EXPECT_EQ(float{wall->BTrans(i)} + float{wall->DTrans(i)}, 0.0F);
    EXPECT_EQ(wall->CTrans, 0.0F);
    EXPECT_EQ(test::bytes_of(project.WallFilename()), file);
    EXPECT_EQ(rows("WallIndex"), table);
    EXPECT_FALSE(wall->CalcTransferCoefficients());
  }
  wall->Load(1);
  auto code = CA_ReturnCodes::CA_ERR_TFCG;
  wall->Save(code);
  EXPECT_EQ(code, CA_ReturnCodes::CA_ERR_NOERR);
}

TEST_F(ConstructionTest, TheRecordFileMakesTheCategory) {
  auto wall = project.NewWall();
  auto roof = project.NewRoof();
  EXPECT_EQ(wall->Category(), CA_Category::CA_CAT_Wall);
  EXPECT_EQ(roof->Category(), CA_Category::CA_CAT_Roof);
  for (const auto& each : {wall, roof}) {
    set(each->layer(2), "x", 1, 1, 1, 1);
    each->Save();
  }
  EXPECT_EQ(wall->Name.trimmed(), "Wall");
  EXPECT_EQ(roof->Name.trimmed(), "Roof");
  EXPECT_EQ(count("WallIndex") * 10 + count("RoofIndex"), 11);
  roof->SetCategory(CA_Category::CA_CAT_Wall);
  EXPECT_EQ(test::error_number([&] { roof->Save(); }), 5);
  let_property(*roof, "Category", int16_t{1});
  roof->Save();
  CA_ConstructionAssly other;
  other.FileName = "elsewhere.dat";
  other.SetCategory(CA_Category::CA_CAT_Roof);
  EXPECT_EQ(other.kind().index_table, "RoofIndex");
  roof->Load(7);
  EXPECT_EQ(log.messages, std::vector<std::string>{"Cannot find assembly record in DB for index: 7"});
}

TEST_F(ConstructionTest, ASaveWhoseRowIsGoneTakesANewIndex) {
  auto wall = brick_wall();
  wall->Save();
  brick_wall()->Save();
  auto other = project.NewWall();
  other->Delete(1);
  brick_wall()->Save();
  wall->Index = 9;
  wall->Save();
  EXPECT_EQ(wall->Index, 3);
}

TEST_F(ConstructionTest, SumsTakeEverySlot) {
  auto wall = brick_wall();
  wall->layer(5).ThermalResistance = 2.0F;  // not used
  wall->layer(5).Weight = 1.0F;
  wall->layer(2).derive();
  wall->sum_layers();
  EXPECT_FLOAT_EQ(wall->layer(2).ThermalResistance, 1.0F);
  EXPECT_FLOAT_EQ(wall->OverallUValue, 1.0F / 3);
  EXPECT_FLOAT_EQ(wall->OverallWeight, 61.0F);
  wall->OverallUValue = 0.125F;
  wall->Save();
  EXPECT_EQ(wall->OverallUValue, 0.125F) << "the client's";
}

TEST_F(ConstructionTest, WallsAndRoofsReachWhatUsesThem) {
  const std::string systems = "System_Space_Links (4, 9)";
  const std::string plants = systems + "; Plant_System_Links (5, 4)";
  auto wall = brick_wall();
  wall->Save();
  EXPECT_EQ(marks(*wall, "Space_Wall_Links (9, 1); " + plants + "; Building_Plant_Links (6, 5)"), "SPB SPB");
  EXPECT_EQ(marks(*wall, "Space_Wall_Links (9, 1); " + systems + "; Building_System_Links (6, 4)"), "SB SB");
  EXPECT_EQ(marks(*wall, "Space_Roof_Links (9, 1); " + plants), " ");
  auto roof = project.NewRoof();
  set(roof->layer(2), "deck", 1, 1, 1, 1);
  roof->Save();
  EXPECT_EQ(marks(*roof, "Space_Roof_Links (9, 1); " + plants), "SP SP");
  EXPECT_EQ(marks(*roof, "Space_Wall_Links (9, 1); " + plants), " ");
}

TEST_F(ConstructionTest, UserInterfacesGetTheirTurn) {
  int turns = 0;
  host().yield = [&] { ++turns; };
  auto wall = brick_wall();
  wall->CalcTransferCoefficients();
  host().yield = [] {};
  EXPECT_EQ(turns, 10 + 1 + 1) << "before each slot, once more, and for the one used layer";
}

}  // namespace
}  // namespace tarn
