#include "cli/words.h"

#include "base/value.h"
#include "component/class_list.h"
#include "component/kinds.h"

namespace tarn::cli {

std::vector<Group> all_groups() {
  std::vector<Group> all{{"project",
                          "a project on disk",
                          {{"new", "makes the index database and the default records"},
                           {"info", "what the project holds, and what is stale"},
                           {"export", "[KIND ...]: the project as JSON"},
                           {"import", "FILE: brings entities of a JSON text in, all or none"}}}};
  for (const EntityKind& kind : entity_kinds()) {
    const std::string one(kind.one);
    const std::string follows = kind.compute ? ", and what is computed from it" : "";
    all.push_back({std::string(kind.group),
                   "the project's " + std::string(kind.group),
                   {{"list", "the index rows of all"},
                    {"show", "N: " + one + " N as a form; --json for every stored property" +
                                 (kind.class_name == "CA_ConstructionAssly" ? "; --svg PICTURE for a section" : "")},
                    {"new", "[Property=value ...]: a new " + one + " from the defaults"},
                    {"set", "N Property=value ... (Part(1).Property=value): changes " + one + " N" + follows},
                    {"clone", "N [Property=value ...]: a copy of " + one + " N"},
                    {"delete", "N: removes " + one + " N and every use of it"}}});
    if (kind.class_name == "CA_ConstructionAssly") {
      all.back().verbs.emplace_back(
          "layer", "insert N SLOT [--material NAME], remove N SLOT, move N SLOT TO: the layers of " + one +
                       " N; materials: what there is to make them of");
    }
    if (kind.import_file)
      all.back().verbs.emplace_back("import", "FILE [Property=value ...]: a new " + one + " from an ASHRAE 205 file");
  }
  all.push_back(
      {"weather",
       "hourly weather files; without FILE the project's own",
       {{"import", "FILE: an EPW, TMY3 or TMY2 year becomes the project's weather, or with --output an hourly file"},
        {"check", "[FILE]: whether the file is valid, and what cannot be right in its hours"},
        {"show", "[FILE]: site, statistics and a chart by month; --svg PICTURE for a heat map of the year"}}});
  all.push_back({"results",
                 "what the design calculation found for the air systems",
                 {{"list", "the air systems that have design results"},
                  {"show",
                   "N [ZONE]: sizes, loads and the air's way through air system N, or the loads of one of its zones; "
                   "--svg PICTURE for load profile and psychrometric chart"}}});
  Group describe{"describe", "[CLASS]: the members of the classes", {}};
  for (const ClassEntry& entry : class_list()) describe.verbs.emplace_back(entry.info().name, "");
  all.push_back(std::move(describe));
  return all;
}

std::string signature(const Member& member) {
  std::string text(member.name);
  for (size_t i = 0; i < member.bounds.size(); ++i) {
    const Bounds& b = member.bounds[i];
    text += (i == 0 ? "(" : ", ") + std::to_string(b.first) + " to " + std::to_string(b.last);
  }
  if (!member.bounds.empty()) text += ")";
  if (member.kind == MemberKind::Property) return text;
  text += "(";
  for (size_t i = 0; i < member.parameters.size(); ++i) {
    const Parameter& p = member.parameters[i];
    if (i > 0) text += ", ";
    text += (p.optional ? "[" : "") + std::string(p.by_reference ? "ByRef " : "") + std::string(p.name) + " " +
            std::string(type_name(p.type)) + (p.optional ? "]" : "");
  }
  return text + ")";
}

size_t record_length(Object& object) {
  auto* entity = dynamic_cast<StoredEntity*>(&object);
  if (!entity) return object.info().record_size;
  size_t length = 0;
  for (const auto& block : entity->layout()) length += block.size();
  return length;
}

}  // namespace tarn::cli
