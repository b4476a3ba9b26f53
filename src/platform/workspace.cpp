#include "tarn/platform/workspace.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "platform/file_store.h"
#include "platform/host.h"
#include "platform/loose_files.h"
#include "tarn/base/error.h"
#include "tarn/base/log.h"
#include "tarn/platform/database.h"

namespace tarn {

Workspace::Workspace() : files_(std::make_unique<FileStore>()) {}
Workspace::~Workspace() = default;

FileStore& files() { return Engine::of_thread().Workspaces(0).files(); }

Engine::Engine() {
  host();  // lives longer: the end of this one may have files to write
}

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
  if (levels_.back().scoped)
    fail(ErrorNumber::NoTransaction, "The transaction cannot end while a save inside it is running.");
}

void Workspace::CommitTrans() {
  require_own();
  commit();
}

void Workspace::Rollback() {
  require_own();
  roll_back();
}

void Workspace::begin(Level level) {
  files_->begin();
  undos_.emplace_back();
  levels_.push_back(level);
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

bool Workspace::has_enlisted(const std::string& path) const {
  return std::ranges::any_of(enlisted_, [&](const auto& database) { return database->Name() == path; });
}

void Workspace::commit_outermost() {
  std::map<Database*, Database::Writes> writes;
  for (auto& [path, pending] : files_->outermost()) {
    // A writer without a database has that of the project too: what is pending there would be written over its bytes.
    const bool own = pending.owner && pending.owner->keeps(path);
    Database* const keeper = own ? pending.owner.get() : files_->keeper(path, FileStore::Wanted::ToWrite);
    if (keeper) keeper->join();
    writes[keeper].emplace_back(path, &pending.change);
  }
  for (auto& [database, files] : writes) std::sort(files.begin(), files.end());
  if (const auto loose = writes.find(nullptr); loose != writes.end()) write_loose_files(loose->second);
  const Database::Writes none;
  for (const auto& database : enlisted_) {
    const auto own = writes.find(database.get());
    database->commit(own == writes.end() ? none : own->second);
  }
  files_->drop();
  undos_.pop_back();
  levels_.pop_back();
  enlisted_.clear();
}

Transaction::Transaction(Purpose purpose)
    : workspace_(Engine::of_thread().Workspaces(0)), level_(workspace_.depth() + 1) {
  workspace_.begin({.scoped = true, .writes = purpose == Purpose::Writing});
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
