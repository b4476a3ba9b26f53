// describe: the members of the classes and the codes of the enumerations.

#include "cli/describe.h"

#include <algorithm>
#include <iostream>

#include "base/nearest.h"
#include "cli/command.h"
#include "cli/properties.h"
#include "cli/units.h"
#include "project/enumerations.h"
#include "reflect/allowed.h"
#include "tarn/base/value.h"
#include "tarn/class_list.h"
#include "tarn/code_names.h"
#include "tarn/storage/entity.h"

namespace tarn::cli {

std::string signature(const Member& member) {
  std::string text(member.name);
  for (size_t i = 0; i < member.bounds.size(); ++i) {
    const Bounds& b = member.bounds[i];
    text += (i == 0 ? "(" : ", ") + std::to_string(b.first) + " to " + std::to_string(b.last);
  }
  if (!member.bounds.empty()) text += ")";
  if (member.kind == MemberKind::Property) return text;
  text += "(";
  for (size_t i = 0; i < member.parameters().size(); ++i) {
    const Parameter& p = member.parameters()[i];
    if (i > 0) text += ", ";
    text += (p.optional ? "[" : "") + std::string(p.by_reference ? "ByRef " : "") + std::string(p.name) + " " +
            std::string(type_name(p.type)) + (p.optional ? "]" : "");
  }
  return text + ")";
}

std::span<const Label> named_codes(const Member& member) {
  return member.labels.empty() ? catalogued_codes(member) : member.labels;
}

size_t record_length(Object& object) {
  auto* entity = dynamic_cast<StoredEntity*>(&object);
  if (!entity) return object.info().record_size;
  size_t length = 0;
  for (const auto& block : entity->file().blocks()) length += block.size();
  return length;
}

namespace {

Json member_json(const Member& member) {
  constexpr std::string_view kinds[]{"property", "method", "event"};
  Json json{{"name", member.name}, {"kind", kinds[static_cast<size_t>(member.kind)]}, {"type", type_name(member.type)}};
  if (!member.unit.empty()) json["unit"] = member.unit;
  if (!member.unit_beside.empty()) json["unit_by"] = member.unit_beside;
  if (member.width() > 0) json["width"] = member.width();
  for (const Bounds& b : member.bounds) json["bounds"].push_back({b.first, b.last});
  if (member.kind == MemberKind::Property) json["read_only"] = member.read_only;
  if (member.by_reference) json["by_reference"] = true;
  for (const Parameter& p : member.parameters()) {
    json["parameters"].push_back(
        {{"name", p.name}, {"type", type_name(p.type)}, {"optional", p.optional}, {"by_reference", p.by_reference}});
  }
  for (const Label& label : named_codes(member))
    json["codes"].push_back({{"code", label.code}, {"name", label.name}, {"text", label.text}});
  return json;
}

Json codes_json(const Enumeration& enumeration) {
  Json codes = Json::array();
  for (const Label& label : enumeration.codes)
    codes.push_back({{"value", label.code}, {"name", label.name}, {"text", label.text}});
  return {{"enumeration", enumeration.name}, {"codes", codes}};
}

void print_codes(std::span<const Label> labels) {
  std::vector<std::vector<Json>> rows;
  for (const Label& label : labels) rows.push_back({label.code, label.name, label.text});
  print_table({"code", "name", "text"}, rows);
}

void show_codes(const Enumeration& enumeration) {
  std::cout << enumeration.name << '\n';
  print_codes(enumeration.codes);
}

Json class_json(const ClassInfo& info) {
  Json members = Json::array();
  for (const Member& member : info.members) members.push_back(member_json(member));
  return {{"class", info.name}, {"record_bytes", record_length(*create(info.name))}, {"members", members}};
}

void show_class(const ClassInfo& info) {
  const ObjectPtr sample = create(info.name);
  const size_t length = record_length(*sample);
  std::cout << info.name << (length > 0 ? ", record of " + std::to_string(length) + " bytes" : "") << '\n';
  std::vector<std::vector<Json>> rows;
  for (const Member& m : info.members) {
    constexpr std::string_view kinds[]{"property", "method", "event"};
    std::string notes(m.read_only ? "read-only" : m.by_reference ? "set by reference" : "");
    const std::string allowed = m.read_only ? "" : allowed_numbers(*sample, m);
    if (!m.refers_to.empty() && !m.read_only) notes += (notes.empty() ? "" : ", ") + reference_text(m);
    if (!allowed.empty()) notes += (notes.empty() ? "" : ", ") + allowed;
    if (!m.unit_beside.empty()) notes += (notes.empty() ? "unit by " : ", unit by ") + std::string(m.unit_beside);
    rows.push_back({kinds[static_cast<size_t>(m.kind)], signature(m), std::string(type_name(m.type)),
                    std::string(shown_unit(m.unit)), notes});
  }
  print_table({"kind", "member", "type", "unit", ""}, rows);
  for (const Member& m : info.members) {
    if (named_codes(m).empty()) continue;
    std::cout << "\ncodes of " << m.name << ":\n";
    print_codes(named_codes(m));
  }
}

/// Error `UsageError` for a word that names neither.
void check_described(const std::string& word) {
  std::vector<std::string_view> names;
  for (const ClassEntry& entry : class_list()) names.push_back(entry.info->name);
  for (const Enumeration& each : enumeration_list()) names.push_back(each.name);
  const auto named = [&](std::string_view name) { return same_word(name, word); };
  if (std::none_of(names.begin(), names.end(), named))
    throw UsageError("There is no class or enumeration " + word + "; " + did_you_mean(word, names));
}

}  // namespace

namespace {

/// Each in a line.
int list_classes() {
  std::vector<std::vector<Json>> classes, enumerations;
  for (const ClassEntry& entry : class_list()) {
    const auto count = [&](MemberKind kind) { return std::ranges::count(entry.info->members, kind, &Member::kind); };
    classes.push_back({std::string(entry.info->name), count(MemberKind::Property), count(MemberKind::Method)});
  }
  for (const Enumeration& each : enumeration_list())
    enumerations.push_back({std::string(each.name), each.codes.size()});
  print_table({"class", "properties", "methods"}, classes);
  std::cout << '\n';
  print_table({"enumeration", "codes"}, enumerations);
  std::cout << "\ntarn describe NAME shows the members of a class, or the codes of an enumeration\n";
  return kClean;
}

}  // namespace

int describe_classes(const Call& call) {
  if (call.words.empty() && !call.json) return list_classes();
  if (!call.words.empty()) check_described(call.words.front());
  const auto wanted = [&](std::string_view name) { return call.words.empty() || same_word(name, call.words.front()); };
  Json all = Json::array();
  for (const ClassEntry& entry : class_list()) {
    if (!wanted(entry.info->name)) continue;
    if (call.json)
      all.push_back(class_json(*entry.info));
    else
      show_class(*entry.info);
  }
  for (const Enumeration& each : enumeration_list()) {
    if (!wanted(each.name)) continue;
    if (call.json)
      all.push_back(codes_json(each));
    else
      show_codes(each);
  }
  if (call.json) print_json(call.words.empty() ? all : all[0]);
  return kClean;
}

}  // namespace tarn::cli
