#include "plant/chiller_case.h"
#include "plant/chiller_map.h"
#include "tarn/chiller_import.h"
#include "tarn/reflect/by_name.h"

namespace tarn {
namespace {

using test::bytes, test::kRecord, test::kOwn, test::kMode;
using ChillerTest = test::ChillerTest;

TEST(ChillerRecords, LieAsTheirFileHasThem) {
  EXPECT_EQ(test::layout(CHL_Chiller().info()),
            "SourceFluid@30+2 Name@0+30 FunctionType@32+2 ChillerType@34+2 Notes@36+64 DesInputSource@100+2 "
            "PerfMapSource@102+2 AutoSize@104+2 FuelType@106+2 EngineEff@108+4 AvgOperatingLoss@112+4 "
            "UnitElectric@116+4 SteamHeatContent@120+4 MinECWT@124+4 MinUnloading@128+4 HotGasBypass@132+2 "
            "DXFreeCooling@134+2 DXFCUOM@136+2 HeatRecoveryMethod@138+2 MaxHeatRecovery@140+4 IPLV@144+4 "
            "DXFCDeltaT@148+40 DXFCCapacity@188+40 DXFCPower@228+40 ");
  EXPECT_EQ(test::layout(CHL_OperatingMode().info()),
            "FLLeavingWaterTemp@0+4 FLEnteringTemp@4+4 FLCapacity@8+4 FLPower@12+4 FLPowerUnits@16+2 EvapFlow@18+4 "
            "EvapFlowUnits@22+2 CondFlow@24+4 CondFlowUnits@28+2 NumRows@30+2 NumColumns@32+2 ColumnDataType@34+2 "
            "MapRowHeading@36+40 MapColumnHeading@76+40 MapCapacity@116+800 MapPower@916+800 TempPwrCoeffA@1716+4 "
            "TempPwrCoeffB@1720+4 TempCapCoeffA@1724+4 TempCapCoeffB@1728+4 ");
}

TEST_F(ChillerTest, ItsFileHoldsTheThreeModesLastAndItsRowShowsTwo) {
  chiller->HeatRecoveryMode.MapPower(2, 3) = 0.5F;
  chiller->Notes = std::string(70, 'n');
  chiller->Name = std::string(20, 'a') + std::string(16, 'b');
  chiller->FunctionType = CHL_FunctionTypes::FT_Reversible;
  float value = 1;
  for (CHL_OperatingMode* mode : {&chiller->CoolingMode, &chiller->HeatingMode}) {
    mode->EvapFlow = ++value;
    mode->CondFlow = ++value;
    mode->EvapFlowUnits = COM_FlowUOM{static_cast<int16_t>(value - 3)};
    mode->CondFlowUnits = COM_FlowUOM{static_cast<int16_t>(value - 2)};
  }
  chiller->Save();
  const std::string file = test::bytes_of(project.ChillerFilename());
  EXPECT_TRUE(file == std::string(kRecord, '\0') + bytes(*chiller));
  EXPECT_EQ(file.substr(kRecord, 32), std::string(20, 'a') + std::string(10, 'b') + std::string("\2\0", 2));
  EXPECT_EQ(file.substr(kRecord + 36, 66), std::string(64, 'n') + std::string("\1\0", 2));
  EXPECT_EQ(file.substr(kRecord + kOwn + kMode + 916 + 4 * (1 + 10 * 2), 4), std::string("\0\0\0\x3F", 4));
  std::ostringstream row;
  auto all = database->OpenRecordset("SELECT * FROM ChillerIndex");
  for (const auto& column : all.columns())
    row << column << "=" << all.Fields(column).text() << all.Fields(column).real() << " ";
  EXPECT_EQ(row.str(),
            "nIndex=1 szName=aaaaaaaaaaaaaaaaaaaabbbbbbbbbb0 nChillerType=3 nFunctionType=20 nFuelType=3 "
            "bAutoSizeCapacity=-1 fFLCapacityClg=200 fFLCapacityHtg=22 fEvapFlowClg=2 nEvapFlowUnitsClg=0 "
            "fEvapFlowHtg=4 nEvapFlowUnitsHtg=2 fCondFlowClg=3 nCondFlowUnitsClg=1 fCondFlowHtg=5 "
            "nCondFlowUnitsHTg=3 ");
}

TEST_F(ChillerTest, BadCallsSayWhyAndChangeNothing) {
  CHL_DXFCUOM unit{};
  std::vector<double> delta{1}, power{2}, capacity{3};
  const auto create = [&](int16_t type, const std::string& file) { chiller->CreateDefaultByType(type, file); };
  const auto curve = [&](int16_t option) {
    chiller->GetDXFCDefaults(CHL_DXFCOptions{option}, unit, delta, power, capacity);
  };
  const std::string none = folder / "none.dat", part = folder / "part.dat";
  test::write_bytes(part, std::string(2 * kRecord - 1, '\0'));
  const std::string types = " has no chiller type ";
  refused([&] { create(1, ""); }, "Chiller defaults file was not specified.");
  refused([&] { create(1, none); }, "Chiller defaults file was not found." + none);
  refused([&] { create(0, shipped); }, shipped + types + "0; its types are 1 to 12.");
  refused([&] { create(13, shipped); }, shipped + types + "13; its types are 1 to 12.");
  refused([&] { create(2, part); }, part + types + "2; its types are 1 to 1.");
  refused([&] { curve(0); }, "Invalid DXFC option");
  refused([&] { curve(3); }, "Invalid DXFC option");
  refused([&] { chiller->Load(7); }, "Cannot find chiller record in database for record #7");
  refused([&] { import_chiller(*chiller, none); }, "Cannot read " + none + ".");
  EXPECT_EQ(static_cast<int>(unit) + delta[0] + power[0] + capacity[0], 6);
  EXPECT_FALSE(std::filesystem::exists(none));
}

// The integrated part-load values of the curves in chiller_types.json, computed from them without the map.
constexpr double kPartLoadCop[]{8.979, 6.546, 5.797, 6.239, 6.325, 0.752, 1.098, 1.085, 2.213, 4.287, 4.053, 4.479};

TEST_F(ChillerTest, EveryShippedTypeMeetsItsRatingAndFallsOffFromThere) {
  const std::string file = test::bytes_of(shipped);
  ASSERT_EQ(file.size(), 12 * kRecord);
  for (int16_t type = 1; type <= 12; ++type) {
    SCOPED_TRACE(type);
    chiller->CreateDefaultByType(type, shipped);
    EXPECT_TRUE(bytes(*chiller) == file.substr(kRecord * (type - 1), kRecord));
    EXPECT_EQ(chiller->ChillerType.raw, type);
    EXPECT_EQ(chiller->SourceFluid.raw, type < 10 ? 2 : 1);
    const CHL_OperatingMode& mode = chiller->CoolingMode;
    const bool electric = chiller->FuelType.raw == 3;
    EXPECT_TRUE(capacity_unit(mode) == "tons" && power_unit(mode) == (electric ? "kW" : "MBH") &&
                map_power_unit(mode) == power_unit(mode));
    EXPECT_EQ(iplv_unit(*chiller), electric ? "kW/ton" : "MBH/ton");
    EXPECT_NEAR((electric ? 3.516853 : 12) / chiller->IPLV, kPartLoadCop[type - 1], 0.01 * kPartLoadCop[type - 1]);
    EXPECT_EQ(mode.FLEnteringTemp, type < 10 ? 85.0F : 95.0F);
    const int last = mode.NumColumns();
    EXPECT_EQ(mode.MapColumnHeading(last), 100);
    int rated = 0;
    for (int row = 1; row <= mode.NumRows(); ++row) {
      if (mode.MapRowHeading(row) == mode.FLEnteringTemp) {
        ++rated;
        EXPECT_NEAR(mode.MapCapacity(row, last), mode.FLCapacity, 1e-5 * mode.FLCapacity);
        EXPECT_NEAR(mode.MapPower(row, last), mode.FLPower, 1e-5 * mode.FLPower);
      }
      for (int column = 2; column <= last; ++column)
        EXPECT_GT(mode.MapPower(row, column), mode.MapPower(row, column - 1)) << row << " " << column;
      if (row > 1 && mode.MapRowHeading(row - 1) >= 75) {
        EXPECT_LT(mode.MapCapacity(row, last), mode.MapCapacity(row - 1, last)) << row;
      }
    }
    EXPECT_EQ(rated, 1);
  }
  for (const auto option : {CHL_DXFCOptions::DXFC_NonIntegrated, CHL_DXFCOptions::DXFC_Integrated}) {
    CHL_DXFCUOM unit{};
    std::vector<double> delta(3), power, capacity;
    chiller->GetDXFCDefaults(option, unit, delta, power, capacity);
    EXPECT_EQ(unit, CHL_DXFCUOM::DXFC_UOM_Relative);
    EXPECT_TRUE(delta.size() == 10 && power.size() == 10 && capacity.size() == 10 && capacity[9] == 1);
    for (const auto* list : {&delta, &capacity}) EXPECT_TRUE(std::is_sorted(list->begin(), list->end()));
  }
}

TEST_F(ChillerTest, CopiesKeepTheModes) {
  auto other = project.NewChiller();
  const std::string modes = bytes(*chiller).substr(kOwn);
  for (const auto& copy : {chiller->Clone(), other->Clone(1), chiller->CopyInstance()})
    EXPECT_TRUE(bytes(*copy).substr(kOwn) == modes);
  EXPECT_TRUE(bytes(*chiller->CopyInstance()) == bytes(*chiller));
  EXPECT_EQ(chiller->Clone()->Index(), 0);
  other->Load(1);
  EXPECT_TRUE(bytes(*other) == bytes(*chiller));
  EXPECT_EQ(std::get<std::string>(get_property(*chiller, "Name")), "Packaged screw, water-cooled");
}

}  // namespace
}  // namespace tarn
