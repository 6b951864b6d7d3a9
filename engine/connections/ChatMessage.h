// A line of the room's chat as it goes through the data channels. The type is its own: whoever reads drawings
// or descriptions of videos takes it for unknown and lets it go. Plain functions of values.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Corvanta::Engine {

struct ChatMessage {
    // UTF-8, 1 to kLongestChat bytes (engine/Engine.h).
    std::string text;
    std::chrono::system_clock::time_point time;
};

// Nothing for what cannot be sent: no text but blanks, one that is too long or no UTF-8.
[[nodiscard]] std::optional<std::string> WriteChat(const ChatMessage& message);

// Nothing for every other message. What a peer sends may be anything: a text that is too long is cut between
// two characters, and a time that cannot be, later than `now` or days before it, is `now`.
[[nodiscard]] std::optional<ChatMessage> ReadChat(std::string_view text,
                                                  std::chrono::system_clock::time_point now);

}  // namespace Corvanta::Engine
