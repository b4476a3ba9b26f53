// A project whose index database the older engine made becomes one of this product: the new index has its rows and
// links, settled by the record files, which are not touched. The old one stays beside it.
#pragma once

#include <string>
#include <vector>

#include "tarn/check.h"

namespace tarn::older {

struct AdoptOptions {
  bool dry_run = false;  // everything but the last step, and nothing stays of it
  bool rebuild = false;  // rows and links from the record files alone; the old index is not read
};

struct Adoption {
  std::string index;                  // the new index database
  std::string before;                 // the old one; empty where the index is one of this product already
  std::string format;                 // of the old one: "Jet 4"; empty where it was not read
  size_t tables = 0, rows = 0;        // of the project that were taken
  std::vector<std::string> kept;      // CSV files with what the project has no place for
  std::vector<std::string> notes;     // rows and values that were left out or filled in, tables that were missing
  std::vector<CheckFinding> settled;  // where the record stood against the row
  std::vector<CheckFinding> left;     // what `project check` tells of the new project
};

/// All or nothing. Errors `UnknownFormat` for an index that is none, or is damaged: then with what can be read;
/// `DatabaseLocked` where the older program has it open.
Adoption adopt_project(COM_ProjectData& project, const AdoptOptions& options = {});

/// The old index takes its place again; the new one stays beside it, under the name that is returned.
std::string undo_adoption(COM_ProjectData& project);

}  // namespace tarn::older
