// The kinds of entity that a project keeps, in the order in which they are listed, exported and given defaults: what is
// referred to stands before what refers to it. A new kind is one row here.
#pragma once

#include <span>
#include <string_view>

#include "storage/entity.h"
#include "storage/project.h"

namespace tarn {

struct EntityKind {
  std::string_view group, one;  // as a person names them: "windows", "window"
  std::string_view class_name;
  std::string_view section;  // of an exchange text: the class, and the kind where two share it
  std::string_view factory;  // of COM_ProjectData
  void (*start)(StoredEntity&, std::string_view type);  // a new one of a type, empty for the usual; null: no types
  void (*derive)(Object&);         // what follows inside a part, after an edit of it; null where nothing does
  void (*compute)(StoredEntity&);  // what follows from the inputs, after an edit; null where nothing does
};

std::span<const EntityKind> entity_kinds();

/// A new entity from the project's factory. Errors are thrown, not trapped.
Ptr<StoredEntity> make_entity(COM_ProjectData& project, const EntityKind& kind);

}  // namespace tarn
