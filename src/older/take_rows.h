// Rows of the older engine's tables into those of a new index database, and what has no place there.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "older/adopt.h"
#include "older/older_index.h"
#include "tarn/platform/database.h"

namespace tarn::older {

struct ProjectTable {
  std::string name;
  std::vector<std::string> columns;

  /// Whether nIndex is the key of its rows.
  bool lists_entities() const { return !columns.empty() && columns.front() == "nIndex"; }
};

/// The tables of a new index that the older engine had, too. Names are without case, as there.
class ProjectTables {
 public:
  explicit ProjectTables(Database& database);
  const ProjectTable* find(std::string_view name) const;
  const std::vector<ProjectTable>& all() const { return tables_; }

 private:
  std::vector<ProjectTable> tables_;
};

/// What the project has no place for: a table of another program, or columns that the project does not have.
struct Extra {
  std::string name;
  std::vector<std::string> columns;
  std::vector<std::vector<Cell>> rows;
};

void take_rows(const Index& old, const ProjectTables& own, Database& database, Adoption& adoption,
               std::vector<Extra>& extras);

/// Beside the index: "MALLINX-Notes.csv".
std::string csv_name(const std::string& index, const std::string& table);
std::string csv_text(const Extra& extra);

}  // namespace tarn::older
