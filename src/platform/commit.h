// Brings a transaction's file writes to the disk together with its database's commit: both or neither, even when the
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

  /// Keeps the bytes that the writes replace, then writes; whole files are made beside the old ones. A failure puts the
  /// old bytes back and throws.
  void apply();
  /// Puts the old bytes back.
  void undo();
  /// After the database's commit: whole files take their place, and the kept bytes are removed.
  void finish();

 private:
  struct Piece {
    uint64_t offset = 0;
    std::string bytes;
  };
  struct Before {
    std::string path;
    bool existed = false;
    uint64_t size = 0;
    std::string moved;     // where a large removed file is kept; empty: its old bytes are in the pieces
    std::string prepared;  // the new form of a file that is replaced whole; the old one stays until the end
    std::vector<Piece> pieces;
  };
  friend void undo_interrupted_commit(const std::string& journal);
  friend void forget_old_commit(const std::string& journal);

  void read_before();
  std::string written_journal() const;
  static std::vector<Before> parsed_journal(const std::string& text, const std::string& folder);
  static std::vector<Before> read_journal(const std::string& journal);
  static void restore(const std::vector<Before>& all);
  void write_journal();
  void prepare_files();
  void write_files();
  void forget();

  std::string journal_;
  std::vector<std::pair<std::string, const FileStore::Pending*>> writes_;
  std::vector<Before> before_;
};

/// Undoes a commit whose process died before the database's commit. An incomplete journal means that nothing had been
/// written yet.
void undo_interrupted_commit(const std::string& journal);

/// Finishes a commit whose process died after the database's commit: its new files take their places.
void finish_interrupted_commit(const std::string& journal);

/// Removes what an older commit, followed by others since, has left.
void forget_old_commit(const std::string& journal);

/// Whether new files of a commit wait to take their places.
bool has_prepared_files(const std::string& journal);

/// The numbers of the commits that have left files beside a database. `stem` is the common beginning of their journals'
/// names.
std::vector<int64_t> interrupted_commits(const std::string& stem);

}  // namespace tarn
