// Rows of properties from member pointers: fields of records, and what a class computes or converts.
#pragma once

#include "tarn/base/value.h"
#include "tarn/reflect/rows.h"

namespace tarn::detail {

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
  Member row(field);
  row.type = value_type(field.wire);
  row.bounds = Shape<T>::bounds;
  if constexpr (requires { requires std::is_enum_v<typename Element::Native>; })
    row.labels = labels<typename Element::Native>;
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
  Member row(accessor);
  row.name = member_name<Get>();
  row.type = value_type<ResultOf<Get>>();
  if constexpr (std::is_enum_v<ResultOf<Get>>) row.labels = labels<ResultOf<Get>>;
  row.read_only = std::is_null_pointer_v<decltype(Let)>;
  return {row};
}

template <auto Get, auto Let>
constexpr PropertyRow property_row() {
  if constexpr (std::is_member_function_pointer_v<decltype(Get)>) {
    return accessor_row<Get, Let>();
  } else if constexpr (requires { typename Shape<TypeOf<Get>>::Element::Native; }) {
    return field_row<Get>();
  } else {
    Member row(Accessor{get_public<Get>, let_public<Get>, {}});
    row.name = member_name<Get>();
    row.type = value_type<TypeOf<Get>>();
    if constexpr (std::is_enum_v<TypeOf<Get>>) row.labels = labels<TypeOf<Get>>;
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
  Member row(Accessor{get_looked_up<Get>, nullptr, {}});
  row.name = member_name<Get>();
  row.type = value_type<ResultOf<Get>>();
  row.bounds = looked_up_bounds<Get, D...>;
  row.read_only = true;
  return row;
}

}  // namespace tarn::detail
