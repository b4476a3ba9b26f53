// What of the shading bodies of a drawing an external shade of a window can hold: an overhang above it and a fin on
// each side.
#pragma once

#include <compare>
#include <map>
#include <vector>

#include "gbxml/document.h"
#include "gbxml/geometry.h"

namespace tarn {

/// In ft, hundredths; as the record of a shade has them.
struct Shading {
  double reveal = 0;
  double overhang = 0, overhang_height = 0, overhang_right = 0, overhang_left = 0;
  double right_separation = 0, right_fin = 0, right_height = 0;
  double left_separation = 0, left_fin = 0, left_height = 0;

  bool is_none() const { return reveal <= 0 && overhang <= 0 && right_fin <= 0 && left_fin <= 0; }
  auto operator<=>(const Shading&) const = default;
};

class ShadingBodies {
 public:
  struct Body {
    Element element;
    std::vector<Point> loop;
    Facing facing;
    bool is_used = false;
  };

  void add(Element element, std::vector<Point> loop);
  /// Of a window in an upright wall: bodies that begin at the wall, an overhang above its head and fins beside it, each
  /// within 10 ft; of several the nearest. These count as used.
  Shading shading_of(const std::vector<Point>& window, const Facing& facing);
  const std::vector<Body>& bodies() const { return bodies_; }

 private:
  std::vector<Body> bodies_;
  std::map<std::pair<int, int>, std::vector<size_t>> cells_;  // places in bodies_ by square of the plan
};

}  // namespace tarn
