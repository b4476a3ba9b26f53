// Handles of the C interface: numbers dressed as pointers, so that no call can be led astray by a bad one.
#pragma once

#include <cstdint>
#include <string>

#include "base/error.h"
#include "base/object.h"
#include "component/tarn.h"

namespace tarn {

struct LastError {
  int32_t number = 0;
  std::string source, description;
};

/// What a live handle stands for.
struct HandleSlot {
  ObjectPtr object;
  Object* fast = nullptr;
  const ClassInfo* info = nullptr;
  uint32_t number = 0;
  uint32_t generation = 1;
  LastError error;
};

/// A new handle, which keeps the object alive until it is released.
tarn_object* new_handle(ObjectPtr object);
/// Null for a handle that this thread did not give out, or that was released.
HandleSlot* slot_of(tarn_object* handle);
void release_handle(HandleSlot& slot);
/// The thread's handles are gone already: a static object's destructor is calling.
bool thread_ended();

}  // namespace tarn
