#include "tarn/reflect/members.h"

#include <gtest/gtest.h>

#include <chrono>

#include "support/temp_project.h"
#include "tarn/reflect/by_name.h"
#include "tarn/reflect/describe.h"

namespace tarn {
namespace {

struct PartRecord {
  Text<4> Tag;
  R4 Size;
  Array<I2, 2, 3> Grid;
};

template <Failures F>
class Part : public Object, public PartRecord {
 public:
  using Record = PartRecord;
  const ClassInfo& info() const override {
    static constexpr auto members =
        describe<Part>(F, property<&PartRecord::Tag>.trimmed(), property<&PartRecord::Size>("ft").by_reference(),
                       property<&PartRecord::Grid>, property<&Part::Doubled>, method<&Part::Swap>("a", "b"),
                       method<&Part::Fail>, event<&Part::OnChange>("Stop"));
    static const ClassInfo info(members);
    return info;
  }
  float Doubled() const { return 2 * Size; }
  bool Swap(int16_t& a, std::optional<std::string> b) {
    a = static_cast<int16_t>(-a);
    return b.has_value();
  }
  int32_t Fail() { fail(ErrorNumber::DeviceError, "no disk"); }
  Event<bool&> OnChange;
};

using Trapping = Part<Failures::Trapped>;
using Raising = Part<Failures::Raised>;

TEST(Members, AreInInterfaceOrderWithTheirFacts) {
  const ClassInfo& info = Trapping().info();
  std::string names;
  for (const Member& m : info.members) names += std::string(m.name) + " ";
  EXPECT_EQ(names, "Tag Size Grid Doubled Swap Fail OnChange ");
  EXPECT_EQ(info.find("size").field()->offset(), 4U);
  EXPECT_EQ(info.find("SIZE").unit, "ft");
  EXPECT_TRUE(info.find("Size").by_reference);
  EXPECT_TRUE(info.find("Doubled").read_only);
  EXPECT_EQ(info.find("Grid").elements(), 6U);
  EXPECT_TRUE(info.find("Swap").parameters()[0].in_out);
  EXPECT_TRUE(info.find("Swap").parameters()[1].optional);
  EXPECT_EQ(info.find("Swap").call_label(), "Swap()");
}

TEST(Members, EveryNameIsFoundInAnyCaseAndNoOther) {
  const ClassInfo& info = COM_ProjectData().info();
  for (size_t i = 0; i < info.members.size(); ++i) {
    std::string name(info.members[i].name);
    EXPECT_EQ(info.number(name), static_cast<int>(i)) << name;
    for (char& c : name) c = static_cast<char>(std::toupper(c));
    EXPECT_EQ(info.number(name), static_cast<int>(i)) << name;
    EXPECT_EQ(info.number(name + "X"), -1) << name;
  }
  EXPECT_EQ(info.number(""), -1);
}

TEST(Members, AWrongNameOfMegabytesIsAnsweredAtOnce) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_THROW(WIN_Window().info().find(std::string(20'000'000, 'x')), Error);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST(Members, ValuesThatDoNotFitAreRefusedAndTheOldOneStays) {
  Raising part;
  let_property(part, "Size", 1.5);
  const int at[]{2, 3};
  const struct {
    const char* name;
    Value value;
    std::vector<int> subscripts;
    int number;
  } cases[]{{"Size", std::string("4"), {}, 13},
            {"Size", 1e300, {}, 6},
            {"Size", {}, {}, 13},
            {"Grid", 40000, {2, 3}, 6},
            {"Grid", 2.5, {2, 3}, 13},
            {"Grid", 1, {3, 1}, 9},
            {"Grid", 1, {1}, 450},
            {"Doubled", 1.0, {}, 438},
            {"Sise", 1.0, {}, 438},
            {"Fail", 1, {}, 438},
            {"Tag", std::string("日"), {}, 13}};
  for (const auto& c : cases) {
    EXPECT_EQ(test::error_number([&] { let_property(part, c.name, c.value, c.subscripts); }), c.number) << c.name;
  }
  EXPECT_EQ(std::get<float>(get_property(part, "Size")), 1.5F);
  EXPECT_EQ(std::get<int16_t>(get_property(part, "Grid", at)), 0);
}

TEST(Members, MethodsBringInOutArgumentsBack) {
  Trapping part;
  std::vector<Value> arguments{int32_t{5}};
  Value result;
  call_method(part, part.info().find("Swap"), arguments, result);
  EXPECT_FALSE(std::get<bool>(result));
  EXPECT_EQ(std::get<int16_t>(arguments[0]), -5);
  std::vector<Value> none;
  EXPECT_EQ(test::error_number([&] { call_method(part, part.info().find("Swap"), none, result); }), 450);
}

TEST(Members, ATrappingClassLogsAndReturnsTheEmptyValue) {
  test::RecordingLog log;
  Trapping part;
  std::vector<Value> none;
  Value result;
  call_method(part, part.info().find("Fail"), none, result);
  EXPECT_EQ(std::get<int32_t>(result), 0);
  ASSERT_EQ(log.errors.size(), 1U);
  EXPECT_NE(log.errors[0].find("TarnDataHandler52|"), std::string::npos);
  EXPECT_NE(log.errors[0].find("|Fail()"), std::string::npos);
  EXPECT_EQ(log.details[0], "no disk");
  const int bad[]{3, 1};
  EXPECT_EQ(std::get<int16_t>(get_property(part, "Grid", bad)), 0);
  let_property(part, "Grid", 1, bad);
  EXPECT_NE(log.errors[1].find("|Grid [PropertyGet]"), std::string::npos);
  EXPECT_NE(log.errors[2].find("|Grid [PropertyLet]"), std::string::npos);
}

TEST(Members, ARaisingClassHandsNumberSourceAndDescriptionOver) {
  Raising part;
  std::vector<Value> none;
  Value result;
  try {
    call_method(part, part.info().find("Fail"), none, result);
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), 57);
    EXPECT_NE(error.source().find(".Fail"), std::string::npos);
    EXPECT_EQ(error.description(), "no disk");
  }
}

TEST(Members, EventsGoOutAndTheirAnswerComesBack) {
  Trapping part;
  listen(part, part.info().find("OnChange"), [](Arguments arguments) { arguments[0] = true; });
  bool stop = false;
  part.OnChange.raise(stop);
  EXPECT_TRUE(stop);
  listen(part, part.info().find("OnChange"), {});
  stop = false;
  part.OnChange.raise(stop);
  EXPECT_FALSE(stop);
}

}  // namespace
}  // namespace tarn
