// Media threads, data channels and the host at once; what a sanitizer watches.
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "tests/room/RoomViewTest.h"
#include "tests/video/Gate.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;

class RoomThreadsTest : public RoomViewTest {
protected:
    // Streams come, send and go, messages and status changes arrive, until ended is set.
    void StartPeers() {
        Calls().SetRecording(false);
        for (int peer = 0; peer < 3; ++peer) {
            peers_.emplace_back([this, peer] {
                const std::string id = "peer " + std::to_string(peer);
                while (!ended_.load()) {
                    if (const auto sink = view->AddRemoteVideoSource(id)) {
                        for (int i = 0; i < 5; ++i) {
                            (*sink)(MakeFrame({.width = 8 + i,
                                               .height = 8,
                                               .colorSpace = i == 3 ? kBt2020Pq : kBt709Limited}));
                        }
                        view->OnRemoteTrackAdded(id);
                        view->RemoveRemoteVideoSource(id);
                        (*sink)(MakeFrame({.width = 8, .height = 8}));
                    }
                    ++rounds_;
                }
            });
        }
        peers_.emplace_back([this] {
            while (!ended_.load()) {
                if (const auto sink = view->AddLocalVideoSource(StreamType::Camera, "camera")) {
                    (*sink)(MakeFrame({.width = 8, .height = 8}));
                }
                (void)view->ResolveMediaSourceId("me");
                (void)view->GetLocalCameraSink();
                view->RemoveLocalVideoSource("camera");
                ++rounds_;
            }
        });
        peers_.emplace_back([this] {
            while (!ended_.load()) {
                view->OnDataChannelMessage(
                    {"peer 0",
                     R"({"type":"video-metadata-message","message":{"sourceData":{"streamId":"peer 0",)"
                     R"("frameRate":30,"sourceName":"A clip"}}})"});
                (void)view->UpdateConnectionStatus("peer 1", true);
                view->SetStreamVolume("peer 1", 0.5, false);
                view->SetActiveSpeaker("peer 0");
                (void)view->ExportRemoteFrame("peer 2");
                (void)view->IsMicEnabled();
                (void)view->IsVideoEnabled();
                ++rounds_;
            }
        });
    }
    [[nodiscard]] bool WaitForRounds(int count) {
        const int until = rounds_.load() + count;
        return Eventually([&] { return rounds_.load() >= until; });
    }
    void EndPeers() {
        ended_.store(true);
        for (std::thread& peer : peers_) peer.join();
        peers_.clear();
    }

    std::atomic<bool> ended_{false};
    std::atomic<int> rounds_{0};
    std::vector<std::thread> peers_;
};

TEST_F(RoomThreadsTest, StreamsComeAndGoWhileTheHostTicksAndSwitches) {
    Open();
    StartPeers();
    for (int i = 0; i < 150; ++i) {
        view->Tick();
        if (i % 10 == 0) view->Resize(320 + i, 240);
        view->SetMicEnabled(i % 2 == 0);
        view->SetVideoEnabled(i % 2 == 0);
        view->SetSpeakerEnabled(i % 3 == 0);
        view->Configure({.roomName = "room", .sessionName = "session", .profileId = "profile"});
    }
    EXPECT_TRUE(WaitForRounds(20));
    EndPeers();
    view->Tick();
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_TRUE(view->GetThumbnails().GetAllTiles().empty());
}

TEST_F(RoomThreadsTest, StreamsComeWhileTheWindowIsStillBeingMade) {
    StartPeers();
    ASSERT_TRUE(WaitForRounds(5));
    ASSERT_EQ(view->Init(&nativeWindow, kViewWidth, kViewHeight), 1);
    for (int i = 0; i < 20; ++i) view->Tick();
    EndPeers();
}

TEST_F(RoomThreadsTest, TheRoomEndsWhileStreamsComeAndGo) {
    Open();
    StartPeers();
    for (int i = 0; i < 30; ++i) view->Tick();
    ASSERT_TRUE(WaitForRounds(5));
    view->Shutdown();
    ASSERT_TRUE(WaitForRounds(10));
    EndPeers();
    EXPECT_FALSE(Fake().callbacks.localVideoFrameAdaptation.IsSet());
    EXPECT_EQ(Fake().AdaptiveManager(), nullptr);
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_EQ(Fake().TransformersCreated(), Fake().TransformersDeleted());
}

TEST_F(RoomThreadsTest, AStreamWhoseWorkerIsBusyLeavesWhileTheRoomEnds) {
    Open();
    const auto sink = AddRemote("one", kWhite);
    view->SetActiveSpeaker("one");
    view->Tick();
    ASSERT_EQ(Sdl().LiveTextures(), 1U);
    Gate gate;
    Calls().OnCall("WebRTC_ConvertFrame", [&](const Call&) { gate.Pass(); });
    (*sink)(MakeFrame({.colorSpace = kBt2020Pq}));
    ASSERT_TRUE(gate.WaitForArrival());
    std::thread media([&] {
        // It does not wait for the worker.
        view->RemoveRemoteVideoSource("one");
        EXPECT_TRUE(Eventually([] { return !roomActive.load(); }));
        gate.Open();
    });
    ASSERT_TRUE(Eventually([&] { return view->GetThumbnails().GetAllTiles().empty(); }));
    view->Shutdown();
    media.join();
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    const auto destroyed = Calls().Of("SDL_DestroyTexture");
    ASSERT_EQ(destroyed.size(), 1U);
    EXPECT_EQ(destroyed[0].thread, std::this_thread::get_id());
}

TEST_F(RoomThreadsTest, TheLastMessageMayOutliveTheHostsView) {
    Open();
    AddRemote("one", kWhite);
    view->Tick();
    view->Shutdown();
    std::thread channel([held = std::move(view)]() mutable {
        held->OnDataChannelMessage({"one", "text"});
        held.reset();
    });
    channel.join();
    EXPECT_EQ(Sdl().LiveRenderers(), 0U);
}

}  // namespace
}  // namespace Corvanta::Room
