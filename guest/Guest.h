// A guest in a room: enters it, publishes a clip with its sound, takes nobody's pictures, and draws and
// writes by its script. The thread of its loop alone.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "engine/common/EngineLoop.h"
#include "engine/connections/OwnConnection.h"
#include "engine/transport/Transport.h"
#include "engine/webrtc/Playback.h"
#include "engine/webrtc/SoundMixer.h"
#include "guest/GuestMarks.h"
#include "guest/GuestOptions.h"
#include "guest/GuestScript.h"

namespace Corvanta::Guest {

struct GuestEvents {
    std::function<void()> entered;
    // It cannot enter, or was put out for good; one line for the person. Then it is to leave.
    std::function<void(const std::string& problem)> failed;
};

class Guest final {
public:
    Guest(Engine::EngineLoop& engineLoop, GuestOptions guestOptions,
          const Engine::TransportMaker& makeTransport, GuestEvents guestEvents);
    ~Guest();
    Guest(const Guest&) = delete;
    Guest& operator=(const Guest&) = delete;

    // Once; the loop runs.
    void Enter();
    // Says goodbye; the loop does not run any more. Once, after Enter.
    void Leave();

private:
    using ParticipantMedia = Engine::ParticipantMedia;

    [[nodiscard]] Engine::TransportEvents EventsOfTransport();
    [[nodiscard]] Engine::PlaybackSource Source() const;
    void OpenClip();
    void OnEntered();
    void OnJoined(const Engine::ParticipantDescription& description);
    void OnLeft(const std::string& streamId);
    void OpenMedia(const std::string& streamId);
    // To all, since somebody may not know them yet; but not again and again.
    void TellMarks();
    void Perform(const GuestAct& act);
    void PerformNext();
    // The id of the stream that the act draws on.
    [[nodiscard]] std::string StreamFor(const GuestAct& act) const;
    void Send(std::optional<std::string> text);
    [[nodiscard]] std::string OwnStreamId() const;
    // Tells the room service how its connections do, so that the others' panels can show it.
    void ReportConnection();

    Engine::EngineLoop& loop;
    const GuestOptions options;
    const GuestEvents events;
    // Never opened: nobody listens here.
    const std::shared_ptr<Engine::SoundMixer> mixer;
    const std::unique_ptr<Engine::Transport> transport;
    const std::shared_ptr<Engine::FeedOutlet> outlet = std::make_shared<Engine::FeedOutlet>();
    std::shared_ptr<Engine::Playback> playback;
    // From entering on.
    std::optional<Engine::OwnConnectionReports> reports;
    GuestScript script;
    GuestMarks marks;
    // The others' streams by their ids.
    std::map<std::string, std::shared_ptr<ParticipantMedia>> others;
    // When everybody was told the marks last, if ever; and whether it is to be done again soon.
    std::optional<std::chrono::steady_clock::time_point> marksToldAt;
    bool isTellingPlanned = false;
    // When the script began.
    std::chrono::steady_clock::time_point startedAt;
    bool isIn = false;
    bool hasLeft = false;
    // Everybody's wish; the pictures go on.
    const std::shared_ptr<std::atomic<bool>> isMuted = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace Corvanta::Guest
