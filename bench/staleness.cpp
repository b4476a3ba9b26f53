#include "plain_project.h"
#include "report.h"
#include "storage/kind.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"

namespace tarn::bench {

void staleness_cases(Report& report, const std::string& folder) {
  const Sample sample = make_sample(folder + "/staleness",
                                    {.windows = 1, .spaces = 10'000, .systems = 500, .plants = 50, .buildings = 5});
  const Ptr<Database> database = Database::open(sample.ours.index);
  const WIN_Window window;
  Workspace& workspace = Engine::of_thread().Workspaces(0);
  PlainProject plain(sample.floor);
  const Side ours{.run =
                      [&] {
                        window.kind().reach.mark(*database, {"Entity", 1, "edited"});
                      },
                  .before = [&] { workspace.BeginTrans(); },
                  .after = [&] { workspace.Rollback(); }};
  const Side floor{
      .run = [&] { plain.mark_by_chains(1); }, .before = [&] { plain.begin(); }, .after = [&] { plain.rollback(); }};
  report.compare({"mark what rests on a window of 10,000 spaces", 1, 1.5, 41}, ours, floor);
}

}  // namespace tarn::bench
