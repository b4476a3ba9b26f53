#include "tarn/check.h"

#include <nlohmann/json.hpp>

#include "check/inspection.h"
#include "check/project_index.h"
#include "reflect/json_text.h"
#include "tarn/base/log.h"
#include "tarn/platform/workspace.h"

namespace tarn {

std::string CheckFinding::place() const {
  std::string text = kind;
  if (!kind.empty()) text = index == 0 ? "The default " + kind : kind + " " + std::to_string(index);
  if (!name.empty()) text += " \"" + name + "\"";
  if (!property.empty()) text += (text.empty() ? "" : ", ") + property;
  return text;
}

void inspect(Inspection& on) {
  if (!inspect_database(on)) return;
  inspect_files(on);
  for (InspectedKind& kind : on.kinds) inspect_entities(on, kind);
  inspect_links(on);
  inspect_marks(on);
  inspect_results(on);
  inspect_weather(on);
  inspect_preferences(on);
}

std::vector<CheckFinding> check_project(COM_ProjectData& project, const Progress& progress) {
  const QuietLog quiet;
  const ProjectIndex index(project);
  if (!index.database) return {index.failure};
  const Transaction reading(Transaction::Purpose::Reading);  // ended by a rollback: the engine ends it itself at damage
  std::vector<CheckFinding> findings;
  Inspection on(project, index.database);
  if (progress) on.progress = progress;
  inspect(on);
  for (Damage& damage : on.damages) findings.push_back(std::move(damage.told));
  return findings;
}

namespace {

Json json_of(const std::vector<CheckFinding>& findings) {
  Json all = Json::array();
  for (const CheckFinding& each : findings) {
    all.push_back({{"severity", each.severity == Severity::Error ? "error" : "warning"},
                   {"kind", each.kind},
                   {"index", each.index},
                   {"name", each.name},
                   {"property", each.property},
                   {"what", each.what},
                   {"remedy", each.remedy},
                   {"repairable", each.repairable}});
  }
  return all;
}

}  // namespace

std::string findings_json(const std::vector<CheckFinding>& findings) { return json_text(json_of(findings), 2); }

std::string report_json(const RepairReport& report) {
  return json_text({{"found", json_of(report.found)}, {"left", json_of(report.left)}, {"copy", report.copy}}, 2);
}

}  // namespace tarn
