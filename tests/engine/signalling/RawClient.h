// The other end of a hub's or a client's connection that says what a test wants it to say. One thread.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include "engine/signalling/LineBuffer.h"
#include "engine/signalling/RoomMessage.h"
#include "tests/engine/RawConnection.h"

namespace Corvanta::Engine {

class RawClient final {
public:
    explicit RawClient(const std::filesystem::path& socket) : connection(socket) {}
    explicit RawClient(int accepted) : connection(accepted) {}

    bool Say(const RoomMessage& message) const { return connection.Send(WriteRoomMessage(message)); }
    bool SayBytes(const std::string& bytes) const { return connection.Send(bytes); }

    // The next message; nothing when the other end has closed, or says nothing for seconds.
    std::optional<RoomMessage> Next() {
        while (true) {
            if (const auto line = lines.Next()) return ReadRoomMessage(*line);
            const std::string bytes = connection.Receive();
            if (bytes.empty()) return std::nullopt;
            lines.Add(bytes);
        }
    }
    // The next message, of that kind; an empty one when it is of another.
    template <class Message>
    Message Next() {
        const auto message = Next();
        return message && std::holds_alternative<Message>(*message) ? std::get<Message>(*message) : Message{};
    }

    // Says hello with this key and gives back the id, empty when there is no welcome.
    std::string Enter(const std::string& key, const std::string& name = "raw") {
        if (!Say(RoomMessages::Hello{kRoomVersion, name, {}, key})) return {};
        return Next<RoomMessages::Welcome>().id;
    }
    // Whether the other end closes in time.
    [[nodiscard]] bool IsEnded() {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(4);
        while (Next()) {
        }
        return std::chrono::steady_clock::now() < deadline;
    }

private:
    RawConnection connection;
    LineBuffer lines{kLongestLine};
};

}  // namespace Corvanta::Engine
