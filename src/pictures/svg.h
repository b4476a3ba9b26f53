// Pictures (SVG) as text: what all of them are made of.
#pragma once

#include <string>
#include <vector>

namespace tarn::svg {

std::string number(double value, int decimals = 1);
std::string escaped(const std::string& text);
/// A text of so many letters at most, in UTF-8.
std::string shortened(const std::string& text, size_t letters);
/// `text` is markup already; `more` are attributes.
std::string label(double x, double y, const std::string& text, const std::string& more = "");
std::string path(const std::string& way, const std::string& more);

/// Colors from a share of 0 to one of 1, evenly spaced; red, green and blue of each from 0 to 255.
struct Color {
  double red, green, blue;
};
using Ramp = std::vector<Color>;
std::string color_of(const Ramp& ramp, double share);

/// An axis: values from `least` to `most`, marked in whole steps, at places from `from` to `to` of the page.
struct Scale {
  double least, most, step, from, to;

  double at(double value) const { return from + (to - from) * (value - least) / (most - least); }
  /// Calls `action` with the value of each mark.
  template <typename F>
  void each_mark(F action) const {
    for (int i = 0; least + i * step <= most + step / 100; ++i) action(least + i * step);
  }
};
/// Decimals that the marks of a scale need: 0.5 takes one.
int decimals_of(const Scale& scale);
/// Around the values, in about so many steps of 1, 2 or 5 times a power of ten.
Scale scale_around(double least, double most, int steps, double from, double to);

/// A quantity in both unit systems: the names, the factor from the one to the other, and how many decimals a
/// value has.
struct Unit {
  std::string name, si_name;
  double factor;
  int decimals, si_decimals;
};
/// The numbers of a vertical axis, with as many decimals as its steps need: IP units beside it, SI units in grey next
/// to them. `away` is -1 to the left of it and 1 to the right.
std::string upright_axis(const Scale& scale, double x, int away, const Unit& unit);

/// A self-contained picture on white: whom it shows as the heading, with a line below it. `title` is for the program
/// that shows the picture. `stale` says why what it shows is stale, on a line of its own; empty where it is not.
std::string page(double width, double height, double left, const std::string& title, const std::string& heading,
                 const std::string& line, const std::string& content, const std::string& stale = {});

}  // namespace tarn::svg
