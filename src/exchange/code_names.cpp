#include "tarn/code_names.h"

#include <charconv>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <unordered_map>
#include <vector>

#include "base/nearest.h"
#include "exchange/json_lines.h"
#include "tarn/base/error.h"
#include "tarn/base/value.h"
#include "tarn/class_list.h"
#include "tarn/shipped.h"

namespace tarn {
namespace {

/// Whether codes can be that property's: a whole number without an enumeration.
bool takes_codes(const Member& member) {
  return member.kind == MemberKind::Property && member.type == ValueType::Int16 && member.labels.empty() &&
         member.refers_to.empty();
}

class Catalogue {
 public:
  explicit Catalogue(std::string file) : file_(std::move(file)) {
    if (file_.empty()) return;
    std::ifstream in(file_, std::ios::binary);
    if (!in) fail(ErrorNumber::FileNotFound, "The code catalogue " + file_ + " cannot be read; TARN_CODES names it.");
    const std::string text{std::istreambuf_iterator<char>(in), {}};
    try {
      const Json json = read_json(text);
      want(json.is_object(), "wanted an object with a list of codes under each name");
      for (const auto& [name, list] : json.items()) add(name, list);
    } catch (const Error& error) {
      const std::string line = at_.empty() ? "" : "line " + std::to_string(line_of(text, at_)) + ": ";
      throw Error(error.number(), error.source(), "The code catalogue " + file_ + ", " + line + error.what());
    }
  }

  std::span<const Label> of(const Member& property) const {
    const auto found = properties_.find(&property);
    return found == properties_.end() ? std::span<const Label>() : *found->second;
  }

 private:
  static void want(bool is_so, const std::string& what) {
    if (!is_so) fail(ErrorNumber::TypeMismatch, what);
  }

  void add(const std::string& name, const Json& list) {
    const std::string place = at_ = "/" + name;
    want(list.is_object() && list.size() == 2 && list.contains("properties") && list.contains("names"),
         "wanted an object with \"properties\" and \"names\"");
    const Json &properties = list.at("properties"), &names = list.at("names");
    std::vector<Label>& labels = lists_.emplace_back();
    at_ = place + "/names";
    want(names.is_object(), "wanted an object with a name under each code");
    for (const auto& [code, text] : names.items()) {
      at_ = place + "/names/" + code;
      add_code(labels, code, text);
    }
    at_ = place + "/properties";
    want(properties.is_array(), "wanted an array of properties");
    for (size_t i = 0; i < properties.size(); ++i) {
      at_ = place + "/properties/" + std::to_string(i);
      add_property(properties[i], labels);
    }
    at_.clear();
  }

  void add_code(std::vector<Label>& labels, const std::string& code, const Json& text) {
    int16_t number = 0;
    const auto [end, failed] = std::from_chars(code.data(), code.data() + code.size(), number);
    want(failed == std::errc() && end == code.data() + code.size(),
         "found the code \"" + code + "\", wanted a whole number from -32768 to 32767");
    want(text.is_string() && !text.get_ref<const std::string&>().empty(), "wanted a name for the code " + code);
    const std::string& name = texts_.emplace_back(text.get<std::string>());
    for (const Label& other : labels)
      want(!same_word(other.name, name), "the codes " + std::to_string(other.code) + " and " + code + " are both \"" +
                                             name + "\"; give each a name of its own");
    labels.push_back({number, name, {}});
  }

  void add_property(const Json& json, const std::vector<Label>& labels) {
    want(json.is_string(), "wanted a property, \"SPC_Roof.Exposure\"");
    const auto property = json.get<std::string>();
    const size_t dot = std::min(property.find('.'), property.size());
    const ClassInfo& info = class_info(property.substr(0, dot));
    const Member& member = info.find(property.substr(std::min(dot + 1, property.size())));
    want(takes_codes(member), property + " takes no codes of a catalogue");
    want(properties_.emplace(&member, &labels).second, property + " has two lists of codes");
  }

  std::string file_;
  std::string at_;  // JSON pointer to what is being read
  std::deque<std::string> texts_;
  std::deque<std::vector<Label>> lists_;  // by code, as a text
  std::unordered_map<const Member*, const std::vector<Label>*> properties_;
};

}  // namespace

std::string code_catalogue_file() {
  if (const char* own = std::getenv("TARN_CODES"); own && *own) return own;
  try {
    return shipped_file("codes.json");
  } catch (const Error&) {
    return {};  // codes are numbers then
  }
}

std::span<const Label> catalogued_codes(const Member& member) {
  if (!takes_codes(member)) return {};
  const auto setting = [](const char* name) {
    const char* value = std::getenv(name);
    return std::string(value ? value : "");
  };
  thread_local std::optional<Catalogue> catalogue;
  thread_local std::string settings;
  if (std::string now = setting("TARN_CODES") + '\n' + setting("TARN_SHARE"); !catalogue || now != settings) {
    catalogue.emplace(code_catalogue_file());
    settings = std::move(now);
  }
  return catalogue->of(member);
}

std::span<const Label> codes_of(const Object& object, const Member& member) {
  return member.labels.empty() ? catalogued_codes(member) : member.labels_of(object);
}

}  // namespace tarn
