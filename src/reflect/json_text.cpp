#include "reflect/json_text.h"

#include <nlohmann/json.hpp>

namespace tarn {

Json parse_json(std::string_view text) { return Json::parse(text); }

std::string json_text(const Json& json, int indent) { return json.dump(indent); }

}  // namespace tarn
