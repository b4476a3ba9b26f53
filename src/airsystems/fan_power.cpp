#include "airsystems/fan_power.h"

#include <algorithm>
#include <array>

#include "reflect/describe.h"

namespace tarn {

namespace {

constexpr PRF_EnergyStandards kStd2007{3}, kStd2010{4}, kStd2013{5}, kAnyStd{999};

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
  int16_t factor;
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

// In the order of creation. Which edition has a row is confirmed only for 1 in 2007 and 12 in 2010.
//
// 2007 gives the first row one value. Its addendum p added 2.15 for laboratories, so that in later editions it is open.
// 12 is (2.2 x effectiveness - 0.5) for each airstream, here at 50 %; 15 grows with the height of the duct.
constexpr Row kRows[]{
    {1, Credit, "Fully ducted and/or exhaust air systems", 0.5F, {Fixed, Open, Open}},
    {2, Credit, "Return and/or exhaust airflow control devices", 0.5F, {Fixed, Fixed, Fixed}},
    {3, Credit, "Exhaust filters, scrubbers, or other exhaust treatment", 0, {Open, Open, Open}},
    {4, Credit, "Particulate Filtration Credit: MERV 9 through 12", 0.5F, {Fixed, Fixed, Fixed}},
    {5, Credit, "Particulate Filtration Credit: MERV 13 through 15", 0.9F, {Fixed, Fixed, Fixed}},
    {6, Credit, kMerv16, 0, {Open, Open, Open}},
    {7, Credit, "Carbon and other gas-phase air cleaners", 0, {Open, Open, Open}},
    {9, Credit, kEvaporative, unconfirmed(0), {Open, Open, Open}},
    {14, Credit, "Biosafety cabinet", 0, {None, Open, Open}},
    {8, Credit, "Heat recovery device", unconfirmed(0), {Open, None, None}},
    {12, Credit, "Energy Recovery Device, other than Coil Runaround Loop", 0.6F, {None, Open, Open}},
    {13, Credit, "Coil runaround loop", 0.6F, {None, Fixed, Fixed}},
    {10, Credit, "Sound attenuation section", unconfirmed(0.15F), {Fixed, Fixed, Fixed}, false, kQuietSpaces},
    {19, Credit, "Exhaust system serving fume hoods", unconfirmed(0.35F), {None, Fixed, Fixed}},
    {15, Credit, kHighRise, unconfirmed(0), {None, Open, Open}},
    {11, Deduction, "Fume hood exhaust exception", unconfirmed(-1.0F), {Fixed, None, None}},
    {16, Deduction, "Systems without central cooling device", unconfirmed(-0.6F), {None, None, Fixed}, true},
    {17, Deduction, "Systems without central heating device", unconfirmed(-0.3F), {None, None, Fixed}, true},
    {18, Deduction, "Systems with central electric resistance heat", unconfirmed(-0.2F), {None, None, Fixed}, true},
};

/// What a row is under a standard. Under any standard it is that of the newest edition that has it.
Use use_under(const Row& row, PRF_EnergyStandards standard) {
  if (standard == kStd2007) return row.use[Y2007];
  if (standard == kStd2010) return row.use[Y2010];
  if (standard == kStd2013) return row.use[Y2013];
  if (standard != kAnyStd) return None;
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
  const bool newest = energyStd == kStd2013 || energyStd == kAnyStd;
  items_.clear();
  for (const Row& row : kRows) {
    const Use use = use_under(row, energyStd);
    auto item = std::make_shared<AS_FanPowerAdjustment>();
    item->ID = AS_AFactors{row.factor};
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
