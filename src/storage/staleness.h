// What becomes stale when an entity changes. A kind declares its reach as data: the link tables that lead from it to
// spaces, systems, plants and buildings. From each of these the way outward is the same for every kind:
// spaces to the systems that serve them, systems to their plants, systems and plants to the buildings that hold them.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace tarn {

class Database;

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

class Reach {
 public:
  Reach(Results results, std::initializer_list<Route> routes);
  /// Of a kind that spaces use, design and simulation.
  static Reach through_spaces(std::string_view link_table, std::string_view id_column);

  /// Sets the changed flags of everything that rests on the entity: one statement a table, linear in what it finds.
  void mark(Database& database, int index) const;
  /// In the order in which `mark` runs them; the entity's index is ?1.
  std::vector<std::string> statements() const;
  /// The link tables that lead from the kind itself: what uses it.
  const std::vector<LinkStep>& uses() const { return uses_; }

 private:
  std::vector<LinkStep> uses_;
  std::string collect_systems_;  // empty for a kind that reaches none
  std::vector<std::string> updates_;
  bool only_through_systems_ = false;
};

}  // namespace tarn
