#include "reflect/json_text.h"

#include <nlohmann/json.hpp>

#include "tarn/base/error.h"

namespace tarn {

namespace {

/// The parser would go as deep as the text does.
void check_depth(std::string_view text) {
  constexpr int kDeepest = 64;
  int depth = 0;
  bool in_string = false;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '"') in_string = !in_string;
    if (in_string && c == '\\') ++i;
    if (in_string) continue;
    if ((c == '[' || c == '{') && ++depth > kDeepest)
      fail(ErrorNumber::UnknownFormat, "The text nests deeper than " + std::to_string(kDeepest) + " levels.");
    if (c == ']' || c == '}') --depth;
  }
}

}  // namespace

Json parse_json(std::string_view text) {
  check_depth(text);
  return Json::parse(text);
}

std::string json_text(const Json& json, int indent) { return json.dump(indent); }

}  // namespace tarn
