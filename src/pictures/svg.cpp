#include "pictures/svg.h"

#include <algorithm>
#include <cmath>

#include "base/decimals.h"

namespace tarn::svg {

std::string number(double value, int decimals) { return decimal_text(value, decimals); }

std::string escaped(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c == '&')
      out += "&amp;";
    else if (c == '<')
      out += "&lt;";
    else if (static_cast<unsigned char>(c) >= 0x20)
      out += c;
  }
  return out;
}

std::string shortened(const std::string& text, size_t letters) {
  size_t end = 0;
  for (size_t seen = 0; end < text.size(); ++end) {
    const bool begins = (static_cast<unsigned char>(text[end]) & 0xC0) != 0x80;
    if (begins && ++seen > letters) return text.substr(0, end) + "...";
  }
  return text;
}

std::string label(double x, double y, const std::string& text, const std::string& more) {
  return "<text x=\"" + number(x) + "\" y=\"" + number(y) + "\" " + more + ">" + text + "</text>\n";
}

std::string path(const std::string& way, const std::string& more) { return "<path d=\"" + way + "\" " + more + "/>\n"; }

std::string color_of(const Ramp& ramp, double share) {
  const double at = std::clamp(share, 0.0, 1.0) * static_cast<double>(ramp.size() - 1);
  const auto low = std::min(static_cast<size_t>(at), ramp.size() - 2);
  const double weight = at - static_cast<double>(low);
  const auto mixed = [&](double Color::*part) {
    return static_cast<int>(std::lround(ramp[low].*part * (1 - weight) + ramp[low + 1].*part * weight));
  };
  char text[8];
  std::snprintf(text, sizeof text, "#%02x%02x%02x", mixed(&Color::red), mixed(&Color::green), mixed(&Color::blue));
  return text;
}

int decimals_of(const Scale& scale) { return std::max(0, static_cast<int>(std::ceil(-std::log10(scale.step) - 1e-9))); }

Scale scale_around(double least, double most, int steps, double from, double to) {
  const double rough = std::max(most - least, 1e-9) / steps, power = std::pow(10, std::floor(std::log10(rough)));
  const double step = power * (rough > 5 * power ? 10 : rough > 2 * power ? 5 : rough > power ? 2 : 1);
  const double low = std::floor(least / step) * step;
  return {low, std::max(std::ceil(most / step) * step, low + step), step, from, to};
}

std::string upright_axis(const Scale& scale, double x, int away, const Unit& unit) {
  const std::string side = away < 0 ? "text-anchor=\"end\"" : "", grey = side + " fill=\"#666\"";
  const double near = x + away * 9, far = x + away * 62, head = scale.to - 14;
  const int between = decimals_of(scale);
  std::string out = label(near, head, unit.name, side) + label(far, head, unit.si_name, grey);
  scale.each_mark([&](double value) {
    const double y = scale.at(value);
    out += path("M" + number(x) + " " + number(y) + "h" + number(away * 5), "stroke=\"#333\"") +
           label(near, y + 4, number(value, between), side) +
           label(far, y + 4, number(value * unit.factor, unit.si_decimals), grey);
  });
  return out;
}

std::string page(double width, double height, double left, const std::string& title, const std::string& heading,
                 const std::string& line, const std::string& content, const std::string& stale) {
  const std::string size = number(width, 0) + "\" height=\"" + number(height, 0);
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + number(width, 0) + " " + number(height, 0) +
         "\" width=\"" + size + "\" font-family=\"Helvetica, Arial, sans-serif\" font-size=\"12\">\n" +
         "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n<title>" + escaped(title) + "</title>\n" +
         label(left, 26, escaped(heading), "font-size=\"18\" font-weight=\"bold\"") +
         label(left, 44, escaped(line), "fill=\"#666\"") +
         (stale.empty() ? "" : label(left, 62, "stale: " + escaped(stale), "fill=\"#c00\" font-weight=\"bold\"")) +
         content + "</svg>\n";
}

}  // namespace tarn::svg
