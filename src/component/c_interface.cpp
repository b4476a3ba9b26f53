// The C interface over the members tables. No class is known here.

#include <algorithm>
#include <cstring>
#include <exception>
#include <list>

#include "base/by_name.h"
#include "base/log.h"
#include "base/value.h"
#include "component/class_list.h"
#include "component/handles.h"
#include "platform/database.h"
#include "platform/host.h"
#include "platform/workspace.h"
#include "storage/schema.h"

using namespace tarn;

namespace {

thread_local LastError thread_error;
thread_local std::string returned_text;          // of the last get or result
thread_local std::list<std::string> kept_texts;  // of in/out arguments, rows and event arguments

tarn_status remember(LastError& place, int32_t number, const std::string& source, const std::string& description) {
  place = {number, source, description};
  if (&place != &thread_error) thread_error = place;
  switch (static_cast<ErrorNumber>(number)) {
    case ErrorNumber::NoSuchMember:
      return TARN_NO_MEMBER;
    case ErrorNumber::WrongArgumentCount:
      return TARN_BAD_ARGUMENT;
    default:
      return TARN_ERROR;
  }
}

/// Every entry point runs in here: no exception crosses the border.
template <typename F>
tarn_status guarded(LastError& place, F action) {
  try {
    action();
    return TARN_OK;
  } catch (const Error& error) {
    return remember(place, error.number(), error.source(), error.description());
  } catch (const std::exception& other) {
    return remember(place, static_cast<int32_t>(ErrorNumber::DatabaseFailure), {}, other.what());
  } catch (...) {
    return remember(place, static_cast<int32_t>(ErrorNumber::DatabaseFailure), {}, "Unknown failure.");
  }
}

template <typename F>
tarn_status on_object(tarn_object* handle, F action) {
  if (thread_ended()) return TARN_BAD_HANDLE;
  HandleSlot* slot = slot_of(handle);
  if (!slot) {
    remember(thread_error, static_cast<int32_t>(ErrorNumber::ObjectNotSet), {},
             "The object is not set, was released, or belongs to another thread.");
    return TARN_BAD_HANDLE;
  }
  return guarded(slot->error, [&] { action(*slot); });
}

[[noreturn]] void bad_argument(const std::string& description) { fail(ErrorNumber::WrongArgumentCount, description); }

const Member& member_at(const ClassInfo& info, int32_t number) {
  if (number < 0 || static_cast<size_t>(number) >= info.members.size()) {
    fail(ErrorNumber::NoSuchMember,
         std::string(info.name) + " has no member of number " + std::to_string(number) + ".");
  }
  return info.members[static_cast<size_t>(number)];
}

void give_text(tarn_value& out, const std::string& text) {
  out.type = TARN_TEXT;
  out.length = static_cast<int32_t>(text.size());
  out.as.text = text.c_str();
}

/// The C form of a value; texts stay valid while `text` does.
void give(const Value& value, tarn_value& out, std::string& text) {
  out.type = static_cast<int32_t>(value.index());
  out.length = 0;
  switch (type_of(value)) {
    case ValueType::Empty:
      out.as.r8 = 0;
      break;
    case ValueType::Boolean:
      out.as.boolean = std::get<bool>(value) ? 1 : 0;
      break;
    case ValueType::Int16:
      out.as.i2 = std::get<int16_t>(value);
      break;
    case ValueType::Int32:
      out.as.i4 = std::get<int32_t>(value);
      break;
    case ValueType::Real32:
      out.as.r4 = std::get<float>(value);
      break;
    case ValueType::Real64:
      out.as.r8 = std::get<double>(value);
      break;
    case ValueType::Text:
      text = std::get<std::string>(value);
      give_text(out, text);
      break;
    case ValueType::Object:
      out.as.object = nullptr;
      if (const auto& object = std::get<ObjectPtr>(value))
        out.as.object = new_handle(object);
      else
        out.type = TARN_EMPTY;
      break;
  }
}

Value taken(const tarn_value& in) {
  switch (in.type) {
    case TARN_EMPTY:
      return {};
    case TARN_BOOLEAN:
      return in.as.boolean != 0;
    case TARN_INT16:
      return in.as.i2;
    case TARN_INT32:
      return in.as.i4;
    case TARN_REAL32:
      return in.as.r4;
    case TARN_REAL64:
      return in.as.r8;
    case TARN_TEXT:
      if (!in.as.text || in.length < 0) bad_argument("A text without characters was given.");
      return std::string(in.as.text, static_cast<size_t>(in.length));
    case TARN_OBJECT: {
      if (!in.as.object) return ObjectPtr();
      HandleSlot* slot = slot_of(in.as.object);
      if (!slot) bad_argument("An object argument is not set, was released, or belongs to another thread.");
      return slot->object;
    }
    default:
      bad_argument("There is no value type " + std::to_string(in.type) + ".");
  }
}

std::vector<Value> taken_all(const tarn_value* values, int32_t count) {
  if (count < 0 || (count > 0 && !values)) bad_argument("Arguments are missing.");
  std::vector<Value> out;
  for (int32_t i = 0; i < count; ++i) out.push_back(taken(values[i]));
  return out;
}

Subscripts subscripts_of(const int32_t* subscripts, int32_t count) {
  if (count < 0 || (count > 0 && !subscripts)) bad_argument("Subscripts are missing.");
  return {subscripts, static_cast<size_t>(count)};
}

template <typename T>
T& required(T* out) {
  if (!out) bad_argument("There is no place for the result.");
  return *out;
}

const char* required_text(const char* text) {
  if (!text) bad_argument("A name is missing.");
  return text;
}

/// A plain field of the record, read in place; false for any other member, and for a call with subscripts.
inline bool get_directly(const HandleSlot& slot, uint32_t member, int32_t count, tarn_value* out) {
  if (member >= slot.member_count || count != 0 || !out) return false;
  const DirectField field = slot.fields[member];
  const auto* at = reinterpret_cast<const char*>(slot.fast) + field.offset;
  switch (field.type) {
    case TARN_BOOLEAN:
      out->as.boolean = static_cast<bool>(*reinterpret_cast<const Bool*>(at)) ? 1 : 0;
      break;
    case TARN_INT16:
      out->as.i2 = *reinterpret_cast<const I2*>(at);
      break;
    case TARN_INT32:
      out->as.i4 = *reinterpret_cast<const I4*>(at);
      break;
    case TARN_REAL32:
      out->as.r4 = *reinterpret_cast<const R4*>(at);
      break;
    case TARN_REAL64:
      out->as.r8 = *reinterpret_cast<const R8*>(at);
      break;
    default:
      return false;
  }
  out->type = field.type;
  out->length = 0;
  return true;
}

void get_into(HandleSlot& slot, const Member& member, const int32_t* subscripts, int32_t count, tarn_value* out) {
  Value value;
  get_property(*slot.fast, member, subscripts_of(subscripts, count), value);
  give(value, required(out), returned_text);
}

void call_into(HandleSlot& slot, const Member& member, tarn_value* arguments, int32_t count, tarn_value* result) {
  std::vector<Value> values = taken_all(arguments, count);
  const ObjectPtr kept_alive = slot.object;
  Value value;
  call_method(*kept_alive, member, values, value);
  kept_texts.clear();
  for (int32_t i = 0; i < count; ++i) {
    if (member.parameters[static_cast<size_t>(i)].in_out)
      give(values[static_cast<size_t>(i)], arguments[i], kept_texts.emplace_back());
  }
  if (result) give(value, *result, returned_text);
}

Database& database_of(HandleSlot& slot) {
  auto* database = dynamic_cast<Database*>(slot.fast);
  if (!database) bad_argument("The object is no database handle.");
  return *database;
}

std::vector<Cell> cells_of(const tarn_value* parameters, int32_t count) {
  std::vector<Cell> cells;
  for (const Value& value : taken_all(parameters, count)) cells.push_back(cell(value));
  return cells;
}

size_t element_bytes(ValueType type) {
  switch (type) {
    case ValueType::Boolean:
    case ValueType::Int16:
      return 2;
    case ValueType::Int32:
    case ValueType::Real32:
      return 4;
    case ValueType::Real64:
      return 8;
    default:
      return 0;
  }
}

/// Checks that a member's whole array lies in one piece of `bytes` bytes, and gives its place.
std::byte* block_of(HandleSlot& slot, const Member& member, size_t bytes) {
  const size_t size = member.elements() * element_bytes(member.type);
  if (!member.place || size == 0)
    fail(ErrorNumber::NoSuchMember, std::string(member.name) + " does not move as a block.");
  if (bytes != size) {
    bad_argument(std::string(member.name) + " is a block of " + std::to_string(size) + " bytes, not " +
                 std::to_string(bytes) + ".");
  }
  return member.place(*slot.fast);
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

}  // namespace

int32_t tarn_class_count(void) { return static_cast<int32_t>(class_list().size()); }

const char* tarn_class_name(int32_t number) {
  return number < 0 || number >= tarn_class_count() ? nullptr
                                                    : class_list()[static_cast<size_t>(number)].info().name.data();
}

int32_t tarn_member_count(const char* class_name) {
  int32_t count = -1;
  guarded(thread_error, [&] { count = static_cast<int32_t>(class_info(required_text(class_name)).members.size()); });
  return count;
}

tarn_status tarn_describe(const char* class_name, int32_t number, tarn_member* out) {
  return guarded(thread_error, [&] {
    const Member& m = member_at(class_info(required_text(class_name)), number);
    required(out) = {m.name.data(),
                     m.unit.data() ? m.unit.data() : "",
                     static_cast<int32_t>(m.kind),
                     static_cast<int32_t>(m.type),
                     m.read_only,
                     m.by_reference,
                     static_cast<int32_t>(m.bounds.size()),
                     static_cast<int32_t>(m.parameters.size()),
                     static_cast<int32_t>(m.width)};
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
    if (parameter < 0 || static_cast<size_t>(parameter) >= m.parameters.size())
      bad_argument("There is no such parameter.");
    const Parameter& p = m.parameters[static_cast<size_t>(parameter)];
    required(out) = {p.name.data(), static_cast<int32_t>(p.type), p.optional, p.by_reference, p.in_out};
  });
}

tarn_status tarn_create(const char* class_name, tarn_object** out) {
  return guarded(thread_error, [&] { required(out) = new_handle(create(required_text(class_name))); });
}

tarn_status tarn_release(tarn_object* object) {
  HandleSlot* slot = slot_of(object);
  if (!slot) return TARN_BAD_HANDLE;
  release_handle(*slot);
  return TARN_OK;
}

const char* tarn_class_of(tarn_object* object) {
  HandleSlot* slot = slot_of(object);
  return slot ? slot->info->name.data() : nullptr;
}

int32_t tarn_member_number(tarn_object* object, const char* name) {
  HandleSlot* slot = slot_of(object);
  return slot && name ? slot->info->number(name) : -1;
}

tarn_status tarn_get(tarn_object* object, int32_t member, const int32_t* subscripts, int32_t count, tarn_value* out) {
  HandleSlot* slot = slot_of(object);
  if (slot && get_directly(*slot, static_cast<uint32_t>(member), count, out)) return TARN_OK;
  return on_object(object,
                   [&](HandleSlot& found) { get_into(found, member_at(*found.info, member), subscripts, count, out); });
}

tarn_status tarn_let(tarn_object* object, int32_t member, const int32_t* subscripts, int32_t count,
                     const tarn_value* value) {
  return on_object(object, [&](HandleSlot& slot) {
    let_property(*slot.fast, member_at(*slot.info, member), subscripts_of(subscripts, count), taken(required(value)));
  });
}

tarn_status tarn_call(tarn_object* object, int32_t member, tarn_value* arguments, int32_t count, tarn_value* result) {
  return on_object(object,
                   [&](HandleSlot& slot) { call_into(slot, member_at(*slot.info, member), arguments, count, result); });
}

tarn_status tarn_get_by_name(tarn_object* object, const char* name, const int32_t* subscripts, int32_t count,
                             tarn_value* out) {
  HandleSlot* slot = slot_of(object);
  if (slot && name && get_directly(*slot, static_cast<uint32_t>(slot->info->number(name)), count, out)) return TARN_OK;
  return on_object(object, [&](HandleSlot& found) {
    get_into(found, found.info->find(required_text(name)), subscripts, count, out);
  });
}

tarn_status tarn_let_by_name(tarn_object* object, const char* name, const int32_t* subscripts, int32_t count,
                             const tarn_value* value) {
  return on_object(object, [&](HandleSlot& slot) {
    let_property(*slot.fast, slot.info->find(required_text(name)), subscripts_of(subscripts, count),
                 taken(required(value)));
  });
}

tarn_status tarn_call_by_name(tarn_object* object, const char* name, tarn_value* arguments, int32_t count,
                              tarn_value* result) {
  return on_object(object, [&](HandleSlot& slot) {
    call_into(slot, slot.info->find(required_text(name)), arguments, count, result);
  });
}

tarn_status tarn_get_block(tarn_object* object, int32_t member, void* data, size_t bytes) {
  return on_object(object, [&](HandleSlot& slot) {
    const std::byte* from = block_of(slot, member_at(*slot.info, member), bytes);
    std::memcpy(&required(static_cast<char*>(data)), from, bytes);
  });
}

tarn_status tarn_let_block(tarn_object* object, int32_t member, const void* data, size_t bytes) {
  return on_object(object, [&](HandleSlot& slot) {
    const Member& to_set = member_at(*slot.info, member);
    if (to_set.read_only) fail(ErrorNumber::NoSuchMember, std::string(to_set.name) + " is read-only.");
    std::byte* to = block_of(slot, to_set, bytes);
    std::memcpy(to, &required(static_cast<const char*>(data)), bytes);
  });
}

tarn_status tarn_listen(tarn_object* object, int32_t event, tarn_listener listener, void* context) {
  return on_object(object, [&](HandleSlot& slot) {
    Listener forward;
    if (listener)
      forward = [listener, context](Arguments arguments) {
        std::list<std::string> texts;
        std::vector<tarn_value> values(arguments.size());
        for (size_t i = 0; i < values.size(); ++i) give(arguments[i], values[i], texts.emplace_back());
        if (listener(context, values.data(), static_cast<int32_t>(values.size())) != 0) {
          fail(ErrorNumber::InvalidCall, "The listener of an event failed.");
        }
        for (size_t i = 0; i < values.size(); ++i) arguments[i] = taken(values[i]);
      };
    listen(*slot.fast, member_at(*slot.info, event), std::move(forward));
  });
}

int32_t tarn_last_error(tarn_object* object, const char** source, const char** description) {
  HandleSlot* slot = slot_of(object);
  const LastError& error = slot ? slot->error : thread_error;
  if (source) *source = error.source.c_str();
  if (description) *description = error.description.c_str();
  return error.number;
}

void tarn_set_log(tarn_log log, void* context) {
  callback_log.callback = log;
  callback_log.context = context;
  set_log(log ? &callback_log : nullptr);
}

tarn_status tarn_create_index(const char* path) {
  return guarded(thread_error, [&] { create_index(required_text(path)); });
}

tarn_status tarn_open_database(const char* path, tarn_object** out) {
  return guarded(thread_error, [&] { required(out) = new_handle(host().database(required_text(path))); });
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

tarn_status tarn_begin(void) {
  return guarded(thread_error, [] { Engine::of_thread().Workspaces(0).BeginTrans(); });
}

tarn_status tarn_commit(void) {
  return guarded(thread_error, [] { Engine::of_thread().Workspaces(0).CommitTrans(); });
}

tarn_status tarn_rollback(void) {
  return guarded(thread_error, [] { Engine::of_thread().Workspaces(0).Rollback(); });
}
