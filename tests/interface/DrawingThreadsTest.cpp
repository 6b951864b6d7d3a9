// Everybody draws at once: messages on the threads of the data channels, arrivals and departures, and a hand
// that draws and undoes in the tick. What matters besides the assertions is what the sanitizers say.
#include <array>
#include <atomic>
#include <barrier>
#include <functional>
#include <thread>

#include "tests/interface/DrawingRoom.h"
#include "tests/video/Eventually.h"
#include "ui/Clock.h"

namespace Corvanta::Testing {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr int kRounds = 150;
constexpr int kTicks = 60;
constexpr std::array<const char*, 3> kStreams = {"me", "a", "b"};
constexpr size_t kChannels = 4;

class DrawingThreadsTest : public DrawingRoom {
protected:
    DrawingThreadsTest() {
        // Long runs would fill the list.
        Calls().SetRecording(false);
        EnterWithCamera();
        UI::SetClock(nullptr);
        Fake().OfferRemoteSource("a");
        const DrawToolState state = ToolState(DrawToolPencil);
        SDLinterface_SetDrawToolState(&state);
    }

    // What one sender's channel hands in: marks, lists that take the place of others, and rubbish.
    static void PassOfMessages(const std::string& sender, int round) {
        const std::string stream = kStreams[static_cast<size_t>(round) % kStreams.size()];
        const std::string id = sender + std::to_string(round);
        const SDL_Rect place{round % 100 * 10, round % 50 * 10, 100, 100};
        EXPECT_TRUE(Fake()
                        .DeliverMessage(sender, MarkMessage(stream,
                                                            {MarkJson(id, place, kMarkColor),
                                                             MarkJson(id + "'", place, kMarkColor)},
                                                            round % 10 == 0))
                        .empty());
        if (round % 25 == 7) {
            EXPECT_TRUE(Fake().DeliverMessage(sender, MarkMessage(stream, {})).empty());
        }
        if (round % 25 == 9) {
            EXPECT_LE(Fake().DeliverMessage(sender, "{").size(), 1U);
        }
    }
    static void PassOfArrivals(int round) {
        Fake().callbacks.participantJoined();
        Fake().OfferRemoteSource("b");
        Fake().Deliver("b", MakeFrame({.width = 32 + 16 * (round % 2), .height = 32}));
        SDLinterface_VideoRoomUpdateActiveSpeaker(kStreams[static_cast<size_t>(round) % kStreams.size()]);
        if (round % 3 != 0) Fake().RemoveRemoteSource("b");
    }

    // Runs the host's part while four channels and the signalling thread are at work.
    template <typename HostsPart>
    static void WithEverybody(HostsPart&& hostsPart) {
        std::barrier start(static_cast<std::ptrdiff_t>(kChannels + 2));
        std::vector<std::thread> threads;
        for (size_t channel = 0; channel < kChannels; ++channel) {
            threads.emplace_back([&start, channel] {
                const std::array<std::string, kChannels> senders = {"a", "b", "c", "a"};
                start.arrive_and_wait();
                for (int round = 0; round < kRounds; ++round) PassOfMessages(senders[channel], round);
            });
        }
        threads.emplace_back([&start] {
            start.arrive_and_wait();
            for (int round = 0; round < kRounds / 3; ++round) PassOfArrivals(round);
        });
        start.arrive_and_wait();
        hostsPart();
        for (std::thread& thread : threads) thread.join();
    }

    // Below the strip, whatever is the main video at that moment: only a tick may ask for its place.
    static void MoveOverRoom(double x, double y) {
        SDLinterface_PushMouseMoveEvent(0, static_cast<float>(x), static_cast<float>(0.3 + 0.6 * y));
        Tick();
    }
    static void DrawAndCommand(int ticks) {
        for (int tick = 0; tick < ticks; ++tick) {
            const DrawToolState state = ToolState(static_cast<uint32_t>(tick) / 4 % 8);
            if (tick % 4 == 0) SDLinterface_SetDrawToolState(&state);
            const double place = 0.2 + 0.01 * (tick % 50);
            MoveOverRoom(place, place);
            Press();
            MoveOverRoom(place + 0.05, place + 0.1);
            MoveOverRoom(place + 0.1, place + 0.05);
            Release();
            if (tick % 3 == 0) SDLinterface_UndoCurrentCanvas();
            if (tick % 5 == 0) SDLinterface_RedoCurrentCanvas();
            if (tick % 20 == 19) SDLinterface_ClearCurrentCanvas();
            SDLinterface_PushKeyDownEvent(0, "a");
            SDLinterface_PushKeyUpEvent(0, "a");
            if (tick % 8 == 0) SDLinterface_VideoRoomResize(tick % 16 == 0 ? 640 : kDrawingWindow.x, 600);
            static int window = 0;
            if (tick % 16 == 6) (void)SDLinterface_CreateDetachedView(&window, 320, 240);
            SDLinterface_TickDetachedView();
            if (tick % 16 == 14) SDLinterface_LeaveDetachedLayout();
            (void)SDLinterface_IsTextOpen();
        }
    }
    static void EndWithNothingLeft() {
        SDLinterface_GlobalQuit();
        EXPECT_FALSE(HasView());
        EXPECT_EQ(Sdl().LiveTextures(), 0U);
        EXPECT_EQ(Sdl().LiveRenderers(), 0U);
        EXPECT_THAT(Fake().LogsOf(4), Not(Contains(HasSubstr("delete canvas"))));
    }
};

TEST_F(DrawingThreadsTest, GoesOnWithEverybodyDrawing) {
    WithEverybody([] { DrawAndCommand(kTicks); });
    EXPECT_TRUE(HasView());
    EndWithNothingLeft();
}

TEST_F(DrawingThreadsTest, EndsWithEverybodyDrawing) {
    WithEverybody([] {
        DrawAndCommand(8);
        SDLinterface_GlobalQuit();
    });
    EndWithNothingLeft();
}

// The host quits from inside a gesture.
TEST_F(DrawingThreadsTest, EndsFromInsideAReportWithEverybodyDrawing) {
    WithEverybody([] {
        DrawAndCommand(8);
        Calls().OnCall("Host_ReportHistoryState", [](const Call&) { SDLinterface_VideoRoomQuit(); });
        SDLinterface_LeaveDetachedLayout();
        const DrawToolState state = ToolState(DrawToolRectangle);
        SDLinterface_SetDrawToolState(&state);
        EXPECT_TRUE(Eventually([] {
            if (HasView()) DrawSomething();
            return !HasView();
        }));
        Calls().OnCall("Host_ReportHistoryState", {});
    });
    EndWithNothingLeft();
}

}  // namespace
}  // namespace Corvanta::Testing
