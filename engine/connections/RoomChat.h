// The chat of the open room: takes the lines out of what participants say and hands them to the host's
// listener, and bounds how many the local user may send. The engine's thread, where nothing else is said.
#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "engine/Engine.h"
#include "engine/connections/RoomParticipant.h"
#include "engine/signalling/RateLimit.h"

namespace Corvanta::Engine {

class RoomChat final {
public:
    // Of one participant, and of the local user: at once, and a second in the long run.
    static constexpr double kBurst = 20;
    static constexpr double kPerSecond = 5;

    // Any thread: the message in which the text goes to the others; nothing where it may not be sent.
    [[nodiscard]] std::optional<std::string> Write(const std::string& text);

    // Whether the text is a line of the chat, which goes to the listener unless there are too many of them.
    bool Take(const RoomParticipant& sender, const std::string& text);
    // The participant has gone.
    void Forget(const RoomParticipant& sender) { senders.erase(sender.number); }

private:
    struct Sender {
        RateLimit limit{kPerSecond, kBurst};
        bool excessWasLogged = false;
    };

    std::mutex ownMutex;  // guards: ownLimit
    RateLimit ownLimit{kPerSecond, kBurst};
    // By the numbers of those who joined.
    std::map<std::uint64_t, Sender> senders;
};

}  // namespace Corvanta::Engine
