#include "gbxml/known_ids.h"

#include <algorithm>
#include <set>

#include "platform/file_store.h"
#include "platform/host.h"
#include "tarn/base/error.h"
#include "tarn/base/log.h"
#include "tarn/platform/database.h"
#include "tarn/platform/recordset.h"

namespace tarn {
namespace {

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
    : project_(project), path_(project.GbxmlIdsFilename()), drawing_(std::move(drawing)) {
  try {
    read();
  } catch (const std::exception& error) {
    drawings_ = Json::object();
    tables_.clear();
    log().message(path_ + " cannot be read (" + error.what() +
                  "). What was imported before is not recognised and would come in a second time.");
  }
  const auto database = host().database(project.IndexDBName());
  for (auto& [table, ids] : tables_) {
    const auto there = indexes_in(*database, table);
    std::erase_if(ids, [&](const auto& row) { return !there.contains(row.second.index); });
  }
}

void KnownIds::read() {
  drawings_ = read_ids(path_);
  for (const auto& [table, rows] : drawings_[drawing_].items()) {
    for (const Json& row : rows) tables_[table][row.at(0).get<std::string>()] = {row.at(1).get<int16_t>(), false};
  }
}

int16_t KnownIds::index(std::string_view table, const std::string& id) const {
  const auto ids = tables_.find(table);
  if (ids == tables_.end()) return 0;
  const auto found = ids->second.find(id);
  return found == ids->second.end() ? int16_t{0} : found->second.index;
}

void KnownIds::set(std::string_view table, const std::string& id, int16_t index) {
  auto ids = tables_.find(table);
  if (ids == tables_.end()) ids = tables_.try_emplace(std::string(table)).first;
  ids->second[id] = {index, true};
}

void KnownIds::forget(std::string_view table, const std::string& id) {
  if (const auto ids = tables_.find(table); ids != tables_.end()) ids->second.erase(id);
}

size_t KnownIds::not_met(std::string_view table) const {
  const auto ids = tables_.find(table);
  if (ids == tables_.end()) return 0;
  return static_cast<size_t>(std::ranges::count_if(ids->second, [](const auto& row) { return !row.second.is_met; }));
}

void KnownIds::save() {
  Json& tables = drawings_[drawing_] = Json::object();
  for (const auto& [table, ids] : tables_) {
    std::vector<std::pair<int16_t, const std::string*>> rows;
    for (const auto& [id, known] : ids) rows.emplace_back(known.index, &id);
    std::ranges::sort(rows, [](const auto& a, const auto& b) {
      return a.first != b.first ? a.first < b.first : *a.second < *b.second;
    });
    Json& list = tables[table] = Json::array();  // a list, as a look-up in an object would walk all of it
    for (const auto& [index, id] : rows) list.push_back({*id, index});
  }
  const std::string text = json_text(drawings_) + "\n";
  const auto bytes = std::as_bytes(std::span(text));
  files().replace(path_, {bytes.begin(), bytes.end()}, host().database(project_.IndexDBName()));
}

}  // namespace tarn
