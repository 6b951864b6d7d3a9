#include "tests/interface/RoomTest.h"

#include <atomic>
#include <utility>

#include "interface/TickState.h"
#include "tests/fake_platform/RecordingHost.h"
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
    HostCallbacks callbacks = RecordingHost();
    callbacks.SetCursor = [](int32_t cursor) {
        Calls().Record("Host_SetCursor", cursor);
        if (onCursor) std::exchange(onCursor, {})();
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
