#include "c_project_calls.h"

#include <utility>

#include "scratch.h"

namespace tarn::fuzz {
namespace {

constexpr int32_t kRecordSize = 555;  // of a window

/// The text is there after the call that gives the status.
void read_if(tarn_status status, const char* const& text) {
  if (status == TARN_OK) read_through(text);
}

}  // namespace

void ProjectCalls::entity() {
  tarn_object *on = object(), *made = nullptr;
  const char *group = input_.byte() % 4 == 0 ? name() : "windows", *text = nullptr;
  int32_t member = 0;
  keep(tarn_new_entity(on, group, input_.byte() % 2 == 0 ? nullptr : name(), &made), made);
  tarn_object* const any = object();
  tarn_load_entity(any, input_.number<int16_t>());
  tarn_compute(any);
  read_if(tarn_describe_entity(any, &member, &text), text);
  read_if(tarn_picture(any, &text), text);
  tarn_save_entity(any);
}

void ProjectCalls::uses() {
  tarn_object* on = object();
  const char *kind = input_.byte() % 4 == 0 ? name() : "spaces", *text = nullptr;
  const auto index = input_.number<int16_t>();
  read_if(tarn_uses(on, kind, index, &text), text);
  read_if(tarn_used_by(on, kind, index, &text), text);
  tarn_object* const to = object();
  if (input_.byte() % 2 == 0)
    tarn_copy_entity(on, kind, index, to, nullptr);
  else
    read_if(tarn_copy_entity(on, kind, index, to, &text), text);
}

void ProjectCalls::kinds() {
  const auto number = static_cast<int8_t>(input_.byte());
  const auto field = input_.number<int16_t>();
  require(tarn_entity_kind_count() > 0, "there are no kinds");
  tarn_entity_kind kind{};
  if (tarn_describe_entity_kind(number, &kind) == TARN_OK) {
    for (const char* each : {kind.group, kind.one, kind.class_name, kind.factory, kind.index_table}) read_through(each);
  }
  tarn_record_field told{};
  if (tarn_describe_record_field(input_.byte() % 2 == 0 ? kind.group : name(), field, &told) == TARN_OK) {
    for (const char* each : {told.class_name, told.part, told.unit}) read_through(each);
  }
  tarn_object* on = object();
  const char* unit = nullptr;
  read_if(tarn_unit(on, member_of(on), input_.byte(), &unit), unit);
  double out = 0;
  tarn_convert(input_.number<float>(), unit, name(), &out);
}

void ProjectCalls::records() {
  tarn_object* on = object();
  const char* group = input_.byte() % 4 == 0 ? name() : "windows";
  std::vector<char> records(input_.byte() * static_cast<size_t>(kRecordSize));
  int32_t read = 0;
  tarn_read_records(on, group, input_.byte() - 1, static_cast<int32_t>(records.size()) / kRecordSize, records.data(),
                    records.size(), &read);
}

void ProjectCalls::exchange() {
  const tarn_progress progress = [](void* client, size_t, size_t) {
    static_cast<ProjectCalls*>(client)->called_back(nullptr, 0);
  };
  tarn_object* on = object();
  const char *groups = input_.byte() % 4 == 0 ? name() : nullptr, *text = nullptr;
  int32_t count = 0;
  tarn_set_strict(input_.byte() % 2);
  tarn_import(on, name(), progress, this, &count);
  const tarn_status exported = tarn_export(on, groups, progress, this, &text);
  const std::string whole = exported == TARN_OK && text ? text : "";
  read_if(tarn_compare_text(on, whole.c_str(), input_.number<float>(), &text), text);
  tarn_import(object(), whole.c_str(), nullptr, nullptr, &count);
  tarn_import_weather(on, name(), object(), &text);
}

void ProjectCalls::gbxml() {
  constexpr const char* kFile = "house.xml";
  write_bytes(
      kFile,
      "<gbXML lengthUnit='Feet' areaUnit='SquareFeet' volumeUnit='CubicFeet' temperatureUnit='F'><Campus id='c'>"
      "<Building id='b'><Space id='s'><Name>Room</Name><Area>100</Area><Volume>900</Volume></Space></Building>"
      "</Campus></gbXML>");
  const tarn_progress progress = [](void* client, size_t, size_t) {
    static_cast<ProjectCalls*>(client)->called_back(nullptr, 0);
  };
  tarn_object* on = object();
  const char *text = nullptr, *notes = nullptr;
  read_if(tarn_import_gbxml(on, input_.byte() % 4 == 0 ? name() : kFile, progress, this, &text), text);
  if (tarn_export_gbxml(on, progress, this, &text, &notes) == TARN_OK) {
    read_through(text);
    read_through(notes);
  }
}

void ProjectCalls::results() {
  tarn_object *first = object(), *second = object();
  const char* text = nullptr;
  read_if(tarn_stale(first, &text), text);
  read_if(tarn_graph(first, &text), text);
  read_if(tarn_compare(first, second, input_.number<float>(), &text), text);
}

/// Beside the first one, in its folder.
void ProjectCalls::other_project() {
  if (!std::exchange(has_other_, true)) open_project(".", "TWO");
  tarn_object *from = object(), *to = object();
  if (input_.byte() % 2 == 0)
    tarn_copy_project(from, to);
  else
    tarn_create_project(to);
}

/// Once: it takes longer than all the rest.
void ProjectCalls::check() {
  if (std::exchange(has_checked_, true)) return;
  const char* text = nullptr;
  tarn_object* on = object();
  const uint8_t how = input_.byte();
  read_if(how % 2 == 0 ? tarn_check(on, &text) : tarn_repair(on, how % 4 == 1, how % 8 == 3, &text), text);
}

void ProjectCalls::chiller() {
  tarn_object* on = object();
  const char* notes = nullptr;
  read_if(tarn_import_chiller(on, name(), &notes), notes);
}

}  // namespace tarn::fuzz
