#include "gbxml/known_ids.h"

#include <nlohmann/json.hpp>

#include "platform/file_store.h"
#include "platform/host.h"
#include "reflect/json_text.h"
#include "tarn/base/error.h"
#include "tarn/base/log.h"
#include "tarn/platform/database.h"
#include "tarn/platform/recordset.h"

namespace tarn {
namespace {

std::string ids_file(const COM_ProjectData& project) {
  constexpr std::string_view kIndex = "INX.MDB";
  std::string path = project.IndexDBName();
  return path.replace(path.size() - kIndex.size(), kIndex.size(), "GBXML.JSON");
}

std::set<int64_t> indexes_in(Database& database, const std::string& table) {
  std::set<int64_t> indexes;
  auto rows = database.OpenRecordset("SELECT nIndex FROM " + table);
  for (; !rows.AtEof(); rows.MoveNext()) indexes.insert(rows.Fields("nIndex").integer());
  return indexes;
}

Json read_ids(const std::string& path) {
  if (!files().exists(path)) return Json::object();
  std::string text(files().size(path), '\0');
  files().read(path, 0, std::as_writable_bytes(std::span(text)));
  return parse_json(text);
}

}  // namespace

KnownIds::KnownIds(COM_ProjectData& project, std::string drawing)
    : path_(ids_file(project)), drawing_(std::move(drawing)), project_(project) {
  try {
    const Json file = read_ids(path_);
    for (const auto& [name, tables] : file.items()) {
      for (const auto& [table, ids] : tables.items()) {
        for (const Json& row : ids) drawings_[name][table][row.at(0).get<std::string>()] = row.at(1).get<int16_t>();
      }
    }
  } catch (const std::exception& error) {
    drawings_.clear();
    log().message(path_ + " cannot be read (" + error.what() +
                  "). What was imported before is not recognised and would come in a second time.");
  }
  const auto database = host().database(project.IndexDBName());
  for (auto& [table, ids] : drawings_[drawing_]) {
    const auto there = indexes_in(*database, table);
    std::erase_if(ids, [&](const auto& row) { return !there.contains(row.second); });
  }
}

int16_t KnownIds::index(const std::string& table, const std::string& id) const {
  const auto& tables = drawings_.at(drawing_);
  const auto ids = tables.find(table);
  if (ids == tables.end()) return 0;
  const auto found = ids->second.find(id);
  return found == ids->second.end() ? int16_t{0} : found->second;
}

void KnownIds::set(const std::string& table, const std::string& id, int16_t index) {
  drawings_[drawing_][table][id] = index;
  met_[table].insert(id);
}

void KnownIds::forget(const std::string& table, const std::string& id) { drawings_[drawing_][table].erase(id); }

std::vector<std::string> KnownIds::not_met(const std::string& table) const {
  std::vector<std::string> ids;
  const auto& tables = drawings_.at(drawing_);
  const auto known = tables.find(table);
  if (known == tables.end()) return ids;
  const auto met = met_.find(table);
  for (const auto& [id, index] : known->second) {
    if (met == met_.end() || !met->second.contains(id)) ids.push_back(id);
  }
  return ids;
}

void KnownIds::save() const {
  Json file = Json::object();
  for (const auto& [name, tables] : drawings_) {
    for (const auto& [table, ids] : tables) {
      Json& rows = file[name][table] = Json::array();  // a list, as a look-up in an object would walk all of it
      for (const auto& [id, index] : ids) rows.push_back({id, index});
    }
  }
  const std::string text = json_text(file) + "\n";
  const auto bytes = std::as_bytes(std::span(text));
  files().replace(path_, {bytes.begin(), bytes.end()}, host().database(project_.IndexDBName()));
}

}  // namespace tarn
