// The standing buttons of the room's bar, and the host's commands on them.
#include <gtest/gtest.h>

#include <thread>

#include "tests/room/ToolbarTest.h"
#include "tests/video/Gate.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RoomToolbarTest : public ToolbarTest {
protected:
    // The pictures of the bar that are seen, from left to right.
    [[nodiscard]] std::vector<std::string> SeenInBar() {
        const Picture picture = TickAndRead();
        std::vector<std::pair<int, std::string>> seen;
        for (const char* name : kIconNames) {
            const auto place = Find(picture, name, view->GetHeight() - view->GetToolbarHeight());
            if (place.has_value()) seen.emplace_back(place->x, name);
        }
        std::sort(seen.begin(), seen.end());
        std::vector<std::string> names;
        names.reserve(seen.size());
        for (const auto& [x, name] : seen) names.push_back(name);
        return names;
    }
    [[nodiscard]] static Call CallOf(const std::string& name, const std::string& argument) {
        return {name, {argument}};
    }
    // What the host hears of two presses, the second on the button's other picture.
    void PressTwice(const std::string& off, const std::string& on) {
        Press(off);
        EXPECT_TRUE(FindInBar(on).has_value()) << on;
        EXPECT_FALSE(FindInBar(off).has_value()) << off;
        Press(on);
        EXPECT_TRUE(FindInBar(off).has_value()) << off;
    }
};

TEST_F(RoomToolbarTest, StandsInThreeGroupsInItsOrder) {
    OpenBar();
    EXPECT_THAT(SeenInBar(), ElementsAre("layout", "draw", "nomic", "cam", "audio", "audiomixer", "elgato",
                                         "media-silo-stream", "decklink-stream", "ndi-stream", "url-stream",
                                         "file-native-stream", "device-native-stream", "screenshare",
                                         "fullscreen", "options"));
}

TEST_F(RoomToolbarTest, IsMadeOnce) {
    OpenBar();
    const UI::ButtonBar* const bar = &Bar();
    view->BuildControls();
    EXPECT_EQ(&Bar(), bar);
    EXPECT_EQ(SeenInBar().size(), 16U);
}

TEST_F(RoomToolbarTest, SwitchesTheMicrophone) {
    OpenBar();
    Press("nomic");
    EXPECT_THAT(HostCalls(), ElementsAre(CallOf("Host_OnMicrophoneChanged", "true")));
    EXPECT_EQ(Calls().NamesAmong({"Connections_ConfigureStream", "WebRTC_SetEnabledLocalAudioTrack",
                                  "Host_OnMicrophoneChanged"}),
              (std::vector<std::string>{"Connections_ConfigureStream", "WebRTC_SetEnabledLocalAudioTrack",
                                        "Host_OnMicrophoneChanged"}));
    EXPECT_TRUE(view->IsMicEnabled());
    Calls().Clear();
    Press("mic");
    EXPECT_THAT(HostCalls(), ElementsAre(CallOf("Host_OnMicrophoneChanged", "false")));
    EXPECT_EQ(Calls().Of("WebRTC_SetEnabledLocalAudioTrack"),
              (std::vector<Call>{{"WebRTC_SetEnabledLocalAudioTrack", {"false", "0"}}}));
    EXPECT_FALSE(view->IsMicEnabled());
    EXPECT_TRUE(FindInBar("nomic").has_value());
}

TEST_F(RoomToolbarTest, SwitchesTheCamera) {
    OpenBar();
    PressTwice("cam", "nocam");
    EXPECT_THAT(HostCalls(),
                ElementsAre(CallOf("Host_OnCameraToggled", "false"), CallOf("Host_OnCameraToggled", "true")));
    EXPECT_EQ(Calls().Of("WebRTC_SetEnabledLocalVideoTrack"),
              (std::vector<Call>{{"WebRTC_SetEnabledLocalVideoTrack", {"false", "0"}},
                                 {"WebRTC_SetEnabledLocalVideoTrack", {"true", "0"}}}));
}

TEST_F(RoomToolbarTest, SwitchesTheSpeaker) {
    OpenBar();
    ASSERT_NE(view->AddRemoteVideoSource("one"), nullptr);
    Calls().Clear();
    PressTwice("audio", "noaudio");
    EXPECT_THAT(HostCalls(), ElementsAre(CallOf("Host_OnSpeakerToggled", "false"),
                                         CallOf("Host_OnSpeakerToggled", "true")));
    EXPECT_EQ(Calls().Of("WebRTC_SetEnabledRemoteAudioTrack"),
              (std::vector<Call>{{"WebRTC_SetEnabledRemoteAudioTrack", {"one", "false"}},
                                 {"WebRTC_SetEnabledRemoteAudioTrack", {"one", "true"}}}));
    EXPECT_TRUE(view->IsSpeakerEnabled());
}

TEST_F(RoomToolbarTest, AsksTheHostForItsParts) {
    OpenBar();
    struct Part {
        const char* off;
        const char* on;
        const char* call;
    };
    for (const Part& part : {Part{"audiomixer", "audiomixer-white", "Host_ShowAudioMixer"},
                             Part{"options", "options-white", "Host_ShowOptions"},
                             Part{"fullscreen", "fullscreen-white", "Host_SetFullscreen"},
                             Part{"draw", "draw-white", "Host_ShowDrawTool"}}) {
        Calls().Clear();
        PressTwice(part.off, part.on);
        EXPECT_THAT(HostCalls(), ElementsAre(CallOf(part.call, "true"), CallOf(part.call, "false")));
    }
}

TEST_F(RoomToolbarTest, TellsWhatEachButtonDoes) {
    OpenBar();
    struct Tip {
        const char* picture;
        const char* text;
        const char* onPicture;
        const char* onText;
    };
    for (const Tip& tip : {Tip{"draw", "Show drawing tools", "draw-white", "Hide drawing tools"},
                           Tip{"nomic", "Turn on microphone", "mic", "Turn off microphone"},
                           Tip{"cam", "Turn off camera", "nocam", "Turn on camera"},
                           Tip{"audio", "Turn off audio", "noaudio", "Turn on audio"},
                           Tip{"audiomixer", "Show audio mixer", "audiomixer-white", "Hide audio mixer"},
                           Tip{"options", "Show Chats and Notes", "options-white", "Hide Chats and Notes"},
                           Tip{"fullscreen", "Enter full screen", "fullscreen-white", "Exit full screen"}}) {
        Calls().Clear();
        MoveToButton(tip.picture);
        view->Tick();
        EXPECT_THAT(RasterisedTexts(), ElementsAre(tip.text));
        PushPress();
        view->Tick();
        EXPECT_THAT(RasterisedTexts(), ElementsAre(tip.text, tip.onText));
        EXPECT_TRUE(FindInBar(tip.onPicture).has_value());
    }
    Calls().Clear();
    MoveToButton("layout");
    view->Tick();
    EXPECT_THAT(RasterisedTexts(), ElementsAre("Show layout menu"));
}

TEST_F(RoomToolbarTest, ShowsWhatTheRoomWasBefore) {
    view->SetSpeakerEnabled(false);
    view->SetVideoEnabled(false);
    view->SetFullscreenEnabled(true);
    OpenBar();
    EXPECT_THAT(SeenInBar(), ::testing::IsSupersetOf({"nomic", "nocam", "noaudio", "fullscreen-white"}));
}

TEST_F(RoomToolbarTest, FollowsTheHostWithoutTellingIt) {
    OpenBar();
    view->SetFullscreenEnabled(true);
    view->SetSpeakerEnabled(false);
    EXPECT_THAT(SeenInBar(), ::testing::IsSupersetOf({"fullscreen-white", "noaudio"}));
    view->SetFullscreenEnabled(false);
    view->SetSpeakerEnabled(true);
    EXPECT_THAT(SeenInBar(), ::testing::IsSupersetOf({"fullscreen", "audio"}));
    EXPECT_THAT(HostCalls(), IsEmpty());
}

// Devices that are not there

TEST_F(RoomToolbarTest, AMissingDeviceTakesNoClick) {
    NameLocalStream(StreamType::Camera, "me");
    OpenBar();
    AddCamera(kWhite);
    Press("nomic");
    MoveTo({5, 5});
    Calls().Clear();
    view->SetMicNone(true);
    view->OnCaptureChanged(-1);
    view->SetSpeakerNone(true);
    EXPECT_THAT(SeenInBar(), ::testing::IsSupersetOf({"nomic", "nocam", "noaudio"}));
    struct Device {
        const char* picture;
        const char* tooltip;
    };
    for (const Device& device :
         {Device{"nomic", "No microphone"}, Device{"nocam", "No camera"}, Device{"noaudio", "No speaker"}}) {
        Calls().Clear();
        Press(device.picture);
        EXPECT_THAT(RasterisedTexts(), ElementsAre(device.tooltip));
        EXPECT_THAT(HostCalls(), IsEmpty());
        EXPECT_EQ(Calls().Count("WebRTC_SetEnabledLocalAudioTrack") +
                      Calls().Count("WebRTC_SetEnabledLocalVideoTrack"),
                  0U);
    }
}

TEST_F(RoomToolbarTest, ADeviceThatComesBackFindsItsButtonAsItWas) {
    OpenBar();
    AddCamera(kWhite);
    Press("nomic");
    view->SetMicNone(true);
    view->OnCaptureChanged(-1);
    view->SetSpeakerNone(true);
    view->Tick();
    view->SetMicNone(false);
    view->OnCaptureChanged(0);
    view->SetSpeakerNone(false);
    EXPECT_THAT(SeenInBar(), ::testing::IsSupersetOf({"mic", "cam", "audio"}));
}

// The host's commands

TEST_F(RoomToolbarTest, TheOptionsButtonIsUntoggledByAClickOfTheHost) {
    OpenBar();
    Press("options");
    Calls().Clear();
    view->UntoggleOptionsButton(true);
    EXPECT_THAT(HostCalls(), ElementsAre(CallOf("Host_ShowOptions", "false")));
    TurnMs(300);
    EXPECT_TRUE(FindInBar("options").has_value());
}

TEST_F(RoomToolbarTest, TheOptionsButtonIsUntoggledWithoutAClick) {
    OpenBar();
    Press("options");
    Calls().Clear();
    view->UntoggleOptionsButton(false);
    EXPECT_THAT(HostCalls(), IsEmpty());
    TurnMs(300);
    EXPECT_TRUE(FindInBar("options").has_value());
}

TEST_F(RoomToolbarTest, UntogglingTheOptionsButtonShowsTheBarAgain) {
    OpenBar();
    for (const bool click : {false, true}) {
        view->SetDrawTool(true);
        ASSERT_FALSE(Sees("options"));
        view->UntoggleOptionsButton(click);
        view->Tick();
        TurnMs(300);
        EXPECT_FALSE(SeenInBar().empty());
        EXPECT_FALSE(Bar().IsHidden());
        view->SetDrawTool(false);
    }
}

TEST_F(RoomToolbarTest, TheMixersButtonIsUntoggledOnlyWhileItIsToggled) {
    OpenBar();
    view->UntoggleAudioMixer();
    EXPECT_THAT(HostCalls(), IsEmpty());
    Press("audiomixer");
    Calls().Clear();
    view->UntoggleAudioMixer();
    EXPECT_THAT(HostCalls(), ElementsAre(CallOf("Host_ShowAudioMixer", "false")));
    EXPECT_TRUE(FindInBar("audiomixer").has_value());
}

TEST_F(RoomToolbarTest, ADotAtTheOptionsButtonTellsOfSomethingNew) {
    OpenBar();
    EXPECT_FALSE(Sees("notification"));
    view->SetSidebarNotification(true);
    const Picture picture = TickAndRead();
    const auto dot = Find(picture, "notification");
    const auto icon = Find(picture, "options");
    ASSERT_TRUE(dot.has_value() && icon.has_value());
    // At the upper right corner.
    EXPECT_GT(dot->x, icon->x);
    EXPECT_LT(dot->y, icon->y);
    view->SetSidebarNotification(false);
    EXPECT_FALSE(Sees("notification"));
}

TEST_F(RoomToolbarTest, MakesRoomForTheDrawingTools) {
    OpenBar();
    const auto place = FindInBar("draw");
    ASSERT_TRUE(place.has_value());
    view->SetDrawTool(true);
    EXPECT_THAT(SeenInBar(), IsEmpty());
    // Neither the pointer nor a press brings it back.
    PressAt(*place);
    EXPECT_THAT(SeenInBar(), IsEmpty());
    EXPECT_THAT(HostCalls(), IsEmpty());
    view->SetDrawTool(false);
    view->Tick();
    TurnMs(300);
    EXPECT_TRUE(FindInBar("draw").has_value());
    EXPECT_THAT(HostCalls(), IsEmpty());
}

TEST_F(RoomToolbarTest, ShowsTheDrawingToolsAsOnAfterwards) {
    OpenBar();
    view->SetDrawTool(true);
    view->UntoggleOptionsButton(false);
    view->Tick();
    TurnMs(300);
    EXPECT_TRUE(FindInBar("draw-white").has_value());
}

TEST_F(RoomToolbarTest, BearsTheRoomsName) {
    RoomIdentity identity;
    identity.roomName = "Harbour";
    view->Configure(identity);
    OpenBarAndWall();
    EXPECT_EQ(Bar().GetTitle(), "Harbour");
    const Picture before = TickAndRead();
    view->SetTitle("Lighthouse");
    view->Tick();
    EXPECT_THAT(RasterisedTexts(), ElementsAre("Lighthouse"));
    EXPECT_FALSE(SamePicture(before, TickAndRead()));
}

TEST_F(RoomToolbarTest, TakesAnotherNameAtTheEntry) {
    OpenBar();
    RoomIdentity identity;
    identity.roomName = "Harbour";
    view->Configure(identity);
    view->Tick();
    EXPECT_THAT(RasterisedTexts(), ElementsAre("Harbour"));
}

TEST_F(RoomToolbarTest, CommandsNeedNoBar) {
    Open();
    view->UntoggleOptionsButton(true);
    view->UntoggleOptionsButton(false);
    view->UntoggleAudioMixer();
    view->SetSidebarNotification(true);
    view->SetDrawTool(true);
    view->SetTitle("Harbour");
    view->SetFullscreenEnabled(true);
    view->RequestTrackCheck();
    PushPress();
    view->Tick();
    EXPECT_THAT(HostCalls(), IsEmpty());
    EXPECT_EQ(Calls().Count("Diagnostics_Report"), 0U);
}

// Coming and going

TEST_F(RoomToolbarTest, GoesAWhileAfterThePointerAndComesBackWithIt) {
    OpenBar();
    const auto place = FindInBar("options");
    ASSERT_TRUE(place.has_value());
    MoveTo(*place);
    TurnMs(kHideMs);
    EXPECT_TRUE(Sees("options"));
    MoveTo({5, 5});
    TurnMs(kHideMs);
    EXPECT_THAT(SeenInBar(), IsEmpty());
    // The first press where it was only brings it back.
    PushMotion(*place);
    PushPress();
    view->Tick();
    EXPECT_THAT(HostCalls(), IsEmpty());
    TurnMs(300);
    EXPECT_TRUE(Sees("options"));
}

TEST_F(RoomToolbarTest, FollowsTheWindowsWidth) {
    OpenBar();
    const auto before = FindInBar("options");
    view->Resize(kBarViewWidth - 200, kBarViewHeight + 50);
    const auto after = FindInBar("options");
    ASSERT_TRUE(before.has_value() && after.has_value());
    EXPECT_EQ(after->x, before->x - 200);
    EXPECT_EQ(after->y, before->y + 50);
}

TEST_F(RoomToolbarTest, FollowsAWidthThatCameWhileAMediaThreadHeldTheRoom) {
    OpenBar();
    Gate gate;
    Calls().OnCall("WebRTC_GetFrameTransformerInstance", [&gate](const Call&) { gate.Pass(); });
    std::thread media([this] { EXPECT_NE(view->AddRemoteVideoSource("one"), nullptr); });
    ASSERT_TRUE(gate.WaitForArrival());
    view->Resize(kBarViewWidth - 200, kBarViewHeight);
    gate.Open();
    media.join();
    view->Tick();
    EXPECT_EQ(Bar().rect.w, kBarViewWidth - 200);
}

TEST_F(RoomToolbarTest, FollowsTheScale) {
    OpenBar();
    view->SetWindowScale(1.5F);
    EXPECT_EQ(view->GetToolbarHeight(), 150);
    EXPECT_EQ(Bar().height, 150);
    view->SetWindowScale(0.5F);
    const auto place = FindInBar("options");
    ASSERT_TRUE(place.has_value());
    EXPECT_GT(place->y, kBarViewHeight - 50);
}

TEST_F(RoomToolbarTest, HasFourButtonsInANarrowWindow) {
    OpenBar(640, 480);
    EXPECT_THAT(SeenInBar(), ElementsAre("nomic", "cam", "audio", "options"));
    Press("cam");
    Press("options");
    EXPECT_THAT(HostCalls(),
                ElementsAre(CallOf("Host_OnCameraToggled", "false"), CallOf("Host_ShowOptions", "true")));
    EXPECT_THAT(SeenInBar(), ElementsAre("nomic", "nocam", "audio", "options-white"));
}

TEST_F(RoomToolbarTest, AMenuClosesWhenItsButtonGoesWithTheWindowsWidth) {
    OpenBar();
    OpenMenu("layout");
    ASSERT_TRUE(LayoutMenu().visible);
    view->Resize(640, kBarViewHeight);
    view->Tick();
    EXPECT_FALSE(LayoutMenu().visible);
    EXPECT_THAT(SeenInBar(), ElementsAre("nomic", "cam", "audio", "options"));
}

// Hosts that have nothing

TEST_F(RoomToolbarTest, NoButtonNeedsAFunctionOfTheHost) {
    view = std::make_shared<VideoRoomView>(0, HostCallbacks{});
    OpenBar();
    AddCamera(kWhite);
    for (const char* name : {"draw", "nomic", "cam", "nocam", "audio", "audiomixer", "options", "fullscreen",
                             "screenshare", "device-native-stream", "file-native-stream", "url-stream",
                             "ndi-stream", "decklink-stream", "media-silo-stream", "elgato"}) {
        Press(name);
    }
    AwaitActions();
    Run({{0, 11}, {1, 22}});
    for (const char* item : {"decklink-stream", "screenshare"}) {
        OpenMenu("davinci-no-arrow");
        Choose(item);
    }
    for (const char* item : {"decklink-stream", "ndi-stream", "screenshare"}) {
        OpenMenu("flame-stream");
        Choose(item);
    }
    AwaitActions();
    for (const char* item : {"wall-show", "wall-detach"}) {
        OpenMenu("layout");
        Choose(item);
    }
    for (const char* item : {"still", "brighter", "darker", "connection-strength", "leave"}) {
        OpenMenu(kOptions);
        Choose(item);
    }
    ASSERT_TRUE(Show(view->GetLocalCameraSink(), Plain(kBlack)));
    view->UntoggleOptionsButton(true);
    view->UntoggleAudioMixer();
    view->Tick();
    EXPECT_EQ(Fake().StillExports().size(), 1U);
}

}  // namespace
}  // namespace Corvanta::Room
