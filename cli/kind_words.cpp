// The verbs that every kind of entity has, and those of some kinds alone.

#include <functional>

#include "cli/examples.h"
#include "cli/words.h"
#include "exchange/imports.h"
#include "tarn/pictures.h"

namespace tarn::cli {
namespace {

using CommandLine = std::function<std::string(const std::string&)>;

/// What some kinds have besides.
void add_own_verbs(Group& group, const CommandLine& line) {
  const std::string one(group.kind->one);
  const auto add = [&](Verb verb) { group.verbs.push_back(std::move(verb)); };
  if (const std::string_view content = picture_content(group.kind->class_name); !content.empty()) {
    Verb& show = group.verbs[1];
    show.help += "; --svg for " + std::string(content);
    show.options |= kSvg;
    show.examples.push_back(line("show 1 --svg " + one + ".svg"));
  }
  if (group.kind->class_name == "CA_ConstructionAssly") {
    add({"layer",
         "insert|remove|move|materials [N] [SLOT] [TO]",
         "the layers of " + one +
             " N: insert N SLOT [--material NAME], remove N SLOT, move N SLOT TO; materials: what there is to make "
             "them of",
         kMaterial | kDryRun,
         kind_layer,
         {line("layer materials"), line("layer insert 1 2 --material I02"), line("layer move 1 2 3"),
          line("layer remove 1 2")}});
  }
  if (group.name == "air-systems")
    add({"zone",
         "add|remove|set N [ZONE] [Property=value ...]",
         "the zones of air system N: add N [Property=value ...], remove N ZONE, set N ZONE Property=value ...; ZONE is "
         "its number or name",
         kDryRun,
         kind_zone,
         {line("zone add 1 Name=\"East zone\""), line("zone set 1 \"East zone\" \"SpaceMultiplier(1)=2\""),
          line("zone remove 1 \"East zone\"")},
         "ZoneData"});
  if (group.name == "plants")
    add({"equipment",
         "add|remove|order N cooling|heating|heat-recovery PIECE ...",
         "the equipment of plant N and its priority: add N LIST chiller:NAME or boiler:NAME, remove N LIST PIECE, "
         "order N LIST PIECE ... with the first to run first; PIECE is its place in the list",
         kDryRun,
         kind_equipment,
         {line("equipment add 1 cooling \"chiller:Chiller A\""), line("equipment add 1 cooling \"Spare chiller\""),
          line("equipment order 1 cooling 2 1"), line("equipment remove 1 cooling 1")}});
  if (file_import_of(*group.kind))
    add({"import",
         "FILE [Property=value ...]",
         "a new " + one + " from an ASHRAE 205 file",
         kDryRun,
         kind_import,
         {line("import chiller.json"), line("import chiller.json Name=\"Chiller of the annex\"")}});
}

}  // namespace

Group group_of(const EntityKind& kind) {
  const std::string one(kind.one), many(kind.group);
  const std::string follows = kind.compute ? ", and what is computed from it" : "";
  const Example& example = example_of(kind.group);
  const auto line = [&](const std::string& words) { return "tarn " + many + " " + words; };
  const std::string name = "\"" + example.name + "\"";
  Group group{std::string(kind.subject), many, "the project's " + spoken(kind), {}, &kind};
  const auto add = [&](Verb verb) { group.verbs.push_back(std::move(verb)); };
  add({"list",
       "",
       "the index rows of all, or properties by name of those that are asked for",
       kList,
       kind_list,
       {line("list --where \"" + example.where + "\""),
        line("list --sort Name --columns \"" + example.columns + "\" --csv")}});
  add({"show",
       "N",
       one + " N as a form; --json as project import takes it",
       0,
       kind_show,
       {line("show " + name), line("show 1 --json")}});
  add({"new",
       "[Property=value ...]",
       "a new " + one + " from the defaults",
       kDryRun | (kind.start ? kType : 0U),
       kind_new,
       {line("new " + example.start + "Name=" + name + " " + example.first), line("new Name=\"Spare " + one + "\"")}});
  add({"set",
       "N Property=value ...",
       "changes " + one + " N" + follows,
       kDryRun | kAll,
       kind_set,
       {line("set 1 " + example.first), line("set " + name + " " + example.second)}});
  add({"clone",
       "N [Property=value ...]",
       "a copy of " + one + " N",
       kDryRun,
       kind_clone,
       {line("clone 1"), line("clone 1 Name=\"Another " + one + "\" " + example.second)}});
  add({"copy",
       "N",
       one + " N of another project, with all that it uses; what is here already, under its name and equal, is reused",
       kDryRun | kFrom,
       kind_copy,
       {"tarn project copy spare && " + line("copy --from spare " + name), line("copy --from spare 1 --dry-run")}});
  add({"delete",
       "N",
       "removes " + one + " N and every use of it",
       kDryRun | kAll | kForce,
       kind_delete,
       {line("delete 1 --force"), line("delete \"Spare*\" --all")}});
  add({"uses", "N", "what " + one + " N refers to, by which property", 0, kind_uses, {line("uses 1")}});
  add({"used-by",
       "N",
       "who refers to " + one + " N, by which property; --all for who refers to these, and so on",
       kAll,
       kind_used_by,
       {line("used-by 1"), line("used-by 1 --all")}});
  if (!example.call.empty())
    add({"call",
         "N METHOD [VALUE ...]",
         "calls a method of " + one + " N, and saves what it changes; tarn describe lists the methods",
         kDryRun,
         kind_call,
         {line("call 1 " + example.call)}});
  add_own_verbs(group, line);
  return group;
}

}  // namespace tarn::cli
