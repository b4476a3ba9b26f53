// What the verbs of the command line share: the project that they work on, and how they print.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/database.h"
#include "storage/project.h"

namespace tarn::cli {

using Json = nlohmann::ordered_json;

enum ExitCode { kClean = 0, kFindings = 1, kUsage = 2, kInputOutput = 3, kInternal = 4 };

/// The user's call is wrong; the message names the right word.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Call {
  std::string project;  // of -p
  bool json = false;
  std::string output;    // of --output
  std::string type;      // of --type
  std::string svg;       // of --svg
  std::string material;  // of --material
  std::string group, verb;
  std::vector<std::string> words;  // behind the verb
};

/// The project of -p: FOLDER/PREFIX, or FOLDER with the one project in it; the current folder without.
void place_project(COM_ProjectData& project, const Call& call);

/// The project's open index database. Reading opens it read-only, so that nothing is created or changed.
enum class Use { Reading, Writing };
Ptr<Database> open_project(COM_ProjectData& project, const Call& call, Use use);

/// A number as a person reads it, six digits.
std::string shown(const Json& value);

/// As reports have it: so many decimals, thousands apart.
std::string grouped(double value, int decimals);

/// Rows of texts in aligned columns; to the right those whose letter in `sides` is 'r', without letters the numbers.
void print_table(const std::vector<std::string>& heads, const std::vector<std::vector<Json>>& rows,
                 std::string_view sides = {});
void print_json(const Json& json);

/// Writes the picture that --svg asks for.
void save_picture(const Call& call, const std::string& picture);

/// How messages call the rows of an index table: "air system" and "air-systems".
struct Indexed {
  std::string table, one, many;
};
/// The index behind the verb; a row has it, or the nearest that has one is named.
int16_t index_of(const Call& call, Database& database, const Indexed& rows);
/// Of the rows of an index table, none for an empty one.
std::optional<int64_t> nearest_index(Database& database, const std::string& table, int index);
/// A word that is a number. Error `UsageError`.
int number_of(const std::string& word);

int run_project(const Call& call);
int run_kind(const Call& call);
int run_weather(const Call& call);
int run_results(const Call& call);
int run_describe(const Call& call);

}  // namespace tarn::cli
