// The words of the command line as data: help, the nearest right word and the manual page read them here.
#pragma once

#include <string>
#include <vector>

#include "reflect/members.h"

namespace tarn::cli {

struct Group {
  std::string name, help;
  std::vector<std::pair<std::string, std::string>> verbs;  // with help
};

std::vector<Group> all_groups();

/// "GlassTrans(1 to 3)", "Load(nRecNum I2)".
std::string signature(const Member& member);

/// Bytes of an object's record, those of an entity with its parts; of a file of its own without lists that grow.
size_t record_length(Object& object);

}  // namespace tarn::cli
