#include "platform/binary_file.h"
#include "support/temp_project.h"
#include "tarn/air_system_design.h"
#include "tarn/class_list.h"
#include "tarn/reflect/by_name.h"

namespace tarn::test {
namespace {

/// Every class whose objects read and write a block of their own.
std::vector<std::string_view> block_classes() {
  std::vector<std::string_view> names;
  for (const ClassEntry& entry : class_list()) {
    if (dynamic_cast<ResultBlock*>(entry.create().get())) names.push_back(entry.info->name);
  }
  return names;
}

Ptr<ResultBlock> made(std::string_view name) { return std::dynamic_pointer_cast<ResultBlock>(create(name)); }

/// Fills a block's memory with bytes of which no two close to each other are alike.
void fill(ResultBlock& block, int seed = 1) {
  ResultBlock::Spans spans;
  block.add_spans(spans);
  unsigned next = static_cast<unsigned>(seed);
  for (const auto& span : spans) {
    for (std::byte& byte : span) byte = static_cast<std::byte>((next = next * 1103515245 + 12345) >> 16);
  }
}

std::string bytes_in(ResultBlock& block) {
  ResultBlock::Spans spans;
  block.add_spans(spans);
  std::string all;
  for (const auto& span : spans) all.append(reinterpret_cast<const char*>(span.data()), span.size());
  return all;
}

float real_at(const std::string& bytes, size_t offset) {
  float value = 0;
  std::memcpy(&value, bytes.data() + offset, 4);
  return value;
}

TEST(ResultBlocksTest, TheFixedLayouts) {
  EXPECT_EQ(layout(class_info("ADL_DXXFileHeader")), "SystemName@0+32 ");
  EXPECT_EQ(layout(class_info("ADL_Weather")),
            "DB@0+1152 WB@1152+1152 WinterDB@2304+4 WinterWB@2308+4 RhoCpK@2312+4 RhoHfgK@2316+4 Altitude@2320+4 ");
  EXPECT_EQ(layout(class_info("ADL_HourlyAirData")),
            "CentCoolTot@0+4 CentCoolSens@4+4 CentHeat@8+4 PreCool@12+4 PreHeat@16+4 TermCool@20+4 TermHeat@24+4 "
            "ZoneHeat@28+4 AirFlow@32+4 ");

  ADL_Weather weather;
  ADL_HLAir air;
  for (int month = 1; month <= 12; ++month) {
    for (int hour = 0; hour <= 23; ++hour) {
      weather.DB(month, hour) = weather.WB(month, hour) = static_cast<float>(100 * month + hour);
      air.at(static_cast<Months>(month), hour).AirFlow = static_cast<float>(100 * month + hour);
    }
  }
  const std::string of_weather = bytes_in(weather), of_air = bytes_in(air);
  ASSERT_EQ(of_weather.size(), 2324);
  ASSERT_EQ(of_air.size(), 10368);
  for (const auto& [month, hour] :
       {std::pair(1, 0), std::pair(2, 0), std::pair(12, 0), std::pair(1, 1), std::pair(7, 15), std::pair(12, 23)}) {
    const auto value = static_cast<float>(100 * month + hour);
    EXPECT_EQ(real_at(of_weather, static_cast<size_t>(4 * ((month - 1) + 12 * hour))), value);
    EXPECT_EQ(real_at(of_weather, static_cast<size_t>(1152 + 4 * ((month - 1) + 12 * hour))), value);
    EXPECT_EQ(real_at(of_air, static_cast<size_t>(36 * (24 * (month - 1) + hour) + 32)), value);
  }
}

TEST(ResultBlocksTest, EveryBlockReadsAndWritesItselfAlone) {
  TempFolder folder;
  const std::string path = folder / "blocks";
  BinaryFiles& all = BinaryFiles::of_thread();
  const auto names = block_classes();
  EXPECT_EQ(names.size(), 17);
  std::vector<std::string> contents;
  const int16_t out = all.open(path, OpenMode::Create);
  for (const auto name : names) {
    const auto block = made(name);
    fill(*block, static_cast<int>(contents.size()));
    block->Save(out, all.position(out));
    contents.push_back(bytes_in(*block));
  }
  all.close(out);
  std::string whole;
  for (const auto& bytes : contents) whole += bytes;
  EXPECT_EQ(bytes_of(path), whole);

  const int16_t in = all.open(path, OpenMode::Read);
  for (size_t i = 0; i < names.size(); ++i) {
    const auto block = made(names[i]), copy = made(names[i]);
    block->Load(in, all.position(in));
    EXPECT_EQ(bytes_in(*block), contents[i]) << names[i];
    EXPECT_EQ(error_number([&] { block->Load(in, static_cast<int32_t>(whole.size() - contents[i].size() + 2)); }), 62);
    EXPECT_EQ(bytes_in(*block), contents[i]) << names[i] << " after a load that fails";
    EXPECT_EQ(block->Dump().find("CONTENTS OF " + std::string(names[i]) + "\n"), 0);
    copy->CopyFrom(block);
    EXPECT_EQ(bytes_in(*copy), contents[i]) << names[i];
    block->CopyFrom(block);
    EXPECT_EQ(bytes_in(*block), contents[i]) << names[i];
    EXPECT_EQ(error_number([&] { copy->CopyFrom(made(names[(i + 1) % names.size()])); }),
              number(ErrorNumber::TypeMismatch));
    EXPECT_EQ(error_number([&] { copy->CopyFrom(nullptr); }), number(ErrorNumber::ObjectNotSet));
    EXPECT_EQ(bytes_in(*copy), contents[i]) << names[i];
  }
  all.close(in);

  RecordingLog log;
  const auto header = create("ADL_DXXFileHeader");
  std::vector<Value> arguments{int16_t{7}, int32_t{1}};
  Value nothing;
  call_method(*header, header->info().find("Load"), arguments, nothing);
  EXPECT_EQ(log.errors, std::vector<std::string>{"TarnDataHandler52|ADL_DXXFileHeader|Load()"});
}

TEST(ResultBlocksTest, SubscriptsAndViews) {
  const struct {
    const char* class_name;
    const char* view;
    const char* field;
  } tables[]{{"ADL_HLAir", "HourlyAir", "CentHeat"},
             {"ADL_SPAir", "SPAirClg", "Airflow"},
             {"ADL_HLZone", "HLZoneClg", "ZoneRH"},
             {"ADL_DLZone", "CoolingLoads", "Sensible"}};
  const struct {
    int16_t month, hour;
    bool good;
  } places[]{{1, 0, true},   {12, 23, true}, {7, 15, true},  {0, 0, false},
             {13, 0, false}, {1, -1, false}, {1, 24, false}, {-32768, 32767, false}};
  for (const auto& table : tables) {
    for (const auto& place : places) {
      RecordingLog log;
      ObjectPtr owner = create(table.class_name);
      const Member& column = owner->info().find(table.field);
      std::vector<int> at{place.month, place.hour};
      if (column.bounds.size() == 3) at.push_back(2);
      let_property(*owner, table.field, 5.0, at);
      std::vector<Value> arguments{place.month, place.hour};
      Value value;
      call_method(*owner, owner->info().find(table.view), arguments, value);
      const std::string where =
          std::string(table.class_name) + " " + std::to_string(place.month) + " " + std::to_string(place.hour);
      EXPECT_EQ(log.errors.size(), place.good ? 0 : 2) << where;
      if (!place.good) {
        EXPECT_EQ(log.details[1].find("Subscript out of range: "), 0) << log.details[1];
        EXPECT_TRUE(std::holds_alternative<std::monostate>(value)) << where;
        continue;
      }
      const ObjectPtr view = std::get<ObjectPtr>(value);
      const std::vector<int> behind(at.begin() + 2, at.end());
      EXPECT_EQ(std::get<float>(get_property(*view, table.field, behind)), 5) << where;
      let_property(*view, table.field, 6.0, behind);
      EXPECT_EQ(std::get<float>(get_property(*owner, table.field, at)), 6) << where;
      const std::weak_ptr<Object> watched = owner;
      owner.reset();
      EXPECT_FALSE(watched.expired()) << "a view keeps its owner alive";
      EXPECT_EQ(std::get<float>(get_property(*view, table.field, behind)), 6) << where;
    }
  }
  const ADL_HLAir air;
  EXPECT_EQ((std::array{air.LowerBound(1), air.UpperBound(1), air.LowerBound(2), air.UpperBound(2)}),
            (std::array<int16_t, 4>{1, 12, 0, 23}));
  for (const int16_t dimension : {int16_t{0}, int16_t{3}})
    EXPECT_EQ(error_number([&] { air.UpperBound(dimension); }), number(ErrorNumber::SubscriptOutOfRange));
  ADL_Weather weather;
  EXPECT_EQ(error_number([&] { weather.DB(13, 0) = 1; }), 9);
  EXPECT_EQ(error_number([&] { weather.WB(1, 24) = 1; }), 9);
}

TEST(ResultBlocksTest, Dump) {
  ADL_HLAir air;
  air.at(Months::July, 15).CentHeat = 1.5F;
  const std::string table = air.Dump();
  EXPECT_EQ(table.find("CONTENTS OF ADL_HLAir\nMonth Hour CentCoolTot CentCoolSens CentHeat "), 0);
  EXPECT_NE(table.find("\n7 15 0 0 1.5 0 0 0 0 0 0\n7 16 "), std::string::npos);
  EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 2 + 288);

  ADL_DLZone zone;
  zone.resize_spaces(2);
  zone.LoadDetails.PeakMonth = Months::July;
  zone.DLSpace(2)->Name = "Office";
  zone.DLSpace(2)->ClgSensible(ADL_LoadComponents::Roofs) = 3;
  const std::string text = zone.Dump();
  for (const char* line : {"\nMonth Hour Sensible(1) Sensible(2) ", "\nHeatingLoads: CONTENTS OF ADL_HeatingLoads\n",
                           "\nPeakMonth: 7 (July)\n", "\nDLSpace(2): CONTENTS OF ADL_SpaceLoads\n", "\nName: Office\n",
                           "\nClgSensible(1..22) Btu/hr: 0 3 0 "})
    EXPECT_NE(text.find(line), std::string::npos) << line;

  ADL_Weather weather;
  weather.DB(2, 23) = 70;
  EXPECT_NE(weather.Dump().find("\nDB(1..12,23) F: 0 70 0 "), std::string::npos);
}

TEST(ResultBlocksTest, AZoneTakesTheOthersSpaces) {
  auto from = std::make_shared<ADL_DLZone>(), to = std::make_shared<ADL_DLZone>();
  from->resize_spaces(3);
  to->resize_spaces(5);
  from->DLSpace(3)->Airflow = 8;
  const auto list = to->DLSpaces();
  to->CopyFrom(from);
  EXPECT_EQ(list->Count(), 3);
  EXPECT_EQ(std::get<ObjectPtr>(list->Item(3)), to->DLSpace(3));
  EXPECT_EQ(to->DLSpace(3)->Airflow, 8);
  EXPECT_EQ(error_number([&] { to->DLSpace(4); }), number(ErrorNumber::SubscriptOutOfRange));
  EXPECT_EQ(to->HeatingLoads.ComponentName(14), "People");
  EXPECT_EQ(error_number([&] { to->HeatingLoads.ComponentName(23); }), number(ErrorNumber::SubscriptOutOfRange));
}

}  // namespace
}  // namespace tarn::test
