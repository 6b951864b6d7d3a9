// A connection with another participant that is kept up: when it is lost it is set up again, after waits that
// grow, and it is measured once a second. The engine's thread alone, where nothing else is said.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "engine/common/EngineLoop.h"
#include "engine/peer/PeerConnection.h"
#include "engine/signalling/RateLimit.h"

namespace Corvanta::Engine {

struct PeerLinkEvents {
    // To be carried to the other side's link, in this order.
    std::function<void(const std::string& text)> description;
    std::function<void(std::uint32_t mediaLine, const std::string& text)> candidate;
    // It has come about, the first time or again; or it is lost or did not come about, and is tried again.
    std::function<void(bool isConnected)> connection;
    // A new channel for texts is open, or the last one is gone.
    std::function<void(bool isOpen)> channel;
    // One message of the channel, as it came.
    std::function<void(const std::string& message)> message;
    // It takes messages again after one was refused.
    std::function<void()> drained;
    // On a streaming thread.
    VideoSink::PictureCallback picture;
    std::function<void(double meanSquare)> loudness;
    std::function<void(const PeerStatistics& statistics)> measured;
};

class PeerLink final : public std::enable_shared_from_this<PeerLink> {
public:
    // The first wait after a loss, and the longest; each is twice the one before.
    static constexpr std::chrono::milliseconds kFirstWait{250};
    static constexpr std::chrono::milliseconds kLongestWait{8000};
    // A connection that holds so long was a good one, and the waits begin anew.
    static constexpr std::chrono::milliseconds kSoundTime{5000};
    // How long a connection that is being set up is left alone.
    static constexpr std::chrono::milliseconds kYoungFor{3000};
    // After which a side that has asked or waits for an offer asks again. More than a connection takes.
    static constexpr std::chrono::milliseconds kPatience{20000};
    static constexpr std::chrono::milliseconds kMeasureInterval{1000};
    // Descriptions that the other side may send: each may begin a connection, which costs.
    static constexpr double kDescriptionsPerSecond = 2.0;
    static constexpr double kMostDescriptionsAtOnce = 10.0;

    PeerLink(EngineLoop& engineLoop, PeerOptions options, PeerLinkEvents linkEvents,
             std::shared_ptr<SoundMixer> mixer);
    ~PeerLink();
    PeerLink(const PeerLink&) = delete;
    PeerLink& operator=(const PeerLink&) = delete;

    // False, and a log line, when an element is missing; then it is tried again as after a loss.
    bool Start();
    // For good: on return no event is in progress and none follows.
    void Close();
    // Sets the connection up again, as one asks who misses it: at once, unless that is being done since less
    // than kYoungFor, or after the wait that is due.
    void Restart(bool immediately);
    // Sets it up again at once, since what it was or is being set up with is void.
    void BeginAnew();
    // What was on its way between the two sides is lost: whatever is not connected begins anew.
    void OnWayLost();

    // What the other side's link handed out; anything may be in it.
    void TakeDescription(const std::string& text);
    void TakeCandidate(std::uint32_t mediaLine, const std::string& text);

    [[nodiscard]] bool IsConnected() const { return peer->IsConnected(); }
    // For what it carries. Not to be started, restarted or closed.
    [[nodiscard]] PeerConnection& Peer() { return *peer; }

private:
    using Clock = std::chrono::steady_clock;

    [[nodiscard]] PeerEvents MakeEvents();
    void OnConnected();
    void OnLost();
    void Begin();
    // A channel ends with its session, which may have been none that was connected.
    void DropChannelOf(std::uint64_t session);
    void RestartAfter(std::chrono::milliseconds wait);
    void Measure();

    EngineLoop& loop;
    const PeerLinkEvents events;
    const std::shared_ptr<PeerConnection> peer;
    std::chrono::milliseconds nextWait = kFirstWait;
    Clock::time_point connectedSince;
    // Of the connection that is being set up, or was last.
    std::optional<Clock::time_point> begun;
    RateLimit descriptions{kDescriptionsPerSecond, kMostDescriptionsAtOnce};
    bool isOpen = false;
    bool wasConnected = false;
    bool channelIsOpen = false;
    // Tells what was planned from what is still to be done.
    std::uint64_t plan = 0;
};

}  // namespace Corvanta::Engine
