// An entity of one project copied into another, with all that it uses.
#pragma once

#include <string>
#include <vector>

#include "tarn/staleness.h"

namespace tarn {

/// What became of one entity of the other project.
struct EntityCopy {
  EntityName from, to;
  bool reused = false;  // an equal one was there already
};

/// Copies an entity and all that it uses, what is used before what uses it, so that the entity itself is the last. An
/// entity that is in the target under its name, with the same content and references to the same, is reused; where
/// another has its name, the copy gets a name of its own. `kind` is the word of `EntityName`, or "walls". All of it or
/// nothing: errors `NoCurrentRecord` for what is not there, `InvalidCall` for a copy into the same project, and as for
/// any load and save.
std::vector<EntityCopy> copy_entity(COM_ProjectData& from, const std::string& kind, int16_t index, COM_ProjectData& to);

/// As a JSON array, for the faces.
std::string copies_json(const std::vector<EntityCopy>& copies);

}  // namespace tarn
