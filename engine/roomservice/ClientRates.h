// How often each client of the room service may ask. Told the time, which never goes back. One thread.
#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "engine/signalling/RateLimit.h"

namespace Corvanta::Engine {

class ClientRates final {
public:
    struct Limits {
        double requestsPerSecond = 1000;
        double burst = 2000;
    };
    // What a wrong token costs, in requests: guessing is slow.
    static constexpr double kWrongTokenCost = 20;
    // Those who asked longest ago are forgotten beyond this.
    static constexpr std::size_t kMostClients = 1024;

    explicit ClientRates(const Limits& clientLimits) : limits(clientLimits) {}

    // Whether one more request of the client's may be answered.
    [[nodiscard]] bool Allow(const std::string& client, RateLimit::Clock::time_point now);
    // It bore a wrong token.
    void Punish(const std::string& client, RateLimit::Clock::time_point now);

    [[nodiscard]] std::size_t Clients() const { return clients.size(); }

private:
    struct Client {
        RateLimit limit;
        RateLimit::Clock::time_point lastSeen;
    };

    RateLimit& LimitOf(const std::string& client, RateLimit::Clock::time_point now);

    const Limits limits;
    std::map<std::string, Client> clients;
};

}  // namespace Corvanta::Engine
