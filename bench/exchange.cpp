// A project of 10,000 windows as JSON and back. Floor: the JSON library alone on the same text, plus the loads or
// saves.
#include "tarn/exchange.h"

#include <nlohmann/json.hpp>

#include "platform/host.h"
#include "project/new_index.h"
#include "reflect/json_text.h"
#include "report.h"
#include "sample.h"
#include "storage/kind.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"

namespace tarn::bench {
namespace {

constexpr int kWindows = 10'000;

/// A project in a folder, made anew for each run of an import.
struct Target {
  explicit Target(const std::string& path) {
    project.SetWorkPath(path);
    project.FilePrefix = "T";
  }
  void clear() {
    database.reset();
    host().files->remove(project.IndexDBName());
    host().files->remove(project.WindowFilename());
    create_index(project.IndexDBName());
    database = host().database(project.IndexDBName());
  }
  COM_ProjectData project;
  Ptr<Database> database;
};

void save_all(COM_ProjectData& project) {
  Transaction transaction;
  const auto window = project.NewWindow();
  for (int n = 1; n <= kWindows; ++n) {
    static_cast<WindowRecord&>(*window) = sample_window(n);
    window->SaveAs(static_cast<int16_t>(n), Naming::Valid);
  }
  transaction.commit();
}

void load_all(COM_ProjectData& project) {
  Transaction transaction;
  const auto window = project.NewWindow();
  for (int n = 1; n <= kWindows; ++n) window->Load(static_cast<int16_t>(n));
}

}  // namespace

void exchange_cases(Report& report, const std::string& folder) {
  const Progress quiet = [](size_t, size_t) {};
  Target ours(folder);
  ours.project.FilePrefix = "OURS";
  Target floor(folder);
  ours.clear();
  save_all(ours.project);
  const std::string text = export_project(ours.project, {}, quiet);
  const auto tree = Json::parse(text);
  size_t bytes = 0;
  report.compare({"export 10,000 windows", kWindows, 1.3, 7},
                 {.run = [&] { bytes += export_project(ours.project, {}, quiet).size(); }}, {.run = [&] {
                   load_all(ours.project);
                   bytes += tree.dump().size();
                 }});
  report.compare({"import 10,000 windows", kWindows, 1.3, 7},
                 {.run = [&] { import_project(ours.project, text, quiet); }, .before = [&] { ours.clear(); }},
                 {.run =
                      [&] {
                        bytes += Json::parse(text).size();
                        save_all(floor.project);
                      },
                  .before = [&] { floor.clear(); }});
}

}  // namespace tarn::bench
