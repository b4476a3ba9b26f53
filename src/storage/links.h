// Uses of one entity by another. A reference is a field that holds another entity's index. A link row says the same in
// the index database, where it leads from a changed entity to those that use it. The two are kept in agreement here.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tarn/reflect/members.h"

namespace tarn {

class Database;
struct Kind;

/// A reference: where it stands, the same in every object of the class, and what it refers to.
struct Use {
  uint64_t place;
  std::string_view kind;
  int32_t index;
  bool operator==(const Use&) const = default;
};

/// How to reach one of the object's parts; null for the object itself.
struct PartPath {
  const PartPath* owner;
  const Member* part;
  int number;
  std::string prefix() const { return (owner ? owner->prefix() : std::string()) + part_prefix(*part, number); }
};
struct ReferenceName {
  const PartPath* path;
  const Member& field;
  size_t element;  // from 0, the first subscript fastest
  std::string operator()() const;
};
/// Kinds are named by a few literals; comparing their addresses first mostly decides.
inline bool same_kind(std::string_view one, std::string_view other) {
  return (one.data() == other.data() && one.size() == other.size()) || one == other;
}

/// Calls `action` on every reference of an object and its parts that is not 0; what it returns is stored, where it
/// differs. `name` gives the field as a person names it: "Wall(2).WindowType(1)".
using ReferenceAction = std::function<int32_t(const Use& use, const ReferenceName& name)>;
void for_each_reference(Object& object, const ReferenceAction& action);

/// Under which number a kind's entities stand in the table of all equipment of plants, beside the table of their own;
/// 0 for a kind that does not.
int library_of(std::string_view kind);

/// A column of a link table that names entities of a kind, in the rows of one library where the table has several.
struct LinkColumn {
  std::string table, column;
  int library = 0;
  /// "Equipment_ID = ? AND Library_ID = 10".
  std::string condition() const;
};
/// All that name an entity of the kind: where it is the owner, by what its fields refer to, and where others use it, by
/// the kind's reach.
std::vector<LinkColumn> link_columns_of(const Kind& kind, const ClassInfo& info);

/// The tables that have a row for each use of a kind's entities by an owner, each with the column of what is used.
/// References are checked against the first.
std::vector<LinkColumn> link_tables_of(std::string_view owner, std::string_view kind);

/// Remembers in the index database, before an entity is deleted, who used it: a reference without a link row is one of
/// these, or its row was lost. Forgets what the entity itself used.
void note_deleted_uses(Database& database, const Kind& kind, int16_t index);
inline constexpr std::string_view kDeletedUses =
    "CREATE TABLE DeletedUses (szOwner TEXT, nOwner INTEGER, szKind TEXT, nIndex INTEGER);\n";

/// The index table of a kind by the word that link tables have for it.
std::string index_table_of(std::string_view kind);

std::vector<Use> uses_of(Object& object);

/// The link rows of an owner as they are now; one query for each kind that is asked for, however many its rows.
class LinkRows {
 public:
  LinkRows(Database& database, std::string_view owner_kind, int16_t owner)
      : database_(database), owner_kind_(owner_kind), owner_(owner) {}
  Database& database() const { return database_; }
  std::string_view owner_kind() const { return owner_kind_; }
  int16_t owner() const { return owner_; }
  struct Row {
    int32_t index;
    bool there;  // what it refers to
  };
  /// The reference's row, null for none.
  const Row* find(const Use& use);
  bool has(const Use& use) { return find(use) != nullptr; }
  /// What the reference refers to is there, linked or not.
  bool is_there(const Use& use);
  /// What it referred to was deleted: whatever is there now has taken the index. See `note_deleted_uses`.
  bool was_deleted(const Use& use);
  /// Of these kinds by the owner.
  void forget_deleted_uses(std::span<const std::string_view> kinds);
  const std::vector<Row>& of(std::string_view kind) { return of_kind(kind).rows; }
  /// Those of one of the tables that the kind has under this owner, by its number.
  std::vector<Row> rows(std::string_view kind, size_t table) const;

 private:
  struct OfKind {
    std::string_view kind;
    std::vector<Row> rows;  // by index
    size_t next = 0;        // references often stand in the order of their rows
  };
  OfKind& of_kind(std::string_view kind);

  Database& database_;
  std::string_view owner_kind_;
  int16_t owner_;
  std::vector<OfKind> kinds_;
};

/// The kinds that fields of a class and its parts may refer to, those that count.
using KindTest = std::function<bool(std::string_view kind)>;
std::vector<std::string_view> kinds_referred_to(const ClassInfo& info, const KindTest& counts);

/// Makes the rows of the owner's link tables ("Space_Wall_Links" by Space_ID, for each of these kinds) agree with its
/// references: adds missing rows, removes others. A reference to an entity that does not exist is logged; the other
/// references are returned.
std::vector<Use> write_links(Object& owner, LinkRows& links, std::span<const std::string_view> kinds);

/// A reference that was set to 0: the field and, of an array, the element, from 0.
struct ClearedReference {
  std::string_view field;
  size_t element;
};

/// Sets the references to 0 that are lost, and logs each with the reason, which follows what it refers to.
std::vector<ClearedReference> clear_lost_references(Object& owner, const std::string& title, std::string_view reason,
                                                    const std::function<bool(const Use&)>& lost);

}  // namespace tarn
