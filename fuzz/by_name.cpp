// Members and values as texts, as people and programs write them: a class in the first line, then "Member(1,2)=value"
// or "Part(3).Member=value" in each. What is refused leaves the property as it was, and a value that was taken reads
// the same in all of its forms.
#include "tarn/reflect/by_name.h"

#include <charconv>
#include <nlohmann/json.hpp>

#include "finding.h"
#include "input.h"
#include "mutate.h"
#include "reflect/json.h"
#include "tarn/class_list.h"

namespace tarn::fuzz {
namespace {

/// "GlassTrans(2" of "GlassTrans(2)=0.78" is a name and its numbers.
struct Step {
  std::string name;
  std::vector<int> numbers;
};
Step step_in(std::string_view text) {
  const size_t open = std::min(text.find('('), text.size());
  Step step{std::string(text.substr(0, open)), {}};
  const char *at = text.data() + open, *end = text.data() + text.size();
  while (at < end && ++at < end) {
    int number = 0;
    const auto [next, failed] = std::from_chars(at, end, number);
    if (failed != std::errc()) break;
    step.numbers.push_back(number);
    at = next;
  }
  return step;
}

/// Follows a path to the object that has the member; null where it leads nowhere.
Object* owner_of(Object& object, std::string_view& path) {
  Object* owner = &object;
  for (size_t dot = path.find('.'); owner && dot != std::string_view::npos; dot = path.find('.')) {
    const Step step = step_in(path.substr(0, dot));
    path.remove_prefix(dot + 1);
    const Member* part = find_part(owner->info(), step.name);
    const int number = step.numbers.empty() ? 1 : step.numbers.front();
    if (!part) return nullptr;
    constexpr int kMostParts = 100;
    if (part->owned().resize && number == part->part_count(*owner) + 1 && number <= kMostParts)
      refusal([&] { part->owned().resize(*owner, number); });
    owner = number >= 1 && number <= part->part_count(*owner) ? &part->part(*owner, number) : nullptr;
  }
  return owner;
}

/// The property as JSON text, or why it cannot be read.
std::string shown(Object& object, const Member& member) {
  std::string text;
  const std::string refused = refusal([&] { text = json_text(to_json(object, member)); });
  return refused.empty() ? text : refused;
}

/// As `==`, but NaN is like NaN.
bool alike(const Value& a, const Value& b) { return a == b || (a != a && b != b); }

void check_forms(Object& object, const Member& member) {
  constexpr size_t kMostElements = 100;
  if (!member.exchanged() || member.elements() > kMostElements) return;
  const std::string text = shown(object, member);
  std::string written;
  write_json(written, object, member);
  require(json_text(parse_json(written)) == text,
          "the property is written otherwise than it is: " + written + ", " + text);
  const std::string refused = refusal([&] { set_from_json(object, member, parse_json(written)); });
  require(!refused.empty() || shown(object, member) == text, "what was written reads otherwise: " + written);
}

void assign(Object& object, std::string_view line) {
  const size_t equals = std::min(line.find('='), line.size());
  std::string_view path = line.substr(0, equals);
  const std::string value(line.substr(std::min(equals + 1, line.size())));
  Object* owner = owner_of(object, path);
  if (!owner) return;
  const Step step = step_in(path);
  const Member* member = nullptr;
  refusal([&] { member = &owner->info().find(step.name); });
  if (!member) return;
  const Subscripts at(step.numbers.data(), step.numbers.size());
  refusal([&] { let_property(*owner, *member, at, value); });
  Value read;
  refusal([&] { get_property(*owner, *member, at, read); });
  if (member->kind != MemberKind::Property || member->read_only) return;
  Json json = value;
  try {
    json = parse_json(value);
  } catch (const Json::exception&) {
  } catch (const Error&) {
  }
  refusal([&] { get_property(*owner, *member, at, read); });
  for (const bool whole : {false, true}) {
    const std::string refused = refusal([&] {
      if (whole)
        set_from_json(*owner, *member, json);
      else
        set_from_json(*owner, *member, at, json);
    });
    if (refused.empty()) return check_forms(*owner, *member);
    Value after;
    refusal([&] { get_property(*owner, *member, at, after); });
    require(whole || alike(read, after), "a refused value has changed " + std::string(member->name));
  }
}

}  // namespace
}  // namespace tarn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace tarn;
  using namespace tarn::fuzz;
  constexpr int kMostLines = 20;
  Input input(data, size);
  ObjectPtr object;
  refusal([&] { object = create(input.line()); });
  for (int line = 0; object && line < kMostLines && !input.empty(); ++line) assign(*object, input.line());
  return 0;
}

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t most, unsigned seed) {
  using namespace tarn;
  using namespace tarn::fuzz;
  return mutated(data, size, most, seed, [](std::string& text, Mutator& random) {
    const auto classes = class_list();
    const ClassInfo* info = nullptr;
    refusal([&] { info = &class_info(text.substr(0, text.find('\n'))); });
    if (!info || random.once_in(8)) {
      info = classes[random.below(classes.size())].info;
      text = std::string(info->name) + "\n";
    }
    std::string line;
    while (!info->members.empty()) {
      const Member& member = info->members[random.below(info->members.size())];
      if (member.is_part()) {
        line += std::string(member.owned().name) + (member.owned().numbered ? "(1)." : ".");
        info = &member.owned().info();
        continue;
      }
      line += member.name;
      for (size_t i = 0; i < member.bounds.size(); ++i) {
        const Bounds& bounds = member.bounds[i];
        line += (i == 0 ? "(" : ",") + std::to_string(bounds.first + static_cast<int>(random.below(3)));
      }
      break;
    }
    std::string value = "[0]";
    for (size_t changes = random.below(4); changes > 0; --changes) random.change_json(value);
    constexpr std::string_view kValues[]{"1",     "-1",       "0.5",          "1e39",  "x",    "true",    "NaN",
                                         "32768", "\xC3\xA9", "\xE2\x82\xAC", "\"a\"", "null", "[1,2,3]", "{}",
                                         "1e-46", "-0"};
    line += "=" + (random.once_in(3) ? value : std::string(random.one_of(kValues)));
    if (!text.ends_with('\n')) text += '\n';
    text += line + "\n";
  });
}
