// Which entities came from which elements of a gbXML file: a file beside the project, so that a second import updates
// what the first one made. Ids of one drawing mean nothing in another, so they are kept by drawing.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <unordered_map>

#include "reflect/json_text.h"
#include "tarn/project.h"

namespace tarn {

class KnownIds {
 public:
  /// Those of a drawing whose entities are still in the project. A file that cannot be read is one without ids, with a
  /// log entry.
  KnownIds(COM_ProjectData& project, std::string drawing);

  /// The entity of a kind's index table that came from `id`; 0 for none.
  int16_t index(std::string_view table, const std::string& id) const;
  void set(std::string_view table, const std::string& id, int16_t index);
  void forget(std::string_view table, const std::string& id);
  /// Ids of a table that were known and that this import did not set.
  size_t not_met(std::string_view table) const;

  /// In the transaction that is open, with its database.
  void save();

 private:
  struct Known {
    int16_t index;
    bool is_met;
  };
  using Ids = std::unordered_map<std::string, Known>;
  void read();

  COM_ProjectData& project_;
  std::string path_, drawing_;
  Json drawings_ = Json::object();  // of the file: by drawing and table a list of [id, index]
  std::map<std::string, Ids, std::less<>> tables_;
};

}  // namespace tarn
