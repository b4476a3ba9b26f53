// What the entry points of the C interface share: catching every exception, and the conversion of values.
#pragma once

#include <exception>
#include <string>
#include <vector>

#include "c/handles.h"
#include "tarn/reflect/members.h"
#include "tarn/tarn.h"

namespace tarn {

/// The error of the thread's last failed call.
extern thread_local LastError thread_error;

/// Keeps an error for `tarn_last_error`, and returns its status.
tarn_status remember(LastError& place, int32_t number, const std::string& source, const std::string& description);

/// Every entry point runs inside this: no exception reaches the C caller.
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
  const ObjectPtr held = slot->object;  // what is called back may release the handle
  return guarded(slot->error, [&] { action(*slot); });
}

[[noreturn]] void bad_argument(const std::string& description);

const Member& member_at(const ClassInfo& info, int32_t number);

// The C form of a number.
inline void give(bool truth, tarn_value& out) {
  out.type = TARN_BOOLEAN;
  out.as.boolean = truth ? 1 : 0;
}
inline void give(int16_t number, tarn_value& out) {
  out.type = TARN_INT16;
  out.as.i2 = number;
}
inline void give(int32_t number, tarn_value& out) {
  out.type = TARN_INT32;
  out.as.i4 = number;
}
inline void give(float number, tarn_value& out) {
  out.type = TARN_REAL32;
  out.as.r4 = number;
}
inline void give(double number, tarn_value& out) {
  out.type = TARN_REAL64;
  out.as.r8 = number;
}
/// The C form of a value; its text or reals stay valid while `text` does.
void give(const Value& value, tarn_value& out, std::string& text);
Value taken(const tarn_value& in);
std::vector<Value> taken_all(const tarn_value* values, int32_t count);

template <typename T>
T& required(T* out) {
  if (!out) bad_argument("There is no place for the result.");
  return *out;
}

const char* required_text(const char* text);

}  // namespace tarn
