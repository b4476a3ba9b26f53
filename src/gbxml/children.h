// The children of an element, found in one pass, and which of them were taken.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "gbxml/document.h"
#include "gbxml/tally.h"

namespace tarn {

/// Why children of a name are left out.
struct LeftOut {
  std::string_view name;
  const char* reason;
};

class Children {
 public:
  explicit Children(Element parent);

  /// The first of that name; null for none.
  Element first(std::string_view name) const;
  void take(std::string_view name) { mark(name, true); }
  void take(Element element);
  void leave(std::string_view name) { mark(name, false); }
  /// Each as "Space/Area", taken or left out, for the reason of its name or else `otherwise`.
  void count(const GbxmlDocument& document, Tally& tally, std::span<const LeftOut> reasons,
             const char* otherwise) const;

 private:
  struct Child {
    std::string_view name;
    Element element;
    bool is_taken;
  };
  void mark(std::string_view name, bool is_taken);

  Element parent_;
  std::vector<Child> all_;
};

}  // namespace tarn
