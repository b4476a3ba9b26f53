// Members called by name or number. Here, and nowhere else, the failures of a class take their classic form:
// a trapping class logs and returns its empty value, a raising class throws with its source filled in.
#pragma once

#include "tarn/reflect/members.h"

namespace tarn {

/// The value of a property. A wrong kind of member and a wrong number of subscripts throw in every class: the call
/// itself is wrong.
void get_property(Object& object, const Member& member, Subscripts subscripts, Value& out);
void let_property(Object& object, const Member& member, Subscripts subscripts, const Value& value);

/// Calls a method; `arguments` may leave out optional ones at the end, in/out arguments come back in place.
void call_method(Object& object, const Member& member, std::vector<Value>& arguments, Value& result);

/// Sets the listener of an event; an empty one removes it.
void listen(Object& object, const Member& member, Listener listener);

/// Called in a catch block: throws on with the class and the procedure label as the source, unless the class traps.
void settle(const ClassInfo& info, std::string_view label);

/// The source of a raising class's error: its name and the procedure label, as the log has it: "BLR_Boiler.Load()",
/// "BLR_Boiler.FuelType [PropertyLet]".
std::string source_of(const ClassInfo& info, std::string_view label);

/// The empty value of a type: false, 0, "", no object.
Value empty_value(ValueType type);

/// For clients that know the name only.
Value get_property(Object& object, std::string_view name, Subscripts subscripts = {});
void let_property(Object& object, std::string_view name, const Value& value, Subscripts subscripts = {});

}  // namespace tarn
