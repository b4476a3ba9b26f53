#include "tarn/reflect/by_name.h"

#include "tarn/base/log.h"

namespace tarn {
namespace {

void check_call(const ClassInfo& info, const Member& member, MemberKind kind, size_t subscripts) {
  const std::string name = std::string(info.name) + "." + std::string(member.name);
  if (member.kind != kind) {
    constexpr std::string_view kinds[]{"property", "method", "event"};
    fail(ErrorNumber::NoSuchMember, name + " is a " + std::string(kinds[static_cast<size_t>(member.kind)]) +
                                        ", not a " + std::string(kinds[static_cast<size_t>(kind)]) + ".");
  }
  if (kind == MemberKind::Property && subscripts != member.bounds.size()) {
    fail(ErrorNumber::WrongArgumentCount, name + " takes " + std::to_string(member.bounds.size()) +
                                              " subscripts, not " + std::to_string(subscripts) + ".");
  }
}

}  // namespace

void settle(const ClassInfo& info, std::string_view label) {
  if (info.failures == Failures::Raised) raise_current_exception(info.name, label);
  trap_current_exception(info.name, label);
}

std::string source_of(const ClassInfo& info, std::string_view label) {
  return std::string(info.name) + "." + std::string(label);
}

Value empty_value(ValueType type) {
  switch (type) {
    case ValueType::Boolean:
      return false;
    case ValueType::Int16:
      return int16_t{0};
    case ValueType::Int32:
      return int32_t{0};
    case ValueType::Real32:
      return 0.0F;
    case ValueType::Real64:
      return 0.0;
    case ValueType::Text:
      return std::string();
    case ValueType::Reals:
      return std::vector<double>();
    default:
      return std::monostate();
  }
}

void get_property(Object& object, const Member& member, Subscripts subscripts, Value& out) {
  if (member.kind != MemberKind::Property || subscripts.size() != member.bounds.size()) {
    check_call(object.info(), member, MemberKind::Property, subscripts.size());
  }
  try {
    member.get(object, subscripts, out);
  } catch (const std::exception&) {
    settle(object.info(), member.get_label());
    out = empty_value(member.type);
  }
}

void let_property(Object& object, const Member& member, Subscripts subscripts, const Value& value) {
  check_call(object.info(), member, MemberKind::Property, subscripts.size());
  if (member.read_only) {
    fail(ErrorNumber::NoSuchMember,
         std::string(object.info().name) + "." + std::string(member.name) + " is read-only.");
  }
  try {
    member.let(object, subscripts, value);
  } catch (const std::exception&) {
    settle(object.info(), member.let_label());
  }
}

void call_method(Object& object, const Member& member, std::vector<Value>& arguments, Value& result) {
  const ClassInfo& info = object.info();
  check_call(info, member, MemberKind::Method, 0);
  const std::span<const Parameter> parameters = member.parameters();
  if (arguments.size() > parameters.size()) {
    fail(ErrorNumber::WrongArgumentCount, std::string(info.name) + "." + std::string(member.name) + " takes at most " +
                                              std::to_string(parameters.size()) + " arguments.");
  }
  arguments.resize(parameters.size());
  for (size_t i = 0; i < arguments.size(); ++i) {
    const bool missing = std::holds_alternative<std::monostate>(arguments[i]);
    if (missing && !parameters[i].optional && parameters[i].type != ValueType::Object) {
      fail(ErrorNumber::WrongArgumentCount, std::string(info.name) + "." + std::string(member.name) +
                                                " needs its argument " + std::string(parameters[i].name) + ".");
    }
  }
  result = empty_value(member.type);
  try {
    member.call(object, arguments, result);
  } catch (const std::exception&) {
    settle(info, member.call_label());
  }
}

void listen(Object& object, const Member& member, Listener listener) {
  check_call(object.info(), member, MemberKind::Event, 0);
  member.listen(object, std::move(listener));
}

Value get_property(Object& object, std::string_view name, Subscripts subscripts) {
  Value value;
  get_property(object, object.info().find(name), subscripts, value);
  return value;
}

void let_property(Object& object, std::string_view name, const Value& value, Subscripts subscripts) {
  let_property(object, object.info().find(name), subscripts, value);
}

}  // namespace tarn
