// One inspection of a project: what it looks at, and the damage that it finds, each with the action that mends it.
// Check drops the actions, repair runs them, so that what is told and what is done are one.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "project/kinds.h"
#include "storage/kind.h"
#include "storage/links.h"
#include "tarn/check.h"
#include "tarn/platform/database.h"

namespace tarn {

struct Damage {
  CheckFinding told;
  std::function<void()> mend;  // null: beyond repair
  bool by_record = false;      // it brings the index in line with a record, and changes nothing else
};

/// A reference of an entity, with its name for a person.
struct NamedUse {
  Use use;
  std::string name;
};

/// A kind with what the inspection knows of it.
struct InspectedKind {
  const EntityKind& row;
  Ptr<StoredEntity> entity;                       // what is looked at now
  std::map<int32_t, std::string> names;           // of the rows, by index; those in range alone
  std::map<int32_t, std::vector<NamedUse>> uses;  // by owner, of those whose bytes can be read

  const Kind& kind() const { return entity->kind(); }
  std::string word() const { return std::string(kind().default_word); }
  std::string table() const { return std::string(kind().index_table); }
  bool has(int32_t index) const { return names.contains(index); }
};

class Inspection {
 public:
  Inspection(COM_ProjectData& of, Ptr<Database> index) : project(of), database(*index), keeper_(std::move(index)) {
    for (const EntityKind& row : entity_kinds()) kinds.push_back({row, make_entity(of, row), {}, {}});
  }

  /// The kind by the word that link tables have for it; null for none.
  InspectedKind* find(std::string_view word) {
    for (InspectedKind& each : kinds) {
      if (each.kind().default_word == word) return &each;
    }
    return nullptr;
  }
  /// Beyond repair without `mend`. The remedy says "Repair ..." or what a person can do.
  void add(CheckFinding told, std::function<void()> mend = nullptr) {
    told.repairable = mend != nullptr;
    damages.push_back({std::move(told), std::move(mend)});
  }
  /// The index is to say what a record says.
  void add_by_record(CheckFinding told, std::function<void()> mend) {
    add(std::move(told), std::move(mend));
    damages.back().by_record = true;
  }
  /// Of an entity.
  CheckFinding of(const InspectedKind& kind, int32_t index, std::string property) const {
    const auto name = kind.names.find(index);
    return {.kind = kind.word(),
            .index = index,
            .name = name == kind.names.end() ? std::string() : name->second,
            .property = std::move(property)};
  }
  std::string file_name(const std::string& path) const { return path.substr(path.rfind('/') + 1); }

  COM_ProjectData& project;
  Database& database;
  std::vector<InspectedKind> kinds;
  std::vector<Damage> damages;
  Progress progress = [](size_t, size_t) {};
  size_t looked_at = 0;  // entities

 private:
  Ptr<Database> keeper_;
};

// ---- what is inspected, in this order
/// The index database itself. False where no more can be read before it is mended.
bool inspect_database(Inspection& on);
/// What a crash left, and files that belong to nobody.
void inspect_files(Inspection& on);
/// Rows and records of one kind.
void inspect_entities(Inspection& on, InspectedKind& kind);
/// Values of the object that was read, as they stand in its record.
void inspect_values(Inspection& on, InspectedKind& kind, int16_t index);
/// Link rows and references, of all kinds.
void inspect_links(Inspection& on);
/// Changed flags that must be set.
void inspect_marks(Inspection& on);
/// Design results of air systems.
void inspect_results(Inspection& on);
void inspect_weather(Inspection& on);
void inspect_preferences(Inspection& on);

/// All of it, in the open transaction.
void inspect(Inspection& on);

// ---- what several of them need
/// Whether the files have bytes of the entity of an index; a record of zeros was never written.
bool has_record(const InspectedKind& kind, int32_t index);
/// The indexes that a kind's files have bytes for, from 1.
std::vector<int16_t> stored_indexes(const Inspection& on, const InspectedKind& kind);
/// The first number of an object that is NaN or infinite, with its class and element; empty where all are numbers.
std::string number_that_is_none(Object& object);
/// The files of the project's folder that begin with its prefix, by name.
std::vector<std::string> project_files(const COM_ProjectData& project);
/// Gives a record its row, under its own name where that is free, and else under another one.
void restore_row(InspectedKind& kind, int16_t index);
/// Every record that can be read gets a row.
void restore_rows(const Inspection& on, InspectedKind& kind);
/// Sets the changed flags of an entity and of what rests on it.
void mark_stale(InspectedKind& kind, int16_t index);
/// Writes the object as it is, marks what rests on it, and brings its row in line.
void store_mended(InspectedKind& kind);
/// The statements of the script of a new index.
std::vector<std::string> schema_statements();

}  // namespace tarn
