// The condition of `list --where`: comparisons of properties, joined by and, or and not.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/columns.h"

namespace tarn::cli {

///   condition  = all { "or" all }
///   all        = one { "and" one }
///   one        = [ "not" ] ( "(" condition ")" | property operator value )
///   operator   = "=" | "<>" | "!=" | "<" | "<=" | ">" | ">=" | "~" | "!~"
///   value      = 'text' | "text" | a word without blanks and brackets | a number and its unit: 2 in. wg
/// A reference compares with the name or number of what it is to. Texts and names of codes compare without regard to
/// case; ~ takes a pattern. What an entity does not have fits none.
class Condition {
 public:
  /// Error `UsageError` names what was found and what is wanted there.
  Condition(const EntityKind& kind, Database& database, const std::string& text);
  ~Condition();
  Condition(Condition&&) noexcept;

  bool holds(ListedEntity& entity) const;

  struct Node;

 private:
  std::unique_ptr<Node> root_;
};

}  // namespace tarn::cli
