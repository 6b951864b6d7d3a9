// The local user's camera in the embedded room, as the library meets it.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "engine/Engine.h"
#include "platform/Connections.h"
#include "platform/MediaManager.h"
#include "platform/WebRTC.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Engine {
namespace {

constexpr std::chrono::milliseconds kAWhile{200};
const std::string kCamera = "camera-0";

// Counts the frames that a registered sink gets, and unregisters it in time: the room is left after the
// test's own objects have gone.
struct CountingSink {
    ~CountingSink() { MediaManager_UnregisterCallback(kCamera, &callback); }

    std::atomic<int> frames = 0;
    FrameCallback callback = [this](const std::shared_ptr<VideoFrameBuffer>&) { ++frames; };

    [[nodiscard]] bool GetsMore() const {
        const int before = frames;
        return Eventually([&] { return frames >= before + 3; });
    }
    [[nodiscard]] bool GetsNoMore() const {
        // One may have been on its way.
        std::this_thread::sleep_for(kAWhile);
        const int before = frames;
        std::this_thread::sleep_for(kAWhile);
        return frames == before;
    }
};

// Stands for the library: takes the own camera's announcement and leaves the room at its end.
class LocalCamera : public testing::Test {
protected:
    ~LocalCamera() override {
        Connections_CloseConnection();
        MediaManager_Close();
        WebRTC_Terminate();
        Shutdown();
    }

    void Enter(const std::string& camera, const std::vector<Participant>& participants = {}) {
        EngineOptions options;
        options.camera = camera;
        options.participants = participants;
        options.configurationFolder = folder.path;
        options.soundOutput = SoundOutput::Silent;
        ASSERT_EQ(Configure(options), std::nullopt);
        WebRTC_SetEnabledLocalVideoTrack(true, 0);
        MediaManager_Init();
        MediaManager_SetAddLocalVideoSourceSDLCallback(
            [this](StreamType type, const std::string& sourceId) -> FrameCallback* {
                if (refusals.fetch_sub(1) > 0) return nullptr;
                const std::lock_guard lock(eventsMutex);
                events.push_back((type == StreamType::Camera ? "add " : "add another ") + sourceId);
                return new FrameCallback([this](const std::shared_ptr<VideoFrameBuffer>& frame) {
                    width = frame->GetWidth();
                    ++frames;
                });
            });
        MediaManager_SetRemoveLocalVideoSourceSDLCallback([this](const std::string& sourceId) {
            const std::lock_guard lock(eventsMutex);
            events.push_back("remove " + sourceId);
        });
        ASSERT_NE(Connections_InitConnection(nullptr, nullptr, "session", "", "", "", "Me", true, true, true,
                                             nullptr),
                  -1);
    }

    [[nodiscard]] std::vector<std::string> Events() {
        const std::lock_guard lock(eventsMutex);
        return events;
    }
    [[nodiscard]] bool WaitForFrames(int count) const {
        return Eventually([&] { return frames >= count; });
    }
    // As the library changes a device.
    static void StopAndRenegotiate() {
        MediaManager_StopLocalVideoSource(kCamera);
        Connections_RenegotiateOutboundPeerConnection(false, true,
                                                      Connections_GetLocalUserStreamID(StreamType::Camera));
    }

    const std::vector<std::string> announcedOnce{"add " + kCamera};
    std::atomic<int> refusals = 0;
    std::atomic<int> frames = 0;
    std::atomic<int> width = 0;

private:
    const TemporaryFolder folder;
    std::mutex eventsMutex;  // guards: events
    std::vector<std::string> events;
};

TEST_F(LocalCamera, IsAnnouncedAndShowsTheTestPicture) {
    Enter("test");
    ASSERT_TRUE(WaitForFrames(5));
    EXPECT_EQ(width, 1280);
    EXPECT_EQ(Events(), announcedOnce);
    EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(0), kCamera);
    EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(1), "");
    EXPECT_EQ(WebRTC_GetVideoCaptureIndex(nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_NE(Connections_GetLocalUserStreamID(StreamType::Camera), "");
    EXPECT_EQ(Connections_GetLocalDisplayName(StreamType::Camera), "Me");
}

TEST_F(LocalCamera, IsAGeneratedPersonOnRequest) {
    Enter("clip");
    EXPECT_TRUE(WaitForFrames(5));
}

TEST_F(LocalCamera, IsOfferedAgainUntilThereIsARoomForIt) {
    refusals = 3;
    Enter("test");
    EXPECT_TRUE(WaitForFrames(2));
    EXPECT_EQ(Events(), announcedOnce);
    EXPECT_EQ(refusals, -1);
}

TEST_F(LocalCamera, DoesNotRunBeforeItsAnnouncementIsTaken) {
    refusals = 1'000'000;
    Enter("test");
    EXPECT_TRUE(Eventually([&] { return refusals < 999'998; }));
    EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(0), "");
}

TEST_F(LocalCamera, IsNoParticipant) {
    Enter("test", {{"one", "test"}});
    ASSERT_TRUE(WaitForFrames(3));
    EXPECT_EQ(GetRoomStatus().participants, 1U);
    EXPECT_EQ(GetRoomStatus().showing, 0U) << "nobody has taken the participant's announcement";
    EXPECT_EQ(GetRoomStatus().pictures, 0U);
    std::string speaker;
    EXPECT_FALSE(WebRTC_GetActiveSpeaker(speaker)) << speaker;
}

TEST_F(LocalCamera, FeedsRegisteredSinksUntilTheyAreUnregistered) {
    CountingSink sink;
    Enter("test");
    ASSERT_TRUE(WaitForFrames(1));
    MediaManager_RegisterCallback(kCamera, &sink.callback);
    EXPECT_TRUE(sink.GetsMore());
    MediaManager_UnregisterCallback(kCamera, &sink.callback);
    const int before = sink.frames;
    EXPECT_TRUE(WaitForFrames(frames + 5));
    EXPECT_EQ(sink.frames, before);
}

TEST_F(LocalCamera, ShowsNothingWhileItIsStopped) {
    CountingSink preview;
    Enter("test");
    ASSERT_TRUE(WaitForFrames(1));
    MediaManager_RegisterCallback(kCamera, &preview.callback);
    ASSERT_TRUE(preview.GetsMore());
    MediaManager_StopLocalVideoSource("another");
    EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(0), kCamera);
    MediaManager_StopLocalVideoSource(kCamera);
    EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(0), "");
    EXPECT_TRUE(preview.GetsNoMore());
    EXPECT_EQ(WebRTC_GetVideoCaptureIndex(nullptr, nullptr, nullptr, nullptr), 0) << "it can come back";
    EXPECT_EQ(Events(), announcedOnce);
}

TEST_F(LocalCamera, IsStoppedWithAllCaptures) {
    Enter("test");
    ASSERT_TRUE(WaitForFrames(1));
    WebRTC_StopAllLocalVideoCaptures();
    EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(0), "");
}

TEST_F(LocalCamera, ComesBackWithARenegotiationUnderTheSameIdAndWithoutAnAnnouncement) {
    CountingSink preview;
    CountingSink tile;
    Enter("test");
    ASSERT_TRUE(WaitForFrames(1));
    MediaManager_RegisterCallback(kCamera, &preview.callback);
    for (int round = 0; round < 3; ++round) {
        StopAndRenegotiate();
        EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(0), kCamera);
        MediaManager_RegisterCallback(kCamera, &tile.callback);
        EXPECT_TRUE(preview.GetsMore()) << "its sink was borrowed until it is unregistered";
        EXPECT_TRUE(tile.GetsMore());
    }
    EXPECT_EQ(Events(), announcedOnce);
}

TEST_F(LocalCamera, GivesTheTileEachPictureOnceAfterARenegotiation) {
    CountingSink tile;
    Enter("test");
    ASSERT_TRUE(WaitForFrames(1));
    StopAndRenegotiate();
    // The announcement's sink leads to the tile too.
    const int announced = frames;
    MediaManager_RegisterCallback(kCamera, &tile.callback);
    EXPECT_TRUE(tile.GetsMore());
    EXPECT_EQ(frames, announced);
}

TEST_F(LocalCamera, IsNotTouchedByARenegotiationWithoutAStop) {
    Enter("test");
    ASSERT_TRUE(WaitForFrames(1));
    Connections_RenegotiateOutboundPeerConnection(false, true, "");
    EXPECT_TRUE(WaitForFrames(frames + 5));
    EXPECT_EQ(Events(), announcedOnce);
}

TEST_F(LocalCamera, ShowsNothingWhileItsTrackIsSwitchedOff) {
    CountingSink sink;
    Enter("test");
    ASSERT_TRUE(WaitForFrames(1));
    MediaManager_RegisterCallback(kCamera, &sink.callback);
    ASSERT_TRUE(sink.GetsMore());
    WebRTC_SetEnabledLocalVideoTrack(false, 0);
    EXPECT_FALSE(WebRTC_IsLocalVideoTrackEnabled(0));
    EXPECT_TRUE(sink.GetsNoMore());
    EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(0), kCamera);
    WebRTC_SetEnabledLocalVideoTrack(true, 0);
    EXPECT_TRUE(sink.GetsMore());
}

TEST_F(LocalCamera, StopsAndStartsOnManyThreadsAndCanStillBeBroughtBack) {
    CountingSink sink;
    Enter("test");
    ASSERT_TRUE(WaitForFrames(1));
    MediaManager_RegisterCallback(kCamera, &sink.callback);
    {
        std::vector<std::jthread> threads;
        threads.reserve(4);
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([] {
                for (int round = 0; round < 50; ++round) StopAndRenegotiate();
            });
        }
    }
    Connections_RenegotiateOutboundPeerConnection(false, true, "");
    EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(0), kCamera);
    EXPECT_TRUE(sink.GetsMore());
}

TEST_F(LocalCamera, EndsWithItsRoom) {
    CountingSink sink;
    Enter("test");
    ASSERT_TRUE(WaitForFrames(1));
    MediaManager_RegisterCallback(kCamera, &sink.callback);
    ASSERT_TRUE(sink.GetsMore());
    Connections_CloseConnection();
    const int before = frames + sink.frames;
    EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(0), "");
    std::this_thread::sleep_for(kAWhile);
    EXPECT_EQ(frames + sink.frames, before);
    EXPECT_EQ(WebRTC_GetVideoCaptureIndex(nullptr, nullptr, nullptr, nullptr), 0) << "the next room has it";
}

TEST_F(LocalCamera, IsNotThereWhenNoneIsConfigured) {
    Enter("", {{"one", "test"}});
    std::this_thread::sleep_for(kAWhile);
    EXPECT_TRUE(Events().empty());
    EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(0), "");
    EXPECT_LT(WebRTC_GetVideoCaptureIndex(nullptr, nullptr, nullptr, nullptr), 0);
    StopAndRenegotiate();
    EXPECT_EQ(MediaManager_IsLocalVideoSourceRunning(0), "");
}

TEST_F(LocalCamera, IsRefusedWhenItsFileIsMissing) {
    EngineOptions options;
    options.camera = "/no/such/camera.mp4";
    const auto problem = Configure(options);
    ASSERT_TRUE(problem);
    EXPECT_NE(problem->find("/no/such/camera.mp4"), std::string::npos) << *problem;
}

}  // namespace
}  // namespace Corvanta::Engine
