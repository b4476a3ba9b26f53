// The equipment of a plant and its order of priority: add, remove, order.

#include <algorithm>

#include "base/nearest.h"
#include "cli/assignments.h"
#include "cli/entities.h"
#include "cli/properties.h"
#include "storage/kind.h"
#include "tarn/plant.h"

namespace tarn::cli {
namespace {

struct List {
  std::string_view word, name;  // "cooling", "CoolingEqpt"
  PLT_EquipmentList PLT_Details::*list;
};
constexpr List kLists[]{{"cooling", "CoolingEqpt", &PLT_Details::CoolingEqpt},
                        {"heating", "HeatingEqpt", &PLT_Details::HeatingEqpt},
                        {"heat-recovery", "HeatRecEqpt", &PLT_Details::HeatRecEqpt}};

const List& list_of(const std::string& word) {
  std::vector<std::string_view> words;
  for (const List& each : kLists) {
    if (each.word == word) return each;
    words.push_back(each.word);
  }
  throw UsageError("A plant has no equipment for \"" + word + "\"; " + did_you_mean(word, words));
}

/// The place of a piece in its list.
int piece_of(const PLT_EquipmentList& list, const std::string& word) {
  const int place = number_of(word);
  if (place < 1 || place > list.NumEquipment())
    throw UsageError("There is no piece " + word + "; the list has " + std::to_string(list.NumEquipment()) + ".");
  return place;
}

/// What makes a piece of the equipment that the last word names: "chiller:On the roof", "boiler:2"; without the kind it
/// is a chiller, in a heating list a boiler.
std::vector<std::string> piece_assignments(const List& list, int place, const Call& call, const Opened& on) {
  const std::string& word = call.words[3];
  const bool told = word.starts_with("chiller:") || word.starts_with("boiler:");
  const std::string one = told ? word.substr(0, word.find(':')) : list.word == "heating" ? "boiler" : "chiller";
  const auto kinds = entity_kinds();
  const auto kind = std::ranges::find(kinds, one, &EntityKind::one);
  Call of = call;
  of.words = {told ? word.substr(one.size() + 1) : word};
  const std::string table(blank_entity(*kind)->kind().index_table);
  const int16_t index = index_of(of, *on.database, {table, one, std::string(kind->group)});
  const std::string piece = "Details." + std::string(list.name) + ".Equipment(" + std::to_string(place) + ").";
  return {piece + "LibraryID=" + (one == "chiller" ? "LIB_CHILLERS" : "LIB_BOILERS"),
          piece + "EquipmentID=" + std::to_string(index), piece + "Sequence=" + std::to_string(place)};
}

/// The pieces in the order of their priority, by place.
std::vector<int> in_order(const PLT_EquipmentList& list) {
  std::vector<int> places;
  for (int place = 1; place <= list.NumEquipment(); ++place) places.push_back(place);
  std::ranges::stable_sort(places, {}, [&](int place) { return int{list.Equipment(place).Sequence}; });
  return places;
}

void put_in_order(PLT_EquipmentList& list, const std::vector<int>& places) {
  int16_t sequence = 0;
  for (const int place : places) list.Equipment(place).Sequence = ++sequence;
}

/// Those after it move up; the order stays.
void remove_piece(PLT_EquipmentList& list, int place) {
  for (int next = place; next < list.NumEquipment(); ++next)
    static_cast<EquipmentRecord&>(list.Equipment(next)) = EquipmentRecord(list.Equipment(next + 1));
  list.SetNumEquipment(static_cast<int16_t>(list.NumEquipment() - 1));
  put_in_order(list, in_order(list));
}

/// The pieces that the words name come first, the others after them as they were.
void order_pieces(PLT_EquipmentList& list, const std::vector<std::string>& words) {
  std::vector<int> places;
  const auto add = [&](int place) {
    if (std::ranges::find(places, place) == places.end()) places.push_back(place);
  };
  for (const std::string& word : words) add(piece_of(list, word));
  for (const int place : in_order(list)) add(place);
  put_in_order(list, places);
}

}  // namespace

int kind_equipment(const Call& call) {
  const std::string action = call.words.empty() ? "" : call.words[0];
  if ((action != "add" && action != "remove" && action != "order") || call.words.size() < 4 ||
      (action == "remove" && call.words.size() > 4)) {
    throw UsageError(
        "Write tarn plants equipment add N cooling|heating|heat-recovery EQUIPMENT, equipment remove N LIST PIECE, or "
        "equipment order N LIST PIECE ...; EQUIPMENT is chiller:NAME or boiler:NAME, PIECE its place in the list.");
  }
  Loaded on(call, Use::Writing, 1);
  const List& row = list_of(call.words[2]);
  auto& plant = dynamic_cast<PLT_Plant&>(*on.entity);
  PLT_EquipmentList& list = plant.Details.*row.list;
  std::vector<std::string> assignments;
  if (action == "add")
    assignments = piece_assignments(row, list.NumEquipment() + 1, call, on);
  else if (action == "remove")
    remove_piece(list, piece_of(list, call.words[3]));
  else
    order_pieces(list, {call.words.begin() + 3, call.words.end()});
  const auto edited = edit(plant, on.kind, assignments);
  on.kind.compute(plant);
  std::string order;
  for (const int place : in_order(list)) order += (order.empty() ? "" : ", ") + std::to_string(place);
  Done done = saved(
      plant, on.kind,
      "saved: " + std::string(row.word) + " equipment in the order " + (order.empty() ? "of none" : order), edited);
  done.json["order"] = in_order(list);
  return tell(call, on, {done});
}

}  // namespace tarn::cli
