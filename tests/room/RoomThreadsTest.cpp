// Media threads, data channels and the host at once; what a sanitizer watches.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
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
    void StartPeers(int count = 3) {
        Calls().SetRecording(false);
        for (int peer = 0; peer < count; ++peer) {
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
    // The host's commands about single streams, which may come from any thread of its own.
    void StartCommands() {
        peers_.emplace_back([this] {
            for (int i = 0; !ended_.load(); ++i) {
                const std::string id = "peer " + std::to_string(i % 4);
                view->SetStreamSpotlight(id, i % 3 == 0);
                view->SetStreamVideoEnabled(id, i % 2 == 0);
                view->SetStreamSoundToggle(id, i % 2 == 0);
                view->SetSpeakerNone(i % 5 == 0);
                view->SetMicNone(i % 7 == 0);
                view->OnCaptureChanged(i % 2);
                (void)view->GetCaptureIndex();
                (void)Fake().Deliver("peer 0", MakeFrame({.width = 8, .height = 8}));
                ++rounds_;
            }
        });
    }
    // A press in the strip, a drag over the next tile and its end.
    void PushDrag(int step) {
        SDL_Event event;
        SDL_zero(event);
        event.window.windowID = static_cast<Uint32>(view->GetSdlWindowId());
        event.type = SDL_MOUSEMOTION;
        event.motion.x = 100 + step % 8 * 40;
        event.motion.y = 80;
        SDL_PushEvent(&event);
        if (step % 8 != 2 && step % 8 != 7) return;
        event.type = step % 8 == 2 ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP;
        SDL_PushEvent(&event);
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

TEST_F(RoomThreadsTest, TheWallComesAndGoesWhileStreamsDo) {
    constexpr int kRounds = 2000;
    constexpr std::chrono::seconds kLongest{20};
    OpenWithWall();
    Fake().Set([](FakeResults& results) {
        results.runningLocalSources = {{0, "camera"}, {1, "other"}};
        results.externalSources.insert("peer 1");
    });
    StartPeers(5);
    StartCommands();
    int wallWindow = 0;
    const auto end = std::chrono::steady_clock::now() + kLongest;
    // The wall has come and gone at least twice by then.
    constexpr int kFewestTicks = 60;
    for (int i = 0; i < kFewestTicks || (rounds_.load() < kRounds && std::chrono::steady_clock::now() < end);
         ++i) {
        if (i % 30 == 10) {
            EXPECT_EQ(view->CreateDetachedView(&wallWindow, 500, 300), 1);
        }
        if (i % 30 == 25) view->LeaveDetachedLayout();
        if (i % 7 == 0) view->SetDetachedLayout(i % 3);
        if (i % 11 == 0) view->SetWindowScale(i % 2 == 0 ? 0.5F : 1.0F);
        if (view->GetDetachedView() != nullptr && i % 5 == 0) {
            view->GetDetachedView()->SetWindowScale(i % 2 == 0 ? 0.5F : 1.0F);
        }
        if (i % 13 == 0) view->SlideThumbnails(i % 2 == 0, i % 3 == 0);
        PushDrag(i);
        view->Tick();
        view->TickDetachedView();
    }
    EndPeers();
    view->LeaveDetachedLayout();
    view->Tick();
    // No second tile is left; the camera's own sink stays lent to its source.
    for (const auto& [source, sink] : Fake().RegisteredSinks()) EXPECT_FALSE(source.starts_with("peer"));
    for (const Video::VideoFrame* tile : view->GetThumbnails().GetAllTiles()) {
        EXPECT_EQ(tile->GetStreamId(), "me");
    }
    view->Shutdown();
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
    EXPECT_EQ(Fake().TransformersCreated(), Fake().TransformersDeleted());
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
