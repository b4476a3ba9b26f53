// What the examples of the help set, for each kind: an engineer's everyday values.
#pragma once

#include <string>
#include <string_view>

namespace tarn::cli {

struct Example {
  std::string group;
  std::string start;           // options of `new`, with a blank after them
  std::string name;            // of the entity that is made
  std::string first, second;   // assignments
  std::string where, columns;  // of a list
  std::string call = {};       // a method with its values; empty where a kind has none
};

/// Of a kind without a row: an example that sets the name alone.
const Example& example_of(std::string_view group);

}  // namespace tarn::cli
