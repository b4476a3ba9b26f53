#include "gbxml/document.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "gbxml/unit_names.h"
#include "tarn/base/codepage.h"
#include "tarn/base/error.h"

namespace tarn {
namespace {

/// Products and quotients of such numbers fit the records' 32-bit reals.
constexpr double kLargest = 1e12, kLeast = 1e-12;

/// The units of the file, by what they are for.
constexpr struct {
  const char* attribute;
  std::string_view unit;
} kFileUnits[]{{"lengthUnit", "ft"},
               {"areaUnit", "ft2"},
               {"volumeUnit", "ft3"},
               {"temperatureUnit", "F"},
               {"temperatureUnit", "delta F"}};

}  // namespace

std::string_view name_of(Element element) {
  const std::string_view name = element.name();
  const size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

Element child(Element parent, std::string_view name) {
  for (Element element = parent.first_child(); element; element = element.next_sibling()) {
    if (is_named(element, name)) return element;
  }
  return {};
}

std::string_view attribute(Element element, const char* name) { return element.attribute(name).value(); }
std::string_view text_of(Element element) {
  constexpr std::string_view kSpace = " \t\r\n";
  const std::string_view text = element.child_value();
  if (!text.empty() && text.front() > ' ' && text.back() > ' ') return text;
  const size_t first = text.find_first_not_of(kSpace);
  return first == std::string_view::npos ? std::string_view{}
                                         : text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}
std::string_view child_text(Element parent, std::string_view name) { return text_of(child(parent, name)); }

GbxmlDocument::GbxmlDocument(std::string text) : text_(std::move(text)) {
  for (size_t end = text_.find('\n'); end != std::string::npos; end = text_.find('\n', end + 1))
    line_ends_.push_back(end);
  // A text is in its element, so that a coordinate has one node instead of two.
  const pugi::xml_parse_result parsed = document_.load_buffer_inplace(
      text_.data(), text_.size(), pugi::parse_default | pugi::parse_embed_pcdata, pugi::encoding_utf8);
  if (!parsed)
    fail(ErrorNumber::UnknownFormat,
         "line " + std::to_string(line_of_place(parsed.offset)) + ": this is not XML: " + parsed.description());
  root_ = document_.document_element();
  if (name_of(root_) != "gbXML")
    refuse(root_, "the root element is \"" + std::string(root_.name()) + "\"; a gbXML file has \"gbXML\"");
  for (const auto& [name, unit] : kFileUnits) {
    if (!root_.attribute(name))
      refuse(root_, "the attribute " + std::string(name) + " is missing, so that numbers have no unit");
    if (!from_gbxml_unit(1, attribute(root_, name), unit))
      refuse(root_,
             std::string(name) + " is \"" + root_.attribute(name).value() + "\", which is no unit of gbXML for it");
  }
  feet_ = *from_gbxml_unit(1, attribute(root_, "lengthUnit"), "ft");
  campus_ = child(root_, "Campus");
  if (!campus_) refuse(root_, "there is no Campus, so that there is nothing to take");
  add_children(root_);
  add_children(campus_);
  const std::vector<Element> buildings = all("Building");
  for (const Element building : buildings) add_children(building);
}

void GbxmlDocument::add_children(Element parent) {
  for (const Element element : parent.children()) {
    if (element.type() != pugi::node_element) continue;
    const std::string_view name = name_of(element);
    Kind& kind = kinds_[name];
    kind.all.push_back(element);
    if (name == "Surface") continue;  // nothing refers to one
    const std::string_view id = attribute(element, "id");
    if (!id.empty() && !kind.by_id.try_emplace(id, element).second) doubles_.push_back(element);
  }
}

const GbxmlDocument::Kind* GbxmlDocument::kind(std::string_view name) const {
  const auto found = kinds_.find(name);
  return found == kinds_.end() ? nullptr : &found->second;
}

const std::vector<Element>& GbxmlDocument::all(std::string_view name) const {
  static const std::vector<Element> none;
  const Kind* const found = kind(name);
  return found ? found->all : none;
}

Element GbxmlDocument::first(std::string_view name) const {
  const std::vector<Element>& found = all(name);
  return found.empty() ? Element{} : found.front();
}

std::vector<std::string_view> GbxmlDocument::names() const {
  std::vector<std::string_view> names;
  for (const auto& [name, kind] : kinds_) names.push_back(name);
  return names;
}

Element GbxmlDocument::by_id(std::string_view name, std::string_view id) const {
  const Kind* const of_name = kind(name);
  if (!of_name) return {};
  const auto found = of_name->by_id.find(id);
  return found == of_name->by_id.end() ? Element{} : found->second;
}

size_t GbxmlDocument::line_of_place(ptrdiff_t offset) const {
  return 1 +
         static_cast<size_t>(std::ranges::lower_bound(line_ends_, static_cast<size_t>(std::max<ptrdiff_t>(offset, 0))) -
                             line_ends_.begin());
}

size_t GbxmlDocument::line_of(Element element) const { return line_of_place(element.offset_debug()); }

std::string GbxmlDocument::place(Element element) const {
  Element named = element;
  while (named.parent() && attribute(named, "id").empty()) named = named.parent();
  std::string place = "line " + std::to_string(line_of(element)) + ", " + std::string(name_of(element));
  if (named == element) return place + " " + std::string(attribute(named, "id"));
  if (named && !attribute(named, "id").empty())
    place += " of " + std::string(name_of(named)) + " " + std::string(attribute(named, "id"));
  return place;
}

void GbxmlDocument::refuse(Element element, const std::string& why) const {
  fail(ErrorNumber::UnknownFormat, place(element) + ": " + why);
}

double GbxmlDocument::number(Element element) const {
  std::string_view text = text_of(element);
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value))
    refuse(element, "found \"" + std::string(text) + "\", wanted a number");
  if (std::abs(value) > kLargest) refuse(element, "found " + std::string(text) + ", wanted a number up to 1e12");
  return std::abs(value) < kLeast ? 0 : value;
}

std::string_view GbxmlDocument::unit_of_file(std::string_view unit) const {
  for (const auto& row : kFileUnits) {
    if (row.unit == unit) return attribute(root_, row.attribute);
  }
  return {};
}

std::optional<double> GbxmlDocument::value(Element element, std::string_view unit) const {
  if (!element || text_of(element).empty()) return {};
  std::string_view name = attribute(element, "unit");
  if (name.empty()) name = unit_of_file(unit);
  if (name.empty()) refuse(element, "the unit is missing");
  const auto value = from_gbxml_unit(number(element), name, unit);
  if (!value) refuse(element, "the unit \"" + std::string(name) + "\" is none of gbXML for this");
  return value;
}

std::optional<double> GbxmlDocument::child_value(Element parent, std::string_view name, std::string_view unit) const {
  return value(child(parent, name), unit);
}

double GbxmlDocument::feet(Element geometry) const {
  const std::string_view own = attribute(geometry, "unit");
  if (own.empty()) return feet_;
  const auto feet = from_gbxml_unit(1, own, "ft");
  if (!feet) refuse(geometry, "the unit \"" + std::string(own) + "\" is no length");
  return *feet;
}

}  // namespace tarn
