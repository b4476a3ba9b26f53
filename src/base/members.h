// The public face of a class as data: its members in interface order. Every by-name face - C, Python, JSON, command
// line, reference pages - reads this table and nothing else. `base/describe.h` makes it from member pointers.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/labels.h"
#include "base/object.h"
#include "base/wire.h"

namespace tarn {

struct ClassInfo;

enum class MemberKind : uint8_t { Property, Method, Event };

/// Subscripts of an indexed property, in the order of its bounds.
using Subscripts = std::span<const int>;
using Arguments = std::span<Value>;
using Listener = std::function<void(Arguments)>;

struct Parameter {
  std::string_view name;
  ValueType type = ValueType::Empty;
  bool optional = false;
  bool by_reference = false;
  bool in_out = false;  // by reference, and comes back changed
};

struct Member {
  std::string_view name;
  std::string_view unit;         // "ft"; empty where the value has none or the name says it
  std::string_view stored_unit;  // of a converted field, in the record
  std::string_view refers_to;    // "Wall": the field holds the index of an entity of that kind, 0 for none; of several
                                 // kinds "Chiller Boiler", where the object tells which
  MemberKind kind = MemberKind::Property;
  ValueType type = ValueType::Empty;  // of the property, or of the method's result
  bool read_only = false;
  bool by_reference = false;          // the setter takes its argument by reference
  bool trimmed = false;               // the text is read without its blanks
  std::span<const Bounds> bounds;     // of an indexed property; empty for a plain one
  std::vector<Parameter> parameters;  // of a method or event
  std::span<const Label> labels;      // of a property that holds an enumeration's code
  std::string_view record;            // that has the stored field, where a class has several
  ptrdiff_t offset = -1;              // in the record, for a stored field; -1 for the others
  size_t size = 0;                    // of the stored field, all elements
  size_t stride = 0;                  // of a field of every record in a list, from one to the next
  size_t records = 0;                 // in that list
  size_t width = 0;                   // of one text, in characters

  void (*get)(const Object&, Subscripts, Value&) = nullptr;
  void (*get_stored)(const Object&, Subscripts, Value&) = nullptr;  // a text with all of its blanks
  void (*let)(Object&, Subscripts, const Value&) = nullptr;
  void (*let_stored)(Object&, Subscripts, const Value&) = nullptr;  // an exchange's: a code that is none is kept
  std::byte* (*place)(Object&) = nullptr;                           // of a stored field, for moves of whole arrays
  bool elsewhere =
      false;  // the record is reached by `->`: its place is another one for each object, or refused by a rule
  void (*call)(Object&, Arguments, Value&) = nullptr;
  void (*listen)(Object&, Listener) = nullptr;

  std::string get_label, let_label, call_label;  // procedure labels of the diagnostic log

  // Of a method that hands out a part which the object owns: the part's class, its name ("Wall" of GetWall), how many.
  const ClassInfo& (*part_info)() = nullptr;
  std::string_view part_name;
  int parts = 0;               // 0 where the number changes, and for other members
  bool numbered_part = false;  // the method takes the part's number, from 1
  Object& (*part)(Object&, int number) = nullptr;
  int (*part_count)(const Object&) = nullptr;    // set for parts alone
  void (*resize_parts)(Object&, int) = nullptr;  // where the number changes

  // Where they depend on the object: the codes of a property, and the kind that a reference is to, by the element's
  // place from 0.
  std::span<const Label> (*labels_for)(const Object&) = nullptr;
  std::string_view (*refers_by)(const Object&, size_t element) = nullptr;

  std::span<const Label> labels_of(const Object& object) const { return labels_for ? labels_for(object) : labels; }
  /// The kind that a reference of an object is to; empty for none.
  std::string_view target_of(const Object& object, size_t element) const {
    return refers_by ? refers_by(object, element) : refers_to;
  }
  std::string_view target_of(const Object& object, Subscripts at) const { return target_of(object, place_of(at)); }
  /// Of an element, from 0, the first subscript fastest.
  size_t place_of(Subscripts at) const;
  bool is_part() const { return part_count != nullptr; }
  bool in_row = false;  // kept in the index row alone
  bool stored() const { return offset >= 0; }
  /// Part of what an entity is, in an exchange.
  bool exchanged() const { return stored() || in_row; }
  bool indexed() const { return !bounds.empty(); }
  size_t elements() const;
};

/// How errors leave the members of a class when they are called by name.
enum class Failures : uint8_t { Trapped, Raised };

struct ClassInfo {
  std::string_view name;
  Failures failures = Failures::Trapped;
  std::vector<Member> members;   // interface order
  std::vector<Member> reserved;  // stored fields that the interface has not; kept as they are
  size_t record_size = 0;        // of the class alone, without parts

  /// Number of a member in interface order, from 0; -1 for a name that the class has not. Letter case does not matter.
  int number(std::string_view member) const;
  /// As `number`; error `NoSuchMember` names the nearest right name.
  const Member& find(std::string_view member) const;

  void index_names();

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
