// Buildings as a person reads them: what they consist of, what each meter pays, what the simulation found.
#include <algorithm>
#include <iostream>

#include "base/value.h"
#include "building/building.h"
#include "cli/form.h"
#include "cli/pictures.h"
#include "component/json.h"

namespace tarn::cli {
namespace {

using Rows = std::vector<std::vector<Json>>;

Json real(double value) { return to_json(Value(value)); }

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
  show_rows({"consumer", "meter"}, kElectricConsumers, "", [&](int consumer) -> std::vector<Json> {
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
  std::cout << "\npower factor " << shown(real(inputs.BldgPowerFactor)) << ", " << shown(real(inputs.AddBldgFloorArea))
            << " ft2 besides the systems', electric generation " << shown(real(inputs.ElecGenEfficiency)) << " %\n";
}

double year_of(const Array<R8, kMeters, 12>& monthly, int meter) {
  double sum = 0;
  for (int month = 1; month <= 12; ++month) sum += monthly(meter, month);
  return sum;
}

void show_results(const BLD_Results& results) {
  std::cout << "\nresults: " << results.Location.trimmed() << "; " << shown(real(results.TotFlrArea))
            << " ft2, cooling " << shown(real(results.TotClgLoad)) << " tons, heating "
            << shown(real(results.TotHtgLoad)) << " MBH; unmet hours " << shown(real(results.UnmetClgHours))
            << " cooling, " << shown(real(results.UnmetHtgHours)) << " heating\n";
  const std::string money = results.CurrSymbol.trimmed();
  const auto label = [](auto labels, int code) { return std::string(text_of(labels, static_cast<int16_t>(code))); };
  show_rows({"component", "site, kBtu", "source, kBtu", "cost, " + money}, kEnergyComponents, "no energy",
            [&](int c) -> std::vector<Json> {
              if (results.AnnSiteEnComp(c) == 0.0 && results.AnnCostComp(c) == 0.0) return {};
              return {label(labels<BLD_SystemComponents>, c), real(results.AnnSiteEnComp(c)),
                      real(results.AnnSrceEnComp(c)), real(results.AnnCostComp(c))};
            });
  show_rows({"meter", "a year", "unit", "energy, " + money, "demand, " + money, "fixed, " + money, "tax, " + money,
             "total, " + money},
            kMeters, "no metered energy", [&](int meter) -> std::vector<Json> {
              const double energy = year_of(results.MonMetEnergy, meter), total = year_of(results.MonMetCharge, meter);
              if (energy == 0 && total == 0) return {};
              return {label(labels<BLD_PowerProfiles>, meter),    real(energy),
                      results.EnergyUnits(meter).trimmed(),       real(year_of(results.MonEnCharge, meter)),
                      real(year_of(results.MonDmdCharge, meter)), real(year_of(results.MonFixCharge, meter)),
                      real(year_of(results.MonTaxCharge, meter)), real(total)};
            });
}

/// The greatest hour of each meter that has any.
void show_profiles(BLD_Building& building) {
  show_rows({"meter", "greatest hour", "day of the year", "hour", "year's sum"}, kMeters, "",
            [&](int meter) -> std::vector<Json> {
              const auto& hours = building.GetBuildingProfile(static_cast<int16_t>(meter))->Power.items;
              const auto most = std::ranges::max_element(hours, {}, &R4::value);
              if (*most == 0.0F) return {};
              double sum = 0;
              for (const R4& hour : hours) sum += hour;
              const auto at = static_cast<int>(most - hours.begin());
              return {std::string(text_of(labels<BLD_PowerProfiles>, static_cast<int16_t>(meter))), real(*most),
                      at / 24 + 1, at % 24, real(sum)};
            });
}

}  // namespace

void show_building(Database& database, StoredEntity& entity) {
  auto& building = dynamic_cast<BLD_Building&>(entity);
  const auto general = building.GetBuildingGeneral();
  std::cout << general->Name.trimmed() << "  " << (general->Simulated ? "simulated" : "not simulated")
            << (general->Simulated && building.HasChanged ? "; changed since it was simulated" : "") << '\n';
  show_inputs(database, *building.GetBuildingInputs());
  const auto has = [&](std::string_view part) {
    const Member* found = find_part(building.info(), part);
    return found->part_count(building) > 0;
  };
  if (has("BuildingResults")) show_results(*building.GetBuildingResults());
  if (has("BuildingProfile")) show_profiles(building);
}

}  // namespace tarn::cli
