#include "cli/properties.h"

#include "cli/describe.h"
#include "reflect/allowed.h"
#include "tarn/code_names.h"

namespace tarn::cli {
namespace {

/// Of several members that show one field it is the one that stands for it.
bool is_settable(const Member& member) {
  return member.kind == MemberKind::Property && !member.read_only && member.stored();
}

struct Walk {
  StoredEntity& sample;
  const std::function<void(const Settable&)>& action;

  void operator()(Object& owner, const std::vector<PartStep>& steps) const {
    for (const Member& member : owner.info().members) {
      if (!is_settable(member)) continue;
      const RecordField* field = member.field();
      const std::byte* place = field && field->record_of ? field->place(owner) : nullptr;
      if (place && sample.file().is_cleared_by_edits(place)) continue;
      action({steps, owner, member});
    }
    for (const Member& member : owner.info().members) {
      if (!member.is_part()) continue;
      const OwnedPart& owned = member.owned();
      if (owned.numbered && owned.resize && member.part_count(owner) == 0) owned.resize(owner, 1);
      const int count = member.part_count(owner);
      if (count == 0) continue;
      auto deeper = steps;
      deeper.push_back({&owned, count});
      (*this)(member.part(owner, 1), deeper);
    }
  }
};

}  // namespace

void for_each_settable(StoredEntity& sample, const std::function<void(const Settable&)>& action) {
  Walk{sample, action}(sample, {});
}

std::string PartStep::text() const {
  const std::string last = part->resize ? "..." : std::to_string(count);
  return std::string(part->name) + (part->numbered ? "(1 to " + last + ")" : "");
}

std::string Settable::prefix() const {
  std::string text;
  for (const PartStep& step : steps) text += step.text() + ".";
  return text;
}

bool holds_name(const ClassInfo& info) {
  const int number = info.number("Name");
  return number >= 0 && is_settable(info.members[static_cast<size_t>(number)]);
}

std::string type_text(const Member& member) {
  if (member.type == ValueType::Text) return member.width() > 0 ? "text of " + std::to_string(member.width()) : "text";
  if (member.type == ValueType::Boolean) return "true or false";
  if (!member.labels.empty() || member.labels_vary) return "code";
  return member.type == ValueType::Int16 || member.type == ValueType::Int32 ? "whole number" : "number";
}

std::string reference_text(const Member& member) {
  std::string kinds(member.refers_to);
  for (size_t at = kinds.find(' '); at != std::string::npos; at = kinds.find(' ', at + 4)) kinds.replace(at, 1, " or ");
  return "index or name of a " + kinds;
}

std::string allowed_text(const Settable& property) {
  if (!property.member.refers_to.empty()) return reference_text(property.member);
  return allowed_numbers(property.owner, property.member);
}

std::vector<std::string> code_lines(const Settable& property) {
  std::vector<std::string> lines;
  for (const Label& label : codes_of(property.owner, property.member)) {
    const std::string code = std::to_string(label.code), name(label.name);
    const std::string text = name.ends_with(label.text) ? "" : "  " + std::string(label.text);
    lines.push_back((name.starts_with(code + ".") ? "" : code + "  ") + name + text);  // "8. VAV" has its code
  }
  return lines;
}

}  // namespace tarn::cli
