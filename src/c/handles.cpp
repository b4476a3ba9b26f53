#include "c/handles.h"

#include <atomic>
#include <memory>
#include <unordered_map>
#include <vector>

#include "tarn/reflect/members.h"

namespace tarn {

namespace detail {
thread_local constinit ThreadSlots thread_slots{};
}

namespace {

using namespace detail;

std::atomic<uint64_t> threads{0};
thread_local constinit bool ended = false;  // outlives the table, having no destructor

/// Owner of what `thread_slots` shows.
struct Table {
  Table() { thread_slots.thread = ++threads & 0xFFFF; }
  ~Table() {
    thread_slots = {};
    ended = true;
  }
  std::vector<std::unique_ptr<HandleSlot[]>> pages;
  std::vector<HandleSlot*> page_list;
  std::vector<uint32_t> free;
  std::unordered_map<const ClassInfo*, std::vector<DirectField>> fields;
};

Table& table() {
  static thread_local Table handles;
  return handles;
}

HandleSlot& slot_at(uint64_t number) {
  return thread_slots.pages[number >> kPageBits][number & ((1U << kPageBits) - 1)];
}

void add_slot(Table& t) {
  const uint64_t number = thread_slots.count;
  if (number >= kSlotMask) fail(ErrorNumber::CannotCreateObject, "Too many objects are held; release some.");
  if (number >> kPageBits == t.pages.size()) {
    t.pages.push_back(std::make_unique<HandleSlot[]>(size_t{1} << kPageBits));
    t.page_list.push_back(t.pages.back().get());
    thread_slots.pages = t.page_list.data();
  }
  thread_slots.count = number + 1;
  slot_at(number).number = static_cast<uint32_t>(number);
  t.free.push_back(static_cast<uint32_t>(number));
}

bool is_direct(const Member& member) { return member.in_place() && !member.field()->by_rule && !member.indexed(); }

/// Where the plain fields of a class lie, found on the first of its objects.
const std::vector<DirectField>& direct_fields(Table& t, Object& object) {
  auto [found, fresh] = t.fields.try_emplace(&object.info());
  if (!fresh) return found->second;
  for (const Member& member : object.info().members) {
    DirectField& field = found->second.emplace_back();
    field.sure = sure_numbers(object, member);
    if (!is_direct(member)) continue;
    field.wire = member.field()->wire;
    field.settable = !member.read_only;
    field.offset = static_cast<int32_t>(member.place(object) - reinterpret_cast<std::byte*>(&object));
  }
  return found->second;
}

}  // namespace

bool thread_ended() { return ended; }

tarn_object* new_handle(ObjectPtr object) {
  Table& t = table();
  if (t.free.empty()) add_slot(t);
  HandleSlot& slot = slot_at(t.free.back());
  const auto& fields = direct_fields(t, *object);
  t.free.pop_back();
  slot.fast = object.get();
  slot.info = &object->info();
  slot.fields = fields.data();
  slot.member_count = static_cast<uint32_t>(fields.size());
  slot.object = std::move(object);
  slot.error = {};
  const uint64_t owner = thread_slots.thread << kGenerationBits | slot.generation;
  return reinterpret_cast<tarn_object*>(owner << kSlotBits | (slot.number + 1));
}

void release_handle(HandleSlot& slot) {
  const ObjectPtr last = std::move(slot.object);
  slot.fast = nullptr;
  slot.member_count = 0;
  slot.generation = static_cast<uint32_t>((slot.generation + 1) & kGenerationMask);
  table().free.push_back(slot.number);
}

}  // namespace tarn
