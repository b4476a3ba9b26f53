#include "component/handles.h"

#include <atomic>
#include <deque>
#include <vector>

namespace tarn {
namespace {

// A handle holds slot number + 1 (20 bits), the slot's generation (28 bits) and the thread's number (16 bits).
constexpr unsigned kSlotBits = 20;
constexpr unsigned kGenerationBits = 28;
constexpr uint64_t kSlotMask = (uint64_t{1} << kSlotBits) - 1;
constexpr uint64_t kGenerationMask = (uint64_t{1} << kGenerationBits) - 1;

std::atomic<uint64_t> threads{0};
thread_local bool ended = false;  // outlives the table, having no destructor

struct Table {
  std::deque<HandleSlot> slots;
  std::vector<uint32_t> free;
  uint64_t thread = ++threads & 0xFFFF;
  ~Table() { ended = true; }
};

Table& table() {
  static thread_local Table handles;
  return handles;
}

}  // namespace

tarn_object* new_handle(ObjectPtr object) {
  Table& t = table();
  if (t.free.empty()) {
    if (t.slots.size() >= kSlotMask) fail(ErrorNumber::CannotCreateObject, "Too many objects are held; release some.");
    t.free.push_back(static_cast<uint32_t>(t.slots.size()));
    t.slots.emplace_back().number = t.free.back();
  }
  const uint32_t number = t.free.back();
  t.free.pop_back();
  HandleSlot& slot = t.slots[number];
  slot.fast = object.get();
  slot.info = &object->info();
  slot.object = std::move(object);
  slot.error = {};
  const uint64_t bits =
      t.thread << (kSlotBits + kGenerationBits) | uint64_t{slot.generation} << kSlotBits | (number + 1);
  return reinterpret_cast<tarn_object*>(bits);
}

bool thread_ended() { return ended; }

HandleSlot* slot_of(tarn_object* handle) {
  if (ended) return nullptr;
  const auto bits = reinterpret_cast<uint64_t>(handle);
  Table& t = table();
  const uint64_t number = bits & kSlotMask;
  if (number == 0 || number > t.slots.size() || bits >> (kSlotBits + kGenerationBits) != t.thread) return nullptr;
  HandleSlot& slot = t.slots[number - 1];
  return slot.fast && slot.generation == (bits >> kSlotBits & kGenerationMask) ? &slot : nullptr;
}

void release_handle(HandleSlot& slot) {
  Table& t = table();
  const ObjectPtr last = std::move(slot.object);
  slot.fast = nullptr;
  slot.generation = static_cast<uint32_t>((slot.generation + 1) & kGenerationMask);
  t.free.push_back(slot.number);
}

}  // namespace tarn
