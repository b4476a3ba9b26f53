#include "gbxml/writing.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "platform/host.h"
#include "tarn/platform/database.h"
#include "tarn/platform/recordset.h"

namespace tarn {
namespace {

template <typename T>
std::string fixed(T value) {
  char text[400];
  return {text, std::to_chars(text, text + sizeof text, value, std::chars_format::fixed).ptr};
}

/// XML has no place for control characters.
std::string printable(std::string text) {
  std::ranges::replace_if(
      text, [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
  return text;
}

}  // namespace

std::string decimal(float value) { return fixed(value); }
std::string decimal(double value) {
  constexpr double kSteps = 1e9;  // readers of XML Schema need not take more digits than 18
  const double rounded = std::round(value * kSteps) / kSteps;
  return fixed(rounded == 0 ? 0.0 : rounded);
}

Element add(Element parent, const char* name) { return parent.append_child(name); }

Element add_text(Element parent, const char* name, const std::string& text) {
  Element element = add(parent, name);
  element.append_child(pugi::node_pcdata).set_value(printable(text).c_str());
  return element;
}

Element add_value(Element parent, const char* name, double value, const char* unit) {
  const auto single = static_cast<float>(value);
  Element element = add_text(parent, name, static_cast<double>(single) == value ? decimal(single) : decimal(value));
  if (unit) set(element, "unit", unit);
  return element;
}

Element add_named(Element parent, const char* element, const std::string& id, const std::string& name) {
  Element added = add(parent, element);
  set(added, "id", id);
  add_text(added, "Name", name);
  return added;
}

void set(Element element, const char* attribute, const std::string& value) {
  element.append_attribute(attribute).set_value(value.c_str());
}

void add_loop(Element parent, const std::vector<Point>& points) {
  Element loop = add(add(parent, "PlanarGeometry"), "PolyLoop");
  for (const Point& at : points) {
    Element point = add(loop, "CartesianPoint");
    for (const double coordinate : {at.x, at.y, at.z}) add_value(point, "Coordinate", coordinate);
  }
}

std::vector<int16_t> Writing::indexes(const char* table) const {
  std::vector<int16_t> all;
  auto rows = host()
                  .database(project.IndexDBName())
                  ->OpenRecordset(std::string("SELECT nIndex FROM ") + table + " WHERE nIndex > 0 ORDER BY nIndex");
  for (; !rows.AtEof(); rows.MoveNext()) all.push_back(static_cast<int16_t>(rows.Fields("nIndex").integer()));
  return all;
}

}  // namespace tarn
