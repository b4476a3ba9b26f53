#include "reflect/json.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

#include "base/nearest.h"
#include "reflect/allowed.h"
#include "reflect/json_text.h"
#include "tarn/base/value.h"

namespace tarn {
namespace {

/// The shortest decimal that reads back as the same 4-byte real, so that 0.78 is written 0.78.
double shortest(float value) {
  char text[32];
  const auto end = std::to_chars(std::begin(text), std::end(text), value).ptr;
  double out = 0;
  std::from_chars(text, end, out);
  return out;
}

Json real_json(double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0 ? "Infinity" : "-Infinity";
  return value;
}

double real_of_text(const std::string& text) {
  if (text == "NaN") return std::nan("");
  if (text == "Infinity") return HUGE_VAL;
  if (text == "-Infinity") return -HUGE_VAL;
  fail(ErrorNumber::TypeMismatch, "found the text \"" + text + "\", wanted a number");
}

/// Visits the elements of a nested array with their subscripts, the first subscript outermost.
template <typename J>  // constant or not
void nest(const Member& member, J& json, std::vector<int>& at, const std::function<void(J&, Subscripts)>& action) {
  if (at.size() == member.bounds.size()) return action(json, at);
  const Bounds& bounds = member.bounds[at.size()];
  for (int s = bounds.first; s <= bounds.last; ++s) {
    at.push_back(s);
    nest(member, json[static_cast<size_t>(s - bounds.first)], at, action);
    at.pop_back();
  }
}

void check_list(const Json& json, size_t size) {
  if (!json.is_array() || json.size() != size) {
    fail(ErrorNumber::TypeMismatch, "found " + std::string(json.type_name()) +
                                        (json.is_array() ? " of " + std::to_string(json.size()) : "") +
                                        ", wanted an array of " + std::to_string(size));
  }
}

void check_shape(const Member& member, const Json& json, size_t dimension) {
  if (dimension == member.bounds.size()) return;
  check_list(json, static_cast<size_t>(member.bounds[dimension].size()));
  for (const Json& inner : json) check_shape(member, inner, dimension + 1);
}

}  // namespace

Json code_json(std::span<const Label> labels, const Json& json) {
  if (json.is_object() && json.contains("code")) {
    const Json& code = json["code"];
    if (json.contains("text") && !json["text"].is_string())
      fail(ErrorNumber::TypeMismatch, "found " + std::string(json["text"].type_name()) + " as \"text\", wanted a text");
    const std::string text = json.value("text", "");
    for (const Label& label : labels) {
      if (!text.empty() && (text == label.text || text == label.name) && code != label.code) {
        fail(ErrorNumber::TypeMismatch,
             "found code " + json_text(code) + " beside \"" + text + "\", which is code " + std::to_string(label.code));
      }
    }
    if (json.size() > 1 + json.count("text")) fail(ErrorNumber::TypeMismatch, "wanted \"code\" and \"text\" only");
    return code;
  }
  if (!json.is_string()) return json;
  const auto word = json.get<std::string>();
  std::vector<std::string_view> words;
  for (const Label& label : labels) {
    if (same_word(word, label.name) || (same_word(word, label.text) && !word.empty())) return label.code;
    words.push_back(label.name);
    if (!label.text.empty()) words.push_back(label.text);
  }
  fail(ErrorNumber::TypeMismatch, "found \"" + word + "\"; " + did_you_mean(word, words));
}

namespace {

void set_element(Object& object, const Member& member, const Json& json, Subscripts at, Given given) {
  const auto let = given == Given::WithRecord ? &Member::let_stored : &Member::let;
  if (member.width() > 0 && json.is_null()) return (member.*let)(object, at, std::string(member.width(), '\0'));
  const Value value = member.labels.empty() ? from_json(json, member.type)
                                            : from_json(code_json(member.labels_of(object), json), member.type);
  check_allowed(object, member, value, given);
  (member.*let)(object, at, value);
}

}  // namespace

Json to_json(const Value& value) {
  switch (type_of(value)) {
    case ValueType::Boolean:
      return std::get<bool>(value);
    case ValueType::Int16:
      return std::get<int16_t>(value);
    case ValueType::Int32:
      return std::get<int32_t>(value);
    case ValueType::Real32: {
      const float real = std::get<float>(value);
      return real_json(std::isfinite(real) ? shortest(real) : static_cast<double>(real));
    }
    case ValueType::Real64:
      return real_json(std::get<double>(value));
    case ValueType::Text:
      return std::get<std::string>(value);
    default:
      return nullptr;
  }
}

Value from_json(const Json& json, ValueType type) {
  const auto wanted = [&](const char* what) {
    fail(ErrorNumber::TypeMismatch, "found " + std::string(json.type_name()) + ", wanted " + what);
  };
  switch (type) {
    case ValueType::Boolean:
      if (!json.is_boolean()) wanted("true or false");
      return json.get<bool>();
    case ValueType::Text:
      if (!json.is_string()) wanted("a text");
      return json.get<std::string>();
    case ValueType::Real32:
    case ValueType::Real64:
      if (json.is_string()) return real_of_text(json.get<std::string>());
      if (!json.is_number()) wanted("a number");
      return json.get<double>();
    case ValueType::Int16:
    case ValueType::Int32:
      if (!json.is_number_integer()) wanted("a whole number");
      if (const auto n = json.get<int64_t>(); !(json.is_number_unsigned() && n < 0) && n >= INT32_MIN && n <= INT32_MAX)
        return static_cast<int32_t>(n);
      fail(ErrorNumber::Overflow, "found " + json_text(json) + ", which is too large");
    default:
      wanted("nothing");
      return {};
  }
}

namespace {

/// What is shown of a code beside its number; empty for one that the enumeration has not.
std::string_view text_of_code(Object& object, const Member& member, int16_t code) {
  const auto labels = member.labels_of(object);
  const auto label = std::find_if(labels.begin(), labels.end(), [code](const Label& l) { return l.code == code; });
  if (label == labels.end()) return {};
  return label->text.empty() ? label->name : label->text;
}

Json element_json(Object& object, const Member& member, Subscripts at) {
  Value value;
  member.get_stored(object, at, value);
  if (const auto* text = std::get_if<std::string>(&value)) {
    if (member.width() > 0 && text->find_first_not_of('\0') == std::string::npos) return nullptr;
    return std::string(without_padding(*text));
  }
  Json json = to_json(value);
  if (member.labels.empty()) return json;
  return {{"code", std::move(json)}, {"text", text_of_code(object, member, std::get<int16_t>(value))}};
}

}  // namespace

Json to_json(Object& object, const Member& property) {
  if (property.bounds.empty()) return element_json(object, property, {});
  Json json;
  std::vector<int> at;
  nest<Json>(property, json, at,
             [&](Json& element, Subscripts subscripts) { element = element_json(object, property, subscripts); });
  return json;
}

namespace {

void write_text(std::string& out, std::string_view text) {
  const auto plain = [](char c) {
    return static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\' && c != '\x7F';
  };
  if (std::all_of(text.begin(), text.end(), plain))
    ((out += '"') += text) += '"';
  else
    out += json_text(Json(text));
}

/// Finite reals always show that they are reals.
template <typename T>
void write_number(std::string& out, T value) {
  char text[40];
  const auto result = std::to_chars(std::begin(text), std::end(text), value);
  const std::string_view digits(text, static_cast<size_t>(result.ptr - text));
  out += digits;
  if (std::is_floating_point_v<T> && digits.find_first_of(".e") == std::string_view::npos) out += ".0";
}

/// A finite number, a truth or an unwritten text of a record, as its bytes have it; false for anything else.
bool write_plain(std::string& out, const RecordField& field, const std::byte* at) {
  if (field.wire == Wire::Text && std::all_of(at, at + field.width, [](std::byte b) { return b == std::byte{0}; })) {
    out += "null";
    return true;
  }
  bool written = true;
  const bool plain = with_number(field.wire, at, [&](auto value) {
    if constexpr (std::is_same_v<decltype(value), bool>)
      out += value ? "true" : "false";
    else if (!std::is_floating_point_v<decltype(value)> || std::isfinite(value))
      write_number(out, value);
    else
      written = false;
  });
  return plain && written;
}

void write_element(std::string& out, Object& object, const Member& member, Subscripts at) {
  const auto* const field = std::get_if<RecordField>(&member.form);
  if (field && member.labels.empty() && write_plain(out, *field, field->place(object, member.bounds, at))) return;
  Value value;
  member.get_stored(object, at, value);
  const auto* whole = std::get_if<int16_t>(&value);
  if (whole && !member.labels.empty()) {
    write_number(out += R"({"code":)", *whole);
    write_text(out += R"(,"text":)", text_of_code(object, member, *whole));
    out += '}';
    return;
  }
  if (const auto* text = std::get_if<std::string>(&value); text && text->find('\0') == std::string::npos)
    return write_text(out, without_padding(*text));
  out += json_text(element_json(object, member, at));
}

void write_nested(std::string& out, Object& object, const Member& member, std::vector<int>& at) {
  if (at.size() == member.bounds.size()) return write_element(out, object, member, at);
  const Bounds& bounds = member.bounds[at.size()];
  for (int s = bounds.first; s <= bounds.last; ++s) {
    out += s == bounds.first ? '[' : ',';
    at.push_back(s);
    write_nested(out, object, member, at);
    at.pop_back();
  }
  out += ']';
}

}  // namespace

void write_json(std::string& out, Object& object, const Member& property) {
  if (property.bounds.empty()) return write_element(out, object, property, {});
  std::vector<int> at;
  write_nested(out, object, property, at);
}

void add_stored_fields(Object& object, Json& json) {
  // Names are unique by construction: adding at the end spares the search for each.
  auto& fields = json.get_ref<Json::object_t&>();
  for (const Member& field : object.info().reserved)
    fields.emplace_back(std::string(field.name), to_json(object, field));
  for (const Member& member : object.info().members) {
    if (member.exchanged()) fields.emplace_back(std::string(member.name), to_json(object, member));
    if (!member.is_part()) continue;
    Json parts = Json::array();
    for (int number = 1; number <= member.part_count(object); ++number) {
      add_stored_fields(member.part(object, number), parts.emplace_back(Json::object()));
    }
    if (member.owned().numbered || !parts.empty())
      fields.emplace_back(std::string(member.owned().name), member.owned().numbered ? parts : parts[0]);
  }
}

namespace {

/// Sets a value; an error's text begins with class and property.
template <typename F>
void naming(Object& object, const Member& property, Subscripts at, F set) {
  try {
    if (property.kind != MemberKind::Property || (property.read_only && !property.stored()))
      fail(ErrorNumber::NoSuchMember, "it cannot be set");
    set();
  } catch (const Error& error) {
    throw Error(error.number(), error.source(),
                std::string(object.info().name) + "." + element_name(property, at) + ": " + error.what());
  }
}

}  // namespace

void set_from_json(Object& object, const Member& property, const Json& json) {
  naming(object, property, {}, [&] {
    check_shape(property, json, 0);
    std::vector<int> at;
    nest<const Json>(property, json, at, [&](const Json& element, Subscripts place) {
      set_element(object, property, element, place, Given::WithRecord);
    });
  });
}

void set_from_json(Object& object, const Member& property, Subscripts at, const Json& json) {
  naming(object, property, at, [&] {
    if (at.size() != property.bounds.size()) {
      fail(ErrorNumber::WrongArgumentCount,
           "found " + std::to_string(at.size()) + " subscripts, wanted " + std::to_string(property.bounds.size()));
    }
    set_element(object, property, json, at, Given::Alone);
  });
}

const Member* json_member(const ClassInfo& info, std::string_view key) {
  if (const int number = info.number(key); number >= 0 && info.members[static_cast<size_t>(number)].exchanged())
    return &info.members[static_cast<size_t>(number)];
  for (const Member& field : info.reserved) {
    if (same_word(field.name, key)) return &field;
  }
  return find_part(info, key);
}

bool is_complete(const ClassInfo& info, const Json& json) {
  const auto has = [&](const Member& member) {
    const auto found = json.find(member.is_part() ? member.owned().name : member.name);
    if (found == json.end()) return member.is_part() && member.owned().resize;  // may be absent
    if (!member.is_part()) return true;
    const ClassInfo& part = member.owned().info();
    if (!member.owned().numbered) return is_complete(part, *found);
    return std::all_of(found->begin(), found->end(), [&](const Json& each) { return is_complete(part, each); });
  };
  return std::all_of(info.reserved.begin(), info.reserved.end(), has) &&
         std::all_of(info.members.begin(), info.members.end(),
                     [&](const Member& member) { return (!member.exchanged() && !member.is_part()) || has(member); });
}

namespace {

void follow_references(Object& object, const Member& field,
                       const std::function<int32_t(std::string_view, int32_t)>& follow) {
  if (field.refers_to.empty()) return;
  for_each_element(field, [&](Subscripts at) {
    const std::string_view target = field.target_of(object, at);
    if (target.empty()) return;
    Value value;
    field.get(object, at, value);
    if (const auto index = static_cast<int32_t>(integer_from(value, INT32_MIN, INT32_MAX)); index != 0)
      field.let(object, at, follow(target, index));
  });
}

/// Whether a value, or each of an array, may be the name of a code where a number is wanted.
bool has_names(const Member& member, const Json& json) {
  if (member.type != ValueType::Int16 || !member.labels.empty()) return false;
  return json.is_string() || (json.is_array() && !json.empty() && has_names(member, json.front()));
}

/// The value with numbers for names of codes.
Json with_codes(const Member& member, const Json& json, std::span<const Label> (*codes)(const Member&)) {
  if (json.is_array()) {
    Json all = Json::array();
    for (const Json& each : json) all.push_back(with_codes(member, each, codes));
    return all;
  }
  const auto labels = codes(member);
  return labels.empty() ? json : code_json(labels, json);
}

[[noreturn]] void unknown_field(const ClassInfo& info, const std::string& name) {
  std::vector<std::string_view> known;
  for (const Member& member : info.members) {
    if (member.exchanged() || member.is_part()) known.push_back(member.is_part() ? member.owned().name : member.name);
  }
  fail(ErrorNumber::NoSuchMember, std::string(info.name) + " has no field " + name + "; " + did_you_mean(name, known));
}

}  // namespace

void set_fields_from_json(Object& object, const Json& json, const FieldSetting& how) {
  if (!json.is_object())
    fail(ErrorNumber::TypeMismatch, "found " + std::string(json.type_name()) + ", wanted an object");
  const auto here = [&](const std::string& place) {
    if (how.at) how.at(place);
  };
  const auto set_part = [&](Object& part, const Json& part_json, const std::string& place) {
    here(place);
    set_fields_from_json(part, part_json,
                         {[&](const std::string& deeper) { here(place + deeper); }, how.follow, {}, how.codes});
  };
  std::vector<std::pair<const Member*, std::string>> plain;  // with their places
  for (const auto& [name, value] : json.items()) {
    if (name == how.beside) continue;
    const std::string place = "/" + name;
    here(place);
    const Member* member = json_member(object.info(), name);
    if (!member) unknown_field(object.info(), name);
    if (!member->is_part()) {
      set_from_json(object, *member,
                    has_names(*member, value) && how.codes ? with_codes(*member, value, how.codes) : value);
      plain.emplace_back(member, place);
    } else if (!member->owned().numbered) {
      if (member->owned().resize) member->owned().resize(object, 1);
      set_part(member->part(object, 1), value, place);
    } else {
      if (member->owned().resize && value.is_array()) member->owned().resize(object, static_cast<int>(value.size()));
      check_list(value, static_cast<size_t>(member->part_count(object)));
      for (int number = 1; number <= member->part_count(object); ++number) {
        const auto element = static_cast<size_t>(number - 1);
        set_part(member->part(object, number), value[element], place + "/" + std::to_string(element));
      }
    }
  }
  if (!how.follow) return;
  for (const auto& [member, place] : plain) {  // what a field refers to may depend on the others
    here(place);
    follow_references(object, *member, how.follow);
  }
}

}  // namespace tarn
