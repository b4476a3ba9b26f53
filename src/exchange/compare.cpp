#include "tarn/compare.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <nlohmann/json.hpp>

#include "exchange/comparison.h"
#include "project/kinds.h"
#include "reflect/json.h"
#include "storage/kind.h"
#include "storage/links.h"
#include "tarn/code_names.h"
#include "tarn/member_units.h"

namespace tarn {
namespace {

/// A field of an object or of one of its parts.
struct Place {
  Object* owner;
  const Member* field;
  std::string prefix;  // "Layer(2)."

  std::string name() const { return prefix + std::string(field->name); }
};

std::vector<Place> places_of(Object& object) {
  std::vector<Place> all;
  for_each_field(object, [&](Object& owner, const Member& field, const std::string& prefix) {
    all.push_back({&owner, &field, prefix});
  });
  return all;
}

bool same(const Value& first, const Value& second, double tolerance) {
  if (first.index() != second.index()) return false;
  const ValueType type = type_of(first);
  if (type == ValueType::Text) return trimmed(text_from(first)) == trimmed(text_from(second));
  if (type != ValueType::Real32 && type != ValueType::Real64) return first == second;
  const double a = real_from(first), b = real_from(second);
  if (std::isnan(a) || std::isnan(b)) return std::isnan(a) == std::isnan(b);
  return a == b || std::abs(a - b) <= tolerance * std::max(std::abs(a), std::abs(b));
}

/// Empty where the value is no code, or one that has no name.
std::string code_text(const Place& place, const Value& value) {
  const auto* code = std::get_if<int16_t>(&value);
  if (!code) return {};
  const auto labels = codes_of(*place.owner, *place.field);
  const auto label = std::ranges::find(labels, *code, &Label::code);
  return label == labels.end() ? std::string() : std::string(label->text.empty() ? label->name : label->text);
}

/// The same field of the same part.
bool alike(const Place& a, const Place& b) { return a.field == b.field && a.prefix == b.prefix; }

class Comparison {
 public:
  Comparison(Comparable& first, Comparable& second, const CompareOptions& options)
      : first_(first), second_(second), options_(options) {}

  std::vector<Difference> run() {
    for (size_t kind = 0; kind < entity_kinds().size(); ++kind) entities(kind);
    preferences();
    return std::move(all_);
  }

 private:
  void entities(size_t kind) {
    kind_ = word_of(kind);
    std::multimap<std::string_view, int16_t> others;
    for (const auto& [index, name] : second_.entries(kind)) others.emplace(name, index);
    for (const auto& [index, name] : first_.entries(kind)) {
      name_ = name;
      const auto other = others.find(name);
      if (other == others.end()) {
        one_side(true);
        continue;
      }
      objects(first_.entity(kind, index), second_.entity(kind, other->second));
      others.erase(other);
    }
    for (const auto& [index, name] : second_.entries(kind)) {
      const auto left = std::ranges::find_if(others, [&, at = index](const auto& other) { return other.second == at; });
      if (left == others.end()) continue;
      name_ = name;
      one_side(false);
    }
  }

  void preferences() {
    Object* const first = first_.preferences();
    Object* const second = second_.preferences();
    kind_ = "Preferences";
    name_.clear();
    if (first && second)
      objects(*first, *second);
    else if (first || second)
      one_side(first != nullptr);
  }

  void one_side(bool is_first) {
    Difference found{kind_, name_, {}, {}, {}, {}};
    (is_first ? found.first : found.second) = true;
    all_.push_back(std::move(found));
  }

  void objects(Object& first, Object& second) {
    const std::vector<Place> ours = places_of(first), theirs = places_of(second);
    std::map<std::string, const Place*> by_name;
    if (std::ranges::equal(ours, theirs, alike)) {
      for (size_t i = 0; i < ours.size(); ++i) fields(&ours[i], &theirs[i]);
      return;
    }
    for (const Place& place : theirs) by_name.emplace(place.name(), &place);
    for (const Place& place : ours) {
      const auto other = by_name.find(place.name());
      fields(&place, other == by_name.end() ? nullptr : other->second);
      if (other != by_name.end()) by_name.erase(other);
    }
    for (const Place& place : theirs) {
      if (by_name.contains(place.name())) fields(nullptr, &place);
    }
  }

  /// Of one field on both sides, or on one where the other has fewer parts.
  void fields(const Place* first, const Place* second) {
    const Place& any = first ? *first : *second;
    for_each_element(*any.field, [&](Subscripts at) {
      Value ours = first ? value(first_, *first, at) : Value();
      Value theirs = second ? value(second_, *second, at) : Value();
      if (same(ours, theirs, options_.tolerance)) return;
      const std::string text = first ? code_text(*first, ours) : "", other = second ? code_text(*second, theirs) : "";
      all_.push_back({kind_, name_, any.prefix + element_name(*any.field, at),
                      std::string(unit_of(*any.owner, *any.field)), std::move(ours), std::move(theirs), text, other});
    });
  }

  /// Indexes differ between projects, so that a reference is the name of what it leads to.
  Value value(Comparable& side, const Place& place, Subscripts at) const {
    Value value;
    place.field->get_stored(*place.owner, at, value);
    if (const auto* text = std::get_if<std::string>(&value)) return std::string(trimmed(without_padding(*text)));
    if (place.field->refers_to.empty()) return value;
    const std::string_view target = place.field->target_of(*place.owner, at);
    const auto kind = place_of(target);
    const int64_t index = integer_from(value, INT32_MIN, INT32_MAX);
    if (!kind || index == 0) return value;
    for (const auto& [each, name] : side.entries(*kind)) {
      if (each == index) return name;
    }
    return value;
  }

  Comparable& first_;
  Comparable& second_;
  const CompareOptions& options_;
  std::string kind_, name_;  // of what is compared now
  std::vector<Difference> all_;
};

}  // namespace

bool same_content(Object& first, Object& second) {
  const std::vector<Place> ours = places_of(first), theirs = places_of(second);
  const auto equal = [](const Place& a, const Place& b) {
    if (!alike(a, b)) return false;
    bool all = true;
    for_each_element(*a.field, [&](Subscripts at) {
      Value one, other;
      a.field->get_stored(*a.owner, at, one);
      b.field->get_stored(*b.owner, at, other);
      all = all && same(one, other, CompareOptions().tolerance);
    });
    return all;
  };
  return std::ranges::equal(ours, theirs, equal);
}

std::vector<Difference> compare(Comparable& first, Comparable& second, const CompareOptions& options) {
  return Comparison(first, second, options).run();
}

std::string differences_json(const std::vector<Difference>& differences) {
  Json all = Json::array();
  for (const Difference& each : differences) {
    all.push_back({{"kind", each.kind},
                   {"name", each.name},
                   {"property", each.property},
                   {"unit", each.unit},
                   {"first", to_json(each.first)},
                   {"first_text", each.first_text},
                   {"second", to_json(each.second)},
                   {"second_text", each.second_text}});
  }
  return json_text(all, 2);
}

}  // namespace tarn
