// What the verbs of a kind share: the project and the entity that they work on, and how they tell what they did.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "cli/assignments.h"
#include "cli/choose.h"
#include "cli/command.h"
#include "project/kinds.h"
#include "tarn/staleness.h"

namespace tarn::cli {

/// What was done to an entity, to be told when it is certain.
struct Done {
  Json json;
  std::string text;
  Edited edited;
};

/// Names that several entities of a kind have: `the windows 1, 4 have the same name, "South"`.
std::set<std::string> shared_names(Database& database, const EntityKind& kind);
/// Tells those of them that there were not before.
void tell_shared(const std::set<std::string>& now, const std::set<std::string>& before);

/// Saves the entity; "window 3 saved".
Done saved(StoredEntity& entity, const EntityKind& kind, std::string_view what, Edited edited = {});

/// What a verb of a kind works on: the open project, and an entity that is not loaded yet.
struct Opened {
  const EntityKind& kind;
  COM_ProjectData project;
  Ptr<Database> database;
  Ptr<StoredEntity> entity;

  // Before anything is changed.
  std::map<std::string, EntityName> stale;  // as stale_now has them
  std::set<std::string> shared;             // as shared_names has them

  Opened(const Call& call, Use use);
  Indexed rows() const;
};

/// Prints what was done, JSON as an object or with --all as a list, and what it made stale.
int tell(const Call& call, Opened& on, const std::vector<Done>& all);

/// The same with the one entity that a word names, the first one unless another place is given.
struct Loaded : Opened {
  Loaded(const Call& call, Use use, size_t place = 0);
};

/// Does it to each entity that the first word names: to all of them or, where one fails, to none.
int for_each_chosen(const Call& call, Opened& on, const std::function<Done(StoredEntity&)>& action);

}  // namespace tarn::cli
