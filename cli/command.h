// What the verbs of the command line share: the project that they work on, and how they print.
#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
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
  std::string output;  // of --output
  std::string type;    // of --type
  std::string svg;     // of --svg
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

/// Rows of texts in aligned columns; numbers to the right.
void print_table(const std::vector<std::string>& heads, const std::vector<std::vector<Json>>& rows);
void print_json(const Json& json);

int run_project(const Call& call);
int run_kind(const Call& call);
int run_weather(const Call& call);
int run_describe(const Call& call);

}  // namespace tarn::cli
