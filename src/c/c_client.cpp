// The part of the C interface that belongs to no object: the list of classes, the log, databases, transactions.

#include <list>

#include "c/c_support.h"
#include "platform/binary_file.h"
#include "platform/file_store.h"
#include "platform/host.h"
#include "project/enumerations.h"
#include "project/new_index.h"
#include "tarn/base/log.h"
#include "tarn/check.h"
#include "tarn/chiller.h"
#include "tarn/chiller_import.h"
#include "tarn/class_list.h"
#include "tarn/member_units.h"
#include "tarn/platform/database.h"
#include "tarn/platform/workspace.h"
#include "tarn/shipped.h"

using namespace tarn;

namespace {

Database& database_of(HandleSlot& slot) {
  auto* database = dynamic_cast<Database*>(slot.fast);
  if (!database) bad_argument("The object is not a database handle.");
  return *database;
}

std::vector<Cell> cells_of(const tarn_value* parameters, int32_t count) {
  std::vector<Cell> cells;
  for (const Value& value : taken_all(parameters, count)) cells.push_back(cell(value));
  return cells;
}

class CallbackLog final : public Log {
 public:
  tarn_log callback = nullptr;
  void* context = nullptr;
  void message(std::string_view text) override {
    if (callback)
      callback(context, std::string(text).c_str(), std::string(kComponent).c_str(), nullptr, nullptr, nullptr);
  }
  void error(std::string_view component, std::string_view class_name, std::string_view procedure,
             std::string_view detail) override {
    const std::string c(component), n(class_name), p(procedure), d(detail);
    if (callback) callback(context, (n + "." + p + ": " + d).c_str(), c.c_str(), n.c_str(), p.c_str(), d.c_str());
  }
};
thread_local CallbackLog callback_log;

/// The last one handed out, which stays until the thread's next.
std::string& shipped_path() {
  thread_local std::string path;
  return path;
}
std::string& check_text() {
  thread_local std::string text;
  return text;
}
COM_ProjectData& project_of(HandleSlot& slot) {
  auto* project = dynamic_cast<COM_ProjectData*>(slot.fast);
  if (!project) bad_argument("The object is no project.");
  return *project;
}
std::string& import_notes() {
  thread_local std::string notes;
  return notes;
}

}  // namespace

int32_t tarn_class_count(void) { return static_cast<int32_t>(class_list().size()); }

const char* tarn_class_name(int32_t number) {
  return number < 0 || number >= tarn_class_count() ? nullptr
                                                    : class_list()[static_cast<size_t>(number)].info->name.data();
}

int32_t tarn_member_count(const char* class_name) {
  int32_t count = -1;
  guarded(thread_error, [&] { count = static_cast<int32_t>(class_info(required_text(class_name)).members.size()); });
  return count;
}

tarn_status tarn_describe(const char* class_name, int32_t number, tarn_member* out) {
  return guarded(thread_error, [&] {
    const Member& m = member_at(class_info(required_text(class_name)), number);
    const Enumeration* codes = enumeration_of(m.labels);
    required(out) = {m.name.data(),
                     m.unit.data() ? m.unit.data() : "",
                     static_cast<int32_t>(m.kind),
                     static_cast<int32_t>(m.type),
                     m.read_only,
                     m.by_reference,
                     static_cast<int32_t>(m.bounds.size()),
                     static_cast<int32_t>(m.parameters().size()),
                     m.exchanged(),
                     static_cast<int32_t>(m.width()),
                     codes ? codes->name.data() : "",
                     m.object_class.data() ? m.object_class.data() : ""};
  });
}

tarn_status tarn_describe_bounds(const char* class_name, int32_t number, int32_t dimension, tarn_bounds* out) {
  return guarded(thread_error, [&] {
    const Member& m = member_at(class_info(required_text(class_name)), number);
    if (dimension < 0 || static_cast<size_t>(dimension) >= m.bounds.size()) bad_argument("There is no such dimension.");
    const Bounds& b = m.bounds[static_cast<size_t>(dimension)];
    required(out) = {b.first, b.last};
  });
}

tarn_status tarn_describe_parameter(const char* class_name, int32_t number, int32_t parameter, tarn_parameter* out) {
  return guarded(thread_error, [&] {
    const Member& m = member_at(class_info(required_text(class_name)), number);
    if (parameter < 0 || static_cast<size_t>(parameter) >= m.parameters().size())
      bad_argument("There is no such parameter.");
    const Parameter& p = m.parameters()[static_cast<size_t>(parameter)];
    required(out) = {p.name.data(), static_cast<int32_t>(p.type), p.optional, p.by_reference, p.in_out, p.sections};
  });
}

int32_t tarn_enumeration_count(void) { return static_cast<int32_t>(enumeration_list().size()); }

const char* tarn_enumeration_name(int32_t number) {
  return number < 0 || number >= tarn_enumeration_count() ? nullptr
                                                          : enumeration_list()[static_cast<size_t>(number)].name.data();
}

int32_t tarn_code_count(const char* enumeration) {
  const Enumeration* found = enumeration ? find_enumeration(enumeration) : nullptr;
  return found ? static_cast<int32_t>(found->codes.size()) : -1;
}

tarn_status tarn_describe_code(const char* enumeration, int32_t code, tarn_code* out) {
  return guarded(thread_error, [&] {
    const Enumeration* found = find_enumeration(required_text(enumeration));
    if (!found) bad_argument("There is no enumeration " + std::string(enumeration) + ".");
    if (code < 0 || static_cast<size_t>(code) >= found->codes.size())
      bad_argument(std::string(found->name) + " has " + std::to_string(found->codes.size()) + " codes.");
    const Label& label = found->codes[static_cast<size_t>(code)];
    required(out) = {label.code, label.name.data(), label.text.data()};
  });
}

int32_t tarn_set_strict(int32_t strict) { return set_strict(strict != 0) ? 1 : 0; }

void tarn_set_log(tarn_log log, void* context) {
  callback_log.callback = log;
  callback_log.context = context;
  set_log(log ? &callback_log : nullptr);
}

void tarn_set_yield(tarn_yield yield, void* context) {
  host().yield = [yield, context] {
    if (yield) yield(context);
  };
}

const char* tarn_shipped_file(const char* name) {
  std::string& path = shipped_path();
  const tarn_status status = guarded(thread_error, [&] { path = shipped_file(required_text(name)); });
  return status == TARN_OK ? path.c_str() : nullptr;
}

tarn_status tarn_import_chiller(tarn_object* chiller, const char* path, const char** notes) {
  return on_object(chiller, [&](HandleSlot& slot) {
    auto* object = dynamic_cast<CHL_Chiller*>(slot.fast);
    if (!object) bad_argument("The object is no chiller.");
    std::string& all = import_notes();
    all.clear();
    for (const std::string& note : import_chiller(*object, required_text(path))) all += note + '\n';
    if (notes) *notes = all.c_str();
  });
}

tarn_status tarn_convert(double value, const char* from, const char* to, double* out) {
  return guarded(thread_error, [&] { required(out) = convert(value, required_text(from), required_text(to)); });
}

tarn_status tarn_unit(tarn_object* object, int32_t member, int32_t si, const char** unit) {
  return on_object(object, [&](HandleSlot& slot) {
    thread_local std::string text;
    const char*& out = required(unit);
    const auto system = si != 0 ? UnitSystem::SI : UnitSystem::InchPound;
    text = unit_in(system, unit_of(*slot.fast, member_at(*slot.info, member)));
    out = text.c_str();
  });
}

tarn_status tarn_create_index(const char* path) {
  return guarded(thread_error, [&] { create_index(required_text(path)); });
}

tarn_status tarn_settle(void) {
  return guarded(thread_error, [] { files().settle(); });
}

tarn_status tarn_settle_database(tarn_object* database) {
  return on_object(database, [](HandleSlot& slot) { database_of(slot).settle(); });
}

tarn_status tarn_open_database(const char* path, tarn_object** out) {
  return guarded(thread_error, [&] { required(out) = new_handle(standard_host().database(required_text(path))); });
}

tarn_status tarn_execute(tarn_object* database, const char* sql, const tarn_value* parameters, int32_t count,
                         int32_t* changed) {
  return on_object(database, [&](HandleSlot& slot) {
    const int rows = database_of(slot).Execute(required_text(sql), cells_of(parameters, count));
    if (changed) *changed = rows;
  });
}

tarn_status tarn_query(tarn_object* database, const char* sql, const tarn_value* parameters, int32_t count,
                       tarn_row row, void* context) {
  return on_object(database, [&](HandleSlot& slot) {
    if (!row) bad_argument("There is no receiver for the rows.");
    Recordset rows = database_of(slot).OpenRecordset(required_text(sql), cells_of(parameters, count));
    std::vector<const char*> names;
    for (const std::string& name : rows.columns()) names.push_back(name.c_str());
    for (; !rows.AtEof(); rows.MoveNext()) {
      std::list<std::string> texts;
      std::vector<tarn_value> values(names.size());
      for (size_t i = 0; i < values.size(); ++i)
        give(value_of(rows.Fields(names[i]).Value()), values[i], texts.emplace_back());
      row(context, names.data(), values.data(), static_cast<int32_t>(values.size()));
    }
  });
}

tarn_status tarn_open_file(const char* path, int32_t write, int16_t* number) {
  return guarded(thread_error, [&] {
    int16_t& place = required(number);
    place = BinaryFiles::of_thread().open(required_text(path), write != 0 ? OpenMode::Create : OpenMode::Read);
  });
}

tarn_status tarn_close_file(int16_t number) {
  return guarded(thread_error, [&] { BinaryFiles::of_thread().close(number); });
}

tarn_status tarn_drop_file(int16_t number) {
  return guarded(thread_error, [&] { BinaryFiles::of_thread().drop(number); });
}

tarn_status tarn_file_position(int16_t number, int32_t* position) {
  return guarded(thread_error, [&] { required(position) = BinaryFiles::of_thread().position(number); });
}

tarn_status tarn_check(tarn_object* project, const char** findings) {
  return on_object(project, [&](HandleSlot& slot) {
    const char*& out = required(findings);
    check_text() = findings_json(check_project(project_of(slot)));
    out = check_text().c_str();
  });
}

tarn_status tarn_repair(tarn_object* project, int32_t dry_run, int32_t rebuild_index, const char** report) {
  return on_object(project, [&](HandleSlot& slot) {
    const char*& out = required(report);
    check_text() = report_json(repair_project(project_of(slot), {dry_run != 0, rebuild_index != 0}));
    out = check_text().c_str();
  });
}

tarn_status tarn_begin(void) {
  return guarded(thread_error, [] { Engine::of_thread().Workspaces(0).BeginTrans(); });
}

tarn_status tarn_commit(void) {
  return guarded(thread_error, [] { Engine::of_thread().Workspaces(0).CommitTrans(); });
}

tarn_status tarn_rollback(void) {
  return guarded(thread_error, [] { Engine::of_thread().Workspaces(0).Rollback(); });
}
