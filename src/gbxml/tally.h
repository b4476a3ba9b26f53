// Counts of what an import finds, takes and leaves; the account is made of it.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "gbxml/document.h"
#include "tarn/gbxml.h"

namespace tarn {

class Tally {
 public:
  void found(std::string_view element) { ++counts_of(element).first; }
  void taken(std::string_view element) { ++counts_of(element).second; }
  void drawn(std::string_view type, double area);
  void left(const GbxmlDocument& document, Element element, std::string_view name, const std::string& reason,
            double area = 0);
  /// Of one element; those that say the same are told once, with their number.
  void note(const GbxmlDocument& document, Element element, const std::string& text);
  void note(const std::string& text);
  void areas(const std::string& kind, const std::string& exposure, size_t count, double area, double conductance);

  GbxmlAccount account;  // counts of entities, floor area and conductance are set here directly
  /// Brings the rest into the account.
  void finish();

 private:
  struct Notes {
    std::string first;
    size_t count = 0, order = 0;
  };
  std::pair<size_t, size_t>& counts_of(std::string_view element) {
    const auto known = elements_.find(element);
    return known != elements_.end() ? known->second : elements_[std::string(element)];
  }

  std::map<std::string, std::pair<size_t, size_t>, std::less<>> elements_;
  std::map<std::string, GbxmlAccount::Drawn, std::less<>> drawn_;
  std::map<std::pair<std::string, std::string>, GbxmlAccount::Left> left_;
  std::map<std::pair<std::string, std::string>, GbxmlAccount::Areas> areas_;
  std::map<std::string, Notes> notes_;
};

}  // namespace tarn
