// A project as one page for a browser.

#include "tarn/report.h"

#include <iostream>

#include "cli/command.h"
#include "cli/progress.h"
#include "cli/units.h"

namespace tarn::cli {

int report_project(const Call& call) {
  if (call.words.size() != 1) throw UsageError("Which file? tarn report FILE.html");
  COM_ProjectData project;
  const auto database = open_project(project, call, Use::Reading);
  Call to = call;
  to.output = call.words.front() == "-" ? "" : call.words.front();
  put_out(to, report_html(project, units(), progress_bar("sections written")));
  if (call.json && !to.output.empty()) print_json({{"made", to.output}});
  return kClean;
}

}  // namespace tarn::cli
