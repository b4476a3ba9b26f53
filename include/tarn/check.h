// What is damaged in a project, and its repair. A check reads every row, record, link row and file, and changes
// nothing. A repair is one transaction, with a copy of the project kept beside it. docs/check.md says what is checked.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tarn/base/progress.h"
#include "tarn/project.h"

namespace tarn {

enum class Severity : uint8_t { Warning, Error };

struct CheckFinding {
  Severity severity = Severity::Error;
  std::string kind = {};      // "Window"; empty where it is the project's
  int32_t index = 0;          // of the entity; 0 is the kind's default
  std::string name = {};      // of the entity; empty where it has none
  std::string property = {};  // "GlassTrans(2)", a column of the index row, a table, or a file's name
  std::string what = {};      // is wrong, a sentence
  std::string remedy = {};    // what repair does, or what a person can do
  bool repairable = false;

  bool operator==(const CheckFinding&) const = default;
  /// "Window 3 "South", OverallUValue".
  std::string place() const;
};

/// Findings in the order of the kinds; none for a sound project. An index database that cannot be opened is a finding;
/// error `DatabaseNotFound` where there is no file of the project at all, `DatabaseLocked` for one in use.
/// `progress` is called after each entity.
std::vector<CheckFinding> check_project(COM_ProjectData& project, const Progress& progress = {});

struct RepairOptions {
  bool dry_run = false;        // says what would be repaired, and changes nothing
  bool rebuild_index = false;  // makes the index database anew from the record files alone
};

struct RepairReport {
  std::vector<CheckFinding> found;  // before and while it was repaired
  std::vector<CheckFinding> left;   // after it: what is beyond repair
  std::string copy;                 // the folder with the project as it was; empty where nothing was changed
};

/// Repairs all that can be repaired, or changes nothing and throws. A project without repairable findings is not
/// touched. Error `InvalidCall` inside an open transaction.
RepairReport repair_project(COM_ProjectData& project, const RepairOptions& options = {});

/// The findings as a JSON array, and the report as an object with "found", "left" and "copy"; for the faces.
std::string findings_json(const std::vector<CheckFinding>& findings);
std::string report_json(const RepairReport& report);

}  // namespace tarn
