// Brings a transaction's file writes to the disk together with its database's commit: both or neither, also when the
// process dies in between. The old bytes go to a journal beside the database first; docs/transactions.md tells the
// steps.
#pragma once

#include <string>
#include <vector>

#include "platform/file_store.h"

namespace tarn {

class FileCommit {
 public:
  /// `journal` is empty for writes that belong to no database.
  FileCommit(std::string journal, std::vector<std::pair<std::string, const FileStore::Pending*>> writes);

  /// Saves what the writes replace, then makes them. A failure puts the old bytes back and throws.
  void apply();
  /// Puts the old bytes back.
  void undo();
  /// The database has committed: the old bytes are no longer needed.
  void forget();

 private:
  struct Piece {
    uint64_t offset = 0;
    std::string bytes;
  };
  struct Before {
    std::string path;
    bool existed = false;
    uint64_t size = 0;
    std::string moved;  // where a file lies that is replaced whole; empty: the pieces tell what it held
    std::vector<Piece> pieces;
  };
  friend void undo_interrupted_commit(const std::string& journal);
  friend void forget_finished_commit(const std::string& journal);

  void read_before();
  std::string written_journal() const;
  static std::vector<Before> parsed_journal(const std::string& text, const std::string& folder);
  static std::vector<Before> read_journal(const std::string& journal);
  static void restore(const std::vector<Before>& all);
  void write_files();

  std::string journal_;
  std::vector<std::pair<std::string, const FileStore::Pending*>> writes_;
  std::vector<Before> before_;
};

/// Undoes a commit whose process died before its database committed; a journal that is not whole wrote nothing yet.
void undo_interrupted_commit(const std::string& journal);

/// Removes what a commit left whose process died behind its database's commit.
void forget_finished_commit(const std::string& journal);

}  // namespace tarn
