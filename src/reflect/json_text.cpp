#include "reflect/json_text.h"

#include <nlohmann/json.hpp>

#include "tarn/base/error.h"

namespace tarn {

Json parse_json(std::string_view text) {
  constexpr int kDeepest = 64;
  return Json::parse(text, [](int depth, Json::parse_event_t, const Json&) {
    if (depth > kDeepest)
      fail(ErrorNumber::UnknownFormat, "The text nests deeper than " + std::to_string(kDeepest) + " levels.");
    return true;
  });
}

std::string json_text(const Json& json, int indent) { return json.dump(indent); }

}  // namespace tarn
