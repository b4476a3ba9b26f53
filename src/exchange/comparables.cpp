// The two things that can be compared: a project, and an exchange text.
#include <nlohmann/json.hpp>

#include "exchange/json_lines.h"
#include "platform/file_store.h"
#include "platform/host.h"
#include "project/kinds.h"
#include "reflect/json.h"
#include "storage/kind.h"
#include "tarn/class_list.h"
#include "tarn/code_names.h"
#include "tarn/compare.h"
#include "tarn/platform/workspace.h"
#include "tarn/preferences.h"

namespace tarn {
namespace {

class ProjectSide final : public Comparable {
 public:
  explicit ProjectSide(COM_ProjectData& project) : preferences_(project.NewProjectPrefs()) {
    const auto opened = host().database(project.IndexDBName());  // the error says why it cannot be opened
    for (const EntityKind& kind : entity_kinds()) {
      const Ptr<StoredEntity> entity = entities_.emplace_back(make_entity(project, kind));
      entity->SetDBHandle(opened);
      std::vector<Entry>& entries = entries_.emplace_back();
      if (files().size(entity->file().default_path()) > 0) entries.push_back({0, "default"});
      auto rows = opened->OpenRecordset("SELECT nIndex, szName FROM " + std::string(entity->kind().index_table) +
                                        " WHERE nIndex BETWEEN 1 AND 32767 ORDER BY nIndex");
      for (; !rows.AtEof(); rows.MoveNext())
        entries.push_back({static_cast<int16_t>(rows.Fields("nIndex").integer()), rows.Fields("szName").text()});
    }
  }
  const std::vector<Entry>& entries(size_t kind) override { return entries_[kind]; }
  Object& entity(size_t kind, int16_t index) override {
    StoredEntity& entity = *entities_[kind];
    if (index == 0)
      entity.CreateDefault();
    else
      entity.Load(index);
    return entity;
  }
  Object* preferences() override {
    if (files().size(preferences_->FileName) == 0) return nullptr;
    preferences_->Read();
    return preferences_.get();
  }

 private:
  Transaction one_moment_{Transaction::Purpose::Reading};
  std::vector<Ptr<StoredEntity>> entities_;
  std::vector<std::vector<Entry>> entries_;
  Ptr<PRF_ProjectPrefs> preferences_;
};

class TextSide final : public Comparable {
 public:
  explicit TextSide(const std::string& text) : all_(read_json(text)) {
    if (!all_.is_object() || !all_.contains("tarn"))
      fail(ErrorNumber::TypeMismatch, "The text is not that of a project: it has no \"tarn\" at its beginning.");
    for (const EntityKind& kind : entity_kinds()) {
      entries_.emplace_back();
      const auto list = all_.find(kind.section);
      if (list == all_.end()) continue;
      const auto blank = blank_entity(kind);
      for (const Json& json : *list) add(kind, blank->info(), json);
    }
  }
  const std::vector<Entry>& entries(size_t kind) override { return entries_[kind]; }
  Object& entity(size_t kind, int16_t index) override {
    filled_ = blank_entity(entity_kinds()[kind]);
    const auto& list = entries_[kind];
    const auto entry = std::ranges::find(list, index, &Entry::index) - list.begin();
    set_fields_from_json(*filled_, all_[entity_kinds()[kind].section][static_cast<size_t>(entry)],
                         {{}, {}, "index", catalogued_codes});
    return *filled_;
  }
  Object* preferences() override {
    const auto found = all_.find("PRF_ProjectPrefs");
    if (found == all_.end()) return nullptr;
    filled_ = create("PRF_ProjectPrefs");
    set_fields_from_json(*filled_, *found, {{}, {}, {}, catalogued_codes});
    return filled_.get();
  }

 private:
  void add(const EntityKind& kind, const ClassInfo& info, const Json& json) {
    std::vector<Entry>& entries = entries_.back();
    const bool has_index = json.is_object() && json.contains("index") && json["index"].is_number_integer();
    const int index = has_index ? json["index"].get<int>() : -1;
    const std::string place = std::string(kind.section) + ", entity " + std::to_string(entries.size() + 1);
    if (index < 0 || index > INT16_MAX) fail(ErrorNumber::TypeMismatch, place + " has no \"index\" from 0 to 32767.");
    if (!is_complete(info, json)) {
      fail(ErrorNumber::InvalidCall,
           place + " leaves fields out, so that it cannot be compared. Import it into a project, and compare that.");
    }
    entries.push_back({static_cast<int16_t>(index), index == 0 ? "default" : name_in(json)});
  }
  /// The name of an entity; of one whose header is a part, that of the part.
  static std::string name_in(const Json& json) {
    if (const auto name = json.find("Name"); name != json.end() && name->is_string()) return name->get<std::string>();
    for (const auto& [key, part] : json.items()) {
      if (part.is_object() && part.contains("Name") && part["Name"].is_string()) return part["Name"].get<std::string>();
    }
    return {};
  }

  Json all_;
  std::vector<std::vector<Entry>> entries_;
  ObjectPtr filled_;
};

}  // namespace

std::unique_ptr<Comparable> comparable_project(COM_ProjectData& project) {
  return std::make_unique<ProjectSide>(project);
}

std::unique_ptr<Comparable> comparable_text(const std::string& text) { return std::make_unique<TextSide>(text); }

}  // namespace tarn
