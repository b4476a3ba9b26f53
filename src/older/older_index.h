// The index database of a project as the older engine kept it, a Jet 3 or Jet 4 file, read in a process of its own: a
// damaged file may end that, and nothing else.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tarn/platform/cell.h"

namespace tarn::older {

/// `type` is the word of the older engine's user interface: "Integer", "Yes/No", "Text".
struct Column {
  std::string name, type;
};

/// Rows in no order. Booleans are -1 and 0; dates, money and bytes, which no table of a project has, are texts.
struct Table {
  std::string name;
  std::vector<Column> columns;
  std::vector<std::vector<Cell>> rows;
};

struct Index {
  std::string format;  // "Jet 4"
  std::vector<Table> tables;
  std::vector<std::pair<std::string, std::string>> unreadable;  // tables, and why; "" for the file as a whole
  std::vector<std::string> notes;                               // a linked table, another code page
};

/// Errors `FileNotFound`, and `UnknownFormat` for a file that is no Jet database at all.
Index read_index(const std::string& path);

}  // namespace tarn::older
