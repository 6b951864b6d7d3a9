#include "engine/connections/ChatMessage.h"

#include <cstdint>
#include <nlohmann/json.hpp>

#include "engine/Engine.h"

namespace Corvanta::Engine {

namespace {

using nlohmann::json;
using std::chrono::milliseconds;
using std::chrono::system_clock;

constexpr const char* kType = "chat";
// Every character of a text may come as six, and some more stands around it. Longer ones are not looked into.
constexpr std::size_t kLongestMessage = 16 * kLongestChat;
// A line may have waited for a channel that long.
constexpr std::chrono::hours kOldest{24};

bool IsBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// No byte of a character that begins before the end is left behind.
void CutBetweenCharacters(std::string& text, std::size_t length) {
    if (text.size() <= length) return;
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) --length;
    text.resize(length);
}

const json* Member(const json& object, const char* name) {
    const auto found = object.is_object() ? object.find(name) : object.end();
    return object.is_object() && found != object.end() ? &*found : nullptr;
}

system_clock::time_point TimeOf(const json* sent, system_clock::time_point now) {
    if (sent == nullptr || !sent->is_number_integer()) return now;
    const auto latest = std::chrono::duration_cast<milliseconds>(now.time_since_epoch());
    const milliseconds time(sent->get<std::int64_t>());
    if (time > latest || time < latest - kOldest) return now;
    return system_clock::time_point(time);
}

}  // namespace

std::optional<std::string> WriteChat(const ChatMessage& message) {
    if (message.text.size() > kLongestChat || IsBlank(message.text)) return std::nullopt;
    const auto time = std::chrono::duration_cast<milliseconds>(message.time.time_since_epoch());
    try {
        return json{{"type", kType}, {"message", {{"text", message.text}, {"time", time.count()}}}}.dump();
    } catch (const json::exception&) {
        // It is no UTF-8, which JSON cannot carry.
        return std::nullopt;
    }
}

std::optional<ChatMessage> ReadChat(std::string_view text, system_clock::time_point now) {
    // Most messages are something else and may be large, so that is seen without reading them.
    if (text.size() > kLongestMessage || text.find("\"chat\"") == std::string_view::npos) return std::nullopt;
    const json message = json::parse(text, nullptr, false);
    const json* const type = Member(message, "type");
    const json* const body = Member(message, "message");
    const json* const said = body != nullptr ? Member(*body, "text") : nullptr;
    if (type == nullptr || *type != kType || said == nullptr || !said->is_string()) return std::nullopt;
    ChatMessage chat{.text = said->get<std::string>(), .time = TimeOf(Member(*body, "time"), now)};
    CutBetweenCharacters(chat.text, kLongestChat);
    if (IsBlank(chat.text)) return std::nullopt;
    return chat;
}

}  // namespace Corvanta::Engine
