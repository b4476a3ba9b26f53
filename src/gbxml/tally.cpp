#include "gbxml/tally.h"

#include <algorithm>

namespace tarn {

void Tally::drawn(std::string_view type, double area) {
  const auto known = drawn_.find(type);
  GbxmlAccount::Drawn& row = known != drawn_.end() ? known->second : drawn_[std::string(type)];
  if (row.count == 0) row.type = type;
  ++row.count;
  row.area += area;
}

void Tally::left(const GbxmlDocument& document, Element element, std::string_view name, const std::string& reason,
                 double area) {
  GbxmlAccount::Left& row = left_[{std::string(name), reason}];
  if (row.count++ == 0) {
    row.element = name;
    row.reason = reason;
    row.line = document.line_of(element);
  }
  row.area += area;
}

void Tally::note(const GbxmlDocument& document, Element element, const std::string& text) {
  Notes& notes = notes_[text];
  if (notes.count++ > 0) return;
  notes.first = document.place(element) + ": " + text;
  notes.order = notes_.size();
}

void Tally::note(const std::string& text) {
  Notes& notes = notes_[text];
  if (notes.count++ > 0) return;
  notes.first = text;
  notes.order = notes_.size();
}

void Tally::areas(const std::string& kind, const std::string& exposure, size_t count, double area, double conductance) {
  GbxmlAccount::Areas& row = areas_[{kind, exposure}];
  row.kind = kind;
  row.exposure = exposure;
  row.count += count;
  row.area += area;
  row.conductance += conductance;
}

void Tally::finish() {
  for (const auto& [element, counts] : elements_) account.elements.push_back({element, counts.first, counts.second});
  for (const auto& [key, row] : left_) account.left.push_back(row);
  for (const auto& [key, row] : areas_) account.areas.push_back(row);
  for (const auto& [type, row] : drawn_) account.drawn.push_back(row);
  std::vector<const Notes*> notes;
  for (const auto& [text, row] : notes_) notes.push_back(&row);
  std::ranges::sort(notes, {}, &Notes::order);
  for (const Notes* row : notes) {
    std::string line = row->first;
    if (row->count > 1) line += " (and " + std::to_string(row->count - 1) + (row->count == 2 ? " other)" : " others)");
    account.notes.push_back(std::move(line));
  }
}

}  // namespace tarn
