// One assignment as a person writes it: "Height=4", "GlassTrans(2)=0.78", "Layer(2).Thickness=8".
#pragma once

#include <string>
#include <vector>

#include "cli/command.h"
#include "reflect/json.h"
#include "tarn/storage/entity.h"

namespace tarn::cli {

struct Assignment {
  Object* object;  // the entity, or a part of it
  const Member* member;
  std::vector<int> at;
  std::string value;
  std::string place;  // "Layer(2).", before the property
  Json json = {};     // the value, in the units of the file

  std::string name() const { return place + element_name(*member, at); }
};

/// Finds the property that a word sets; a part after the last one is added. Error `UsageError` says what is wrong with
/// the word, and names the nearest right one.
Assignment parsed(StoredEntity& entity, const std::string& word);

/// A range stands for as many assignments: "HourlyValue(1, 8 to 17)=100". Error `UsageError` for one that is none.
std::vector<std::string> each_of(const std::string& word);

}  // namespace tarn::cli
