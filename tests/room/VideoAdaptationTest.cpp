#include "room/VideoAdaptation.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "tests/fake_platform/FakePlatform.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;

class VideoAdaptationTest : public FakePlatformTest {
protected:
    static void Answer(uint32_t bitrate) {
        Fake().Set([&](FakeResults& results) { results.adaptation = {3, 480, bitrate}; });
    }
    [[nodiscard]] static VideoFrameAdaptation Ask() { return Fake().callbacks.localVideoFrameAdaptation(); }
    [[nodiscard]] static std::vector<std::string> Bitrates() {
        std::vector<std::string> all;
        for (const Call& call : Fake().CallsOf("Connections_ConfigureOutboundBitrate")) {
            all.push_back(call.arguments[0]);
        }
        return all;
    }

    VideoAdaptation adaptation;
};

TEST_F(VideoAdaptationTest, StartsForTheLocalCameraWithTheInitialNumbers) {
    adaptation.Start();
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"WebRTC_GetLocalCameraTargetBitrate", {}},
                                 {"Connections_GetLocalUserStreamID", {"0"}},
                                 {"AdaptiveVideoSourceManager_Create", {"me", "1", "240", "786432", "true"}},
                                 {"MediaManager_SetLocalVideoFrameAdaptationCallback", {"set"}}}));
}

TEST_F(VideoAdaptationTest, StartsNothingForAUserWithoutACamera) {
    Fake().Set([](FakeResults& results) { results.localUserStreamIds.clear(); });
    adaptation.Start();
    EXPECT_EQ(Calls().Count("AdaptiveVideoSourceManager_Create"), 0U);
    EXPECT_FALSE(Fake().callbacks.localVideoFrameAdaptation.IsSet());
    adaptation.SetMainStream("one");
    adaptation.OnRemoteStreamRemoved("one");
    adaptation.OnDataChannelMessage({"one", "text"});
}

TEST_F(VideoAdaptationTest, ReturnsTheManagersAnswerAndAppliesItsBitrate) {
    adaptation.Start();
    Answer(500000);
    EXPECT_EQ(Ask(), (VideoFrameAdaptation{3, 480, 500000}));
    EXPECT_EQ(Bitrates(), std::vector<std::string>{"500000"});
}

TEST_F(VideoAdaptationTest, AppliesABitrateOnlyWhenItChanges) {
    adaptation.Start();
    for (const uint32_t bitrate : {500000U, 500000U, 600000U, 600000U, 500000U}) {
        Answer(bitrate);
        (void)Ask();
    }
    EXPECT_EQ(Bitrates(), (std::vector<std::string>{"500000", "600000", "500000"}));
}

TEST_F(VideoAdaptationTest, KnowsTheCamerasTargetFromTheStart) {
    adaptation.Start();
    Answer(2000000);
    (void)Ask();
    EXPECT_TRUE(Bitrates().empty());
}

TEST_F(VideoAdaptationTest, TakesTheCamerasTargetWhereTheManagerLeavesTheChoice) {
    adaptation.Start();
    Fake().Set([](FakeResults& results) { results.targetBitrate = 1500000; });
    Answer(0);
    EXPECT_EQ(Ask().bitrate, 0U);
    (void)Ask();
    EXPECT_EQ(Bitrates(), std::vector<std::string>{"1500000"});
}

TEST_F(VideoAdaptationTest, PassesOnWhatTheRoomSees) {
    adaptation.Start();
    Calls().Clear();
    adaptation.OnDataChannelMessage({"one", "text"});
    adaptation.OnRemoteStreamRemoved("two");
    adaptation.SetMainStream("three");
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"AdaptiveVideoSourceManager_OnDataChannelMessage", {"one", "text"}},
                                 {"AdaptiveVideoSourceManager_OnRemoteStreamRemoved", {"two"}},
                                 {"AdaptiveVideoSourceManager_SetMainStream", {"three"}}}));
}

TEST_F(VideoAdaptationTest, StopsWithAnEmptyFunctionAndLetsGoOfTheManager) {
    adaptation.Start();
    ASSERT_NE(Fake().AdaptiveManager(), nullptr);
    Calls().Clear();
    adaptation.Stop();
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"MediaManager_SetLocalVideoFrameAdaptationCallback", {"empty"}}}));
    EXPECT_EQ(Fake().AdaptiveManager(), nullptr);
    adaptation.SetMainStream("one");
    EXPECT_EQ(Calls().Count("AdaptiveVideoSourceManager_SetMainStream"), 0U);
}

TEST_F(VideoAdaptationTest, StartsNoMoreOnceItHasStopped) {
    adaptation.Stop();
    adaptation.Start();
    EXPECT_FALSE(Fake().callbacks.localVideoFrameAdaptation.IsSet());
    EXPECT_EQ(Fake().AdaptiveManager(), nullptr);
}

TEST_F(VideoAdaptationTest, LeavesNothingBehindWhenAStopComesIntoTheMiddleOfAStart) {
    for (const char* const step : {"WebRTC_GetLocalCameraTargetBitrate", "AdaptiveVideoSourceManager_Create",
                                   "MediaManager_SetLocalVideoFrameAdaptationCallback"}) {
        VideoAdaptation interrupted;
        bool isStopped = false;
        Calls().OnCall(step, [&](const Call&) {
            if (!std::exchange(isStopped, true)) interrupted.Stop();
        });
        interrupted.Start();
        Calls().OnCall(step, {});
        EXPECT_TRUE(isStopped);
        EXPECT_FALSE(Fake().callbacks.localVideoFrameAdaptation.IsSet()) << step;
        EXPECT_EQ(Fake().AdaptiveManager(), nullptr) << step;
    }
}

TEST_F(VideoAdaptationTest, IsAskedFedAndStoppedFromSeveralThreads) {
    adaptation.Start();
    std::thread capture([] {
        for (uint32_t i = 0; i < 500; ++i) {
            Answer(i % 3 * 1000);
            (void)Ask();
        }
    });
    std::thread feeder([&] {
        for (int i = 0; i < 500; ++i) {
            adaptation.SetMainStream("one");
            adaptation.OnDataChannelMessage({"one", "text"});
        }
    });
    (void)Calls().WaitFor("AdaptiveVideoSourceManager_GetAdaptation", 20);
    adaptation.Stop();
    capture.join();
    feeder.join();
    EXPECT_EQ(Fake().AdaptiveManager(), nullptr);
}

}  // namespace
}  // namespace Corvanta::Room
