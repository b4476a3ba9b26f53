// project new, info, export and import.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <set>

#include "base/nearest.h"
#include "cli/entities.h"
#include "cli/progress.h"
#include "platform/file_store.h"
#include "project/defaults.h"
#include "project/kinds.h"
#include "tarn/copy.h"
#include "tarn/exchange.h"
#include "tarn/platform/workspace.h"
#include "tarn/preferences.h"
#include "tarn/staleness.h"

namespace tarn::cli {
namespace {

namespace fs = std::filesystem;

/// How many have results that no longer rest on their inputs: "air systems to size again".
Json stale_counts(Database& database) {
  Json out = Json::object();
  for (const StaleResult& result : stale_marks(database)) {
    const std::string one(entity_kinds()[*place_of(result.of.kind)].one);
    Json& count = out[one + "s to " + (result.results == "design" ? "size" : "simulate") + " again"];
    count = count.is_null() ? 1 : count.get<int>() + 1;
  }
  return out;
}

}  // namespace

namespace {

/// Error `UsageError` where the new project would not be the only one of a folder that is named alone.
void check_no_project(const fs::path& folder) {
  const auto prefixes = projects_in(folder);
  if (prefixes.empty()) return;
  throw UsageError("The folder " + folder.string() + " holds the project " + prefixes.front() +
                   " already. Name the new one: tarn -p " + (folder / "PREFIX").string() + " project new");
}

}  // namespace

int project_new(const Call& call) {
  const std::string& word = call.project;
  if (word.empty()) throw UsageError("Name the project to make: tarn -p FOLDER project new, or -p FOLDER/PREFIX.");
  COM_ProjectData project;
  project.SetWorkPath(".");
  project.FilePrefix = word;
  const bool is_prefix = !fs::path(word).has_parent_path() && fs::exists(project.IndexDBName());  // refused below
  if (!is_prefix) place_new_project(project, word, {});
  std::error_code unreadable;
  if (fs::is_directory(word, unreadable) && !is_prefix) check_no_project(word);
  const bool new_folder = !fs::exists(project.WorkPath());
  if (call.dry_run) {
    if (fs::exists(project.IndexDBName()))
      fail(ErrorNumber::FileExists, "The project " + project.IndexDBName() + " exists already.");
  } else {
    if (new_folder) fs::create_directories(project.WorkPath());
    create_project(project);
  }
  if (call.json) {
    print_json({{"index_database", project.IndexDBName()}, {"new_folder", new_folder}});
    return kClean;
  }
  const char* made = call.dry_run ? "would make " : "made ";
  if (new_folder) std::cout << made << "the folder " << project.WorkPath() << '\n';
  std::cout << made << project.IndexDBName() << '\n';
  return kClean;
}

/// A folder keeps the project's prefix.
int project_copy(const Call& call) {
  if (call.words.empty()) throw UsageError("Where to? tarn project copy FOLDER or FOLDER/PREFIX");
  COM_ProjectData from, to;
  const auto database = open_project(from, call, Use::Reading);
  place_new_project(to, call.words.front(), from.FilePrefix);
  copy_project(from, to);
  if (call.json)
    print_json({{"index_database", to.IndexDBName()}});
  else
    std::cout << "made " << to.IndexDBName() << '\n';
  return kClean;
}

int project_info(const Call& call) {
  COM_ProjectData project;
  const auto database = open_project(project, call, Use::Reading);
  std::map<std::string, uint64_t> files;
  for (const auto& entry : fs::directory_iterator(project.WorkPath())) {
    const std::string name = entry.path().filename().string();
    if (name.starts_with(project.FilePrefix) && entry.is_regular_file()) files[name] = entry.file_size();
  }
  Json preferences = Json::object();
  if (const auto prefs = project.NewProjectPrefs(); fs::exists(prefs->FileName)) {
    prefs->Load();
    preferences = {{"ventilation standard", prefs->VentilationStandardText(prefs->VentStandardCode)},
                   {"energy standard", prefs->EnergyStandardText(prefs->EnergyStandardCode)},
                   {"rating version", prefs->LeedVersionText(prefs->LeedVersionCode)},
                   {"currency", prefs->CurrencyUnits.trimmed()}};
  }
  Json counts = Json::object();
  for (const auto& [name, count] : entity_counts(*database)) counts[name] = count;
  const Json info{{"folder", project.WorkPath()},     {"prefix", project.FilePrefix}, {"entities", counts},
                  {"stale", stale_counts(*database)}, {"preferences", preferences},   {"files", files}};
  if (call.json) {
    print_json(info);
    return kClean;
  }
  std::cout << "project " << project.FilePrefix << " in " << project.WorkPath() << '\n';
  for (const char* section : {"entities", "stale", "preferences", "files"}) {
    std::cout << section << (info[section].empty() ? ": none\n" : ":\n");
    for (const auto& [name, value] : info[section].items()) {
      std::cout << "  " << name << ": " << shown(value) << (section == std::string("files") ? " bytes" : "") << '\n';
    }
  }
  return kClean;
}

int project_export(const Call& call) {
  std::set<std::string> groups;
  for (const std::string& word : call.words) {
    std::vector<std::string_view> known;
    for (const EntityKind& kind : entity_kinds()) known.push_back(kind.group);
    if (std::find(known.begin(), known.end(), word) == known.end()) {
      throw UsageError("There is no kind \"" + word + "\"; " + did_you_mean(word, known));
    }
    groups.insert(word);
  }
  COM_ProjectData project;
  open_project(project, call, Use::Reading);
  const std::string text = export_project(project, groups, progress_bar("exported"));
  put_out(call, text);
  return kClean;
}

namespace {

std::string counted(size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::set<std::string> all_shared_names(Database& database) {
  std::set<std::string> names;
  for (const EntityKind& kind : entity_kinds()) names.merge(shared_names(database, kind));
  return names;
}

}  // namespace

int project_import(const Call& call) {
  if (call.words.size() != 1)
    throw UsageError("Which file? tarn " + call.group + " " + call.verb + " FILE (- for standard input)");
  const std::string& file = call.words.front();
  if (fs::is_directory(file)) fail(ErrorNumber::PermissionDenied, file + " is a folder; give a file.");
  std::ifstream in;
  if (file != "-") in.open(file, std::ios::binary);
  if (file != "-" && !in) fail(ErrorNumber::FileNotFound, "Cannot read " + file + ".");
  std::optional<Progress> progress = progress_bar("imported");  // reading counts
  const std::string text{std::istreambuf_iterator<char>(file == "-" ? std::cin : in), {}};
  COM_ProjectData project;
  const auto database = open_project(project, call, Use::Writing);
  const auto shared = all_shared_names(*database);
  Imported imported;
  try {
    imported = import_project(project, text, *progress);
  } catch (const Error& error) {
    throw Error(error.number(), error.source(), file + ", " + error.what());
  }
  progress.reset();
  if (call.json)
    print_json({{"imported", imported.entities}, {"defaults", imported.defaults}});
  else
    std::cout << "imported " << counted(imported.entities, "entity", "entities")
              << (imported.defaults > 0 ? " and " + counted(imported.defaults, "default", "defaults") : "") << '\n';
  tell_shared(all_shared_names(*database), shared);
  return kClean;
}

}  // namespace tarn::cli
