// A gbXML file in memory: its elements by id, values in the units of this product, and the line of each element.
#pragma once

#include <map>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarn {

using Element = pugi::xml_node;

class GbxmlDocument {
 public:
  /// Errors `UnknownFormat`, with the line, for what is not XML, another root, and units that are missing or unknown.
  /// Elements may lie at any depth: neither parser nor readers recurse.
  explicit GbxmlDocument(std::string text);

  Element campus() const { return campus_; }
  /// The children of the root, of the campus and of its buildings that have this name, in the order of the file.
  const std::vector<Element>& all(std::string_view name) const;
  /// The first of them, null for none.
  Element first(std::string_view name) const;
  /// Their names.
  std::vector<std::string_view> names() const;
  /// Of those that others refer to. Null for none.
  Element by_id(std::string_view name, std::string_view id) const;
  /// Ids that two elements of a kind share; the first counts.
  const std::vector<Element>& doubles() const { return doubles_; }

  size_t line_of(Element element) const;
  /// "line 12, Surface aim0123"
  std::string place(Element element) const;
  [[noreturn]] void refuse(Element element, const std::string& why) const;

  /// The element's number in a unit of this product; its own unit, else that of the file. Nothing for an empty element.
  /// Error `UnknownFormat` for what is no number, and for a unit that is missing or of something else.
  std::optional<double> value(Element element, std::string_view unit) const;
  /// The same of the child of that name; nothing where there is none.
  std::optional<double> child_value(Element parent, std::string_view name, std::string_view unit) const;
  /// A number without a unit.
  double number(Element element) const;
  /// ft of one unit of the coordinates below an element that may have a unit of its own.
  double feet(Element geometry) const;

 private:
  struct Kind {
    std::vector<Element> all;
    std::unordered_map<std::string_view, Element> by_id;
  };
  void add_children(Element parent);
  const Kind* kind(std::string_view name) const;
  std::string_view unit_of_file(std::string_view unit) const;

  size_t line_of_place(ptrdiff_t offset) const;

  std::string text_;  // the parser works in it
  std::vector<size_t> line_ends_;
  pugi::xml_document document_;
  Element root_, campus_;
  std::map<std::string_view, Kind> kinds_;
  std::vector<Element> doubles_;
  double feet_ = 1;
};

/// "Surface", without a prefix of a namespace.
std::string_view name_of(Element element);
/// Whatever the prefix of its name.
inline bool is_named(Element element, std::string_view name) {
  const std::string_view own = element.name();
  return own.ends_with(name) && (own.size() == name.size() || own[own.size() - name.size() - 1] == ':');
}
/// The first child of that name; null for none.
Element child(Element parent, std::string_view name);
std::string_view attribute(Element element, const char* name);
/// Without the white space around it.
std::string_view text_of(Element element);
std::string_view child_text(Element parent, std::string_view name);

/// Calls `visit` for each child of that name.
template <typename F>
void each_child(Element parent, std::string_view name, F visit) {
  for (Element element = parent.first_child(); element; element = element.next_sibling()) {
    if (is_named(element, name)) visit(element);
  }
}

}  // namespace tarn
