#include "cli/part_path.h"

#include <algorithm>
#include <charconv>

#include "base/nearest.h"
#include "cli/command.h"

namespace tarn::cli {
namespace {

const Member& part_named(const ClassInfo& info, const std::string& name) {
  if (const Member* part = find_part(info, name)) return *part;
  std::vector<std::string_view> names;
  for (const Member& member : info.members) {
    if (member.is_part()) names.push_back(member.owned().name);
  }
  throw UsageError(std::string(info.name) + " has no part " + name + "; " + did_you_mean(name, names));
}

}  // namespace

PartPath::PartPath(const ClassInfo& info, std::string_view& path, const std::string& word) : owner_(&info) {
  for (size_t dot = path.find('.'); dot != std::string_view::npos; dot = path.find('.')) {
    std::vector<int> at;
    const Member& part = part_named(*owner_, name_in(path.substr(0, dot), at, word));
    const OwnedPart& owned = part.owned();
    if (at.size() != (owned.numbered ? 1U : 0U)) {
      throw UsageError("\"" + word + "\": " + std::string(owned.name) + " takes " +
                       (owned.numbered ? "one number" : "no number") + ".");
    }
    add(part, at.empty() ? 1 : at.front());
    path.remove_prefix(dot + 1);
  }
}

void PartPath::add(const Member& part, int number) {
  steps_.push_back({&part, number});
  owner_ = &part.owned().info();
}

std::string PartPath::text() const {
  std::string text;
  for (const auto& [part, number] : steps_) text += part_prefix(*part, number);
  return text;
}

Object* PartPath::in(Object& entity) const {
  Object* owner = &entity;
  for (const auto& [part, number] : steps_) {
    if (number < 1 || number > part->part_count(*owner)) return nullptr;
    owner = &part->part(*owner, number);
  }
  return owner;
}

/// The name in "GlassTrans(2)"; the numbers come to `at`.
std::string name_in(std::string_view step, std::vector<int>& at, const std::string& word) {
  const size_t open = std::min(step.find('('), step.size());
  const char* place = step.data() + open;
  const char* const end = step.data() + step.size();
  while (place != end && *place != ')') {
    int number = 0;
    const auto [after, failed] = std::from_chars(place + 1, end, number);
    if (failed != std::errc()) break;
    at.push_back(number);
    place = after;
    if (place != end && *place != ',') break;
  }
  if (open < step.size() && (at.empty() || place + 1 != end || *place != ')'))
    throw UsageError("\"" + word + "\" has subscripts that cannot be read; write Property(1) or Property(1,2).");
  return std::string(step.substr(0, open));
}

}  // namespace tarn::cli
