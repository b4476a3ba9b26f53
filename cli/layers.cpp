#include "cli/layers.h"

#include <iostream>

#include "base/nearest.h"
#include "envelope/materials.h"

namespace tarn::cli {
namespace {

constexpr int kFirstSlot = 2, kLastSlot = CA_ConstructionAssly::kLayers - 1;

int print_materials(const Call& call) {
  std::vector<std::vector<Json>> rows;
  Json all = Json::array();
  for (const Material& m : materials()) {
    rows.push_back({Json(m.name), m.inches, m.conductivity, m.density, m.specific_heat, m.resistance});
    all.push_back({{"name", m.name},
                   {"inches", m.inches},
                   {"conductivity", m.conductivity},
                   {"density", m.density},
                   {"specific_heat", m.specific_heat},
                   {"resistance", m.resistance}});
  }
  if (call.json)
    print_json(all);
  else
    print_table({"material", "in", "Btu/(hr.ft.F)", "lb/ft3", "Btu/(lb.F)", "hr.ft2.F/Btu"}, rows);
  return kClean;
}

const Material& material_of(const Call& call) {
  if (const Material* found = material(call.material)) return *found;
  std::vector<std::string_view> names;
  for (const Material& each : materials()) names.push_back(each.name);
  throw UsageError("There is no material \"" + call.material + "\"; " + did_you_mean(call.material, names) + " tarn " +
                   call.group + " layer materials lists them.");
}

void fill(CA_Layer& layer, const Material& of) {
  layer.Name = of.name;
  layer.LayerUsed = true;
  layer.SetThicknessInches(of.inches);
  layer.Conductivity = of.conductivity;
  layer.Density = of.density;
  layer.SpecificHeat = of.specific_heat;
  layer.ThermalResistance = of.resistance;
  layer.Weight = 0;
  layer.derive();
}

/// A slot that layers come into and go from; slots 1 and 10 stay.
int16_t slot_of(const std::string& word) {
  const int slot = number_of(word);
  if (slot < kFirstSlot || slot > kLastSlot)
    throw UsageError("Slot " + word +
                     " cannot be changed; give a slot from 2 to 9, 1 and 10 are the fixed outer ones.");
  return static_cast<int16_t>(slot);
}

int16_t used_slot_of(CA_ConstructionAssly& construction, const std::string& word) {
  const int16_t slot = slot_of(word);
  if (!construction.layer(slot).LayerUsed) throw UsageError("Slot " + word + " has no layer.");
  return slot;
}

/// What stood in slot 9 would be lost.
void check_room(CA_ConstructionAssly& construction) {
  if (construction.layer(kLastSlot).LayerUsed)
    throw UsageError("Slot 9 is used, so that there is no room for another layer; remove one first.");
}

struct Change {
  std::string what;  // "inserted"
  int16_t slot;
  std::string name;
};

Change changed(CA_ConstructionAssly& construction, const Call& call) {
  const std::string& action = call.words[0];
  if (action == "insert") {
    const int16_t wanted = slot_of(call.words[2]);
    const Material* of = call.material.empty() ? nullptr : &material_of(call);
    check_room(construction);
    const int16_t slot = construction.InsertLayer(wanted);
    if (of) fill(construction.layer(slot), *of);
    return {"inserted", slot, construction.layer(slot).Name.trimmed()};
  }
  const int16_t slot = used_slot_of(construction, call.words[2]);
  const CA_Layer::Content content = construction.layer(slot).content();
  const std::string name = construction.layer(slot).Name.trimmed();
  if (action == "remove") return {"removed", construction.RemoveLayer(slot), name};
  const int16_t to = slot_of(call.words[3]);
  construction.RemoveLayer(slot);
  const int16_t at = construction.InsertLayer(to);
  construction.layer(at).set_content(content);
  return {"moved", at, name};
}

}  // namespace

int run_layer(const Call& call, const EntityKind& kind) {
  const std::string usage =
      "Write tarn " + call.group +
      " layer insert N SLOT [--material NAME], layer remove N SLOT, layer move N SLOT TO, or layer "
      "materials.";
  const std::string action = call.words.empty() ? "" : call.words[0];
  if (action == "materials" && call.words.size() == 1) return print_materials(call);
  const size_t count = action == "move" ? 4 : action == "insert" || action == "remove" ? 3 : 0;
  if (count == 0 || call.words.size() != count) throw UsageError(usage);
  if (!call.material.empty() && action != "insert") throw UsageError("--material goes with layer insert.");
  COM_ProjectData project;
  const auto database = open_project(project, call, Use::Writing);
  const auto entity = make_entity(project, kind);
  Call with_index = call;
  with_index.words = {call.words[1]};
  entity->Load(index_of(with_index, *database,
                        {std::string(entity->kind().index_table), std::string(kind.one), std::string(kind.group)}));
  auto& construction = dynamic_cast<CA_ConstructionAssly&>(*entity);
  const Change change = changed(construction, call);
  construction.sum_layers();
  entity->Save();
  if (call.json)
    print_json({{"index", entity->Index}, {"slot", change.slot}, {"layer", change.name}});
  else
    std::cout << kind.one << ' ' << entity->Index << ": " << change.name << ' ' << change.what << ", slot "
              << change.slot << '\n';
  return kClean;
}

std::vector<std::string> told_errors(StoredEntity& entity, Json& rows) {
  std::vector<std::string> told;
  auto* construction = dynamic_cast<CA_ConstructionAssly*>(&entity);
  if (!construction) return told;
  for (Json& row : rows) {
    construction->Load(row.at("nIndex").get<int16_t>());
    try {
      const double error = construction->coefficient_accuracy().worst();
      if (error <= CA_ConstructionAssly::kToldError) continue;
      row["transfer_function_error"] = error;
      told.push_back(construction->Name.trimmed() + ": its 12 terms hold the response of its layers to " +
                     shown(Json(error * 100)) + " % only; what slows it most: " + construction->slowest_layers() + ".");
    } catch (const Error& failure) {
      told.push_back(construction->Name.trimmed() + " has no transfer functions: " + failure.description() + ".");
    }
  }
  return told;
}

}  // namespace tarn::cli
