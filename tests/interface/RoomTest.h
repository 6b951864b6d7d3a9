// The library as a host sees it, over the fake platform: windows of SDL's own without a display, a clock that
// the test turns, and a host that writes down what it is told.
#pragma once

#include <SDL.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "ui/RoomActive.h"

namespace Corvanta::Testing {

using Names = std::vector<std::string>;

// The clock of the library stands until a test turns it. Each reading is written down as "Clock".
class TurnedClock final {
public:
    TurnedClock();
    ~TurnedClock();
    TurnedClock(const TurnedClock&) = delete;
    TurnedClock& operator=(const TurnedClock&) = delete;

    static void AdvanceUs(int64_t microseconds);
    static void AdvanceMs(int64_t milliseconds) { AdvanceUs(milliseconds * 1000); }
    // How much later each further reading is than the one before.
    static void PassBetweenReadingsMs(int64_t milliseconds);
};

// A host whose functions, but for the reserved ones, are written into Calls() as "Host_SetCursor" and so on.
struct Host {
    static HostCallbacks Callbacks();
    // Run once, by the next call.
    static inline std::function<void()> onCursor;
    static inline std::function<void()> onMainVideo;
};

// A loaded library that was not started. Leaves it so.
class LibraryTest : public FakePlatformTest {
protected:
    LibraryTest();
    ~LibraryTest() override;

    // Steps that later tests do not want to see among the calls.
    static void Start();
    // EnterRoom with nothing special on a window that can be opened.
    static int Enter();
    static void SetWindow() { SDLinterface_SetRoomWindow(&windowOfTheHost, 640, 360); }
    static void FailToConnect();

    [[nodiscard]] static bool HasView() { return Interface::CurrentView() != nullptr; }
    // Writes the room's state at the moment of that call into the list that is returned by At.
    static void Watch(const std::string& name, std::function<void()> look) {
        Fake().OnCall(name, [look = std::move(look)](const Call&) { look(); });
    }

    static inline int windowOfTheHost = 0;
    const TurnedClock clock_;
};

// A started library.
class StartedTest : public LibraryTest {
protected:
    StartedTest() { Start(); }
};

// A room that was entered, with index 1; the list of calls is empty.
class RoomTest : public StartedTest {
protected:
    RoomTest();
};

}  // namespace Corvanta::Testing
