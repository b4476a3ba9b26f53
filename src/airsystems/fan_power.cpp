#include "airsystems/fan_power.h"

#include <algorithm>
#include <array>

#include "base/describe.h"

namespace tarn {

namespace {

constexpr PRF_EnergyStandards kStd2007{3}, kStd2010{4}, kStd2013{5}, kAnyStd{999};

/// Editions that have the table of adjustments, the columns of `Row::use`.
enum Edition : size_t { Y2007, Y2010, Y2013, Editions };

enum class Use : uint8_t {
  None,   // the edition has no such row
  Fixed,  // the row gives the value
  Open    // the value is the design's, or the row offers another one
};
using enum Use;

enum class Side : uint8_t { Credit, Deduction };
using enum Side;

struct Row {
  int16_t factor;
  std::string_view description;
  Side side;
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

/// A value that no text which could be read confirms.
constexpr float unconfirmed(float value) { return value; }

// In the order of creation. Which edition has a row is confirmed only for 1 in 2007 and 12 in 2010.
//
// 2007 gives the first row one value. Its addendum p added 2.15 for laboratories, so that in later editions it is open.
// 12 is (2.2 x effectiveness - 0.5) for each airstream, here at 50 %; 15 grows with the height of the duct.
constexpr Row kRows[]{
    {1, "Fully ducted and/or exhaust air systems", Credit, 0.5F, {Fixed, Open, Open}},
    {2, "Return and/or exhaust airflow control devices", Credit, 0.5F, {Fixed, Fixed, Fixed}},
    {3, "Exhaust filters, scrubbers, or other exhaust treatment", Credit, 0, {Open, Open, Open}},
    {4, "Particulate Filtration Credit: MERV 9 through 12", Credit, 0.5F, {Fixed, Fixed, Fixed}},
    {5, "Particulate Filtration Credit: MERV 13 through 15", Credit, 0.9F, {Fixed, Fixed, Fixed}},
    {6, kMerv16, Credit, 0, {Open, Open, Open}},
    {7, "Carbon and other gas-phase air cleaners", Credit, 0, {Open, Open, Open}},
    {9, kEvaporative, Credit, unconfirmed(0), {Open, Open, Open}},
    {14, "Biosafety cabinet", Credit, 0, {None, Open, Open}},
    {8, "Heat recovery device", Credit, unconfirmed(0), {Open, None, None}},
    {12, "Energy Recovery Device, other than Coil Runaround Loop", Credit, 0.6F, {None, Open, Open}},
    {13, "Coil runaround loop", Credit, 0.6F, {None, Fixed, Fixed}},
    {10, "Sound attenuation section", Credit, unconfirmed(0.15F), {Fixed, Fixed, Fixed}, false, kQuietSpaces},
    {19, "Exhaust system serving fume hoods", Credit, unconfirmed(0.35F), {None, Fixed, Fixed}},
    {15, kHighRise, Credit, unconfirmed(0), {None, Open, Open}},
    {11, "Fume hood exhaust exception", Deduction, unconfirmed(-1.0F), {Fixed, None, None}},
    {16, "Systems without central cooling device", Deduction, unconfirmed(-0.6F), {None, None, Fixed}, true},
    {17, "Systems without central heating device", Deduction, unconfirmed(-0.3F), {None, None, Fixed}, true},
    {18, "Systems with central electric resistance heat", Deduction, unconfirmed(-0.2F), {None, None, Fixed}, true},
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
  static const ClassInfo info =
      describe<C>(Failures::Raised, property<&C::ID>, property<&C::Description>,
                  property<&C::AppliesToCurrentEnergyStd>, property<&C::DefaultValue>("in. w.c."),
                  property<&C::Editable>, property<&C::AutomaticallySelected>, property<&C::IsCredit>,
                  property<&C::IsDeduction>, property<&C::MinLimit>("in. w.c."), property<&C::MaxLimit>("in. w.c."));
  return info;
}

const ClassInfo& AS_FanPowerAdjustments::info() const {
  using C = AS_FanPowerAdjustments;
  static const ClassInfo info = describe<C>(Failures::Raised, method<&C::Item>("factor"), property<&C::Count>,
                                            property<&C::NewEnum>, method<&C::Setup>("energyStd"));
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
