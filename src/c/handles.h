// Handles of the C interface: numbers in the form of pointers, never followed as pointers, so that a bad one does no
// harm.
#pragma once

#include <cstdint>
#include <string>

#include "reflect/allowed.h"
#include "tarn/base/error.h"
#include "tarn/base/object.h"
#include "tarn/reflect/field.h"
#include "tarn/tarn.h"

namespace tarn {

struct LastError {
  int32_t number = 0;
  std::string source, description;
};

/// A plain number or Boolean of the record, read and set in place; a member that is something else has the wire type of
/// texts.
struct DirectField {
  Wire wire = Wire::Text;
  bool settable = false;
  int32_t offset = 0;  // from the object
  SureNumbers sure;    // of any property
};

/// What a live handle stands for.
struct HandleSlot {
  Object* fast = nullptr;
  const DirectField* fields = nullptr;  // of every member, by number
  uint32_t member_count = 0;
  uint32_t number = 0;
  uint32_t generation = 1;
  const ClassInfo* info = nullptr;
  ObjectPtr object;
  LastError error;
};

/// A new handle, which keeps the object alive until it is released.
tarn_object* new_handle(ObjectPtr object);
void release_handle(HandleSlot& slot);
/// The thread's handles are gone already: a static object's destructor is calling.
bool thread_ended();

namespace detail {

// A handle holds slot number + 1 (20 bits), the slot's generation (28 bits) and the thread's number (16 bits).
// Slots never move: they lie in pages.
constexpr unsigned kSlotBits = 20;
constexpr unsigned kGenerationBits = 28;
constexpr unsigned kPageBits = 10;
constexpr uint64_t kSlotMask = (uint64_t{1} << kSlotBits) - 1;
constexpr uint64_t kGenerationMask = (uint64_t{1} << kGenerationBits) - 1;

/// Plain data, so that reaching it costs one load; empty before the thread's first handle and after its last.
struct ThreadSlots {
  HandleSlot** pages;
  uint64_t count;
  uint64_t thread;
};
extern thread_local constinit ThreadSlots thread_slots;

}  // namespace detail

/// Null for a handle that this thread did not give out, or that was released.
inline HandleSlot* slot_of(tarn_object* handle) {
  using namespace detail;
  const auto bits = reinterpret_cast<uint64_t>(handle);
  const ThreadSlots& slots = thread_slots;
  const uint64_t number = (bits & kSlotMask) - 1;
  if (number >= slots.count) return nullptr;
  HandleSlot& slot = slots.pages[number >> kPageBits][number & ((1U << kPageBits) - 1)];
  const bool live = bits >> kSlotBits == (slots.thread << kGenerationBits | slot.generation);
  return live && slot.fast ? &slot : nullptr;
}

}  // namespace tarn
