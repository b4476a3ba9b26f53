// The rows of a members table as they are made from member pointers, with what refines them. What is made for each
// member pointer is data and, for members that are no fields, a function of one line.
#pragma once

#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>

#include "tarn/base/value.h"
#include "tarn/reflect/members.h"
#include "tarn/reflect/names.h"

namespace tarn {

/// A property; what refines it gives a copy, under the name of what it sets.
struct PropertyRow : Member {
  using Target = std::string_view (*)(const Object&, size_t element);

  constexpr PropertyRow operator()(std::string_view text) const {
    return with([&](Member& m) { m.unit = text; });
  }
  constexpr PropertyRow read_only() const {
    return with([](Member& m) { m.read_only = true; });
  }
  /// Not a member of the interface.
  constexpr PropertyRow reserved() const {
    return with([](Member& m) { m.reserved = true; });
  }
  /// Kept in the entity's index row, not in its record.
  constexpr PropertyRow kept_in_row() const {
    return with([](Member& m) { m.in_row = true; });
  }
  constexpr PropertyRow by_reference() const {
    return with([](Member& m) { m.by_reference = true; });
  }
  constexpr PropertyRow trimmed() const {
    return with([](Member& m) { m.trimmed = true; });
  }
  /// The procedure label of the getter where it differs from "Name [PropertyGet]".
  constexpr PropertyRow label(std::string_view text) const {
    return with([&](Member& m) { m.getter_label = text; });
  }
  /// The property's own name, where it is not the field's.
  constexpr PropertyRow named(std::string_view text) const {
    return with([&](Member& m) { m.name = text; });
  }
  /// The unit in the record, where it is not the property's.
  constexpr PropertyRow stored_in(std::string_view text) const {
    return with([&](Member& m) { m.stored_unit = text; });
  }
  /// The codes of the enumeration, where they depend on the object.
  constexpr PropertyRow codes(std::span<const Label> (*of)(const Object&)) const {
    return with([&](Member& m) {
      m.labels_for = of;
      m.labels_vary = true;
    });
  }
  /// The kind of entity whose index the field holds. Where the object or the element decides, `by` gives one of the
  /// kinds, or none.
  constexpr PropertyRow refers_to(std::string_view kinds, Target by = nullptr) const {
    return with([&](Member& m) {
      m.refers_to = kinds;
      m.refers_by = by;
    });
  }

 private:
  template <typename F>
  constexpr PropertyRow with(F change) const {
    PropertyRow copy = *this;
    change(copy);
    return copy;
  }
};

struct MethodRow : Member {
  template <typename... Names>
  constexpr MethodRow operator()(Names... names) const {
    MethodRow copy = *this;
    size_t at = 0;
    ((std::get<Method>(copy.form).parameters[at++].name = names), ...);
    return copy;
  }
  constexpr MethodRow by_reference() const {
    MethodRow copy = *this;
    for (Parameter& parameter : std::get<Method>(copy.form).parameters) parameter.by_reference = true;
    return copy;
  }
};

struct PartRow : Member {
  constexpr PartRow operator()(std::string_view number) const {
    PartRow copy = *this;
    std::get<OwnedPart>(copy.form).number.name = number;
    return copy;
  }
};

struct EventRow : Member {
  constexpr EventRow operator()(std::string_view argument) const {
    EventRow copy = *this;
    std::get<EventSource>(copy.form).argument.name = argument;
    return copy;
  }
};

namespace detail {

template <typename T>
struct Pointer;
template <typename C, typename T>
struct Pointer<T C::*> {
  using Class = C;
  using Type = T;
};
template <auto P>
using ClassOf = typename Pointer<std::remove_const_t<decltype(P)>>::Class;
template <auto P>
using TypeOf = typename Pointer<std::remove_const_t<decltype(P)>>::Type;

/// A member function's types, and its pointer as one of every object, by which calls of one signature share their code.
template <typename T>
struct Signature;
template <typename C, typename R, typename... A>
struct Signature<R (C::*)(A...)> {
  using Result = R;
  using List = std::tuple<A...>;
  using OfObject = R (Object::*)(A...);
};
template <typename C, typename R, typename... A>
struct Signature<R (C::*)(A...) const> {
  using Result = R;
  using List = std::tuple<A...>;
  using OfObject = R (Object::*)(A...) const;
};
template <auto P>
using SignatureOf = Signature<std::remove_const_t<decltype(P)>>;
template <auto P>
constexpr auto of_object() {
  return static_cast<typename SignatureOf<P>::OfObject>(P);
}
/// The object as one of the class of a member pointer, which may be a base beside `Object`.
template <typename C>
C& as(Object& o) {
  if constexpr (std::is_base_of_v<Object, C>)
    return static_cast<C&>(o);
  else
    return dynamic_cast<C&>(o);
}
template <typename C>
const C& as(const Object& o) {
  return as<C>(const_cast<Object&>(o));
}
template <auto P>
using ResultOf = std::remove_cvref_t<typename SignatureOf<P>::Result>;

// ---- fields

/// Room for a record that is never made: a field's distance from its start is read off the addresses.
template <typename R>
union Blank {
  char none;
  R record;
  constexpr Blank() : none{} {}
};
template <typename R>
inline Blank<R> blank;

template <typename F>
inline constexpr Wire wire_of = F::none;
template <>
inline constexpr Wire wire_of<I2> = Wire::Int16;
template <>
inline constexpr Wire wire_of<I4> = Wire::Int32;
template <>
inline constexpr Wire wire_of<R4> = Wire::Real32;
template <>
inline constexpr Wire wire_of<R8> = Wire::Real64;
template <>
inline constexpr Wire wire_of<Bool> = Wire::Boolean;
template <size_t N>
inline constexpr Wire wire_of<Text<N>> = Wire::Text;
template <typename E>
inline constexpr Wire wire_of<Code<E>> = Wire::Code;
template <int Steps>
inline constexpr Wire wire_of<Scaled<Steps>> = Wire::Scaled;

/// A field's type: one element, or many under bounds.
template <typename T>
struct Shape {
  using Element = T;
  static constexpr std::array<Bounds, 0> bounds{};
};
template <typename T, Bounds... D>
struct Shape<Array<T, D...>> {
  using Element = T;
  static constexpr std::array<Bounds, sizeof...(D)> bounds{D...};
};

/// What follows from the type alone, the same for all fields of it.
template <typename T>
constexpr PropertyRow typed_field() {
  using Element = typename Shape<T>::Element;
  RecordField field;
  field.wire = wire_of<Element>;
  field.covers = true;
  field.size = sizeof(T);
  if constexpr (requires { Element::width; }) field.width = Element::width;
  if constexpr (requires { Element::steps_per_unit; }) field.per_unit = Element::steps_per_unit;
  uint32_t step = sizeof(Element);
  for (size_t d = 0; d < Shape<T>::bounds.size(); ++d) {
    field.steps[d] = step;
    step *= static_cast<uint32_t>(Shape<T>::bounds[d].size());
  }
  Member row;
  row.type = value_type(field.wire);
  row.bounds = Shape<T>::bounds;
  if constexpr (requires { requires std::is_enum_v<typename Element::Native>; })
    row.labels = labels<typename Element::Native>;
  row.form = field;
  return {row};
}

template <auto P>
constexpr PropertyRow field_row() {
  using R = ClassOf<P>;
  PropertyRow row = typed_field<TypeOf<P>>();
  RecordField& field = std::get<RecordField>(row.form);
  field.name = row.name = member_name<P>();
  field.record = class_name<R>();
  field.blank = &blank<R>.record;
  field.at = &(blank<R>.record.*P);
  return row;
}

template <auto P>
constexpr PropertyRow another_row() {
  PropertyRow row = field_row<P>();
  std::get<RecordField>(row.form).covers = false;
  return row;
}

template <auto Part, auto P>
std::byte* record_of_part(Object& o) {
  return reinterpret_cast<std::byte*>(static_cast<ClassOf<P>*>(&(static_cast<ClassOf<Part>&>(o).*Part)));
}
template <auto Part, auto P>
constexpr PropertyRow forwarded_row() {
  PropertyRow row = another_row<P>();
  auto& field = std::get<RecordField>(row.form);
  field.record_of = record_of_part<Part, P>;
  field.placed = true;
  return row;
}

/// Subscripts of the list, the outermost first, and then those of the field.
template <typename List, typename T>
inline constexpr auto across_bounds = [] {
  std::array<Bounds, List::bounds.size() + Shape<T>::bounds.size()> all{};
  const auto next = std::copy(List::bounds.rbegin(), List::bounds.rend(), all.begin());
  std::copy(Shape<T>::bounds.begin(), Shape<T>::bounds.end(), next);
  return all;
}();

template <auto List, auto P>
constexpr PropertyRow across_row(std::string_view name) {
  using R = ClassOf<List>;
  using Records = TypeOf<List>;
  constexpr size_t depth = Records::bounds.size();
  PropertyRow row = typed_field<TypeOf<P>>();
  RecordField& field = std::get<RecordField>(row.form);
  field.name = row.name = name;
  field.record = class_name<R>();
  field.blank = &blank<R>.record;
  field.at = &((blank<R>.record.*List).items.front().*P);
  field.stride = sizeof(typename Records::Element);
  field.records = Records::size;
  const auto of_field = field.steps;
  for (size_t d = 0; d < Shape<TypeOf<P>>::bounds.size(); ++d) field.steps[depth + d] = of_field[d];
  uint32_t step = field.stride;
  for (size_t d = 0; d < depth; ++d) {
    field.steps[depth - 1 - d] = step;
    step *= static_cast<uint32_t>(Records::bounds[d].size());
  }
  row.bounds = across_bounds<Records, TypeOf<P>>;
  return row;
}

/// "Sim" of `SimDay` before the field's name. By the characters alone: comparisons of their addresses are no constants
/// where sanitizers watch.
template <auto List, auto P>
inline constexpr auto composed_chars = [] {
  constexpr auto& of_list = member_chars<List>;
  constexpr auto& of_field = member_chars<P>;
  constexpr size_t prefix = [] {
    size_t length = 0;
    while (of_list[length] != 'D' || of_list[length + 1] != 'a' || of_list[length + 2] != 'y') ++length;
    return length;
  }();
  std::array<char, prefix + of_field.size()> chars{};
  for (size_t i = 0; i < chars.size(); ++i) chars[i] = i < prefix ? of_list[i] : of_field[i - prefix];
  return chars;
}();
template <auto List, auto P>
constexpr std::string_view composed_name() {
  return {composed_chars<List, P>.data(), composed_chars<List, P>.size() - 1};
}

// ---- accessors

template <typename R>
void get_by(const Object& o, R (Object::*getter)() const, Value& out) {
  put(out, (o.*getter)());
}
template <auto Get>
void get_computed(const Object& o, Subscripts, Value& out) {
  get_by(o, of_object<Get>(), out);
}
template <auto Let, typename T>
void let_by(Object& o, Subscripts, const Value& value) {
  (static_cast<ClassOf<Let>&>(o).*Let)(native<T>(value));
}
template <auto P>
void get_public(const Object& o, Subscripts, Value& out) {
  put(out, as<ClassOf<P>>(o).*P);
}
template <auto P>
void let_public(Object& o, Subscripts, const Value& value) {
  as<ClassOf<P>>(o).*P = native<TypeOf<P>>(value);
}

template <auto Get, auto Let = nullptr>
constexpr PropertyRow accessor_row() {
  Accessor accessor{get_computed<Get>, nullptr, {}};
  if constexpr (!std::is_null_pointer_v<decltype(Let)>) accessor.let = let_by<Let, ResultOf<Get>>;
  Member row;
  row.name = member_name<Get>();
  row.type = value_type<ResultOf<Get>>();
  if constexpr (std::is_enum_v<ResultOf<Get>>) row.labels = labels<ResultOf<Get>>;
  row.read_only = std::is_null_pointer_v<decltype(Let)>;
  row.form = accessor;
  return {row};
}

template <auto Get, auto Let>
constexpr PropertyRow property_row() {
  if constexpr (std::is_member_function_pointer_v<decltype(Get)>) {
    return accessor_row<Get, Let>();
  } else if constexpr (requires { typename Shape<TypeOf<Get>>::Element::Native; }) {
    return field_row<Get>();
  } else {
    Member row;
    row.name = member_name<Get>();
    row.type = value_type<TypeOf<Get>>();
    if constexpr (std::is_enum_v<TypeOf<Get>>) row.labels = labels<TypeOf<Get>>;
    row.form = Accessor{get_public<Get>, let_public<Get>, {}};
    return {row};
  }
}

template <auto P, auto Get, auto Let>
constexpr PropertyRow converted_row() {
  PropertyRow row = accessor_row<Get, Let>();
  const PropertyRow shown = field_row<P>();
  row.name = shown.name;
  row.labels = shown.labels;
  std::get<Accessor>(row.form).stands_for = std::get<RecordField>(shown.form);
  return row;
}

template <auto Get, Bounds... D>
inline constexpr std::array<Bounds, sizeof...(D)> looked_up_bounds{D...};
template <auto Get>
void get_looked_up(const Object& o, Subscripts at, Value& out) {
  [&]<size_t... I>(std::index_sequence<I...>) { put(out, (as<ClassOf<Get>>(o).*Get)(at[I]...)); }
  (std::make_index_sequence<std::tuple_size_v<typename SignatureOf<Get>::List>>());
}
template <auto Get, Bounds... D>
constexpr Member looked_up_row() {
  Member row;
  row.name = member_name<Get>();
  row.type = value_type<ResultOf<Get>>();
  row.bounds = looked_up_bounds<Get, D...>;
  row.read_only = true;
  row.form = Accessor{get_looked_up<Get>, nullptr, {}};
  return row;
}

// ---- methods, parts, events

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

/// One for each signature.
template <typename O, typename R, typename... A, typename M>
void invoke(O& object, M method, std::type_identity<R>, std::type_identity<std::tuple<A...>>, Arguments arguments,
            Value& result) {
  [&]<size_t... I>(std::index_sequence<I...>) {
    std::tuple<std::remove_cvref_t<A>...> natives{native<std::remove_cvref_t<A>>(arguments[I])...};
    if constexpr (std::is_void_v<R>)
      (object.*method)(std::get<I>(natives)...);
    else
      put(result, (object.*method)(std::get<I>(natives)...));
    (bring_back<A>(std::get<I>(natives), arguments[I]), ...);
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

template <auto P>
constexpr MethodRow method_row() {
  MethodRow row;
  row.name = member_name<P>();
  row.kind = MemberKind::Method;
  row.type = value_type<ResultOf<P>>();
  Method method;
  method.call = call_member<P>;
  [&]<typename... A>(std::type_identity<std::tuple<A...>>) {
    method.parameters = {parameter<A>()...};
    method.parameter_count = sizeof...(A);
  }(std::type_identity<typename SignatureOf<P>::List>());
  row.form = method;
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
  PartRow row;
  row.name = member_name<P>();
  row.kind = MemberKind::Method;
  row.type = ValueType::Object;
  OwnedPart owned;
  set_class<Part>(owned);
  owned.of = part_by<P>;
  owned.hand_out = hand_out<P>;
  owned.fixed = Number;
  owned.name = row.name.substr(row.name.starts_with("Get") ? 3 : 0);
  if constexpr (std::tuple_size_v<typename SignatureOf<P>::List> == 1) {
    owned.numbered = true;
    owned.number = parameter<std::tuple_element_t<0, typename SignatureOf<P>::List>>();
  }
  let_change<Count, Resize>(owned);
  row.form = owned;
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
  Member row;
  row.name = member_name<P>();
  row.type = ValueType::Object;
  row.read_only = true;
  OwnedPart owned;
  owned.of = owned_part<P>;
  owned.hand_out = hand_out_owned<P>;
  owned.name = row.name;
  owned.fixed = 1;
  if constexpr (requires { Type::count; }) {
    row.bounds = Type::bounds;
    owned.numbered = true;
    owned.fixed = Type::count;
    set_class<typename Type::Part>(owned);
  } else {
    set_class<Type>(owned);
  }
  let_change<Count, Resize>(owned);
  row.form = owned;
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
  EventRow row;
  row.name = member_name<P>();
  row.kind = MemberKind::Event;
  row.form = EventSource{listen_to<P>, {{}, ValueType::Boolean, false, true, true}};
  return row;
}

}  // namespace detail
}  // namespace tarn
