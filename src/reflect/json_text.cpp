#include "reflect/json_text.h"

#include <nlohmann/json.hpp>

namespace tarn {

nlohmann::ordered_json parse_json(std::string_view text) { return nlohmann::ordered_json::parse(text); }

std::string json_text(const nlohmann::ordered_json& json, int indent) { return json.dump(indent); }

}  // namespace tarn
