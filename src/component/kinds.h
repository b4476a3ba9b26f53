// The kinds of entity that a project keeps, in the order in which they are listed, exported and given defaults: what is
// referred to stands before what refers to it. A new kind is one row here.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "storage/entity.h"
#include "storage/project.h"

namespace tarn {

struct EntityKind {
  std::string_view group, one;  // as a person names them: "windows", "window"
  std::string_view class_name;
  std::string_view factory;               // of COM_ProjectData
  std::string_view section = class_name;  // of an exchange text: the class, and the kind where two share it
  void (*start)(StoredEntity&, std::string_view type) = nullptr;  // a new one of a type, empty for the usual; null: no
                                                                  // types
  void (*standard)(StoredEntity&) = nullptr;  // fills the default of a new project from what the product ships; null
                                              // where the table of default records has it, or none is kept
  /// Fills a new one from a file of another program, and returns what a person should know of the result, a line each.
  std::vector<std::string> (*import_file)(StoredEntity&, const std::string& path) = nullptr;
  void (*derive)(Object&) = nullptr;         // what follows inside a part, after an edit of it
  void (*compute)(StoredEntity&) = nullptr;  // what follows from the inputs, after an edit
};

std::span<const EntityKind> entity_kinds();

/// A new entity from the project's factory. Errors are thrown, not trapped.
Ptr<StoredEntity> make_entity(COM_ProjectData& project, const EntityKind& kind);

}  // namespace tarn
