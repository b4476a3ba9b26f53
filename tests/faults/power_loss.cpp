// The power is lost at any moment in a run of saves. What the disk may then have must be the state after the last save
// that had returned, or after the one that was running.
#include <algorithm>
#include <iostream>

#include "disk.h"
#include "parts.h"
#include "platform/file_store.h"
#include "platform/host.h"
#include "sample.h"
#include "tally.h"
#include "tarn/platform/database.h"

namespace tarn::faults {
namespace {

/// The calls of a run of saves, and the state after each save.
struct Run {
  struct Step {
    Call call;
    std::string bytes;  // of the call
    size_t saves;       // that have returned
  };
  std::vector<Step> steps;
  std::vector<std::string> states;
};

/// Every fifth operation, the large ones, and 80 of a kind; the record files are settled and the project closed
/// between.
void save_all(COM_ProjectData& project, const std::function<void()>& saved) {
  const auto operations = all_operations();
  Ptr<Database> database = host().database(project.IndexDBName());
  for (size_t i = 0; i < operations.size(); ++i) {
    const bool one_of_each = i + 6 > operations.size() || i % 4 == 0;
    if (operations[i].makes_project || !one_of_each) continue;
    try {
      operations[i].prepare(project)();
    } catch (const std::exception&) {
      continue;  // of an entity that an earlier one has deleted
    }
    saved();
    if (i % 3 == 0) files().settle();
    if (i % 7 == 0) {
      database.reset();
      database = host().database(project.IndexDBName());
    }
  }
  const auto& save = *std::ranges::find(operations, "save a new window", &Operation::name);
  for (int i = 0; i < 80; ++i) {
    save.prepare(project)();
    saved();
  }
}

Run record(const std::string& folder) {
  Run run;
  COM_ProjectData project;
  place(project, folder);
  run.states.push_back(state_of(project));
  watch(folder, [&](const Call& call) {
    if (call.changes()) {
      run.steps.push_back({call, {}, run.states.size() - 1});
      run.steps.back().bytes.assign(reinterpret_cast<const char*>(call.bytes.data()), call.bytes.size());
    }
    return Fate::Passes;
  });
  save_all(project, [&] { run.states.push_back(state_of(project)); });
  watch({}, nullptr);
  return run;
}

/// What is wrong with what the power's loss has left.
std::string judge(const std::string& folder, const std::string& before, const std::string& after) {
  const std::string left = Child([&](const Child::Says& says) {
                             COM_ProjectData project;
                             place(project, folder);
                             try {
                               const std::string state = state_of(project);
                               const std::string in_files = files_of(folder);
                               says(state.ends_with("\n" + in_files) ? state : state + "in the files:\n" + in_files);
                             } catch (const std::exception& refused) {
                               says(std::string("refused: ") + refused.what());
                             }
                           }).rest();
  return left == before || left == after ? std::string() : difference(left, after) + " / or" + difference(left, before);
}

}  // namespace

bool power_loss(int states) {
  const Folder sample, lost;
  Child([&](const Child::Says&) { make_sample(sample.path, Weather::Year); }).rest();
  Disk disk(sample.path);
  const Run run = record(sample.path);
  std::cout << run.steps.size() << " changes of the disk in " << run.states.size() - 1 << " saves\n";
  Tally tally("the power is lost");
  std::mt19937 random(1);
  const double for_each = static_cast<double>(states) / static_cast<double>(run.steps.size());
  double due = 0;
  for (size_t i = 0; i < run.steps.size(); ++i) {
    Call call = run.steps[i].call;
    call.bytes = std::as_bytes(std::span(run.steps[i].bytes));
    disk.take(call);
    for (due += for_each; due >= 1; due -= 1) {
      disk.lose_power(random, lost.path);
      const size_t saves = i + 1 < run.steps.size() ? run.steps[i + 1].saves : run.states.size() - 1;
      const size_t next = std::min(saves + 1, run.states.size() - 1);
      tally.add("change " + std::to_string(i), judge(lost.path, run.states[saves], run.states[next]));
    }
  }
  return tally.told();
}

}  // namespace tarn::faults
