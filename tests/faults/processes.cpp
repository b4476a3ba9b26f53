// Programs, and threads of one, move amounts between entities of several kinds. No move is lost or half done, nobody is
// refused, and who reads sees one moment.
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <iostream>
#include <memory>
#include <random>
#include <thread>

#include "calls.h"
#include "parts.h"
#include "platform/host.h"
#include "project/defaults.h"
#include "sample.h"
#include "tally.h"
#include "tarn/boiler.h"
#include "tarn/cooling_tower.h"
#include "tarn/door.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"
#include "tarn/window.h"

namespace tarn::faults {
namespace {

using Clock = std::chrono::steady_clock;
using Says = Child::Says;

constexpr int kEach = 3, kMovers = 4, kFirstCounter = 10;
constexpr float kAmount = 1000;

/// Where a kind keeps an amount: in its record, and in its row.
struct Account {
  std::string table, column;
  Ptr<StoredEntity> (*make)(COM_ProjectData&);
  R4& (*amount)(StoredEntity&);
};

template <typename C, auto Field>
R4& amount_of(StoredEntity& entity) {
  return dynamic_cast<C&>(entity).*Field;
}

using Project = COM_ProjectData;
const Account kAccounts[]{
    {"WindowIndex", "fHeight", [](Project& p) -> Ptr<StoredEntity> { return p.NewWindow(); },
     amount_of<WIN_Window, &WindowRecord::Height>},
    {"DoorIndex", "fArea", [](Project& p) -> Ptr<StoredEntity> { return p.NewDoor(); },
     amount_of<DOR_Door, &DoorRecord::GrossArea>},
    {"BoilerIndex", "fBoilerOutput", [](Project& p) -> Ptr<StoredEntity> { return p.NewBoiler(); },
     amount_of<BLR_Boiler, &BoilerRecord::BoilerOutput>},
    {"TowerIndex", "fCondPumpFlow", [](Project& p) -> Ptr<StoredEntity> { return p.NewCoolingTower(); },
     amount_of<TWR_CoolingTower, &TowerRecord::CondPumpFlow>}};

void make_accounts(const std::string& folder) {
  COM_ProjectData project;
  place(project, folder);
  create_project(project);
  for (const Account& account : kAccounts) {
    for (int index = 1; index <= kEach; ++index) {
      const auto entity = account.make(project);
      entity->CreateDefault();
      account.amount(*entity) = kAmount;
      entity->Save();
    }
  }
  for (int mover = 0; mover < kMovers; ++mover) {
    auto counter = project.NewWindow();
    counter->SaveAs(static_cast<int16_t>(kFirstCounter + mover), Naming::AsItIs);
  }
}

double milliseconds_since(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// Says a dot for each move that is complete, what it was refused, and its longest commit.
void move_amounts(const std::string& folder, int mover, Clock::time_point end, const Says& says) {
  COM_ProjectData project;
  place(project, folder);
  std::mt19937 random(std::random_device{}());
  double longest = 0;
  while (Clock::now() < end) {
    try {
      Transaction move;
      const auto amount = static_cast<float>(random() % 10);
      for (const float change : {-amount, amount}) {
        const Account& account = kAccounts[random() % std::size(kAccounts)];
        const auto entity = account.make(project);
        entity->Load(static_cast<int16_t>(1 + random() % kEach));
        account.amount(*entity) = account.amount(*entity) + change;
        entity->Save();
      }
      auto counter = project.NewWindow();
      counter->Load(static_cast<int16_t>(kFirstCounter + mover));
      counter->Width = counter->Width + 1;
      counter->Save();
      const auto start = Clock::now();
      move.commit();
      longest = std::max(longest, milliseconds_since(start));
      says(".");
    } catch (const std::exception& refused) {
      says(std::string("\nrefused: ") + refused.what() + "\n");
    }
  }
  says("\nlongest " + std::to_string(longest) + "\n");
}

/// The sum of all amounts; `wrong` where a row is not its record.
double sum_of(COM_ProjectData& project, Database& database, std::string& wrong) {
  double sum = 0;
  for (const Account& account : kAccounts) {
    auto rows = database.OpenRecordset("SELECT nIndex, " + account.column + " FROM " + account.table +
                                       " WHERE nIndex < " + std::to_string(kFirstCounter));
    for (; !rows.AtEof(); rows.MoveNext()) {
      const auto entity = account.make(project);
      entity->Load(static_cast<int16_t>(rows.Fields("nIndex").integer()));
      const double row = rows.Fields(account.column).real(), record = account.amount(*entity);
      if (row != record)
        wrong = account.table + " has " + std::to_string(row) + ", its record " + std::to_string(record);
      sum += record;
    }
  }
  const double all = static_cast<double>(kAmount) * kEach * std::size(kAccounts);
  if (sum != all) wrong += " the sum is " + std::to_string(sum) + " and not " + std::to_string(all);
  return sum;
}

void read_amounts(const std::string& folder, Clock::time_point end, const Says& says) {
  COM_ProjectData project;
  place(project, folder);
  double longest = 0;
  while (Clock::now() < end) {
    std::string wrong;
    try {
      const auto database = host().database(project.IndexDBName());
      const auto start = Clock::now();
      Transaction one_moment(Transaction::Purpose::Reading);
      database->OpenRecordset("SELECT nIndex FROM WindowIndex WHERE nIndex = 1").AtEof();
      longest = std::max(longest, milliseconds_since(start));
      sum_of(project, *database, wrong);
    } catch (const std::exception& refused) {
      wrong = std::string("refused: ") + refused.what();
    }
    says(wrong.empty() ? "." : "\nwrong " + wrong + "\n");
  }
  says("\nlongest " + std::to_string(longest) + "\n");
}

/// What movers and readers have said.
struct Told {
  size_t moves[kMovers]{}, kills[kMovers]{}, reads = 0, wrong = 0, refused = 0;
  double commit = 0, blocked = 0;  // the longest, ms

  void take(const std::string& text, size_t& dots, double& longest) {
    dots += static_cast<size_t>(std::ranges::count(text.substr(0, text.find("\nlongest")), '.'));
    for (size_t at = 0; (at = text.find("\nrefused", at)) != std::string::npos; ++at, ++refused)
      std::cout << "REFUSED" << text.substr(at, 200) << '\n';
    for (size_t at = 0; (at = text.find("\nwrong", at)) != std::string::npos; ++at, ++wrong)
      std::cout << "WRONG" << text.substr(at, 200) << '\n';
    if (const size_t at = text.find("longest "); at != std::string::npos)
      longest = std::max(longest, std::stod(text.substr(at + 8)));
  }
};

/// The counters have what was told; a move whose program was killed may be there or not.
bool judge(const std::string& folder, const std::string& what, const Told& told) {
  COM_ProjectData project;
  place(project, folder);
  const auto database = host().database(project.IndexDBName());
  std::string wrong;
  sum_of(project, *database, wrong);
  size_t moves = 0, kills = 0, lost = 0;
  for (int mover = 0; mover < kMovers; ++mover) {
    auto counter = project.NewWindow();
    counter->Load(static_cast<int16_t>(kFirstCounter + mover));
    const auto kept = static_cast<size_t>(counter->Width);
    moves += told.moves[mover];
    kills += told.kills[mover];
    if (kept < told.moves[mover]) lost += told.moves[mover] - kept;
    if (kept > told.moves[mover] + told.kills[mover]) wrong += " more moves than were made";
  }
  std::cout << what << ": " << moves << " moves, " << kills << " kills, " << told.reads << " readings; " << lost
            << " lost, " << told.wrong << " half, " << told.refused << " refused" << (wrong.empty() ? "" : "; " + wrong)
            << "; longest commit " << std::llround(told.commit) << " ms, longest wait of a reader "
            << std::llround(told.blocked) << " ms" << std::endl;
  return wrong.empty() && lost + told.wrong + told.refused == 0 && moves > 0 && told.reads > 0;
}

using Children = std::array<std::unique_ptr<Child>, kMovers>;

/// Ends one at a random moment, and starts another in its place, until the time is over.
void kill_at_random(Children& movers, const std::function<std::unique_ptr<Child>(int)>& start, Clock::time_point end,
                    Told& told) {
  std::mt19937 random(1);
  while (Clock::now() + std::chrono::milliseconds(300) < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10 + random() % 100));
    const int mover = static_cast<int>(random() % kMovers);
    movers[mover]->kill();
    told.take(movers[mover]->rest(), told.moves[mover], told.commit);
    ++told.kills[mover];
    movers[mover] = start(mover);
  }
}

bool programs(int seconds, bool kills) {
  const Folder folder;
  Child([&](const Says&) { make_accounts(folder.path); }).rest();
  const auto end = Clock::now() + std::chrono::seconds(seconds);
  const auto start = [&](int mover) {
    return std::make_unique<Child>([&folder, mover, end](const Says& says) {
      watch({}, nullptr);
      move_amounts(folder.path, mover, end, says);
    });
  };
  Told told;
  Children movers;
  for (int mover = 0; mover < kMovers; ++mover) movers[mover] = start(mover);
  Child reader([&](const Says& says) {
    watch({}, nullptr);
    read_amounts(folder.path, end, says);
  });
  if (kills) kill_at_random(movers, start, end, told);
  for (int mover = 0; mover < kMovers; ++mover) told.take(movers[mover]->rest(), told.moves[mover], told.commit);
  told.take(reader.rest(), told.reads, told.blocked);
  return judge(folder.path, kills ? "4 programs, killed at random" : "4 programs", told);
}

bool threads(int seconds) {
  const Folder folder;
  Child([&](const Says&) { make_accounts(folder.path); }).rest();
  const auto end = Clock::now() + std::chrono::seconds(seconds);
  Told told;
  std::array<std::string, 3> said;
  {
    std::vector<std::jthread> all;
    for (int thread = 0; thread < 3; ++thread) {
      const auto says = [&, thread](const std::string& text) { said[thread] += text; };
      all.emplace_back([&, thread, says] {
        thread == 2 ? read_amounts(folder.path, end, says) : move_amounts(folder.path, thread, end, says);
      });
    }
  }
  for (int thread = 0; thread < 2; ++thread) told.take(said[thread], told.moves[thread], told.commit);
  told.take(said[2], told.reads, told.blocked);
  return judge(folder.path, "2 threads", told);
}

}  // namespace

bool processes(int seconds) {
  const bool right[]{programs(seconds, false), programs(seconds, true), threads(std::max(seconds / 3, 1))};
  return std::ranges::all_of(right, [](bool each) { return each; });
}

}  // namespace tarn::faults
