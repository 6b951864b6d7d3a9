// What of the local user's pictures and sound goes to the others.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include "engine/Engine.h"
#include "platform/Connections.h"
#include "platform/MediaManager.h"
#include "platform/WebRTC.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/FakeTransport.h"
#include "tests/engine/SharingVisitor.h"

namespace Corvanta::Engine {
namespace {

// Some pictures and pieces of sound.
constexpr std::chrono::milliseconds kAWhile{200};
// A quarter of a second.
constexpr int kSomeSamples = SoundMixer::kRate / 4;

class LocalFeedTest : public testing::Test {
protected:
    LocalFeedTest() {
        visitor.makeTransport = fake.Maker();
        WebRTC_SetEnabledLocalAudioTrack(true, 0);
    }

    [[nodiscard]] static bool GetsMore(const std::atomic<int>& count, int more) {
        const int before = count;
        return Eventually([&] { return count >= before + more; });
    }
    [[nodiscard]] static bool GetsNoMore(const std::atomic<int>& count) {
        // One may have been on its way.
        std::this_thread::sleep_for(kAWhile);
        const int before = count;
        std::this_thread::sleep_for(kAWhile);
        return count == before;
    }

    FakeRoom fake;
    FakeFeed& camera = *fake.cameraFeed;
    FakeFeed& shared = *fake.streamFeed;
    // Leaves before the rest goes.
    SharingVisitor visitor;
};

TEST_F(LocalFeedTest, GetsTheCamerasPicturesWhileTheirTrackIsOn) {
    visitor.Enter("test");
    EXPECT_TRUE(GetsMore(camera.pictures, 3));
    EXPECT_GT(camera.width, 0);
    WebRTC_SetEnabledLocalVideoTrack(false, 0);
    EXPECT_TRUE(GetsNoMore(camera.pictures));
    WebRTC_SetEnabledLocalVideoTrack(true, 0);
    EXPECT_TRUE(GetsMore(camera.pictures, 3));
    Connections_CloseConnection();
    EXPECT_TRUE(GetsNoMore(camera.pictures));
}

TEST_F(LocalFeedTest, GetsTheMicrophonesSoundWhileItsTrackIsOn) {
    visitor.Configure("");
    WriteSetting("Device.Microphone", kTestTone);
    visitor.Enter("");
    EXPECT_TRUE(GetsMore(camera.samples, kSomeSamples));
    EXPECT_TRUE(Eventually([&] { return camera.peak > 0; }));
    EXPECT_TRUE(camera.isTimed);
    WebRTC_SetEnabledLocalAudioTrack(false, 0);
    EXPECT_TRUE(GetsNoMore(camera.samples));
    WebRTC_SetEnabledLocalAudioTrack(true, 0);
    EXPECT_TRUE(GetsMore(camera.samples, kSomeSamples));
}

TEST_F(LocalFeedTest, GetsASharedStreamWithItsSoundUntilItEnds) {
    WebRTC_SetLocalStreamsLocalAudioVolume(0.0F);
    visitor.Enter("");
    ASSERT_EQ(ShareStream(StreamType::Device, kTestPicture), std::nullopt);
    EXPECT_TRUE(fake.record.Gets("publish 3 Test picture"));
    EXPECT_TRUE(GetsMore(shared.pictures, 3));
    // The others hear it however loud the local user has it.
    EXPECT_TRUE(GetsMore(shared.samples, kSomeSamples));
    EXPECT_TRUE(Eventually([&] { return shared.peak > 0; }));
    EXPECT_FALSE(fake.record.Has("unpublish 3"));
    StopSharing(StreamType::Device);
    EXPECT_TRUE(fake.record.Gets("unpublish 3"));
    EXPECT_TRUE(GetsNoMore(shared.pictures));
    EXPECT_TRUE(GetsNoMore(shared.samples));
}

TEST_F(LocalFeedTest, IsAnothersWhenAStreamIsReplaced) {
    visitor.Enter("");
    ASSERT_EQ(ShareStream(StreamType::Device, kTestPicture), std::nullopt);
    ASSERT_TRUE(fake.record.Gets("publish 3 Test picture"));
    ASSERT_EQ(ShareStream(StreamType::Device, kTestPicture), std::nullopt);
    ASSERT_TRUE(fake.record.Gets("unpublish 3"));
    EXPECT_TRUE(Eventually([&] { return fake.record.Lines().back() == "publish 3 Test picture"; }));
    Connections_CloseConnection();
    const auto lines = fake.record.Lines();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[lines.size() - 2], "unpublish 3");
    EXPECT_EQ(lines.back(), "stop");
}

}  // namespace
}  // namespace Corvanta::Engine
