#include "storage/schema.h"

#include "platform/pending_writes.h"
#include "storage/kind.h"
#include "storage/links.h"

namespace tarn {
namespace {

/// The first letters of a column tell its type: n whole, f real, b Boolean, sz text.
std::string_view sql_type(std::string_view column) {
  if (column == "nIndex") return "INTEGER PRIMARY KEY";  // the row's own key: a search by index is one step
  if (column.starts_with("sz")) return "TEXT";
  return column.starts_with("f") ? "REAL" : "INTEGER";
}

std::string index_table(const Kind& kind) {
  std::string columns;
  const auto add = [&columns](std::string_view name) {
    columns += (columns.empty() ? "" : ", ") + std::string(name) + " " + std::string(sql_type(name));
  };
  add("nIndex");
  add("szName");
  for (const SummaryColumn& column : kind.columns) add(column.name);
  for (const ChangedFlag& flag : kind.flags) add(flag.column);
  const std::string name(kind.index_table);
  return "CREATE TABLE " + name + " (" + columns + ");\nCREATE INDEX " + name + "_Name ON " + name + " (szName);\n";
}

/// Links are searched from either side, and as pairs: one index for each order answers all from the index alone.
std::string link_table(const std::string& name, const std::string& owner, const std::string& member) {
  return "CREATE TABLE " + name + " (" + owner + " INTEGER, " + member + " INTEGER);\n" + "CREATE INDEX " + name +
         "_Owner ON " + name + " (" + owner + ", " + member + ");\n" + "CREATE INDEX " + name + "_Member ON " + name +
         " (" + member + ", " + owner + ");\n";
}

constexpr std::string_view kEquipmentLinks =
    "CREATE TABLE Plant_Equipment_Links (Plant_ID INTEGER, Library_ID INTEGER, Equipment_ID INTEGER);\n"
    "CREATE INDEX Plant_Equipment_Links_Owner ON Plant_Equipment_Links (Plant_ID, Library_ID, Equipment_ID);\n"
    "CREATE INDEX Plant_Equipment_Links_Member ON Plant_Equipment_Links (Library_ID, Equipment_ID, Plant_ID);\n";
constexpr std::string_view kWeatherTables =
    "CREATE TABLE DesWeatherIndex (szDesCityName TEXT);\n"
    "CREATE TABLE SimWeatherIndex (szSimCityName TEXT, nJanOne INTEGER);\n"
    "INSERT INTO DesWeatherIndex VALUES ('');\n"
    "INSERT INTO SimWeatherIndex VALUES ('', 0);\n";

}  // namespace

std::string index_schema(std::span<const Ptr<StoredEntity>> kinds) {
  std::string tables, links;
  bool has_equipment = false;
  for (const Ptr<StoredEntity>& entity : kinds) {
    const Kind& kind = entity->kind();
    tables += index_table(kind);
    if (kind.link_owner.empty()) continue;
    for (const std::string_view used : kinds_referred_to(entity->info(), [](std::string_view) { return true; })) {
      const std::string owner(kind.link_owner), member(used);
      links += link_table(owner + "_" + member + "_Links", owner + "_ID", member + "_ID");
      has_equipment |= owner == "Plant" && library_of(used) != 0;
    }
  }
  if (has_equipment) links += kEquipmentLinks;
  std::string since;
  for (const std::string_view statement : kStaleSince) since += statement;
  return tables + links + std::string(kDeletedUses) + since + kPendingTable + std::string(kWeatherTables);
}

bool has_table(Database& database, const std::string& name) {
  return !database.OpenRecordset("SELECT name FROM sqlite_master WHERE name = ?", {name}).AtEof();
}

}  // namespace tarn
