// Repair in rounds: inspect, mend what was found, inspect again, until nothing is left that can be mended, in one
// transaction. An index that cannot be read is made beside the old one and takes its place at the end.
#include <algorithm>

#include "check/inspection.h"
#include "check/other_index.h"
#include "check/project_copy.h"
#include "check/project_index.h"
#include "platform/host.h"
#include "project/new_index.h"
#include "tarn/base/log.h"
#include "tarn/platform/statement.h"
#include "tarn/platform/workspace.h"

namespace tarn {
namespace {

constexpr int kMostRounds = 10;

bool any_repairable(const std::vector<CheckFinding>& findings) {
  return std::ranges::any_of(findings, &CheckFinding::repairable);
}

/// One round: what was found is added to the report, and mended. Returns the last that was; empty for nothing.
std::string mend_round(COM_ProjectData& project, const Ptr<Database>& database, RepairReport& report) {
  Inspection on(project, database);
  inspect(on);
  report.left.clear();
  std::string mended;
  for (Damage& damage : on.damages) {
    const bool known = std::ranges::find(report.found, damage.told) != report.found.end();
    if (!known) report.found.push_back(damage.told);
    if (!damage.mend) {
      report.left.push_back(damage.told);
      continue;
    }
    damage.mend();
    mended = damage.told.place() + ": " + damage.told.what;
  }
  return mended;
}

void mend_all(COM_ProjectData& project, const Ptr<Database>& database, RepairReport& report) {
  std::string last;
  for (int round = 0; round < kMostRounds; ++round) {
    last = mend_round(project, database, report);
    if (last.empty()) return;
  }
  fail(ErrorNumber::InvalidCall,
       "The repair did not come to an end, and nothing was changed. " + last + " Restore the project from a copy.");
}

/// Every table is made anew, inside the transaction; pending record bytes stay.
void empty_index(Database& database) {
  std::vector<std::string> drops;
  {
    database.join(Database::Part::Reading);
    Statement things(database,
                     "SELECT type, name FROM sqlite_master WHERE type IN ('table', 'view') AND name NOT LIKE "
                     "'sqlite!_%' ESCAPE '!' AND name <> 'PendingWrites'");
    while (things.step()) {
      drops.push_back("DROP " + std::get<std::string>(things.column(0)) + " \"" +
                      std::get<std::string>(things.column(1)) + "\"");
    }
  }
  for (const std::string& drop : drops) database.Execute(drop);
  for (const std::string& statement : schema_statements()) database.Execute(statement);
}

/// In one transaction, with the copy made under its lock.
void repair_in_place(COM_ProjectData& project, const Ptr<Database>& database, bool rebuild, RepairReport& report) {
  if (database->foreign_pending_rows().empty()) database->settle();
  Transaction transaction;
  database->join();
  ProjectCopy copy(project);
  copy.add_index(project);
  if (rebuild) {
    empty_index(*database);
    fill_index(project, database);
  }
  mend_all(project, database, report);
  transaction.commit();
  report.copy = copy.keep();
  database->settle();
}

/// The new index is complete, and the record files are mended, before it takes the place of the one that cannot be
/// read.
void replace_index(COM_ProjectData& project, RepairReport& report) {
  const std::string path = project.IndexDBName(), made = path + "-rebuilt";
  ProjectCopy copy(project);
  for (const char* ending : {"", "-journal"}) system_files().remove(made + ending);
  create_index(made);
  try {
    const Ptr<Database> database = Database::open(made);
    const OtherIndex other(database);
    Transaction transaction;
    fill_index(project, database);
    mend_all(project, database, report);
    transaction.commit();
    database->settle();
  } catch (...) {
    for (const char* ending : {"", "-journal"}) system_files().remove(made + ending);
    throw;
  }
  copy.take_index(project);
  report.copy = copy.keep();
  system_files().rename(made, path);
  system_files().sync_folder(host().directory_form(project.WorkPath()));
}

/// What check finds, and whether the engine can read the index.
struct FirstLook {
  std::vector<CheckFinding> findings;
  bool readable = true;
};

FirstLook first_look(COM_ProjectData& project) {
  const ProjectIndex index(project);
  if (!index.database) return {{index.failure}, false};
  const Transaction reading(Transaction::Purpose::Reading);  // ended by a rollback: the engine ends it itself at damage
  FirstLook look{{}, index.database->damage().empty()};
  Inspection on(project, index.database);
  inspect(on);
  for (const Damage& damage : on.damages) look.findings.push_back(damage.told);
  return look;
}

}  // namespace

RepairReport repair_project(COM_ProjectData& project, const RepairOptions& options) {
  if (Engine::of_thread().Workspaces(0).depth() > 0)
    fail(ErrorNumber::InvalidCall, "A transaction is open; commit it or roll it back before the repair.");
  RepairReport report;
  const QuietLog quiet;
  FirstLook look = first_look(project);
  report.found = look.findings;
  if (options.dry_run || (!options.rebuild_index && !any_repairable(look.findings))) {
    report.left = std::move(look.findings);
    return report;
  }
  if (look.readable)
    repair_in_place(project, host().database(project.IndexDBName()), options.rebuild_index, report);
  else
    replace_index(project, report);
  return report;
}

}  // namespace tarn
