// HTML as text: what the sections of the report are made of.
#pragma once

#include <string>
#include <vector>

namespace tarn::html {

/// With the characters that mean something in HTML replaced, and control characters left out.
std::string escaped(const std::string& text);

/// An element with markup inside; `attributes` as they stand in the tag.
std::string element(const std::string& name, const std::string& content, const std::string& attributes = {});
std::string paragraph(const std::string& text);
/// What the reader must not miss: a result that is stale, an entity that cannot be read.
std::string warning(const std::string& text);

/// A heading that opens and closes what stands below it.
std::string fold(const std::string& heading, const std::string& content, bool open);

/// A picture (SVG), which scrolls where the page is narrow. `name` is read to those who cannot see it.
std::string picture(const std::string& svg, const std::string& name);

/// A table that sorts by its heads, filters where it is long, and scrolls where the page is narrow.
struct Table {
  struct Head {
    std::string text, unit = {};
    bool number = false;  // aligned to the right
  };
  std::string caption;
  std::vector<Head> heads;
  std::vector<std::vector<std::string>> rows;  // texts; the first of a row names it

  /// `none` in its place where there are no rows.
  std::string html(const std::string& none) const;
};

}  // namespace tarn::html
