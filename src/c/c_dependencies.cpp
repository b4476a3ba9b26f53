// The C interface to what rests on what in a project, what differs between two, and to a copy of one.

#include "c/c_support.h"
#include "c/entity_kinds.h"
#include "tarn/compare.h"
#include "tarn/copy.h"
#include "tarn/entity_copy.h"
#include "tarn/project.h"
#include "tarn/staleness.h"

using namespace tarn;

namespace {

/// Kept while the call lasts, as the first one is.
Ptr<COM_ProjectData> second_project(tarn_object* handle) {
  HandleSlot* slot = slot_of(handle);
  if (!slot) bad_argument("The second project is not set, was released, or belongs to another thread.");
  return {slot->object, &object_as<COM_ProjectData>(*slot, "project")};
}

/// Gives the text that `answer` makes of a project; it is kept until the thread's next.
template <typename F>
tarn_status answering(tarn_object* project, const char** found, F answer) {
  return on_object(project, [&](HandleSlot& slot) {
    thread_local std::string kept;
    const char*& out = required(found);
    kept = answer(object_as<COM_ProjectData>(slot, "project"));
    out = kept.c_str();
  });
}

}  // namespace

tarn_status tarn_uses(tarn_object* project, const char* kind, int16_t index, const char** found) {
  return answering(project, found,
                   [&](COM_ProjectData& of) { return uses_json(uses(of, required_text(kind), index)); });
}

tarn_status tarn_used_by(tarn_object* project, const char* kind, int16_t index, const char** found) {
  return answering(project, found,
                   [&](COM_ProjectData& of) { return uses_json(used_by(of, required_text(kind), index)); });
}

tarn_status tarn_stale(tarn_object* project, const char** found) {
  return answering(project, found, [](COM_ProjectData& of) { return stale_json(stale_results(of)); });
}

tarn_status tarn_graph(tarn_object* project, const char** found) {
  return answering(project, found, [](COM_ProjectData& of) { return graph_json(project_graph(of)); });
}

tarn_status tarn_compare(tarn_object* first, tarn_object* second, double tolerance, const char** found) {
  return answering(first, found, [&](COM_ProjectData& of) {
    const auto other = second_project(second);
    const auto one = comparable_project(of), two = comparable_project(*other);
    return differences_json(compare(*one, *two, {tolerance}));
  });
}

tarn_status tarn_copy_project(tarn_object* from, tarn_object* to) {
  return on_object(
      from, [&](HandleSlot& slot) { copy_project(object_as<COM_ProjectData>(slot, "project"), *second_project(to)); });
}

tarn_status tarn_copy_entity(tarn_object* from, const char* kind, int16_t index, tarn_object* to, const char** copied) {
  const char* ignored = nullptr;
  return answering(from, copied ? copied : &ignored, [&](COM_ProjectData& of) {
    return copies_json(copy_entity(of, required_text(kind), index, *second_project(to)));
  });
}

tarn_status tarn_compare_text(tarn_object* project, const char* text, double tolerance, const char** found) {
  return answering(project, found, [&](COM_ProjectData& of) {
    const auto one = comparable_project(of), two = comparable_text(required_text(text));
    return differences_json(compare(*one, *two, {tolerance}));
  });
}
