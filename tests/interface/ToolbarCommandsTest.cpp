// The host's commands on the bar, and what the bar does with them.
#include <utility>
#include <vector>

#include "tests/interface/RoomWithBar.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ToolbarWithoutViewTest : public StartedTest {};

class ToolbarCommandsTest : public RoomWithBar {
protected:
    ToolbarCommandsTest() { EnterWithBar(); }

    // Longer than the bar waits for the pointer to come back.
    static void LetTheBarGo() {
        MoveTo({1200, 300});
        TurnedClock::AdvanceMs(4100);
        Tick();
        TurnedClock::AdvanceMs(300);
        Tick();
        ASSERT_FALSE(Bar().visible);
        Calls().Clear();
    }
    // The bar without the pointer over it, so that no tooltip comes and goes.
    static size_t PicturesOfATick() {
        MoveTo({1200, 300});
        Calls().Clear();
        SDL_WPFVideoRoomCheckInputAndRender();
        return Calls().Count("SDL_RenderCopy");
    }
};

TEST_F(ToolbarWithoutViewTest, DoesNothing) {
    SDLInterface_VideoRoomUpdateRoomName("name");
    SDLInterface_VideoRoomUpdateRoomName(nullptr);
    SDLinterface_VideoRoomUntoggleOptionsButton(true);
    SDLinterface_VideoRoomUntoggleOptionsButton(false);
    SDLInterface_VideoRoomUntoggleAudioMixer();
    SDLInterface_VideoRoomSetShowSidebarNotification(true);
    SDLinterface_VideoRoomSetDrawToolEnabled(true);
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
}

TEST_F(ToolbarWithoutViewTest, HandsOverWhoHearsOfADroppedConnection) {
    static std::vector<std::pair<bool, bool>> told;
    told.clear();
    SDLinterface_VideoRoomSetConnectionDroppedCallback(
        [](bool willRetry, bool endedHere) { told.emplace_back(willRetry, endedHere); });
    EXPECT_THAT(Fake().CallsOf("Connections_SetConnectionDroppedCallback").at(0).arguments,
                ElementsAre("set"));
    Fake().callbacks.connectionDropped(true, false);
    EXPECT_EQ(told, (std::vector<std::pair<bool, bool>>{{true, false}}));
    SDLinterface_VideoRoomSetConnectionDroppedCallback(nullptr);
    EXPECT_THAT(Fake().CallsOf("Connections_SetConnectionDroppedCallback").at(1).arguments,
                ElementsAre("empty"));
    Fake().callbacks.connectionDropped(false, true);
    EXPECT_EQ(told.size(), 1U);
}

TEST_F(ToolbarCommandsTest, NamesTheRoom) {
    EXPECT_EQ(Bar().GetTitle(), "room");
    SDLInterface_VideoRoomUpdateRoomName("Grading suite \xc3\xa9");
    EXPECT_EQ(Bar().GetTitle(), "Grading suite \xc3\xa9");
    SDLInterface_VideoRoomUpdateRoomName(nullptr);
    EXPECT_EQ(Bar().GetTitle(), "Grading suite \xc3\xa9");
    SDLInterface_VideoRoomUpdateRoomName("");
    EXPECT_EQ(Bar().GetTitle(), "");
    Tick();
}

TEST_F(ToolbarCommandsTest, PutsOutTheButtonOfASidePanelThatHasClosed) {
    Click(RightButton::Options);
    EXPECT_THAT(ArgumentsOf("Host_ShowOptions"), ElementsAre("true"));
    SDLinterface_VideoRoomUntoggleOptionsButton(false);
    Tick();
    EXPECT_THAT(ArgumentsOf("Host_ShowOptions"), ElementsAre("true"));
    // It stands as before the first click, once the bar has slid into place.
    TurnedClock::AdvanceMs(300);
    Click(RightButton::Options);
    EXPECT_THAT(ArgumentsOf("Host_ShowOptions"), ElementsAre("true", "true"));
}

TEST_F(ToolbarCommandsTest, ClosesTheSidePanelAsTheUserWould) {
    Click(RightButton::Options);
    SDLinterface_VideoRoomUntoggleOptionsButton(true);
    EXPECT_THAT(ArgumentsOf("Host_ShowOptions"), ElementsAre("true", "false"));
    SDLinterface_VideoRoomUntoggleOptionsButton(true);
    EXPECT_THAT(ArgumentsOf("Host_ShowOptions"), ElementsAre("true", "false", "true"));
}

TEST_F(ToolbarCommandsTest, ShowsTheBarWhenTheSidePanelHasClosed) {
    for (const bool click : {false, true}) {
        LetTheBarGo();
        SDLinterface_VideoRoomUntoggleOptionsButton(click);
        EXPECT_TRUE(Bar().visible);
        Tick();
        EXPECT_TRUE(Bar().visible);
    }
    SDLinterface_VideoRoomSetDrawToolEnabled(true);
    SDLinterface_VideoRoomUntoggleOptionsButton(false);
    EXPECT_FALSE(Bar().IsHidden());
    EXPECT_TRUE(Bar().visible);
}

TEST_F(ToolbarCommandsTest, ClosesTheAudioMixerOnlyWhileItsButtonIsLit) {
    SDLInterface_VideoRoomUntoggleAudioMixer();
    EXPECT_THAT(HostCalls(), IsEmpty());
    Click(CentreButton::AudioMixer);
    SDLInterface_VideoRoomUntoggleAudioMixer();
    EXPECT_THAT(ArgumentsOf("Host_ShowAudioMixer"), ElementsAre("true", "false"));
    SDLInterface_VideoRoomUntoggleAudioMixer();
    EXPECT_THAT(HostCalls(), ElementsAre("Host_ShowAudioMixer", "Host_ShowAudioMixer"));
}

TEST_F(ToolbarCommandsTest, MarksTheButtonOfTheSidePanelWithADot) {
    const size_t without = PicturesOfATick();
    SDLInterface_VideoRoomSetShowSidebarNotification(true);
    EXPECT_EQ(PicturesOfATick(), without + 1);
    SDLInterface_VideoRoomSetShowSidebarNotification(true);
    EXPECT_EQ(PicturesOfATick(), without + 1);
    SDLInterface_VideoRoomSetShowSidebarNotification(false);
    EXPECT_EQ(PicturesOfATick(), without);
    EXPECT_THAT(HostCalls(), IsEmpty());
}

TEST_F(ToolbarCommandsTest, MakesRoomForTheDrawingTools) {
    SDLinterface_VideoRoomSetDrawToolEnabled(true);
    EXPECT_TRUE(Bar().IsHidden());
    EXPECT_FALSE(Bar().visible);
    // The pointer does not bring it back.
    MoveTo({1200, 990});
    EXPECT_FALSE(Bar().visible);
    SDLinterface_VideoRoomSetDrawToolEnabled(false);
    EXPECT_FALSE(Bar().IsHidden());
    EXPECT_TRUE(Bar().visible);
    EXPECT_THAT(HostCalls(), IsEmpty());
}

TEST_F(ToolbarCommandsTest, LightsTheButtonOfTheDrawingTools) {
    SDLinterface_VideoRoomSetDrawToolEnabled(true);
    SDLinterface_VideoRoomUntoggleOptionsButton(false);
    TurnedClock::AdvanceMs(300);
    Click(LeftButton::DrawTool);
    EXPECT_THAT(ArgumentsOf("Host_ShowDrawTool"), ElementsAre("false"));
    Click(LeftButton::DrawTool);
    EXPECT_THAT(ArgumentsOf("Host_ShowDrawTool"), ElementsAre("false", "true"));
}

TEST_F(ToolbarCommandsTest, SwitchesTheMicrophoneThroughItsButton) {
    const UI::ToggleButton& button = *View().GetToolbar().GetMicButton();
    EXPECT_TRUE(button.IsToggled());
    SDLinterface_VideoRoomSetMicEnabled(true);
    EXPECT_FALSE(button.IsToggled());
    EXPECT_TRUE(SDLinterface_VideoRoomGetMicEnabled());
    EXPECT_EQ(Calls().OfThisThread(), (std::vector<Call>{{"Connections_GetLocalUserStreamID", {"0"}},
                                                         {"Connections_ConfigureStream", {"me", "0=true"}},
                                                         {"WebRTC_SetEnabledLocalAudioTrack", {"true", "0"}},
                                                         {"Host_OnMicrophoneChanged", {"true"}}}));
    Calls().Clear();
    SDLinterface_VideoRoomSetMicEnabled(true);
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
    SDLinterface_VideoRoomSetMicEnabled(false);
    EXPECT_TRUE(button.IsToggled());
    EXPECT_FALSE(SDLinterface_VideoRoomGetMicEnabled());
    EXPECT_EQ(Calls().OfThisThread(), (std::vector<Call>{{"WebRTC_SetEnabledLocalAudioTrack", {"false", "0"}},
                                                         {"Host_OnMicrophoneChanged", {"false"}}}));
}

TEST_F(ToolbarCommandsTest, SwitchesTheCameraThroughItsButton) {
    const UI::ToggleButton& button = *View().GetToolbar().GetVideoButton();
    SDLinterface_VideoRoomSetVideoEnabled(true);
    EXPECT_FALSE(button.IsToggled());
    Calls().Clear();
    SDLinterface_VideoRoomSetVideoEnabled(false);
    EXPECT_TRUE(button.IsToggled());
    EXPECT_FALSE(SDLinterface_VideoRoomGetVideoEnabled());
    EXPECT_EQ(Calls().OfThisThread(), (std::vector<Call>{{"WebRTC_SetEnabledLocalVideoTrack", {"false", "0"}},
                                                         {"Host_OnCameraToggled", {"false"}}}));
    Calls().Clear();
    SDLinterface_VideoRoomSetVideoEnabled(false);
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
    SDLinterface_VideoRoomSetVideoEnabled(true);
    EXPECT_FALSE(button.IsToggled());
    EXPECT_TRUE(SDLinterface_VideoRoomGetVideoEnabled());
    EXPECT_EQ(Calls().OfThisThread(), (std::vector<Call>{{"WebRTC_SetEnabledLocalVideoTrack", {"true", "0"}},
                                                         {"Host_OnCameraToggled", {"true"}}}));
}

TEST_F(ToolbarCommandsTest, AnswersWhatTheButtonsSay) {
    Click(CentreButton::Microphone);
    EXPECT_TRUE(SDLinterface_VideoRoomGetMicEnabled());
    Click(CentreButton::Microphone);
    EXPECT_FALSE(SDLinterface_VideoRoomGetMicEnabled());
    EXPECT_THAT(ArgumentsOf("Host_OnMicrophoneChanged"), ElementsAre("true", "false"));
    Click(CentreButton::Camera);
    EXPECT_FALSE(SDLinterface_VideoRoomGetVideoEnabled());
    Click(CentreButton::Camera);
    EXPECT_TRUE(SDLinterface_VideoRoomGetVideoEnabled());
    EXPECT_THAT(ArgumentsOf("Host_OnCameraToggled"), ElementsAre("false", "true"));
}

TEST_F(ToolbarCommandsTest, LeavesNoMicrophoneToAClickUntilThereIsOneAgain) {
    Fake().Set([](FakeResults& results) { results.micIsNone = true; });
    EXPECT_TRUE(SDLinterface_VideoRoomAudioDeviceUpdate(false));
    const UI::ToggleButton& button = *View().GetToolbar().GetMicButton();
    EXPECT_TRUE(button.IsInThirdState());
    Calls().Clear();
    Click(CentreButton::Microphone);
    EXPECT_EQ(Calls().Count("WebRTC_SetEnabledLocalAudioTrack"), 0U);
    EXPECT_THAT(HostCalls(), IsEmpty());
    SDLinterface_VideoRoomSetMicEnabled(true);
    EXPECT_FALSE(button.IsInThirdState());
    EXPECT_THAT(ArgumentsOf("Host_OnMicrophoneChanged"), ElementsAre("true"));
}

TEST_F(ToolbarCommandsTest, DoesNothingOnceTheRoomHasEnded) {
    SDLinterface_GlobalQuit();
    Calls().Clear();
    SDLInterface_VideoRoomUpdateRoomName("name");
    SDLinterface_VideoRoomUntoggleOptionsButton(true);
    SDLInterface_VideoRoomUntoggleAudioMixer();
    SDLInterface_VideoRoomSetShowSidebarNotification(true);
    SDLinterface_VideoRoomSetDrawToolEnabled(true);
    SDLinterface_VideoRoomSetMicEnabled(true);
    SDLinterface_VideoRoomSetVideoEnabled(true);
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
    EXPECT_TRUE(SDLinterface_VideoRoomGetMicEnabled());
    EXPECT_TRUE(SDLinterface_VideoRoomGetVideoEnabled());
}

// A media thread may still own a view that has ended, and with it the bar's commands.
TEST_F(ToolbarCommandsTest, HasNoBarOnceTheViewHasEnded) {
    const auto view = Interface::CurrentView();
    SDLinterface_GlobalQuit();
    Calls().Clear();
    view->SetTitle("name");
    view->UntoggleOptionsButton(true);
    view->UntoggleAudioMixer();
    view->SetSidebarNotification(true);
    view->SetDrawTool(true);
    view->SetMicEnabled(true);
    view->SetVideoEnabled(true);
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
}

}  // namespace
}  // namespace Corvanta::Testing
