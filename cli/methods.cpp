// call: the methods of an entity or of a part of it.

#include "cli/methods.h"

#include <algorithm>
#include <iostream>

#include "base/nearest.h"
#include "cli/describe.h"
#include "cli/entities.h"
#include "cli/part_path.h"
#include "reflect/json.h"
#include "tarn/reflect/by_name.h"
#include "tarn/reflect/collection.h"
#include "tarn/storage/entity.h"

namespace tarn::cli {
namespace {

/// Methods of an entity's life, and what does the same for a person.
constexpr std::pair<std::string_view, std::string_view> kLife[]{
    {"Load", "show"},       {"Save", "set"},          {"Delete", "delete"},           {"Clone", "clone"},
    {"Reset", "new"},       {"CreateDefault", "new"}, {"SaveDefault", "set"},         {"CopyInstance", "clone"},
    {"SetAsNew", "new"},    {"SetMask", "show"},      {"CreateDefaultByType", "new"}, {"GetFreeIndex", "new"},
    {"IsNameUnique", "new"}};

bool is_of_life(std::string_view method) {
  return std::ranges::any_of(kLife, [&](const auto& each) { return each.first == method; });
}

/// A method that takes and gives what can be typed and printed.
bool is_plain(const Member& member) {
  if (member.kind != MemberKind::Method || member.is_part() || is_of_life(member.name)) return false;
  return std::ranges::none_of(member.parameters(), [](const Parameter& p) { return p.type == ValueType::Object; }) &&
         member.name != "GetDBHandle";
}

const Member& method_named(const ClassInfo& info, const std::string& name, const std::string& group) {
  const int number = info.number(name);
  const Member* member = number < 0 ? nullptr : &info.members[static_cast<size_t>(number)];
  if (member && is_plain(*member)) return *member;
  for (const auto& [method, verb] : kLife) {
    if (member && member->name == method)
      throw UsageError(std::string(method) + " is not called by itself; tarn " + group + " " + std::string(verb) +
                       " does it.");
  }
  const auto names = plain_methods(info);
  throw UsageError(std::string(info.name) + " has no method " + name + " to call; " + did_you_mean(name, names));
}

Value argument(const std::string& word, const Parameter& parameter) {
  if (parameter.type == ValueType::Text) return word;
  if (parameter.type == ValueType::Reals) return std::vector<double>();  // filled by the method
  Json json = word;
  try {
    json = parse_json(word);
  } catch (const Json::exception&) {  // a text, which the type refuses with its message
  }
  try {
    return from_json(json, parameter.type);
  } catch (const Error& error) {
    throw UsageError(std::string(parameter.name) + ": " + error.description());
  }
}

/// By what the method fills, and what a person gives for the rest.
std::vector<Value> arguments(const Member& method, const std::vector<std::string>& words) {
  const auto parameters = method.parameters();
  const auto needed = static_cast<size_t>(
      std::ranges::count_if(parameters, [](const Parameter& p) { return !p.optional && !p.in_out; }));
  const auto most =
      static_cast<size_t>(std::ranges::count_if(parameters, [](const Parameter& p) { return !p.in_out; }));
  if (words.size() < needed || words.size() > most)
    throw UsageError("Write " + signature(method) + " as: " + std::string(method.name) + " with " +
                     std::to_string(needed) + (most > needed ? " to " + std::to_string(most) : "") + " values; " +
                     std::to_string(words.size()) + " are given.");
  std::vector<Value> values;
  size_t given = 0;
  for (const Parameter& parameter : parameters) {
    if (parameter.in_out)
      values.push_back(empty_value(parameter.type));
    else if (given < words.size())
      values.push_back(argument(words[given++], parameter));
  }
  return values;
}

/// A value; of a list its items.
Json printed(const Value& value) {
  const auto* object = std::get_if<ObjectPtr>(&value);
  if (!object) return type_of(value) == ValueType::Reals ? Json(std::get<std::vector<double>>(value)) : to_json(value);
  const auto list = std::dynamic_pointer_cast<Collection>(*object);
  if (!list) return nullptr;
  Json items = Json::array();
  for (int32_t i = 1; i <= list->Count(); ++i) items.push_back(printed(list->Item(i)));
  return items;
}

Json content(StoredEntity& entity) {
  Json json = Json::object();
  add_stored_fields(entity, json);
  return json;
}

}  // namespace

std::vector<std::string_view> plain_methods(const ClassInfo& info) {
  std::vector<std::string_view> names;
  for (const Member& member : info.members) {
    if (is_plain(member)) names.push_back(member.name);
  }
  return names;
}

int kind_call(const Call& call) {
  if (call.words.size() < 2) throw UsageError("Which method? tarn " + call.group + " call N METHOD [VALUE ...]");
  const Loaded on(call, Use::Writing);
  std::string_view path = call.words[1];
  const PartPath parts(on.entity->info(), path, call.words[1]);
  const Member& method = method_named(parts.owner(), std::string(path), call.group);
  auto values = arguments(method, {call.words.begin() + 2, call.words.end()});
  Object* owner = parts.in(*on.entity);
  if (!owner)
    throw UsageError("The " + std::string(on.kind.one) + " has no " + parts.text() + std::string(method.name) + ".");
  const Json before = content(*on.entity);
  Value result;
  method.call(*owner, values, result);
  const bool changed = content(*on.entity) != before;
  if (changed) on.entity->Save();
  Json json{{"index", on.entity->Index()}, {"result", printed(result)}, {"saved", changed}};
  for (size_t i = 0; i < values.size(); ++i) {
    if (method.parameters()[i].in_out) json[std::string(method.parameters()[i].name)] = printed(values[i]);
  }
  if (call.json) {
    print_json(json);
    return kClean;
  }
  for (const auto& [name, value] : json.items()) {
    if (name == "index" || name == "saved" || value.is_null()) continue;
    std::cout << (name == "result" ? "" : name + ": ") << shown(value) << '\n';
  }
  if (changed) std::cout << on.kind.one << ' ' << on.entity->Index() << " saved\n";
  return kClean;
}

}  // namespace tarn::cli
