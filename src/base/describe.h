// Makes a class's members table from member pointers, so that no name is typed as a string:
//
//   describe<WIN_Window>(Failures::Trapped, property<&WindowRecord::Height>("ft"),
//   method<&WIN_Window::Load>("nRecNum"), ...)
//
// A field of the record that is left out or listed twice does not compile.
#pragma once

#include "base/list_properties.h"

namespace tarn {

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

/// A method that hands out a part which the object owns: the one of its kind, or one by number, of a fixed `Number`
/// or of as many as `Count` says and `Resize` makes.
template <auto P, int Number, auto Count = nullptr, auto Resize = nullptr>
struct PartForm {
  static constexpr bool numbered = std::tuple_size_v<typename detail::Signature<decltype(P)>::List> == 1;
  static constexpr bool fixed = std::is_null_pointer_v<decltype(Count)>;

  constexpr PartForm operator()(std::string_view number) const { return {number}; }

  template <typename C>
  Member make() const {
    using Part = typename is_pointer<typename detail::Signature<decltype(P)>::Result>::Target;
    Member m;
    if constexpr (numbered) {
      m = Method<P, 1>{{number_name}}.template make<C>();
      m.part = [](Object& o, int number) -> Object& { return *(static_cast<C&>(o).*P)(static_cast<int16_t>(number)); };
    } else {
      m = Method<P>{}.template make<C>();
      m.part = [](Object& o, int) -> Object& { return *(static_cast<C&>(o).*P)(); };
    }
    if constexpr (fixed) {
      m.parts = Number;
      m.part_count = [](const Object&) { return Number; };
    } else {
      m.part_count = [](const Object& o) { return static_cast<int>((static_cast<const C&>(o).*Count)()); };
      m.resize_parts = [](Object& o, int count) { (static_cast<C&>(o).*Resize)(count); };
    }
    m.numbered_part = numbered;
    m.part_name = m.name.substr(m.name.starts_with("Get") ? 3 : 0);
    m.part_info = []() -> const ClassInfo& {
      static const Part sample;
      return sample.info();
    };
    return m;
  }

  std::string_view number_name;
};

template <auto P, int Number = 1>
inline constexpr PartForm<P, Number> part{};
/// Parts whose number changes; one that is not numbered is there or not.
template <auto P, auto Count, auto Resize>
inline constexpr PartForm<P, 0, Count, Resize> parts{};

/// Parts that an object owns under a number, from 1, as a public member: `loop.Pumps(3)`.
template <typename P, int N>
class Numbered {
 public:
  using Part = P;
  static constexpr int count = N;
  static constexpr std::array<Bounds, 1> bounds{Bounds(N)};

  /// Error `SubscriptOutOfRange`.
  P& operator()(int number) {
    if (number < 1 || number > N) subscript_out_of_range(number, N);
    return parts_[static_cast<size_t>(number) - 1];
  }
  const P& operator()(int number) const { return const_cast<Numbered&>(*this)(number); }

 private:
  std::array<P, N> parts_;
};

/// A public member that is a part of the object, or `Numbered` parts, of which `Count` says how many there are and
/// `Resize` makes them.
template <auto P, auto Count = nullptr, auto Resize = nullptr>
struct OwnedForm {
  template <typename C>
  Member make() const {
    using Type = typename detail::FieldOf<std::remove_const_t<decltype(P)>>::Type;
    Member m;
    m.name = m.part_name = member_name<P>();
    m.type = ValueType::Object;
    m.read_only = true;
    m.get_label = std::string(m.name) + " [PropertyGet]";
    m.get = [](const Object& o, Subscripts s, Value& out) {
      auto& owner = const_cast<Object&>(o);
      put(out, shared_part(owner, part_of<C>(owner, s.empty() ? 1 : s[0])));
    };
    m.get_stored = m.get;
    m.part = [](Object& o, int number) -> Object& { return part_of<C>(o, number); };
    if constexpr (requires { Type::count; }) {
      m.bounds = Type::bounds;
      m.numbered_part = true;
      m.parts = Type::count;
      m.part_count = [](const Object&) { return Type::count; };
      m.part_info = info_of<typename Type::Part>;
    } else {
      m.parts = 1;
      m.part_count = [](const Object&) { return 1; };
      m.part_info = info_of<Type>;
    }
    if constexpr (!std::is_null_pointer_v<decltype(Count)>) {
      m.parts = 0;
      m.part_count = [](const Object& o) { return static_cast<int>((static_cast<const C&>(o).*Count)()); };
      m.resize_parts = [](Object& o, int count) { (static_cast<C&>(o).*Resize)(static_cast<int16_t>(count)); };
    }
    return m;
  }

 private:
  template <typename C>
  static auto& part_of(Object& o, int number) {
    auto& field = static_cast<C&>(o).*P;
    if constexpr (requires { field.count; })
      return field(number);
    else
      return field;
  }
  template <typename Part>
  static const ClassInfo& info_of() {
    static const Part sample;
    return sample.info();
  }
};

template <auto P, auto Count = nullptr, auto Resize = nullptr>
inline constexpr OwnedForm<P, Count, Resize> owned{};

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

/// Whether a member is a field of every record in a list of `Record`.
template <typename Record, typename M>
constexpr bool is_across() {
  if constexpr (requires { M::list; })
    return std::is_same_v<typename M::Owner, Record>;
  else
    return false;
}

/// Bytes of the record that a member stands for, 0 for other members.
template <typename Record, typename M>
constexpr size_t covered_bytes() {
  if constexpr (is_across<Record, M>()) {
    return sizeof(typename M::F) * M::Records::size;
  } else if constexpr (requires { M::is_covering; }) {
    if constexpr (M::is_covering) {
      using Field = FieldOf<std::remove_const_t<decltype(M::pointer)>>;
      if constexpr (std::is_same_v<typename Field::Class, Record>) return sizeof(typename Field::Type);
    }
  }
  return 0;
}

template <typename Record, typename M>
constexpr std::string_view covered_name() {
  if constexpr (is_across<Record, M>())
    return {M::name.data(), M::name.size() - 1};
  else if constexpr (covered_bytes<Record, M>() > 0)
    return member_name<M::pointer>();
  else
    return {};
}

template <typename Record, typename... M>
constexpr bool all_different() {
  const std::array<std::string_view, sizeof...(M)> names{covered_name<Record, M>()...};
  for (size_t i = 0; i < names.size(); ++i) {
    for (size_t j = i + 1; j < names.size(); ++j) {
      if (!names[i].empty() && names[i] == names[j]) return false;
    }
  }
  return true;
}

template <typename Record, typename... M>
constexpr void check_record() {
  static_assert(alignof(Record) == 1, "a record is made of wire types only");
  static_assert(all_different<Record, M...>(), "a field of the record is listed twice in the members table");
  static_assert((size_t{0} + ... + covered_bytes<Record, M>()) == sizeof(Record),
                "a field of the record is left out of the members table, or has the wrong width");
}

template <typename Form>
void add(ClassInfo& info, Member member, const Form& form) {
  if constexpr (requires { form.hidden; }) {
    if (form.hidden) return info.reserved.push_back(std::move(member));
  }
  info.members.push_back(std::move(member));
}

}  // namespace detail

template <typename C, typename... M>
ClassInfo describe(Failures failures, const M&... members) {
  ClassInfo info;
  info.name = class_name<C>();
  info.failures = failures;
  [&]<typename... R>(std::type_identity<std::tuple<R...>>) {
    (detail::check_record<R, M...>(), ...);
    info.record_size = (size_t{0} + ... + sizeof(R));
  }(std::type_identity<typename detail::RecordsOf<C>::List>());
  (detail::add(info, members.template make<C>(), members), ...);
  info.index_names();
  return info;
}

}  // namespace tarn
