#include "engine/roomservice/FlatJson.h"

#include <utility>

namespace Corvanta::Engine {

namespace {

bool IsFlat(const std::string& json) {
    int depth = 0;
    bool inText = false;
    for (std::size_t at = 0; at < json.size(); ++at) {
        const char c = json[at];
        if (inText) {
            if (c == '\\') ++at;
            if (c == '"') inText = false;
        } else if (c == '"') {
            inText = true;
        } else if (c == '{' || c == '[') {
            if (++depth > 1) return false;
        } else if (c == '}' || c == ']') {
            --depth;
        }
    }
    return true;
}

}  // namespace

std::optional<nlohmann::json> ParseFlatObject(const std::string& json) {
    if (!IsFlat(json)) return std::nullopt;
    nlohmann::json object = nlohmann::json::parse(json, nullptr, false);
    if (!object.is_object()) return std::nullopt;
    return object;
}

std::string WriteJson(const nlohmann::json& object) {
    return object.dump(-1, ' ', false, nlohmann::json::error_handler_t::ignore);
}

}  // namespace Corvanta::Engine
