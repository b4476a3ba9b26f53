// What a list shows, sorts and filters by: columns of the index table, and properties of the entities by name.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/part_path.h"
#include "project/kinds.h"
#include "tarn/base/value.h"
#include "tarn/platform/cell.h"
#include "tarn/reflect/members.h"
#include "tarn/storage/entity.h"

namespace tarn::cli {

/// A value as lists compare and print it.
struct Listed {
  Json json;                     // null for what the entity does not have: a zone too many
  std::string text;              // as a person reads it
  std::optional<double> number;  // of numbers, codes and truths
  std::string code;              // the name of a code
  std::string_view unit;         // in which the number is stored
  std::string_view target = {};  // the kind that a reference is to, where the entity tells which
};

/// A column of the index table, or a property: "Height", "GlassTrans(2)", "Layer(2).Thickness", "Name".
class Column {
 public:
  /// Error `UsageError` for a word that is neither; the message names the nearest property.
  Column(const EntityKind& kind, const std::string& word);
  /// A column of the index table as it is.
  static Column of_table(const StoredEntity& entity, const std::string& name);

  const std::string& title() const { return title_; }
  /// The unit of the values as they are stored; empty where it differs from entity to entity.
  std::string_view unit() const { return unit_; }
  /// Of a property: its codes, type and unit; null for a column of the index table as it is.
  const Member* member() const { return member_; }
  /// The column of the index table that holds it; empty where the record must be read.
  const std::string& in_row() const { return in_row_; }

  Listed of_row(const Cell& cell) const;
  Listed of_record(Object& entity) const;

 private:
  Column() = default;
  void find_property(const ClassInfo& info, const std::string& name);
  Listed listed(const Value& value, std::span<const Label> labels) const;

  std::string title_, in_row_;
  std::string_view unit_;
  PartPath parts_;
  const Member* member_ = nullptr;
  std::vector<int> at_;
};

/// Of "Name,GlassTrans(2)": commas between brackets separate nothing.
std::vector<Column> columns_named(const EntityKind& kind, const std::string& words);

/// The entity of a list that is being looked at: its row, and its record, which is read once, when it is asked for.
class ListedEntity {
 public:
  ListedEntity(StoredEntity& entity, std::map<std::string, Cell> row) : entity_(entity), row_(std::move(row)) {}

  Listed value(const Column& column);
  const std::map<std::string, Cell>& row() const { return row_; }

 private:
  StoredEntity& entity_;
  std::map<std::string, Cell> row_;
  bool loaded_ = false;
};

}  // namespace tarn::cli
