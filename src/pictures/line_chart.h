// Lines over two axes, with a key below: for curves of equipment.
#pragma once

#include <string>
#include <vector>

namespace tarn::svg {

struct Line {
  std::string name, color;
  struct Point {
    double x, y;
  };
  std::vector<Point> points;
};

struct LineChart {
  double left, top, wide, high;   // of the page, between the axes
  std::string title, across, up;  // what is shown, and of each axis the quantity with its unit
  bool from_zero = false;         // the vertical axis
  std::vector<Line> lines;
};
std::string drawn(const LineChart& chart);
/// From the top of a chart to the end of its key.
double height_of(const LineChart& chart);

}  // namespace tarn::svg
