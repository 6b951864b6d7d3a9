// Which stream is the main video, what a tick does, and how a room ends.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "tests/fake_platform/AllocationCounter.h"
#include "tests/room/RoomViewTest.h"
#include "tests/video/Gate.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;

constexpr uint32_t kCameraColor = 0xFF00FF00;
constexpr uint32_t kOneColor = 0xFFFF0000;
constexpr uint32_t kTwoColor = 0xFF0000FF;

class VideoRoomViewTest : public RoomViewTest {
protected:
    // The camera and two remote streams.
    void FillRoom() {
        Open();
        AddCamera(kCameraColor);
        AddRemote("one", kOneColor);
        AddRemote("two", kTwoColor);
        Calls().Clear();
    }
    [[nodiscard]] static size_t MainVideoChanges() { return Calls().Count("Host_OnMainVideoChanged"); }
    [[nodiscard]] static std::vector<std::string> MainStreams() {
        std::vector<std::string> ids;
        for (const Call& call : Calls().Of("AdaptiveVideoSourceManager_SetMainStream")) {
            ids.push_back(call.arguments[0]);
        }
        return ids;
    }
    void Push(const SDL_Event& event) { SDL_PushEvent(const_cast<SDL_Event*>(&event)); }
};

// Main video

TEST_F(VideoRoomViewTest, ShowsTheLocalCameraWhileNobodySpeaks) {
    FillRoom();
    EXPECT_EQ(ShownColor(), kCameraColor);
}

TEST_F(VideoRoomViewTest, ShowsTheActiveSpeaker) {
    FillRoom();
    view->SetActiveSpeaker("one");
    EXPECT_EQ(ShownColor(), kOneColor);
    view->SetActiveSpeaker("two");
    // Nobody looked at it until now, and its picture was blackened when it was switched off.
    (void)TickAndRead();
    EXPECT_TRUE(TileOf("two")->IsActive());
    EXPECT_FALSE(TileOf("one")->IsActive());
}

TEST_F(VideoRoomViewTest, ShowsTheLocalCameraForASpeakerWhoHasNoTile) {
    FillRoom();
    view->SetActiveSpeaker("nobody");
    EXPECT_EQ(ShownColor(), kCameraColor);
}

TEST_F(VideoRoomViewTest, ShowsTheLocalCameraWhenTheSpeakerIsTheUser) {
    FillRoom();
    view->SetActiveSpeaker("me");
    EXPECT_EQ(ShownColor(), kCameraColor);
}

TEST_F(VideoRoomViewTest, ShowsTheLocalCameraOnceTheSpeakerHasLeft) {
    FillRoom();
    view->SetActiveSpeaker("one");
    ASSERT_EQ(ShownColor(), kOneColor);
    view->RemoveRemoteVideoSource("one");
    EXPECT_EQ(ShownColor(), kCameraColor);
}

TEST_F(VideoRoomViewTest, AClickedTileOverridesTheSpeakerUntilItIsClickedAgain) {
    FillRoom();
    view->SetActiveSpeaker("one");
    view->OnTileClicked(TileOf("two"), false);
    EXPECT_EQ(ShownColor(), kTwoColor);
    view->SetActiveSpeaker("me");
    EXPECT_EQ(ShownColor(), kTwoColor);
    view->OnTileClicked(TileOf("two"), false);
    EXPECT_EQ(ShownColor(), kCameraColor);
}

TEST_F(VideoRoomViewTest, ASecondClickAlsoForgetsWhoSpoke) {
    FillRoom();
    view->SetActiveSpeaker("one");
    view->OnTileClicked(TileOf("two"), false);
    view->OnTileClicked(TileOf("two"), false);
    EXPECT_EQ(ShownColor(), kCameraColor);
}

TEST_F(VideoRoomViewTest, AClickInTheMenuNeverClearsTheSpotlight) {
    FillRoom();
    view->OnTileClicked(TileOf("two"), true);
    view->OnTileClicked(TileOf("two"), true);
    EXPECT_EQ(ShownColor(), kTwoColor);
}

TEST_F(VideoRoomViewTest, AClickOnAnotherTileMovesTheSpotlight) {
    FillRoom();
    view->OnTileClicked(TileOf("two"), false);
    view->OnTileClicked(TileOf("one"), false);
    EXPECT_EQ(ShownColor(), kOneColor);
}

TEST_F(VideoRoomViewTest, ARemovedSpotlightLetsTheSpeakerDecideAgain) {
    FillRoom();
    view->SetActiveSpeaker("one");
    view->OnTileClicked(TileOf("two"), false);
    ASSERT_EQ(ShownColor(), kTwoColor);
    view->RemoveRemoteVideoSource("two");
    (void)TickAndRead();
    EXPECT_EQ(view->GetThumbnails().GetAllTiles().size(), 2U);
    EXPECT_TRUE(TileOf("one")->IsActive());
}

TEST_F(VideoRoomViewTest, OnlyTheMainVideoIsSubscribed) {
    FillRoom();
    view->SetActiveSpeaker("one");
    view->Tick();
    view->Tick();
    EXPECT_EQ(Fake().CallsOf("Connections_ConfigureStream"),
              (std::vector<Call>{{"Connections_ConfigureStream", {"two", "0=true 1=false 2=true"}}}));
    view->SetActiveSpeaker("two");
    Calls().Clear();
    view->Tick();
    view->Tick();
    EXPECT_EQ(Fake().CallsOf("Connections_ConfigureStream"),
              (std::vector<Call>{{"Connections_ConfigureStream", {"two", "0=true 1=true 2=true"}},
                                 {"Connections_ConfigureStream", {"one", "0=true 1=false 2=true"}}}));
}

TEST_F(VideoRoomViewTest, TheHostHearsOnceOfEachChangeOfTheMainVideo) {
    FillRoom();
    for (int i = 0; i < 3; ++i) view->Tick();
    EXPECT_EQ(MainVideoChanges(), 1U);
    view->SetActiveSpeaker("one");
    for (int i = 0; i < 3; ++i) view->Tick();
    EXPECT_EQ(MainVideoChanges(), 2U);
    view->SetActiveSpeaker("nobody");
    for (int i = 0; i < 3; ++i) view->Tick();
    EXPECT_EQ(MainVideoChanges(), 3U);
}

TEST_F(VideoRoomViewTest, TheHostHearsOfNoChangeInAnEmptyRoom) {
    Open();
    for (int i = 0; i < 3; ++i) view->Tick();
    EXPECT_EQ(MainVideoChanges(), 0U);
}

TEST_F(VideoRoomViewTest, TheHostHearsOfAMainVideoThatLeftAlsoWhenNoneFollows) {
    Open();
    AddRemote("one", kOneColor);
    view->SetActiveSpeaker("one");
    view->Tick();
    ASSERT_EQ(MainVideoChanges(), 1U);
    view->RemoveRemoteVideoSource("one");
    for (int i = 0; i < 3; ++i) view->Tick();
    EXPECT_EQ(MainVideoChanges(), 2U);
}

TEST_F(VideoRoomViewTest, TheAdaptationHearsOfTheMainStreamInEveryDrawing) {
    FillRoom();
    view->Tick();
    view->SetActiveSpeaker("one");
    view->Tick();
    view->Tick();
    view->RemoveRemoteVideoSource("one");
    view->RemoveLocalVideoSource("camera");
    view->Tick();
    EXPECT_EQ(MainStreams(), (std::vector<std::string>{"me", "one", "one", ""}));
}

TEST_F(VideoRoomViewTest, TheCameraIsMutedWhileTheMicrophoneIsOff) {
    FillRoom();
    view->Tick();
    EXPECT_TRUE(TileOf("me")->muted);
    view->SetMicEnabled(true);
    EXPECT_TRUE(view->IsMicEnabled());
    view->Tick();
    EXPECT_FALSE(TileOf("me")->muted);
}

// Tick

TEST_F(VideoRoomViewTest, ClearsDrawsTellsAndPresentsInThisOrder) {
    FillRoom();
    view->Tick();
    EXPECT_EQ(Calls().NamesAmong({"SDL_RenderClear", "SDL_RenderCopy", "Host_OnMainVideoChanged",
                                  "AdaptiveVideoSourceManager_SetMainStream", "SDL_RenderPresent"}),
              (std::vector<std::string>{"SDL_RenderClear", "SDL_RenderCopy", "Host_OnMainVideoChanged",
                                        "AdaptiveVideoSourceManager_SetMainStream", "SDL_RenderPresent"}));
}

TEST_F(VideoRoomViewTest, AnEmptyRoomPresentsAClearedFrame) {
    Open();
    const Picture picture = TickAndRead();
    EXPECT_TRUE(AreaIs(picture, {0, 0, kViewWidth, kViewHeight}, kBlack));
    EXPECT_EQ(Calls().Count("SDL_RenderClear"), 1U);
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 1U);
    EXPECT_EQ(Calls().Count("SDL_RenderCopy"), 0U);
}

TEST_F(VideoRoomViewTest, AViewWithoutAWindowDrawsNothing) {
    view->Tick();
    view->Render();
    view->OnResized(100, 100);
    EXPECT_TRUE(Calls().OfThisThread().empty());
}

TEST_F(VideoRoomViewTest, ATickReturnsAtOnceWhileAMediaThreadAddsAStream) {
    Open();
    Gate gate;
    Calls().OnCall("WebRTC_GetFrameTransformerInstance", [&](const Call&) { gate.Pass(); });
    std::thread media([&] { EXPECT_NE(view->AddRemoteVideoSource("one"), nullptr); });
    ASSERT_TRUE(gate.WaitForArrival());
    view->Tick();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 0U);
    EXPECT_EQ(Calls().Count("Host_SetCursor"), 0U);
    gate.Open();
    media.join();
    view->Tick();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 1U);
}

TEST_F(VideoRoomViewTest, ATickDoesNothingWhileNoRoomIsActive) {
    Open();
    roomActive.store(false);
    view->Tick();
    EXPECT_TRUE(Calls().OfThisThread().empty());
}

TEST_F(VideoRoomViewTest, ResizingDrawsAtOnce) {
    FillRoom();
    const Picture picture = ReadPresented([&] { view->Resize(200, 300); });
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 1U);
    EXPECT_EQ(picture.width, 200);
    EXPECT_EQ(picture.height, 300);
    EXPECT_TRUE(PixelIs(picture, 100, 150, kCameraColor));
}

TEST_F(VideoRoomViewTest, TheBarIsAsWideAsTheViewAfterAResizeThatFoundTheRoomHeld) {
    Open();
    view->BuildControls();
    view->Tick();
    const UI::ButtonBar& bar = *view->GetToolbar().GetButtonBar();
    ASSERT_EQ(bar.rect.w, kViewWidth);
    Gate gate;
    Calls().OnCall("WebRTC_GetFrameTransformerInstance", [&](const Call&) { gate.Pass(); });
    std::thread media([&] { EXPECT_NE(view->AddRemoteVideoSource("one"), nullptr); });
    EXPECT_TRUE(gate.WaitForArrival());
    Calls().Clear();
    view->Resize(900, 500);
    view->Tick();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 0U) << "it waits for nobody";
    gate.Open();
    media.join();
    const Picture picture = TickAndRead();
    EXPECT_EQ(picture.width, 900);
    EXPECT_EQ(bar.rect.w, 900);
    EXPECT_EQ(bar.width, 900);
    EXPECT_EQ(bar.rect.y, 500 - view->GetToolbarHeight());
}

TEST_F(VideoRoomViewTest, AResizeInTheMiddleOfATickDrawsAsWell) {
    FillRoom();
    bool isResized = false;
    Calls().OnCall("Host_SetCursor", [&](const Call&) {
        if (!std::exchange(isResized, true)) view->Resize(300, 200);
    });
    view->Tick();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 2U);
}

TEST_F(VideoRoomViewTest, AllocatesNothingInASteadyTick) {
    Open();
    const auto sink = AddRemote("one", kOneColor);
    AddCamera(kCameraColor);
    view->OnTileClicked(TileOf("one"), false);
    const auto frames = {MakeFrame({.width = 320, .height = 180}), MakeFrame({.width = 320, .height = 180})};
    Calls().SetRecording(false);
    // SDL and the worker settle.
    for (int i = 0; i < 5; ++i) {
        for (const auto& frame : frames) ASSERT_TRUE(Show(sink, frame));
        view->Tick();
    }
    size_t allocations = 0;
    for (int i = 0; i < 20; ++i) {
        for (const auto& frame : frames) {
            AllocationCounter::Start();
            (*sink)(frame);
            allocations += AllocationCounter::Stop();
            ASSERT_TRUE(FlushSink(*sink));
            AllocationCounter::Start();
            view->Tick();
            allocations += AllocationCounter::Stop();
        }
    }
    EXPECT_EQ(allocations, 0U);
}

// Input

TEST_F(VideoRoomViewTest, TheOverlaysCursorComesBeforeTheTiles) {
    view->SetCursor(3, 1);
    EXPECT_EQ(view->GetCursor(), 3);
    view->SetCursor(1, 0);
    EXPECT_EQ(view->GetCursor(), 1);
    view->SetCursor(7, 2);
    view->SetCursor(7, -1);
    EXPECT_EQ(view->GetCursor(), 1);
    view->SetCursor(0, 0);
    EXPECT_EQ(view->GetCursor(), 3);
}

TEST_F(VideoRoomViewTest, TellsTheHostThePointersShapeInEveryTick) {
    Open();
    view->SetCursor(1, 0);
    // Of a wall that nobody sees.
    view->SetCursor(3, 1);
    view->Tick();
    view->Tick();
    EXPECT_EQ(Calls().Of("Host_SetCursor"),
              (std::vector<Call>{{"Host_SetCursor", {"0"}}, {"Host_SetCursor", {"0"}}}));
}

TEST_F(VideoRoomViewTest, EmptiesTheQueueOfEventsInEveryTick) {
    Open();
    SDL_Event event{};
    event.type = SDL_MOUSEMOTION;
    event.motion.windowID = static_cast<Uint32>(view->GetSdlWindowId());
    for (int i = 0; i < 10; ++i) Push(event);
    event.motion.windowID = 77;
    Push(event);
    view->Tick();
    EXPECT_EQ(SDL_PeepEvents(nullptr, 0, SDL_PEEKEVENT, SDL_MOUSEMOTION, SDL_MOUSEMOTION), 0);
}

TEST_F(VideoRoomViewTest, NeedsNoFunctionOfTheHost) {
    const HostCallbacks nothing{};
    VideoRoomView bare(0, nothing);
    ASSERT_EQ(bare.Init(&nativeWindow, kViewWidth, kViewHeight), 1);
    ASSERT_NE(bare.AddLocalVideoSource(StreamType::Camera, "camera"), nullptr);
    bare.Tick();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 1U);
}

// The end

TEST_F(VideoRoomViewTest, EndsStepByStep) {
    FillRoom();
    view->Tick();
    ASSERT_GE(Sdl().LiveTextures(), 1U);
    Calls().Clear();
    bool wasActive = true;
    Calls().OnCall("SDL_DestroyTexture", [&](const Call&) { wasActive = roomActive.load(); });
    view->Shutdown();
    EXPECT_FALSE(wasActive);
    EXPECT_FALSE(roomActive.load());
    EXPECT_EQ(
        Calls().NamesAmong({"MediaManager_SetLocalVideoFrameAdaptationCallback", "SDL_DestroyTexture",
                            "Configuration_SetPropertyString", "SDL_DelEventWatch", "SDL_DestroyRenderer",
                            "SDL_DestroyWindow"}),
        (std::vector<std::string>{"MediaManager_SetLocalVideoFrameAdaptationCallback", "SDL_DestroyTexture",
                                  "Configuration_SetPropertyString", "Configuration_SetPropertyString",
                                  "SDL_DelEventWatch", "SDL_DestroyRenderer", "SDL_DestroyWindow"}));
    EXPECT_EQ(Calls().Of("MediaManager_SetLocalVideoFrameAdaptationCallback")[0].arguments[0], "empty");
    EXPECT_EQ(Calls().Of("Configuration_SetPropertyString"),
              (std::vector<Call>{{"Configuration_SetPropertyString", {"room.Id", ""}},
                                 {"Configuration_SetPropertyString", {"room.Hash", ""}}}));
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_EQ(Fake().TransformersCreated(), Fake().TransformersDeleted());
    EXPECT_TRUE(view->GetThumbnails().GetAllTiles().empty());
}

TEST_F(VideoRoomViewTest, WaitsForWorkersWithNoLockHeld) {
    FillRoom();
    Gate gate;
    Calls().OnCall("WebRTC_ConvertFrame", [&](const Call&) { gate.Pass(); });
    (*view->GetLocalCameraSink())(MakeFrame({.colorSpace = kBt2020Pq}));
    ASSERT_TRUE(gate.WaitForArrival());
    // A media thread that comes meanwhile is refused and not held up.
    std::thread media([&] {
        EXPECT_TRUE(Eventually([&] { return !roomActive.load(); }));
        EXPECT_EQ(view->AddRemoteVideoSource("late"), nullptr);
        view->OnDataChannelMessage({"one", "text"});
        gate.Open();
    });
    view->Shutdown();
    media.join();
}

TEST_F(VideoRoomViewTest, EverythingAfterTheEndIsHarmless) {
    FillRoom();
    const auto sink = view->AddRemoteVideoSource("one");
    view->Tick();
    view->Shutdown();
    Calls().Clear();
    view->Tick();
    view->Render();
    view->Resize(100, 100);
    view->ProcessInput();
    (*sink)(Plain(kWhite));
    EXPECT_EQ(view->AddRemoteVideoSource("two"), nullptr);
    EXPECT_EQ(view->AddLocalVideoSource(StreamType::Camera, "camera"), nullptr);
    view->RemoveRemoteVideoSource("one");
    view->RemoveLocalVideoSource("camera");
    view->OnRemoteTrackAdded("one");
    EXPECT_FALSE(view->UpdateConnectionStatus("one", true));
    view->SetStreamVolume("one", 0.5, false);
    view->SetActiveSpeaker("one");
    view->SetSpeakerEnabled(true);
    view->OnDataChannelMessage(
        {"one", R"({"type":"video-metadata-message","message":{"sourceData":{"streamId":"one","frameRate":1,)"
                R"("sourceName":""}}})"});
    EXPECT_FALSE(view->ExportRemoteFrame("one"));
    EXPECT_FALSE(view->SetFrameObserver("one", nullptr));
    EXPECT_EQ(view->GetLocalCameraSink(), nullptr);
    view->OnTileClicked(nullptr, false);
    view->Shutdown();
    EXPECT_EQ(Calls().NamesAmong({"SDL_RenderClear", "SDL_RenderPresent", "SDL_CreateTexture",
                                  "Host_SetCursor", "AdaptiveVideoSourceManager_OnDataChannelMessage",
                                  "AdaptiveVideoSourceManager_OnRemoteStreamRemoved",
                                  "WebRTC_GetFrameTransformerInstance"}),
              std::vector<std::string>{});
}

TEST_F(VideoRoomViewTest, ADroppedViewLetsGoOfEverythingButTheFlag) {
    FillRoom();
    view->Tick();
    const auto sink = view->GetLocalCameraSink();
    view.reset();
    EXPECT_TRUE(roomActive.load());
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_EQ(Sdl().LiveRenderers(), 0U);
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
    EXPECT_EQ(Fake().TransformersCreated(), Fake().TransformersDeleted());
    EXPECT_FALSE(Fake().callbacks.localVideoFrameAdaptation.IsSet());
    EXPECT_EQ(Calls().Count("Configuration_SetPropertyString"), 0U);
    (*sink)(Plain(kWhite));
}

TEST_F(VideoRoomViewTest, AnAbandonedViewDrawsNoMoreAndEndsNothingOfItsSuccessor) {
    FillRoom();
    view->Tick();
    view->Abandon();
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
    EXPECT_FALSE(Fake().callbacks.localVideoFrameAdaptation.IsSet());
    EXPECT_EQ(view->AddRemoteVideoSource("late"), nullptr);
    VideoRoomView next(0, RecordingHost());
    ASSERT_EQ(next.Init(&nativeWindow, kViewWidth, kViewHeight), 1);
    ASSERT_NE(next.AddLocalVideoSource(StreamType::Camera, "camera"), nullptr);
    view->Tick();
    view.reset();
    EXPECT_TRUE(Fake().callbacks.localVideoFrameAdaptation.IsSet());
    EXPECT_EQ(Sdl().LiveWindows(), 1U);
    Calls().Clear();
    next.Tick();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 1U);
}

TEST_F(VideoRoomViewTest, AnAbandonedViewTakesItsCamerasSinkBackFromTheMediaManager) {
    FillRoom();
    MediaManager_RegisterCallback(view->GetLocalStreamId(), view->GetLocalCameraSink().get());
    ASSERT_EQ(Fake().RegisteredSinks().size(), 1U);
    view->Abandon();
    EXPECT_TRUE(Fake().RegisteredSinks().empty());
    view.reset();
    EXPECT_EQ(Fake().Deliver("camera", Plain(kWhite)), 0U);
    EXPECT_EQ(Calls().Count("MediaManager_UnregisterCallback"), 1U);
}

TEST_F(VideoRoomViewTest, AViewMakesTheRoomActive) {
    EXPECT_TRUE(roomActive.load());
    roomActive.store(false);
    const VideoRoomView other(0, RecordingHost());
    EXPECT_TRUE(roomActive.load());
}

TEST_F(VideoRoomViewTest, KeepsTheHostsSwitches) {
    EXPECT_TRUE(view->IsVideoEnabled());
    view->SetVideoEnabled(false);
    EXPECT_FALSE(view->IsVideoEnabled());
    EXPECT_FALSE(view->IsMicEnabled());
    EXPECT_FALSE(view->IsFullscreenEnabled());
    view->SetFullscreenEnabled(true);
    EXPECT_TRUE(view->IsFullscreenEnabled());
}

}  // namespace
}  // namespace Corvanta::Room
