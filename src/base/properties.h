// The forms that a property can have in a members table: a field of the record, with refinements; a converted field; a
// field of an owned part under the owner's name; a computed value; a getter and a setter.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <tuple>
#include <utility>

#include "base/members.h"
#include "base/value.h"
#include "base/wire.h"

namespace tarn {

namespace detail {

/// The last identifier of what the compiler writes for a template argument: "... [with auto P = &Record::Name; ...]".
constexpr std::string_view last_identifier(std::string_view text) {
  text = text.substr(text.find(" = ") + 3);
  text = text.substr(0, text.find_first_of(";]"));
  return text.substr(text.rfind("::") + 2);
}

template <auto P>
constexpr std::string_view spelled() {
  return last_identifier(__PRETTY_FUNCTION__);
}
template <typename T>
constexpr std::string_view spelled() {
  return last_identifier(__PRETTY_FUNCTION__);
}

/// The identifier again, ended by a NUL, as C clients need it.
template <size_t N>
constexpr auto ended(std::string_view name) {
  std::array<char, N + 1> chars{};
  for (size_t i = 0; i < N; ++i) chars[i] = name[i];
  return chars;
}
template <auto P>
inline constexpr auto member_chars = ended<spelled<P>().size()>(spelled<P>());
template <typename T>
inline constexpr auto class_chars = ended<spelled<T>().size()>(spelled<T>());

}  // namespace detail

template <auto P>
constexpr std::string_view member_name() {
  return {detail::member_chars<P>.data(), detail::member_chars<P>.size() - 1};
}

template <typename T>
constexpr std::string_view class_name() {
  return {detail::class_chars<T>.data(), detail::class_chars<T>.size() - 1};
}

namespace detail {

template <typename T>
struct FieldOf;
template <typename C, typename T>
struct FieldOf<T C::*> {
  using Class = C;
  using Type = T;
};

template <typename T>
struct is_array : std::false_type {};
template <typename T, Bounds... D>
struct is_array<Array<T, D...>> : std::true_type {};

template <typename T>
concept Wire = requires {
  typename T::Native;
};

/// The native type behind a wire field, or the type itself.
template <typename T>
struct NativeOf {
  using type = T;
};
template <Wire T>
struct NativeOf<T> {
  using type = typename T::Native;
};

template <typename F>
void read_field(const F& field, bool trimmed, Value& out) {
  if constexpr (requires { F::width; })
    out = trimmed ? field.trimmed() : field.str();
  else
    put(out, static_cast<typename NativeOf<F>::type>(field));
}

template <typename T>
constexpr size_t text_width() {
  if constexpr (requires { T::width; })
    return T::width;
  else
    return 0;
}

template <typename T>
struct Signature;
template <typename C, typename R, typename... A>
struct Signature<R (C::*)(A...)> {
  using Result = R;
  using List = std::tuple<A...>;
};
template <typename C, typename R, typename... A>
struct Signature<R (C::*)(A...) const> : Signature<R (C::*)(A...)> {};

/// What a class says of its records: one, several files' ones, or none.
template <typename C>
struct RecordsOf {
  using List = std::tuple<>;
};
template <typename C>
requires requires { typename C::Record; }
struct RecordsOf<C> {
  using List = std::tuple<typename C::Record>;
};
template <typename C>
requires requires { typename C::Records; }
struct RecordsOf<C> {
  using List = typename C::Records;
};
template <typename R, typename List>
struct is_one_of;
template <typename R, typename... L>
struct is_one_of<R, std::tuple<L...>> : std::bool_constant<(std::is_same_v<R, L> || ...)> {};

/// One for all fields: a record may be millions of bytes.
template <typename R>
const R& sample_record() {
  static const auto sample = std::make_unique<R>();
  return *sample;
}

/// A field's place in its record.
template <auto P>
ptrdiff_t offset_of() {
  const auto& sample = sample_record<typename FieldOf<std::remove_const_t<decltype(P)>>::Class>();
  return reinterpret_cast<const char*>(&(sample.*P)) - reinterpret_cast<const char*>(&sample);
}

template <typename A>
Parameter parameter(std::string_view name) {
  using N = std::remove_cvref_t<A>;
  constexpr bool in_out = std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>>;
  return {name, value_type<N>(), is_optional<N>::value, in_out, in_out};
}

}  // namespace detail

/// See the forms below. `Field` is what a converted property stands for in the record, `Part` the owned part that has
/// the field; a property that does not cover its field is another way to one that is listed elsewhere.
template <auto Get, auto Let, auto Field, auto Part, bool Covers>
struct Property {
  using Pointer = decltype(Get);
  static constexpr bool is_field = !std::is_member_function_pointer_v<Pointer>;
  static constexpr bool is_converted = !std::is_null_pointer_v<decltype(Field)>;
  static constexpr bool is_covering = Covers && (is_field || is_converted);
  static constexpr auto pointer = [] {
    if constexpr (is_converted)
      return Field;
    else
      return Get;
  }();

  constexpr Property operator()(std::string_view text) const {
    return with([&](Property& p) { p.unit = text; });
  }
  constexpr Property read_only() const {
    return with([](Property& p) { p.fixed = true; });
  }
  /// Not a member of the interface.
  constexpr Property reserved() const {
    return with([](Property& p) { p.hidden = true; });
  }
  /// Kept in the entity's index row, not in its record.
  constexpr Property kept_in_row() const {
    return with([](Property& p) { p.row = true; });
  }
  constexpr Property by_reference() const {
    return with([](Property& p) { p.reference = true; });
  }
  constexpr Property trimmed() const {
    return with([](Property& p) { p.trim = true; });
  }
  /// The procedure label of the getter where it differs from "Name [PropertyGet]".
  constexpr Property label(std::string_view text) const {
    return with([&](Property& p) { p.get_label = text; });
  }

  /// The property's own name, where it is not the field's.
  constexpr Property named(std::string_view text) const {
    return with([&](Property& p) { p.own_name = text; });
  }
  /// The unit in the record, where it is not the property's.
  constexpr Property stored_in(std::string_view text) const {
    return with([&](Property& p) { p.stored_unit = text; });
  }
  /// The codes of the enumeration, where they depend on the object.
  constexpr Property codes(std::span<const Label> (*of)(const Object&)) const {
    return with([&](Property& p) { p.codes_of = of; });
  }
  /// The kind of entity whose index the field holds. Where the object or the element decides, `by` gives one of the
  /// kinds, or none.
  constexpr Property refers_to(std::string_view kinds, std::string_view (*by)(const Object&, size_t) = nullptr) const {
    return with([&](Property& p) {
      p.target = kinds;
      p.target_of = by;
    });
  }

  template <typename C>
  Member make() const {
    Member m;
    m.name = own_name.empty() ? member_name<pointer>() : own_name;
    m.unit = unit;
    m.stored_unit = stored_unit.empty() ? unit : stored_unit;
    m.refers_to = target;
    m.by_reference = reference;
    m.trimmed = trim;
    m.get_label = get_label.empty() ? std::string(m.name) + " [PropertyGet]" : std::string(get_label);
    m.let_label = std::string(m.name) + " [PropertyLet]";
    if constexpr (is_covering) place_in_record<C>(m);
    if constexpr (is_field)
      make_field<C>(m);
    else
      make_accessors<C>(m);
    m.read_only = fixed || !m.let;
    m.refers_by = target_of;
    m.in_row = row;
    m.labels_for = codes_of;
    if constexpr (std::is_default_constructible_v<C>) {
      if (codes_of) m.labels = codes_of(*std::make_unique<C>());  // some are too large for a stack
    }
    return m;
  }

  std::string_view unit, get_label, own_name, stored_unit, target;
  bool fixed = false, reference = false, trim = false, hidden = false, row = false;
  std::span<const Label> (*codes_of)(const Object&) = nullptr;
  std::string_view (*target_of)(const Object&, size_t) = nullptr;

 private:
  template <typename F>
  constexpr Property with(F change) const {
    Property copy = *this;
    change(copy);
    return copy;
  }

  template <typename C>
  void place_in_record(Member& m) const {
    using Owner = detail::FieldOf<std::remove_const_t<decltype(pointer)>>;
    if constexpr (detail::is_one_of<typename Owner::Class, typename detail::RecordsOf<C>::List>::value) {
      m.record = class_name<typename Owner::Class>();
      m.offset = detail::offset_of<pointer>();
      m.size = sizeof(typename Owner::Type);
    }
  }

  /// A field of the class, of its record, or of the record that it gives access to by `->`, where a rule may stand.
  template <typename C, auto P>
  static auto& field_in(Object& o) {
    if constexpr (std::is_base_of_v<typename detail::FieldOf<std::remove_const_t<decltype(P)>>::Class, C>)
      return static_cast<C&>(o).*P;
    else
      return (*static_cast<C&>(o).operator->()).*P;
  }
  template <typename C>
  static auto& field_of(Object& o) {
    if constexpr (std::is_null_pointer_v<decltype(Part)>)
      return field_in<C, Get>(o);
    else
      return static_cast<C&>(o).*Part.*Get;
  }
  template <typename C>
  static const auto& field_of(const Object& o) {
    return field_of<C>(const_cast<Object&>(o));
  }

  template <typename C>
  void make_field(Member& m) const {
    using F = typename detail::FieldOf<Pointer>::Type;
    if constexpr (detail::is_array<F>::value) {
      element<C, typename F::Element>(m);
      m.bounds = F::bounds;
      m.get = trim ? array_get<C, F, true> : array_get<C, F, false>;
      m.get_stored = array_get<C, F, false>;
      m.let = [](Object& o, Subscripts s, const Value& v) { store(field_of<C>(o).items[F::place(s.data())], v); };
      m.let_stored = m.let;
    } else {
      element<C, F>(m);
      m.get = trim ? field_get<C, F, true> : field_get<C, F, false>;
      m.get_stored = field_get<C, F, false>;
      m.let = [](Object& o, Subscripts, const Value& v) { store(field_of<C>(o), v); };
      m.let_stored = m.let;
    }
    using Owner = typename detail::FieldOf<std::remove_const_t<decltype(Get)>>::Class;
    m.elsewhere = std::is_null_pointer_v<decltype(Part)> && !std::is_base_of_v<Owner, C>;
    if (m.stored() || !Covers) m.place = [](Object& o) { return reinterpret_cast<std::byte*>(&field_of<C>(o)); };
  }

  template <typename C, typename F>
  static void element(Member& m) {
    using N = typename detail::NativeOf<F>::type;
    m.type = value_type<N>();
    m.width = detail::text_width<F>();
    if constexpr (std::is_enum_v<N>) m.labels = tarn::labels<N>;
  }
  template <typename C, typename F, bool Trim>
  static void field_get(const Object& o, Subscripts, Value& out) {
    detail::read_field(field_of<C>(o), Trim, out);
  }
  template <typename C, typename F, bool Trim>
  static void array_get(const Object& o, Subscripts s, Value& out) {
    detail::read_field(field_of<C>(o).items[F::place(s.data())], Trim, out);
  }
  template <typename F>
  static void store(F& field, const Value& value) {
    field = native<typename detail::NativeOf<F>::type>(value);
  }

  template <typename C>
  void make_accessors(Member& m) const {
    using Result = std::remove_cvref_t<typename detail::Signature<Pointer>::Result>;
    m.type = value_type<Result>();
    m.get = [](const Object& o, Subscripts, Value& out) { put(out, (static_cast<const C&>(o).*Get)()); };
    m.get_stored = m.get;
    if constexpr (!std::is_same_v<decltype(Let), std::nullptr_t>) {
      m.let = [](Object& o, Subscripts, const Value& v) { (static_cast<C&>(o).*Let)(native<Result>(v)); };
      m.let_stored = m.let;
      if constexpr (is_converted && std::is_enum_v<Result>) {
        m.labels = tarn::labels<Result>;
        m.let_stored = [](Object& o, Subscripts, const Value& v) { store(field_in<C, Field>(o), v); };
      }
    }
  }
};

/// A field (`property<&Record::Field>`), a computed value (`property<&C::Getter>`), or a getter and a setter.
template <auto Get, auto Let = nullptr>
inline constexpr Property<Get, Let, nullptr, nullptr, true> property{};

/// A field of the record that is seen through a getter and a setter.
template <auto Field, auto Get, auto Let>
inline constexpr Property<Get, Let, Field, nullptr, true> converted{};

/// A field of an owned part, as a member of the owner.
template <auto Part, auto Field>
inline constexpr Property<Field, nullptr, nullptr, Part, false> forwarded{};

/// A second member for a field that is listed elsewhere.
template <auto Field>
inline constexpr Property<Field, nullptr, nullptr, nullptr, false> another{};

}  // namespace tarn
