#include "tests/engine/RoomVisitor.h"

#include <gtest/gtest.h>

#include "engine/EngineSettings.h"
#include "engine/connections/Room.h"
#include "engine/connections/TrackSettings.h"
#include "platform/Connections.h"
#include "platform/WebRTC.h"
#include "tests/engine/Eventually.h"

namespace Corvanta::Engine {

namespace {

constexpr const char* kLogFile = "engine.log";

}  // namespace

RoomVisitor::RoomVisitor() = default;

RoomVisitor::~RoomVisitor() {
    Leave();
    Shutdown();
}

int RoomVisitor::Enter(const std::vector<Participant>& participants) {
    EngineOptions options;
    options.participants = participants;
    options.room = roomName;
    options.camera = camera;
    options.configurationFolder = folder.path;
    options.logFile = folder.File(kLogFile);
    options.logLevel = 1;
    options.soundOutput = SoundOutput::Silent;
    if (const auto problem = Configure(options)) {
        ADD_FAILURE() << *problem;
        return -1;
    }
    WebRTC_Init();
    MediaManager_Init();
    MediaManager_SetAddRemoteVideoSourceSDLCallback([this](const std::string& streamId) -> FrameCallback* {
        ++offers;
        if (refusals.fetch_sub(1) > 0) return nullptr;
        const std::lock_guard lock(streamsMutex);
        const std::size_t index = streams.size();
        streams.push_back({streamId, 0, nullptr});
        events.push_back("add " + streamId);
        return new FrameCallback(
            [this, index](const std::shared_ptr<VideoFrameBuffer>& frame) { Take(index, frame); });
    });
    MediaManager_SetAddOnVideoFrameTracksAddedSDLCallback([this](const std::string& streamId) {
        const std::lock_guard lock(streamsMutex);
        events.push_back("track " + streamId);
    });
    MediaManager_SetRemoveRemoteVideoSourceSDLCallback([this](const std::string& streamId) {
        const std::lock_guard lock(streamsMutex);
        events.push_back("remove " + streamId);
    });
    Connections_SetParticipantJoinedCallback([this] {
        const std::lock_guard lock(streamsMutex);
        events.emplace_back("joined");
    });
    if (makeTransport) {
        TrackSettings::Get().carriesLocalAudio = TrackSettings::Get().carriesLocalVideo = isHeardAndSeen;
        return Room::Open(CurrentOptions(), "Me", "session", makeTransport) ? 1 : -1;
    }
    return Connections_InitConnection(nullptr, nullptr, "session", "", "", "", "Me", isHeardAndSeen,
                                      isHeardAndSeen, true, nullptr);
}

void RoomVisitor::Leave() {
    Connections_SetParticipantJoinedCallback({});
    Connections_CloseConnection();
    MediaManager_Close();
    WebRTC_Terminate();
}

void RoomVisitor::Take(std::size_t stream, const std::shared_ptr<VideoFrameBuffer>& frame) {
    if (onFrame) onFrame(frame);
    const std::lock_guard lock(streamsMutex);
    ++streams[stream].frames;
    streams[stream].last = frame;
}

std::size_t RoomVisitor::Frames(std::size_t participant) const {
    const std::lock_guard lock(streamsMutex);
    return participant < streams.size() ? streams[participant].frames : 0;
}

std::shared_ptr<VideoFrameBuffer> RoomVisitor::LastFrame(std::size_t participant) const {
    const std::lock_guard lock(streamsMutex);
    return participant < streams.size() ? streams[participant].last : nullptr;
}

std::string RoomVisitor::StreamId(std::size_t participant) const {
    const std::lock_guard lock(streamsMutex);
    return participant < streams.size() ? streams[participant].id : std::string();
}

std::vector<std::string> RoomVisitor::Events() const {
    const std::lock_guard lock(streamsMutex);
    return events;
}

std::string RoomVisitor::Log() const {
    return folder.Read(kLogFile);
}

bool RoomVisitor::WaitForFrames(std::size_t participant, std::size_t count) const {
    return Eventually([&] { return Frames(participant) >= count; });
}

bool RoomVisitor::WaitForLog(const std::string& text) const {
    return Eventually([&] { return Log().find(text) != std::string::npos; });
}

}  // namespace Corvanta::Engine
