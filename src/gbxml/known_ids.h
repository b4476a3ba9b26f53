// Which entities came from which elements of a gbXML file: a file beside the project, so that a second import updates
// what the first one made. Ids of one drawing mean nothing in another, so they are kept by drawing.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "tarn/project.h"

namespace tarn {

class KnownIds {
 public:
  /// Those of a drawing whose entities are still in the project. A file that cannot be read is one without ids, with a
  /// log entry.
  KnownIds(COM_ProjectData& project, std::string drawing);

  /// The entity of a kind's index table that came from `id`; 0 for none.
  int16_t index(const std::string& table, const std::string& id) const;
  void set(const std::string& table, const std::string& id, int16_t index);
  void forget(const std::string& table, const std::string& id);
  /// Ids of a table that were known and that this import did not set.
  std::vector<std::string> not_met(const std::string& table) const;

  /// In the transaction that is open, with its database.
  void save() const;

 private:
  using Ids = std::map<std::string, int16_t>;
  std::string path_, drawing_;
  COM_ProjectData& project_;
  std::map<std::string, std::map<std::string, Ids>> drawings_;  // by drawing, table and id
  std::map<std::string, std::set<std::string>> met_;            // by table
};

}  // namespace tarn
