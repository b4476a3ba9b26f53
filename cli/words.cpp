#include "cli/words.h"

#include <algorithm>

#include "base/nearest.h"

namespace tarn::cli {

namespace {

constexpr OptionRow kOptions[]{
    {0, "-p,--project", "FOLDER", "the project: FOLDER or FOLDER/PREFIX; else the current folder", &Call::project,
     nullptr},
    {0, "--json", "", "print JSON, in the units of the files", nullptr, &Call::json},
    {0, "--units", "ip|si", "of what is shown, and of numbers without a unit; else TARN_UNITS, else ip", &Call::units,
     nullptr},
    {kType, "--type", "TYPE", "the type of a new air system, chiller or plant: VAV, 10, HOT_WATER, ...", &Call::type,
     nullptr},
    {kOutput, "-o,--output", "FILE", "the file to write", &Call::output, nullptr},
    {kSvg, "--svg", "FILE", "a picture to make of what is shown", &Call::svg, nullptr},
    {kMaterial, "--material", "MATERIAL", "what a new layer is made of; walls layer materials lists them",
     &Call::material, nullptr},
    {kDryRun | kOwnDryRun, "--dry-run", "", "tell what would be done, and change nothing", nullptr, &Call::dry_run},
    {kRebuildIndex, "--rebuild-index", "", "make the index database anew from the record files", nullptr,
     &Call::rebuild_index},
    {kAdopt, "--rebuild", "", "make the index from the record files alone; the old one is not read", nullptr,
     &Call::rebuild},
    {kAdopt, "--undo", "", "the old index takes its place again", nullptr, &Call::undo},
    {kList, "--where", "CONDITION", "only those that it holds of: \"Height>4 and Name~South*\"", &Call::where, nullptr},
    {kList, "--sort", "COLUMNS", "by these properties: Name,Height", &Call::sort, nullptr},
    {kList, "--reverse", "", "the last first", nullptr, &Call::reverse},
    {kList, "--columns", "COLUMNS", "what to list: Name,Height,GlassTrans(1)", &Call::columns, nullptr},
    {kList, "--csv", "", "print comma-separated values", nullptr, &Call::csv},
    {kAll, "--all", "", "all that N names, where it names several", nullptr, &Call::all},
    {kForce, "--force", "", "also what others use; their references become 0", nullptr, &Call::force},
    {kTolerance, "--tolerance", "PART", "of numbers, relative: 0.001; else 0.000001", &Call::tolerance, nullptr},
    {kFrom, "--from", "PROJECT", "the other project: FOLDER or FOLDER/PREFIX", &Call::from, nullptr},
    {0, "-h,--help", "", "this help; after a group or a verb, help for that", nullptr, &Call::help},
    {0, "--version", "", "the version of tarn", nullptr, &Call::version}};

const EntityKind* kind_named(std::string_view group) {
  const auto kinds = entity_kinds();
  return &*std::ranges::find(kinds, group, &EntityKind::group);
}

Group project_group() {
  Group group{"Project", "project", "a project on disk", {}};
  const auto add = [&](Verb verb) { group.verbs.push_back(std::move(verb)); };
  add({"new",
       "",
       "makes the folder, the index database and the default records; -p FOLDER gives the files the folder's name, "
       "-p FOLDER/PREFIX a prefix of their own",
       kOwnDryRun,
       project_new,
       {"tarn -p annex project new", "tarn -p annex/EAST project new"}});
  add({"info",
       "",
       "what the project holds, and what is stale",
       0,
       project_info,
       {"tarn project info", "tarn project info --json"}});
  add({"export",
       "[KIND ...]",
       "the project as JSON",
       kOutput,
       project_export,
       {"tarn project export --output all.json", "tarn project export walls roofs"}});
  add({"import",
       "FILE",
       "reads the entities of a JSON text into the project, all or none",
       kDryRun,
       project_import,
       {"tarn project export windows | tarn project import -",
        "tarn windows show 1 --json | tarn project import - --dry-run"}});
  add({"copy",
       "TARGET",
       "copies the project to TARGET, FOLDER or FOLDER/PREFIX, while others may work on it",
       0,
       project_copy,
       {"tarn project copy variant", "tarn project copy variants/TALL"}});
  add({"adopt",
       "",
       "makes a project of the older engine, whose index database is a Jet file, one of this product",
       kOwnDryRun | kAdopt,
       project_adopt,
       {"tarn project adopt --dry-run", "tarn project adopt"}});
  add({"stale",
       "",
       "which results are stale, since which edit, and how it reaches them",
       0,
       project_stale,
       {"tarn project stale", "tarn project stale --json"}});
  add({"graph",
       "",
       "who uses whom in the whole project, and what became of its results; --svg for a picture, - for standard output",
       kSvg,
       project_graph,
       {"tarn project graph --svg project.svg", "tarn project graph --svg - > graph.svg",
        "tarn project graph --json"}});
  add({"check",
       "",
       "what is damaged: rows, records, links, values, files; nothing is changed",
       0,
       project_check,
       {"tarn project check", "tarn project check --json"}});
  add({"repair",
       "",
       "mends what can be mended, and keeps a copy of the project; --rebuild-index makes the index from the records",
       kOwnDryRun | kRebuildIndex,
       project_repair,
       {"tarn project repair --dry-run", "tarn project repair --rebuild-index"}});
  return group;
}

Group import_group() {
  return {"Project",
          "import",
          "brings in what other programs made",
          {{"json",
            "FILE",
            "reads the entities of a JSON text into the project, all or none; - for standard input",
            kDryRun,
            project_import,
            {"tarn export json walls | tarn import json -"}},
           {"gbxml",
            "FILE",
            "a building from a drawing program's gbXML, all or none: spaces with envelope and loads, types, schedules, "
            "air systems; tells what was taken and what not",
            kDryRun,
            import_gbxml_file,
            {"tarn import gbxml house.xml", "tarn --units si import gbxml house.xml --dry-run"}},
           {"chiller",
            "FILE [Property=value ...]",
            "a new chiller from an ASHRAE 205 file",
            kDryRun,
            import_chiller_file,
            {"tarn import chiller chiller.json Name=\"Chiller of the tower\""}}},
          kind_named("chillers")};
}

Group export_group() {
  return {"Project",
          "export",
          "writes the project for other programs",
          {{"json",
            "[KIND ...]",
            "the project as JSON, or the kinds that are named",
            kOutput,
            project_export,
            {"tarn export json --output all.json", "tarn export json spaces air-systems"}},
           {"gbxml",
            "",
            "the building as gbXML of the schema 6.01, with surfaces of the areas and directions that the project has",
            kOutput,
            export_gbxml_file,
            {"tarn export gbxml --output building.xml"}}}};
}

Group report_group() {
  return {"Project",
          "report",
          "a page for a browser of all that the project holds",
          {{"",
            "FILE",
            "writes one self-contained page: what is stale and why, spaces, envelope, systems and plant with pictures, "
            "design results, and what a check finds; - for standard output",
            0,
            report_project,
            {"tarn report project.html", "tarn --units si report project.html"}}}};
}

Group diff_group() {
  return {
      "Project",
      "diff",
      "what differs between two projects, or a project and an export",
      {{"",
        "FIRST SECOND",
        "by names of entities and fields; each is FOLDER, FOLDER/PREFIX or an exported file; exit code 1 where they "
        "differ",
        kTolerance,
        compare_two,
        {"tarn export json --output all.json && tarn diff . all.json --tolerance 0.001"}}}};
}

Group preferences_group() {
  return {"Project",
          "preferences",
          "standards and currency of the project",
          {{"show",
            "",
            "the preferences; --json as project import takes them",
            0,
            preferences_show,
            {"tarn preferences show"}},
           {"set",
            "Preference=value ...",
            "changes preferences",
            kDryRun,
            preferences_set,
            {"tarn preferences set CurrencyUnits=EUR LeedVersionCode=2"}}}};
}

Group report_options_group() {
  return {"Project",
          "report-options",
          "the choices of the report program, kept as it wrote them",
          {{"show",
            "",
            "how many bytes there are; --json as project import takes them, --output as they are",
            kOutput,
            report_options_show,
            {"tarn report-options show --json", "tarn report-options show --output options.dat"}},
           {"set",
            "FILE",
            "the bytes of a file become the report options",
            kDryRun,
            report_options_set,
            {"tarn report-options show --output options.dat && tarn report-options set options.dat"}}}};
}

Group weather_group() {
  return {"Weather",
          "weather",
          "hourly weather files; without FILE the project's own",
          {{"import",
            "FILE",
            "an EPW, TMY3 or TMY2 year becomes the project's weather, or with --output an hourly file",
            kOutput | kDryRun,
            weather_import,
            {"tarn weather import year.epw", "tarn weather import year.epw --output CITY.HW1"}},
           {"check",
            "[FILE]",
            "whether the file is valid, and which of its hours are implausible",
            0,
            weather_check,
            {"tarn weather check year.epw"}},
           {"show",
            "[FILE]",
            "site, statistics and a chart by month; --svg for a heat map of the year",
            kSvg,
            weather_show,
            {"tarn weather show year.epw", "tarn weather show year.epw --svg year.svg"}}}};
}

Group results_group() {
  return {"Air systems",
          "results",
          "what the design calculation found for the air systems",
          {{"list", "", "the air systems that have design results", 0, results_list, {"tarn results list"}},
           {"show",
            "N [ZONE]",
            "sizes, loads and states of the air of air system N, or the loads of one of its zones; "
            "--svg for load profile and psychrometric chart",
            kSvg,
            results_show,
            {"tarn results show 1 --svg design.svg", "tarn results show 1 2"}}},
          kind_named("air-systems")};
}

Group help_group(const std::string& name, const std::string& help, const Verb& verb) {
  return {"Help", name, help, {verb}};
}

std::vector<Group> make_groups() {
  std::vector<Group> all{project_group(), preferences_group(), report_options_group(), import_group(), export_group(),
                         report_group(),  diff_group()};
  for (const EntityKind& kind : entity_kinds()) all.push_back(group_of(kind));
  all.push_back(results_group());
  all.push_back(weather_group());
  all.push_back(help_group(
      "describe", "the members of the classes, the codes of the enumerations",
      {"", "[CLASS]", "", 0, describe_classes, {"tarn describe WIN_Window", "tarn describe PLT_PlantTypes --json"}}));
  all.push_back(help_group("help", "a subject explained, or help for a group or a verb",
                           {"", "[TOPIC] [VERB]", "", 0, show_help, {"tarn help staleness", "tarn help windows new"}}));
  all.push_back(help_group("completion", "the script that lets a shell complete words, names and codes",
                           {"",
                            "bash|zsh|fish",
                            "prints the script that lets a shell complete words, names and codes; an installed tarn "
                            "needs no more",
                            0,
                            show_completion,
                            {"source <(tarn completion bash)"}}));
  return all;
}

template <typename Row>
const Row& row_of(const std::vector<Row>& rows, const std::string& name, const std::string& what) {
  std::vector<std::string_view> names;
  for (const Row& row : rows) {
    if (row.name == name) return row;
    names.push_back(row.name);
  }
  throw UsageError("There is no " + what + " \"" + name + "\"; " + did_you_mean(name, names));
}

}  // namespace

std::span<const OptionRow> option_rows() { return kOptions; }

const std::vector<Group>& all_groups() {
  static const std::vector<Group> all = make_groups();
  return all;
}

const Group& group_named(const std::string& name) { return row_of(all_groups(), name, "group"); }

const Verb& verb_named(const Group& group, const std::string& name) {
  return row_of(group.verbs, name, "verb of " + group.name);
}

std::vector<std::string> Verb::words() const {
  std::vector<std::string> words;
  std::string word;
  for (const char c : usage + " ") {
    if (c == '[' || c == ']') continue;
    if (c != ' ') {
      word += c;
    } else if (!word.empty()) {
      words.push_back(std::exchange(word, {}));
    }
  }
  return words;
}

bool Group::names_entities() const {
  return std::ranges::any_of(verbs, [](const Verb& verb) {
    const auto words = verb.words();
    return std::ranges::find(words, "N") != words.end();
  });
}

size_t Verb::most_words() const {
  const auto all = words();
  return !all.empty() && all.back() == "..." ? SIZE_MAX : all.size();
}

}  // namespace tarn::cli
