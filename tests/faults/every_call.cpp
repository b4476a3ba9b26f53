// Every file call of every operation, of its opening and of its closing, meets every fault. What is left must be the
// state before or the state after.
#include <algorithm>
#include <array>
#include <iostream>
#include <random>
#include <sstream>
#include <vector>

#include "calls.h"
#include "parts.h"
#include "platform/host.h"
#include "project/defaults.h"
#include "sample.h"
#include "tally.h"
#include "tarn/base/error.h"
#include "tarn/platform/database.h"
#include "tarn/window.h"

namespace tarn::faults {
namespace {

struct Fault {
  const char* name;
  Fate fate;
  bool lasts;
};
constexpr Fault kFaults[]{
    {"killed before", Fate::DiesBefore, false}, {"killed after half of it", Fate::DiesTorn, false},
    {"killed after", Fate::DiesAfter, false},   {"error once", Fate::Fails, false},
    {"error from then on", Fate::Fails, true},  {"full once", Fate::IsFull, false},
    {"full from then on", Fate::IsFull, true},  {"short", Fate::IsShort, false}};

bool can_meet(const Call& call, Fate fate) {
  switch (fate) {
    case Fate::DiesTorn:
    case Fate::IsShort:
      return call.kind == Kind::Write;
    case Fate::IsFull:
      return call.kind == Kind::Write || call.kind == Kind::Create;
    case Fate::Fails:
      return true;
    default:
      return call.changes();
  }
}

/// A fault at one of the calls that can meet it.
struct Trap {
  const Fault& fault;
  int at;
  int seen = 0;
  bool lifted = false;

  void set(const std::string& folder) {
    watch(folder, [this](const Call& call) {
      if (lifted || !can_meet(call, fault.fate)) return Fate::Passes;
      const int number = seen++;
      return number == at || (fault.lasts && number > at) ? fault.fate : Fate::Passes;
    });
  }
  bool met() const { return seen > at; }
};

/// What an operation leaves.
struct Expected {
  std::string before, after;            // as an open project has it
  std::string left_before, left_after;  // as a new program finds it, with the files after its end
  std::string with_neighbour[2];        // the same, after the neighbour's save
};

class Case {
 public:
  Case(const Operation& operation, const std::string& sample);
  /// The calls that can meet a fault.
  int calls(const Fault& fault) const { return calls_[&fault - kFaults]; }
  std::string hit(const Fault& fault, int at) const;
  std::string hit_twice(const Fault& fault, int at, const Fault& second, int second_at) const;
  std::string hit_beside_neighbour(const Fault& fault, int at) const;
  const Operation& operation;

 private:
  void start() const;
  void act(Trap& trap, const Child::Says& says) const;
  std::string judge(const std::string& left, const std::string& said) const;
  const std::string& sample_;
  Folder folder_;
  Expected expected_;
  std::array<int, std::size(kFaults)> calls_{};
};

std::string left_in(const std::string& folder, const Operation& operation) {
  return Child([&](const Child::Says& says) {
           COM_ProjectData project;
           place(project, folder);
           std::string state = state_of(project);
           if (operation.makes_project && state == "none") {
             create_project(project);  // nothing is in the way of it
             says(state);
           } else {
             says(state + "\n" + files_of(folder));
           }
         })
      .rest();
}

/// Beside what the operations do.
void save_as_neighbour(COM_ProjectData& project) {
  auto window = project.NewWindow();
  window->CreateDefault();
  window->Name = "neighbour";
  window->SaveAs(20, Naming::AsItIs);
}

Case::Case(const Operation& what, const std::string& sample) : operation(what), sample_(sample) {
  for (const bool done : {false, true}) {
    start();
    const std::string state = Child([&](const Child::Says& says) {
                                COM_ProjectData project;
                                place(project, folder_.path);
                                if (done) operation.prepare(project)();
                                says(state_of(project));
                              }).rest();
    (done ? expected_.after : expected_.before) = state;
    (done ? expected_.left_after : expected_.left_before) = left_in(folder_.path, operation);
    if (operation.makes_project) continue;
    Child([&](const Child::Says&) {
      COM_ProjectData project;
      place(project, folder_.path);
      save_as_neighbour(project);
    }).rest();
    expected_.with_neighbour[done] = left_in(folder_.path, operation);
  }
  start();
  std::istringstream counts(Child([&](const Child::Says& says) {
                              std::array<int, std::size(kFaults)> met{};
                              watch(folder_.path, [&](const Call& call) {
                                for (size_t i = 0; i < met.size(); ++i) met[i] += can_meet(call, kFaults[i].fate);
                                return Fate::Passes;
                              });
                              {
                                COM_ProjectData project;
                                place(project, folder_.path);
                                const auto open =
                                    operation.makes_project ? nullptr : host().database(project.IndexDBName());
                                operation.prepare(project)();
                              }
                              for (const int count : met) says(std::to_string(count) + " ");
                            }).rest());
  for (int& count : calls_) counts >> count;
  if (expected_.before == expected_.after || expected_.after.empty())
    std::cout << "no change by: " << operation.name << '\n';
}

void Case::start() const { folder_.copy(sample_); }

/// Opens, acts, closes. A failed action leaves the old state, and succeeds when the fault is gone.
void Case::act(Trap& trap, const Child::Says& says) const {
  COM_ProjectData project;
  place(project, folder_.path);
  Ptr<Database> database;
  std::function<void()> action;
  const auto attempt = [&] {
    if (!database && !operation.makes_project) database = host().database(project.IndexDBName());
    if (!action) action = operation.prepare(project);
    action();
  };
  const auto expect = [&](const std::string& wanted, const char* when) {
    if (const std::string is = state_of(project); is != wanted)
      says(std::string("wrong ") + when + difference(is, wanted) + "\n");
  };
  trap.set(folder_.path);
  try {
    attempt();
    says("done\n");
    if (!trap.met()) return;
    trap.lifted = true;
    expect(expected_.after, "after success");
  } catch (const std::exception& failure) {
    trap.lifted = true;
    // The disk failed in the last call of a commit, and cannot be asked.
    if (std::string(failure.what()).find("whether it is complete") != std::string::npos) return;
    expect(expected_.before, (std::string("after failure (") + failure.what() + ")").c_str());
    try {
      attempt();
      expect(expected_.after, "after another try");
    } catch (const std::exception& again) {
      says(std::string("wrong, not usable: ") + again.what() + "\n");
    }
    says("done\n");
  }
}

std::string Case::judge(const std::string& left, const std::string& said) const {
  if (const size_t wrong = said.find("wrong"); wrong != std::string::npos) return said.substr(wrong);
  if (left == expected_.left_after) return {};
  if (said.find("done") == std::string::npos && left == expected_.left_before) return {};
  return "left " + std::string(said.empty() ? "after death" : said) + difference(left, expected_.left_after) + " / or" +
         difference(left, expected_.left_before);
}

std::string Case::hit(const Fault& fault, int at) const {
  start();
  const std::string said = Child([&](const Child::Says& says) {
                             Trap trap{fault, at};
                             act(trap, says);
                           }).rest();
  return judge(left_in(folder_.path, operation), said);
}

std::string Case::hit_twice(const Fault& fault, int at, const Fault& second, int second_at) const {
  start();
  std::string said = Child([&](const Child::Says& says) {
                       Trap trap{fault, at};
                       act(trap, says);
                     }).rest();
  said += Child([&](const Child::Says&) {
            Trap trap{second, second_at};
            trap.set(folder_.path);
            COM_ProjectData project;
            place(project, folder_.path);
            try {
              state_of(project);
            } catch (const std::exception&) {
              trap.lifted = true;
            }
          }).rest();
  return judge(left_in(folder_.path, operation), said);
}

/// The neighbour has the project open all the time, reads, and saves at the end.
std::string Case::hit_beside_neighbour(const Fault& fault, int at) const {
  start();
  Child neighbour([&](const Child::Says& says) {
    COM_ProjectData project;
    place(project, folder_.path);
    const auto database = host().database(project.IndexDBName());
    std::string state = state_of(project);
    says("ready\n");
    try {
      do {
        state = state_of(project);
        if (state != expected_.before && state != expected_.after)
          says("wrong beside it" + difference(state, expected_.after) + "\n");
      } while (!Child::heard());
      state = state_of(project);
      save_as_neighbour(project);
      says(state == expected_.after ? "after\n" : "before\n");
    } catch (const std::exception& refused) {
      says(std::string("wrong, refused: ") + refused.what() + "\n");
    }
  });
  neighbour.line();
  const std::string said = Child([&](const Child::Says& says) {
                             Trap trap{fault, at};
                             act(trap, says);
                           }).rest();
  neighbour.tell();
  const std::string saw = neighbour.rest();
  neighbour.status();
  for (const std::string& text : {said, saw})
    if (const size_t wrong = text.find("wrong"); wrong != std::string::npos) return text.substr(wrong);
  const bool after = saw.find("after") != std::string::npos;
  if (!after && said.find("done") != std::string::npos) return "the neighbour does not see a save that is done";
  return difference(left_in(folder_.path, operation), expected_.with_neighbour[after]);
}

}  // namespace

bool every_call(int one_in) {
  const Folder sample, with_weather, empty;
  Child([&](const Child::Says&) { make_sample(sample.path, Weather::None); }).rest();
  Child([&](const Child::Says&) { make_sample(with_weather.path, Weather::Year); }).rest();
  Tally once("every call meets every fault"), twice("and the next opening meets one too"),
      beside("while another program has the project open");
  std::mt19937 random(1);
  const auto chosen = [&](int among) { return random() % static_cast<unsigned>(among) == 0; };
  // A few operations with several points each are quicker than one point of each.
  const int operations_one_in = std::max(one_in / 40, 1);
  one_in /= operations_one_in;
  for (const Operation& operation : all_operations()) {
    if (!chosen(operations_one_in)) continue;
    const Folder& start = operation.makes_project ? empty : operation.weather == Weather::Year ? with_weather : sample;
    const Case each(operation, start.path);
    for (const Fault& fault : kFaults) {
      const int calls = each.calls(fault);
      for (int at = 0; at < calls; ++at) {
        const std::string point =
            operation.name + ", call " + std::to_string(at) + " of " + std::to_string(calls) + " " + fault.name;
        if (chosen(one_in)) once.add(point, each.hit(fault, at));
        if (operation.makes_project) continue;
        if (chosen(8 * one_in)) {
          const Fault& second = kFaults[random() % std::size(kFaults)];
          const int second_at = static_cast<int>(random() % 12);
          twice.add(point + ", then call " + std::to_string(second_at) + " " + second.name,
                    each.hit_twice(fault, at, second, second_at));
        }
        if (chosen(16 * one_in)) beside.add(point, each.hit_beside_neighbour(fault, at));
      }
    }
  }
  const bool right[]{once.told(), twice.told(), beside.told()};
  return std::ranges::all_of(right, [](bool each) { return each; });
}

}  // namespace tarn::faults
