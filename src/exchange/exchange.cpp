#include "tarn/exchange.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

#include "base/nearest.h"
#include "base/sentence.h"
#include "exchange/json_lines.h"
#include "platform/file_store.h"
#include "platform/host.h"
#include "project/kinds.h"
#include "reflect/json.h"
#include "reflect/json_text.h"
#include "storage/kind.h"
#include "tarn/base/log.h"
#include "tarn/code_names.h"
#include "tarn/platform/workspace.h"
#include "tarn/preferences.h"

namespace tarn {
namespace {

constexpr int kFormat = 1;  // of the text
constexpr std::string_view kPreferences = "PRF_ProjectPrefs";
constexpr std::string_view kReports = "RPT_ReportOptions";

std::vector<int16_t> indexes_of(const StoredEntity& entity) {
  std::vector<int16_t> indexes;
  const auto database = entity.GetDBHandle();
  if (!database)
    fail(ErrorNumber::ObjectNotSet, std::string(entity.kind().index_table) + " cannot be read; see the log.");
  auto rows =
      database->OpenRecordset("SELECT nIndex FROM " + std::string(entity.kind().index_table) + " ORDER BY nIndex");
  for (; !rows.AtEof(); rows.MoveNext()) {
    const int64_t index = rows.Fields("nIndex").integer();
    if (index >= 1 && index <= INT16_MAX) {
      indexes.push_back(static_cast<int16_t>(index));
      continue;
    }
    log().message(std::string(entity.kind().index_table) + " has a row of index " + std::to_string(index) +
                  ", which no entity can have; it is left out. Run 'tarn project repair'.");
  }
  return indexes;
}

/// A part's stored fields and its own parts, all in a line.
void write_part(std::string& out, Object& part) {
  std::string_view separator = "{\"";
  const auto key = [&](std::string_view name) {
    (out += std::exchange(separator, ", \"")) += name;
    out += "\": ";
  };
  const auto write = [&](const Member& field) {
    if (!field.exchanged()) return;
    key(field.name);
    write_json(out, part, field);
  };
  for (const Member& field : part.info().reserved) write(field);
  for (const Member& member : part.info().members) {
    write(member);
    const int count = member.is_part() ? member.part_count(part) : 0;
    if (!member.is_part() || (count == 0 && !member.owned().numbered)) continue;
    key(member.owned().name);
    if (member.owned().numbered) out += "[";
    for (int number = 1; number <= count; ++number)
      write_part(out += number == 1 ? "" : ", ", member.part(part, number));
    if (member.owned().numbered) out += "]";
  }
  out += separator.starts_with('{') ? "{}" : "}";
}

/// Appends the stored fields and the parts, a line each, to what the object's text holds already.
void write_fields(std::string& out, Object& object, std::string_view separator) {
  const auto key = [&](std::string_view name) {
    ((out += std::exchange(separator, ",")) += "\n  \"") += name;
    out += "\": ";
  };
  for (const Member& member : object.info().members) {
    if (member.exchanged()) {
      key(member.name);
      write_json(out, object, member);
    } else if (const int count = member.is_part() ? member.part_count(object) : 0; count > 0) {
      key(member.owned().name);
      for (int number = 1; number <= count; ++number) {
        if (member.owned().numbered) out += number == 1 ? "[\n   " : ",\n   ";
        write_part(out, member.part(object, number));
      }
      if (member.owned().numbered) out += "]";
    }
  }
}

void write_entity(std::string& out, StoredEntity& entity, int16_t index, bool first) {
  (out += first ? "\n {\"index\": " : ",\n {\"index\": ") += std::to_string(index);
  write_fields(out, entity, ",");
  out += "}";
}

/// A kind's entities as a list; the default record, with index 0, stands first.
void write_entities(std::string& out, StoredEntity& entity, std::span<const int16_t> indexes,
                    const std::function<void()>& done) {
  out += "[";
  bool first = true;
  for (const int16_t index : indexes) {
    if (index == 0)
      entity.CreateDefault();
    else
      entity.Load(index);
    write_entity(out, entity, index, std::exchange(first, false));
    if (index != 0) done();
  }
  out += "]";
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

bool on_disk(const std::string& file) { return files().size(file) > 0; }

std::string beginning() { return "{\"tarn\": " + std::to_string(kFormat); }

void begin_section(std::string& out, std::string_view name) { ((out += ",\n\"") += name) += "\": "; }

void write_settings(std::string& out, COM_ProjectData& project, Settings which) {
  if (which == Settings::Preferences) {
    const auto preferences = project.NewProjectPrefs();
    if (!on_disk(preferences->FileName)) return;
    preferences->Read();
    begin_section(out, kPreferences);
    write_fields(out += "{", *preferences, "");
    out += "}";
  } else {
    const auto reports = project.NewReportOptions();
    if (!on_disk(reports->FileName)) return;
    reports->Load();
    begin_section(out, kReports);
    out += "{\"record\": \"" + hex_of(reports->bytes) + "\"}";
  }
}

}  // namespace

std::string export_project(COM_ProjectData& project, const std::set<std::string>& groups, const Progress& progress) {
  const auto opened = host().database(project.IndexDBName());  // the error says why it cannot be opened
  Transaction reading(Transaction::Purpose::Reading);
  std::string out = beginning();
  size_t done = 0;
  for (const EntityKind& kind : entity_kinds()) {
    if (!groups.empty() && !groups.contains(std::string(kind.group))) continue;
    const auto entity = make_entity(project, kind);
    auto indexes = indexes_of(*entity);
    if (on_disk(entity->file().default_path())) indexes.insert(indexes.begin(), 0);
    begin_section(out, kind.section);
    write_entities(out, *entity, indexes, [&] { progress(++done, 0); });
  }
  if (groups.empty()) {
    write_settings(out, project, Settings::Preferences);
    write_settings(out, project, Settings::ReportOptions);
  }
  return out + "}\n";
}

std::string export_entities(COM_ProjectData& project, std::string_view group, std::span<const int16_t> indexes) {
  const auto kinds = entity_kinds();
  const auto kind = std::ranges::find(kinds, group, &EntityKind::group);
  if (kind == kinds.end()) fail(ErrorNumber::InvalidCall, "There is no kind \"" + std::string(group) + "\".");
  const auto opened = host().database(project.IndexDBName());  // the error says why it cannot be opened
  Transaction reading(Transaction::Purpose::Reading);
  std::string out = beginning();
  begin_section(out, kind->section);
  write_entities(out, *make_entity(project, *kind), indexes, [] {});
  return out + "}\n";
}

std::string export_settings(COM_ProjectData& project, Settings which) {
  std::string out = beginning();
  write_settings(out, project, which);
  return out + "}\n";
}

namespace {

/// One import: the text, and the place in it that is being worked on.
class Import {
 public:
  Import(COM_ProjectData& project, const std::string& text, const Progress& progress)
      : project_(project), text_(text), progress_(progress) {}

  Imported run() {
    try {
      parse();
      const auto opened = host().database(project_.IndexDBName());  // as above
      Transaction transaction;
      check_sections();
      for (const EntityKind& kind : entity_kinds()) {  // what is referred to before what refers to it
        section(kind.section, [&](Json& list) { entities(kind, list); });
      }
      section(kPreferences, [&](Json& json) { preferences(json); });
      section(kReports, [&](Json& json) { reports(json); });
      at_.clear();
      transaction.commit();
      return done_;
    } catch (const Error& error) {
      if (at_.empty()) throw;
      throw Error(error.number(), error.source(),
                  "line " + std::to_string(line_of(text_, at_)) + ", " + at_ + ": " + sentence(error.what()) +
                      " Nothing was imported.");
    }
  }

 private:
  void parse() {
    all_ = read_json(text_);
    if (!all_.is_object() || !all_.contains("tarn") || all_["tarn"] != kFormat) {
      fail(ErrorNumber::TypeMismatch,
           "line 1: the text is not a project; wanted an object with \"tarn\": " + std::to_string(kFormat));
    }
    for (const EntityKind& kind : entity_kinds()) {
      if (const auto list = all_.find(kind.section); list != all_.end() && list->is_array()) total_ += list->size();
    }
  }

  void check_sections() {
    std::vector<std::string_view> known{kPreferences, kReports};
    for (const EntityKind& kind : entity_kinds()) known.push_back(kind.section);
    for (const auto& [name, value] : all_.items()) {
      at_ = "/" + name;
      if (name != "tarn" && std::find(known.begin(), known.end(), name) == known.end())
        fail(ErrorNumber::TypeMismatch, "there is no kind \"" + name + "\"; " + did_you_mean(name, known));
    }
  }

  template <typename F>
  void section(std::string_view name, F import) {
    const auto found = all_.find(name);
    if (found == all_.end()) return;
    at_ = "/" + std::string(name);
    import(*found);
  }

  void entities(const EntityKind& kind, Json& list) {
    if (!list.is_array())
      fail(ErrorNumber::TypeMismatch, "found " + std::string(list.type_name()) + ", wanted an array");
    const auto entity = make_entity(project_, kind);
    const bool keeps_indexes = indexes_of(*entity).empty();
    const std::string place = at_;
    Renumbered& renumbered = renumbered_[entity->kind().default_word];
    renumbered.keeps_indexes = keeps_indexes;
    std::set<int16_t> seen;
    std::vector<std::pair<int16_t, size_t>>
        order;  // the default record first: it supplies the fields that others leave out
    for (size_t element = 0; element < list.size(); ++element) {
      at_ = place + "/" + std::to_string(element);
      const int16_t index = index_in(list[element], seen);
      order.insert(index == 0 ? order.begin() : order.end(), {index, element});
    }
    for (const auto& [index, element] : order) {
      at_ = place + "/" + std::to_string(element);
      const Json& json = list[element];
      const bool complete = is_complete(entity->info(), json);
      if (!complete) {  // what a text leaves out is the default's
        entity->CreateDefault();
        entity->Reset(true);
        entity->set_changed();
      }
      if (complete) entity->renew();
      fields(*entity, json, "index", index > 0 || keeps_indexes);
      entity->Reset();
      const Naming naming = complete ? Naming::AsItIs : Naming::Valid;
      if (index > 0) {
        entity->SaveAs(keeps_indexes ? index : int16_t{0}, naming);
        renumbered.given[index] = entity->Index();
      } else if (keeps_indexes) {
        entity->SaveDefault();
      }
      if (index > 0)
        ++done_.entities;
      else if (keeps_indexes)
        ++done_.defaults;
      if (progress_) progress_(done_.all(), total_);
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
      fail(ErrorNumber::TypeMismatch, "found " + json_text(*found) + ", wanted a whole number from 0 to 32767");
    }
    const auto index = found->get<int16_t>();
    if (!seen.insert(index).second)
      fail(ErrorNumber::TypeMismatch, "the index " + std::to_string(index) + " appears twice");
    at_ = place;
    return index;
  }

  void fields(Object& object, const Json& json, std::string_view beside, bool follow) {
    const std::string place = at_;
    FieldSetting how{[&](const std::string& deeper) { at_ = place + deeper; }, {}, beside, catalogued_codes};
    if (follow) how.follow = [&](std::string_view kind, int32_t index) { return followed(kind, index); };
    set_fields_from_json(object, json, how);
    at_ = place;
  }

  /// References to entities of the text become the indexes that these entities get here. A reference of a kind that the
  /// text does not have means the project's own entity.
  int32_t followed(std::string_view kind, int32_t index) const {
    const auto text = renumbered_.find(kind);
    if (text == renumbered_.end()) return index;
    const auto found = text->second.given.find(index);
    if (found != text->second.given.end()) return found->second;
    if (text->second.keeps_indexes) return index;  // refers to nothing, as it did where the text was made
    fail(ErrorNumber::InvalidCall, "refers to " + std::string(kind) + " " + std::to_string(index) +
                                       ", which the text does not have. Add it, or set the reference to 0.");
  }

  void preferences(const Json& json) {
    const auto preferences = project_.NewProjectPrefs();
    preferences->Read();  // what the text leaves out stays
    fields(*preferences, json, {}, false);
    preferences->Save();
  }

  void reports(const Json& json) {
    const auto reports = project_.NewReportOptions();
    if (!json.is_object() || !json.contains("record"))
      fail(ErrorNumber::TypeMismatch, "wanted an object with \"record\"");
    if (json.size() > 1) fail(ErrorNumber::TypeMismatch, "wanted \"record\" only");
    at_ += "/record";
    reports->bytes = bytes_of(std::get<std::string>(from_json(json["record"], ValueType::Text)));
    reports->Save();
  }

  COM_ProjectData& project_;
  const std::string& text_;
  const Progress& progress_;
  Json all_;
  std::string at_;  // JSON pointer
  struct Renumbered {
    bool keeps_indexes = true;
    std::map<int32_t, int16_t> given;  // by the text's index
  };
  std::map<std::string_view, Renumbered> renumbered_;  // by kind
  Imported done_;
  size_t total_ = 0;
};

}  // namespace

Imported import_project(COM_ProjectData& project, const std::string& text, const Progress& progress) {
  return Import(project, text, progress).run();
}

}  // namespace tarn
