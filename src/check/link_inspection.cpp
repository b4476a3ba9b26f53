// References and link rows: each reference has its row in every table that should have it, each row has its reference,
// and both sides of it are there.
#include <algorithm>

#include "check/inspection.h"
#include "tarn/platform/statement.h"

namespace tarn {
namespace {

using Pair = std::pair<int64_t, int64_t>;  // owner and what it uses

/// A link table as far as it is about one pair of kinds.
struct Links {
  InspectedKind& owner;
  InspectedKind& used;
  LinkColumn column;
  std::map<Pair, std::vector<int64_t>> rows;  // by pair: keys of its rows

  std::string owner_column() const { return std::string(owner.kind().link_owner) + "_ID"; }
};

Links read_links(Inspection& on, InspectedKind& owner, InspectedKind& used, const LinkColumn& column) {
  Links links{owner, used, column, {}};
  const std::string condition = column.library == 0 ? "" : " WHERE Library_ID = " + std::to_string(column.library);
  on.database.join(Database::Part::Reading);
  Statement rows(on.database,
                 "SELECT rowid, " + links.owner_column() + ", " + column.column + " FROM " + column.table + condition);
  while (rows.step()) links.rows[{rows.integer(1), rows.integer(2)}].push_back(rows.integer(0));
  return links;
}

std::function<void()> removal(Inspection& on, const std::string& table, std::vector<int64_t> keys) {
  return [&database = on.database, table, keys = std::move(keys)] {
    for (const int64_t key : keys) {
      const Cell id[]{cell(key)};
      database.Execute("DELETE FROM " + table + " WHERE rowid = ?", id);
    }
  };
}

/// One side of a link row is not in its index table. What rows lead to was not deleted, as that removes them: its own
/// row was lost, or it was taken away by other means.
void tell_missing_side(Inspection& on, const Links& links, InspectedKind& missing, int64_t index, const Pair& pair,
                       const std::vector<int64_t>& keys) {
  CheckFinding told{.kind = missing.word(), .index = static_cast<int32_t>(index), .property = links.column.table};
  const bool is_owner = &missing == &links.owner && index == pair.first;
  const std::string other = is_owner ? links.used.word() + " " + std::to_string(pair.second)
                                     : links.owner.word() + " " + std::to_string(pair.first);
  const std::string leads =
      is_owner ? "A link row says that it uses " + other : "A link row says that " + other + " uses it";
  const bool possible = index >= 1 && index <= INT16_MAX;
  if (possible && has_record(missing, static_cast<int32_t>(index))) {
    told.what = leads + ", but its own row is missing in " + missing.table() + ". Its record is there.";
    told.remedy = "Repair makes the row from the record.";
    on.add(told, [&missing, index = static_cast<int16_t>(index)] { restore_row(missing, index); });
    return;
  }
  told.what = leads + ", but there is no such " + missing.word() + ".";
  told.remedy = "Repair removes the link row; the reference reads as 0.";
  on.add(told, [&missing, index, possible, remove = removal(on, links.column.table, keys)] {
    if (possible) missing.entity->Delete(static_cast<int16_t>(index));  // its uses are noted, and marked
    remove();
  });
}

bool uses(const InspectedKind& owner, int64_t index, const InspectedKind& used, int64_t other) {
  const auto found = owner.uses.find(static_cast<int32_t>(index));
  if (found == owner.uses.end()) return true;  // cannot be read, so cannot be told
  return std::ranges::any_of(found->second, [&](const NamedUse& each) {
    return each.use.index == other && each.use.kind == used.kind().default_word;
  });
}

void inspect_rows(Inspection& on, const Links& links) {
  for (const auto& [pair, keys] : links.rows) {
    const auto [owner, other] = pair;
    const auto there = [](const InspectedKind& kind, int64_t index) {
      return index >= 1 && index <= INT16_MAX && kind.has(static_cast<int32_t>(index));
    };
    if (!there(links.owner, owner)) {
      tell_missing_side(on, links, links.owner, owner, pair, keys);
      continue;
    }
    CheckFinding told = on.of(links.owner, static_cast<int32_t>(owner), links.column.table);
    const std::string what = links.used.word() + " " + std::to_string(other);
    told.severity = Severity::Warning;
    if (!uses(links.owner, owner, links.used, other)) {
      told.what = "A link row says that it uses " + what + ", but its record does not refer to it.";
      told.remedy = "Repair removes the link row.";
      on.add(told, removal(on, links.column.table, keys));
    } else if (!there(links.used, other)) {
      tell_missing_side(on, links, links.used, other, pair, keys);
    } else if (keys.size() > 1) {
      told.what = "It has " + std::to_string(keys.size()) + " link rows for " + what + ".";
      told.remedy = "Repair leaves one of them.";
      on.add(told, removal(on, links.column.table, {keys.begin() + 1, keys.end()}));
    }
  }
}

/// Adds the row of a reference to a table.
std::function<void()> addition(Inspection& on, const Links& links, int32_t owner, int32_t other) {
  const LinkColumn& to = links.column;
  const bool library = to.library != 0;
  const std::string sql =
      "INSERT INTO " + to.table + " (" + links.owner_column() + ", " + to.column +
      (library ? ", Library_ID) VALUES (?, ?, " + std::to_string(to.library) + ")" : ") VALUES (?, ?)");
  return [&database = on.database, sql, owner, other] {
    const Cell row[]{cell(owner), cell(other)};
    database.Execute(sql, row);
  };
}

bool was_deleted(Inspection& on, const InspectedKind& owner, int32_t index, const Use& use) {
  LinkRows rows(on.database, owner.kind().link_owner, static_cast<int16_t>(index));
  return rows.was_deleted(use);
}

/// A reference without any link row, to what is there and was not deleted: its row was lost. One to what is not there
/// reads as 0 already.
void inspect_references(Inspection& on, const Links& links, bool first_table, const Links& first) {
  for (const auto& [index, references] : links.owner.uses) {
    std::set<int32_t> seen;
    for (const auto& [use, name] : references) {
      const Pair pair{index, use.index};
      if (use.kind != links.used.kind().default_word || links.rows.contains(pair) || !seen.insert(use.index).second)
        continue;
      const bool linked = !first_table && first.rows.contains(pair);
      if (!links.used.has(use.index) || (!linked && (!first_table || was_deleted(on, links.owner, index, use))))
        continue;
      CheckFinding told = on.of(links.owner, index, name);
      told.what = "It refers to " + links.used.word() + " " + std::to_string(use.index) +
                  ", but the link row is missing in " + links.column.table +
                  ". The reference reads as 0, and changes there mark nothing stale.";
      if (!first_table) told.what.resize(told.what.find(". The reference") + 1);
      told.remedy = "Repair adds the link row and marks what rests on it.";
      on.add_by_record(told, [add = addition(on, links, index, use.index), &owner = links.owner, index = index] {
        add();
        mark_stale(owner, static_cast<int16_t>(index));
      });
    }
  }
}

/// Rows of the table of all equipment whose library is no kind's.
void inspect_libraries(Inspection& on, const std::string& table, const std::set<int>& known) {
  std::string libraries;
  for (const int library : known) libraries += (libraries.empty() ? "" : ", ") + std::to_string(library);
  on.database.join(Database::Part::Reading);
  Statement rows(on.database, "SELECT rowid, Plant_ID, Library_ID FROM " + table +
                                  " WHERE Library_ID IS NULL OR Library_ID NOT IN (" + libraries + ")");
  while (rows.step()) {
    CheckFinding told{.severity = Severity::Warning,
                      .kind = "Plant",
                      .index = static_cast<int32_t>(rows.integer(1)),
                      .property = table};
    told.what =
        "A link row names equipment of library " + std::to_string(rows.integer(2)) + "; there are " + libraries + ".";
    told.remedy = "Repair removes the link row.";
    on.add(told, removal(on, table, {rows.integer(0)}));
  }
}

}  // namespace

void inspect_links(Inspection& on) {
  std::map<std::string, std::set<int>> libraries;
  for (InspectedKind& owner : on.kinds) {
    if (owner.kind().link_owner.empty()) continue;
    for (const std::string_view word : kinds_referred_to(owner.entity->info(), [](std::string_view) { return true; })) {
      InspectedKind* used = on.find(word);
      if (!used) continue;
      std::vector<Links> tables;
      for (const LinkColumn& column : link_tables_of(owner.kind().link_owner, word)) {
        tables.push_back(read_links(on, owner, *used, column));
        if (column.library != 0) libraries[column.table].insert(column.library);
      }
      for (const Links& links : tables) {
        inspect_references(on, links, &links == &tables.front(), tables.front());
        inspect_rows(on, links);
      }
    }
  }
  for (const auto& [table, known] : libraries) inspect_libraries(on, table, known);
}

void inspect_marks(Inspection& on) {
  struct Rest {
    std::string_view used, links, by, gives, flag, table;
  };
  // Design and simulation of a plant rest on those of its systems, a building's on both. Whether an entity was changed
  // after the last calculation, and nothing marked at all, is kept nowhere.
  constexpr Rest kRests[]{
      {"AirSystemIndex", "Plant_System_Links", "System_ID", "Plant_ID", "bSimHasChanged", "PlantIndex"},
      {"AirSystemIndex", "Building_System_Links", "System_ID", "Building_ID", "bHasChanged", "BuildingIndex"},
      {"PlantIndex", "Building_Plant_Links", "Plant_ID", "Building_ID", "bHasChanged", "BuildingIndex"}};
  for (const Rest& rest : kRests) {
    const std::string table(rest.table), flag(rest.flag), used(rest.used);
    const std::string query = "SELECT DISTINCT d.nIndex, u.nIndex FROM " + std::string(rest.links) + " l JOIN " + used +
                              " u ON u.nIndex = l." + std::string(rest.by) + " JOIN " + table + " d ON d.nIndex = l." +
                              std::string(rest.gives) + " WHERE u.bSimHasChanged <> 0 AND d." + flag + " = 0";
    on.database.join(Database::Part::Reading);
    Statement rows(on.database, query);
    while (rows.step()) {
      const auto kind = std::ranges::find_if(on.kinds, [&](const InspectedKind& k) { return k.table() == table; });
      CheckFinding told = on.of(*kind, static_cast<int32_t>(rows.integer(0)), flag);
      told.severity = Severity::Warning;
      told.what = std::string(used == "PlantIndex" ? "Plant " : "System ") + std::to_string(rows.integer(1)) +
                  ", which it rests on, is to be simulated again, but it is not marked.";
      told.remedy = "Repair marks its results stale.";
      on.add(told, [&kind = *kind, index = static_cast<int16_t>(rows.integer(0))] { mark_stale(kind, index); });
    }
  }
}

}  // namespace tarn
