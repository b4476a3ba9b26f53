#include "airsystems/fan_power.h"

#include <algorithm>
#include <array>

#include "tarn/reflect/describe.h"

namespace tarn {

namespace {

/// Editions that have the table of adjustments, the columns of `Row::use`.
enum Edition : size_t { Y2007, Y2010, Y2013, Editions };

enum class Use : uint8_t {
  None,   // the edition has no such row
  Fixed,  // the row gives the value
  Open    // the designer gives the value, or the row offers a second one
};
using enum Use;

enum class Side : uint8_t { Credit, Deduction };
using enum Side;

struct Row {
  AS_AFactors factor;
  Side side;
  std::string_view description;
  float value;  // in. w.c.; 0 where only the design has it
  std::array<Use, Editions> use;
  bool automatic = false;
  std::string_view description_2013 = {};  // where it differs
};

// The descriptions that are longer than a line of the table.
constexpr std::string_view kMerv16 =
    "Particulate Filtration Credit: MERV 16 and greater, and electronically enhanced filters";
constexpr std::string_view kEvaporative = "Evaporative humidifier/cooler in series with another cooling coil";
constexpr std::string_view kHighRise = "Laboratory and vivarium exhaust systems in high-rise buildings";
constexpr std::string_view kQuietSpaces =
    "Sound attenuation section (fans serving spaces with design background noise goals below NC35)";

/// A value for which no readable source was found.
constexpr float unconfirmed(float value) { return value; }

using enum AS_AFactors;

/// Of the three editions, 2007 first.
constexpr std::array<Use, Editions> uses(Use in_2007, Use in_2010, Use in_2013) { return {in_2007, in_2010, in_2013}; }

// In the order of creation. Which edition has a row is confirmed only for ducted return in 2007 and energy recovery in
// 2010.
//
// 2007 gives ducted return one value. Its addendum p added 2.15 for laboratories, so that in later editions it is open.
// Energy recovery is (2.2 x effectiveness - 0.5) for each airstream, here at 50 %; the laboratory systems' value grows
// with the height of the duct.
constexpr Row kRows[]{
    {AFAC_Fully_Ducted_Return_Exhaust, Credit, "Fully ducted and/or exhaust air systems", 0.5F,
     uses(Fixed, Open, Open)},
    {AFAC_Return_Exhaust_Control_Device, Credit, "Return and/or exhaust airflow control devices", 0.5F,
     uses(Fixed, Fixed, Fixed)},
    {AFAC_Exhaust_Filters_Scrubbers, Credit, "Exhaust filters, scrubbers, or other exhaust treatment", 0,
     uses(Open, Open, Open)},
    {AFAC_MERV_9_12, Credit, "Particulate Filtration Credit: MERV 9 through 12", 0.5F, uses(Fixed, Fixed, Fixed)},
    {AFAC_MERV_13_15, Credit, "Particulate Filtration Credit: MERV 13 through 15", 0.9F, uses(Fixed, Fixed, Fixed)},
    {AFAC_MERV_16, Credit, kMerv16, 0, uses(Open, Open, Open)},
    {AFAC_Carbon_Gas_Phase_Air_Cleaner, Credit, "Carbon and other gas-phase air cleaners", 0, uses(Open, Open, Open)},
    {AFAC_Evap_Humidifier, Credit, kEvaporative, unconfirmed(0), uses(Open, Open, Open)},
    {AFAC_Biosafety_Cabinet, Credit, "Biosafety cabinet", 0, uses(None, Open, Open)},
    {AFAC_Heat_Recovery_Device, Credit, "Heat recovery device", unconfirmed(0), uses(Open, None, None)},
    {AFAC_Energy_Rec_Device, Credit, "Energy Recovery Device, other than Coil Runaround Loop", 0.6F,
     uses(None, Open, Open)},
    {AFAC_Coil_Runaround_Loop, Credit, "Coil runaround loop", 0.6F, uses(None, Fixed, Fixed)},
    {AFAC_Sound_Attenuation, Credit, "Sound attenuation section", unconfirmed(0.15F), uses(Fixed, Fixed, Fixed), false,
     kQuietSpaces},
    {AFAC_Exhaust_System_Fume_Hoods, Credit, "Exhaust system serving fume hoods", unconfirmed(0.35F),
     uses(None, Fixed, Fixed)},
    {AFAC_Laboratory_Vivarium_Exhaust_System, Credit, kHighRise, unconfirmed(0), uses(None, Open, Open)},
    {AFAC_Fume_Hood_Exhaust_Exception, Deduction, "Fume hood exhaust exception", unconfirmed(-1.0F),
     uses(Fixed, None, None)},
    {AFAC_Systems_Without_Central_Cooling_Device, Deduction, "Systems without central cooling device",
     unconfirmed(-0.6F), uses(None, None, Fixed), true},
    {AFAC_Systems_Without_Central_Heating_Device, Deduction, "Systems without central heating device",
     unconfirmed(-0.3F), uses(None, None, Fixed), true},
    {AFAC_Systems_With_Central_Electric_Resistance_Heat, Deduction, "Systems with central electric resistance heat",
     unconfirmed(-0.2F), uses(None, None, Fixed), true},
};

/// What a row is under a standard. Under any standard it is that of the newest edition that has it.
Use use_under(const Row& row, PRF_EnergyStandards standard) {
  using enum PRF_EnergyStandards;
  if (standard == ASHRAE_Std_90_1_2007) return row.use[Y2007];
  if (standard == ASHRAE_Std_90_1_2010) return row.use[Y2010];
  if (standard == ASHRAE_STD_90_1_2013) return row.use[Y2013];
  if (standard != AHSRA3_STD_90_1_ANY) return None;
  const auto newest = std::find_if(row.use.rbegin(), row.use.rend(), [](Use use) { return use != None; });
  return newest == row.use.rend() ? None : *newest;
}

}  // namespace

const ClassInfo& AS_FanPowerAdjustment::info() const {
  using C = AS_FanPowerAdjustment;
  static constexpr auto members =
      describe<C>(Failures::Raised, property<&C::ID>, property<&C::Description>,
                  property<&C::AppliesToCurrentEnergyStd>, property<&C::DefaultValue>("in. w.c."),
                  property<&C::Editable>, property<&C::AutomaticallySelected>, property<&C::IsCredit>,
                  property<&C::IsDeduction>, property<&C::MinLimit>("in. w.c."), property<&C::MaxLimit>("in. w.c."));
  static const ClassInfo info(members);
  return info;
}

const ClassInfo& AS_FanPowerAdjustments::info() const {
  using C = AS_FanPowerAdjustments;
  static constexpr auto members = describe<C>(Failures::Raised, method<&C::Item>("factor"), property<&C::Count>,
                                              property<&C::NewEnum>, method<&C::Setup>("energyStd"));
  static const ClassInfo info(members);
  return info;
}

void AS_FanPowerAdjustments::Setup(PRF_EnergyStandards energyStd) {
  using enum PRF_EnergyStandards;
  const bool newest = energyStd == ASHRAE_STD_90_1_2013 || energyStd == AHSRA3_STD_90_1_ANY;
  items_.clear();
  for (const Row& row : kRows) {
    const Use use = use_under(row, energyStd);
    auto item = std::make_shared<AS_FanPowerAdjustment>();
    item->ID = row.factor;
    item->Description = newest && !row.description_2013.empty() ? row.description_2013 : row.description;
    item->AppliesToCurrentEnergyStd = use != None;
    item->DefaultValue = use != None ? row.value : 0.0F;
    item->Editable = use == Open;
    item->AutomaticallySelected = use != None && row.automatic;
    item->IsCredit = row.side == Credit;
    items_.push_back(std::move(item));
  }
}

Ptr<AS_FanPowerAdjustment> AS_FanPowerAdjustments::Item(AS_AFactors factor) const {
  for (const auto& item : items_) {
    if (item->ID == factor) return item;
  }
  fail(ErrorNumber::SubscriptOutOfRange,
       "Subscript out of range: no fan power adjustment has the factor " + std::to_string(static_cast<int>(factor)) +
           (items_.empty() ? ", as Setup was not called yet." : "; factors are 1 to " + std::to_string(Count()) + "."));
}

Ptr<Collection> AS_FanPowerAdjustments::NewEnum() const {
  auto all = std::make_shared<Collection>();
  for (const auto& item : items_) all->add(std::static_pointer_cast<Object>(item));
  return all;
}

}  // namespace tarn
