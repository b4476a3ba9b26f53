// The C interface to objects and their members, over the members tables. No class is known here.

#include <cfloat>
#include <cmath>
#include <cstring>
#include <list>

#include "c/c_support.h"
#include "reflect/allowed.h"
#include "tarn/base/value.h"
#include "tarn/class_list.h"
#include "tarn/reflect/by_name.h"

using namespace tarn;

namespace {

thread_local std::string returned_text;          // of the last get or result
thread_local std::list<std::string> kept_texts;  // of in/out arguments

Subscripts subscripts_of(const int32_t* subscripts, int32_t count) {
  if (count < 0 || (count > 0 && !subscripts)) bad_argument("Subscripts are missing.");
  return {subscripts, static_cast<size_t>(count)};
}

/// A plain field of the record, read in place; false for any other member, and for a call with subscripts.
inline bool get_directly(const HandleSlot& slot, uint32_t member, int32_t count, tarn_value* out) {
  if (member >= slot.member_count || count != 0 || !out) return false;
  const DirectField field = slot.fields[member];
  const auto* at = reinterpret_cast<const std::byte*>(slot.fast) + field.offset;
  out->length = 0;
  return with_number(field.wire, at, [out](auto number) { give(number, *out); });
}

int16_t truth_bits(bool truth) { return static_cast<int16_t>(truth ? -1 : 0); }

/// A number or Boolean that fits into a plain field of the record as it is; false for any other, which goes the long
/// way.
inline bool let_directly(const HandleSlot& slot, uint32_t member, int32_t count, const tarn_value* value) {
  if (member >= slot.member_count || count != 0 || !value || !slot.fields[member].settable) return false;
  const DirectField field = slot.fields[member];
  auto* at = reinterpret_cast<std::byte*>(slot.fast) + field.offset;
  const auto store = [at](auto number) {
    std::memcpy(at, &number, sizeof number);
    return true;
  };
  if (value->type == TARN_REAL64 && std::abs(value->as.r8) <= double{FLT_MAX}) {
    if (field.wire == Wire::Real32) return store(static_cast<float>(value->as.r8));
    return field.wire == Wire::Real64 && store(value->as.r8);
  }
  if (value->type == TARN_INT32) {
    const bool is_short = field.wire == Wire::Int16 || field.wire == Wire::Code;
    if (is_short && value->as.i4 == static_cast<int16_t>(value->as.i4))
      return store(static_cast<int16_t>(value->as.i4));
    if (field.wire == Wire::Real32) return store(static_cast<float>(value->as.i4));
    if (field.wire == Wire::Real64) return store(static_cast<double>(value->as.i4));
    return field.wire == Wire::Int32 && store(value->as.i4);
  }
  return value->type == TARN_BOOLEAN && field.wire == Wire::Boolean && store(truth_bits(value->as.boolean != 0));
}

/// What no rule refuses; the rest is asked for the long way.
inline bool surely_allowed(const HandleSlot& slot, uint32_t member, const tarn_value* value) {
  if (member >= slot.member_count || !value) return false;
  const SureNumbers& sure = slot.fields[member].sure;
  if (value->type == TARN_INT32) return sure.has(value->as.i4);
  return value->type == TARN_BOOLEAN || (value->type == TARN_REAL64 && sure.has(value->as.r8));
}

void get_into(HandleSlot& slot, const Member& member, const int32_t* subscripts, int32_t count, tarn_value* out) {
  Value value;
  get_property(*slot.fast, member, subscripts_of(subscripts, count), value);
  give(value, required(out), returned_text);
}

void call_into(HandleSlot& slot, const Member& member, tarn_value* arguments, int32_t count, tarn_value* result) {
  std::vector<Value> values = taken_all(arguments, count);
  Value value;
  call_method(*slot.fast, member, values, value);
  kept_texts.clear();
  for (int32_t i = 0; i < count; ++i) {
    if (member.parameters()[static_cast<size_t>(i)].in_out)
      give(values[static_cast<size_t>(i)], arguments[i], kept_texts.emplace_back());
  }
  if (result) give(value, *result, returned_text);
}

/// All elements of an array as one block of memory, even where they do not lie side by side in the record.
class Block {
 public:
  Block(HandleSlot& slot, const Member& member, size_t bytes)
      : object_(*slot.fast), member_(member), width_(block_width(member.type)) {
    const size_t size = member.elements() * width_;
    if (size == 0 || !(member.in_place() || member.indexed()))
      fail(ErrorNumber::NoSuchMember,
           std::string(member.name) + " cannot be read or set as a block; only arrays of numbers and Booleans can.");
    if (bytes == size) return;
    bad_argument(std::string(member.name) + " is a block of " + std::to_string(size) + " bytes, not " +
                 std::to_string(bytes) + ".");
  }

  void get(char* data) const {
    if (moves_whole()) {
      std::memcpy(data, place(&Member::get_label), member_.elements() * width_);
      return;
    }
    Value value;
    for_each_element(member_, [&](Subscripts at) {
      get_property(object_, member_, at, value);
      std::visit([&](const auto& v) { store(v, data); }, value);
      data += width_;
    });
  }

  /// Error for a value that the property cannot have.
  void check_values(const char* data) const {
    for_each_element(member_, [&](Subscripts at) {
      check_let(object_, member_, at, value_at(data), Given::WithRecord);
      data += width_;
    });
  }

  /// All elements, or none where one is refused.
  void let(const char* data) {
    if (member_.read_only) fail(ErrorNumber::NoSuchMember, std::string(member_.name) + " is read-only.");
    if (moves_whole()) {
      std::memcpy(place(&Member::let_label), data, member_.elements() * width_);
      return;
    }
    std::vector<char> before(member_.elements() * width_);
    get(before.data());
    try {
      let_elements(data);
    } catch (...) {
      let_elements(before.data());
      throw;
    }
  }

 private:
  /// A scaled number's steps are not its value.
  bool moves_whole() const { return member_.in_place() && member_.field()->wire != Wire::Scaled; }
  std::byte* place(std::string (Member::*label)() const) const {
    try {
      return member_.place(object_);
    } catch (Error& error) {
      if (error.source().empty()) error.set_source(source_of(object_.info(), (member_.*label)()));
      throw;
    }
  }
  template <typename V>
  void store(const V& value, char* to) const {
    if constexpr (std::is_same_v<V, bool>) {
      const int16_t truth = truth_bits(value);
      std::memcpy(to, &truth, width_);
    } else if constexpr (std::is_arithmetic_v<V>) {
      std::memcpy(to, &value, width_);
    }
  }
  template <typename N>
  static N number_at(const char* from) {
    N number{};
    std::memcpy(&number, from, sizeof number);
    return number;
  }
  Value value_at(const char* from) const {
    switch (member_.type) {
      case ValueType::Int16:
        return number_at<int16_t>(from);
      case ValueType::Int32:
        return number_at<int32_t>(from);
      case ValueType::Real32:
        return number_at<float>(from);
      case ValueType::Real64:
        return number_at<double>(from);
      default:
        return number_at<int16_t>(from) != 0;
    }
  }
  void let_elements(const char* data) {
    for_each_element(member_, [&](Subscripts at) {
      let_property(object_, member_, at, value_at(data));
      data += width_;
    });
  }

  Object& object_;
  const Member& member_;
  size_t width_;
};

}  // namespace

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
  HandleSlot* plain = slot_of(object);
  if (plain && let_directly(*plain, static_cast<uint32_t>(member), count, value)) return TARN_OK;
  return on_object(object, [&](HandleSlot& slot) {
    let_property(*slot.fast, member_at(*slot.info, member), subscripts_of(subscripts, count), taken(required(value)));
  });
}

tarn_status tarn_let_allowed(tarn_object* object, int32_t member, const int32_t* subscripts, int32_t count,
                             const tarn_value* value) {
  const HandleSlot* plain = slot_of(object);
  if (plain && surely_allowed(*plain, static_cast<uint32_t>(member), value))
    return tarn_let(object, member, subscripts, count, value);
  return on_object(object, [&](HandleSlot& slot) {
    let_allowed(*slot.fast, member_at(*slot.info, member), subscripts_of(subscripts, count), taken(required(value)));
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
    Block(slot, member_at(*slot.info, member), bytes).get(&required(static_cast<char*>(data)));
  });
}

tarn_status tarn_let_block(tarn_object* object, int32_t member, const void* data, size_t bytes) {
  return on_object(object, [&](HandleSlot& slot) {
    Block(slot, member_at(*slot.info, member), bytes).let(&required(static_cast<const char*>(data)));
  });
}

tarn_status tarn_let_block_allowed(tarn_object* object, int32_t member, const void* data, size_t bytes) {
  return on_object(object, [&](HandleSlot& slot) {
    Block block(slot, member_at(*slot.info, member), bytes);
    const char* values = &required(static_cast<const char*>(data));
    block.check_values(values);
    block.let(values);
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
