// project adopt: a project of the older engine becomes one of this product.
#include "older/adopt.h"

#include <iostream>

#include "cli/command.h"

namespace tarn::cli {
namespace {

Json findings(const std::vector<CheckFinding>& found) { return Json::parse(findings_json(found)); }

void print_list(const std::string& head, const std::vector<CheckFinding>& found) {
  if (!found.empty()) std::cout << head << ":\n";
  for (const CheckFinding& each : found) std::cout << "  " << each.place() << ": " << each.what << '\n';
}

}  // namespace

int project_adopt(const Call& call) {
  COM_ProjectData project;
  place_project(project, call);
  if (call.undo) {
    const std::string aside = older::undo_adoption(project);
    std::cout << project.IndexDBName() << " is the old index again; the new one is " << aside << '\n';
    return kClean;
  }
  const older::Adoption adoption = older::adopt_project(project, {call.dry_run, call.rebuild});
  if (call.json) {
    print_json({{"index_database", adoption.index},
                {"before", adoption.before},
                {"format", adoption.format},
                {"tables", adoption.tables},
                {"rows", adoption.rows},
                {"kept", adoption.kept},
                {"notes", adoption.notes},
                {"settled", findings(adoption.settled)},
                {"left", findings(adoption.left)}});
    return kClean;
  }
  if (adoption.before.empty()) {
    std::cout << adoption.index << " is an index database of this product already; nothing is to be done\n";
    return kClean;
  }
  const char* made = call.dry_run ? "would make " : "made ";
  std::cout << made << adoption.index;
  if (adoption.format.empty())
    std::cout << " from the record files\n";
  else
    std::cout << " from " << adoption.format << ": " << adoption.rows << " rows of " << adoption.tables << " tables\n";
  if (!call.dry_run) std::cout << "the old index is " << adoption.before << '\n';
  for (const std::string& csv : adoption.kept)
    std::cout << (call.dry_run ? "would keep" : "kept") << " what the project has no place for: " << csv << '\n';
  print_notes("note", adoption.notes);
  print_list("settled by the record", adoption.settled);
  print_list("left as it is ('tarn project check' tells more)", adoption.left);
  return kClean;
}

}  // namespace tarn::cli
