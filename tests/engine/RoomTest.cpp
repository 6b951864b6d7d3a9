#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "engine/Engine.h"
#include "platform/Connections.h"
#include "platform/MediaManager.h"
#include "platform/WebRTC.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/RoomVisitor.h"

namespace Corvanta::Engine {
namespace {

const std::vector<Participant> kOneClip{{"one", "clip"}};
const std::vector<Participant> kTwoTests{{"one", "test"}, {"two", "test"}};

TEST(Room, ShowsMovingClipsOfFourParticipants) {
    RoomVisitor visitor;
    EXPECT_NE(visitor.Enter({{"one", "clip"}, {"two", "clip"}, {"three", "clip"}, {"four", "clip"}}), -1);
    for (std::size_t participant = 0; participant < 4; ++participant) {
        EXPECT_TRUE(visitor.WaitForFrames(participant, 5));
    }
    EXPECT_TRUE(WaitForPictures(kPatience));
    const RoomStatus status = GetRoomStatus();
    EXPECT_TRUE(status.connected);
    EXPECT_EQ(status.participants, 4U);
    EXPECT_EQ(status.showing, 4U);
    EXPECT_EQ(status.withoutPicture, 0U);
    EXPECT_GE(status.pictures, 20U);
    const auto frame = visitor.LastFrame(0);
    EXPECT_EQ(frame->GetType(), VideoFrameBufferType::YUV420);
    EXPECT_EQ(frame->GetWidth(), 1280);
    EXPECT_EQ(frame->GetHeight(), 720);
    EXPECT_EQ(frame->GetColorSpace(), ColorSpace(LegacyColorSpace::BT709));
}

TEST(Room, PlaysInRealTime) {
    RoomVisitor visitor;
    visitor.Enter({{"one", "test"}});
    ASSERT_TRUE(visitor.WaitForFrames(0, 1));
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(visitor.WaitForFrames(0, 31));
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_GT(elapsed.count(), 0.85) << "30 pictures take a second";
}

TEST(Room, AnnouncesEachParticipantInOrder) {
    RoomVisitor visitor;
    visitor.Enter(kTwoTests);
    EXPECT_TRUE(Eventually([&] { return visitor.Events().size() == 6; }));
    const std::vector<std::string> expected{"add participant-1-one", "track participant-1-one", "joined",
                                            "add participant-2-two", "track participant-2-two", "joined"};
    EXPECT_EQ(visitor.Events(), expected);
    EXPECT_EQ(Connections_GetPublisherDisplayName("participant-2-two"), "two");
    EXPECT_EQ(Connections_GetPublisherDisplayName("nobody"), "");
    EXPECT_EQ(Connections_GetStreamType("participant-1-one"), StreamType::Camera);
    EXPECT_FALSE(Connections_IsPublisherFromExternalSource("participant-1-one"));
    EXPECT_EQ(Connections_GetLocalDisplayName(StreamType::Camera), "Me");
    EXPECT_NE(Connections_GetLocalUserStreamID(StreamType::Camera), "");
    EXPECT_EQ(Connections_GetLocalUserStreamID(StreamType::File), "");
}

TEST(Room, OffersASourceAgainUntilThereIsARoomForIt) {
    RoomVisitor visitor;
    visitor.refusals = 3;
    visitor.Enter({{"one", "test"}});
    EXPECT_TRUE(visitor.WaitForFrames(0, 2));
    EXPECT_EQ(visitor.offers, 4);
}

TEST(Room, StopsOfferingWhenItCloses) {
    RoomVisitor visitor;
    visitor.refusals = 1'000'000;
    visitor.Enter({{"one", "test"}});
    EXPECT_TRUE(Eventually([&] { return visitor.offers >= 2; }));
    Connections_CloseConnection();
    const int offers = visitor.offers;
    std::this_thread::sleep_for(std::chrono::milliseconds(120));
    EXPECT_EQ(visitor.offers, offers);
}

TEST(Room, CanBeEnteredAgainAndAgain) {
    RoomVisitor visitor;
    int last = -1;
    for (int round = 0; round < 3; ++round) {
        const int index = visitor.Enter({{"one", "test"}});
        EXPECT_NE(index, -1);
        EXPECT_NE(index, last);
        last = index;
        EXPECT_TRUE(visitor.WaitForFrames(static_cast<std::size_t>(round), 2));
        RoomVisitor::Leave();
        EXPECT_FALSE(GetRoomStatus().connected);
        EXPECT_FALSE(WaitForPictures(std::chrono::milliseconds(0)));
    }
}

TEST(Room, IsReplacedWhenAnotherIsEnteredWithoutLeaving) {
    RoomVisitor visitor;
    visitor.Enter({{"one", "test"}});
    EXPECT_TRUE(visitor.WaitForFrames(0, 1));
    EXPECT_NE(visitor.Enter({{"other", "test"}}), -1);
    EXPECT_TRUE(visitor.WaitForFrames(1, 2));
    EXPECT_EQ(visitor.StreamId(1), "participant-1-other");
    const std::size_t frames = visitor.Frames(0);
    EXPECT_TRUE(visitor.WaitForFrames(1, 6));
    EXPECT_EQ(visitor.Frames(0), frames);
}

TEST(Room, CallsNothingAfterItWasClosedWhileDeliveringOnManyThreads) {
    std::atomic<bool> isClosed = false;
    std::atomic<int> late = 0;
    std::atomic<int> frames = 0;
    RoomVisitor visitor;
    visitor.onFrame = [&](const auto&) {
        ++frames;
        std::this_thread::sleep_for(std::chrono::milliseconds(25));
        if (isClosed) ++late;
    };
    visitor.Enter({{"1", "test"}, {"2", "test"}, {"3", "test"}, {"4", "test"}, {"5", "test"}, {"6", "test"}});
    EXPECT_TRUE(Eventually([&] { return frames > 12; }));
    Connections_CloseConnection();
    isClosed = true;
    const int total = frames;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(late, 0);
    EXPECT_EQ(frames, total);
    Connections_CloseConnection();
}

TEST(Room, ClosesOnceWhenSeveralThreadsCloseIt) {
    RoomVisitor visitor;
    visitor.Enter(kTwoTests);
    EXPECT_TRUE(visitor.WaitForFrames(0, 1));
    std::vector<std::thread> closers;
    for (int closer = 0; closer < 4; ++closer) {
        closers.emplace_back([] {
            Connections_CloseConnection();
            MediaManager_Close();
            EXPECT_FALSE(GetRoomStatus().connected);
        });
    }
    for (auto& closer : closers) closer.join();
}

TEST(Room, LetsACallbackLeaveTheRoom) {
    RoomVisitor visitor;
    std::atomic<int> frames = 0;
    visitor.onFrame = [&](const auto&) {
        if (++frames == 3) Connections_CloseConnection();
    };
    visitor.Enter(kTwoTests);
    EXPECT_TRUE(Eventually([&] { return frames >= 3 && !GetRoomStatus().connected; }));
    Connections_CloseConnection();
    const int total = frames;
    EXPECT_NE(visitor.Enter({{"again", "test"}}), -1);
    EXPECT_TRUE(Eventually([&] { return frames > total; }));
}

TEST(Room, CanBeClosedByAThreadThatTheLibrarysCallbacksWaitFor) {
    RoomVisitor visitor;
    std::timed_mutex remoteLock;
    visitor.onFrame = [&](const auto&) {
        // A short lock of the library, as its frame queue takes.
        const std::lock_guard lock(remoteLock);
    };
    visitor.Enter(kTwoTests);
    EXPECT_TRUE(visitor.WaitForFrames(1, 3));
    for (int round = 0; round < 100; ++round) {
        const std::lock_guard lock(remoteLock);
        std::string speaker;
        WebRTC_GetActiveSpeaker(speaker);
        WebRTC_SetEnabledRemoteVideoTrack("participant-1-one", round % 2 == 0);
        WebRTC_SetRemoteAudioTrackVolume("participant-1-one", 0.5);
        static_cast<void>(Connections_GetStreamType("participant-1-one"));
    }
}

TEST(Room, HandsNoFramesOverWhileTheVideoIsOff) {
    RoomVisitor visitor;
    visitor.Enter(kTwoTests);
    const std::string id = "participant-1-one";
    ASSERT_TRUE(visitor.WaitForFrames(0, 2));

    const auto expectStopped = [&] {
        // What was under way when it was switched off may still come.
        ASSERT_TRUE(visitor.WaitForFrames(1, visitor.Frames(1) + 2));
        const std::size_t frames = visitor.Frames(0);
        ASSERT_TRUE(visitor.WaitForFrames(1, visitor.Frames(1) + 5));
        EXPECT_EQ(visitor.Frames(0), frames);
    };
    WebRTC_SetEnabledRemoteVideoTrack(id, false);
    expectStopped();
    WebRTC_SetEnabledRemoteVideoTrack(id, true);
    EXPECT_TRUE(visitor.WaitForFrames(0, visitor.Frames(0) + 2));

    Connections_ConfigureStream(id, {{ConfigureStreamType::Video, false}});
    expectStopped();
    Connections_ConfigureStream(id, {{ConfigureStreamType::Audio, false}});
    Connections_ConfigureStream(id, {{ConfigureStreamType::Video, true}});
    EXPECT_TRUE(visitor.WaitForFrames(0, visitor.Frames(0) + 2));
    Connections_ConfigureStream("nobody", {{ConfigureStreamType::Video, true}});
}

TEST(Room, FeedsFurtherSinksUntilTheyAreUnregistered) {
    RoomVisitor visitor;
    std::atomic<int> calls = 0;
    std::shared_ptr<VideoFrameBuffer> last;
    std::mutex lastMutex;
    FrameCallback sink = [&](const std::shared_ptr<VideoFrameBuffer>& frame) {
        const std::lock_guard lock(lastMutex);
        last = frame;
        ++calls;
    };
    visitor.Enter({{"one", "test"}});
    ASSERT_TRUE(visitor.WaitForFrames(0, 1));
    MediaManager_RegisterCallback("nobody", &sink);
    MediaManager_RegisterCallback("participant-1-one", nullptr);
    MediaManager_RegisterCallback("participant-1-one", &sink);
    EXPECT_TRUE(Eventually([&] { return calls >= 2; }));
    {
        const std::lock_guard lock(lastMutex);
        EXPECT_NE(last, visitor.LastFrame(0)) << "each sink has a frame object of its own";
    }
    MediaManager_UnregisterCallback("participant-1-one", &sink);
    MediaManager_UnregisterCallback("participant-1-one", &sink);
    const int total = calls;
    EXPECT_TRUE(visitor.WaitForFrames(0, visitor.Frames(0) + 3));
    EXPECT_EQ(calls, total);
}

TEST(Room, RestartsAParticipantOnRequest) {
    RoomVisitor visitor;
    visitor.Enter({{"one", "test"}});
    ASSERT_TRUE(visitor.WaitForFrames(0, 2));
    Connections_RestartPeerConnection("participant-1-one", true, true, true);
    Connections_RestartPeerConnection("nobody", true, true, true);
    EXPECT_TRUE(visitor.WaitForFrames(0, visitor.Frames(0) + 5));
}

TEST(Room, NamesWhoSpeaksAndFollowsTheTurns) {
    RoomVisitor visitor;
    visitor.Enter({{"quiet", "test"}, {"one", "clip"}, {"two", "clip"}});
    std::string speaker = "unchanged";
    // Before anybody has spoken: the first with a picture.
    EXPECT_TRUE(Eventually([&] { return WebRTC_GetActiveSpeaker(speaker); }));
    EXPECT_TRUE(
        Eventually([&] { return WebRTC_GetActiveSpeaker(speaker) && speaker == "participant-2-one"; }));
    EXPECT_TRUE(
        Eventually([&] { return WebRTC_GetActiveSpeaker(speaker) && speaker == "participant-3-two"; }));
    RoomVisitor::Leave();
    speaker = "unchanged";
    EXPECT_FALSE(WebRTC_GetActiveSpeaker(speaker));
    EXPECT_EQ(speaker, "unchanged");
}

TEST(Room, NeverTakesTheTestToneForSpeech) {
    RoomVisitor visitor;
    visitor.Enter(kTwoTests);
    ASSERT_TRUE(visitor.WaitForFrames(1, 30));
    std::string speaker;
    EXPECT_TRUE(WebRTC_GetActiveSpeaker(speaker));
    EXPECT_EQ(speaker, "participant-1-one");
}

TEST(Room, RemembersVolumes) {
    RoomVisitor visitor;
    visitor.Enter(kOneClip);
    const std::string id = "participant-1-one";
    EXPECT_EQ(WebRTC_GetRemoteAudioTrackVolume(id), 1.0);
    WebRTC_SetRemoteAudioTrackVolume(id, 0.25);
    EXPECT_EQ(WebRTC_GetRemoteAudioTrackVolume(id), 0.25);
    WebRTC_SetRemoteAudioTrackVolume(id, 7.0);
    EXPECT_EQ(WebRTC_GetRemoteAudioTrackVolume(id), 1.0);
    EXPECT_EQ(WebRTC_GetRemoteAudioTrackVolume("nobody"), 1.0);
    WebRTC_SetEnabledRemoteAudioTrack(id, false);
    WebRTC_SetRemoteAudioTrackIsExternalSource(id, true);
    WebRTC_SetRemoteAudioTrackModifier(RemoteAudioGroup::Streams, 0.5);
    WebRTC_SetRemoteAudioTrackModifier(static_cast<RemoteAudioGroup>(9), 0.5);
    WebRTC_SetLocalStreamsLocalAudioVolume(0.5F);
    EXPECT_EQ(WebRTC_GetLocalStreamsLocalAudioVolume(), 0.5F);
    EXPECT_TRUE(visitor.WaitForFrames(0, 3));
}

TEST(Room, KeepsTheLocalTracksSwitches) {
    WebRTC_SetEnabledLocalAudioTrack(false, 0);
    EXPECT_FALSE(WebRTC_IsLocalAudioTrackEnabled(0));
    WebRTC_SetEnabledLocalVideoTrack(true, 0);
    EXPECT_TRUE(WebRTC_IsLocalVideoTrackEnabled(0));
    EXPECT_FALSE(WebRTC_IsLocalVideoTrackEnabled(1));
    Connections_RenegotiateOutboundPeerConnection(true, false, "local");
    EXPECT_TRUE(WebRTC_IsLocalAudioTrackEnabled(0));
    EXPECT_FALSE(WebRTC_IsLocalVideoTrackEnabled(0));
    EXPECT_GT(WebRTC_GetLocalCameraTargetBitrate(), 0U);
}

TEST(Room, KnowsNoRecordings) {
    EXPECT_EQ(Connections_InitRecording(nullptr, "", nullptr, {}), -1);
    EXPECT_EQ(Connections_EndRecording(1), -1);
    Connections_ClearRecordings();
}

TEST(RoomMessages, AreTakenAsLongAsThereIsARoom) {
    RoomVisitor visitor;
    EXPECT_FALSE(MediaManager_SendDatachannelMessage("{}"));
    visitor.Enter({{"one", "test"}});
    EXPECT_TRUE(MediaManager_SendDatachannelMessage("{}"));
    EXPECT_FALSE(MediaManager_SendDatachannelMessage(nullptr));
    RoomVisitor::Leave();
    EXPECT_FALSE(MediaManager_SendDatachannelMessage("{}"));
}

}  // namespace
}  // namespace Corvanta::Engine
