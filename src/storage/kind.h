// What one kind of stored entity declares of its own; everything else of its life is `StoredEntity`. Data only.
#pragma once

#include "storage/staleness.h"
#include "tarn/platform/database.h"
#include "tarn/reflect/describe.h"

namespace tarn {

class StoredEntity;

/// A column of the index table that shows a property; `Save` writes it.
struct SummaryColumn {
  std::string_view name;
  Cell (*get)(const Object&);
  std::string_view property = {}, part = {};  // that it shows; of the part, where it is a part's
  std::string_view unit = {};                 // of a computed value
};

template <typename C, auto P>
SummaryColumn summary(std::string_view name) {
  return {name,
          [](const Object& o) {
            Value value;
            put(value, static_cast<typename detail::TypeOf<P>::Native>(static_cast<const C&>(o).*P));
            return cell(value);
          },
          member_name<P>()};
}

/// A column that shows a property of a part.
template <auto Part, auto Field>
SummaryColumn part_summary(std::string_view name) {
  return {name,
          [](const Object& o) {
            Value value;
            const auto& part = static_cast<const detail::ClassOf<Part>&>(o).*Part;
            put(value, static_cast<typename detail::TypeOf<Field>::Native>(part.*Field));
            return cell(value);
          },
          member_name<Field>(), member_name<Part>()};
}

/// A column that shows a computed value.
template <typename C, auto Get>
SummaryColumn computed(std::string_view name, std::string_view unit = {}) {
  return {name, [](const Object& o) { return cell((static_cast<const C&>(o).*Get)()); }, {}, {}, unit};
}

/// A changed flag: the column of the index table, which alone keeps it, and its place in an object.
struct ChangedFlag {
  std::string_view column;
  bool& (*of)(StoredEntity&);
};

template <typename C, auto P>
ChangedFlag changed_flag(std::string_view column) {
  return {column, [](StoredEntity& entity) -> bool& { return static_cast<C&>(entity).*P; }};
}

struct Kind {
  std::string_view class_name;
  std::string_view index_table;
  std::string_view default_word;  // of the kind, in messages and in names given to nameless entities: "Window  3"
  std::string_view missing_row_message;  // of `Load`; the number follows
  std::vector<SummaryColumn> columns;    // besides nIndex and szName
  std::vector<ChangedFlag> flags = {};   // after them
  Reach reach;
  std::string_view name_word = {};           // of default names, where it is another
  bool row_needed = false;                   // `Load` without a row is an error
  std::string_view no_table_message = {};    // where the rows cannot be read; the failure follows
  std::string_view name_query_message = {};  // where the search for a name fails; the failure follows
  std::string_view lost_row_message = {};    // of `Save` of an entity whose row is gone
  bool saved_anew = false;                   // `Save` of an entity whose row is gone adds a new one
  std::string_view link_owner = {};  // "Space": `Save` keeps Space_Wall_Links and the like in line with the references

  // Queries of its index table.
  std::string all_rows = "SELECT * FROM " + std::string(index_table) + " ORDER BY nIndex ASC";
  std::string row_of_index = "SELECT * FROM " + std::string(index_table) + " WHERE nIndex = ?";
  std::string others_of_name = "SELECT * FROM " + std::string(index_table) + " WHERE szName = ? AND nIndex <> ?";
};

}  // namespace tarn
