// The way to a member of a part: "Layer(2).", "Details.CoolingEqpt.Equipment(1).".
#pragma once

#include <string>
#include <vector>

#include "tarn/reflect/members.h"

namespace tarn::cli {

class PartPath {
 public:
  PartPath() = default;
  /// Takes the parts before the last dot off a path. Error `UsageError` for a part that the class has not; the message
  /// names the nearest, and `word`, in which the path stands.
  PartPath(const ClassInfo& info, std::string_view& path, const std::string& word);

  void add(const Member& part, int number);
  bool empty() const { return steps_.empty(); }
  /// The class of the last part; of the entity itself without parts.
  const ClassInfo& owner() const { return *owner_; }
  /// "Layer(2)." as the class spells it.
  std::string text() const;
  /// The last part of an entity; null where it has not so many.
  Object* in(Object& entity) const;

 private:
  struct Step {
    const Member* part;
    int number;
  };
  std::vector<Step> steps_;
  const ClassInfo* owner_ = nullptr;
};

/// The name in "GlassTrans(2)"; the numbers come to `at`. Error `UsageError` for brackets that cannot be read.
std::string name_in(std::string_view step, std::vector<int>& at, const std::string& word);

}  // namespace tarn::cli
