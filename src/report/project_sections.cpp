// What the project is, what is stale in it and why, who uses whom, and what a check finds.
#include "platform/file_store.h"
#include "platform/host.h"
#include "project/kinds.h"
#include "report/sections.h"
#include "tarn/pictures.h"
#include "tarn/preferences.h"

namespace tarn::report {

std::string project_section(const Source& source) {
  html::Table kinds{"What the project holds", {{"kind"}, {"entities", "", true}}, {}};
  for (const auto& [name, count] : entity_counts(*source.index)) kinds.rows.push_back({name, std::to_string(count)});
  const auto preferences = source.project.NewProjectPrefs();
  if (files().exists(preferences->FileName)) preferences->Read();
  return html::paragraph("Project " + source.project.FilePrefix + ", as of " + host().now() + " UTC. Values are in " +
                         (source.in.system() == UnitSystem::SI ? "SI" : "inch-pound") + " units.") +
         kinds.html("The project has no entities yet.") + fields_table(source, *preferences, "Preferences");
}

std::string stale_section(const Source& source) {
  html::Table table{
      "Results that do not show the inputs as they are", {{"entity"}, {"results"}, {"state"}, {"why"}}, {}};
  for (const StaleResult& each : source.stale)
    table.rows.push_back({each.of.text(), each.results, each.calculated ? "stale" : "never calculated",
                          each.calculated || each.edited ? reason_of(each) : ""});
  return table.html("All results are up to date.");
}

std::string graph_section(const Source& source) {
  const ProjectGraph graph = project_graph(source.project);
  if (graph.entities.empty()) return html::paragraph("The project has no entities yet.");
  return html::picture(graph_picture(graph), "Who uses whom in the project");
}

std::string check_section(const Source& source) {
  html::Table table{"Findings", {{"where"}, {"severity"}, {"what is wrong"}, {"what to do"}}, {}};
  for (const CheckFinding& each : check_project(source.project))
    table.rows.push_back(
        {each.place(), each.severity == Severity::Error ? "error" : "warning", each.what, each.remedy});
  return table.html("The check finds nothing wrong.");
}

}  // namespace tarn::report
