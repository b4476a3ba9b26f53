#include "report/html.h"

#include <algorithm>

namespace tarn::html {

std::string escaped(const std::string& text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) {
    if (c == '&')
      out += "&amp;";
    else if (c == '<')
      out += "&lt;";
    else if (c == '>')
      out += "&gt;";
    else if (c == '"')
      out += "&quot;";
    else if (static_cast<unsigned char>(c) >= 0x20 && c != 0x7F)
      out += c;
  }
  return out;
}

std::string element(const std::string& name, const std::string& content, const std::string& attributes) {
  return "<" + name + (attributes.empty() ? "" : " " + attributes) + ">" + content + "</" + name + ">\n";
}

std::string paragraph(const std::string& text) { return element("p", escaped(text)); }

std::string warning(const std::string& text) { return element("p", escaped(text), "class=\"warning\""); }

std::string fold(const std::string& heading, const std::string& content, bool open) {
  return element("details", "<summary><h3>" + escaped(heading) + "</h3></summary>\n" + content, open ? "open" : "");
}

namespace {

/// A part of the page with a scroll bar of its own, which the keyboard reaches.
std::string scrolling(const std::string& content, const std::string& kind, const std::string& name) {
  return element("div", content,
                 "class=\"" + kind + "\" role=\"group\" tabindex=\"0\" aria-label=\"" + escaped(name) + "\"");
}

}  // namespace

std::string picture(const std::string& svg, const std::string& name) {
  std::string named = svg;
  if (named.starts_with("<svg ")) named.insert(5, "role=\"img\" aria-label=\"" + escaped(name) + "\" ");
  return scrolling(named, "picture", name);
}

std::string Table::html(const std::string& none) const {
  if (rows.empty()) return paragraph(none);
  std::string out = "<table>\n<caption>" + escaped(caption) + "</caption>\n<thead><tr>";
  for (const Head& head : heads) {
    out += std::string("<th scope=\"col\"") + (head.number ? " class=\"n\"" : "") + ">" + escaped(head.text) +
           (head.unit.empty() ? "" : " <small>" + escaped(head.unit) + "</small>") + "</th>";
  }
  out += "</tr></thead>\n<tbody>\n";
  for (const auto& row : rows) {
    out += "<tr>";
    for (size_t i = 0; i < row.size(); ++i) {
      const std::string side = i < heads.size() && heads[i].number ? " class=\"n\"" : "";
      out += i == 0 ? "<th scope=\"row\"" + side + ">" + escaped(row[i]) + "</th>"
                    : "<td" + side + ">" + escaped(row[i]) + "</td>";
    }
    out += "</tr>\n";
  }
  return scrolling(out + "</tbody>\n</table>\n", "table", caption);
}

}  // namespace tarn::html
