#include "platform/workspace.h"

#include <algorithm>

#include "base/error.h"
#include "platform/commit.h"
#include "platform/database.h"

namespace tarn {

Engine& Engine::of_thread() {
  thread_local Engine engine;
  return engine;
}

Workspace& Engine::Workspaces(int number) {
  if (number != 0) fail(ErrorNumber::ItemNotFound, "There is no workspace " + std::to_string(number) + "; use 0.");
  return workspace_;
}

void Workspace::BeginTrans() {
  files_.begin();
  ++depth_;
}

void Workspace::CommitTrans() {
  if (depth_ == 0) fail(ErrorNumber::NoTransaction, "There is no transaction to commit.");
  if (depth_ == 1) return commit_outermost();
  for (const auto& database : enlisted_) database->release_level(depth_);
  files_.merge_down();
  --depth_;
}

void Workspace::Rollback() {
  if (depth_ == 0) fail(ErrorNumber::NoTransaction, "There is no transaction to roll back.");
  for (const auto& database : enlisted_) database->rollback_level(depth_);
  files_.drop();
  if (--depth_ == 0) enlisted_.clear();
}

void Workspace::commit_outermost() {
  using Writes = std::vector<std::pair<std::string, const Extents*>>;
  try {
    const auto writes_of = [this](const Database* owner) {
      Writes writes;
      for (const auto& [path, pending] : files_.outermost()) {
        if (pending.owner.get() == owner) writes.emplace_back(path, &pending.extents);
      }
      std::sort(writes.begin(), writes.end());
      return writes;
    };
    for (const auto& [path, pending] : files_.outermost()) {
      if (pending.owner) pending.owner->join();
    }
    if (Writes free = writes_of(nullptr); !free.empty()) FileCommit({}, std::move(free)).apply();
    for (const auto& database : enlisted_) {
      Writes writes = writes_of(database.get());
      if (writes.empty()) {
        database->commit();
        continue;
      }
      FileCommit files(database->claim_journal(), std::move(writes));
      files.apply();
      try {
        database->commit();
      } catch (...) {
        files.undo();
        throw;
      }
      files.forget();
    }
  } catch (...) {
    Rollback();
    throw;
  }
  files_.drop();
  depth_ = 0;
  enlisted_.clear();
}

Transaction::~Transaction() {
  if (open_) workspace_.Rollback();
}

void Transaction::commit() {
  open_ = false;  // a failed commit has rolled back
  workspace_.CommitTrans();
}

}  // namespace tarn
