#include "gbxml/children.h"

#include <algorithm>

namespace tarn {

Children::Children(Element parent) : parent_(parent) {
  for (Element child = parent.first_child(); child; child = child.next_sibling()) {
    if (child.type() == pugi::node_element) all_.push_back({name_of(child), child, false});
  }
}

Element Children::first(std::string_view name) const {
  const auto found = std::ranges::find(all_, name, &Child::name);
  return found == all_.end() ? Element{} : found->element;
}

void Children::take(Element element) {
  if (const auto found = std::ranges::find(all_, element, &Child::element); found != all_.end()) found->is_taken = true;
}

void Children::mark(std::string_view name, bool is_taken) {
  for (Child& child : all_) {
    if (child.name == name) child.is_taken = is_taken;
  }
}

void Children::count(const GbxmlDocument& document, Tally& tally, std::span<const LeftOut> reasons,
                     const char* otherwise) const {
  const std::string parent = std::string(name_of(parent_)) + "/";
  for (const Child& child : all_) {
    const std::string name = parent + std::string(child.name);
    tally.found(name);
    if (child.is_taken) {
      tally.taken(name);
      continue;
    }
    const auto row = std::ranges::find(reasons, child.name, &LeftOut::name);
    tally.left(document, child.element, name, row == reasons.end() ? otherwise : row->reason);
  }
}

}  // namespace tarn
