#include "tests/engine/SharingVisitor.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "engine/EngineSettings.h"
#include "engine/connections/Room.h"
#include "platform/Connections.h"
#include "platform/WebRTC.h"
#include "tests/engine/Eventually.h"

namespace Corvanta::Engine {

SharingVisitor::~SharingVisitor() {
    SetDevicesChangedListener({});
    Connections_CloseConnection();
    MediaManager_Close();
    WebRTC_Terminate();
    WebRTC_SetLocalStreamsLocalAudioVolume(1.0F);
    Shutdown();
}

void SharingVisitor::Configure(const std::string& camera, const std::vector<Participant>& participants) {
    EngineOptions options;
    options.camera = camera;
    options.participants = participants;
    options.configurationFolder = folder.path;
    options.soundOutput = SoundOutput::Silent;
    const auto problem = Engine::Configure(options);
    ASSERT_EQ(problem, std::nullopt) << *problem;
}

void SharingVisitor::Enter(const std::string& camera, const std::vector<Participant>& participants) {
    Configure(camera, participants);
    WebRTC_SetEnabledLocalVideoTrack(true, 0);
    MediaManager_Init();
    MediaManager_SetAddLocalVideoSourceSDLCallback(
        [this](StreamType type, const std::string& sourceId) -> FrameCallback* {
            if (refusals.fetch_sub(1) > 0) return nullptr;
            if (onAdd) onAdd(type, sourceId);
            Tell("add " + std::to_string(static_cast<int>(type)) + " " + sourceId);
            return new FrameCallback([this, sourceId](const std::shared_ptr<VideoFrameBuffer>& frame) {
                if (onFrame) onFrame();
                const std::lock_guard lock(streamsMutex);
                Stream& stream = streams[sourceId];
                ++stream.frames;
                stream.last = frame;
            });
        });
    MediaManager_SetRemoveLocalVideoSourceSDLCallback(
        [this](const std::string& sourceId) { Tell("remove " + sourceId); });
    MediaManager_SetAddRemoteVideoSourceSDLCallback([this](const std::string& streamId) {
        Tell("enter " + streamId);
        return new FrameCallback([](const std::shared_ptr<VideoFrameBuffer>&) {});
    });
    MediaManager_SetRemoveRemoteVideoSourceSDLCallback(
        [this](const std::string& streamId) { Tell("leave " + streamId); });
    MediaManager_SetOnWindowCapturedClosedCallback([this] { Tell("window closed"); });
    MediaManager_SetOnVideoFilePlaybackStatusUpdateSDLCallback(
        [this](const std::string& streamId, bool status) {
            Tell((status ? "plays " : "ended ") + streamId);
        });
    if (makeTransport) {
        ASSERT_TRUE(Room::Open(CurrentOptions(), "Me", "session", makeTransport));
        return;
    }
    ASSERT_NE(
        Connections_InitConnection(nullptr, nullptr, "session", "", "", "", "Me", true, true, true, nullptr),
        -1);
}

void SharingVisitor::Tell(const std::string& event) {
    const std::lock_guard lock(streamsMutex);
    events.push_back(event);
}

std::vector<std::string> SharingVisitor::Events() const {
    const std::lock_guard lock(streamsMutex);
    return events;
}

bool SharingVisitor::WaitForEvent(const std::string& event) const {
    return Eventually([&] {
        const std::lock_guard lock(streamsMutex);
        return std::find(events.begin(), events.end(), event) != events.end();
    });
}

std::size_t SharingVisitor::Frames(const std::string& sourceId) const {
    const std::lock_guard lock(streamsMutex);
    const auto found = streams.find(sourceId);
    return found == streams.end() ? 0 : found->second.frames;
}

std::shared_ptr<VideoFrameBuffer> SharingVisitor::LastFrame(const std::string& sourceId) const {
    const std::lock_guard lock(streamsMutex);
    const auto found = streams.find(sourceId);
    return found == streams.end() ? nullptr : found->second.last;
}

bool SharingVisitor::GetsMore(const std::string& sourceId, std::size_t count) const {
    const std::size_t before = Frames(sourceId);
    return Eventually([&] { return Frames(sourceId) >= before + count; });
}

bool SharingVisitor::WaitForFrame(const std::string& sourceId,
                                  const std::function<bool(const VideoFrameBuffer&)>& condition) const {
    return Eventually([&] {
        const auto frame = LastFrame(sourceId);
        return frame && condition(*frame);
    });
}

uint32_t PixelAt(const VideoFrameBuffer& frame, int x, int y) {
    const auto* const packed = dynamic_cast<const RGBFrameBuffer*>(&frame);
    if (packed == nullptr || x >= frame.GetWidth() || y >= frame.GetHeight()) return 0;
    const auto place = static_cast<std::size_t>(y) * static_cast<std::size_t>(frame.GetWidth()) +
                       static_cast<std::size_t>(x);
    const uint8_t* const pixel = packed->GetBuffer() + 4 * place;
    return static_cast<uint32_t>(pixel[2]) << 16U | static_cast<uint32_t>(pixel[1]) << 8U | pixel[0];
}

}  // namespace Corvanta::Engine
