#include "cli/layers.h"

#include <array>

#include "base/nearest.h"
#include "cli/choose.h"
#include "cli/units.h"
#include "envelope/materials.h"

namespace tarn::cli {
namespace {

constexpr int kFirstSlot = 2, kLastSlot = CA_ConstructionAssly::kLayers - 1;

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

}  // namespace

int print_materials(const Call& call) {
  constexpr std::array kUnits{"in", "Btu/(hr.ft.F)", "lb/ft3", "Btu/(lb.F)", "hr.ft2.F/Btu"};
  std::vector<std::vector<Json>> rows;
  Json all = Json::array();
  for (const Material& m : materials()) {
    const std::array values{m.inches, m.conductivity, m.density, m.specific_heat, m.resistance};
    auto& row = rows.emplace_back();
    row.emplace_back(m.name);
    for (size_t i = 0; i < kUnits.size(); ++i) row.emplace_back(shown_value(values[i], kUnits[i]));
    all.push_back({{"name", m.name},
                   {"inches", m.inches},
                   {"conductivity", m.conductivity},
                   {"density", m.density},
                   {"specific_heat", m.specific_heat},
                   {"resistance", m.resistance}});
  }
  std::vector<std::string> heads{"material"};
  for (const char* unit : kUnits) heads.emplace_back(shown_unit(unit));
  if (call.json)
    print_json(all);
  else
    print_table(heads, rows);
  return kClean;
}

void check_layer_words(const Call& call) {
  const std::string action = call.words.empty() ? "" : call.words[0];
  const size_t count = action == "move" ? 4 : action == "insert" || action == "remove" ? 3 : 0;
  if (count == 0 || call.words.size() != count) {
    throw UsageError("Write tarn " + call.group +
                     " layer insert N SLOT [--material NAME], layer remove N SLOT, layer move N SLOT TO, or layer "
                     "materials.");
  }
  if (!call.material.empty() && action != "insert") throw UsageError("--material goes with layer insert.");
}

LayerChange change_layers(CA_ConstructionAssly& construction, const Call& call) {
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

Json told_accuracy(const StoredEntity& entity) {
  Json out = Json::object();
  const auto* construction = dynamic_cast<const CA_ConstructionAssly*>(&entity);
  if (!construction) return out;
  try {
    const Accuracy accuracy = construction->coefficient_accuracy();
    if (const std::string text = construction->told(accuracy); !text.empty())
      out = {{"transfer_function_error", accuracy.worst()}, {"transfer_function_message", text + "."}};
  } catch (const Error& failure) {
    out["transfer_function_message"] = "There are no transfer functions: " + failure.description() + ".";
  }
  return out;
}

std::string told_accuracies(StoredEntity& entity, Json& rows) {
  std::string lines;
  auto* construction = dynamic_cast<CA_ConstructionAssly*>(&entity);
  if (!construction) return lines;
  for (Json& row : rows) {
    try {
      construction->Load(row.at("nIndex").get<int16_t>());
    } catch (const Error&) {
      continue;  // a row without a record is not what this is about
    }
    const Json told = told_accuracy(*construction);
    row.update(told);
    if (!told.empty())
      lines += construction->Name.trimmed() + ": " + told.at("transfer_function_message").get<std::string>() + "\n";
  }
  return lines;
}

}  // namespace tarn::cli
