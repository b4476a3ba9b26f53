// The words of the command line as data: what is run, help, completion, the nearest right word and the manual pages
// follow from the tables of verbs and of options.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "cli/command.h"
#include "project/kinds.h"

namespace tarn::cli {

/// The options that not every verb takes, as bits.
enum Option : unsigned {
  kType = 1,
  kOutput = 2,
  kSvg = 4,
  kMaterial = 8,
  kDryRun = 16,     // run in a transaction that is rolled back
  kOwnDryRun = 32,  // by the verb itself
  kRebuildIndex = 64,
  kList = 128,
  kAll = 256,
  kForce = 512,
  kTolerance = 1024,
  kFrom = 2048,
  kAdopt = 4096
};

struct OptionRow {
  unsigned bit;               // of `Option`; 0 for one that every verb takes
  std::string_view spelling;  // "-o,--output"
  std::string_view value;     // "FILE"; empty for a flag
  std::string_view help;
  std::string Call::*text;  // where the value goes
  bool Call::*flag;         // or that it was given

  /// "--output", as messages name it.
  std::string_view name() const { return spelling.substr(spelling.find("--")); }
};
std::span<const OptionRow> option_rows();

struct Verb {
  std::string name;
  /// What follows the verb: "N Property=value ...", with what may be left out in brackets. The words in capitals say
  /// what is meant, and completion reads them: N is an entity.
  std::string usage;
  std::string help;
  unsigned options;  // of `Option`
  int (*run)(const Call&);
  /// Each runs as it stands, on a project with what the examples of `new` make.
  std::vector<std::string> examples;
  std::string part = {};  // whose properties are set, where it is one part of the entity: "ZoneData"

  /// The words of the usage without brackets; "..." says that the one before it may come again.
  std::vector<std::string> words() const;
  size_t most_words() const;
};

/// A group that does one thing only has one verb without a name.
struct Group {
  std::string subject;  // under which it is listed
  std::string name, help;
  std::vector<Verb> verbs;
  const EntityKind* kind = nullptr;  // whose entities the group is about

  bool names_verbs() const { return !verbs.front().name.empty(); }
  /// Whether its verbs work on entities that a word N names.
  bool names_entities() const;
};

inline constexpr std::string_view kNameRule = "N is a number, a name or a pattern: 3, \"South 4x5\", \"South*\".";

/// The verbs of a kind of entity.
Group group_of(const EntityKind& kind);
const std::vector<Group>& all_groups();

/// The row of a table that has the name. Error `UsageError` names the nearest.
const Group& group_named(const std::string& name);
const Verb& verb_named(const Group& group, const std::string& name);

}  // namespace tarn::cli
