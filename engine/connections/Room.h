// The embedded room: participants that play files, URIs and generated clips, and the local user's streams. It
// announces them to the library on the engine's own thread. One at a time in the process; the functions of
// Connections, MediaManager and WebRTC reach it through Current.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/Engine.h"
#include "engine/common/EngineLoop.h"
#include "engine/connections/OwnStreams.h"
#include "engine/connections/ParticipantReports.h"
#include "engine/connections/RoomCamera.h"
#include "engine/connections/RoomParticipant.h"
#include "engine/connections/ScriptedDrawings.h"
#include "engine/roomservice/RoomService.h"
#include "engine/webrtc/ActiveSpeaker.h"
#include "engine/webrtc/RoomSound.h"

namespace Corvanta::Engine {

class Room final : public std::enable_shared_from_this<Room> {
public:
    // The room that is open, or null. Any thread; never waits for anything but the copy of a pointer.
    [[nodiscard]] static std::shared_ptr<Room> Current();
    // Closes an open room, then opens one. False, and a log line, when that is impossible.
    static bool Open(const EngineOptions& options, std::string localDisplayName, std::string sessionName);
    // Closes the open room, if any. On return none of its callbacks is in progress and none follows. On a
    // thread that is inside such a callback the room closes as soon as that callback has returned.
    static void CloseCurrent();

    // Use Open.
    Room(const EngineOptions& options, std::string localDisplayName, std::string sessionName);
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
    // The participant leaves for good, some moments later.
    void Remove(const std::shared_ptr<RoomParticipant>& participant);

    // Takes over changed volumes.
    void ApplyVolume(const std::shared_ptr<RoomParticipant>& participant);
    void ApplyVolumes();
    void Restart(const std::shared_ptr<RoomParticipant>& participant, bool immediately);
    // Opens the speaker and the microphone that the settings name.
    void OpenSoundDevices();
    // Takes over whether the own microphone is enabled.
    void ApplyMicrophone();
    // Tells the listeners of the room's status that another one has muted the user.
    void ReportMuted();
    [[nodiscard]] const RoomSound& Sound() const { return sound; }

private:
    void Run();
    void OpenPlayback(const std::shared_ptr<RoomParticipant>& participant, const Participant& description);
    void Announce(const std::shared_ptr<RoomParticipant>& participant);
    void Leave(const std::shared_ptr<RoomParticipant>& participant, const char* reason);
    void DrawAfter(std::chrono::milliseconds wait);
    // False while the local user sees nobody.
    bool Draw();
    [[nodiscard]] std::optional<PlaybackSource> CameraSource(int32_t index) const;

    const EngineOptions settings;
    const std::string localName;
    const std::chrono::steady_clock::time_point epoch;
    std::vector<std::shared_ptr<RoomParticipant>> participants;
    ActiveSpeaker speaker;
    // Open from the room's beginning to its end.
    RoomService service;
    std::unique_ptr<ParticipantReports> reports;
    std::atomic<bool> isClosing = false;
    EngineLoop loop;
    RoomSound sound;
    const std::shared_ptr<RoomCamera> camera;
    OwnStreams streams;
    // The engine's thread alone.
    ScriptedDrawings drawings;
};

}  // namespace Corvanta::Engine
