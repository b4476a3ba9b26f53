// Uses of one entity by another: a reference is a field that holds another entity's index, a link row says the same in
// the index database, where it leads from what changes to what rests on it. Both are kept in line here.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/members.h"

namespace tarn {

class Database;

/// Calls `action` on every reference of an object and its parts that is not 0; what it returns is stored, where it
/// differs. `place` is the field as a person names it: "Wall(2).WindowType(1)".
using ReferenceAction = std::function<int32_t(std::string_view kind, int32_t index, const std::string& place)>;
void for_each_reference(Object& object, const ReferenceAction& action);

/// The index table of a kind by the word that link tables have for it.
std::string index_table_of(std::string_view kind);

/// A reference with its place.
struct Use {
  std::string place;
  std::string_view kind;
  int32_t index;
  bool operator==(const Use&) const = default;
};
std::vector<Use> uses_of(Object& object);

/// Brings the rows of the owner's link tables ("Space_Wall_Links" by Space_ID, for every kind that one of its fields
/// may refer to) in line with its references: adds the missing, removes the others. A reference to what is not there is
/// logged.
void write_links(Object& owner, Database& database, std::string_view owner_kind, int16_t index);

/// The link row of a reference.
bool has_link(Database& database, std::string_view owner_kind, int16_t owner, const Use& use);
/// What it refers to is there.
bool is_there(Database& database, const Use& use);
/// Sets the references to 0 that are lost, and logs each: what they referred to was deleted, and its index may since
/// have gone to another entity.
void clear_lost_references(Object& owner, const std::string& title, const std::function<bool(const Use&)>& lost);

}  // namespace tarn
