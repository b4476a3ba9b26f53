#include "c/c_support.h"

#include "tarn/base/value.h"

namespace tarn {

thread_local LastError thread_error;

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

void bad_argument(const std::string& description) { fail(ErrorNumber::WrongArgumentCount, description); }

const Member& member_at(const ClassInfo& info, int32_t number) {
  if (number < 0 || static_cast<size_t>(number) >= info.members.size()) {
    fail(ErrorNumber::NoSuchMember,
         std::string(info.name) + " has no member of number " + std::to_string(number) + ".");
  }
  return info.members[static_cast<size_t>(number)];
}

namespace {

void give_text(tarn_value& out, const std::string& text) {
  out.type = TARN_TEXT;
  out.length = static_cast<int32_t>(text.size());
  out.as.text = text.c_str();
}

/// A text's memory is used for reals too: it is aligned for them.
void give_reals(tarn_value& out, const std::vector<double>& reals, std::string& place) {
  place.assign(reinterpret_cast<const char*>(reals.data()), reals.size() * sizeof(double));
  out.type = TARN_REALS;
  out.length = static_cast<int32_t>(reals.size());
  out.as.reals = reinterpret_cast<const double*>(place.data());
}

}  // namespace

void give(const Value& value, tarn_value& out, std::string& text) {
  out.type = static_cast<int32_t>(value.index());
  out.length = 0;
  switch (type_of(value)) {
    case ValueType::Empty:
    case ValueType::Any:
      out.as.r8 = 0;
      break;
    case ValueType::Boolean:
      return give(std::get<bool>(value), out);
    case ValueType::Int16:
      return give(std::get<int16_t>(value), out);
    case ValueType::Int32:
      return give(std::get<int32_t>(value), out);
    case ValueType::Real32:
      return give(std::get<float>(value), out);
    case ValueType::Real64:
      return give(std::get<double>(value), out);
    case ValueType::Text:
      text = std::get<std::string>(value);
      give_text(out, text);
      break;
    case ValueType::Reals:
      give_reals(out, std::get<std::vector<double>>(value), text);
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
    case TARN_REALS:
      if (in.length < 0 || (in.length > 0 && !in.as.reals)) bad_argument("A list of reals without reals was given.");
      return std::vector<double>(in.as.reals, in.as.reals + in.length);
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

const char* required_text(const char* text) {
  if (!text) bad_argument("A name is missing.");
  return text;
}

}  // namespace tarn
