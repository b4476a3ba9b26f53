// The C interface to what a project does as a whole: making it, its kinds and new entities, exchange, weather,
// pictures.

#include <array>
#include <nlohmann/json.hpp>
#include <sstream>

#include "c/c_support.h"
#include "c/entity_kinds.h"
#include "exchange/computing.h"
#include "project/defaults.h"
#include "reflect/json_text.h"
#include "tarn/exchange.h"
#include "tarn/gbxml.h"
#include "tarn/pictures.h"
#include "tarn/reflect/by_name.h"
#include "tarn/report.h"
#include "tarn/weather.h"
#include "tarn/weather_import.h"

using namespace tarn;

namespace {

enum class Handed : uint8_t { Picture, Page, Name, Export, Report };

/// The text of a kind that was handed out last; it stays until the thread's next of that kind.
std::string& kept(Handed kind) {
  thread_local std::array<std::string, 5> texts;
  return texts[static_cast<size_t>(kind)];
}

Progress told(tarn_progress progress, void* context) {
  return [progress, context](size_t done, size_t total) {
    if (progress) progress(context, done, total);
  };
}

UnitSystem units_named(const char* units) {
  const std::string word = units ? units : "ip";
  if (word != "ip" && word != "si") bad_argument("The units are \"" + word + "\"; give \"ip\" or \"si\".");
  return word == "si" ? UnitSystem::SI : UnitSystem::InchPound;
}

std::set<std::string> words_of(const char* groups) {
  std::set<std::string> words;
  std::istringstream all(groups ? groups : "");
  for (std::string word; all >> word;) words.emplace(kind_named(word.c_str()).group);
  return words;
}

}  // namespace

tarn_status tarn_create_project(tarn_object* project) {
  return on_object(project, [](HandleSlot& slot) { create_project(object_as<COM_ProjectData>(slot, "project")); });
}

tarn_status tarn_new_entity(tarn_object* project, const char* group, const char* type, tarn_object** out) {
  return on_object(project, [&](HandleSlot& slot) {
    const EntityKind& kind = kind_named(group);
    const auto entity = make_entity(object_as<COM_ProjectData>(slot, "project"), kind);
    if (kind.start) {
      kind.start(*entity, type ? type : "");
    } else {
      if (type && *type) bad_argument("There are no types of " + std::string(kind.group) + "; leave the type out.");
      entity->CreateDefault();
      entity->Reset(true);
    }
    required(out) = new_handle(entity);
  });
}

tarn_status tarn_describe_entity(tarn_object* entity, int32_t* index, const char** name) {
  return on_object(entity, [&](HandleSlot& slot) {
    const auto& stored = object_as<StoredEntity>(slot, "entity");
    required(index) = stored.Index();
    const char*& out = required(name);
    kept(Handed::Name) = stored.stored_name();
    out = kept(Handed::Name).c_str();
  });
}

tarn_status tarn_compute(tarn_object* entity) {
  return on_object(entity, [](HandleSlot& slot) {
    auto& stored = object_as<StoredEntity>(slot, "entity");
    for (const EntityKind& kind : entity_kinds()) {
      if (kind.class_name == slot.info->name) return compute_inputs(stored, kind);
    }
  });
}

tarn_status tarn_load_entity(tarn_object* entity, int16_t index) {
  return on_object(entity, [index](HandleSlot& slot) {
    auto& stored = object_as<StoredEntity>(slot, "entity");
    try {
      stored.Load(index);
    } catch (const std::exception&) {
      settle(*slot.info, "Load()");
    }
  });
}

tarn_status tarn_save_entity(tarn_object* entity) {
  return on_object(entity, [](HandleSlot& slot) {
    auto& stored = object_as<StoredEntity>(slot, "entity");
    try {
      stored.Save();
    } catch (const std::exception&) {
      settle(*slot.info, "Save()");
    }
  });
}

tarn_status tarn_export(tarn_object* project, const char* groups, tarn_progress progress, void* context,
                        const char** text) {
  return on_object(project, [&](HandleSlot& slot) {
    const char*& out = required(text);
    auto& exported = object_as<COM_ProjectData>(slot, "project");
    kept(Handed::Export) = export_project(exported, words_of(groups), told(progress, context));
    out = kept(Handed::Export).c_str();
  });
}

tarn_status tarn_import(tarn_object* project, const char* text, tarn_progress progress, void* context, int32_t* count) {
  return on_object(project, [&](HandleSlot& slot) {
    auto& filled = object_as<COM_ProjectData>(slot, "project");
    const size_t entities = import_project(filled, required_text(text), told(progress, context)).all();
    if (count) *count = static_cast<int32_t>(entities);
  });
}

tarn_status tarn_import_gbxml(tarn_object* project, const char* path, tarn_progress progress, void* context,
                              const char** account) {
  return on_object(project, [&](HandleSlot& slot) {
    auto& filled = object_as<COM_ProjectData>(slot, "project");
    kept(Handed::Report) = account_json(import_gbxml(filled, required_text(path), told(progress, context)));
    if (account) *account = kept(Handed::Report).c_str();
  });
}

tarn_status tarn_export_gbxml(tarn_object* project, tarn_progress progress, void* context, const char** text,
                              const char** notes) {
  return on_object(project, [&](HandleSlot& slot) {
    const char*& out = required(text);
    GbxmlText exported = export_gbxml(object_as<COM_ProjectData>(slot, "project"), told(progress, context));
    kept(Handed::Export) = std::move(exported.text);
    out = kept(Handed::Export).c_str();
    kept(Handed::Report).clear();
    for (const std::string& note : exported.notes) kept(Handed::Report) += note + "\n";
    if (notes) *notes = kept(Handed::Report).c_str();
  });
}

tarn_status tarn_import_weather(tarn_object* year, const char* path, tarn_object* project, const char** report) {
  return on_object(year, [&](HandleSlot& slot) {
    auto& hourly = object_as<HW1ReaderWriter>(slot, "year of hourly weather (HW1ReaderWriter)");
    HandleSlot* with = project ? slot_of(project) : nullptr;
    if (project && !with) bad_argument("The project is not set, was released, or belongs to another thread.");
    const ObjectPtr held = with ? with->object : nullptr;  // as the year is
    COM_ProjectData* filled = with ? &object_as<COM_ProjectData>(*with, "project") : nullptr;
    const ImportedWeather imported = import_weather(hourly, required_text(path));
    if (filled) {
      check_hourly(hourly, imported, path);
      save_as_simulation(*filled->NewWeather(), hourly, imported, filled->SimWeatherInputsFilename());
    }
    kept(Handed::Report) =
        json_text({{"format", imported.format}, {"source", imported.source}, {"notes", imported.notes}}, 2);
    if (report) *report = kept(Handed::Report).c_str();
  });
}

tarn_status tarn_picture(tarn_object* object, const char** svg) {
  return on_object(object, [&](HandleSlot& slot) {
    const char*& out = required(svg);
    kept(Handed::Picture) = picture_of(*slot.object);
    out = kept(Handed::Picture).c_str();
  });
}

tarn_status tarn_report(tarn_object* project, const char* units, tarn_progress progress, void* context,
                        const char** html) {
  return on_object(project, [&](HandleSlot& slot) {
    const char*& out = required(html);
    auto& told_of = object_as<COM_ProjectData>(slot, "project");
    kept(Handed::Page) = report_html(told_of, units_named(units), told(progress, context));
    out = kept(Handed::Page).c_str();
  });
}
