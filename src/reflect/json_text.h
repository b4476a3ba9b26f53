// JSON from text and to text. Parser and writer are compiled once, here: they are most of what the library costs a
// source.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace tarn {

/// Members stand in the order of the text.
using Json = nlohmann::ordered_json;

/// Throws the library's `parse_error`, which tells the place; error `UnknownFormat` for a text that nests too deep.
Json parse_json(std::string_view text);
/// On one line, or indented by `indent` blanks a level.
std::string json_text(const Json& json, int indent = -1);

}  // namespace tarn
