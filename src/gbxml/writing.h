// One export on its way: the document, what every part of it needs, and notes of what has no place in gbXML.
#pragma once

#include <pugixml.hpp>
#include <set>
#include <string>
#include <vector>

#include "gbxml/geometry.h"
#include "tarn/base/progress.h"
#include "tarn/project.h"

namespace tarn {

using Element = pugi::xml_node;

/// The shortest decimal that reads back the same, of a double to 9 places; without an exponent, which gbXML does not
/// take.
std::string decimal(float value);
std::string decimal(double value);
inline std::string numbered(const char* what, int number) { return std::string(what) + "-" + std::to_string(number); }

Element add(Element parent, const char* name);
/// With text, and with a unit where one is given.
Element add_text(Element parent, const char* name, const std::string& text);
Element add_value(Element parent, const char* name, double value, const char* unit = nullptr);
/// With an id and a Name.
Element add_named(Element parent, const char* element, const std::string& id, const std::string& name);
void set(Element element, const char* attribute, const std::string& value);
void add_loop(Element parent, const std::vector<Point>& points);

struct Writing {
  COM_ProjectData& project;
  Element root, campus, building;
  std::set<std::string> notes;
  std::set<std::string> ids;  // of what is written once and referred to

  void note(const std::string& text) { notes.insert(text); }
  std::vector<int16_t> indexes(const char* table) const;
};

void write_constructions(Writing& writing);
void write_windows(Writing& writing);
void write_schedules(Writing& writing);
void write_spaces(Writing& writing, const Progress& progress);
void write_systems(Writing& writing);

/// A construction that is a U-value alone; returns its id.
std::string plain_construction(Writing& writing, float u_value);
/// A door of the library as the construction of an opening, or of a glazed one as a window type.
struct DoorReference {
  const char* attribute;
  std::string id;
  double width, height;  // ft
};
DoorReference door_reference(Writing& writing, int16_t index);

}  // namespace tarn
