// JSON objects with nothing nested in them, as the messages of the room service are. Plain functions of
// values; any thread.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace Corvanta::Engine {

// What is nested is turned away before the parser spends time on its depth. Nothing, unless it is an object.
[[nodiscard]] std::optional<nlohmann::json> ParseFlatObject(const std::string& json);

// Bytes that are no UTF-8 are left out.
[[nodiscard]] std::string WriteJson(const nlohmann::json& object);

}  // namespace Corvanta::Engine
