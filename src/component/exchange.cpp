#include "component/exchange.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/nearest.h"
#include "component/json.h"
#include "component/json_lines.h"
#include "component/kinds.h"
#include "platform/host.h"
#include "platform/workspace.h"
#include "storage/preferences.h"

namespace tarn {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kFormat = 1;  // of the text
constexpr std::string_view kPreferences = "PRF_ProjectPrefs";
constexpr std::string_view kReports = "RPT_ReportOptions";

std::vector<int16_t> indexes_of(const StoredEntity& entity) {
  std::vector<int16_t> indexes;
  auto rows = entity.GetDBHandle()->OpenRecordset("SELECT nIndex FROM " + std::string(entity.kind().index_table) +
                                                  " ORDER BY nIndex");
  for (; !rows.AtEof(); rows.MoveNext()) indexes.push_back(static_cast<int16_t>(rows.Fields("nIndex").integer()));
  return indexes;
}

/// The stored fields, a line each, behind what stands in the object already.
void write_fields(std::string& out, Object& object, std::string_view separator) {
  for (const Member& member : object.info().members) {
    if (!member.stored()) continue;
    ((out += separator) += "\n  \"") += member.name;
    write_json(out += "\": ", object, member);
    separator = ",";
  }
}

void write_entity(std::string& out, StoredEntity& entity, int16_t index, bool first) {
  (out += first ? "\n {\"index\": " : ",\n {\"index\": ") += std::to_string(index);
  write_fields(out, entity, ",");
  out += "}";
}

std::string hex_of(std::span<const std::byte> bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const std::byte b : bytes) {
    text += digits[std::to_integer<size_t>(b >> 4)];
    text += digits[std::to_integer<size_t>(b & std::byte{15})];
  }
  return text;
}

std::vector<std::byte> bytes_of(const std::string& hex) {
  const auto digit = [&](char c) {
    const size_t at =
        std::string_view("0123456789abcdef").find(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
    if (at == std::string_view::npos)
      fail(ErrorNumber::TypeMismatch, "found \"" + std::string(1, c) + "\", wanted hexadecimal digits");
    return at;
  };
  if (hex.size() % 2 != 0)
    fail(ErrorNumber::TypeMismatch, "found an odd number of hexadecimal digits, wanted two for each byte");
  std::vector<std::byte> bytes;
  for (size_t i = 0; i < hex.size(); i += 2)
    bytes.push_back(static_cast<std::byte>(digit(hex[i]) << 4 | digit(hex[i + 1])));
  return bytes;
}

bool on_disk(const std::string& file) { return Engine::of_thread().Workspaces(0).files().size(file) > 0; }

}  // namespace

std::string export_project(COM_ProjectData& project, const std::set<std::string>& groups, const Progress& progress) {
  Transaction reading;
  std::string out = "{\"tarn\": " + std::to_string(kFormat);
  const auto section = [&out](std::string_view name) { ((out += ",\n\"") += name) += "\": "; };
  size_t done = 0;
  for (const EntityKind& kind : entity_kinds()) {
    if (!groups.empty() && !groups.contains(std::string(kind.group))) continue;
    const auto entity = make_entity(project, kind);
    const bool has_default = on_disk(entity->FileName);
    section(kind.class_name);
    out += "[";
    if (has_default) {
      entity->CreateDefault();
      write_entity(out, *entity, 0, true);
    }
    bool first = !has_default;
    for (const int16_t index : indexes_of(*entity)) {
      entity->Load(index);
      write_entity(out, *entity, index, std::exchange(first, false));
      progress(++done, 0);
    }
    out += "]";
  }
  if (groups.empty()) {
    if (const auto preferences = project.NewProjectPrefs(); on_disk(preferences->FileName)) {
      preferences->Read();
      section(kPreferences);
      write_fields(out += "{", *preferences, "");
      out += "}";
    }
    if (const auto reports = project.NewReportOptions(); on_disk(reports->FileName)) {
      reports->Load();
      section(kReports);
      out += "{\"record\": \"" + hex_of(reports->bytes) + "\"}";
    }
  }
  return out + "}\n";
}

namespace {

/// One import: the text, and the place in it that is being worked on.
class Import {
 public:
  Import(COM_ProjectData& project, const std::string& text, const Progress& progress)
      : project_(project), text_(text), progress_(progress) {}

  size_t run() {
    try {
      parse();
      Transaction transaction;
      for (auto& [name, value] : all_.items()) {
        at_ = "/" + name;
        section(name, value);
      }
      at_.clear();
      transaction.commit();
      return done_;
    } catch (const Error& error) {
      if (at_.empty()) throw;
      throw Error(
          error.number(), error.source(),
          "line " + std::to_string(line_of(text_, at_)) + ", " + at_ + ": " + error.what() + " Nothing was imported.");
    }
  }

 private:
  void parse() {
    check_json(text_);
    all_ = Json::parse(text_);
    if (!all_.is_object() || !all_.contains("tarn") || all_["tarn"] != kFormat) {
      fail(ErrorNumber::TypeMismatch,
           "line 1: the text is no project; wanted an object with \"tarn\": " + std::to_string(kFormat));
    }
    for (const EntityKind& kind : entity_kinds()) {
      if (const auto list = all_.find(kind.class_name); list != all_.end() && list->is_array()) total_ += list->size();
    }
  }

  void section(const std::string& name, Json& value) {
    if (name == "tarn") return;
    if (name == kPreferences) return preferences(value);
    if (name == kReports) return reports(value);
    std::vector<std::string_view> known{kPreferences, kReports};
    for (const EntityKind& kind : entity_kinds()) {
      if (kind.class_name == name) return entities(kind, value);
      known.push_back(kind.class_name);
    }
    fail(ErrorNumber::TypeMismatch, "there is no kind \"" + name + "\"; " + did_you_mean(name, known));
  }

  void entities(const EntityKind& kind, Json& list) {
    if (!list.is_array())
      fail(ErrorNumber::TypeMismatch, "found " + std::string(list.type_name()) + ", wanted an array");
    const auto entity = make_entity(project_, kind);
    const bool keeps_indexes = indexes_of(*entity).empty();
    const std::string place = at_;
    const auto& members = entity->info().members;
    const auto stored = std::count_if(members.begin(), members.end(), [](const Member& m) { return m.stored(); });
    const size_t fields_in_all =
        static_cast<size_t>(stored) + 1;  // with "index"; what a text leaves out is the default's
    std::set<int16_t> seen;
    std::vector<std::pair<int16_t, size_t>> order;  // the default record first: it fills in what others leave out
    for (size_t element = 0; element < list.size(); ++element) {
      at_ = place + "/" + std::to_string(element);
      const int16_t index = index_in(list[element], seen);
      order.insert(index == 0 ? order.begin() : order.end(), {index, element});
    }
    for (const auto& [index, element] : order) {
      at_ = place + "/" + std::to_string(element);
      const Json& json = list[element];
      if (json.size() < fields_in_all) {
        entity->CreateDefault();
        entity->Reset(true);
      }
      fields(*entity, json, "index");
      entity->Reset();
      if (index == 0) {
        if (keeps_indexes) entity->SaveDefault();
      } else if (keeps_indexes) {
        entity->SaveAs(index, json.contains("Name") ? Naming::AsItIs : Naming::Valid);
      } else {
        entity->Save();
      }
      if (index > 0 || keeps_indexes) ++done_;
      if (progress_) progress_(done_, total_);
    }
  }

  int16_t index_in(const Json& json, std::set<int16_t>& seen) {
    if (!json.is_object())
      fail(ErrorNumber::TypeMismatch, "found " + std::string(json.type_name()) + ", wanted an object");
    const auto found = json.find("index");
    if (found == json.end()) fail(ErrorNumber::TypeMismatch, "the entity has no \"index\"");
    const std::string place = at_;
    at_ += "/index";
    if (!found->is_number_integer() || *found < 0 || *found > INT16_MAX) {
      fail(ErrorNumber::TypeMismatch, "found " + found->dump() + ", wanted a whole number from 0 to 32767");
    }
    const auto index = found->get<int16_t>();
    if (!seen.insert(index).second)
      fail(ErrorNumber::TypeMismatch, "the index " + std::to_string(index) + " stands twice");
    at_ = place;
    return index;
  }

  void fields(Object& object, const Json& json, std::string_view beside) {
    if (!json.is_object())
      fail(ErrorNumber::TypeMismatch, "found " + std::string(json.type_name()) + ", wanted an object");
    const std::string place = at_;
    for (const auto& [name, value] : json.items()) {
      if (name == beside) continue;
      at_ = place + "/" + name;
      const int number = object.info().number(name);
      const Member* member = number < 0 ? nullptr : &object.info().members[static_cast<size_t>(number)];
      if (!member || !member->stored()) unknown_field(object.info(), name);
      set_from_json(object, *member, value);
    }
    at_ = place;
  }

  [[noreturn]] static void unknown_field(const ClassInfo& info, const std::string& name) {
    std::vector<std::string_view> stored;
    for (const Member& member : info.members) {
      if (member.stored()) stored.push_back(member.name);
    }
    fail(ErrorNumber::NoSuchMember,
         std::string(info.name) + " has no field " + name + "; " + did_you_mean(name, stored));
  }

  void preferences(const Json& json) {
    const auto preferences = project_.NewProjectPrefs();
    preferences->Read();  // what the text leaves out stays
    fields(*preferences, json, {});
    preferences->Save();
  }

  void reports(const Json& json) {
    const auto reports = project_.NewReportOptions();
    if (!json.is_object() || !json.contains("record"))
      fail(ErrorNumber::TypeMismatch, "wanted an object with \"record\"");
    if (json.size() > 1) fail(ErrorNumber::TypeMismatch, "wanted \"record\" alone");
    at_ += "/record";
    reports->bytes = bytes_of(std::get<std::string>(from_json(json["record"], ValueType::Text)));
    reports->Save();
  }

  COM_ProjectData& project_;
  const std::string& text_;
  const Progress& progress_;
  Json all_;
  std::string at_;  // JSON pointer
  size_t done_ = 0, total_ = 0;
};

}  // namespace

size_t import_project(COM_ProjectData& project, const std::string& text, const Progress& progress) {
  return Import(project, text, progress).run();
}

}  // namespace tarn
