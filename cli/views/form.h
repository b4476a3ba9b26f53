// Objects as forms a person reads, by their members tables alone.
#pragma once

#include <string>
#include <vector>

#include "cli/command.h"
#include "tarn/reflect/members.h"

namespace tarn::cli {

/// An element as a person reads it: codes and references with their texts.
std::string element_text(Database& database, Object& owner, const Member& field, Subscripts at);

/// Whether nothing is set in a part: a slot that is not in use.
bool is_blank(Object& part);

/// The fields of an object, without its parts.
void show_fields(Database& database, Object& object);
/// The fields, then each part under a heading of its own, blank ones in a line.
void show_form(Database& database, Object& object);

struct Titled {
  std::string title;
  Object* object;
};
/// Objects of one class as a table: two side by side, more below each other.
void show_side_by_side(Database& database, const std::string& what, const std::vector<Titled>& objects);

}  // namespace tarn::cli
