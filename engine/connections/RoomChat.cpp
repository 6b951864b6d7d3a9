#include "engine/connections/RoomChat.h"

#include <utility>

#include "engine/common/GuardedCallback.h"
#include "engine/connections/ChatMessage.h"
#include "engine/connections/Room.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

GuardedCallback<void(const ChatLine&)>& Listener() {
    static GuardedCallback<void(const ChatLine&)> listener;
    return listener;
}

}  // namespace

std::optional<std::string> RoomChat::Write(const std::string& text) {
    auto message = WriteChat({.text = text, .time = std::chrono::system_clock::now()});
    if (!message) return std::nullopt;
    const std::lock_guard lock(ownMutex);
    if (!ownLimit.Allow(RateLimit::Clock::now())) return std::nullopt;
    return message;
}

bool RoomChat::Take(const RoomParticipant& sender, const std::string& text) {
    auto message = ReadChat(text, std::chrono::system_clock::now());
    if (!message) return false;
    Sender& state = senders[sender.number];
    if (state.limit.Allow(RateLimit::Clock::now())) {
        Listener().Call({.name = sender.name, .text = std::move(message->text), .time = message->time});
    } else if (!std::exchange(state.excessWasLogged, true)) {
        LOG(kLogWarning, "\"%s\" writes more than can be read, and not all of it is shown",
            sender.name.c_str());
    }
    return true;
}

bool SendChat(const std::string& text) {
    const auto room = Room::Current();
    return room != nullptr && room->SendChat(text);
}

void SetChatListener(std::function<void(const ChatLine&)> listener) {
    Listener().Set(std::move(listener));
}

}  // namespace Corvanta::Engine
