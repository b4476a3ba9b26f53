// The forms of properties with subscripts of their own: fields of the records in a list or a table, computed values.
#pragma once

#include "base/properties.h"

namespace tarn {

/// A field of every record in a list, with the list's subscripts first, the outermost before all: `SimDB(day, hour)`
/// for `SimDay(day).DB(hour)`. A composed name is that of the list, without the word for its records, and the field's.
template <auto List, auto Field, bool Composed>
struct Across {
  using Owner = typename detail::FieldOf<std::remove_const_t<decltype(List)>>::Class;
  using Records = typename detail::FieldOf<std::remove_const_t<decltype(List)>>::Type;
  using F = typename detail::FieldOf<std::remove_const_t<decltype(Field)>>::Type;
  static constexpr auto list = List;
  static constexpr auto field = Field;
  static constexpr size_t depth = Records::bounds.size();

  constexpr Across operator()(std::string_view text) const { return {text}; }

  /// By the characters alone: comparisons of their addresses are no constants where sanitizers watch.
  static constexpr auto name = [] {
    constexpr auto& of_list = detail::member_chars<List>;
    constexpr auto& of_field = detail::member_chars<Field>;
    constexpr size_t prefix = [] {
      if (!Composed) return size_t{0};
      size_t length = 0;
      while (of_list[length] != 'D' || of_list[length + 1] != 'a' || of_list[length + 2] != 'y') ++length;
      return length;
    }();
    std::array<char, prefix + of_field.size()> chars{};
    for (size_t i = 0; i < chars.size(); ++i) chars[i] = i < prefix ? of_list[i] : of_field[i - prefix];
    return chars;
  }();
  static constexpr auto bounds = [] {
    const auto behind_list = [](const auto& of_field) {
      std::array<Bounds, depth + std::tuple_size_v<std::remove_cvref_t<decltype(of_field)>>> all{};
      const auto next = std::copy(Records::bounds.rbegin(), Records::bounds.rend(), all.begin());
      std::copy(of_field.begin(), of_field.end(), next);
      return all;
    };
    if constexpr (detail::is_array<F>::value)
      return behind_list(F::bounds);
    else
      return behind_list(std::array<Bounds, 0>{});
  }();

  template <typename C>
  Member make() const {
    using E = std::remove_cvref_t<decltype(element(std::declval<F&>(), nullptr))>;
    Member m;
    m.name = {name.data(), name.size() - 1};
    m.unit = m.stored_unit = unit;
    if constexpr (requires { E::steps_per_unit; }) {
      static const std::string steps =
          std::string(unit) + ", in 16-bit steps of 1/" + std::to_string(E::steps_per_unit);
      m.stored_unit = steps;
    }
    m.type = value_type<typename detail::NativeOf<E>::type>();
    m.bounds = bounds;
    m.get_label = std::string(m.name) + " [PropertyGet]";
    m.let_label = std::string(m.name) + " [PropertyLet]";
    m.record = class_name<Owner>();
    m.offset = detail::offset_of<List>() + detail::offset_of<Field>();
    m.size = sizeof(F);
    m.stride = sizeof(typename Records::Element);
    m.records = Records::size;
    m.get = [](const Object& o, Subscripts s, Value& out) {
      detail::read_field(element(record_of(static_cast<const C&>(o).*List, s).*Field, s.data() + depth), false, out);
    };
    m.get_stored = m.get;
    m.let = [](Object& o, Subscripts s, const Value& v) {
      element(record_of(static_cast<C&>(o).*List, s).*Field, s.data() + depth) =
          native<typename detail::NativeOf<E>::type>(v);
    };
    m.let_stored = m.let;
    return m;
  }

  std::string_view unit;

 private:
  template <typename Any>
  static auto& record_of(Any& of, Subscripts s) {
    std::array<int, depth> at{};
    std::copy_n(s.rbegin() + static_cast<ptrdiff_t>(s.size() - depth), depth, at.begin());
    return of.items[Records::place(at.data())];
  }
  template <typename Any>
  static auto& element(Any& of, const int* at) {
    if constexpr (detail::is_array<F>::value)
      return of.items[F::place(at)];
    else
      return of;
  }
};

template <auto List, auto Field>
inline constexpr Across<List, Field, true> across{};

/// The same under the field's own name: `CentHeat(month, hour)` for `Hours(hour, month).CentHeat`.
template <auto Table, auto Field>
inline constexpr Across<Table, Field, false> column{};

/// A computed value under subscripts.
template <auto Get, Bounds... D>
struct Looked {
  static constexpr std::array<Bounds, sizeof...(D)> bounds{D...};

  template <typename C>
  Member make() const {
    Member m;
    m.name = member_name<Get>();
    m.type = value_type<std::remove_cvref_t<typename detail::Signature<decltype(Get)>::Result>>();
    m.bounds = bounds;
    m.read_only = true;
    m.get_label = std::string(m.name) + " [PropertyGet]";
    m.get = [](const Object& o, Subscripts s, Value& out) {
      [&]<size_t... I>(std::index_sequence<I...>) { put(out, (static_cast<const C&>(o).*Get)(s[I]...)); }
      (std::make_index_sequence<sizeof...(D)>());
    };
    m.get_stored = m.get;
    return m;
  }
};

template <auto Get, Bounds... D>
inline constexpr Looked<Get, D...> looked_up{};

}  // namespace tarn
