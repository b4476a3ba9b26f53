// The database engine of a thread and its workspace: transactions over every open database and the record files.
// Transactions nest; an inner one that is rolled back leaves what the outer one did before it.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "tarn/base/object.h"

namespace tarn {

class Database;
class FileStore;

class Workspace {
 public:
  Workspace();
  ~Workspace();
  /// A transaction that writes. It takes a database's write lock with the first statement, after a wait of up to
  /// TARN_BUSY_MS milliseconds (5,000), and keeps it to the end.
  void BeginTrans() { begin({.writes = true}); }
  /// Ends the client's innermost transaction; the outermost reaches the disk here. A failure rolls it back and throws.
  /// Error `NoTransaction` where there is none, or a save inside it is still running.
  void CommitTrans();
  void Rollback();
  /// Transactions open now, 0 for none.
  size_t depth() const { return levels_.size(); }
  /// Runs `undo` when the open transaction, or one around it, is rolled back: what an object remembers of its save goes
  /// back too.
  void on_rollback(std::function<void()> undo) { undos_.back().push_back(std::move(undo)); }
  FileStore& files() { return *files_; }

  /// A database takes part in the open transaction from its first statement on.
  void enlist(Ptr<Database> database) { enlisted_.push_back(std::move(database)); }
  bool has_enlisted(const std::string& path) const;
  /// Whether the outermost transaction is one that writes.
  bool writes() const { return !levels_.empty() && levels_.front().writes; }

 private:
  friend class Transaction;
  struct Level {
    bool scoped = false;  // a `Transaction` ends it
    bool writes = false;
  };
  void begin(Level level);
  void commit();
  void roll_back();
  void require_own() const;
  void commit_outermost();

  std::vector<Level> levels_;
  std::unique_ptr<FileStore> files_;
  std::vector<std::vector<std::function<void()>>> undos_;  // by level
  std::vector<Ptr<Database>> enlisted_;
};

class Engine {
 public:
  Engine();
  static Engine& of_thread();
  /// The engine's workspaces; only 0 exists.
  Workspace& Workspaces(int number);

 private:
  Workspace workspace_;
};

/// A transaction on the first workspace: rolled back unless committed, with those left open inside it.
class Transaction {
 public:
  /// One that reads sees rows and records of one moment, and lets other programs read and prepare their saves.
  enum class Purpose : uint8_t { Reading, Writing };
  explicit Transaction(Purpose purpose = Purpose::Writing);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void commit();

 private:
  Workspace& workspace_;
  size_t level_;
};

}  // namespace tarn
