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
  template <typename F>
  constexpr PropertyRow with(F change) const {
    PropertyRow copy = *this;
    change(copy);
    return copy;
  }

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
  /// The unit is the one that a code of the record chooses.
  template <auto Code>
  constexpr PropertyRow unit_by() const {
    return with([](Member& m) { m.unit_beside = member_name<Code>(); });
  }
  /// The unit, where it depends on the object in another way.
  constexpr PropertyRow units(std::string_view (*of)(const Object&)) const {
    return with([&](Member& m) { m.unit_for = of; });
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
  /// By its first argument.
  constexpr MethodRow chooses_sections() const {
    MethodRow copy = *this;
    std::get<Method>(copy.form).parameters.front().sections = true;
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

}  // namespace detail
}  // namespace tarn
