#include "engine/webrtc/MainStreamMessage.h"

#include <nlohmann/json.hpp>

namespace Corvanta::Engine {

namespace {

using nlohmann::json;

constexpr const char* kType = "mainStream";
// Longer ones are not looked into: most messages are something else, and may be large.
constexpr std::size_t kLongestMessage = 1024;

}  // namespace

std::string WriteMainStream(const std::string& streamId) {
    const json message{{"type", kType}, {"message", {{"streamId", streamId}}}};
    return message.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::optional<std::string> ReadMainStream(const std::string& text) {
    if (text.size() > kLongestMessage || text.find(kType) == std::string::npos) return std::nullopt;
    const json message = json::parse(text, nullptr, false);
    const auto type = message.is_object() ? message.find("type") : message.end();
    if (!message.is_object() || type == message.end() || *type != kType) return std::nullopt;
    const auto body = message.find("message");
    if (body == message.end() || !body->is_object()) return std::nullopt;
    const auto id = body->find("streamId");
    if (id == body->end() || !id->is_string()) return std::nullopt;
    return id->get<std::string>();
}

}  // namespace Corvanta::Engine
