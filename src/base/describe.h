// Makes a class's members table from member pointers, so that no name is typed as a string:
//
//   describe<WIN_Window>(Failures::Trapped, property<&WindowRecord::Height>("ft"),
//   method<&WIN_Window::Load>("nRecNum"), ...)
//
// A field of the record that is left out or listed twice does not compile.
#pragma once

#include <array>
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

template <typename A>
Parameter parameter(std::string_view name) {
  using N = std::remove_cvref_t<A>;
  constexpr bool in_out = std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>>;
  return {name, value_type<N>(), is_optional<N>::value, in_out, in_out};
}

}  // namespace detail

/// A property: a field (`property<&Record::Field>`), a computed value (`property<&C::Getter>`), or a getter and a
/// setter of its own.
template <auto Get, auto Let = nullptr>
struct Property {
  static constexpr auto pointer = Get;
  using Pointer = decltype(Get);
  static constexpr bool is_field = !std::is_member_function_pointer_v<Pointer>;

  constexpr Property operator()(std::string_view text) const {
    return with([&](Property& p) { p.unit = text; });
  }
  constexpr Property read_only() const {
    return with([](Property& p) { p.fixed = true; });
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

  template <typename C>
  Member make() const {
    Member m;
    m.name = member_name<Get>();
    m.unit = unit;
    m.by_reference = reference;
    m.trimmed = trim;
    m.get_label = get_label.empty() ? std::string(m.name) + " [PropertyGet]" : std::string(get_label);
    m.let_label = std::string(m.name) + " [PropertyLet]";
    if constexpr (is_field)
      make_field<C>(m);
    else
      make_accessors<C>(m);
    m.read_only = fixed || !m.let;
    return m;
  }

  std::string_view unit, get_label;
  bool fixed = false, reference = false, trim = false;

 private:
  template <typename F>
  constexpr Property with(F change) const {
    Property copy = *this;
    change(copy);
    return copy;
  }

  template <typename C>
  void make_field(Member& m) const {
    using F = typename detail::FieldOf<Pointer>::Type;
    if constexpr (requires { typename C::Record; }) {
      if constexpr (std::is_same_v<typename detail::FieldOf<Pointer>::Class, typename C::Record>) {
        static const typename C::Record sample{};
        m.offset = reinterpret_cast<const char*>(&(sample.*Get)) - reinterpret_cast<const char*>(&sample);
        m.size = sizeof(F);
        m.place = [](Object& o) { return reinterpret_cast<std::byte*>(&(static_cast<C&>(o).*Get)); };
      }
    }
    if constexpr (detail::is_array<F>::value) {
      element<C, typename F::Element>(m);
      m.bounds = F::bounds;
      m.get = trim ? array_get<C, F, true> : array_get<C, F, false>;
      m.let = [](Object& o, Subscripts s, const Value& v) {
        store((static_cast<C&>(o).*Get).items[F::place(s.data())], v);
      };
    } else {
      element<C, F>(m);
      m.get = trim ? field_get<C, F, true> : field_get<C, F, false>;
      m.let = [](Object& o, Subscripts, const Value& v) { store(static_cast<C&>(o).*Get, v); };
    }
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
    detail::read_field(static_cast<const C&>(o).*Get, Trim, out);
  }
  template <typename C, typename F, bool Trim>
  static void array_get(const Object& o, Subscripts s, Value& out) {
    detail::read_field((static_cast<const C&>(o).*Get).items[F::place(s.data())], Trim, out);
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
    if constexpr (!std::is_same_v<decltype(Let), std::nullptr_t>) {
      m.let = [](Object& o, Subscripts, const Value& v) { (static_cast<C&>(o).*Let)(native<Result>(v)); };
    }
  }
};

template <auto Get, auto Let = nullptr>
inline constexpr Property<Get, Let> property{};

template <auto P, size_t N = 0>
struct Method {
  template <typename... Names>
  constexpr auto operator()(Names... parameter_names) const {
    return Method<P, sizeof...(Names)>{{std::string_view(parameter_names)...}, reference};
  }
  constexpr Method by_reference() const { return {names, true}; }

  template <typename C>
  Member make() const {
    using S = detail::Signature<decltype(P)>;
    constexpr size_t arity = std::tuple_size_v<typename S::List>;
    static_assert(N == arity, "a method's members-table entry names each of its parameters");
    Member m;
    m.name = member_name<P>();
    m.kind = MemberKind::Method;
    m.type = value_type<std::remove_cvref_t<typename S::Result>>();
    m.call_label = std::string(m.name) + "()";
    [&]<size_t... I>(std::index_sequence<I...>) {
      (m.parameters.push_back(detail::parameter<std::tuple_element_t<I, typename S::List>>(names[I])), ...);
    }
    (std::make_index_sequence<arity>());
    for (Parameter& p : m.parameters) p.by_reference |= reference;
    m.call = call<C>;
    return m;
  }

  std::array<std::string_view, N> names{};
  bool reference = false;

 private:
  template <typename C>
  static void call(Object& object, Arguments arguments, Value& result) {
    using S = detail::Signature<decltype(P)>;
    using List = typename S::List;
    [&]<size_t... I>(std::index_sequence<I...>) {
      std::tuple<std::remove_cvref_t<std::tuple_element_t<I, List>>...> natives{
          native<std::remove_cvref_t<std::tuple_element_t<I, List>>>(arguments[I])...};
      C& self = static_cast<C&>(object);
      if constexpr (std::is_void_v<typename S::Result>)
        (self.*P)(std::get<I>(natives)...);
      else
        put(result, (self.*P)(std::get<I>(natives)...));
      (bring_back<std::tuple_element_t<I, List>>(std::get<I>(natives), arguments[I]), ...);
    }
    (std::make_index_sequence<std::tuple_size_v<List>>());
  }

  template <typename A, typename N2>
  static void bring_back(const N2& from, Value& to) {
    if constexpr (std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>>) {
      if constexpr (is_optional<N2>::value) {
        if (from) put(to, *from);
      } else {
        put(to, from);
      }
    }
  }
};

template <auto P>
inline constexpr Method<P> method{};

template <auto P>
struct EventForm {
  constexpr EventForm operator()(std::string_view argument) const { return {argument}; }

  template <typename C>
  Member make() const {
    Member m;
    m.name = member_name<P>();
    m.kind = MemberKind::Event;
    m.parameters.push_back({argument_name, ValueType::Boolean, false, true, true});
    m.listen = [](Object& object, Listener listener) {
      auto& event = static_cast<C&>(object).*P;
      if (!listener)
        event.listener = nullptr;
      else
        event.listener = [listener = std::move(listener)](bool& argument) {
          Value values[1]{argument};
          listener(values);
          argument = native<bool>(values[0]);
        };
    };
    return m;
  }

  std::string_view argument_name;
};

/// An outgoing event with one in/out Boolean.
template <auto P>
inline constexpr EventForm<P> event{};

namespace detail {

/// Bytes of the record that a member stands for, 0 for other members.
template <typename Record, typename M>
constexpr size_t covered_bytes() {
  if constexpr (requires { M::is_field; }) {
    if constexpr (M::is_field) {
      if constexpr (std::is_same_v<typename FieldOf<typename M::Pointer>::Class, Record>) {
        return sizeof(typename FieldOf<typename M::Pointer>::Type);
      }
    }
  }
  return 0;
}

template <typename Record, typename M>
constexpr const void* field_address(const Record& record) {
  if constexpr (covered_bytes<Record, M>() > 0)
    return &(record.*M::pointer);
  else
    return nullptr;
}

template <typename Record, typename... M>
constexpr bool all_different() {
  const Record record{};
  const std::array<const void*, sizeof...(M)> places{field_address<Record, M>(record)...};
  for (size_t i = 0; i < places.size(); ++i) {
    for (size_t j = i + 1; j < places.size(); ++j) {
      if (places[i] && places[i] == places[j]) return false;
    }
  }
  return true;
}

}  // namespace detail

template <typename C, typename... M>
ClassInfo describe(Failures failures, const M&... members) {
  ClassInfo info;
  info.name = class_name<C>();
  info.failures = failures;
  if constexpr (requires { typename C::Record; }) {
    using Record = typename C::Record;
    static_assert(alignof(Record) == 1, "a record is made of wire types only");
    static_assert(detail::all_different<Record, M...>(), "a field of the record is listed twice in the members table");
    static_assert((size_t{0} + ... + detail::covered_bytes<Record, M>()) == sizeof(Record),
                  "a field of the record is left out of the members table, or has the wrong width");
    info.record_size = sizeof(Record);
  }
  (info.members.push_back(members.template make<C>()), ...);
  info.index_names();
  return info;
}

}  // namespace tarn
