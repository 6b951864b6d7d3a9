// A whole meeting, step by step, as the sibling libraries and the host hear it from the thread of the tick.
#include <SDL.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

#include "tests/fake_platform/TestFrames.h"
#include "tests/interface/RoomWithBar.h"
#include "tests/video/FlushSink.h"

namespace Corvanta::Testing {
namespace {

// Drawing and time, what is asked in every tick or once a second, facts of the machine, and what a worker's
// end decides the moment of.
constexpr const char* kLeftOut[] = {"Clock",
                                    "Connections_GetPublisherDisplayName",
                                    "Diagnostics_Get",
                                    "IMG_",
                                    "SDL_",
                                    "TTF_",
                                    "WebRTC_DeleteFrameTransformerInstance",
                                    "WebRTC_GetActiveSpeaker",
                                    "WebRTC_IsLocalAudioTrackEnabled",
                                    "WebRTC_IsLocalVideoTrackEnabled",
                                    "WebRTC_IsNativeStreamCapturing",
                                    "WebRTC_IsScreenShareCapturing"};

class MeetingTest : public RoomWithBar {
protected:
    // Carries the step out, lets a moment pass and writes down what was called.
    void Step(const std::string& name, const std::function<void()>& step, int ticks = 2) {
        Calls().Clear();
        step();
        if (HasView()) Tick(ticks);
        record_ << name << '\n';
        for (const Call& call : Calls().OfThisThread()) Write(call);
    }
    // As Step, where the room hands the matter to its action thread.
    void StepWithAction(const std::string& name, const std::string& action,
                        const std::function<void()>& step) {
        Step(name, step);
        ASSERT_TRUE(Calls().WaitFor(action, 1)) << action;
        record_ << "    [action thread] " << Line(Fake().CallsOf(action).at(0)) << '\n';
    }

    static FrameCallback* Join(const std::string& id) {
        FrameCallback* const sink = Fake().OfferRemoteSource(id);
        Fake().callbacks.videoFrameTracksAdded(id);
        return sink;
    }
    static void Speak(const std::string& id) {
        Fake().Set([&](FakeResults& results) { results.activeSpeaker = id; });
        TurnedClock::AdvanceMs(1001);
    }
    static void SetCapturing(StreamType type, bool on) {
        Fake().Set([&](FakeResults& results) {
            if (type == StreamType::Screenshare) {
                results.screenShareCapturing = on;
            } else if (on) {
                results.nativeStreamsCapturing.insert(type);
            } else {
                results.nativeStreamsCapturing.erase(type);
            }
        });
    }
    [[nodiscard]] static Video::VideoFrame& Tile(const std::string& id) {
        for (Video::VideoFrame* tile : View().GetThumbnails().GetAllTiles()) {
            if (tile->GetStreamId() == id) return *tile;
        }
        throw std::runtime_error("No tile of " + id);
    }
    [[nodiscard]] static SDL_Point CentreOf(const SDL_Rect& rect) {
        return {rect.x + rect.w / 2, rect.y + rect.h / 2};
    }
    static void ClickTile(const std::string& id) { ClickAt(CentreOf(Tile(id).rect)); }
    static void ChooseOfTile(const std::string& id, const std::string& label) {
        Video::VideoFrame& tile = Tile(id);
        MoveTo(CentreOf(tile.rect));
        ClickAt(CentreOf(tile.GetMenuButton()->rect));
        UI::Menu& menu = tile.GetMenu();
        ASSERT_TRUE(menu.visible) << id;
        // It shows five rows.
        const bool scrolls = std::any_of(menu.GetItems().begin() + 5, menu.GetItems().end(),
                                         [&](const UI::Button* item) { return item->MatchesLabel(label); });
        if (scrolls) {
            MoveTo(CentreOf(menu.rect));
            SDLinterface_PushScrollWheelEvent(0, 0, -1000);
            Tick(2);
        }
        ClickItem(menu, label);
        // Off the wall, so that the menu goes.
        MoveTo({1200, 500});
    }
    static void ChooseLayout(const std::string& label) {
        Open(*View().GetToolbar().GetLayoutMenu());
        ClickItem(*View().GetToolbar().GetLayoutMenu(), label);
    }
    static void ChooseOption(const std::string& label) {
        Open(*View().GetToolbar().GetOptionsMenu());
        ClickItem(*View().GetToolbar().GetOptionsMenu(), label);
    }
    static void Key(bool down, const char* name) {
        if (down) {
            SDLinterface_PushKeyDownEvent(0, name);
        } else {
            SDLinterface_PushKeyUpEvent(0, name);
        }
    }

    [[nodiscard]] std::string Record() const { return record_.str(); }

private:
    void Write(const Call& call) {
        for (const char* start : kLeftOut) {
            if (call.name.rfind(start, 0) == 0) return;
        }
        // Both are told in every tick.
        if (call.name == "Host_SetCursor" && std::exchange(cursor_, call.arguments[0]) == call.arguments[0]) {
            return;
        }
        if (call.name == "AdaptiveVideoSourceManager_SetMainStream" &&
            std::exchange(mainStream_, call.arguments[0]) == call.arguments[0]) {
            return;
        }
        record_ << "    " << Line(call) << '\n';
    }
    // Addresses change from run to run.
    [[nodiscard]] static std::string Line(Call call) {
        for (std::string& argument : call.arguments) {
            if (argument.rfind("0x", 0) == 0) argument = "...";
        }
        if (call.name == "ProcessMonitor_Unsubscribe") call.arguments = {"..."};
        std::ostringstream line;
        line << call;
        return line.str();
    }

    std::ostringstream record_;
    std::string cursor_ = "0";
    std::string mainStream_;
};

constexpr const char* kExpected = R"list(
Enter as the room's host
    GraphQLClient_GetStoredToken()
    GraphQLClient_GetProfileId()
    GraphQLClient_GetEmail()
    GraphQLClient_GetDisplayName()
    Connections_InitConnection(null, null, session, __Host-jwt=token, me@example.com, profile-id, Me, true, true, true, null)
    ProcessMonitor_Subscribe(...)
    Configuration_GetPropertyBoolean(EnableVSync)
    Configuration_GetPropertyInt(SDRBrightnessBoost)
    Configuration_GetPropertyBoolean(DebugDisableVideoRenderScaling)
    Configuration_GetPropertyString(Device.PushToTalkKey, 256)
    Host_OnPushToTalkConfigured()
    Configuration_Subscribe(...)
    Connections_AddRoomStatusListener(...)
    WebRTC_GetLocalCameraTargetBitrate()
    Connections_SetDefaultOutboundBitrate(2000000)
    WebRTC_SetEnabledLocalAudioTrack(false, 0)
    Connections_SetParticipantJoinedCallback(set)
    GraphQLClient_CStringDealloc(...)
    GraphQLClient_CStringDealloc(...)
    GraphQLClient_CStringDealloc(...)
A tick of an empty room
The own camera comes
    Connections_GetLocalDisplayName(0)
    Connections_GetLocalUserStreamID(0)
    Connections_GetStreamType(me)
    WebRTC_GetFrameTransformerInstance()
    WebRTC_SetConnectionStatsCallback(set)
    WebRTC_GetLocalCameraTargetBitrate()
    Connections_GetLocalUserStreamID(0)
    AdaptiveVideoSourceManager_Create(me, 1, 240, 786432, true)
    MediaManager_SetLocalVideoFrameAdaptationCallback(set)
    Connections_GetLocalUserStreamID(0)
    Host_OnMainVideoChanged()
    Host_ReportHistoryState(false, false)
    AdaptiveVideoSourceManager_SetMainStream(me)
Anna joins
    Connections_GetStreamType(Anna)
    WebRTC_GetFrameTransformerInstance()
    Connections_IsPublisherFromExternalSource(Anna)
    WebRTC_SetEnabledRemoteAudioTrack(Anna, false)
    Connections_IsPublisherFromExternalSource(Anna)
    WebRTC_SetRemoteAudioTrackVolume(Anna, 1)
Ben joins
    Connections_GetStreamType(Ben)
    WebRTC_GetFrameTransformerInstance()
    Connections_IsPublisherFromExternalSource(Ben)
    WebRTC_SetEnabledRemoteAudioTrack(Ben, false)
    Connections_IsPublisherFromExternalSource(Ben)
    WebRTC_SetRemoteAudioTrackVolume(Ben, 1)
Carl joins
    Connections_GetStreamType(Carl)
    WebRTC_GetFrameTransformerInstance()
    Connections_IsPublisherFromExternalSource(Carl)
    WebRTC_SetEnabledRemoteAudioTrack(Carl, false)
    Connections_IsPublisherFromExternalSource(Carl)
    WebRTC_SetRemoteAudioTrackVolume(Carl, 1)
Pictures come
The speaker is switched on
    WebRTC_SetEnabledRemoteAudioTrack(Anna, true)
    WebRTC_SetEnabledRemoteAudioTrack(Ben, true)
    WebRTC_SetEnabledRemoteAudioTrack(Carl, true)
    Host_OnSpeakerToggled(true)
The microphone is switched on
    Connections_GetLocalUserStreamID(0)
    Connections_ConfigureStream(me, 0=true)
    WebRTC_SetEnabledLocalAudioTrack(true, 0)
    Host_OnMicrophoneChanged(true)
Anna speaks
    Host_OnMainVideoChanged()
    Host_ReportHistoryState(false, false)
    AdaptiveVideoSourceManager_SetMainStream(Anna)
Ben speaks
    Host_OnMainVideoChanged()
    Host_ReportHistoryState(false, false)
    AdaptiveVideoSourceManager_SetMainStream(Ben)
A click on Carl
    Host_SetCursor(1)
    Host_OnMainVideoChanged()
    Host_ReportHistoryState(false, false)
    AdaptiveVideoSourceManager_SetMainStream(Carl)
Anna speaks, and Carl stays
A second click on Carl
    Host_OnMainVideoChanged()
    Host_ReportHistoryState(false, false)
    AdaptiveVideoSourceManager_SetMainStream(me)
Anna goes on speaking
    Host_OnMainVideoChanged()
    Host_ReportHistoryState(false, false)
    AdaptiveVideoSourceManager_SetMainStream(Anna)
Anna is pinned
    Host_SetCursor(0)
Anna's sound goes off
    Host_SetCursor(1)
    WebRTC_SetEnabledRemoteAudioTrack(Anna, false)
    Host_SetCursor(0)
Anna's sound comes back
    Host_SetCursor(1)
    WebRTC_SetEnabledRemoteAudioTrack(Anna, true)
    Host_SetCursor(0)
Ben's picture goes off
    Host_SetCursor(1)
    WebRTC_SetEnabledRemoteVideoTrack(Ben, false)
    Host_SetCursor(0)
Ben's picture comes back
    Host_SetCursor(1)
    WebRTC_SetEnabledRemoteVideoTrack(Ben, true)
    Host_SetCursor(0)
Ben's sound is mixed
    Host_SetCursor(1)
    WebRTC_GetRemoteAudioTrackVolume(Ben)
    Host_OpenAudioMixer(Ben, Ben, 1, -1, -1)
    Host_SetCursor(0)
Carl is muted for all
    Host_SetCursor(1)
    Connections_MuteParticipant(Carl)
    Host_SetCursor(0)
A screen is to be shared
    [action thread] Host_StartScreenShare()
The screen is shared
    Connections_GetLocalDisplayName(1)
    Connections_GetLocalUserStreamID(1)
    Connections_GetStreamType(my-screen)
    WebRTC_GetFrameTransformerInstance()
    WebRTC_SetConnectionStatsCallback(set)
    Connections_GetLocalUserStreamID(1)
    Host_OnMainVideoChanged()
    Host_ReportHistoryState(false, false)
    AdaptiveVideoSourceManager_SetMainStream(my-screen)
The screen is to end
The screen has ended
    Host_OnMainVideoChanged()
    Host_ReportHistoryState(false, false)
    AdaptiveVideoSourceManager_SetMainStream(Anna)
A file is to be shared
    [action thread] Host_StartNativeStream(4)
The file is shared
    Connections_GetLocalDisplayName(4)
    Connections_GetLocalUserStreamID(4)
    Connections_GetStreamType(my-file)
    WebRTC_GetFrameTransformerInstance()
    WebRTC_SetConnectionStatsCallback(set)
    WebRTC_SetLocalStreamsLocalAudioVolume(1)
    Connections_GetLocalUserStreamID(4)
    Host_OnMainVideoChanged()
    Host_ReportHistoryState(false, false)
    AdaptiveVideoSourceManager_SetMainStream(my-file)
The file is to end
The file has ended
    Host_OnMainVideoChanged()
    Host_ReportHistoryState(false, false)
    AdaptiveVideoSourceManager_SetMainStream(Anna)
The microphone is muted
    WebRTC_SetEnabledLocalAudioTrack(false, 0)
    Host_OnMicrophoneChanged(false)
The key to talk goes down
    Connections_GetLocalUserStreamID(0)
    Connections_ConfigureStream(me, 0=true)
    WebRTC_SetEnabledLocalAudioTrack(true, 0)
It repeats
It goes up
    WebRTC_SetEnabledLocalAudioTrack(false, 0)
It becomes another one
The other one goes down
    Connections_GetLocalUserStreamID(0)
    Connections_ConfigureStream(me, 0=true)
    WebRTC_SetEnabledLocalAudioTrack(true, 0)
Somebody mutes this one for all
    WebRTC_SetEnabledLocalAudioTrack(false, 0)
The other one goes up
The camera goes off
    WebRTC_SetEnabledLocalVideoTrack(false, 0)
    Host_OnCameraToggled(false)
The camera comes back
    WebRTC_SetEnabledLocalVideoTrack(true, 0)
    Host_OnCameraToggled(true)
Anna's connection is lost
    Connections_GetLocalUserStreamID(0)
    Connections_GetLocalUserStreamID(0)
    Connections_RestartPeerConnection(Anna, true, false, true)
Anna's connection comes back
    Connections_GetLocalUserStreamID(0)
Anna says what she sends
    AdaptiveVideoSourceManager_OnDataChannelMessage(Anna, {"type":"video-metadata-message","message":{"sourceData":{"streamId":"Anna","frameRate":25,"sourceName":"Clip"}}})
Anna says nothing of sense
    AdaptiveVideoSourceManager_OnDataChannelMessage(Anna, {)
The wall goes
    Connections_ConfigureStream(Carl, 0=true 1=false 2=true)
    Connections_ConfigureStream(Ben, 0=true 1=false 2=true)
The wall comes
    Connections_ConfigureStream(Carl, 0=true 1=true 2=true)
    Connections_ConfigureStream(Ben, 0=true 1=true 2=true)
The wall is to be detached
    Host_DetachWall()
The wall has a window
    Configuration_GetPropertyBoolean(EnableVSync)
    Configuration_GetPropertyInt(SDRBrightnessBoost)
    WebRTC_SetConnectionStatsCallback(set)
    Connections_GetStreamType(Anna)
    WebRTC_GetFrameTransformerInstance()
    Connections_GetLocalUserStreamID(0)
    Connections_GetLocalUserStreamID(3)
    Connections_GetLocalUserStreamID(8)
    Connections_GetLocalUserStreamID(4)
    Connections_GetLocalUserStreamID(7)
    Connections_GetLocalUserStreamID(5)
    Connections_GetLocalUserStreamID(6)
    MediaManager_RegisterCallback(Anna, ...)
    Host_OnMainVideoChanged()
    Host_ReportHistoryState(false, false)
The wall becomes a grid
The wall is to come back
    Host_AttachWall()
The wall is back
    Connections_GetLocalUserStreamID(0)
    Connections_GetLocalUserStreamID(3)
    Connections_GetLocalUserStreamID(8)
    Connections_GetLocalUserStreamID(4)
    Connections_GetLocalUserStreamID(7)
    Connections_GetLocalUserStreamID(5)
    Connections_GetLocalUserStreamID(6)
    MediaManager_UnregisterCallback(Anna, ...)
    WebRTC_SetConnectionStatsCallback(set)
    Configuration_SetPropertyInt(detachedLayout, 2)
    Host_OnMainVideoChanged()
    Host_ReportHistoryState(false, false)
A still is saved
    Configuration_GetLocation()
    WebRTC_ExportStillImageFromVideoFrameBuffer(configuration-folder/exportedRemoteFrame, 64x48 type 1)
    [action thread] Host_OnStillExported(configuration-folder/exportedRemoteFrame)
White becomes brighter
    Configuration_SetPropertyInt(SDRBrightnessBoost, 300)
The window becomes small
The window becomes large
The controls become larger
The controls become smaller
The window is to fill the screen
    Host_SetFullscreen(true)
The window fills the screen
The side panel opens
    Host_ShowOptions(true)
The side panel has closed
The audio mixer opens
    Host_ShowAudioMixer(true)
The audio mixer has closed
    Host_ShowAudioMixer(false)
The drawing tools are to come
    Host_ShowDrawTool(true)
Devices have changed
    WebRTC_GetVideoCaptureIndex(null, null, null, null)
    MediaManager_StopLocalVideoSource(camera)
    MediaManager_IsLocalVideoSourceRunning(0)
    Connections_GetLocalUserStreamID(0)
    Connections_RenegotiateOutboundPeerConnection(false, true, me)
    MediaManager_IsLocalVideoSourceRunning(0)
    MediaManager_UnregisterCallback(camera, ...)
    WebRTC_MicIsNone()
    WebRTC_SpeakerIsNone()
    WebRTC_SetEnabledRemoteAudioTrack(Anna, true)
    WebRTC_SetEnabledRemoteAudioTrack(Ben, true)
    WebRTC_SetEnabledRemoteAudioTrack(Carl, true)
A program to stream begins
Its menu opens
It is to be streamed
    [action thread] Host_StartApplicationStream(0, 6, 4711)
It ends
Ben is to leave
    Host_SetCursor(1)
    Host_RemoveParticipant(Ben, Ben)
    Host_SetCursor(0)
Ben leaves
    Connections_IsPublisherFromExternalSource(Ben)
    AdaptiveVideoSourceManager_OnRemoteStreamRemoved(Ben)
Anna and Carl leave
    Connections_IsPublisherFromExternalSource(Anna)
    AdaptiveVideoSourceManager_OnRemoteStreamRemoved(Anna)
    Connections_IsPublisherFromExternalSource(Carl)
    AdaptiveVideoSourceManager_OnRemoteStreamRemoved(Carl)
    Host_OnMainVideoChanged()
    Host_ReportHistoryState(false, false)
    AdaptiveVideoSourceManager_SetMainStream(me)
The own user is to leave
    Host_LeaveRoom()
The room ends
    WebRTC_SetVideoSourceMetadataListener(empty)
    Connections_SetParticipantJoinedCallback(empty)
    Connections_CloseConnection()
    Connections_ClearRecordings()
    MediaManager_Close()
    WebRTC_StopAllLocalVideoCaptures()
    WebRTC_Terminate()
    MediaManager_SetLocalVideoFrameAdaptationCallback(empty)
    ProcessMonitor_Unsubscribe(...)
    Configuration_Unsubscribe(...)
    Connections_RemoveRoomStatusListener(...)
    Configuration_SetPropertyString(room.Id, )
    Configuration_SetPropertyString(room.Hash, )
    DeckLink_Shutdown()
    ProcessMonitor_StopMonitoring()
)list";

TEST_F(MeetingTest, TellsHostAndLibrariesWhatTheyHaveToKnowAndNoMore) {
    Fake().Set([](FakeResults& results) {
        results.configuration["Device.PushToTalkKey"] = std::string("Space");
        results.localUserStreamIds[StreamType::Screenshare] = "my-screen";
        results.localUserStreamIds[StreamType::File] = "my-file";
        results.localAudioEnabled = false;
        for (const char* name : {"Anna", "Ben", "Carl"}) results.publisherNames[name] = name;
    });
    SDLinterface_SetRoomWindow(&windowOfTheHost, kWindowSize.x, kWindowSize.y);

    Step("Enter as the room's host", [] {
        EXPECT_EQ(EnterRoom(nullptr, nullptr, "session", "Suite", false, true, false, nullptr, false), 1);
    });
    Step(
        "A tick of an empty room", [] {}, 1);
    std::map<std::string, FrameCallback*> sinks;
    Step("The own camera comes",
         [&] { sinks["camera"] = Fake().OfferLocalSource(StreamType::Camera, "camera"); });
    Step("Anna joins", [&] { sinks["Anna"] = Join("Anna"); });
    Step("Ben joins", [&] { sinks["Ben"] = Join("Ben"); });
    Step("Carl joins", [&] { sinks["Carl"] = Join("Carl"); });
    Step("Pictures come", [&] {
        for (const char* id : {"camera", "Anna", "Ben", "Carl"}) {
            Fake().Deliver(id, MakeFrame());
            ASSERT_TRUE(FlushSink(*sinks.at(id)));
        }
    });
    Step("The speaker is switched on", [] { Click(CentreButton::Speaker); });
    Step("The microphone is switched on", [] { Click(CentreButton::Microphone); });
    Step("Anna speaks", [] { Speak("Anna"); });
    Step("Ben speaks", [] { Speak("Ben"); });
    Step("A click on Carl", [] { ClickTile("Carl"); });
    Step("Anna speaks, and Carl stays", [] { Speak("Anna"); });
    Step("A second click on Carl", [] { ClickTile("Carl"); });
    Step("Anna goes on speaking", [] { Speak("Anna"); });
    Step("Anna is pinned", [] { ChooseOfTile("Anna", "Pin to left"); });
    Step("Anna's sound goes off", [] { ChooseOfTile("Anna", "Sound off"); });
    Step("Anna's sound comes back", [] { ChooseOfTile("Anna", "Sound off"); });
    Step("Ben's picture goes off", [] { ChooseOfTile("Ben", "Video off"); });
    Step("Ben's picture comes back", [] { ChooseOfTile("Ben", "Video off"); });
    Step("Ben's sound is mixed", [] { ChooseOfTile("Ben", "Mix sound"); });
    Step("Carl is muted for all", [] { ChooseOfTile("Carl", "Mute for all"); });
    StepWithAction("A screen is to be shared", "Host_StartScreenShare", [] { Click(RightButton::Screen); });
    Step("The screen is shared", [] {
        SetCapturing(StreamType::Screenshare, true);
        Fake().OfferLocalSource(StreamType::Screenshare, "screen");
    });
    Step("The screen is to end", [] { Click(RightButton::Screen); });
    Step("The screen has ended", [] {
        SetCapturing(StreamType::Screenshare, false);
        Fake().RemoveLocalSource("screen");
    });
    StepWithAction("A file is to be shared", "Host_StartNativeStream", [] { Click(RightButton::File); });
    Step("The file is shared", [] {
        SetCapturing(StreamType::File, true);
        Fake().OfferLocalSource(StreamType::File, "file");
    });
    Step("The file is to end", [] { Click(RightButton::File); });
    Step("The file has ended", [] {
        SetCapturing(StreamType::File, false);
        Fake().RemoveLocalSource("file");
    });
    Step("The microphone is muted", [] { Click(CentreButton::Microphone); });
    Step("The key to talk goes down", [] { Key(true, "Space"); });
    Step("It repeats", [] { Key(true, "Space"); });
    Step("It goes up", [] { Key(false, "Space"); });
    Step("It becomes another one", [] {
        Fake().FireConfigurationChanged("Device.PushToTalkKey", "LeftCtrl");
        Key(true, "Space");
    });
    Step("The other one goes down", [] { Key(true, "LeftCtrl"); });
    Step("Somebody mutes this one for all", [] { Fake().FireMutedRemotely(); });
    Step("The other one goes up", [] { Key(false, "LeftCtrl"); });
    Step("The camera goes off", [] { Click(CentreButton::Camera); });
    Step("The camera comes back", [] { Click(CentreButton::Camera); });
    Step("Anna's connection is lost", [] { Fake().callbacks.connectionStatusUpdate("Anna", true); });
    Step("Anna's connection comes back", [] { Fake().callbacks.connectionStatusUpdate("Anna", false); });
    Step("Anna says what she sends", [] {
        (void)Fake().DeliverMessage("Anna", R"({"type":"video-metadata-message","message":{"sourceData":)"
                                            R"({"streamId":"Anna","frameRate":25,"sourceName":"Clip"}}})");
    });
    Step("Anna says nothing of sense", [] { (void)Fake().DeliverMessage("Anna", "{"); });
    Step(
        "The wall goes", [] { ChooseLayout("Hide thumbnails"); }, 30);
    Step(
        "The wall comes", [] { ChooseLayout("Show thumbnails"); }, 30);
    Step("The wall is to be detached", [] { ChooseLayout("Detach thumbnails"); });
    Step("The wall has a window", [] {
        static int window = 0;
        EXPECT_EQ(SDLinterface_CreateDetachedView(&window, 640, 480), 1);
        SDLinterface_TickDetachedView();
    });
    Step("The wall becomes a grid", [] {
        SDLinterface_SetDetachedLayout(2);
        SDLinterface_TickDetachedView();
    });
    Step("The wall is to come back", [] { ChooseLayout("Attach thumbnails"); });
    Step("The wall is back", [] { SDLinterface_LeaveDetachedLayout(); });
    StepWithAction("A still is saved", "Host_OnStillExported", [] {
        ChooseOption("Save still image");
        Fake().Deliver("Anna", MakeFrame());
    });
    Step("White becomes brighter", [] { ChooseOption("Brighter"); });
    Step("The window becomes small", [] { SDLinterface_VideoRoomResize(640, 480); });
    Step("The window becomes large", [] { SDLinterface_VideoRoomResize(kWindowSize.x, kWindowSize.y); });
    Step("The controls become larger", [] { SDLinterface_UpdateWindowScale(0, 1.25F); });
    Step("The controls become smaller", [] { SDLinterface_UpdateWindowScale(0, 1.0F); });
    Step("The window is to fill the screen", [] { Click(RightButton::Fullscreen); });
    Step("The window fills the screen", [] { SDLinterface_VideoRoomSetFullscreenEnabled(true); });
    Step("The side panel opens", [] { Click(RightButton::Options); });
    Step(
        "The side panel has closed", [] { SDLinterface_VideoRoomUntoggleOptionsButton(false); }, 15);
    Step("The audio mixer opens", [] { Click(CentreButton::AudioMixer); });
    Step("The audio mixer has closed", [] { SDLInterface_VideoRoomUntoggleAudioMixer(); });
    Step("The drawing tools are to come", [] { Click(LeftButton::DrawTool); });
    Step("Devices have changed", [] { EXPECT_TRUE(SDLinterface_VideoRoomAudioDeviceUpdate(true)); });
    Step("A program to stream begins", [] { Fake().FireProcesses({{HostApplicationDaVinciResolve, 4711}}); });
    // Behind the other buttons of its group; two rows of 48 pixels stand on the bar.
    const SDL_Point place = PlaceOf(static_cast<int>(RightButton::kCount));
    Step(
        "Its menu opens", [&] { ClickBar(place); }, 10);
    StepWithAction("It is to be streamed", "Host_StartApplicationStream", [&] {
        ClickAt({place.x, Bar().rect.y - 72});
    });
    Step("It ends", [] { Fake().FireProcesses({}); });
    Step("Ben is to leave", [] { ChooseOfTile("Ben", "Remove from room"); });
    Step("Ben leaves", [] { Fake().RemoveRemoteSource("Ben"); });
    Step("Anna and Carl leave", [] {
        Fake().RemoveRemoteSource("Anna");
        Fake().RemoveRemoteSource("Carl");
    });
    Step("The own user is to leave", [] { ChooseOption("Leave room"); });
    Step("The room ends", [] { SDLinterface_GlobalQuit(); });

    // Without the line break that the list begins with.
    EXPECT_EQ(Record(), kExpected + 1);
}

}  // namespace
}  // namespace Corvanta::Testing
