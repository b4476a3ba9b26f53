#include "cli/assignment.h"

#include <algorithm>
#include <cctype>
#include <charconv>

#include "base/nearest.h"

namespace tarn::cli {
namespace {

/// The subscripts that follow a name, "(2)" or "[1,2]"; none for an empty text.
std::vector<int> subscripts_in(std::string_view text, const std::string& word) {
  std::vector<int> found;
  if (text.empty()) return found;
  const char* at = text.data();
  const char* const last = text.data() + text.size() - 1;  // the closing bracket
  do {
    int subscript = 0;
    do ++at;
    while (*at == ' ');
    const auto [end, failed] = std::from_chars(at, last, subscript);
    if (failed != std::errc()) break;
    found.push_back(subscript);
    at = end;
  } while (*at == ',');
  if (at != last || (*last != ')' && *last != ']')) {
    throw UsageError("\"" + word +
                     "\" has subscripts that cannot be read; write Property(1)=value or Property(1,2)=value.");
  }
  return found;
}

/// Follows "Layer(2)" from an object to its part.
Object& part_of(Object& object, std::string_view step, const std::string& word) {
  const size_t open = std::min(step.find_first_of("(["), step.size());
  const Member* part = find_part(object.info(), step.substr(0, open));
  if (!part) {
    std::vector<std::string_view> names;
    for (const Member& member : object.info().members) {
      if (member.is_part()) names.push_back(member.owned().name);
    }
    throw UsageError(std::string(object.info().name) + " has no part " + std::string(step.substr(0, open)) + "; " +
                     did_you_mean(step.substr(0, open), names));
  }
  const std::vector<int> at = subscripts_in(step.substr(open), word);
  int count = part->part_count(object);
  if (part->owned().numbered && part->owned().resize && at.size() == 1 && at[0] == count + 1) {
    part->owned().resize(object, count + 1);  // the next one is added
    count = part->part_count(object);
  }
  if (count == 0) {
    throw UsageError("The " + std::string(object.info().name) + " has no " + std::string(part->owned().name) +
                     " yet; it comes with results.");
  }
  if (at.size() != (part->owned().numbered ? 1U : 0U) || (part->owned().numbered && (at[0] < 1 || at[0] > count))) {
    throw UsageError(
        "\"" + word + "\": " + std::string(part->owned().name) +
        (part->owned().numbered ? " takes a number from 1 to " + std::to_string(count) : " takes no number") + ".");
  }
  return part->part(object, part->owned().numbered ? at[0] : 1);
}

/// Where a property named without a part belongs: to the entity; else to the part that also holds the entity's name (an
/// air system's header); else to the only part that has such a property. Where several parts have it: the entity.
Object& holder_of(Object& entity, const std::string& property) {
  const auto settable = [](const ClassInfo& info, std::string_view name) {
    const int number = info.number(name);
    return number >= 0 && !info.members[static_cast<size_t>(number)].read_only;
  };
  if (settable(entity.info(), property)) return entity;
  Object* found = nullptr;
  for (const Member& member : entity.info().members) {
    if (!member.is_part() || member.owned().numbered || member.part_count(entity) == 0) continue;
    Object& part = member.part(entity, 1);
    if (!settable(part.info(), property)) continue;
    if (settable(part.info(), "Name")) return part;
    if (found) return entity;
    found = &part;
  }
  return found ? *found : entity;
}

/// Where a count is asked for that follows from the parts ("NumZones"): how a person makes one more of them.
std::string how_made(StoredEntity& entity, std::string_view name) {
  if (name.size() < 3 || !same_word(name.substr(0, 3), "Num")) return {};
  for (const Member& member : entity.info().members) {
    if (!member.is_part() || !member.owned().numbered || !member.owned().resize) continue;
    const std::string next =
        std::string(member.owned().name) + "(" + std::to_string(member.part_count(entity) + 1) + ")";
    return "it counts what is there. To make the next one, set a property of it: " + next + ".Name=...";
  }
  return {};
}

/// Error `UsageError` for an array without its subscripts; the message has the ranges of those that are missing.
void check_subscripts(const Assignment& a, const std::string& word) {
  const auto& bounds = a.member->bounds;
  if (a.at.size() == bounds.size()) return;
  const std::string name = a.place + std::string(a.member->name);
  if (bounds.empty()) throw UsageError("\"" + word + "\": " + name + " has no subscripts; write " + name + "=value.");
  std::string all;
  for (size_t i = 0; i < bounds.size(); ++i) {
    all += (i == 0 ? "" : ", ") + (i < a.at.size()
                                       ? std::to_string(a.at[i])
                                       : std::to_string(bounds[i].first) + " to " + std::to_string(bounds[i].last));
  }
  throw UsageError("\"" + word + "\": " + name + " needs " +
                   (bounds.size() == 1 ? "its subscript" : "its " + std::to_string(bounds.size()) + " subscripts") +
                   ": " + name + "(" + all + ")=value, for one of them or for a range.");
}

}  // namespace

Assignment parsed(StoredEntity& entity, const std::string& word) {
  const size_t equals = word.find('=');
  if (equals == std::string::npos) throw UsageError("\"" + word + "\" is not an assignment; write Property=value.");
  Assignment out{&entity, nullptr, {}, word.substr(equals + 1), {}};
  std::string_view path = std::string_view(word).substr(0, equals);
  for (size_t dot = path.find('.'); dot != std::string_view::npos; dot = path.find('.')) {
    out.object = &part_of(*out.object, path.substr(0, dot), word);
    out.place += std::string(path.substr(0, dot + 1));
    path.remove_prefix(dot + 1);
  }
  const size_t open = std::min(path.find_first_of("(["), path.size());
  const std::string name(path.substr(0, open));
  if (out.place.empty()) out.object = &holder_of(entity, name);
  const ClassInfo& info = out.object->info();
  std::vector<std::string_view> names;
  for (const Member& member : info.members) {
    const bool settable =
        member.kind == MemberKind::Property && !member.read_only && (member.stored() || member.in_place());
    if (settable || same_word(member.name, "Name")) names.push_back(member.name);
  }
  const int number = info.number(name);
  if (number >= 0) out.member = &info.members[static_cast<size_t>(number)];
  const std::string made = how_made(entity, name);
  if (!out.member || std::find(names.begin(), names.end(), out.member->name) == names.end())
    throw UsageError(std::string(info.name) + " has no property " + name + " to set; " +
                     (made.empty() ? did_you_mean(name, names) : made));
  out.at = subscripts_in(path.substr(open), word);
  check_subscripts(out, word);
  return out;
}

std::vector<std::string> each_of(const std::string& word) {
  constexpr std::string_view kTo = " to ";
  constexpr int kMost = 1000;
  const size_t to = word.find(kTo);
  if (to > word.find('=')) return {word};
  size_t begin = to, end = to + kTo.size();
  while (begin > 0 && std::isdigit(static_cast<unsigned char>(word[begin - 1])) != 0) --begin;
  while (end < word.size() && std::isdigit(static_cast<unsigned char>(word[end])) != 0) ++end;
  int first = 0, last = -1;
  std::from_chars(word.data() + begin, word.data() + to, first);
  std::from_chars(word.data() + to + kTo.size(), word.data() + end, last);
  if (begin == to || last < first || last - first > kMost)
    throw UsageError("\"" + word + "\" has a range that cannot be read; write it as HourlyValue(1, 8 to 17)=100.");
  std::vector<std::string> all;
  for (int n = first; n <= last; ++n) {
    for (std::string& each : each_of(word.substr(0, begin) + std::to_string(n) + word.substr(end)))
      all.push_back(std::move(each));
  }
  return all;
}

}  // namespace tarn::cli
