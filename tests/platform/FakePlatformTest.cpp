#include "tests/fake_platform/FakePlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "platform/Logger.h"
#include "platform/VideoFrameAdaptation.h"
#include "tests/fake_platform/TestFrames.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

class FakePlatformPromises : public FakePlatformTest {};

TEST_F(FakePlatformPromises, AnswersWithTheResultsThatATestHasSet) {
    Fake().Set([](FakeResults& results) {
        results.connectionIndex = -1;
        results.activeSpeaker = "speaker";
    });
    EXPECT_EQ(
        Connections_InitConnection(nullptr, nullptr, "s", "c", "e", "p", "d", true, false, true, nullptr),
        -1);
    std::string speaker;
    EXPECT_TRUE(WebRTC_GetActiveSpeaker(speaker));
    EXPECT_EQ(speaker, "speaker");
    EXPECT_EQ(
        Fake().CallsOf("Connections_InitConnection")[0].arguments,
        (std::vector<std::string>{"null", "null", "s", "c", "e", "p", "d", "true", "false", "true", "null"}));
}

TEST_F(FakePlatformPromises, ThrowsFromTheFunctionThatATestNames) {
    Fake().ThrowFrom("WebRTC_Terminate", 7);
    EXPECT_THROW(WebRTC_Terminate(), int);
}

TEST_F(FakePlatformPromises, CannotReadAConfigurationKeyThatIsNotThere) {
    int32_t number = 5;
    EXPECT_FALSE(Configuration_GetPropertyInt("Number", &number));
    EXPECT_EQ(number, 5);
    EXPECT_TRUE(Configuration_SetPropertyInt("Number", 6));
    EXPECT_TRUE(Configuration_GetPropertyInt("Number", &number));
    EXPECT_EQ(number, 6);
    bool flag = false;
    EXPECT_FALSE(Configuration_GetPropertyBoolean("Number", &flag));
}

TEST_F(FakePlatformPromises, CutsATextToTheBuffer) {
    Configuration_SetPropertyString("Text", "abcdef");
    char buffer[4] = {'x', 'x', 'x', 'x'};
    EXPECT_TRUE(Configuration_GetPropertyString("Text", buffer, 4));
    EXPECT_STREQ(buffer, "abc");
    EXPECT_FALSE(Configuration_GetPropertyString("Text", buffer, 0));
}

TEST_F(FakePlatformPromises, OwnsClientStringsThatAreNeverReleased) {
    GraphQLClientString* const kept = GraphQLClient_GetEmail();
    GraphQLClientString* const released = GraphQLClient_GetProfileId();
    GraphQLClient_CStringDealloc(released);
    EXPECT_STREQ(kept->c_str(), "me@example.com");
    EXPECT_EQ(Fake().UnreleasedStrings(), 1U);
    GraphQLClient_CStringDealloc(released);
    EXPECT_EQ(Fake().WrongReleases(), 1U);
}

TEST_F(FakePlatformPromises, DeliversFramesToOfferedAndRegisteredSinks) {
    int offered = 0;
    int registered = 0;
    MediaManager_SetAddRemoteVideoSourceSDLCallback([&](const std::string&) {
        return new FrameCallback([&](const std::shared_ptr<VideoFrameBuffer>&) { ++offered; });
    });
    FrameCallback sink = [&](const std::shared_ptr<VideoFrameBuffer>&) { ++registered; };
    EXPECT_NE(Fake().OfferRemoteSource("a"), nullptr);
    MediaManager_RegisterCallback("a", &sink);
    EXPECT_EQ(Fake().Deliver("a", MakeFrame()), 2U);
    MediaManager_UnregisterCallback("a", &sink);
    EXPECT_EQ(Fake().Deliver("a", MakeFrame()), 1U);
    Fake().RemoveRemoteSource("a");
    EXPECT_EQ(Fake().Deliver("a", MakeFrame()), 0U);
    EXPECT_EQ(offered, 2);
    EXPECT_EQ(registered, 1);
}

TEST_F(FakePlatformPromises, KeepsAnOfferedSinkForFramesThatComeTooLate) {
    int frames = 0;
    MediaManager_SetAddLocalVideoSourceSDLCallback([&](StreamType, const std::string&) {
        return new FrameCallback([&](const std::shared_ptr<VideoFrameBuffer>&) { ++frames; });
    });
    FrameCallback* const sink = Fake().OfferLocalSource(StreamType::Camera, "camera");
    MediaManager_Close();
    (*sink)(MakeFrame());
    EXPECT_EQ(frames, 1);
    EXPECT_EQ(Fake().OfferLocalSource(StreamType::Camera, "camera"), nullptr);
}

TEST_F(FakePlatformPromises, WaitsForACallInProgressBeforeACallbackIsReplaced) {
    std::atomic<bool> isInside = false;
    std::atomic<bool> mayLeave = false;
    std::atomic<bool> hasLeft = false;
    Connections_SetParticipantJoinedCallback([&] {
        isInside = true;
        while (!mayLeave) {
            std::this_thread::yield();
        }
        hasLeft = true;
    });
    std::thread caller([] { Fake().callbacks.participantJoined(); });
    while (!isInside) {
        std::this_thread::yield();
    }
    std::thread releaser([&] { mayLeave = true; });
    Connections_SetParticipantJoinedCallback({});
    EXPECT_TRUE(hasLeft);
    caller.join();
    releaser.join();
}

TEST_F(FakePlatformPromises, CallsEveryDataChannelHandlerThoughOneThrows) {
    std::string heard;
    MediaManager_SetCallbackToGetRemoteDataChannelSDLCallbackList([&] {
        return std::vector<DataChannelCallback>{
            [](const DataChannelMessage&) { throw std::runtime_error("bad text"); },
            [&](const DataChannelMessage& message) { heard = message.senderId + ":" + message.text; }};
    });
    EXPECT_EQ(Fake().DeliverMessage("a", "{}").size(), 1U);
    EXPECT_EQ(heard, "a:{}");
}

TEST_F(FakePlatformPromises, ConvertsToAFrameOfTheSizeTypeAndColourAskedFor) {
    const auto frame = MakeFrame({.width = 10, .height = 6, .colorSpace = kBt2020Pq});
    VideoFrameTransformer* const transformer = WebRTC_GetFrameTransformerInstance();
    const auto converted =
        WebRTC_ConvertFrame(transformer, frame, 10, 6, VideoFrameBufferType::YUV422, kBt709Limited);
    EXPECT_EQ(converted->GetWidth(), 10);
    EXPECT_EQ(converted->GetType(), VideoFrameBufferType::YUV422);
    EXPECT_EQ(converted->GetColorSpace(), kBt709Limited);
    ASSERT_EQ(Fake().Conversions().size(), 1U);
    EXPECT_EQ(Fake().Conversions()[0].source, kBt2020Pq);
    EXPECT_EQ(Fake().Conversions()[0].thread, std::this_thread::get_id());
    WebRTC_DeleteFrameTransformerInstance(transformer);
    EXPECT_EQ(Fake().TransformersCreated(), 1U);
    EXPECT_EQ(Fake().TransformersDeleted(), 1U);
}

TEST_F(FakePlatformPromises, KeepsLogLinesWithTheirLevels) {
    LOG(kLogInformation, "Adding %s, %d", "a", 3);
    LOG(kLogError, "plain");
    EXPECT_THAT(Fake().Logs(), ElementsAre(LogLine{2, "Adding a, 3"}, LogLine{4, "plain"}));
    EXPECT_THAT(Fake().LogsOf(4), ElementsAre("plain"));
}

TEST_F(FakePlatformPromises, RecordsWhatTheAdaptiveManagerIsTold) {
    const auto manager = AdaptiveVideoSourceManagerInterface::Create("camera", {1, 240, 786432}, true);
    manager->OnDataChannelMessage({"a", "{}"});
    manager->OnRemoteStreamRemoved("a");
    manager->SetMainStream("b");
    EXPECT_EQ(manager->GetAdaptation(), VideoFrameAdaptation{});
    EXPECT_THAT(
        Fake().CallNames(),
        ElementsAre("AdaptiveVideoSourceManager_Create", "AdaptiveVideoSourceManager_OnDataChannelMessage",
                    "AdaptiveVideoSourceManager_OnRemoteStreamRemoved",
                    "AdaptiveVideoSourceManager_SetMainStream", "AdaptiveVideoSourceManager_GetAdaptation"));
    EXPECT_EQ(Fake().AdaptiveManager(), manager);
}

class Listener final : public Integrations::ProcessMonitorListenerInterface {
public:
    void OnProcessesChanged(const std::map<int32_t, int32_t>& changed) override { processes = changed; }
    std::map<int32_t, int32_t> processes;
};

TEST_F(FakePlatformPromises, TellsTheProcessListenersUntilMonitoringStops) {
    const auto listener = std::make_shared<Listener>();
    auto* const monitor = Integrations::ProcessMonitor::GetInstance();
    EXPECT_TRUE(monitor->Subscribe(listener));
    Fake().FireProcesses({{0, 123}});
    EXPECT_THAT(listener->processes, ElementsAre(Pair(0, 123)));
    EXPECT_TRUE(monitor->Unsubscribe(reinterpret_cast<uintptr_t>(listener.get())));
    EXPECT_FALSE(monitor->Unsubscribe(reinterpret_cast<uintptr_t>(listener.get())));
    monitor->Subscribe(listener);
    monitor->StopMonitoring();
    EXPECT_EQ(Fake().ProcessListeners(), 0U);
}

}  // namespace
}  // namespace Corvanta::Testing
