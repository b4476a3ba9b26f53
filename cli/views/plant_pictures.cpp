// Chillers and plants as their input forms show them.
#include <algorithm>
#include <array>
#include <iostream>

#include "cli/units.h"
#include "cli/views/form.h"
#include "cli/views/pictures.h"
#include "reflect/json.h"
#include "tarn/base/value.h"
#include "tarn/chiller.h"
#include "tarn/plant.h"

namespace tarn::cli {
namespace {

std::string text(Database& database, Object& object, std::string_view field) {
  return element_text(database, object, object.info().find(field), {});
}

// ---- chillers

void show_map(const CHL_OperatingMode& mode, const std::string& what, std::string_view property) {
  const Member &values = mode.info().find(property), &entering = mode.info().find("MapRowHeading");
  const int rows = std::clamp<int>(mode.NumRows(), 0, kMapRows),
            columns = std::clamp<int>(mode.NumColumns(), 0, kMapColumns);
  if (rows == 0 || columns == 0) return;
  const bool stages = CHL_MapDataTypes{mode.ColumnDataType} == CHL_MapDataTypes::DT_CHILLER_UNLOADING_STAGES;
  std::vector<std::string> heads{"entering " + std::string(shown_unit(entering.unit))};
  for (int c = 1; c <= columns; ++c)
    heads.push_back((stages ? "stage " : "") + std::to_string(mode.MapColumnHeading(c)) + (stages ? "" : " %"));
  std::vector<std::vector<Json>> table;
  for (int r = 1; r <= rows; ++r) {
    auto& row = table.emplace_back();
    row.push_back(shown_element(mode, entering, std::array{r}));
    for (int c = 1; c <= columns; ++c) row.push_back(shown_element(mode, values, std::array{r, c}));
  }
  std::cout << '\n' << what << ", " << shown_unit(unit_of(mode, values)) << '\n';
  print_table(heads, table);
}

// ---- plants

std::string state(const PLT_Plant& plant) {
  std::string line = plant.General.Sized ? "sized" : "not sized";
  line += plant.General.Simulated ? ", simulated" : ", not simulated";
  if (plant.General.Sized && plant.DesHasChanged) line += "; stale: changed since it was sized";
  if (plant.General.Simulated && plant.SimHasChanged) line += "; stale: changed since it was simulated";
  return line;
}

void show_systems(Database& database, PLT_SystemSelect& select) {
  const Member& id = select.info().find("SystemID");
  std::vector<std::vector<Json>> rows;
  for (int i = 1; i <= kPlantSystems; ++i) {
    if (select.SystemID(i) == 0) continue;
    rows.push_back({element_text(database, select, id, std::span<const int>(&i, 1)),
                    std::max<int>(1, select.SystemMultiplier(i))});
  }
  std::cout << (rows.empty() ? "\nserves no system yet\n" : "\n");
  if (!rows.empty()) print_table({"system", "multiplier"}, rows);
}

void show_equipment(Database& database, const char* what, PLT_EquipmentList& list) {
  if (list.NumEquipment() == 0) return;
  std::cout << '\n' << what << '\n';
  std::vector<std::vector<Json>> rows;
  for (int i = 1; i <= list.NumEquipment(); ++i) {
    PLT_Equipment& piece = list.Equipment(i);
    const auto shown = [&](const char* field) { return text(database, piece, field); };
    rows.push_back(
        {i, shown("LibraryID"), shown("EquipmentID"), shown("TowerID"), shown("Sequence"), shown("SizingShare")});
  }
  print_table({"piece", "library", "equipment", "tower", "sequence", "share, %"}, rows);
}

void show_loops(Database& database, PLT_Details& details) {
  std::vector<Titled> loops, pumps;
  std::string unused;
  for (PLT_PumpLoop* loop : details.loops()) {
    if (!loop->Used) {
      unused += (unused.empty() ? "" : ", ") + loop->Name();
      continue;
    }
    loops.push_back({loop->Name(), loop});
    for (int i = 1; i <= loop->NumPumps(); ++i) pumps.push_back({loop->Pumps(i).Name(), &loop->Pumps(i)});
  }
  std::cout << '\n';
  show_side_by_side(database, "loop", loops);
  std::cout << "not used: " << unused << "\n\n";
  show_side_by_side(database, "pump", pumps);
}

}  // namespace

void show_chiller(Database& database, StoredEntity& entity) {
  auto& chiller = dynamic_cast<CHL_Chiller&>(entity);
  show_fields(database, chiller);
  for (CHL_OperatingMode* mode : {&chiller.CoolingMode, &chiller.HeatRecoveryMode, &chiller.HeatingMode}) {
    std::cout << '\n' << mode->Name();
    if (is_blank(*mode)) {
      std::cout << ": nothing set\n";
      continue;
    }
    std::cout << '\n';
    show_fields(database, *mode);
    show_map(*mode, "capacity", "MapCapacity");
    show_map(*mode, "power", "MapPower");
  }
}

void show_plant(Database& database, StoredEntity& entity) {
  auto& plant = dynamic_cast<PLT_Plant&>(entity);
  PLT_Details& details = plant.Details;
  std::cout << plant.General.Name.trimmed() << "  " << text(database, plant.General, "PlantType") << '\n'
            << state(plant) << "; " << plant.General.NumOutputs << " outputs\n";
  show_systems(database, plant.SystemSelect);
  std::cout << '\n';
  show_side_by_side(database, "", {{"cooling", &details.ConfigCooling}, {"heating", &details.ConfigHeating}});
  show_equipment(database, "cooling equipment", details.CoolingEqpt);
  show_equipment(database, "heating equipment", details.HeatingEqpt);
  show_equipment(database, "heat recovery equipment", details.HeatRecEqpt);
  show_loops(database, details);
  std::cout << "\ndetails\n";
  show_fields(database, details);
  const auto type = PLT_PlantTypes{plant.General.PlantType};
  if (type == PLT_PlantTypes::PT_SERVICE_HOT_WATER || type == PLT_PlantTypes::PT_GENERIC_SERVICEHW) {
    std::cout << "\nservice hot water\n";
    show_form(database, plant.ServiceHotWaterDetails);
  }
  for (const Member& member : plant.info().members) {
    if (!member.is_part() || !member.owned().resize || member.part_count(plant) == 0) continue;
    std::cout << '\n' << member.owned().name << '\n';
    show_form(database, member.part(plant, 1));
  }
}

}  // namespace tarn::cli
