// The public face of a class as data: its members in interface order. Every by-name face - C, Python, JSON, command
// line, reference pages - reads this table and nothing else. `reflect/describe.h` makes it from member pointers.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "tarn/base/labels.h"
#include "tarn/reflect/field.h"

namespace tarn {

struct ClassInfo;

enum class MemberKind : uint8_t { Property, Method, Event };

using Arguments = std::span<Value>;
using Listener = std::function<void(Arguments)>;

/// A property that is read by a function, and set by another one where it can be set.
struct Accessor {
  void (*get)(const Object&, Subscripts, Value&) = nullptr;
  void (*let)(Object&, Subscripts, const Value&) = nullptr;
  std::optional<RecordField> stands_for;  // the field of the record that it shows
};

struct Parameter {
  std::string_view name;
  ValueType type = ValueType::Empty;
  bool optional = false;
  bool by_reference = false;
  bool in_out = false;    // by reference, and comes back changed
  bool sections = false;  // which sections of the entity's file: faces for daily work leave it out for all of them
};

struct Method {
  static constexpr size_t kMostParameters = 5;
  /// `number` is the method's own below, for one function that serves several methods.
  void (*call)(Object&, size_t number, Arguments, Value& result) = nullptr;
  size_t number = 0;
  size_t parameter_count = 0;
  std::array<Parameter, kMostParameters> parameters{};
};

/// A part which the object owns, handed out by a method or as a property: the one of its kind, or one by number, from
/// 1.
struct OwnedPart {
  const ClassInfo& (*info)() = nullptr;  // of the part's class
  ObjectPtr (*create)() = nullptr;       // a part of the class that no object owns
  Object& (*of)(Object&, int number) = nullptr;
  int (*count)(const Object&) = nullptr;   // null where the number is fixed
  void (*resize)(Object&, int) = nullptr;  // where it changes
  ObjectPtr (*hand_out)(Object&, int number) = nullptr;
  Parameter number;       // of the method
  std::string_view name;  // "Wall" of GetWall
  int fixed = 0;          // how many there are; 0 where the number changes
  bool numbered = false;
};

struct EventSource {
  void (*listen)(Object&, Listener) = nullptr;
  Parameter argument;
};

struct Member {
  using Form = std::variant<RecordField, Accessor, OwnedPart, Method, EventSource>;

  Member() = default;
  constexpr explicit Member(const Form& what) : form(what) {}

  std::string_view name;
  std::string_view unit;          // "ft"; empty where the value has none or the name says it
  std::string_view stored_unit;   // of a converted field, in the record
  std::string_view unit_beside;   // the property whose code chooses the unit: "HotWaterFlowUnits"
  std::string_view refers_to;     // "Wall": the field holds the index of an entity of that kind, 0 for none; of several
                                  // kinds "Chiller Boiler", where the object tells which
  std::string_view object_class;  // of the object that the member hands out; empty where it has several, or none
  std::string_view getter_label;  // in the log, where it is not "Name [PropertyGet]"
  std::span<const Bounds> bounds;  // of an indexed property; empty for a plain one
  std::span<const Label> labels;   // of a property that holds an enumeration's code
  // Where they depend on the object: the unit, the codes of a property, and the kind that a reference is to, by the
  // element's place from 0.
  std::string_view (*unit_for)(const Object&) = nullptr;
  std::span<const Label> (*labels_for)(const Object&) = nullptr;
  std::string_view (*refers_by)(const Object&, size_t element) = nullptr;
  MemberKind kind = MemberKind::Property;
  ValueType type = ValueType::Empty;  // of the property, or of the method's result
  bool read_only = false;
  bool by_reference = false;  // the setter takes its argument by reference
  bool trimmed = false;       // the text is read without its blanks
  bool in_row = false;        // kept in the index row alone
  bool labels_vary = false;   // with the object, by `labels_for`
  bool reserved = false;      // stored, and no member of the interface
  Form form;

  /// The record's field that the member is or shows; null for others.
  const RecordField* field() const;
  /// The field's bytes are this member's to show, and no other's.
  bool stored() const { return field() && field()->covers; }
  /// Part of what an entity is, in an exchange.
  bool exchanged() const { return stored() || in_row; }
  /// A plain field, whose elements lie in a row.
  bool in_place() const;
  /// Where an object has it; for members in place. Throws where a rule refuses the record.
  std::byte* place(Object& object) const { return std::get<RecordField>(form).place(object); }

  /// An element's value, for as many subscripts as there are bounds.
  void get(const Object& object, Subscripts at, Value& out) const;
  /// A text with all of its blanks.
  void get_stored(const Object& object, Subscripts at, Value& out) const;
  /// Errors of the conversion, and of the setter where the property has one.
  void let(Object& object, Subscripts at, const Value& value) const;
  /// As an exchange brings it: a code that is none is kept.
  void let_stored(Object& object, Subscripts at, const Value& value) const;

  /// Of one text, in characters; 0 where a value is none or has no bound.
  size_t width() const { return field() ? field()->width : 0; }

  constexpr std::span<const Parameter> parameters() const {
    if (const auto* method = std::get_if<Method>(&form)) return {method->parameters.data(), method->parameter_count};
    if (const auto* event = std::get_if<EventSource>(&form)) return {&event->argument, 1};
    const auto* owned_part = std::get_if<OwnedPart>(&form);
    if (owned_part && kind == MemberKind::Method && owned_part->numbered) return {&owned_part->number, 1};
    return {};
  }
  void call(Object& object, Arguments arguments, Value& result) const;
  void listen(Object& object, Listener listener) const { std::get<EventSource>(form).listen(object, listener); }

  bool is_part() const { return std::holds_alternative<OwnedPart>(form); }
  const OwnedPart& owned() const { return std::get<OwnedPart>(form); }
  Object& part(Object& object, int number) const { return owned().of(object, number); }
  int part_count(const Object& object) const { return owned().count ? owned().count(object) : owned().fixed; }

  std::span<const Label> labels_of(const Object& object) const { return labels_for ? labels_for(object) : labels; }
  /// The kind that a reference of an object is to; empty for none.
  std::string_view target_of(const Object& object, size_t element) const {
    return refers_by ? refers_by(object, element) : refers_to;
  }
  std::string_view target_of(const Object& object, Subscripts at) const { return target_of(object, place_of(at)); }
  /// Of an element, from 0, the first subscript fastest.
  size_t place_of(Subscripts at) const;
  bool indexed() const { return !bounds.empty(); }
  size_t elements() const;

  // Procedure labels of the diagnostic log.
  std::string get_label() const;
  std::string let_label() const { return std::string(name) + " [PropertyLet]"; }
  std::string call_label() const { return std::string(name) + "()"; }
};

/// How errors leave the members of a class when they are called by name.
enum class Failures : uint8_t { Trapped, Raised };

/// What a class is beside its members.
struct ClassFacts {
  std::string_view name;
  Failures failures = Failures::Trapped;
  size_t record_size = 0;                         // of the class alone, without parts
  std::unique_ptr<Object> (*sample)() = nullptr;  // for codes that depend on the object
};

/// What `describe` makes of a class, its members checked against its records.
template <size_t N>
struct MembersTable {
  ClassFacts facts;
  std::array<Member, N> members;
};

struct ClassInfo : ClassFacts {
  std::vector<Member> members;   // interface order
  std::vector<Member> reserved;  // stored fields that the interface has not; kept as they are

  explicit ClassInfo(const ClassFacts& facts) : ClassFacts(facts) {}
  template <size_t N>
  explicit ClassInfo(const MembersTable<N>& table) : ClassInfo(table.facts) {
    add(table.members);
  }

  /// Number of a member in interface order, from 0; -1 for a name that the class has not. Letter case does not matter.
  int number(std::string_view member) const;
  /// As `number`; error `NoSuchMember` names the nearest right name.
  const Member& find(std::string_view member) const;
  void add(const Member& member) { add({&member, 1}); }
  /// Members after those that there are.
  void add(std::span<const Member> more);

 private:
  std::vector<int16_t> slots_;  // open addressing over the folded names
};

/// The member that hands out the part of a name ("Wall" or "GetWall"), null where there is none.
const Member* find_part(const ClassInfo& info, std::string_view name);
/// "Wall(2).", what stands before the members of a part when a person reads them.
std::string part_prefix(const Member& part, int number);

/// Calls `action` on every stored field of an object and of the parts it owns, in interface order.
using FieldAction = std::function<void(Object& owner, const Member& field, const std::string& prefix)>;
void for_each_field(Object& object, const FieldAction& action, const std::string& prefix = {});

/// Calls `action` on every element's subscripts, the first varying fastest; once with none for a plain property.
void for_each_element(const Member& member, const std::function<void(Subscripts)>& action);

/// "Name(2)" as a person writes one element.
std::string element_name(const Member& member, Subscripts subscripts);

}  // namespace tarn
