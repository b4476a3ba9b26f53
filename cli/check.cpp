// project check and repair.

#include "tarn/check.h"

#include <algorithm>
#include <iostream>

#include "cli/command.h"
#include "cli/progress.h"
#include "platform/host.h"

namespace tarn::cli {
namespace {

void print_findings(const std::vector<CheckFinding>& findings) {
  for (const CheckFinding& each : findings) {
    const std::string place = each.place();
    std::cout << (each.severity == Severity::Error ? "error: " : "warning: ") << place << (place.empty() ? "" : ": ")
              << each.what << "\n  " << each.remedy << '\n';
  }
}

std::string counted(size_t count) { return std::to_string(count) + (count == 1 ? " finding" : " findings"); }

size_t repairable(const std::vector<CheckFinding>& findings) {
  return static_cast<size_t>(std::ranges::count_if(findings, &CheckFinding::repairable));
}

std::string summary(const std::vector<CheckFinding>& findings) {
  if (findings.empty()) return "no findings";
  const size_t count = repairable(findings);
  return counted(findings.size()) + ", of which repair mends " + std::to_string(count);
}

}  // namespace

int project_check(const Call& call) {
  COM_ProjectData project;
  place_project(project, call);
  Ptr<Database> database;  // read-only, so that nothing is made or changed
  host().database = [&database](const std::string& path) {
    if (!database) database = Database::open(path, Database::Access::ReadOnly);
    return database;
  };
  const auto findings = check_project(project, progress_bar("checked"));
  if (call.json) {
    std::cout << findings_json(findings) << '\n';
  } else {
    print_findings(findings);
    std::cout << summary(findings) << '\n';
  }
  return findings.empty() ? kClean : kFindings;
}

int project_repair(const Call& call) {
  COM_ProjectData project;
  place_project(project, call);
  const RepairReport report = repair_project(project, {call.dry_run, call.rebuild_index});
  if (call.json) {
    std::cout << report_json(report) << '\n';
  } else if (call.dry_run) {
    print_findings(report.found);
    std::cout << summary(report.found) << "; nothing was changed\n";
  } else {
    print_findings(report.found);
    std::cout << counted(repairable(report.found)) << " repaired, " << report.left.size() << " left\n";
    if (!report.copy.empty()) std::cout << "the project as it was: " << report.copy << '\n';
  }
  return report.left.empty() ? kClean : kFindings;
}

}  // namespace tarn::cli
