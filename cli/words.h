// The words of the command line as data: what is run, help, the nearest right word and the manual page follow from the
// table of verbs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/command.h"
#include "tarn/reflect/members.h"

namespace tarn::cli {

/// The options that not every verb takes, as bits.
enum Option : unsigned { kType = 1, kOutput = 2, kSvg = 4, kMaterial = 8, kDryRun = 16, kRebuildIndex = 32 };

inline constexpr size_t kAnyWords = SIZE_MAX;

struct Verb {
  std::string name, help;
  size_t most_words;
  unsigned options;  // of `Option`
  int (*run)(const Call&);
};

/// A group that does one thing only has one verb without a name.
struct Group {
  std::string name, help;
  std::vector<Verb> verbs;

  bool names_verbs() const { return !verbs.front().name.empty(); }
};

std::vector<Group> all_groups();

/// "GlassTrans(1 to 3)", "Load(nRecNum I2)".
std::string signature(const Member& member);

/// Bytes of an object's record, those of an entity with its parts; of a file of its own without lists that grow.
size_t record_length(Object& object);

}  // namespace tarn::cli
