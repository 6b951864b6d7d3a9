#include "engine/connections/RoomStatus.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <vector>

#include "engine/common/CallTracker.h"
#include "platform/Connections.h"

namespace {

using Corvanta::Connections::RoomStatusListener;
using Corvanta::Engine::CallTracker;

struct Subscription {
    explicit Subscription(RoomStatusListener* target) : listener(target) {}
    RoomStatusListener* const listener;
    CallTracker tracker;
};

struct Listeners {
    static Listeners& Get() {
        static Listeners listeners;
        return listeners;
    }

    auto Find(const RoomStatusListener* listener) {
        return std::find_if(all.begin(), all.end(),
                            [&](const auto& subscription) { return subscription->listener == listener; });
    }

    template <class Function>
    void Tell(const Function& function) {
        std::vector<std::shared_ptr<Subscription>> current;
        {
            const std::lock_guard lock(listenersMutex);
            current = all;
        }
        for (const auto& subscription : current) {
            const CallTracker::Call call(subscription->tracker);
            if (call) function(*subscription->listener);
        }
    }

    std::mutex listenersMutex;  // guards: all
    std::vector<std::shared_ptr<Subscription>> all;
};

}  // namespace

void Corvanta::Engine::TellRoomStatus(int32_t status) {
    Listeners::Get().Tell([&](RoomStatusListener& listener) { listener.OnRoomStatusChanged(status); });
}

void Corvanta::Engine::TellMutedRemotely() {
    Listeners::Get().Tell([](RoomStatusListener& listener) { listener.OnMutedRemotely(); });
}

void Connections_AddRoomStatusListener(RoomStatusListener* listener) {
    if (listener == nullptr) return;
    Listeners& listeners = Listeners::Get();
    const std::lock_guard lock(listeners.listenersMutex);
    if (listeners.Find(listener) != listeners.all.end()) return;
    listeners.all.push_back(std::make_shared<Subscription>(listener));
}

void Connections_RemoveRoomStatusListener(RoomStatusListener* listener) {
    Listeners& listeners = Listeners::Get();
    std::shared_ptr<Subscription> gone;
    {
        const std::lock_guard lock(listeners.listenersMutex);
        const auto found = listeners.Find(listener);
        if (found == listeners.all.end()) return;
        gone = *found;
        listeners.all.erase(found);
    }
    gone->tracker.Close();
}
