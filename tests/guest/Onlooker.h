// Somebody in a room who looks, listens and remembers what comes from each of the others. Any thread.
#pragma once

#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "engine/common/EngineLoop.h"
#include "engine/transport/Transport.h"

namespace Corvanta::Guest {

class Onlooker final {
public:
    struct Impression {
        bool hasJoined = false, hasLeft = false;
        // Why it has left.
        std::string reason;
        int pictures = 0;
        int width = 0;
        // Mean square of the loudest piece of sound.
        double loudest = 0;
        // Of the chat.
        int lines = 0;
        // Ids of the marks by stream.
        std::map<std::string, std::set<std::string>> marks;
    };

    // Returns once the room is entered, or cannot be.
    Onlooker(const std::string& room, const std::string& name);
    ~Onlooker();
    Onlooker(const Onlooker&) = delete;
    Onlooker& operator=(const Onlooker&) = delete;

    // Empty when it is in the room.
    [[nodiscard]] const std::string& Problem() const { return problem; }
    // Of the participant of that name.
    [[nodiscard]] Impression Of(const std::string& name) const;

private:
    [[nodiscard]] Engine::TransportEvents EventsOfTransport();
    void Meet(const Engine::ParticipantDescription& description);
    void Open(const std::string& id);
    void Hear(const std::string& name, const std::string& text);

    Engine::EngineLoop loop;
    std::promise<std::string> entry;
    std::string problem;

    // The loop's thread alone.
    std::unique_ptr<Engine::Transport> transport;
    struct Known {
        std::string name;
        std::shared_ptr<Engine::ParticipantMedia> media;
    };
    std::map<std::string, Known> others;
    bool isIn = false;

    mutable std::mutex impressionsMutex;  // guards: impressions
    std::map<std::string, Impression> impressions;
};

}  // namespace Corvanta::Guest
