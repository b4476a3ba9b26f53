#include "tarn/base/units.h"

#include "tarn/base/error.h"

namespace tarn {
namespace {

std::string refusal(const std::string& from, const std::string& to) {
  try {
    convert(1, from, to);
  } catch (const Error& error) {
    return error.description();
  }
  return "converted";
}

TEST(Units, ConvertAsTheNationalStandardsInstitutePublishes) {
  // NIST Special Publication 811 (2008), appendix B.8: factors of seven digits, rounded; the exact ones in bold there.
  struct {
    const char *from, *to;
    double factor;
  } const published[]{{"ft", "m", 0.3048},
                      {"in", "mm", 25.4},
                      {"gal", "m3", 3.785412e-3},
                      {"lb", "kg", 0.45359237},
                      {"grain", "kg", 6.479891e-5},
                      {"Btu", "J", 1055.056},
                      {"kWh", "J", 3.6e6},
                      {"Btu/h", "W", 0.2930711},
                      {"tons", "W", 3516.853},
                      {"hp", "W", 745.6999},
                      {"lb/h", "kg/s", 1.259979e-4},
                      {"ft3/min", "m3/s", 4.719474e-4},
                      {"CFM", "m3/s", 4.719474e-4},
                      {"gpm", "m3/s", 6.309020e-5},
                      {"psi", "kPa", 6.894757},
                      {"in. wg", "Pa", 249.0889},
                      {"ft wg", "Pa", 2989.067},
                      {"inHg", "Pa", 3386.389},
                      {"lb/ft2", "kg/m2", 4.882428},
                      {"lb/ft3", "kg/m3", 16.01846},
                      {"Btu/lb", "J/kg", 2326},
                      {"Btu/(lb.F)", "J/(kg.K)", 4186.8},
                      {"Btu/(h.ft2)", "W/m2", 3.154591},
                      {"Btu/(h.ft.F)", "W/(m.K)", 1.730735},
                      {"Btu/(h.ft2.F)", "W/(m2.K)", 5.678263},
                      {"F.h.ft2/Btu", "K.m2/W", 0.1761102},
                      {"deg", "rad", 0.01745329}};
  for (const auto& row : published) {
    EXPECT_NEAR(convert(1, row.from, row.to) / row.factor, 1, 5e-7) << row.from << " to " << row.to;
    EXPECT_NEAR(convert(convert(0.78, row.from, row.to), row.to, row.from), 0.78, 1e-15) << row.from;
  }
  EXPECT_EQ(convert(12, "in", "ft"), 1.0) << "by definition, to the last digit";
  EXPECT_EQ(convert(12, "MBH", "tons"), 1.0);
}

TEST(Units, TemperaturesHaveAZeroAndDifferencesHaveNone) {
  struct {
    double value;
    const char *from, *to;
    double wanted;
  } const cases[]{{32, "F", "C", 0},
                  {212, "\u00B0F", "\u00B0C", 100},
                  {-40, "degC", "deg F", -40},
                  {25, "C", "K", 298.15},
                  {491.67, "R", "C", 0},
                  {9, "delta F", "K", 5},
                  {5, "K", "delta F", 9},
                  {5, "C", "delta F", 9},
                  {20, "\u0394F", "delta C", 100.0 / 9},
                  {1.8, "1/K", "1/F", 1},
                  {5, "kJ/(kg.C)", "kJ/(kg.K)", 5},
                  {5, "kJ/kgK", "kJ/(kg.K)", 5},
                  {5, "W/mK", "W/(m.K)", 5},
                  {5, "W/m2K", "W/(m2.K)", 5}};
  for (const auto& row : cases)
    EXPECT_NEAR(convert(row.value, row.from, row.to), row.wanted, 1e-12) << row.value << row.from << " to " << row.to;
  EXPECT_EQ(refusal("delta F", "F"), "\"delta F\" is not a unit for a value in F; units that fit are F, C, K, R");
}

TEST(Units, AreReadAsPeopleWriteThem) {
  struct {
    const char *same, *as;
  } const spellings[]{{"ft2.F.hr/BTU", "hr.ft2.F/Btu"},
                      {"Btu/h.ft2.F", "Btu/(hr.ft2.F)"},
                      {"Btu/h/ft2/F", "Btu/(hr.ft2.F)"},
                      {"W/m.K", "W/(m.K)"},
                      {"W m-1 K^-1", "W/(m.K)"},
                      {"W/m\u00B2\u00B7K", "W/(m2.K)"},
                      {"m2 K / W", "m2.K/W"},
                      {"sqft", "ft2"},
                      {"cfm", "CFM"},
                      {"CFM/sqft", "CFM/ft2"},
                      {"ft2 per person", "ft2/people"},
                      {"in. w.c.", "in. wg"},
                      {"inH2O", "in. wg"},
                      {"KW/TON", "kW/tons"},
                      {"kW.h", "kWh"},
                      {"ton.hr", "tons.h"},
                      {"kBtu/h", "MBH"},
                      {"W/(K.L/s)", "W.s/(K.L)"},
                      {"%", "percent"},
                      {"g/kg", "g/(kg)"}};
  for (const auto& row : spellings) {
    ASSERT_TRUE(is_unit(row.same) && is_unit(row.as)) << row.same << " " << row.as;
    EXPECT_NEAR(convert(1, row.same, row.as), 1, 1e-15) << row.same << " as " << row.as;
  }
  EXPECT_NEAR(convert(1, "MW", "W"), 1e6, 0);
  for (const char* wrong : {"", " ", "mW", "M", "frt", "ft/", "/ft", "ft..in", "(ft", "ft)", "ft^", "ft-", "ft0", "2",
                            "((((((ft))))))", "ft9.ft9.ft9.ft9.ft9.ft9.ft9.ft9.ft9.ft9.ft9.ft9", "W/m2.", "kW or MBH"})
    EXPECT_FALSE(is_unit(wrong)) << wrong;
  EXPECT_FALSE(is_unit(std::string(1 << 20, '(')));
}

TEST(Units, WrongOnesAreRefusedWithWhatFits) {
  EXPECT_EQ(refusal("W/m2", "Btu/(hr.ft2.F)"),
            "\"W/m2\" is not a unit for a value in Btu/(hr.ft2.F); units that fit are Btu/(hr.ft2.F), W/(m2.K)");
  EXPECT_EQ(refusal("frt", "in"), "\"frt\" is not a known unit; units that fit are in, mm, ft, m, cm, km");
  EXPECT_EQ(refusal("%", "deg"), "\"%\" is not a unit for a value in deg; units that fit are deg, rad");
  EXPECT_EQ(refusal("ft", "kW or MBH"), "\"kW or MBH\" is not a known unit");
}

TEST(Units, NumbersCarryThem) {
  struct {
    const char* text;
    double value;
    const char* unit;
  } const cases[]{{"1.2m", 1.2, "m"},    {" 50 mm ", 50, "mm"}, {"0.04 W/m.K", 0.04, "W/m.K"},
                  {"1e3ft", 1000, "ft"}, {"4", 4, ""},          {"+.5 in", 0.5, "in"},
                  {"-5C", -5, "C"},      {"5.", 5, ""}};
  for (const auto& row : cases) {
    const auto found = measured_in(row.text);
    ASSERT_TRUE(found) << row.text;
    EXPECT_EQ(found->value, row.value) << row.text;
    EXPECT_EQ(found->unit, row.unit) << row.text;
  }
  for (const char* none : {"", "m", "in", "inf", "nan", "1e999 m", "+-2 m", "tall"})
    EXPECT_FALSE(measured_in(none)) << none;
}

}  // namespace
}  // namespace tarn
