#include "tarn/platform/workspace.h"

#include <algorithm>
#include <iterator>

#include "platform/commit.h"
#include "platform/file_store.h"
#include "tarn/base/error.h"
#include "tarn/base/log.h"
#include "tarn/platform/database.h"

namespace tarn {

Workspace::Workspace() : files_(std::make_unique<FileStore>()) {}
Workspace::~Workspace() = default;

FileStore& files() { return Engine::of_thread().Workspaces(0).files(); }

Engine& Engine::of_thread() {
  thread_local Engine engine;
  return engine;
}

Workspace& Engine::Workspaces(int number) {
  if (number != 0) fail(ErrorNumber::ItemNotFound, "There is no workspace " + std::to_string(number) + "; use 0.");
  return workspace_;
}

void Workspace::require_own() const {
  if (levels_.empty()) fail(ErrorNumber::NoTransaction, "There is no transaction to end.");
  if (levels_.back()) fail(ErrorNumber::NoTransaction, "The transaction cannot end while a save inside it is running.");
}

void Workspace::CommitTrans() {
  require_own();
  commit();
}

void Workspace::Rollback() {
  require_own();
  roll_back();
}

void Workspace::begin(bool scoped) {
  files_->begin();
  undos_.emplace_back();
  levels_.push_back(scoped);
}

void Workspace::commit() {
  try {
    if (depth() == 1) return commit_outermost();
    for (const auto& database : enlisted_) database->release_level(depth());
  } catch (...) {
    roll_back();
    throw;
  }
  files_->merge_down();
  auto undos = std::move(undos_.back());
  undos_.pop_back();
  std::move(undos.begin(), undos.end(), std::back_inserter(undos_.back()));
  levels_.pop_back();
}

void Workspace::roll_back() {
  const size_t level = depth();
  files_->drop();
  const auto undos = std::move(undos_.back());
  undos_.pop_back();
  levels_.pop_back();
  for (auto undo = undos.rbegin(); undo != undos.rend(); ++undo) (*undo)();
  for (const auto& database : enlisted_) database->rollback_level(level);
  if (level == 1) enlisted_.clear();
}

void Workspace::commit_outermost() {
  for (const auto& [path, pending] : files_->outermost()) {
    if (pending.owner) pending.owner->join();
  }
  // Writes that belong to no database are committed with the first database that commits, or by themselves where none
  // does.
  const auto writes_of = [this](const Database* owner) {
    std::vector<std::pair<std::string, const FileStore::Pending*>> writes;
    const auto writes_too = [](const Ptr<Database>& database) { return !database->read_only(); };
    const auto found = std::find_if(enlisted_.begin(), enlisted_.end(), writes_too);
    const Database* first = found == enlisted_.end() ? nullptr : found->get();
    for (const auto& [path, pending] : files_->outermost()) {
      if ((pending.owner ? pending.owner.get() : first) == owner) writes.emplace_back(path, &pending);
    }
    std::sort(writes.begin(), writes.end());
    return writes;
  };
  FileCommit({}, writes_of(nullptr)).apply();
  for (const auto& database : enlisted_) {
    auto writes = writes_of(database.get());
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
    files.finish();
  }
  files_->drop();
  undos_.pop_back();
  levels_.pop_back();
  enlisted_.clear();
}

Transaction::Transaction() : workspace_(Engine::of_thread().Workspaces(0)), level_(workspace_.depth() + 1) {
  workspace_.begin(true);
}

Transaction::~Transaction() {
  while (level_ > 0 && workspace_.depth() >= level_) {
    try {
      workspace_.roll_back();
    } catch (const std::exception&) {
      log_current_exception("Transaction", "Rollback");
    }
  }
}

void Transaction::commit() {
  if (workspace_.depth() != level_) {
    fail(ErrorNumber::NoTransaction, "A transaction opened inside this one is still open; end it first.");
  }
  level_ = 0;  // a failed commit has rolled back
  workspace_.commit();
}

}  // namespace tarn
