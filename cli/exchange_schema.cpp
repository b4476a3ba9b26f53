#include "cli/exchange_schema.h"

#include <nlohmann/json.hpp>
#include <set>

#include "project/enumerations.h"
#include "project/kinds.h"
#include "reflect/allowed.h"
#include "reflect/json_text.h"
#include "tarn/class_list.h"
#include "tarn/code_names.h"
#include "tarn/preferences.h"

namespace tarn::cli {
namespace {

Json reference(std::string_view definition) { return {{"$ref", "#/$defs/" + std::string(definition)}}; }

/// A code as export writes it, and in the shorter forms that an import takes.
Json code_schema(const Json& number, const Json& word) {
  const Json written{{"type", "object"},
                     {"properties", {{"code", number}, {"text", {{"type", "string"}}}}},
                     {"required", {"code"}},
                     {"additionalProperties", false}};
  return {{"anyOf", {written, number, word}}};
}

/// Code 0 is a field that was never filled.
Json code_schema(std::span<const Label> labels) {
  std::set<int> numbers{0};
  std::set<std::string_view> words;
  for (const Label& label : labels) {
    numbers.insert(label.code);
    for (const std::string_view word : {label.name, label.text}) {
      if (!word.empty()) words.insert(word);
    }
  }
  return code_schema({{"enum", numbers}}, {{"enum", words}});
}

class Definitions {
 public:
  /// The definition of a class, made where it is new; its name.
  std::string of_class(const ClassInfo& info, bool entity) {
    const std::string name(info.name);
    if (json_.contains(name)) return name;
    json_[name] = Json::object();  // before those of its parts
    const ObjectPtr sample = create(info.name);
    Json properties = Json::object();
    if (entity) properties["index"] = {{"type", "integer"}, {"minimum", 0}, {"maximum", INT16_MAX}};
    for (const auto* list : {&info.reserved, &info.members}) {
      for (const Member& member : *list) add_member(*sample, member, properties);
    }
    Json definition{{"type", "object"}, {"properties", std::move(properties)}, {"additionalProperties", false}};
    if (entity) definition["required"] = {"index"};
    json_[name] = std::move(definition);
    return name;
  }

  Json take() { return std::move(json_); }

 private:
  void add_member(const Object& sample, const Member& member, Json& properties) {
    if (member.is_part()) {
      const OwnedPart& owned = member.owned();
      const Json part = reference(of_class(owned.info(), false));
      properties[std::string(owned.name)] = owned.numbered ? list_of(part, owned.resize ? 0 : owned.fixed) : part;
    } else if (member.exchanged()) {
      properties[std::string(member.name)] = field(sample, member);
    }
  }

  /// Of any length where `size` is 0.
  static Json list_of(const Json& items, int size) {
    Json list{{"type", "array"}, {"items", items}};
    if (size > 0) list["minItems"] = list["maxItems"] = size;
    return list;
  }

  Json field(const Object& sample, const Member& member) {
    Json schema = scalar(sample, member);
    // The first subscript is the outermost list.
    for (auto bounds = member.bounds.rbegin(); bounds != member.bounds.rend(); ++bounds)
      schema = list_of(schema, bounds->size());
    if (!member.refers_to.empty())
      schema["description"] = "index of a " + std::string(member.refers_to) + ", 0 for none";
    else if (!member.unit_beside.empty())
      schema["description"] = "unit by " + std::string(member.unit_beside);
    else if (!member.unit.empty())
      schema["description"] = member.unit;
    return schema;
  }

  Json scalar(const Object& sample, const Member& member) {
    if (member.labels_vary) return defined("code", code_schema({{"type", "integer"}}, {{"type", "string"}}));
    if (!member.labels.empty()) {
      const Enumeration* enumeration = enumeration_of(member.labels);
      return enumeration ? defined(enumeration->name, code_schema(member.labels)) : code_schema(member.labels);
    }
    switch (member.type) {
      case ValueType::Boolean:
        return {{"type", "boolean"}};
      case ValueType::Text:
        return {{"type", {"string", "null"}}, {"maxLength", member.width()}};
      default:
        return number(sample, member);
    }
  }

  static Json number(const Object& sample, const Member& member) {
    const bool real = member.type == ValueType::Real32 || member.type == ValueType::Real64;
    Json schema{{"type", real ? "number" : "integer"}};
    if (member.type == ValueType::Int16) {
      schema["minimum"] = INT16_MIN;
      schema["maximum"] = INT16_MAX;
    } else if (member.type == ValueType::Int32) {
      schema["minimum"] = INT32_MIN;
      schema["maximum"] = INT32_MAX;
    }
    if (const auto range = allowed_range(sample, member)) {
      schema["minimum"] = range->least;
      if (range->most) schema["maximum"] = *range->most;
    }
    if (!catalogued_codes(member).empty()) schema["type"] = {"integer", "string"};  // any name: a firm has its own
    return schema;
  }

  Json defined(std::string_view name, const Json& schema) {
    json_[std::string(name)] = schema;
    return reference(name);
  }

  Json json_ = Json::object();
};

}  // namespace

std::string exchange_schema() {
  Definitions definitions;
  Json sections{{"tarn", {{"const", 1}}}};
  for (const EntityKind& kind : entity_kinds()) {
    const std::string name = definitions.of_class(class_info(kind.class_name), true);
    sections[std::string(kind.section)] = {{"type", "array"}, {"items", reference(name)}};
  }
  const std::string preferences = definitions.of_class(PRF_ProjectPrefs().info(), false);
  sections[preferences] = reference(preferences);
  sections["RPT_ReportOptions"] = {
      {"type", "object"},
      {"properties", {{"record", {{"type", "string"}, {"pattern", "^([0-9A-Fa-f]{2})*$"}}}}},
      {"required", {"record"}},
      {"additionalProperties", false}};
  const Json schema{{"$schema", "https://json-schema.org/draft/2020-12/schema"},
                    {"title", "Exchange text of a Tarn project"},
                    {"type", "object"},
                    {"properties", std::move(sections)},
                    {"required", {"tarn"}},
                    {"additionalProperties", false},
                    {"$defs", definitions.take()}};
  return json_text(schema, 1) + "\n";
}

}  // namespace tarn::cli
