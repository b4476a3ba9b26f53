#include "tarn/reflect/members.h"

#include <cstring>

#include "base/nearest.h"
#include "tarn/base/value.h"

namespace tarn {
namespace {

uint64_t load(const char* at) {
  uint64_t word = 0;
  std::memcpy(&word, at, sizeof word);
  return word;
}

/// A hash that ignores the case of letters: head, tail and length tell the names of one class well apart.
size_t folded_hash(std::string_view name) {
  uint64_t head = 0;
  uint64_t tail = 0;
  if (name.size() >= sizeof head) {
    head = load(name.data());
    tail = load(name.data() + name.size() - sizeof tail);
  } else {
    for (const char c : name) head = head << 8 | static_cast<unsigned char>(c);
  }
  constexpr uint64_t kFold = 0x2020202020202020ULL;
  const uint64_t hash =
      ((head | kFold) ^ ((tail | kFold) << 7 | (tail | kFold) >> 57) ^ name.size()) * 0x9E3779B97F4A7C15ULL;
  return static_cast<size_t>(hash ^ hash >> 29);
}

}  // namespace

const RecordField* Member::field() const {
  if (const auto* plain = std::get_if<RecordField>(&form)) return plain;
  const auto* accessor = std::get_if<Accessor>(&form);
  return accessor && accessor->stands_for ? &*accessor->stands_for : nullptr;
}

bool Member::in_place() const {
  const auto* plain = std::get_if<RecordField>(&form);
  return plain && plain->stride == 0;
}

namespace {

/// Reading changes nothing in an object; where its record lies is asked for by one function for both.
void read_element(const Member& member, const RecordField& field, const Object& object, Subscripts at, Blanks blanks,
                  Value& out) {
  read(field, field.place(const_cast<Object&>(object), member.bounds, at), blanks, out);
}

}  // namespace

void Member::get(const Object& object, Subscripts at, Value& out) const {
  if (const auto* plain = std::get_if<RecordField>(&form))
    read_element(*this, *plain, object, at, trimmed ? Blanks::Trimmed : Blanks::Kept, out);
  else if (is_part())
    out = owned().hand_out(const_cast<Object&>(object), at.empty() ? 1 : at[0]);
  else
    std::get<Accessor>(form).get(object, at, out);
}

void Member::get_stored(const Object& object, Subscripts at, Value& out) const {
  if (const auto* plain = std::get_if<RecordField>(&form))
    read_element(*this, *plain, object, at, Blanks::Kept, out);
  else
    get(object, at, out);
}

void Member::let(Object& object, Subscripts at, const Value& value) const {
  if (const auto* plain = std::get_if<RecordField>(&form))
    write(*plain, plain->place(object, bounds, at), value);
  else
    std::get<Accessor>(form).let(object, at, value);
}

void Member::let_stored(Object& object, Subscripts at, const Value& value) const {
  const RecordField* of_record = field();
  if (of_record && of_record->wire == Wire::Code)
    write(*of_record, of_record->place(object, bounds, at), value);
  else
    let(object, at, value);
}

void Member::call(Object& object, Arguments arguments, Value& result) const {
  if (is_part()) {
    const bool wide = owned().number.type == ValueType::Int32;
    const int number = !owned().numbered ? 1 : wide ? native<int32_t>(arguments[0]) : native<int16_t>(arguments[0]);
    result = owned().hand_out(object, number);
  } else {
    const Method& method = std::get<Method>(form);
    method.call(object, method.number, arguments, result);
  }
}

std::string Member::get_label() const {
  return getter_label.empty() ? std::string(name) + " [PropertyGet]" : std::string(getter_label);
}

size_t Member::place_of(Subscripts at) const {
  size_t before = 0, step = 1;
  for (size_t d = 0; d < at.size(); ++d) {
    before += step * static_cast<size_t>(at[d] - bounds[d].first);
    step *= static_cast<size_t>(bounds[d].size());
  }
  return before;
}

size_t Member::elements() const {
  size_t count = 1;
  for (const Bounds& b : bounds) count *= static_cast<size_t>(b.size());
  return count;
}

void ClassInfo::add(std::span<const Member> more) {
  std::unique_ptr<Object> object;
  for (const Member& member : more) {
    Member& added = (member.reserved ? reserved : members).emplace_back(member);
    if (!member.labels_for || !sample) continue;
    if (!object) object = sample();
    added.labels = member.labels_for(*object);
  }
  size_t capacity = 8;
  while (capacity < members.size() * 4) capacity *= 2;
  slots_.assign(capacity, -1);
  for (size_t i = 0; i < members.size(); ++i) {
    size_t slot = folded_hash(members[i].name) & (capacity - 1);
    while (slots_[slot] >= 0) slot = (slot + 1) & (capacity - 1);
    slots_[slot] = static_cast<int16_t>(i);
  }
}

int ClassInfo::number(std::string_view member) const {
  if (slots_.empty() || member.empty()) return -1;
  for (size_t slot = folded_hash(member) & (slots_.size() - 1); slots_[slot] >= 0;
       slot = (slot + 1) & (slots_.size() - 1)) {
    if (same_word(members[static_cast<size_t>(slots_[slot])].name, member)) return slots_[slot];
  }
  return -1;
}

const Member& ClassInfo::find(std::string_view member) const {
  const int found = number(member);
  if (found >= 0) return members[static_cast<size_t>(found)];
  std::vector<std::string_view> names;
  for (const Member& m : members) names.push_back(m.name);
  fail(ErrorNumber::NoSuchMember,
       std::string(name) + " has no member " + std::string(member) + "; " + did_you_mean(member, names));
}

const Member* find_part(const ClassInfo& info, std::string_view name) {
  for (const Member& member : info.members) {
    if (member.is_part() && (same_word(member.owned().name, name) || same_word(member.name, name))) return &member;
  }
  return nullptr;
}

std::string part_prefix(const Member& part, int number) {
  return std::string(part.owned().name) + (part.owned().numbered ? "(" + std::to_string(number) + ")." : ".");
}

void for_each_field(Object& object, const FieldAction& action, const std::string& prefix) {
  for (const Member& field : object.info().reserved) action(object, field, prefix);
  for (const Member& member : object.info().members) {
    if (member.stored()) action(object, member, prefix);
    if (!member.is_part()) continue;
    for (int number = 1; number <= member.part_count(object); ++number) {
      for_each_field(member.part(object, number), action, prefix + part_prefix(member, number));
    }
  }
}

void for_each_element(const Member& member, const std::function<void(Subscripts)>& action) {
  std::vector<int> at;
  for (const Bounds& b : member.bounds) at.push_back(b.first);
  for (size_t left = member.elements(); left > 0; --left) {
    action(at);
    for (size_t d = 0; d < at.size() && ++at[d] > member.bounds[d].last; ++d) at[d] = member.bounds[d].first;
  }
}

std::string element_name(const Member& member, Subscripts subscripts) {
  std::string text(member.name);
  for (size_t i = 0; i < subscripts.size(); ++i) text += (i == 0 ? "(" : ",") + std::to_string(subscripts[i]);
  return subscripts.empty() ? text : text + ")";
}

}  // namespace tarn
