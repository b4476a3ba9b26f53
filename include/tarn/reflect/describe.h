// Makes a class's members table from member pointers, so that no name is typed as a string:
//
//   describe<WIN_Window>(Failures::Trapped, property<&WindowRecord::Height>("ft"),
//   method<&WIN_Window::Load>("nRecNum"), ...)
//
// Each row is plain data. A field of the record that is left out or listed twice does not compile.
#pragma once

#include <memory>
#include <tuple>

#include "tarn/base/value.h"
#include "tarn/reflect/members.h"
#include "tarn/reflect/method_rows.h"
#include "tarn/reflect/names.h"
#include "tarn/reflect/property_rows.h"

namespace tarn {

/// A field (`property<&Record::Field>`), a public member of a class, a computed value (`property<&C::Getter>`), or a
/// getter and a setter.
template <auto Get, auto Let = nullptr>
inline constexpr PropertyRow property{detail::property_row<Get, Let>()};

/// A field of the record that is seen through a getter and a setter.
template <auto Field, auto Get, auto Let>
inline constexpr PropertyRow converted{detail::converted_row<Field, Get, Let>()};

/// A field of an owned part, as a member of the owner.
template <auto Part, auto Field>
inline constexpr PropertyRow forwarded{detail::forwarded_row<Part, Field>()};

/// A second member for a field that is listed elsewhere.
template <auto Field>
inline constexpr PropertyRow another{detail::another_row<Field>()};

/// A field of every record in a list, with the list's subscripts first, the outermost before all: `SimDB(day, hour)`
/// for `SimDay(day).DB(hour)`. Its name is that of the list, without the word for its records, and the field's.
template <auto List, auto Field>
inline constexpr PropertyRow across{detail::across_row<List, Field>(detail::composed_name<List, Field>())};

/// The same under the field's own name: `CentHeat(month, hour)` for `Hours(hour, month).CentHeat`.
template <auto Table, auto Field>
inline constexpr PropertyRow column{detail::across_row<Table, Field>(member_name<Field>())};

/// A computed value under subscripts.
template <auto Get, Bounds... D>
inline constexpr Member looked_up = detail::looked_up_row<Get, D...>();

template <auto P>
inline constexpr MethodRow method{detail::method_row<P>()};

/// A method that hands out a part which the object owns: the one of its kind, or one by number, of a fixed `Number`.
template <auto P, int Number = 1>
inline constexpr PartRow part{detail::part_row<P, Number>()};
/// Parts whose number changes; one that is not numbered is there or not.
template <auto P, auto Count, auto Resize>
inline constexpr PartRow parts{detail::part_row<P, 0, Count, Resize>()};

/// A public member that is a part of the object, or `Numbered` parts, of which `Count` says how many there are and
/// `Resize` makes them.
template <auto P, auto Count = nullptr, auto Resize = nullptr>
inline constexpr Member owned = detail::owned_row<P, Count, Resize>();

/// An outgoing event with one in/out Boolean.
template <auto P>
inline constexpr EventRow event{detail::event_row<P>()};

namespace detail {

// What the compiler names when a table is wrong: none of these is a constant expression. Pointers to functions are not
// compared in here: where sanitizers watch, that is no constant either.
void a_field_of_the_record_is_listed_twice_in_the_members_table();
void a_field_of_the_record_is_left_out_of_the_members_table_or_has_the_wrong_width();
void a_field_is_of_a_record_that_the_class_has_not();
void a_method_needs_a_name_for_each_of_its_parameters();

/// Where an object of `C` has its record `R`: in itself, or behind `->`, where a rule may stand.
template <typename C, typename R>
std::byte* record_in(Object& o) {
  if constexpr (std::is_base_of_v<R, C>)
    return reinterpret_cast<std::byte*>(static_cast<R*>(static_cast<C*>(&o)));
  else
    return reinterpret_cast<std::byte*>(&*static_cast<C&>(o).operator->());
}

/// Fields of a class that no file has: they lie in its objects, and stand for no bytes of a record.
template <typename C, typename R, size_t N>
constexpr void place_unstored(MembersTable<N>& table) {
  for (Member& member : table.members) {
    auto* field = std::get_if<RecordField>(&member.form);
    if (!field || field->placed || field->record != class_name<R>()) continue;
    field->record_of = record_in<C, R>;
    field->placed = true;
    field->covers = false;
  }
}

/// Gives the fields of record `R` their place in objects of `C`, and checks that they are all of it.
template <typename C, typename R, size_t N>
constexpr void settle_record(MembersTable<N>& table) {
  static_assert(alignof(R) == 1, "a record is made of wire types only");
  size_t covered = 0;
  std::array<std::string_view, N> names;
  size_t count = 0;
  for (Member& member : table.members) {
    auto* field = std::get_if<RecordField>(&member.form);
    if (auto* accessor = std::get_if<Accessor>(&member.form); accessor && accessor->stands_for)
      field = &*accessor->stands_for;
    if (!field || field->placed || field->record != class_name<R>()) continue;
    field->record_of = record_in<C, R>;
    field->placed = true;
    field->by_rule = !std::is_base_of_v<R, C>;
    if (!field->covers) continue;
    covered += field->size * (field->stride > 0 ? field->records : 1);
    for (size_t i = 0; i < count; ++i) {
      if (names[i] == field->name) a_field_of_the_record_is_listed_twice_in_the_members_table();
    }
    names[count++] = field->name;
  }
  if (covered != sizeof(R)) a_field_of_the_record_is_left_out_of_the_members_table_or_has_the_wrong_width();
  table.facts.record_size += sizeof(R);
}

constexpr void check_member(const Member& member) {
  const auto* plain = std::get_if<RecordField>(&member.form);
  if (plain && !plain->placed) a_field_is_of_a_record_that_the_class_has_not();
  for (const Parameter& parameter : member.parameters()) {
    if (parameter.name.empty()) a_method_needs_a_name_for_each_of_its_parameters();
  }
}

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

template <typename C>
std::unique_ptr<Object> sample_of() {
  if constexpr (std::is_default_constructible_v<C>)
    return std::make_unique<C>();  // some are too large for a stack
  else
    return nullptr;
}

}  // namespace detail

template <typename C, typename... Row>
consteval auto describe(Failures failures, const Row&... rows) {
  MembersTable<sizeof...(Row)> table{{class_name<C>(), failures}, {static_cast<const Member&>(rows)...}};
  [&]<typename... R>(std::type_identity<std::tuple<R...>>) {
    (detail::settle_record<C, R>(table), ...);
  }(std::type_identity<typename detail::RecordsOf<C>::List>());
  if constexpr (requires { typename C::Unstored; }) detail::place_unstored<C, typename C::Unstored>(table);
  for (const Member& member : table.members) {
    detail::check_member(member);
    if (member.labels_vary) table.facts.sample = detail::sample_of<C>;
  }
  return table;
}

}  // namespace tarn
