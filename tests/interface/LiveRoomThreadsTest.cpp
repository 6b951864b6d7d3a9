// The whole room with everybody in it at once: media threads, settings, other programs, and a host that calls
// back wherever it is called. What matters besides the assertions is what the sanitizers say.
#include <malloc.h>

#include <array>
#include <atomic>
#include <barrier>
#include <filesystem>
#include <memory>
#include <semaphore>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "interface/TickState.h"
#include "tests/fake_platform/TestFrames.h"
#include "tests/interface/RoomWithBar.h"
#include "tests/video/Eventually.h"
#include "tests/video/Gate.h"
#include "ui/Clock.h"
#include "ui/LockOrder.h"

namespace Corvanta::Testing {
namespace {

constexpr int kRounds = 60;
constexpr int kTicks = 120;
constexpr size_t kLongMessage = 10'000'000;

[[nodiscard]] std::string Metadata(const std::string& frameRate) {
    std::string text = R"({"type":"video-metadata-message","message":{"sourceData":{"streamId":"a",)";
    text += R"("sourceName":"x","frameRate":)";
    text += frameRate + "}}}";
    return text;
}

[[nodiscard]] std::vector<std::string> Messages() {
    std::vector<std::string> messages = {"",
                                         "{",
                                         "[]",
                                         "null",
                                         "7",
                                         "\"text\"",
                                         "\xff\xfe%s%n",
                                         R"({"type":1})",
                                         R"({"type":"unknown"})",
                                         R"({"type":"video-metadata-message"})",
                                         R"({"type":"video-metadata-message","message":[]})",
                                         R"({"type":"shared-file-playback","message":{}})",
                                         R"({"type":"draw-canvas-broadcast","message":{}})",
                                         std::string(10'000, '[')};
    for (const char* frameRate : {"25", "-1", "29.97", "1e300", "1e400", "18446744073709551615", "true",
                                  "null", "\"30\"", "[]", "{}"}) {
        messages.push_back(Metadata(frameRate));
    }
    return messages;
}

class LiveRoomThreadsTest : public RoomWithBar {
protected:
    LiveRoomThreadsTest() {
        // Long runs would fill the list.
        Calls().SetRecording(false);
        UI::SetClock(nullptr);
        Fake().Set([](FakeResults& results) {
            results.configuration["Device.PushToTalkKey"] = std::string("Space");
            results.localUserStreamIds[StreamType::Screenshare] = "my-screen";
        });
        SDLinterface_SetRoomWindow(&windowOfTheHost, kWindowSize.x, kWindowSize.y);
    }

    static void PassOfARemoteStream(const std::string& id, int round) {
        Fake().OfferRemoteSource(id);
        Fake().callbacks.videoFrameTracksAdded(id);
        for (int frame = 0; frame < 3; ++frame) {
            Fake().Deliver(id, MakeFrame({.width = 32 + 16 * (frame % 2), .height = 32}));
        }
        Fake().callbacks.connectionStatusUpdate(id, round % 2 == 0);
        SDLinterface_VideoRoomUpdateActiveSpeaker(id);
        if (round % 3 != 0) Fake().RemoveRemoteSource(id);
    }
    static void PassOfTheCamera(int /*round*/) {
        Fake().OfferLocalSource(StreamType::Camera, "camera");
        Fake().Deliver("camera", MakeFrame());
        Fake().callbacks.connectionStatusUpdate("me", true);
        Fake().callbacks.localVideoFrameAdaptation();
        Fake().RemoveLocalSource("camera");
    }
    static void PassOfTheScreen(int round) {
        Fake().OfferLocalSource(StreamType::Screenshare, "screen");
        Fake().Set([&](FakeResults& results) { results.screenShareCapturing = round % 2 == 0; });
        Fake().Deliver("screen", MakeFrame());
        (void)SDLinterface_ExportRemoteFrame("my-screen");
        Fake().RemoveLocalSource("screen");
        Fake().ClearLogs();
    }
    static void PassOfMessages(int round) {
        static const std::vector<std::string> messages = Messages();
        // The drawings' handler alone raises, at what is no message at all.
        EXPECT_LE(Fake().DeliverMessage("a", messages[static_cast<size_t>(round) % messages.size()]).size(),
                  1U);
        if (round == 5) {
            EXPECT_LE(Fake().DeliverMessage("a", std::string(kLongMessage, ' ')).size(), 1U);
        }
        if (round == 6) {
            const std::string name(kLongMessage, 'x');
            EXPECT_TRUE(Fake().DeliverMessage("a", Metadata('"' + name + '"')).empty());
        }
    }
    static void PassOfSettings(int round) {
        static constexpr std::array<const char*, 5> kKeys = {"Space", "LeftCtrl", "", "z", "no such key"};
        Fake().FireConfigurationChanged("Device.PushToTalkKey",
                                        kKeys[static_cast<size_t>(round) % kKeys.size()]);
        Fake().FireConfigurationChanged("Device.Camera", "Space");
    }
    static void PassOfMutes(int round) {
        Fake().FireMutedRemotely();
        Fake().FireRoomStatus(round);
    }
    static void PassOfProcesses(int round) {
        Fake().FireProcesses({{HostApplicationDaVinciResolve, round % 2 == 0 ? 4711 : -1},
                              {HostApplicationAutodeskFlame, round % 3 == 0 ? 4712 : -1}});
        Fake().callbacks.videoFilePlaybackStatusUpdate("a", round % 2 == 0);
        Fake().callbacks.participantJoined();
    }

    // Runs what the host does while eight threads are at work.
    template <typename HostsPart>
    static void WithEverybody(HostsPart&& hostsPart) {
        const std::vector<std::function<void(int)>> passes = {
            [](int round) { PassOfARemoteStream("a", round); },
            [](int round) { PassOfARemoteStream("b", round); },
            &PassOfTheCamera,
            &PassOfTheScreen,
            &PassOfMessages,
            &PassOfSettings,
            &PassOfMutes,
            &PassOfProcesses};
        ASSERT_EQ(passes.size(), 8U);
        std::barrier start(static_cast<std::ptrdiff_t>(passes.size() + 1));
        std::vector<std::thread> threads;
        threads.reserve(passes.size());
        for (const auto& pass : passes) {
            threads.emplace_back([&start, pass] {
                start.arrive_and_wait();
                for (int round = 0; round < kRounds; ++round) pass(round);
            });
        }
        start.arrive_and_wait();
        hostsPart();
        for (std::thread& thread : threads) thread.join();
    }

    // All over the window, but mostly on the bar.
    static void ClickSomewhere(int step) {
        const auto share = static_cast<float>(step * 37 % 101) / 101.0F;
        SDLinterface_PushMouseMoveEvent(0, share, step % 4 == 0 ? share : 0.95F);
        SDL_WPFVideoRoomCheckInputAndRender();
        SDLinterface_PushMouseButtonDownEvent(0);
        SDLinterface_PushMouseButtonUpEvent(0);
    }
    static void TickAndCommand(int ticks) {
        for (int tick = 0; tick < ticks; ++tick) {
            SDL_WPFVideoRoomCheckInputAndRender();
            ClickSomewhere(tick);
            if (tick % 2 == 0) SDLinterface_PushKeyDownEvent(0, tick % 4 == 0 ? "Space" : "LeftCtrl");
            if (tick % 2 == 1) SDLinterface_PushKeyUpEvent(0, tick % 4 == 1 ? "Space" : "LeftCtrl");
            if (tick % 8 == 0) SDLinterface_VideoRoomResize(tick % 16 == 0 ? 640 : kWindowSize.x, 480 + tick);
            if (tick % 8 == 4) SDLinterface_UpdateWindowScale(0, tick % 16 == 4 ? 1.5F : 1.0F);
            if (tick % 16 == 6) {
                static int window = 0;
                (void)SDLinterface_CreateDetachedView(&window, 320, 240);
            }
            SDLinterface_TickDetachedView();
            if (tick % 16 == 14) SDLinterface_LeaveDetachedLayout();
            SDLinterface_VideoRoomSetMicEnabled(tick % 3 == 0);
        }
    }
    static void EndWithNothingLeft() {
        SDLinterface_GlobalQuit();
        EXPECT_FALSE(HasView());
        EXPECT_EQ(Sdl().LiveTextures(), 0U);
        EXPECT_EQ(Sdl().LiveRenderers(), 0U);
        EXPECT_EQ(Fake().ConfigurationListeners(), 0U);
        EXPECT_EQ(Fake().RoomStatusListeners(), 0U);
        EXPECT_EQ(Fake().ProcessListeners(), 0U);
    }

    // What a host may ask for on any thread.
    static std::vector<std::function<void()>> ExportsOfAnyThread() {
        static int sinkCalls = 0;
        static FrameCallback sink([](const std::shared_ptr<VideoFrameBuffer>&) { ++sinkCalls; });
        return {
            [] { SDLInterface_VideoRoomUpdateRoomName("name"); },
            [] { SDLinterface_VideoRoomUntoggleOptionsButton(true); },
            [] { SDLinterface_VideoRoomUntoggleOptionsButton(false); },
            [] { SDLInterface_VideoRoomUntoggleAudioMixer(); },
            [] { SDLInterface_VideoRoomSetShowSidebarNotification(true); },
            [] { SDLinterface_VideoRoomSetDrawToolEnabled(true); },
            [] { SDLinterface_VideoRoomSetDrawToolEnabled(false); },
            [] { SDLinterface_VideoRoomSetMicEnabled(!SDLinterface_VideoRoomGetMicEnabled()); },
            [] { SDLinterface_VideoRoomSetVideoEnabled(!SDLinterface_VideoRoomGetVideoEnabled()); },
            [] { SDLinterface_SetStreamVideoEnabled("a", false); },
            [] { SDLinterface_SetStreamSoundToggle("a", true); },
            [] { SDLinterface_SetStreamSpotlight("a", true); },
            [] { SDLInterface_VideoRoomSetParticipantVolume("a", 0.5F); },
            [] { SDLInterface_VideoRoomSetParticipantsVolume(0.5F); },
            [] { SDLInterface_VideoRoomSetStreamsVolume(0.5F); },
            [] { (void)SDLinterface_SetLocalCameraProperties(640, 480, 30, 1'000'000); },
            [] { (void)SDLinterface_VideoRoomAudioDeviceUpdate(false); },
            [] { (void)SDLinterface_VideoRoomAudioDeviceUpdate(true); },
            [] {
                (void)SDLinterface_VideoRoomTriggerDeviceRenegociation(nullptr, nullptr, nullptr, nullptr);
            },
            [] { SDLinterface_SetConnectionStatsCallback(nullptr); },
            [] { (void)SDLinterface_ExportRemoteFrame("a"); },
            [] { SDLinterface_SetNativeStreamPlaybackStatusCallback(nullptr); },
            [] { SDLinterface_VideoRoomSetConnectionDroppedCallback(nullptr); },
            [] { SDLinterface_VideoRoomSetFullscreenEnabled(true); },
            [] { SDLinterface_OnRecordingPlaybackStatus(1); },
            [] { SDLinterface_OnRecordingPlaybackProgress(1, 2); },
            [] { SDLinterface_OnActiveStreams({"a"}); },
            [] { SDLinterface_VideoRoomUpdateActiveSpeaker("a"); },
            [] { delete SDLinterface_VideoRoomAddRemoteVideoSource("c"); },
            [] { delete SDLinterface_VideoRoomAddLocalVideoSource(StreamType::File, "file"); },
            [] { delete SDLinterface_VideoRoomAddStream(StreamType::Camera, StreamSourceType::Remote, "d"); },
            [] { SDLinterface_VideoRoomRemoveLocalVideoSource("file"); },
            [] { SDLinterface_VideoRoomRemoveRemoteVideoSource("c"); },
            [] { SDLinterface_VideoRoomRemoveRemoteVideoSource("a"); },
            [] { (void)SDLinterface_VideoRoomGetRemoteDataChannelCallbacks(); },
            [] { SDLinterface_VideoRoomOnConnectionStatusUpdate("me", true); },
            [] { SDLinterface_OnNativeStreamPlaybackStatusUpdate("a", true); },
            [] { SDLinterface_RegisterLocalStreamCallback("me", &sink); },
            [] { SDLinterface_UnregisterLocalStreamCallback("me", &sink); },
            [] { SDLinterface_ConfigureStream("a", true, true, true); },
            [] { SDL_SetVideoRoomConection(SDL_GetCurrentConnectionIndex()); },
        };
    }
    // What belongs to the thread of the tick.
    static std::vector<std::function<void()>> ExportsOfTheHostThread() {
        static int window = 0;
        static RecordingHostFunctions functions{};
        return {
            [] { SDL_VideoRoomCheckInputAndRender(); },
            [] { SDL_WPFVideoRoomCheckInputAndRender(); },
            [] { (void)SDLinterface_WindowsFlushEvents(); },
            [] { SDLinterface_PushMouseMoveEvent(0, 0.5F, 0.5F); },
            [] { SDLinterface_PushMouseButtonDownEvent(0); },
            [] { SDLinterface_PushMouseButtonUpEvent(0); },
            [] { SDLinterface_PushScrollWheelEvent(0, 1, 1); },
            [] { SDLinterface_PushWindowMovedEvent(0, 1, 1); },
            [] { SDLinterface_PushKeyDownEvent(0, "Space"); },
            [] { SDLinterface_PushKeyUpEvent(0, "Space"); },
            [] { (void)SDLinterface_TextInputEnabled(false); },
            [] { SDLinterface_DisableWindowResizingEvents(true); },
            [] { SDLinterface_VideoRoomResize(700, 500); },
            [] { SDLinterface_VideoRoomSetViewport(700, 500); },
            [] { SDLinterface_VideoRoomSetContentScaleFactor(1.0F); },
            [] { SDLinterface_UpdateWindowScale(0, 1.0F); },
            [] { SDLinterface_UpdateWindowScale(1, 1.0F); },
            [] { SDLinterface_VideoRoomSetSDRBrightnessBoost(200.0F); },
            [] { (void)SDLinterface_VideoRoomGetSDRBrightnessBoost(); },
            [] { (void)SDLinterface_VideoRoomGetNativeVideoView(); },
            [] { (void)SDLinterface_CreateDetachedView(&window, 320, 240); },
            [] { SDLinterface_TickDetachedView(); },
            [] { SDLinterface_SetDetachedLayout(2); },
            [] { SDLInterface_SetDetachedBordersVisibility(true); },
            [] { SDLinterface_LeaveDetachedLayout(); },
            [] { SDLinterface_SlideThumbnails(false, true); },
            [] { SDLinterface_SlideThumbnails(true, false); },
            [] { (void)SDLinterface_OpenLocalPreview(&window, 160, 120, true); },
            [] { SDLinterface_TickLocalPreview(); },
            [] { SDLinterface_CloseLocalPreview(); },
            [] { (void)SDL_GetAudioDeviceIndex("none", false); },
            [] { SDLInterface_AudioQuit(); },
            [] { SDLinterface_SetRoomWindow(&windowOfTheHost, kWindowSize.x, kWindowSize.y); },
            [] {
                const HostCallbacks callbacks = Host::Callbacks();
                SDLinterface_SetHostCallbacks(&callbacks);
            },
            [] { (void)Enter(); },
            [] { (void)SDLinterface_RecordingViewInit(&windowOfTheHost, 640, 480, &functions); },
            [] { SDLinterface_ConnectToRecording(nullptr, nullptr, "t", 1000.0, [](int) {}); },
            [] { (void)SDLinterface_DisconnectFromRecording(2); },
            [] { SDLinterface_GlobalInit(); },
            [] { SDLinterface_GlobalQuit(); },
            [] { SDLinterface_VideoRoomQuit(); },
        };
    }

    static void EnterAnew() {
        if (!HasView() || !roomActive.load() || Interface::GetRecordingsView() != nullptr) {
            SDLinterface_GlobalInit();
            SDLinterface_SetRoomWindow(&windowOfTheHost, kWindowSize.x, kWindowSize.y);
            ASSERT_EQ(Enter(), 1);
        }
        if (View().GetWidth() != kWindowSize.x) SDLinterface_VideoRoomResize(kWindowSize.x, kWindowSize.y);
        Fake().OfferRemoteSource("a");
    }

    [[nodiscard]] static size_t EntriesOf(const char* folder) {
        size_t count = 0;
        for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder)) ++count;
        return count;
    }
};

TEST_F(LiveRoomThreadsTest, GoesOnWithEverybodyInIt) {
    ASSERT_EQ(Enter(), 1);
    WithEverybody([] { TickAndCommand(kTicks); });
    EXPECT_TRUE(HasView());
    EndWithNothingLeft();
}

TEST_F(LiveRoomThreadsTest, EndsWithEverybodyInIt) {
    for (int life = 0; life < 3; ++life) {
        ASSERT_EQ(Enter(), 1);
        WithEverybody([] {
            TickAndCommand(10);
            SDLinterface_GlobalQuit();
        });
        EndWithNothingLeft();
        Start();
    }
}

TEST_F(LiveRoomThreadsTest, EndsFromInsideATickWithEverybodyInIt) {
    ASSERT_EQ(Enter(), 1);
    WithEverybody([] {
        TickAndCommand(10);
        Host::onCursor = [] { SDLinterface_VideoRoomQuit(); };
        EXPECT_TRUE(Eventually([] {
            SDL_WPFVideoRoomCheckInputAndRender();
            return !HasView();
        }));
    });
    EndWithNothingLeft();
}

// The functions of the host that a click calls, and how to click.
TEST_F(LiveRoomThreadsTest, EndsFromInsideEachFunctionOfTheTick) {
    const std::vector<std::pair<const char*, std::function<void()>>> functions = {
        {"Host_SetCursor", [] { Tick(); }},
        {"Host_OnMainVideoChanged",
         [] {
             const SDL_Rect& tile = View().GetThumbnails().GetAllTiles().at(0)->rect;
             ClickAt({tile.x + tile.w / 2, tile.y + tile.h / 2});
         }},
        {"Host_OnMicrophoneChanged", [] { Click(CentreButton::Microphone); }},
        {"Host_OnCameraToggled", [] { Click(CentreButton::Camera); }},
        {"Host_OnSpeakerToggled", [] { Click(CentreButton::Speaker); }},
        {"Host_ShowAudioMixer", [] { Click(CentreButton::AudioMixer); }},
        {"Host_ShowOptions", [] { Click(RightButton::Options); }},
        {"Host_SetFullscreen", [] { Click(RightButton::Fullscreen); }},
        {"Host_ShowDrawTool", [] { Click(LeftButton::DrawTool); }},
        {"Host_DetachWall",
         [] {
             Open(*View().GetToolbar().GetLayoutMenu());
             ClickItem(*View().GetToolbar().GetLayoutMenu(), "Detach thumbnails");
         }},
        {"Host_LeaveRoom",
         [] {
             Open(*View().GetToolbar().GetOptionsMenu());
             ClickItem(*View().GetToolbar().GetOptionsMenu(), "Leave room");
         }},
    };
    const TurnedClock clock;
    Interface::ResetTickTimers();
    for (const auto& [name, click] : functions) {
        SDLinterface_SetRoomWindow(&windowOfTheHost, kWindowSize.x, kWindowSize.y);
        ASSERT_EQ(Enter(), 1);
        Fake().OfferRemoteSource("a");
        TurnedClock::AdvanceMs(300);
        Tick(3);
        bool called = false;
        bool viewInside = false;
        Calls().OnCall(name, [&called, &viewInside](const Call&) {
            called = true;
            SDLinterface_GlobalQuit();
            viewInside = HasView();
        });
        click();
        EXPECT_FALSE(HasView()) << name;
        Calls().OnCall(name, {});
        EXPECT_TRUE(called) << name;
        EXPECT_TRUE(viewInside) << name;
        EndWithNothingLeft();
        Start();
    }
}

TEST_F(LiveRoomThreadsTest, LetsTheHostCallEveryExportBackFromTheTick) {
    std::vector<std::function<void()>> exports = ExportsOfAnyThread();
    for (auto& call : ExportsOfTheHostThread()) exports.push_back(std::move(call));
    for (const auto& call : exports) {
        EnterAnew();
        bool called = false;
        Host::onCursor = [&] {
            called = true;
            call();
        };
        SDL_WPFVideoRoomCheckInputAndRender();
        EXPECT_TRUE(called);
        SDL_WPFVideoRoomCheckInputAndRender();
    }
    EndWithNothingLeft();
}

TEST_F(LiveRoomThreadsTest, LetsTheHostCallExportsBackFromTheActionThreadWhileItTicks) {
    ASSERT_EQ(Enter(), 1);
    Fake().OfferRemoteSource("a");
    std::atomic<bool> done = false;
    Calls().OnCall("Host_StartScreenShare", [&](const Call&) {
        for (int round = 0; round < 20; ++round) {
            for (const auto& call : ExportsOfAnyThread()) call();
        }
        done.store(true);
    });
    View().GetToolbar().GetActionThread().lock()->Run(Host::Callbacks().StartScreenShare);
    EXPECT_TRUE(Eventually([&] {
        SDL_WPFVideoRoomCheckInputAndRender();
        return done.load();
    }));
    EndWithNothingLeft();
}

// Those of the host's own thread, which waits for the action meanwhile.
TEST_F(LiveRoomThreadsTest, LetsTheHostCallEveryExportBackFromTheActionThreadWhileItWaits) {
    std::vector<std::weak_ptr<Room::VideoRoomView>> views;
    for (const auto& call : ExportsOfTheHostThread()) {
        EnterAnew();
        views.push_back(Interface::CurrentView());
        std::binary_semaphore go(0);
        std::binary_semaphore done(0);
        Calls().OnCall("Host_StartScreenShare", [&](const Call&) {
            go.acquire();
            call();
            done.release();
        });
        View().GetToolbar().GetActionThread().lock()->Run(Host::Callbacks().StartScreenShare);
        go.release();
        done.acquire();
        Calls().OnCall("Host_StartScreenShare", {});
    }
    EndWithNothingLeft();
    for (size_t index = 0; index < views.size(); ++index) EXPECT_TRUE(views[index].expired()) << index;
}

TEST_F(LiveRoomThreadsTest, KeepsNothingOfAThousandJoinsAndLeaves) {
    ASSERT_EQ(Enter(), 1);
    const auto joinAndLeave = [](int count) {
        for (int person = 0; person < count; ++person) {
            const std::string id = "person " + std::to_string(person % 7);
            const std::unique_ptr<FrameCallback> sink(SDLinterface_VideoRoomAddRemoteVideoSource(id));
            ASSERT_NE(sink, nullptr);
            (*sink)(MakeFrame());
            SDL_VideoRoomCheckInputAndRender();
            SDLinterface_VideoRoomRemoveRemoteVideoSource(id);
            SDL_VideoRoomCheckInputAndRender();
        }
        Fake().ClearLogs();
    };
    const auto threads = [] { return EntriesOf("/proc/self/task"); };
    // A sanitizer starts a thread of its own beside the first.
    std::thread([] {}).join();
    const size_t threadsOfAnEmptyRoom = threads();
    const auto settle = [&] {
        return Eventually([&] {
            SDL_VideoRoomCheckInputAndRender();
            return threads() <= threadsOfAnEmptyRoom;
        });
    };
    // What is made once is there.
    joinAndLeave(100);
    ASSERT_TRUE(settle());
    const size_t descriptors = EntriesOf("/proc/self/fd");
    const size_t textures = Sdl().LiveTextures();
    const size_t bytes = mallinfo2().uordblks;
    joinAndLeave(1000);
    EXPECT_TRUE(settle());
    EXPECT_EQ(EntriesOf("/proc/self/fd"), descriptors);
    EXPECT_EQ(Sdl().LiveTextures(), textures);
    // What the allocator keeps for threads counts as used, so some change is no loss. Under a sanitizer all
    // is 0.
    EXPECT_LT(mallinfo2().uordblks, bytes + size_t{512} * 1024);
}

TEST_F(LiveRoomThreadsTest, TicksPastAThreadThatHoldsTheRoom) {
    ASSERT_EQ(Enter(), 1);
    SDL_VideoRoomCheckInputAndRender();
    Fake().Set([](FakeResults& results) { results.activeSpeaker = "a"; });
    Calls().SetRecording(true);
    Calls().Clear();
    const TurnedClock clock;
    Interface::ResetTickTimers();
    Gate gate;
    std::atomic<bool> added = false;
    Calls().OnCall("Connections_IsPublisherFromExternalSource", [&](const Call&) { gate.Pass(); });
    std::thread media([&] {
        Fake().OfferRemoteSource("a");
        added.store(true);
    });
    ASSERT_TRUE(gate.WaitForArrival());
    const uint64_t waits = UI::LockWaitsOfThisThread();
    for (int tick = 0; tick < 5; ++tick) {
        TurnedClock::AdvanceMs(600);
        SDL_WPFVideoRoomCheckInputAndRender();
        SDL_VideoRoomCheckInputAndRender();
    }
    SDLinterface_VideoRoomResize(800, 600);
    // Counted only where the order is checked, else 0.
    EXPECT_EQ(UI::LockWaitsOfThisThread(), waits);
    EXPECT_FALSE(added.load());
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 0U);
    EXPECT_EQ(Calls().Count("SDL_RenderClear"), 0U);
    // The poll of each second goes on.
    EXPECT_GT(Calls().Count("WebRTC_GetActiveSpeaker"), 0U);
    gate.Open();
    media.join();
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 1U);
    Calls().SetRecording(false);
}

}  // namespace
}  // namespace Corvanta::Testing
