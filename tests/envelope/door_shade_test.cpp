#include "support/temp_project.h"
#include "tarn/door.h"
#include "tarn/preferences.h"
#include "tarn/reflect/by_name.h"
#include "tarn/shade.h"

namespace tarn {
namespace {

std::string by_reference(const ClassInfo& info) {
  std::string text;
  for (const Member& m : info.members) {
    if (m.by_reference || (!m.parameters().empty() && m.parameters()[0].by_reference))
      text += std::string(m.name) + " ";
  }
  return text;
}

TEST(Records, LieAsTheirFilesHaveThem) {
  EXPECT_EQ(test::layout(DOR_Door().info()),
            "GlassArea@263+4 GlassShadeCo@271+4 GlassShaded@275+2 GlassUValue@267+4 GrossArea@255+4 AreaSpec@277+2 "
            "Height@279+4 "
            "Width@283+4 Name@0+255 SolidUValue@259+4 ");
  EXPECT_EQ(test::layout(SHD_Shade().info()),
            "Name@0+30 RevealDepth@30+4 OvhgExt@34+4 OvhgHeight@38+4 OvhgRHExt@42+4 OvhgLHExt@46+4 RHFinSep@50+4 "
            "RHFinExt@54+4 "
            "RHFinHeight@58+4 LHFinSep@62+4 LHFinExt@66+4 LHFinHeight@70+4 ");
  EXPECT_EQ(test::layout(PRF_ProjectPrefs().info()),
            "VentStandardCode@0+2 EnergyStandardCode@2+2 LeedVersionCode@4+2 CurrencyUnits@6+5 ");
}

TEST(Records, SettersByReferenceAreThoseOfTheInterface) {
  EXPECT_EQ(by_reference(DOR_Door().info()),
            "Reset Delete GlassArea GlassShadeCo GlassShaded GlassUValue GrossArea SolidUValue OnUpdateDependencies ");
  EXPECT_EQ(
      by_reference(SHD_Shade().info()),
      "Reset Delete RevealDepth OvhgExt OvhgHeight OvhgRHExt OvhgLHExt RHFinSep RHFinExt RHFinHeight LHFinSep LHFinExt "
      "LHFinHeight OnUpdateDependencies ");
}

using EnvelopeTest = test::ProjectTest;

TEST_F(EnvelopeTest, DoorsAndShadesLiveAsWindowsDo) {
  auto door = project.NewDoor();
  door->GrossArea = 21.0F;
  door->Save();
  EXPECT_EQ(door->Name.trimmed(), "Door  1");
  EXPECT_EQ(test::bytes_of(project.DoorFilename()).size(), 2U * 287);
  EXPECT_EQ(database->OpenRecordset("SELECT * FROM DoorIndex").Fields("fArea").real(), 21.0);
  door->Load(7);
  auto shade = project.NewShade();
  shade->Save();
  shade = project.NewShade();
  shade->Name = std::string(40, 'n');
  shade->Save();
  EXPECT_EQ(test::bytes_of(project.ShadeFilename()).substr(148, 34), std::string(30, 'n') + std::string(4, '\0'));
  shade->Load(8);
  EXPECT_EQ(log.messages, (std::vector<std::string>{"Invalid door ID: 7", "Invalid shade ID number: 8"}));
}

TEST_F(EnvelopeTest, ADoorsDeleteTellsWhetherItRan) {
  auto door = project.NewDoor();
  door->Save();
  std::vector<Value> none;
  Value result;
  call_method(*door, door->info().find("Delete"), none, result);
  EXPECT_TRUE(std::get<bool>(result));
  door->SetDBHandle(nullptr);
  none.clear();
  call_method(*door, door->info().find("Delete"), none, result);
  EXPECT_FALSE(std::get<bool>(result));
  EXPECT_EQ(log.errors, std::vector<std::string>{"TarnDataHandler52|DOR_Door|Delete()"});
  EXPECT_THROW(let_property(*door, "Index", 3), Error);
}

TEST_F(EnvelopeTest, EachLinkTableReachesWhenItIsTheOnlyOne) {
  const auto marks = [&](StoredEntity& entity, const std::string& links) {
    Transaction undone;
    database->Execute("INSERT INTO AirSystemIndex (nIndex, bDesHasChanged) VALUES (4, 0)");
    database->Execute("INSERT INTO System_Space_Links VALUES (4, 9)");
    database->Execute("INSERT INTO " + links + " VALUES (9, 1)");
    entity.Save();
    const bool marked = count("AirSystemIndex WHERE bDesHasChanged = -1") == 1;
    entity.Delete();
    return marked && count(links) == 0;
  };
  auto door = project.NewDoor();
  EXPECT_TRUE(marks(*door, "Space_Door_Links"));
  auto shade = project.NewShade();
  EXPECT_TRUE(marks(*shade, "Space_Shade_Links"));
}

TEST_F(EnvelopeTest, PreferencesAreElevenBytesAndUnknownCodesBecomeZero) {
  auto preferences = project.NewProjectPrefs();
  EXPECT_EQ(preferences->CurrencyUnits.str(), "$    ");
  preferences->VentStandardCode = PRF_VentilationStandards{6};
  preferences->EnergyStandardCode = PRF_EnergyStandards{999};
  preferences->Save();
  EXPECT_EQ(test::bytes_of(preferences->FileName), std::string("\6\0\xE7\3\0\0$    ", 11));
  test::write_bytes(preferences->FileName, std::string("\7\0\5\0\xFF\xFF$    ", 11));
  preferences->Load();
  EXPECT_EQ(preferences->VentStandardCode.raw, 0);
  EXPECT_EQ(preferences->EnergyStandardCode.raw, 5);
  EXPECT_EQ(preferences->LeedVersionCode.raw, 0);
  ASSERT_EQ(log.messages.size(), 2U);
  EXPECT_NE(log.messages[0].find("holds VentStandardCode 7, which is not a known code"), std::string::npos);
}

TEST(Preferences, EveryCodeHasItsText) {
  PRF_ProjectPrefs p;
  const char* ventilation[]{
      "User-Defined",         "ASHRAE Std 62-2001",   "ASHRAE Std 62.1-2004", "ASHRAE Std 62.1-2007",
      "ASHRAE Std 62.1-2010", "ASHRAE Std 62.1-2013", "ASHRAE Std 62.1-2016", ""};
  const char* energy[]{
      "Not Defined",          "", "ASHRAE Std 90.1-2004", "ASHRAE Std 90.1-2007", "ASHRAE Std 90.1-2010",
      "ASHRAE Std 90.1-2013", ""};
  const char* leed[]{"Not Applicable", "LEED-NC 2.2", "LEED 2009", "LEED v4", ""};
  for (int16_t c = 0; c < static_cast<int16_t>(std::size(ventilation)); ++c) {
    EXPECT_EQ(p.VentilationStandardText(PRF_VentilationStandards{c}), ventilation[c]) << c;
  }
  for (int16_t c = 0; c < static_cast<int16_t>(std::size(energy)); ++c) {
    EXPECT_EQ(p.EnergyStandardText(PRF_EnergyStandards{c}), energy[c]) << c;
  }
  for (int16_t c = 0; c < static_cast<int16_t>(std::size(leed)); ++c)
    EXPECT_EQ(p.LeedVersionText(PRF_LEEDversions{c}), leed[c]) << c;
  EXPECT_EQ(p.EnergyStandardText(PRF_EnergyStandards{999}), "");
  EXPECT_EQ(labels<PRF_EnergyStandards>.back().name, "AHSRA3_STD_90_1_ANY");
}

TEST_F(EnvelopeTest, ReportOptionsSurviveToTheByte) {
  std::string bytes;
  for (int i = 0; i < 700; ++i) bytes += static_cast<char>(i * 7);
  test::write_bytes(project.ReportOptionsFilename(), bytes);
  auto options = project.NewReportOptions();
  options->Load();
  options->FileName = folder / "COPY.DAT";
  options->Save();
  EXPECT_EQ(test::bytes_of(options->FileName), bytes);
  std::filesystem::resize_file(options->FileName, 16'000'001);
  EXPECT_NE(test::what_of([&] { options->Load(); }).find("COPY.DAT holds 16000001 bytes, more than the 16000000"),
            std::string::npos);
  EXPECT_EQ(options->bytes.size(), bytes.size());
}

}  // namespace
}  // namespace tarn
