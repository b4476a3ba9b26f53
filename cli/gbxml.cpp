// Buildings in gbXML, in and out.

#include "tarn/gbxml.h"

#include <iostream>

#include "cli/command.h"
#include "cli/progress.h"
#include "cli/units.h"

namespace tarn::cli {

int import_gbxml_file(const Call& call) {
  if (call.words.size() != 1) throw UsageError("Which file? tarn import gbxml FILE");
  COM_ProjectData project;
  const auto database = open_project(project, call, Use::Writing);
  const GbxmlAccount account = import_gbxml(project, call.words.front(), progress_bar("spaces imported"));
  if (call.json) {
    std::cout << account_json(account);
  } else {
    print_notes("", account.notes);
    std::cout << account_text(account, units());
  }
  return kClean;
}

}  // namespace tarn::cli
