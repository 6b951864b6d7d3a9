// What a member of a room was told, in order, in this process or in another. Any thread.
#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "tests/engine/Eventually.h"

namespace Corvanta::Engine {

struct RoomEvent {
    // entered, joined, left, message, lost, back, failed.
    std::string kind;
    // Of the member in question; our own for entered.
    std::string id;
    // entered: the others' ids, each with a space behind it; joined: "us NAME" or "them NAME" by who begins;
    // left: "in order" where the member said so;
    // message: the payload; failed: the line.
    std::string text;

    bool operator==(const RoomEvent&) const = default;
};

class RoomEvents final {
public:
    void Add(RoomEvent event) {
        const std::lock_guard lock(eventsMutex);
        events.push_back(std::move(event));
    }
    [[nodiscard]] std::vector<RoomEvent> All() const {
        const std::lock_guard lock(eventsMutex);
        return events;
    }
    [[nodiscard]] std::vector<RoomEvent> Of(const std::string& kind, const std::string& id = {}) const {
        std::vector<RoomEvent> found;
        for (const RoomEvent& event : All())
            if (event.kind == kind && (id.empty() || event.id == id)) found.push_back(event);
        return found;
    }
    // Of that kind; of that member if one is named.
    [[nodiscard]] std::size_t Count(const std::string& kind, const std::string& id = {}) const {
        return Of(kind, id).size();
    }
    [[nodiscard]] bool Hears(const std::string& kind, const std::string& id = {},
                             std::size_t times = 1) const {
        return Eventually([&] { return Count(kind, id) >= times; });
    }
    [[nodiscard]] bool HearsMessage(const std::string& id, const std::string& payload) const {
        return Eventually([&] {
            const auto messages = Of("message", id);
            return std::any_of(messages.begin(), messages.end(),
                               [&](const RoomEvent& message) { return message.text == payload; });
        });
    }
    // Our own, from the last time we entered.
    [[nodiscard]] std::string Id() const {
        const auto entered = Of("entered");
        return entered.empty() ? std::string() : entered.back().id;
    }

private:
    mutable std::mutex eventsMutex;  // guards: events
    std::vector<RoomEvent> events;
};

}  // namespace Corvanta::Engine
