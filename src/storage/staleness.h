// What becomes stale when an entity changes. A kind declares its reach as data: the link tables that lead from it to
// spaces, systems, plants and buildings. From each of these the way outward is the same for every kind:
// spaces to the systems that serve them, systems to their plants, systems and plants to the buildings that hold them.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tarn/platform/database.h"

namespace tarn {

enum class Stage : uint8_t { Spaces, Systems, Plants, Buildings };

/// Rows of a link table by one of its columns, giving another; of one library where the table has several.
struct LinkStep {
  std::string_view table, by, gives;
  int library = 0;
};

/// A way from the entity into a stage, of one link table or of two in a row.
struct Route {
  Stage stage;
  std::vector<LinkStep> steps;
};

enum class Results : uint8_t { DesignAndSimulation, SimulationOnly };

/// Where a connection keeps the systems that a change reaches, in memory, for the statements that go on from them.
inline constexpr const char* kScratchList = "CREATE TEMP TABLE IF NOT EXISTS Found (nIndex INTEGER PRIMARY KEY)";

/// What a person changed: an entity, or the weather, whose index is 0.
struct Edit {
  std::string_view kind;
  int index;
  std::string_view name;  // in the code page, as a record has it
};

/// Since which edit results are stale: a row for each flag of an index table, from the edit that set it.
inline constexpr std::string_view kStaleSince[]{
    "CREATE TABLE StaleSince (szTable TEXT, nIndex INTEGER, szFlag TEXT, szKind TEXT, nEdited INTEGER, szName TEXT, "
    "szTime TEXT);\n",
    "CREATE UNIQUE INDEX StaleSince_Of ON StaleSince (szTable, nIndex, szFlag);\n"};

/// A changed flag of an index table, and the statement that sets it. The statement returns the rows where it was not
/// set.
struct FlagUpdate {
  std::string_view table, flag;
  std::string statement;

  /// Of the rows of a condition, all for an empty one.
  FlagUpdate(std::string_view table, std::string_view flag, const std::string& condition = {});
  /// Sets the flag and remembers since which edit.
  void run(Database& database, std::span<const Cell> parameters, const Edit& edit) const;
};

void note_stale_since(Database& database, std::string_view table, std::string_view flag,
                      std::span<const int64_t> indexes, const Edit& edit);
/// Of one flag, which is set no more, or of all, of an entity that goes.
void forget_stale_since(Database& database, std::string_view table, int index, std::string_view flag = {});

class Reach {
 public:
  Reach(Results results, std::initializer_list<Route> routes);
  /// Of a kind that spaces use, design and simulation.
  static Reach through_spaces(std::string_view link_table, std::string_view id_column);

  /// Sets the changed flags of everything that rests on the entity: one statement a flag, linear in what it finds.
  void mark(Database& database, const Edit& edit) const;
  /// In the order in which `mark` runs them; the entity's index is ?1.
  std::vector<std::string> statements() const;
  /// The link tables that lead from the kind itself: what uses it.
  const std::vector<LinkStep>& uses() const { return uses_; }

 private:
  std::vector<LinkStep> uses_;
  std::string collect_systems_;  // empty for a kind that reaches none
  std::vector<FlagUpdate> updates_;
  bool only_through_systems_ = false;
};

}  // namespace tarn
