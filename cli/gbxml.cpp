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

int export_gbxml_file(const Call& call) {
  COM_ProjectData project;
  open_project(project, call, Use::Reading);
  const GbxmlText exported = export_gbxml(project, progress_bar("spaces exported"));
  print_notes("not in the file", exported.notes);
  put_out(call, exported.text);
  return kClean;
}

}  // namespace tarn::cli
