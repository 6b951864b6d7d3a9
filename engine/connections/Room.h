// The open room: the participants whom its transport brings, and the local user's streams. It announces them
// to the library on the engine's own thread. One at a time in the process; the functions of Connections,
// MediaManager and WebRTC reach it through Current.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "engine/common/EngineLoop.h"
#include "engine/connections/OwnStreams.h"
#include "engine/connections/ParticipantList.h"
#include "engine/connections/ParticipantReports.h"
#include "engine/connections/ParticipantTexts.h"
#include "engine/connections/RoomCamera.h"
#include "engine/connections/RoomChat.h"
#include "engine/connections/RoomParticipant.h"
#include "engine/roomservice/RoomService.h"
#include "engine/roomservice/RoomServiceLink.h"
#include "engine/transport/Transport.h"
#include "engine/webrtc/ActiveSpeaker.h"
#include "engine/webrtc/RoomSound.h"

namespace Corvanta::Engine {

class Room final : public std::enable_shared_from_this<Room> {
public:
    // The room that is open, or null. Any thread; never waits for anything but the copy of a pointer.
    [[nodiscard]] static std::shared_ptr<Room> Current();
    // Closes an open room, then opens one and waits, some seconds at most, until its transport lets the local
    // user in. False, and a log line, when that is impossible. Without a maker: the one that the options
    // ask for.
    static bool Open(const EngineOptions& options, std::string localDisplayName, std::string sessionName,
                     const TransportMaker& makeTransport = {});
    // Closes the open room, if any. On return none of its callbacks is in progress and none follows. On a
    // thread that is inside such a callback the room closes as soon as that callback has returned.
    static void CloseCurrent();

    // Use Open.
    Room(const EngineOptions& options, std::string localDisplayName, std::string sessionName,
         const TransportMaker& makeTransport);
    ~Room();
    Room(const Room&) = delete;
    Room& operator=(const Room&) = delete;

    // Everything below: any thread, from memory.

    [[nodiscard]] std::shared_ptr<RoomParticipant> Find(const std::string& streamId) const;
    // The sinks of the participant of that stream id, or of the local user's stream of that source id; or
    // null.
    [[nodiscard]] std::shared_ptr<SinkList> FindSinks(const std::string& sourceId) const;
    [[nodiscard]] RoomCamera& Camera() const { return *camera; }
    [[nodiscard]] OwnStreams& Streams() { return streams; }
    [[nodiscard]] const std::string& LocalDisplayName() const { return localName; }
    [[nodiscard]] std::optional<std::string> SpeakerId() const;
    [[nodiscard]] RoomStatus Status() const;
    [[nodiscard]] std::vector<ParticipantInfo> Participants() const;
    // Under which the others know the local user; empty while nobody does.
    [[nodiscard]] std::string OwnId() const { return transport->OwnId(); }

    [[nodiscard]] RoomServiceLink& Service() { return serviceLink; }

    // See Engine.h.
    bool SendChat(const std::string& text);

    // Those below are carried out some moments later.

    // To all others; false for a room that is closing, or that does not take the local user's texts.
    bool SendText(std::string text);
    // The participant leaves for good.
    void Remove(const std::shared_ptr<RoomParticipant>& participant);
    // Switches its microphone off for all. The local user is told instead where the id is that one's.
    void Mute(const std::string& streamId);
    // Switches parts of a stream on and off: of a participant's for this side, of an own one for all.
    void ConfigureStream(const std::string& streamId, const TrackSwitches& switches);
    // Connects a participant, or an own stream, again: at once, or after a wait that grows when it fails
    // again and again.
    enum class Pace { AtOnce, InTime };
    void Restart(const std::string& streamId, Pace pace);
    // The same for the local user's camera, if its connection is lost.
    void RestartLostCamera();
    // Takes over changed volumes and switches of a participant's.
    void ApplyVolume(const std::shared_ptr<RoomParticipant>& participant);
    void ApplyTracks(const std::shared_ptr<RoomParticipant>& participant);
    void ApplyVolumes();
    // Takes over the switches of the local tracks, and the outbound bit rate.
    void ApplyLocalTracks();
    void ApplyOutboundBitrate();
    // Opens the speaker and the microphone that the settings name.
    void OpenSoundDevices();
    [[nodiscard]] const RoomSound& Sound() const { return sound; }

private:
    void Run();
    [[nodiscard]] TransportEvents EventsOfTransport();
    void Enter();
    // Whether the transport let the local user in.
    [[nodiscard]] bool WaitForEntry();
    void Add(ParticipantDescription description);
    // Whose it is stands behind what is shared.
    [[nodiscard]] std::string NameOf(const ParticipantDescription& description) const;
    // Has it opened and announced.
    void Bring(const std::shared_ptr<RoomParticipant>& participant);
    void OpenMedia(const std::shared_ptr<RoomParticipant>& participant);
    void Announce(const std::shared_ptr<RoomParticipant>& participant);
    void Leave(const std::shared_ptr<RoomParticipant>& participant, const std::string& reason);
    // Sends the camera as the library wants it at the moment.
    void FollowAdaptation();
    // What the local user's camera is to carry at the moment, and tells the transport when it is something
    // else than before.
    [[nodiscard]] LocalTracks OwnTracks() const;
    void ApplyCameraTracks();
    [[nodiscard]] std::optional<PlaybackSource> CameraSource(int32_t index) const;

    const EngineOptions settings;
    const std::string localName;
    const std::chrono::steady_clock::time_point epoch;
    ParticipantList participants;
    ActiveSpeaker speaker;
    RoomChat chat;
    // Open from the room's beginning to its end, unless the options name another one.
    RoomService service;
    RoomServiceLink serviceLink;
    ParticipantReports reports;
    std::atomic<bool> isClosing = false;
    // The local user's texts are wanted; see ConfigureStream.
    std::atomic<bool> sendsTexts = true;
    // The way to the others is open; and whether it has ended for good.
    std::atomic<bool> isConnected = true, hasEnded = false;
    // Whether the local user is in; told once.
    std::promise<bool> entry;
    EngineLoop loop;
    RoomSound sound;
    const std::unique_ptr<Transport> transport;
    const std::shared_ptr<RoomCamera> camera;
    OwnStreams streams;
    // The engine's thread alone.
    ParticipantTexts texts;
    std::uint64_t joined = 0;
    bool entryIsTold = false;
    std::optional<VideoFrameAdaptation> adaptation;
    bool isIn = false;
    // What the transport knows of the camera.
    LocalTracks toldTracks;
    bool cameraIsLost = false;
};

}  // namespace Corvanta::Engine
