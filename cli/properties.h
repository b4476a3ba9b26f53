// The properties that a person sets, as help, completion and the manual pages tell of them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "project/kinds.h"
#include "tarn/reflect/members.h"
#include "tarn/storage/entity.h"

namespace tarn::cli {

/// A part on the way to a property, and how many of it there are.
struct PartStep {
  const OwnedPart* part;
  int count;

  /// "Floor", "Wall(1 to 8)", "ZoneData(1 to ...)" of a list that grows.
  std::string text() const;
};

/// One of them, of the entity or of a part of it.
struct Settable {
  std::vector<PartStep> steps;
  Object& owner;
  const Member& member;

  /// "Layer(1 to 10).", what stands before the property.
  std::string prefix() const;
};

/// In interface order, those of the entity before those of its parts, a list's by those of its first element. Results
/// of calculations are left out: an edit clears them. The entity is a sample, whose empty lists get an element.
void for_each_settable(StoredEntity& sample, const std::function<void(const Settable&)>& action);

/// Whether a class has the name of its entity to set: the entity itself, or the header among its parts.
bool holds_name(const ClassInfo& info);

/// "text of 255", "whole number", "number", "true or false", "code".
std::string type_text(const Member& member);
/// Of a reference: "index or name of a Schedule".
std::string reference_text(const Member& member);
/// "0 and above", "0 to 4", or of a reference as above; empty where any value of the type is taken.
std::string allowed_text(const Settable& property);
/// A line for each code: "8  VAV  variable air volume"; none for a property without codes.
std::vector<std::string> code_lines(const Settable& property);

}  // namespace tarn::cli
