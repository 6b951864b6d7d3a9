#include "engine/roomservice/ClientRates.h"

#include <algorithm>

namespace Corvanta::Engine {

RateLimit& ClientRates::LimitOf(const std::string& client, RateLimit::Clock::time_point now) {
    const auto found = clients.find(client);
    if (found != clients.end()) {
        found->second.lastSeen = now;
        return found->second.limit;
    }
    if (clients.size() >= kMostClients) {
        clients.erase(
            std::ranges::min_element(clients, {}, [](const auto& entry) { return entry.second.lastSeen; }));
    }
    const Client fresh{.limit = RateLimit(limits.requestsPerSecond, limits.burst), .lastSeen = now};
    return clients.emplace(client, fresh).first->second.limit;
}

bool ClientRates::Allow(const std::string& client, RateLimit::Clock::time_point now) {
    return LimitOf(client, now).Allow(now);
}

void ClientRates::Punish(const std::string& client, RateLimit::Clock::time_point now) {
    static_cast<void>(LimitOf(client, now).Charge(now, kWrongTokenCost));
}

}  // namespace Corvanta::Engine
