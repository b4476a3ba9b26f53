#include "cli/words.h"

#include "exchange/imports.h"
#include "project/kinds.h"
#include "tarn/base/value.h"

namespace tarn::cli {

namespace {

Group group_of(const EntityKind& kind) {
  const std::string one(kind.one), many(kind.group);
  const std::string follows = kind.compute ? ", and what is computed from it" : "";
  Group group{many,
              "the project's " + many,
              {{"list", "the index rows of all", 0, 0, kind_list},
               {"show", "N: " + one + " N as a form; --json for every stored property", 1, 0, kind_show},
               {"new", "[Property=value ...]: a new " + one + " from the defaults", kAnyWords, kind.start ? kType : 0U,
                kind_new},
               {"set", "N Property=value ... (Part(1).Property=value): changes " + one + " N" + follows, kAnyWords, 0,
                kind_set},
               {"clone", "N [Property=value ...]: a copy of " + one + " N", kAnyWords, 0, kind_clone},
               {"delete", "N: removes " + one + " N and every use of it", 1, 0, kind_delete}}};
  if (kind.class_name == "CA_ConstructionAssly") {
    Verb& show = group.verbs[1];
    show.help += "; --svg PICTURE for a section with its temperatures";
    show.options = kSvg;
    group.verbs.push_back({"layer",
                           "insert N SLOT [--material NAME], remove N SLOT, move N SLOT TO: the layers of " + one +
                               " N; materials: what there is to make them of",
                           kAnyWords, kMaterial, kind_layer});
  }
  if (file_import_of(kind)) {
    group.verbs.push_back(
        {"import", "FILE [Property=value ...]: a new " + one + " from an ASHRAE 205 file", kAnyWords, 0, kind_import});
  }
  return group;
}

}  // namespace

std::vector<Group> all_groups() {
  std::vector<Group> all{
      {"project",
       "a project on disk",
       {{"new", "makes the index database and the default records", 0, 0, project_new},
        {"info", "what the project holds, and what is stale", 0, 0, project_info},
        {"export", "[KIND ...]: the project as JSON", kAnyWords, kOutput, project_export},
        {"import", "FILE: reads the entities of a JSON text into the project, all or none", 1, 0, project_import},
        {"check", "what is damaged: rows, records, links, values, files; nothing is changed", 0, 0, project_check},
        {"repair",
         "mends what can be mended, and keeps a copy of the project; --dry-run only tells, --rebuild-index makes the "
         "index "
         "from the records",
         0, kDryRun | kRebuildIndex, project_repair}}}};
  for (const EntityKind& kind : entity_kinds()) all.push_back(group_of(kind));
  all.push_back(
      {"weather",
       "hourly weather files; without FILE the project's own",
       {{"import", "FILE: an EPW, TMY3 or TMY2 year becomes the project's weather, or with --output an hourly file", 1,
         kOutput, weather_import},
        {"check", "[FILE]: whether the file is valid, and which of its hours are implausible", 1, 0, weather_check},
        {"show", "[FILE]: site, statistics and a chart by month; --svg PICTURE for a heat map of the year", 1, kSvg,
         weather_show}}});
  all.push_back({"results",
                 "what the design calculation found for the air systems",
                 {{"list", "the air systems that have design results", 0, 0, results_list},
                  {"show",
                   "N [ZONE]: sizes, loads and states of the air of air system N, or the loads of one of its zones; "
                   "--svg PICTURE for load profile and psychrometric chart",
                   2, kSvg, results_show}}});
  all.push_back({"describe",
                 "[CLASS | ENUMERATION]: the members of the classes, the codes of the enumerations",
                 {{"", "", 1, 0, describe_classes}}});
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
  for (size_t i = 0; i < member.parameters().size(); ++i) {
    const Parameter& p = member.parameters()[i];
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
  for (const auto& block : entity->file().blocks()) length += block.size();
  return length;
}

}  // namespace tarn::cli
