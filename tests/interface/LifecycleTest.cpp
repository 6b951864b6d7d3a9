// Start and stop of the library.
#include <algorithm>
#include <stdexcept>

#include "tests/fake_platform/TestFrames.h"
#include "tests/interface/RoomTest.h"
#include "tests/ui/WorkingFolder.h"
#include "ui/FontManager.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Everything that the stop calls, in its order; the view's own steps stand between.
const Names kStopSteps = {"WebRTC_SetVideoSourceMetadataListener",
                          "Connections_SetParticipantJoinedCallback",
                          "Connections_CloseConnection",
                          "Connections_ClearRecordings",
                          "MediaManager_Close",
                          "WebRTC_StopAllLocalVideoCaptures",
                          "WebRTC_Terminate",
                          "MediaManager_SetLocalVideoFrameAdaptationCallback",
                          "SDL_DestroyRenderer",
                          "SDL_DestroyWindow",
                          "DeckLink_Shutdown",
                          "TTF_CloseFont",
                          "ProcessMonitor_StopMonitoring",
                          "SDL_Quit"};

class LifecycleTest : public LibraryTest {};
class StopTest : public RoomTest {};

TEST_F(LifecycleTest, StartsInOrder) {
    SDLinterface_GlobalInit();
    EXPECT_EQ(
        Calls().NamesAmong({"SDL_Init", "SDL_LogSetAllPriority", "SDL_LogSetOutputFunction", "TTF_Init",
                            "DeckLink_Initialize", "WebRTC_Init", "MediaManager_Init",
                            "MediaManager_SetAddRemoteVideoSourceSDLCallback",
                            "MediaManager_SetAddOnVideoFrameTracksAddedSDLCallback",
                            "MediaManager_SetAddLocalVideoSourceSDLCallback",
                            "MediaManager_SetCallbackToGetRemoteDataChannelSDLCallbackList",
                            "MediaManager_SetRemoveRemoteVideoSourceSDLCallback",
                            "MediaManager_SetOnConnectionStatusUpdateSDLCallback",
                            "MediaManager_SetOnVideoFilePlaybackStatusUpdateSDLCallback",
                            "MediaManager_SetRemoveLocalVideoSourceSDLCallback",
                            "MediaManager_SetOnWindowCapturedClosedCallback",
                            "WebRTC_SetVideoSourceMetadataListener"}),
        (Names{"SDL_Init", "SDL_LogSetAllPriority", "SDL_LogSetOutputFunction", "TTF_Init", "TTF_Init",
               "DeckLink_Initialize", "WebRTC_Init", "MediaManager_Init",
               "MediaManager_SetAddRemoteVideoSourceSDLCallback",
               "MediaManager_SetAddOnVideoFrameTracksAddedSDLCallback",
               "MediaManager_SetAddLocalVideoSourceSDLCallback",
               "MediaManager_SetCallbackToGetRemoteDataChannelSDLCallbackList",
               "MediaManager_SetRemoveRemoteVideoSourceSDLCallback",
               "MediaManager_SetOnConnectionStatusUpdateSDLCallback",
               "MediaManager_SetOnVideoFilePlaybackStatusUpdateSDLCallback",
               "MediaManager_SetRemoveLocalVideoSourceSDLCallback",
               "MediaManager_SetOnWindowCapturedClosedCallback", "WebRTC_SetVideoSourceMetadataListener"}));
    EXPECT_THAT(Fake().CallsOf("SDL_Init")[0].arguments, ElementsAre(std::to_string(SDL_INIT_VIDEO)));
    EXPECT_THAT(Fake().CallsOf("SDL_LogSetAllPriority")[0].arguments, ElementsAre("1"));
    EXPECT_THAT(Fake().CallsOf("SDL_LogSetOutputFunction")[0].arguments, ElementsAre("set", "null"));
    EXPECT_THAT(Fake().CallsOf("WebRTC_SetVideoSourceMetadataListener")[0].arguments, ElementsAre("empty"));
}

TEST_F(LifecycleTest, SetsItsHintsBeforeSdlStarts) {
    SDLinterface_GlobalInit();
    const Names names = Fake().CallNames();
    ASSERT_GE(names.size(), 3U);
    const std::vector<Call> calls = Calls().All();
    EXPECT_EQ(calls[0], (Call{"SDL_SetHint", {"SDL_RENDER_SCALE_QUALITY", "best"}}));
    EXPECT_EQ(calls[1], (Call{"SDL_SetHint", {"SDL_WINDOWS_ENABLE_MESSAGELOOP", "0"}}));
    EXPECT_EQ(calls[2], (Call{"SDL_SetHint", {"SDL_MOUSE_FOCUS_CLICKTHROUGH", "1"}}));
    const auto init = std::find(names.begin(), names.end(), "SDL_Init");
    EXPECT_EQ(std::find(init, names.end(), "SDL_SetHint"), names.end());
}

TEST_F(LifecycleTest, LeavesSignalsScreenSaverAndInputMethodToTheHost) {
    SDLinterface_GlobalInit();
    EXPECT_STREQ(SDL_GetHint(SDL_HINT_NO_SIGNAL_HANDLERS), "1");
    EXPECT_STREQ(SDL_GetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER), "1");
    EXPECT_EQ(SDL_IsTextInputActive(), SDL_FALSE);
}

TEST_F(LifecycleTest, StartsWithoutARoom) {
    SDLinterface_GlobalInit();
    EXPECT_FALSE(roomActive.load());
    EXPECT_FALSE(HasView());
    EXPECT_EQ(SDL_GetCurrentConnectionIndex(), 0);
}

TEST_F(LifecycleTest, GoesOnStartingWhateverFails) {
    for (const char* step : {"SDL_SetHint", "SDL_Init", "TTF_Init"}) Sdl().FailAlways(step);
    Sdl().ReplaceForeignWindows(false);
    SDLinterface_GlobalInit();
    EXPECT_TRUE(Fake().callbacks.addRemoteVideoSource.IsSet());
    EXPECT_EQ(Calls().Count("WebRTC_SetVideoSourceMetadataListener"), 1U);
    EXPECT_EQ(Enter(), -1);
    EXPECT_FALSE(HasView());
}

TEST_F(LifecycleTest, EndsWithoutHavingStarted) {
    SDLinterface_GlobalQuit();
    EXPECT_EQ(Calls().Count("SDL_Quit"), 1U);
    EXPECT_THAT(Fake().Logs(), IsEmpty());
}

TEST_F(StopTest, EndsInOrder) {
    Fake().OfferRemoteSource("a");
    const WorkingFolder folder;
    folder.AddFile("fonts/Font.ttf", CORVANTA_TEST_FONT);
    ASSERT_NE(UI::FontManager::Instance().GetFont("Font", 12), nullptr);
    Calls().Clear();
    SDLinterface_GlobalQuit();
    EXPECT_EQ(Calls().NamesAmong(kStopSteps), kStopSteps);
    EXPECT_THAT(Fake().CallsOf("WebRTC_SetVideoSourceMetadataListener")[0].arguments, ElementsAre("empty"));
    EXPECT_THAT(Fake().CallsOf("Connections_SetParticipantJoinedCallback")[0].arguments,
                ElementsAre("empty"));
    EXPECT_EQ(Calls().Count("TTF_Quit"), 0U);
    EXPECT_EQ(Calls().Count("IMG_Quit"), 0U);
    EXPECT_FALSE(HasView());
    EXPECT_FALSE(roomActive.load());
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
}

TEST_F(StopTest, IsNoLongerActiveWhenTheConnectionCloses) {
    bool activeAtListener = false;
    bool activeAtClose = true;
    Watch("Connections_SetParticipantJoinedCallback", [&] { activeAtListener = roomActive.load(); });
    Watch("Connections_CloseConnection", [&] { activeAtClose = roomActive.load(); });
    SDLinterface_GlobalQuit();
    EXPECT_TRUE(activeAtListener);
    EXPECT_FALSE(activeAtClose);
}

TEST_F(StopTest, KeepsTheViewUntilTheMediaLayersAreDown) {
    bool viewAtTerminate = false;
    bool viewAtDeckLink = true;
    Watch("WebRTC_Terminate", [&] { viewAtTerminate = HasView(); });
    Watch("DeckLink_Shutdown", [&] { viewAtDeckLink = HasView(); });
    SDLinterface_GlobalQuit();
    EXPECT_TRUE(viewAtTerminate);
    EXPECT_FALSE(viewAtDeckLink);
}

TEST_F(StopTest, DestroysTheViewIfNobodyElseOwnsIt) {
    const std::weak_ptr<Room::VideoRoomView> view = Interface::CurrentView();
    const auto kept = Interface::CurrentView();
    SDLinterface_GlobalQuit();
    EXPECT_FALSE(view.expired());
    EXPECT_EQ(kept->GetRenderer(), nullptr);
    EXPECT_FALSE(kept->IsInitialised());
}

TEST_F(StopTest, HasASecondName) {
    SDLinterface_VideoRoomQuit();
    EXPECT_EQ(Calls().Count("SDL_Quit"), 1U);
    EXPECT_FALSE(HasView());
}

TEST_F(StopTest, EndsAgainWithoutAView) {
    SDLinterface_GlobalQuit();
    Calls().Clear();
    SDLinterface_GlobalQuit();
    Names steps = kStopSteps;
    for (const char* ofTheView : {"MediaManager_SetLocalVideoFrameAdaptationCallback", "SDL_DestroyRenderer",
                                  "SDL_DestroyWindow", "TTF_CloseFont"}) {
        std::erase(steps, ofTheView);
    }
    EXPECT_EQ(Calls().NamesAmong(kStopSteps), steps);
}

TEST_F(StopTest, RemembersMicrophoneAndCameraOfTheLastView) {
    SDLinterface_VideoRoomSetMicEnabled(true);
    SDLinterface_VideoRoomSetVideoEnabled(false);
    SDLinterface_GlobalQuit();
    EXPECT_TRUE(SDLinterface_VideoRoomGetMicEnabled());
    EXPECT_FALSE(SDLinterface_VideoRoomGetVideoEnabled());
}

TEST_F(StopTest, RemembersWhatTheViewSaysAndNotWhatTheHostSaidLast) {
    SDLinterface_VideoRoomSetMicEnabled(true);
    Interface::CurrentView()->SetMicEnabled(false);
    Interface::CurrentView()->SetVideoEnabled(true);
    SDLinterface_GlobalQuit();
    EXPECT_FALSE(SDLinterface_VideoRoomGetMicEnabled());
    EXPECT_TRUE(SDLinterface_VideoRoomGetVideoEnabled());
}

TEST_F(StopTest, StartsANewLifeAfterwards) {
    SDLinterface_GlobalQuit();
    Start();
    EXPECT_EQ(Enter(), 1);
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 1U);
}

TEST_F(StopTest, LetsOtherExceptionsThrough) {
    Fake().OnCall("WebRTC_Terminate", [](const Call&) { throw std::runtime_error("other"); });
    EXPECT_THROW(SDLinterface_GlobalQuit(), std::runtime_error);
    EXPECT_EQ(Calls().Count("SDL_Quit"), 0U);
    EXPECT_THAT(Fake().LogsOf(3), IsEmpty());
}

class ThrowingStopTest : public RoomTest, public ::testing::WithParamInterface<std::string> {};

TEST_P(ThrowingStopTest, LeavesTheLaterStepsUndone) {
    Fake().ThrowFrom(GetParam(), 17);
    SDLinterface_GlobalQuit();
    Names done(kStopSteps.begin(), std::find(kStopSteps.begin(), kStopSteps.end(), GetParam()) + 1);
    // No font is open here.
    std::erase(done, "TTF_CloseFont");
    EXPECT_EQ(Calls().NamesAmong(kStopSteps), done);
    EXPECT_THAT(Fake().Logs(), ElementsAre(LogLine{3, "Cleanup failed with exception number: 17"}));
    EXPECT_EQ(Calls().Count("SDL_Quit"), 0U);
    const bool viewEnded = std::find(done.begin(), done.end(), "DeckLink_Shutdown") != done.end();
    EXPECT_EQ(HasView(), !viewEnded);
}

INSTANTIATE_TEST_SUITE_P(EveryStep, ThrowingStopTest,
                         ::testing::Values("WebRTC_SetVideoSourceMetadataListener",
                                           "Connections_SetParticipantJoinedCallback",
                                           "Connections_CloseConnection", "Connections_ClearRecordings",
                                           "MediaManager_Close", "WebRTC_StopAllLocalVideoCaptures",
                                           "WebRTC_Terminate",
                                           "MediaManager_SetLocalVideoFrameAdaptationCallback",
                                           "DeckLink_Shutdown", "ProcessMonitor_StopMonitoring"),
                         [](const auto& test) { return test.param; });

TEST_F(StopTest, EndsWhatAThrowLeftWhenItIsCalledAgain) {
    Fake().ThrowFrom("MediaManager_Close", -5);
    SDLinterface_GlobalQuit();
    EXPECT_EQ(Fake().LogsOf(3), Names{"Cleanup failed with exception number: -5"});
    Calls().OnCall("MediaManager_Close", {});
    SDLinterface_GlobalQuit();
    EXPECT_FALSE(HasView());
    EXPECT_EQ(Calls().Count("SDL_Quit"), 1U);
}

TEST_F(StopTest, TakesLateMediaCallsWithoutHarm) {
    FrameCallback* const sink = Fake().OfferRemoteSource("a");
    ASSERT_NE(sink, nullptr);
    const auto addRemote = Fake().callbacks.addRemoteVideoSource.Get();
    const auto addLocal = Fake().callbacks.addLocalVideoSource.Get();
    const auto status = Fake().callbacks.connectionStatusUpdate.Get();
    const auto remove = Fake().callbacks.removeRemoteVideoSource.Get();
    const auto handlers = SDLinterface_VideoRoomGetRemoteDataChannelCallbacks();
    ASSERT_FALSE(handlers.empty());
    SDLinterface_GlobalQuit();
    Calls().Clear();
    (*sink)(MakeFrame());
    EXPECT_EQ(addRemote("b"), nullptr);
    EXPECT_EQ(addLocal(StreamType::Camera, "camera"), nullptr);
    status("a", true);
    remove("a");
    for (const auto& handler : handlers) {
        handler({"a", R"({"type":"video-metadata-message","message":{"sourceData":)"
                      R"({"streamId":"a","frameRate":25,"sourceName":"x"}}})"});
    }
    EXPECT_ANY_THROW(handlers[0]({"a", "no message at all"}));
    handlers[1]({"a", "no message at all"});
    EXPECT_EQ(Calls().Count("Connections_RestartPeerConnection"), 0U);
}

TEST_F(StopTest, LetsADataChannelKeepTheClosedView) {
    std::weak_ptr<Room::VideoRoomView> view = Interface::CurrentView();
    auto handlers = SDLinterface_VideoRoomGetRemoteDataChannelCallbacks();
    SDLinterface_GlobalQuit();
    EXPECT_FALSE(view.expired());
    handlers.clear();
    // It goes with the host's next call: a channel's thread is not to wait for the room's actions.
    SDLinterface_TickLocalPreview();
    EXPECT_TRUE(view.expired());
}

// A host may end its process whenever it likes.
TEST(LifecycleDeathTest, LetsTheProcessEndWithoutBeingStopped) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            Sdl().ReplaceForeignWindows(true);
            SDL_setenv("SDL_VIDEODRIVER", "dummy", 1);
            SDL_setenv("SDL_RENDER_DRIVER", "software", 1);
            int window = 0;
            SDLinterface_GlobalInit();
            SDLinterface_SetRoomWindow(&window, 64, 36);
            EnterRoom(nullptr, nullptr, "s", "r", false, false, false, nullptr, false);
            FrameCallback* const sink = Fake().OfferRemoteSource("a");
            for (int i = 0; i < 3; ++i) {
                (*sink)(MakeFrame());
                SDL_VideoRoomCheckInputAndRender();
            }
            std::exit(Interface::CurrentView() != nullptr ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace Corvanta::Testing
