#include "tarn/utility_rate.h"

#include <cstring>

#include "project/defaults.h"
#include "support/temp_project.h"
#include "tarn/building.h"
#include "tarn/reflect/by_name.h"
#include "tarn/schedule.h"
#include "tarn/tarn.h"

namespace tarn {
namespace {

constexpr const char* kUndefined =
    "Property assignment or method execution was not successful because the rate type for this object is still "
    "'Undefined'.";
constexpr const char* kClosed = "Property assignment was not successful because this property is now read-only.";
constexpr const char* kNoStyle =
    "Property assignment was not successful because the Rate Style you specified is not valid.";

/// "3001 URT_UtilityRate.Name: text"; empty where nothing is thrown.
std::string thrown(const std::function<void()>& action) {
  try {
    action();
    return "";
  } catch (const Error& error) {
    return std::to_string(error.number()) + " " + error.source() + ": " + error.what();
  }
}

std::string bytes_of(StoredEntity& entity) {
  std::string all;
  for (const auto& block : entity.file().blocks())
    all.append(reinterpret_cast<const char*>(block.data()), block.size());
  return all;
}

class UtilityRateTest : public test::ProjectTest {
 protected:
  Ptr<URT_UtilityRate> new_rate(bool fuel) { return fuel ? project.NewFuelRate() : project.NewElectricRate(); }
  Ptr<URT_UtilityRate> loaded(bool fuel, int16_t index) {
    auto rate = new_rate(fuel);
    rate->Load(index);
    return rate;
  }
  Ptr<URT_UtilityRate> untyped() {
    auto rate = std::make_shared<URT_UtilityRate>();
    rate->FileName = project.ElecRateFilename();
    rate->SetDBHandle(database);
    return rate;
  }
  /// Every way to every member, by its label; the bytes of a field in place "as a block".
  using Uses = std::vector<std::pair<std::string, std::function<void()>>>;
  static Uses uses_of_members(URT_UtilityRate& rate) {
    Uses uses;
    for (const Member& m : rate.info().members) {
      if (m.kind == MemberKind::Event) continue;  // listening is wiring
      if (m.kind == MemberKind::Method) {
        uses.emplace_back(m.call_label(), [&rate, &m] {
          std::vector<Value> arguments;
          for (const Parameter& p : m.parameters()) {
            arguments.emplace_back();
            if (!p.optional) arguments.back() = int32_t{1};
          }
          Value result;
          call_method(rate, m, arguments, result);
        });
        continue;
      }
      for (const bool inside : {true, false}) {
        if (!inside && !m.indexed()) continue;
        std::vector<int> at;
        for (const Bounds& b : m.bounds) at.push_back(inside ? b.last : b.last + 1);
        uses.emplace_back(m.get_label(), [&rate, &m, at] {
          Value value;
          get_property(rate, m, at, value);
        });
        if (m.read_only) continue;
        uses.emplace_back(m.let_label(), [&rate, &m, at] { let_property(rate, m, at, empty_value(m.type)); });
      }
      if (m.in_place()) uses.emplace_back(std::string(m.name) + " as a block", [&rate, &m] { m.place(rate); });
    }
    return uses;
  }
};

TEST_F(UtilityRateTest, NothingButTheWiringWorksBeforeTheTypeIsKnown) {
  write_default_records(project);
  project.NewElectricRate()->Save();
  auto rate = untyped();
  const std::string before = bytes_of(*rate), table = rows("ElectricRateIndex"),
                    file = test::bytes_of(project.ElecRateFilename());
  const std::string unguarded = " m_bCloning RateType FileName SetDBHandle GetDBHandle CreateDefault ";
  size_t refused = 0;
  for (const auto& [use, action] : uses_of_members(*rate)) {
    if (unguarded.find(" " + use.substr(0, use.find_first_of(" (")) + " ") != std::string::npos) continue;
    const std::string said = thrown(action);
    EXPECT_EQ(said.substr(0, 5), "3001 ") << use;
    EXPECT_EQ(said.substr(said.find(": ") + 2), kUndefined) << use;
    const bool by_name = !use.ends_with(" as a block");
    EXPECT_EQ(said.substr(5, said.find(':') - 5), by_name ? "URT_UtilityRate." + use : "");
    ++refused;
  }
  EXPECT_EQ(refused, 19 * 2 + 31 * 4 + 18 + 31 + 9U);
  EXPECT_TRUE(bytes_of(*rate) == before && rows("ElectricRateIndex") == table);
  EXPECT_EQ(test::bytes_of(project.ElecRateFilename()), file);
  EXPECT_EQ(static_cast<StoredEntity&>(*rate).Index(), 0);
  EXPECT_EQ(std::get<int16_t>(get_property(*rate, "RateType")), -1);
  EXPECT_EQ(thrown([&] { rate->SaveDefault(); }), std::string("3001 : ") + kUndefined);
  EXPECT_EQ(thrown([&] { (*rate)->Season(0) = 1; }), std::string("3001 : ") + kUndefined) << "before the bounds";

  rate->SetRateType(URT_RateTypes::TD_ELECTRIC);
  for (const auto& [use, action] : uses_of_members(*rate)) {
    rate->FileName = project.ElecRateFilename();
    const std::string said = thrown(action);
    EXPECT_NE(said.substr(0, 5), "3001 ") << use;
    const bool may_fail = use == "RateType [PropertyLet]" || use == "RateStyle [PropertyLet]" || use == "SetDBHandle()";
    EXPECT_TRUE(said.empty() || said.starts_with("9 ") || may_fail) << use << ": " << said;
  }
}

TEST(UtilityRateHandles, TheGuardStandsBeforeEveryReadInPlace) {
  for (int made = 0; made < 2; ++made) {  // the second one when the fields of the class are known
    tarn_object* rate = nullptr;
    ASSERT_EQ(tarn_create("URT_UtilityRate", &rate), TARN_OK);
    tarn_value value{};
    int16_t seasons[12]{};
    const int32_t season = tarn_member_number(rate, "Season");
    const std::pair<const char*, tarn_status> calls[]{
        {"FlatRate", tarn_get_by_name(rate, "FlatRate", nullptr, 0, &value)},
        {"TODSchedule", tarn_get(rate, tarn_member_number(rate, "TODSchedule"), nullptr, 0, &value)},
        {"Index", tarn_get_by_name(rate, "Index", nullptr, 0, &value)},
        {"Season", tarn_get_block(rate, season, seasons, sizeof seasons)},
        {"Season", tarn_let_block(rate, season, seasons, sizeof seasons)}};
    for (const auto& [name, status] : calls) EXPECT_EQ(status, TARN_ERROR) << name;
    const char *source = nullptr, *description = nullptr;
    EXPECT_EQ(tarn_last_error(rate, &source, &description), 3001);
    EXPECT_EQ(source + std::string(": ") + description,
              std::string("URT_UtilityRate.Season [PropertyLet]: ") + kUndefined);
    value.type = TARN_INT16;
    value.as.i2 = 1;
    EXPECT_EQ(tarn_let_by_name(rate, "RateType", nullptr, 0, &value), TARN_OK);
    EXPECT_EQ(tarn_get_by_name(rate, "FlatRate", nullptr, 0, &value), TARN_OK);
    EXPECT_EQ(value.type, TARN_REAL64);
    EXPECT_EQ(tarn_get_block(rate, season, seasons, sizeof seasons), TARN_OK);
    tarn_release(rate);
  }
}

TEST_F(UtilityRateTest, TheTypeIsAssignedOnce) {
  auto rate = untyped();
  EXPECT_EQ(thrown([&] { rate->SetRateType(static_cast<URT_RateTypes>(2)); }).substr(0, 2), "5 ");
  rate->SetRateType(URT_RateTypes::TD_UNDEFINED);
  let_property(*rate, "RateType", int16_t{0});
  for (const int type : {1, 0, -1, 7}) {
    EXPECT_EQ(thrown([&] { let_property(*rate, "RateType", type); }),
              std::string("3002 URT_UtilityRate.RateType [PropertyLet]: ") + kClosed)
        << type;
    EXPECT_EQ(rate->RateType(), URT_RateTypes::TD_ELECTRIC);
  }
  EXPECT_EQ(rate->Clone()->RateType(), URT_RateTypes::TD_ELECTRIC);
  EXPECT_EQ(test::error_number([&] { rate->CopyInstance()->SetRateType(URT_RateTypes::TD_FUEL); }), 3002);
  rate->m_bCloning = true;
  rate->SetRateType(URT_RateTypes::TD_FUEL);
  EXPECT_EQ(rate->RateType(), URT_RateTypes::TD_FUEL);
  EXPECT_EQ(bytes_of(*rate).substr(37, 2), std::string("\1\0", 2));
}

TEST_F(UtilityRateTest, StylesAndSubscriptsHaveTheirBounds) {
  auto rate = new_rate(false);
  rate->SetRateStyle(URT_Style::RS_COMPLEX);
  for (const int style : {0, 3, -1}) {
    EXPECT_EQ(thrown([&] { let_property(*rate, "RateStyle", style); }),
              std::string("3003 URT_UtilityRate.RateStyle [PropertyLet]: ") + kNoStyle);
    EXPECT_EQ(rate->RateStyle(), URT_Style::RS_COMPLEX);
  }
  let_property(*rate, "RateStyle", int16_t{1});
  EXPECT_EQ(rate->RateStyle(), URT_Style::RS_SIMPLE);
  for (const auto& [name, last] :
       {std::pair("ECRate", 14), {"DCDemandID", 14}, {"RCUsed", 2}, {"PFMMult", 2}, {"Season", 12}}) {
    for (const int at : {0, last + 1}) {
      EXPECT_EQ(test::error_number([&, n = name] { get_property(*rate, n, std::array{at}); }), 9) << name << at;
      EXPECT_EQ(test::error_number([&, n = name] { let_property(*rate, n, int16_t{1}, std::array{at}); }), 9)
          << name << at;
    }
    EXPECT_EQ(test::error_number([&, n = name, l = last] { let_property(*rate, n, int16_t{1}, std::array{l}); }), 0)
        << name;
  }
}

TEST_F(UtilityRateTest, RecordsLieAsTheFileHasThem) {
  auto rate = new_rate(false);
  EXPECT_EQ(
      test::layout(rate->info()),
      "Name@0+30 CurrSymbol@30+5 RateStyle@35+2 RateType@37+2 EnergyUnits@39+7 EnergyConv@46+8 FlatRate@54+8 "
      "DemandUnits@62+2 FixedCharge@64+4 MinCharge@68+4 TaxRate@72+4 SeasonalSched@76+2 Season@78+24 "
      "TimeOfDaySched@102+2 TODSchedule@104+2 CalcEmissions@106+2 CO2Factor@108+4 SO2Factor@112+4 NOxFactor@116+4 "
      "ECType@120+2 ECDemandID@122+2 ECStepUsed@124+28 ECStepType@152+28 ECSeason@180+28 ECPeriod@208+28 "
      "ECBlkSize@236+112 ECBlkUnits@348+28 ECRate@376+112 DCStepUsed@488+28 DCSeason@516+28 DCPeriod@544+28 "
      "DCBlkSize@572+112 DCRate@684+112 DCDemandID@796+28 RCUsed@824+4 RCMult@828+4 RCPeakingFirst@832+4 "
      "RCPeakingLast@836+4 RCAppliesFirst@840+4 RCAppliesLast@844+4 TWCUsed@848+4 TWCMult@852+4 TWCWindow@856+4 "
      "MDCUsed@860+4 MDCMinimum@864+8 PMCUsed@872+4 PMCMult@876+4 PMCSeason@880+4 PMCPeriod@884+4 PFMUsed@888+4 "
      "PFMMult@892+8 ");
  for (const bool fuel : {false, true}) {
    for (int i = 1; i <= 2; ++i) new_rate(fuel)->Save();
    rate = new_rate(fuel);
    (*rate)->CurrSymbol = "dollars";
    (*rate)->FlatRate = 0.12;
    (*rate)->ECStepUsed(14) = true;
    (*rate)->PFMMult(2) = 0.5F;
    rate->Save();
    const std::string name = fuel ? "FuelRate  3" : "ElectricRate  3";
    const std::string file = test::bytes_of(fuel ? project.FuelRateFilename() : project.ElecRateFilename());
    ASSERT_EQ(file.size(), 3600U);
    EXPECT_EQ(file.substr(2700, 35), name + std::string(30 - name.size(), ' ') + "dolla");
    EXPECT_EQ(file.substr(2737, 2), std::string(1, fuel ? '\1' : '\0') + '\0');
    EXPECT_EQ(file.substr(2754, 8), "\xB8\x1E\x85\xEB\x51\xB8\xBE\x3F");
    EXPECT_EQ(file.substr(2700 + 150, 3), std::string("\xFF\xFF\0", 3));
    EXPECT_EQ(file.substr(3596), std::string("\0\0\0\x3F", 4));
    EXPECT_EQ(count(std::string(fuel ? "FuelRateIndex" : "ElectricRateIndex") + " WHERE nIndex = 3 AND szName = '" +
                    name + "'"),
              1);
  }
}

TEST_F(UtilityRateTest, RecordsThatAreNotWhatTheyShouldBe) {
  auto rate = new_rate(true);
  (*rate)->FlatRate = 3;
  rate->Save();
  for (const int32_t number : {7, 0, -1, 65537}) {
    const std::string before = bytes_of(*rate);
    EXPECT_EQ(thrown([&] { rate->Load(number); }).substr(7),
              "Invalid utility rate ID number: " + std::to_string(number));
    EXPECT_TRUE(bytes_of(*rate) == before && rate->Index() == 1) << number;
  }
  std::string file = test::bytes_of(project.FuelRateFilename());
  file[900 + 37] = 0;
  test::write_bytes(project.FuelRateFilename(), file);
  log.messages.clear();
  auto found = loaded(true, 1);
  ASSERT_EQ(log.messages.size(), 1U);
  EXPECT_EQ(log.messages[0], project.FuelRateFilename() + ", record 1: its rate type is 0; it is read as FuelRate.");
  EXPECT_EQ(std::get<int16_t>(get_property(*found, "RateType")), 1);
  found->Save();
  EXPECT_EQ(test::bytes_of(project.FuelRateFilename())[900 + 37], 1);
  EXPECT_EQ(loaded(true, 1)->Clone(1)->RateType(), URT_RateTypes::TD_FUEL);

  found->info().find("RateType").let_stored(*found, {}, int16_t{0});  // as an exchange may bring it
  file = test::bytes_of(project.FuelRateFilename());
  EXPECT_EQ(thrown([&] { found->Save(); }),
            "5 : RateType 0 is not that of the FuelRate that it is given to, 1, and cannot change.");
  EXPECT_EQ(test::error_number([&] { found->SaveDefault(); }), 5);
  EXPECT_EQ(test::bytes_of(project.FuelRateFilename()), file);
}

TEST_F(UtilityRateTest, DefaultsTellWhatARateIs) {
  write_default_records(project);
  auto rate = untyped();
  rate->CreateDefault();
  EXPECT_EQ(rate->RateType(), URT_RateTypes::TD_ELECTRIC);
  EXPECT_EQ((*rate)->EnergyUnits.trimmed() + (*rate)->Name.trimmed(), "kWhDefault Electric Rate");
  rate->Save();
  rate->FileName = project.FuelRateFilename();
  rate->CreateDefault();
  EXPECT_EQ(rate->RateType(), URT_RateTypes::TD_FUEL);
  EXPECT_EQ(rate->Index(), 0);
  EXPECT_EQ(test::error_number([&] { rate->SetRateType(URT_RateTypes::TD_FUEL); }), 3002);

  for (const size_t size : {0, 899}) {
    test::write_bytes(project.ElecRateFilename(), std::string(size, '\1'));
    EXPECT_EQ(test::error_number([&] { untyped()->CreateDefault(); }), test::number(ErrorNumber::UnknownFormat))
        << size;
    rate->FileName = project.ElecRateFilename();
    rate->CreateDefault();
    EXPECT_EQ(rate->RateType(), URT_RateTypes::TD_FUEL) << size;
    EXPECT_EQ(bytes_of(*rate).substr(37, 2), std::string("\1\0", 2)) << size;
  }
  test::write_bytes(project.ElecRateFilename(), std::string(900, '\7'));
  auto open = untyped();
  EXPECT_EQ(test::error_number([&] { open->CreateDefault(); }), test::number(ErrorNumber::UnknownFormat)) << "no type";
  EXPECT_EQ(open->RateType(), URT_RateTypes::TD_UNDEFINED);
  open->FileName.clear();
  EXPECT_EQ(thrown([&] { open->CreateDefault(); }), "53 : The URT_UtilityRate has no record file; set its FileName.");
}

TEST_F(UtilityRateTest, TheTimeOfDayScheduleIsLinkedWhileItIsInUse) {
  for (int i = 1; i <= 2; ++i) project.NewSchedule()->Save();
  for (const bool fuel : {false, true}) {
    const std::string table = fuel ? "FuelRate_Schedule_Links" : "ElectricRate_Schedule_Links",
                      key = fuel ? "FuelRate_ID" : "ElectricRate_ID";
    const auto linked = [&](int schedule) {
      return count(table + " WHERE " + key + " = 1 AND Schedule_ID = " + std::to_string(schedule));
    };
    new_rate(fuel)->Save();
    auto rate = loaded(fuel, 1);
    const struct {
      bool used;
      int16_t schedule;
      int links;
    } cases[]{{false, 2, 0}, {true, 1, 1}, {true, 2, 1}, {false, 2, 0}, {true, 0, 0}, {true, -1, 0}, {true, 2, 1}};
    link(table + " (1, 9); " + table + " (2, 1)");
    for (const auto& c : cases) {
      (*rate)->TimeOfDaySched = c.used;
      (*rate)->TODSchedule = c.schedule;
      rate->Save();
      EXPECT_EQ(count(table), 1 + c.links) << c.schedule;
      EXPECT_EQ(linked(c.schedule), c.links) << c.schedule;
      EXPECT_EQ((*loaded(fuel, 1))->TODSchedule, c.schedule);
    }
    database->Execute("DELETE FROM " + table + " WHERE " + key + " = 1");
    EXPECT_EQ((*loaded(fuel, 1))->TODSchedule, 0) << "deleted elsewhere";
    (*rate)->TimeOfDaySched = false;
    rate->Save();
    EXPECT_EQ((*loaded(fuel, 1))->TODSchedule, 2) << "of no use, and not looked up";
  }
}

TEST_F(UtilityRateTest, ASaveMarksTheBuildingsThatPayByTheRate) {
  auto electric = new_rate(false), fuel = new_rate(true);
  electric->Save();
  fuel->Save();
  const struct {
    const char *links, *electric, *fuel;
  } cases[]{
      {"Building_ElectricRate_Links (6, 1)", "B B", " "},
      {"Building_FuelRate_Links (6, 1)", " ", "B B"},
      {"Building_ElectricRate_Links (6, 2); Building_FuelRate_Links (6, 2)", " ", " "},
      {"Building_ElectricRate_Links (6, 1); Building_System_Links (6, 4); Building_Plant_Links (6, 5)", "B B", " "}};
  for (const auto& c : cases) {
    EXPECT_EQ(marks(*electric, c.links), c.electric) << c.links;
    EXPECT_EQ(marks(*fuel, c.links), c.fuel) << c.links;
  }
  auto schedule = project.NewSchedule();
  schedule->Save();
  (*fuel)->TimeOfDaySched = true;
  (*fuel)->TODSchedule = 1;
  fuel->Save();
  EXPECT_EQ(marks(*schedule, "Building_FuelRate_Links (6, 1)"), "B B");
  EXPECT_EQ(marks(*schedule, "Building_ElectricRate_Links (6, 1); Building_FuelRate_Links (6, 2)"), " ");
}

TEST_F(UtilityRateTest, ElectricAndFuelRatesStayApart) {
  project.NewSchedule()->Save();
  for (const bool fuel : {false, true}) {
    for (int i = 1; i <= 2; ++i) {
      auto rate = new_rate(fuel);
      (*rate)->Name = fuel ? "Gas" : "Power";
      (*rate)->TimeOfDaySched = true;
      (*rate)->TODSchedule = 1;
      rate->Save();
    }
  }
  link(
      "Building_ElectricRate_Links (6, 1); Building_ElectricRate_Links (6, 2); Building_FuelRate_Links (6, 1); "
      "Building_FuelRate_Links (6, 2)");
  auto fuel = loaded(true, 1), electric = loaded(false, 1);
  EXPECT_TRUE(fuel->IsNameUnique("Power"));
  EXPECT_FALSE(electric->IsNameUnique());
  EXPECT_EQ((*fuel)->Name.trimmed() + (*electric)->Name.trimmed(), "GasPower");
  const std::string file = test::bytes_of(project.FuelRateFilename());
  fuel->Delete(2);
  EXPECT_EQ(fuel->Index(), 0);
  EXPECT_EQ(fuel->GetFreeIndex(), 2);
  EXPECT_EQ(electric->GetFreeIndex(), 3);
  for (const char* table : {"FuelRateIndex WHERE nIndex", "FuelRate_Schedule_Links WHERE FuelRate_ID",
                            "Building_FuelRate_Links WHERE FuelRate_ID"}) {
    EXPECT_EQ(count(table + std::string(" = 2")), 0) << table;
    EXPECT_EQ(count(table + std::string(" = 1")), 1) << table;
  }
  EXPECT_EQ(count("ElectricRateIndex") + count("ElectricRate_Schedule_Links") + count("Building_ElectricRate_Links"),
            6);
  EXPECT_EQ(test::bytes_of(project.FuelRateFilename()), file) << "the record stays";
}

TEST_F(UtilityRateTest, WithoutDefaultRecordsARateStaysOfItsKind) {
  for (const int index : {1, 2}) {
    auto rate = project.NewFuelRate();
    rate->CreateDefault();
    EXPECT_EQ(rate->RateType(), URT_RateTypes::TD_FUEL);
    rate->Save();
    EXPECT_EQ(rate->Index(), index);
  }
  EXPECT_EQ(count("FuelRateIndex") * 10 + count("ElectricRateIndex"), 20);
}

}  // namespace
}  // namespace tarn
