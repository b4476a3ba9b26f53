// Buildings as a person reads them: what they consist of, what each meter pays, what the simulation found.
#include <algorithm>
#include <iostream>

#include "cli/units.h"
#include "cli/views/form.h"
#include "cli/views/pictures.h"
#include "reflect/json.h"
#include "tarn/base/value.h"
#include "tarn/building.h"
#include "weather/calendar.h"

namespace tarn::cli {
namespace {

using Rows = std::vector<std::vector<Json>>;

Json real(float value) { return to_json(Value(value)); }

std::string element(Database& database, Object& part, std::string_view field, int at) {
  return element_text(database, part, part.info().find(field), std::span<const int>(&at, 1));
}

/// A row for each number up to `count` that gives one.
void show_rows(const std::vector<std::string>& heads, int count, const std::string& none,
               const std::function<std::vector<Json>(int)>& row) {
  Rows rows;
  for (int i = 1; i <= count; ++i) {
    if (auto cells = row(i); !cells.empty()) rows.push_back(std::move(cells));
  }
  std::cout << '\n' << (rows.empty() ? none + "\n" : "");
  if (!rows.empty()) print_table(heads, rows);
}

void show_inputs(Database& database, BLD_Inputs& inputs) {
  show_rows({"system", "multiplier"}, kBuildingSystems, "no air systems yet", [&](int slot) -> std::vector<Json> {
    if (inputs.SystemID(slot) == 0) return {};
    return {element(database, inputs, "SystemID", slot), int{inputs.SystemMult(slot)}};
  });
  show_rows({"plant"}, kBuildingPlants, "no plants yet", [&](int slot) -> std::vector<Json> {
    if (inputs.PlantID(slot) == 0) return {};
    return {element(database, inputs, "PlantID", slot)};
  });
  show_rows({"meter", "rate"}, kMeters, "no meter has a rate yet", [&](int meter) -> std::vector<Json> {
    if (inputs.UtilityRate(meter) == 0) return {};
    return {std::string(text_of(labels<BLD_PowerProfiles>, static_cast<int16_t>(meter))),
            element(database, inputs, "UtilityRate", meter)};
  });
  show_rows({"electric consumer", "on meter"}, kElectricConsumers, "", [&](int consumer) -> std::vector<Json> {
    return {std::string(text_of(labels<BLD_EnergyConsumingSystems>, static_cast<int16_t>(consumer))),
            element(database, inputs, "ElecCompMeter", consumer)};
  });
  const auto is_used = [&](int piece) {
    return inputs.MEMaxPower(piece) != 0.0F || !inputs.MEName(piece).trimmed().empty();
  };
  show_rows({"miscellaneous equipment", "power", "maximum", "process", "schedule"}, kMiscEquipment,
            "no miscellaneous equipment", [&](int piece) -> std::vector<Json> {
              if (!is_used(piece)) return {};
              return {inputs.MEName(piece).trimmed(), element(database, inputs, "METype", piece),
                      real(inputs.MEMaxPower(piece)), inputs.MEProcess(piece) ? "yes" : "no",
                      element(database, inputs, "MESchedule", piece)};
            });
  std::cout << "\npower factor " << shown(real(inputs.BldgPowerFactor)) << ", "
            << quantity(inputs.AddBldgFloorArea, "ft2") << " besides the systems', electric generation "
            << shown(real(inputs.ElecGenEfficiency)) << " %\n";
}

using Months = Array<R8, kMeters, 12>;

double year_of(const Months& monthly, int meter) {
  double sum = 0;
  for (int month = 1; month <= 12; ++month) sum += monthly(meter, month);
  return sum;
}

/// Rows with a line of sums below them.
class Summed {
 public:
  explicit Summed(int decimals) : decimals_(decimals) {}
  void add(std::vector<Json> cells, const std::vector<double>& amounts) {
    sums_.resize(amounts.size());
    for (size_t i = 0; i < amounts.size(); ++i) {
      sums_[i] += amounts[i];
      cells.emplace_back(grouped(amounts[i], decimals_));
    }
    rows_.push_back(std::move(cells));
  }
  void print(const std::vector<std::string>& heads, std::string_view sides) {
    if (rows_.empty()) return;
    std::vector<Json> total(heads.size() - sums_.size(), "");
    total.front() = "total";
    for (const double sum : sums_) total.emplace_back(grouped(sum, decimals_));
    rows_.push_back(std::move(total));
    std::cout << '\n';
    print_table(heads, rows_, sides);
  }

 private:
  int decimals_;
  std::vector<double> sums_;
  Rows rows_;
};

void show_components(const BLD_Results& results, const std::string& money) {
  Summed table(0);
  for (int c = 1; c <= kEnergyComponents; ++c) {
    const double site = results.AnnSiteEnComp(c), cost = results.AnnCostComp(c);
    if (site != 0 || cost != 0)
      table.add({std::string(text_of(labels<BLD_SystemComponents>, static_cast<int16_t>(c)))},
                {shown_value(site, "kBtu"), shown_value(results.AnnSrceEnComp(c), "kBtu"), cost});
  }
  const std::string energy(shown_unit("kBtu"));
  table.print({"component, a year", "site, " + energy, "source, " + energy, "cost, " + money}, "lrrr");
}

void show_bills(const BLD_Results& results, const std::string& money) {
  Summed table(2);
  for (int meter = 1; meter <= kMeters; ++meter) {
    const double energy = year_of(results.MonMetEnergy, meter), total = year_of(results.MonMetCharge, meter);
    if (energy == 0 && total == 0) continue;
    table.add({std::string(text_of(labels<BLD_PowerProfiles>, static_cast<int16_t>(meter))), grouped(energy, 0),
               results.EnergyUnits(meter).trimmed()},
              {year_of(results.MonEnCharge, meter), year_of(results.MonDmdCharge, meter),
               year_of(results.MonFixCharge, meter), year_of(results.MonTaxCharge, meter), total});
  }
  table.print({"bills of a year", "used", "unit", "energy, " + money, "demand, " + money, "fixed, " + money,
               "tax, " + money, "total, " + money},
              "lrlrrrrr");
}

void show_results(const BLD_Results& results) {
  std::cout << "\nresults: " << results.Location.trimmed() << "; " << measure(results.TotFlrArea, "ft2")
            << ", peak cooling load " << measure(results.TotClgLoad, "tons") << ", peak heating load "
            << measure(results.TotHtgLoad, "MBH") << "; unmet hours " << grouped(results.UnmetClgHours, 0)
            << " cooling, " << grouped(results.UnmetHtgHours, 0) << " heating\n";
  const std::string money = results.CurrSymbol.trimmed();
  show_components(results, money);
  show_bills(results, money);
}

/// The greatest hour of each meter that has any.
void show_profiles(BLD_Building& building) {
  Rows rows;
  for (int meter = 1; meter <= kMeters; ++meter) {
    const auto& hours = building.GetBuildingProfile(static_cast<int16_t>(meter))->Power.items;
    const auto most = std::ranges::max_element(hours, {}, &R4::value);
    if (*most == 0.0F) continue;
    const auto at = static_cast<int>(most - hours.begin());
    const std::string unit = building.GetBuildingResults()->EnergyUnits(meter).trimmed();
    rows.push_back({std::string(text_of(labels<BLD_PowerProfiles>, static_cast<int16_t>(meter))),
                    grouped(*most, 2) + " " + unit, date_text(at / 24 + 1) + ", hour " + std::to_string(at % 24 + 1)});
  }
  if (rows.empty()) return;
  std::cout << '\n';
  print_table({"greatest hour of", "used", "on"}, rows, "lrl");
}

}  // namespace

void show_building(Database& database, StoredEntity& entity) {
  auto& building = dynamic_cast<BLD_Building&>(entity);
  const auto general = building.GetBuildingGeneral();
  std::cout << general->Name.trimmed() << "  " << (general->Simulated ? "simulated" : "not simulated")
            << (general->Simulated && building.HasChanged ? "; stale: changed since it was simulated" : "") << '\n';
  show_inputs(database, *building.GetBuildingInputs());
  const auto has = [&](std::string_view part) {
    const Member* found = find_part(building.info(), part);
    return found->part_count(building) > 0;
  };
  if (has("BuildingResults")) show_results(*building.GetBuildingResults());
  if (has("BuildingProfile")) show_profiles(building);
}

}  // namespace tarn::cli
