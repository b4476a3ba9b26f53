// The C interface to records as they lie in record files: the kinds that have them, their fields, and many at once.

#include <algorithm>
#include <map>

#include "base/nearest.h"
#include "c/entity_kinds.h"
#include "platform/file_store.h"
#include "storage/kind.h"
#include "tarn/reflect/by_name.h"

using namespace tarn;

namespace {

/// A stored field, and where it lies in its kind's record.
struct FieldAt {
  const ClassInfo* info;  // of the entity or part that has it
  const Member* member;
  std::string part;  // "Layer(2).", empty for the entity's own
  size_t offset;
};

/// What a kind's entities have on disk, found on one of them.
struct Layout {
  std::string index_table;
  size_t record_size = 0;  // 0 where each has a file of its own
  std::vector<FieldAt> fields;
};

Ptr<StoredEntity> sample_of(const EntityKind& kind) {
  auto entity = std::static_pointer_cast<StoredEntity>(kind.create());
  if (kind.letter == 0)
    let_property(*entity, "FileName", std::string(kind.file.suffix));  // which tells walls from roofs
  if (kind.prepare) kind.prepare(*entity);
  return entity;
}

Layout layout_of(StoredEntity& entity) {
  Layout layout{std::string(entity.kind().index_table), 0, {}};
  if (entity.file().one_for_each()) return layout;
  const Blocks blocks = entity.file().blocks();
  for_each_field(entity, [&](Object& owner, const Member& member, const std::string& part) {
    if (member.reserved) return;
    const std::byte* place = member.field()->place(owner);
    size_t before = 0;
    for (const auto& block : blocks) {
      if (place >= block.data() && place < block.data() + block.size())
        layout.fields.push_back({&owner.info(), &member, part, before + static_cast<size_t>(place - block.data())});
      before += block.size();
    }
  });
  layout.record_size = size_of(blocks);
  return layout;
}

const Layout& layout_of(const EntityKind& kind) {
  thread_local std::map<std::string_view, Layout> layouts;
  auto [found, fresh] = layouts.try_emplace(kind.group);
  if (fresh) found->second = layout_of(*sample_of(kind));
  return found->second;
}

[[noreturn]] void cut_short(const std::string& path, uint64_t record, size_t bytes, size_t size) {
  fail(ErrorNumber::UnknownFormat, path + ", record " + std::to_string(record) +
                                       " is cut short: " + std::to_string(bytes) + " of " + std::to_string(size) +
                                       " bytes. Restore the file from a copy, or repair the project.");
}

}  // namespace

const EntityKind& tarn::kind_named(const char* group) {
  const std::string_view name = required_text(group);
  std::vector<std::string_view> names;
  for (const EntityKind& kind : entity_kinds()) {
    if (kind.group == name) return kind;
    names.push_back(kind.group);
  }
  bad_argument("There is no kind of entity " + std::string(name) + "; " + did_you_mean(name, names));
}

int32_t tarn_entity_kind_count(void) { return static_cast<int32_t>(entity_kinds().size()); }

tarn_status tarn_describe_entity_kind(int32_t number, tarn_entity_kind* out) {
  return guarded(thread_error, [&] {
    if (number < 0 || number >= tarn_entity_kind_count()) bad_argument("There is no kind of that number.");
    const EntityKind& kind = entity_kinds()[static_cast<size_t>(number)];
    const Layout& layout = layout_of(kind);
    required(out) = {kind.group.data(),
                     kind.one.data(),
                     kind.class_name.data(),
                     kind.factory.data(),
                     layout.index_table.c_str(),
                     static_cast<int32_t>(layout.record_size),
                     static_cast<int32_t>(layout.fields.size())};
  });
}

tarn_status tarn_describe_record_field(const char* group, int32_t number, tarn_record_field* out) {
  return guarded(thread_error, [&] {
    const Layout& layout = layout_of(kind_named(group));
    if (number < 0 || static_cast<size_t>(number) >= layout.fields.size())
      bad_argument("The records of " + std::string(group) + " have " + std::to_string(layout.fields.size()) +
                   " fields.");
    const FieldAt& at = layout.fields[static_cast<size_t>(number)];
    const auto size = static_cast<int32_t>(at.member->field()->size);
    const std::string_view unit = at.member->stored_unit.empty() ? at.member->unit : at.member->stored_unit;
    required(out) = {at.info->name.data(),
                     at.part.c_str(),
                     static_cast<int32_t>(at.member - at.info->members.data()),
                     static_cast<int32_t>(at.offset),
                     size,
                     static_cast<int32_t>(value_type(at.member->field()->wire)),
                     size / static_cast<int32_t>(at.member->elements()),
                     unit.data() ? unit.data() : ""};
  });
}

tarn_status tarn_read_records(tarn_object* project, const char* group, int32_t first, int32_t count, void* data,
                              size_t bytes, int32_t* read) {
  return on_object(project, [&](HandleSlot& slot) {
    const EntityKind& kind = kind_named(group);
    const size_t size = layout_of(kind).record_size;
    if (size == 0)
      fail(ErrorNumber::InvalidCall, "Each of the " + std::string(kind.group) + " has a file of its own; load them.");
    if (first < 0 || count < 0 || bytes != static_cast<size_t>(count) * size || (bytes > 0 && !data))
      bad_argument(std::to_string(count) + " records of " + std::to_string(size) + " bytes from record " +
                   std::to_string(first) + " on do not fit into " + std::to_string(bytes) + " bytes.");
    int32_t& out = required(read);
    const std::string path = make_entity(object_as<COM_ProjectData>(slot, "project"), kind)->file().default_path();
    if (!files().exists(path))
      fail(ErrorNumber::FileNotFound, path + " is not there; the project has no " + std::string(kind.group) + " yet.");
    const std::span<std::byte> into(static_cast<std::byte*>(data), bytes);
    const size_t got = files().read(path, static_cast<uint64_t>(first) * size, into);
    if (got % size != 0) cut_short(path, static_cast<uint64_t>(first) + got / size, got % size, size);
    out = static_cast<int32_t>(got / size);
  });
}
