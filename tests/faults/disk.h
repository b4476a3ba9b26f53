// A disk that loses its power: what is synced is there afterwards; of the rest, any part may be.
#pragma once

#include <map>
#include <random>
#include <string>
#include <vector>

#include "calls.h"

namespace tarn::faults {

class Disk {
 public:
  explicit Disk(const std::string& folder);
  /// A call that a program has made.
  void take(const Call& call);
  /// One of the states after a loss of power, in a folder of its own.
  void lose_power(std::mt19937& random, const std::string& into) const;

 private:
  struct Write {
    uint64_t offset;
    std::string bytes;
    bool truncates = false;  // to `offset`
  };
  struct File {
    std::string stored;
    std::vector<Write> open;  // not synced
  };
  struct NameChange {
    std::string removed, added;  // empty for none
    size_t file = 0;             // of the added name
  };
  using Names = std::map<std::string, size_t>;
  static void apply(std::string& bytes, const Write& write);
  static void apply(Names& names, const NameChange& change);
  std::string content(const File& file, double chance, std::mt19937& random) const;
  void change_names(NameChange change);

  std::string folder_;
  std::vector<File> files_;
  Names stored_names_, names_;            // on the disk; as programs see them
  std::vector<NameChange> open_changes_;  // of names, not synced
};

}  // namespace tarn::faults
