// What the verbs of the command line share: the project that they work on, and how they print.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "base/measures.h"
#include "reflect/json_text.h"
#include "tarn/platform/database.h"
#include "tarn/project.h"

namespace tarn::cli {

enum ExitCode { kClean = 0, kFindings = 1, kUsage = 2, kInputOutput = 3, kInternal = 4 };

/// The user's call is wrong; the message names the right word.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Call {
  std::string project;  // of -p
  bool json = false;
  std::string units;     // of --units
  std::string output;    // of --output
  std::string type;      // of --type
  std::string svg;       // of --svg
  std::string material;  // of --material
  bool dry_run = false;
  bool rebuild_index = false;
  bool rebuild = false;
  bool undo = false;
  std::string where;    // of --where
  std::string sort;     // of --sort
  std::string columns;  // of --columns
  bool reverse = false;
  bool csv = false;
  bool all = false;
  bool force = false;
  std::string tolerance;  // of --tolerance
  std::string from;       // of --from
  bool help = false;
  bool version = false;
  std::string group, verb;         // no verb where the group does one thing only
  std::vector<std::string> words;  // after them
};

/// The prefixes of the projects in a folder, in order. Error `UsageError` for one that cannot be read.
std::vector<std::string> projects_in(const std::filesystem::path& folder);

/// The project of -p: FOLDER/PREFIX, or FOLDER with the one project in it; the current folder without.
void place_project(COM_ProjectData& project, const Call& call);

/// A project to make: FOLDER/PREFIX; or a folder - one that is there, that ends in a slash, or that is named without
/// one
/// - with `prefix`, and where that is empty with the folder's name as the prefix.
void place_new_project(COM_ProjectData& project, const std::string& word, const std::string& prefix);

/// The project's open index database. Reading opens it read-only, so that nothing is created or changed.
enum class Use { Reading, Writing };
Ptr<Database> open_project(COM_ProjectData& project, const Call& call, Use use);

/// A number as a person reads it, six digits.
std::string shown(const Json& value);

/// Rows of texts in aligned columns; to the right those whose letter in `sides` is 'r', without letters the numbers.
void print_table(const std::vector<std::string>& heads, const std::vector<std::vector<Json>>& rows,
                 std::string_view sides = {});
void print_json(const Json& json);
/// To standard error, a line each after "what: "; notes that say the same come once, with their number.
void print_notes(const std::string& what, const std::vector<std::string>& notes);

/// To standard output, or whole or not at all to the file of --output.
void put_out(const Call& call, const std::string& text);
/// Writes the picture that --svg asks for.
void save_picture(const Call& call, const std::string& picture);

/// The nearest index among the rows of an index table; none for an empty table.
std::optional<int64_t> nearest_index(Database& database, const std::string& table, int index);
/// A word that is a number. Error `UsageError`.
int number_of(const std::string& word);

// The verbs; each returns the exit code.
int project_new(const Call& call);
int project_info(const Call& call);
int project_export(const Call& call);
int project_import(const Call& call);
int project_copy(const Call& call);
int project_adopt(const Call& call);
int project_stale(const Call& call);
int project_graph(const Call& call);
int project_check(const Call& call);
int project_repair(const Call& call);

// For the kind of entity whose group the call names.
int kind_list(const Call& call);
int kind_show(const Call& call);
int kind_new(const Call& call);
int kind_set(const Call& call);
int kind_clone(const Call& call);
int kind_copy(const Call& call);
int kind_delete(const Call& call);
int kind_uses(const Call& call);
int kind_used_by(const Call& call);
int kind_import(const Call& call);
int kind_layer(const Call& call);
int kind_call(const Call& call);
int kind_zone(const Call& call);
int kind_equipment(const Call& call);

int import_chiller_file(const Call& call);
int import_gbxml_file(const Call& call);
int export_gbxml_file(const Call& call);

int report_project(const Call& call);

int preferences_show(const Call& call);
int preferences_set(const Call& call);
int report_options_show(const Call& call);
int report_options_set(const Call& call);

int weather_import(const Call& call);
int weather_check(const Call& call);
int weather_show(const Call& call);

int results_list(const Call& call);
int results_show(const Call& call);

int compare_two(const Call& call);
int describe_classes(const Call& call);
int show_help(const Call& call);
int show_completion(const Call& call);

}  // namespace tarn::cli
