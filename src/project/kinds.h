// The kinds of entity that a project keeps, in the order in which they are listed, exported and given defaults: what is
// referred to stands before what refers to it. A new kind is one row here: the project's factory and file name, the
// list of classes, default records, exchange, command line and Python follow from it.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tarn/project.h"
#include "tarn/storage/entity.h"

namespace tarn {

/// A file of the project: the property that names it, and what its name ends with.
struct ProjectFile {
  std::string_view property, suffix;
};

struct EntityKind {
  std::string_view subject;            // under which they are listed: "Envelope"
  std::string_view group, one;         // as a person names them: "windows", "window"
  std::string_view factory;            // of the project: "NewWindow"
  ProjectFile file;                    // of the kind's records; of the default where each entity has a file of its own
  char letter = 0;                     // of the files that the entities have, "A" in "JOBA01.DAT"
  char results_letter = 0;             // of those that a calculation makes for them
  std::string_view section = {};       // of an exchange text: the class, and the kind where two share it
  void (*prepare)(Object&) = nullptr;  // what the factory sets besides files and database
  void (*start)(StoredEntity&, std::string_view type) = nullptr;  // a new one of a type, empty for the usual; null: no
                                                                  // types
  std::vector<std::string_view> (*types)() = nullptr;             // what `start` takes, as a person writes them
  void (*standard)(StoredEntity&) = nullptr;  // fills the default of a new project from what the product ships; null
                                              // where the table of default records has it, or none is kept
  void (*compute)(StoredEntity&) = nullptr;   // what follows from the inputs, after an edit
  std::string_view class_name = {};
  ObjectPtr (*create)() = nullptr;
};

std::span<const EntityKind> entity_kinds();

/// The word that link tables and messages have for a kind, by its place: "System".
std::string_view word_of(size_t kind);
/// The place of a kind by that word or by its group, "air-systems", letter case ignored; none for no kind.
std::optional<size_t> place_of(std::string_view word);

/// "air systems" of "air-systems".
std::string spoken(const EntityKind& kind);
/// Of the kinds that have any: how they are spoken, and how many rows their index tables have.
std::vector<std::pair<std::string, int64_t>> entity_counts(Database& index);

/// An entity of the kind without a project, which knows its kind.
Ptr<StoredEntity> blank_entity(const EntityKind& kind);
/// A new entity from the project's factory. Errors are thrown, not trapped.
Ptr<StoredEntity> make_entity(COM_ProjectData& project, const EntityKind& kind);

}  // namespace tarn
