#include "tests/interface/RoomTest.h"

#include <atomic>
#include <utility>

#include "interface/TickState.h"
#include "ui/Clock.h"

namespace Corvanta::Testing {
namespace {

std::atomic<int64_t> nowNs{0};
std::atomic<int64_t> passNs{0};

int64_t Read() {
    Calls().Record("Clock");
    return nowNs.fetch_add(passNs.load());
}

}  // namespace

TurnedClock::TurnedClock() {
    nowNs.store(1'000'000'000'000);
    passNs.store(0);
    UI::SetClock(&Read);
}

TurnedClock::~TurnedClock() {
    UI::SetClock(nullptr);
}

void TurnedClock::AdvanceUs(int64_t microseconds) {
    nowNs.fetch_add(microseconds * 1000);
}

void TurnedClock::PassBetweenReadingsMs(int64_t milliseconds) {
    passNs.store(milliseconds * 1'000'000);
}

HostCallbacks Host::Callbacks() {
    HostCallbacks callbacks{};
    callbacks.OnMicrophoneChanged = [](bool on) { Calls().Record("Host_OnMicrophoneChanged", on); };
    callbacks.OnPushToTalkConfigured = [] { Calls().Record("Host_OnPushToTalkConfigured"); };
    callbacks.OnCameraToggled = [](bool on) { Calls().Record("Host_OnCameraToggled", on); };
    callbacks.OnSpeakerToggled = [](bool on) { Calls().Record("Host_OnSpeakerToggled", on); };
    callbacks.ShowAudioMixer = [](bool open) { Calls().Record("Host_ShowAudioMixer", open); };
    callbacks.StartScreenShare = [] { Calls().Record("Host_StartScreenShare"); };
    callbacks.ShowOptions = [](bool open) { Calls().Record("Host_ShowOptions", open); };
    callbacks.SetFullscreen = [](bool on) { Calls().Record("Host_SetFullscreen", on); };
    callbacks.ShowDrawTool = [](bool on) { Calls().Record("Host_ShowDrawTool", on); };
    callbacks.RequestRecording = [](bool start) { Calls().Record("Host_RequestRecording", start); };
    callbacks.DetachWall = [] { Calls().Record("Host_DetachWall"); };
    callbacks.AttachWall = [] { Calls().Record("Host_AttachWall"); };
    callbacks.OpenAudioMixer = [](const char* id, const char* name, float volume, int32_t reserved0,
                                  int32_t reserved1) {
        Calls().Record("Host_OpenAudioMixer", id, name, volume, reserved0, reserved1);
    };
    callbacks.LeaveRoom = [] { Calls().Record("Host_LeaveRoom"); };
    callbacks.HideStreamInfo = [](const char* id) { Calls().Record("Host_HideStreamInfo", id); };
    callbacks.OnStillExported = [](const char* path) { Calls().Record("Host_OnStillExported", path); };
    callbacks.SetCursor = [](int32_t cursor) {
        Calls().Record("Host_SetCursor", cursor);
        if (onCursor) std::exchange(onCursor, {})();
    };
    callbacks.ReportHistoryState = [](bool canUndo, bool canRedo) {
        Calls().Record("Host_ReportHistoryState", canUndo, canRedo);
    };
    callbacks.StartNativeStream = [](int32_t type) { Calls().Record("Host_StartNativeStream", type); };
    callbacks.StartApplicationStream = [](int32_t application, int32_t type, int32_t processId) {
        Calls().Record("Host_StartApplicationStream", application, type, processId);
    };
    callbacks.StartMediaSiloStream = [] { Calls().Record("Host_StartMediaSiloStream"); };
    callbacks.RemoveParticipant = [](const char* id, const char* name) {
        Calls().Record("Host_RemoveParticipant", id, name);
    };
    callbacks.ShowStreamInfo = [](const char* id, float right, float bottom) {
        Calls().Record("Host_ShowStreamInfo", id, right, bottom);
    };
    callbacks.OnMainVideoChanged = [] {
        Calls().Record("Host_OnMainVideoChanged");
        if (onMainVideo) std::exchange(onMainVideo, {})();
    };
    return callbacks;
}

LibraryTest::LibraryTest() {
    Sdl().Reset();
    Sdl().ReplaceForeignWindows(true);
    SDL_setenv("SDL_VIDEODRIVER", "dummy", 1);
    SDL_setenv("SDL_RENDER_DRIVER", "software", 1);
    Interface::ResetTickTimers();
    SetWindow();
    const HostCallbacks callbacks = Host::Callbacks();
    SDLinterface_SetHostCallbacks(&callbacks);
    Calls().Clear();
}

LibraryTest::~LibraryTest() {
    Calls().Reset();
    Host::onCursor = {};
    Host::onMainVideo = {};
    SDLinterface_GlobalQuit();
    SDLinterface_SetNativeStreamPlaybackStatusCallback(nullptr);
    SDLinterface_SetRoomWindow(nullptr, 0, 0);
    SDLinterface_SetHostCallbacks(nullptr);
    SDL_SetVideoRoomConection(0);
    SDLinterface_VideoRoomSetMicEnabled(false);
    SDLinterface_VideoRoomSetVideoEnabled(false);
    Interface::gRecordingStatusCallback.Set(nullptr);
    Interface::gExtraViews.clear();
    SDL_LogSetOutputFunction(nullptr, nullptr);
    Sdl().Reset();
}

void LibraryTest::Start() {
    SDLinterface_GlobalInit();
    Calls().Clear();
    Fake().ClearLogs();
}

int LibraryTest::Enter() {
    return EnterRoom(nullptr, nullptr, "session", "room", false, false, false, nullptr, false);
}

void LibraryTest::FailToConnect() {
    Fake().Set([](FakeResults& results) { results.connectionIndex = -1; });
}

RoomTest::RoomTest() {
    EXPECT_EQ(Enter(), 1);
    Calls().Clear();
    Fake().ClearLogs();
}

}  // namespace Corvanta::Testing
