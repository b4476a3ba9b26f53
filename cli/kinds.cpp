// list, show, new, set, clone and delete, for every kind of entity alike, by its members table.

#include "component/kinds.h"

#include <algorithm>
#include <charconv>
#include <iostream>

#include "base/by_name.h"
#include "base/nearest.h"
#include "cli/command.h"
#include "component/json.h"
#include "platform/workspace.h"
#include "storage/entity.h"

namespace tarn::cli {
namespace {

const EntityKind& kind_of(const Call& call) {
  const auto kinds = entity_kinds();
  return *std::find_if(kinds.begin(), kinds.end(), [&](const EntityKind& k) { return k.group == call.group; });
}

Json rows_json(Recordset rows) {
  Json all = Json::array();
  for (; !rows.AtEof(); rows.MoveNext()) {
    Json row;
    for (const std::string& column : rows.columns()) row[column] = to_json(value_of(rows.Fields(column).Value()));
    all.push_back(std::move(row));
  }
  return all;
}

int list(const Call& call, Database& database, const StoredEntity& entity) {
  auto rows =
      database.OpenRecordset("SELECT * FROM " + std::string(entity.kind().index_table) + " ORDER BY nIndex ASC");
  const auto columns = rows.columns();
  const Json all = rows_json(std::move(rows));
  if (call.json) {
    print_json(all);
    return kClean;
  }
  std::vector<std::vector<Json>> table;
  for (const Json& row : all) {
    auto& cells = table.emplace_back();
    for (const std::string& column : columns) cells.push_back(row.at(column).is_null() ? Json("") : row.at(column));
  }
  print_table(columns, table);
  return kClean;
}

/// The index behind the verb; an entity of it exists, or the nearest is named.
int16_t index_of(const Call& call, Database& database, const StoredEntity& entity, const EntityKind& kind) {
  if (call.words.empty())
    throw UsageError("Which " + std::string(kind.one) + "? Give its index: tarn " + call.group + " " + call.verb +
                     " N");
  const std::string& word = call.words.front();
  int index = 0;
  const auto [end, failed] = std::from_chars(word.data(), word.data() + word.size(), index);
  if (failed != std::errc() || end != word.data() + word.size())
    throw UsageError("\"" + word + "\" is no index; give a number.");
  const std::string table(entity.kind().index_table);
  auto nearest =
      database.OpenRecordset("SELECT nIndex FROM " + table + " ORDER BY abs(nIndex - ?) LIMIT 1", {cell(index)});
  if (nearest.AtEof()) throw UsageError("The project has no " + call.group + " yet.");
  if (nearest.Fields("nIndex").integer() != index) {
    throw UsageError("There is no " + std::string(kind.one) + " " + word + "; the nearest is " +
                     std::to_string(nearest.Fields("nIndex").integer()) + ".");
  }
  return static_cast<int16_t>(index);
}

int show(const Call& call, StoredEntity& entity) {
  if (call.json) {
    Json json{{"class", std::string(entity.info().name)}, {"index", entity.Index}};
    add_stored_fields(entity, json);
    print_json(json);
    return kClean;
  }
  std::vector<std::vector<Json>> rows;
  for (const Member& member : entity.info().members) {
    if (!member.stored()) continue;
    for_each_element(member, [&](Subscripts at) {
      Value value;
      member.get(entity, at, value);
      Json json = to_json(value);
      std::string text = json.is_string() ? std::string(trimmed(json.get<std::string>())) : shown(json);
      if (const auto* code = std::get_if<int16_t>(&value); code && !member.labels.empty()) {
        text += "  " + std::string(text_of(member.labels, *code));
      }
      rows.push_back({element_name(member, at), text, std::string(member.unit)});
    });
  }
  std::cout << entity.info().name << ' ' << entity.Index << '\n';
  print_table({"property", "value", "unit"}, rows);
  return kClean;
}

struct Assignment {
  const Member* member;
  std::vector<int> at;
  std::string value;
};

/// "GlassTrans(2)=0.78", "Height=4".
Assignment parsed(const StoredEntity& entity, const std::string& word) {
  const size_t equals = word.find('=');
  if (equals == std::string::npos) throw UsageError("\"" + word + "\" is no assignment; write Property=value.");
  const size_t open = word.find_first_of("([");
  Assignment out{nullptr, {}, word.substr(equals + 1)};
  const std::string name = word.substr(0, std::min(open, equals));
  std::vector<std::string_view> names;
  for (const Member& member : entity.info().members) {
    if (member.stored() && !member.read_only) names.push_back(member.name);
  }
  const int number = entity.info().number(name);
  if (number >= 0) out.member = &entity.info().members[static_cast<size_t>(number)];
  if (!out.member || std::find(names.begin(), names.end(), out.member->name) == names.end()) {
    throw UsageError("A " + std::string(entity.info().name) + " has no property " + name + " to set; " +
                     did_you_mean(name, names));
  }
  if (open < equals) {
    const char* at = word.data() + open;
    const char* const last = word.data() + equals - 1;  // the closing bracket
    do {
      int subscript = 0;
      const auto [end, failed] = std::from_chars(at + 1, last, subscript);
      if (failed != std::errc()) break;
      out.at.push_back(subscript);
      at = end;
    } while (*at == ',');
    if (at != last || (*last != ')' && *last != ']')) {
      throw UsageError("\"" + word +
                       "\" has subscripts that cannot be read; write Property(1)=value or Property(1,2)=value.");
    }
  }
  return out;
}

Json json_of(const Assignment& assignment) {
  if (assignment.member->type == ValueType::Text) return assignment.value;
  try {
    return Json::parse(assignment.value);
  } catch (const nlohmann::json::exception&) {
    return assignment.value;  // "NaN" is a text; anything else is refused by its type, in its words
  }
}

Json fields(StoredEntity& entity) {
  Json json = Json::object();
  add_stored_fields(entity, json);
  return json;
}

/// Makes the assignments, then computes what follows from them, but for results that the user set himself.
void edit(StoredEntity& entity, const EntityKind& kind, const std::vector<std::string>& words) {
  std::vector<Assignment> assignments;
  for (const std::string& word : words) assignments.push_back(parsed(entity, word));
  for (const Assignment& a : assignments) set_from_json(entity, *a.member, a.at, json_of(a));
  const bool only_name =
      std::all_of(assignments.begin(), assignments.end(), [](const Assignment& a) { return a.member->name == "Name"; });
  if (kind.computation.empty() || only_name) return;
  const Json before = fields(entity);
  Value nothing;
  std::vector<Value> none;
  entity.info().find(kind.computation).call(entity, none, nothing);
  for (const Assignment& a : assignments) set_from_json(entity, *a.member, a.at, json_of(a));
  const Json after = fields(entity);
  for (const auto& [name, value] : after.items()) {
    if (value != before.at(name))
      std::cerr << "computed: " << name << " " << shown(before.at(name)) << " -> " << shown(value) << '\n';
  }
}

int saved(const Call& call, StoredEntity& entity, const EntityKind& kind, std::string_view what) {
  entity.Save();
  if (call.json)
    print_json({{"index", entity.Index}});
  else
    std::cout << kind.one << ' ' << entity.Index << ' ' << what << '\n';
  return kClean;
}

}  // namespace

int run_kind(const Call& call) {
  const EntityKind& kind = kind_of(call);
  const bool reading = call.verb == "list" || call.verb == "show";
  COM_ProjectData project;
  const auto database = open_project(project, call, reading ? Use::Reading : Use::Writing);
  const auto entity = make_entity(project, kind);
  if (call.verb == "list") return list(call, *database, *entity);
  if (call.verb == "new") {
    entity->CreateDefault();
    entity->Reset(true);
    edit(*entity, kind, call.words);
    return saved(call, *entity, kind, "made");
  }
  const int16_t index = index_of(call, *database, *entity, kind);
  const std::vector<std::string> rest(call.words.begin() + 1, call.words.end());
  if (call.verb == "clone") {
    entity->Load(index);
    Value clone;
    std::vector<Value> none(1);
    entity->info().find("Clone").call(*entity, none, clone);
    auto& copy = dynamic_cast<StoredEntity&>(*std::get<ObjectPtr>(clone));
    edit(copy, kind, rest);
    return saved(call, copy, kind, "made from " + std::to_string(index));
  }
  entity->Load(index);
  if (call.verb == "show") return show(call, *entity);
  if (call.verb == "set") {
    if (rest.empty()) throw UsageError("Nothing to set; write Property=value.");
    edit(*entity, kind, rest);
    return saved(call, *entity, kind, "saved");
  }
  entity->Delete(index);
  if (call.json)
    print_json({{"index", index}});
  else
    std::cout << kind.one << ' ' << index << " deleted\n";
  return kClean;
}

}  // namespace tarn::cli
