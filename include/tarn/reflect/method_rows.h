// Rows of methods, of parts that an object owns or hands out, and of events.
#pragma once

#include "tarn/base/value.h"
#include "tarn/reflect/rows.h"

namespace tarn::detail {

template <typename A, typename T>
void bring_back(const T& from, Value& to) {
  if constexpr (std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>>) {
    if constexpr (is_optional<T>::value) {
      if (from) put(to, *from);
    } else {
      put(to, from);
    }
  }
}

/// One for each signature. What goes both ways comes back from a failed call too.
template <typename O, typename R, typename... A, typename M>
void invoke(O& object, M method, std::type_identity<R>, std::type_identity<std::tuple<A...>>, Arguments arguments,
            Value& result) {
  [&]<size_t... I>(std::index_sequence<I...>) {
    std::tuple<std::remove_cvref_t<A>...> natives{native<std::remove_cvref_t<A>>(arguments[I])...};
    const auto all_back = [&] { (bring_back<A>(std::get<I>(natives), arguments[I]), ...); };
    try {
      if constexpr (std::is_void_v<R>)
        (object.*method)(std::get<I>(natives)...);
      else
        put(result, (object.*method)(std::get<I>(natives)...));
    } catch (...) {
      all_back();
      throw;
    }
    all_back();
  }
  (std::index_sequence_for<A...>());
}
template <auto P>
void call_member(Object& o, size_t /*number*/, Arguments arguments, Value& result) {
  using S = SignatureOf<P>;
  invoke(o, of_object<P>(), std::type_identity<typename S::Result>(), std::type_identity<typename S::List>(), arguments,
         result);
}

template <typename A>
constexpr Parameter parameter() {
  using N = std::remove_cvref_t<A>;
  constexpr bool in_out = std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>>;
  return {{}, value_type<N>(), is_optional<N>::value, in_out, in_out};
}

/// The class of what a member hands out; empty for other values, and where it may be any.
template <typename T>
inline constexpr std::string_view handed_class{};
template <typename C>
inline constexpr std::string_view handed_class<Ptr<C>> = class_name<C>();
template <>
inline constexpr std::string_view handed_class<ObjectPtr>{};

template <auto P>
constexpr MethodRow method_row() {
  Method method;
  method.call = call_member<P>;
  [&]<typename... A>(std::type_identity<std::tuple<A...>>) {
    method.parameters = {parameter<A>()...};
    method.parameter_count = sizeof...(A);
  }(std::type_identity<typename SignatureOf<P>::List>());
  MethodRow row{Member(method)};
  row.name = member_name<P>();
  row.kind = MemberKind::Method;
  row.type = value_type<ResultOf<P>>();
  row.object_class = handed_class<ResultOf<P>>;
  return row;
}

template <typename Part>
const ClassInfo& info_of() {
  static const ClassInfo& info = std::make_unique<Part>()->info();  // some are too large for a stack
  return info;
}

template <typename Part>
ObjectPtr created() {
  return std::make_shared<Part>();
}
template <typename Part>
constexpr void set_class(OwnedPart& part) {
  part.info = info_of<Part>;
  if constexpr (std::is_default_constructible_v<Part>) part.create = created<Part>;
}

template <auto Count>
int count_by(const Object& o) {
  return static_cast<int>((static_cast<const ClassOf<Count>&>(o).*Count)());
}
template <auto Resize>
void resize_by(Object& o, int count) {
  using Number = std::tuple_element_t<0, typename SignatureOf<Resize>::List>;
  (static_cast<ClassOf<Resize>&>(o).*Resize)(static_cast<Number>(count));
}
template <auto Count, auto Resize>
constexpr void let_change(OwnedPart& part) {
  if constexpr (!std::is_null_pointer_v<decltype(Count)>) {
    part.fixed = 0;
    part.count = count_by<Count>;
    part.resize = resize_by<Resize>;
  }
}

template <auto P>
auto handed_out(Object& o, int number) {
  if constexpr (std::tuple_size_v<typename SignatureOf<P>::List> == 1)
    return (static_cast<ClassOf<P>&>(o).*
            P)(static_cast<std::tuple_element_t<0, typename SignatureOf<P>::List>>(number));
  else
    return (static_cast<ClassOf<P>&>(o).*P)();
}
template <auto P>
ObjectPtr hand_out(Object& o, int number) {
  return handed_out<P>(o, number);
}
template <auto P>
Object& part_by(Object& o, int number) {
  return *handed_out<P>(o, number);
}

template <auto P, int Number, auto Count = nullptr, auto Resize = nullptr>
constexpr PartRow part_row() {
  using Part = typename is_pointer<typename SignatureOf<P>::Result>::Target;
  OwnedPart owned;
  set_class<Part>(owned);
  owned.of = part_by<P>;
  owned.hand_out = hand_out<P>;
  owned.fixed = Number;
  constexpr std::string_view name = member_name<P>();
  owned.name = name.substr(name.starts_with("Get") ? 3 : 0);
  if constexpr (std::tuple_size_v<typename SignatureOf<P>::List> == 1) {
    owned.numbered = true;
    owned.number = parameter<std::tuple_element_t<0, typename SignatureOf<P>::List>>();
  }
  let_change<Count, Resize>(owned);
  PartRow row{Member(owned)};
  row.name = name;
  row.object_class = class_name<Part>();
  row.kind = MemberKind::Method;
  row.type = ValueType::Object;
  return row;
}

template <auto P>
auto& public_part(Object& o, int number) {
  auto& field = static_cast<ClassOf<P>&>(o).*P;
  if constexpr (requires { field.count; })
    return field(number);
  else
    return field;
}
template <auto P>
Object& owned_part(Object& o, int number) {
  return public_part<P>(o, number);
}
template <auto P>
ObjectPtr hand_out_owned(Object& o, int number) {
  return shared_part(o, public_part<P>(o, number));
}

template <auto P, auto Count, auto Resize>
constexpr Member owned_row() {
  using Type = TypeOf<P>;
  OwnedPart owned;
  owned.of = owned_part<P>;
  owned.hand_out = hand_out_owned<P>;
  owned.name = member_name<P>();
  owned.fixed = 1;
  std::string_view part_class;
  if constexpr (requires { Type::count; }) {
    owned.numbered = true;
    owned.fixed = Type::count;
    set_class<typename Type::Part>(owned);
    part_class = class_name<typename Type::Part>();
  } else {
    set_class<Type>(owned);
    part_class = class_name<Type>();
  }
  let_change<Count, Resize>(owned);
  Member row(owned);
  row.object_class = part_class;
  row.name = owned.name;
  row.type = ValueType::Object;
  row.read_only = true;
  if constexpr (requires { Type::count; }) row.bounds = Type::bounds;
  return row;
}

template <auto P>
void listen_to(Object& o, Listener listener) {
  auto& event = static_cast<ClassOf<P>&>(o).*P;
  if (!listener)
    event.listener = nullptr;
  else
    event.listener = [listener = std::move(listener)](bool& argument) {
      Value values[1]{argument};
      listener(values);
      argument = native<bool>(values[0]);
    };
}
template <auto P>
constexpr EventRow event_row() {
  EventRow row{Member(EventSource{listen_to<P>, {{}, ValueType::Boolean, false, true, true}})};
  row.name = member_name<P>();
  row.kind = MemberKind::Event;
  return row;
}

}  // namespace tarn::detail
