// The tick: its arithmetic, the poll for the active speaker, and what is asked for from inside it.
#include <stdexcept>

#include "tests/fake_platform/TestFrames.h"
#include "tests/interface/RoomTest.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class TickTest : public StartedTest {
protected:
    static size_t Polls() { return Calls().Count("WebRTC_GetActiveSpeaker"); }
    static size_t Drawings() { return Calls().Count("SDL_RenderPresent"); }
    static void TickAfterMs(int64_t milliseconds) {
        TurnedClock::AdvanceMs(milliseconds);
        SDL_VideoRoomCheckInputAndRender();
    }
};

class RoomTickTest : public RoomTest {
protected:
    static size_t Drawings() { return Calls().Count("SDL_RenderPresent"); }
    static void TickForMs(int64_t milliseconds) {
        for (int64_t time = 0; time < milliseconds; time += 50) {
            TurnedClock::AdvanceMs(50);
            SDL_WPFVideoRoomCheckInputAndRender();
        }
    }
    // Numbers of the reports that were filed, in their order.
    [[nodiscard]] static Names Reports() {
        Names numbers;
        for (const Call& call : Fake().CallsOf("Diagnostics_Report")) numbers.push_back(call.arguments.at(0));
        return numbers;
    }
    // Makes the next drawing tell the host of a new main video.
    static void ChangeMainVideo() {
        Fake().OfferRemoteSource("a");
        SDLinterface_VideoRoomUpdateActiveSpeaker("a");
    }
};

TEST_F(TickTest, PollsAtTheFirstTickPastOneSecond) {
    TickAfterMs(1000);
    EXPECT_EQ(Polls(), 0U);
    TickAfterMs(1);
    EXPECT_EQ(Polls(), 1U);
}

TEST_F(TickTest, StartsTheSecondAnewAtEachPoll) {
    TickAfterMs(2500);
    EXPECT_EQ(Polls(), 1U);
    TickAfterMs(1000);
    EXPECT_EQ(Polls(), 1U);
    TickAfterMs(1);
    EXPECT_EQ(Polls(), 2U);
}

TEST_F(TickTest, LosesThePartOfAMillisecondOfEachTick) {
    for (int i = 0; i < 1000; ++i) {
        TurnedClock::AdvanceUs(1999);
        SDL_VideoRoomCheckInputAndRender();
    }
    EXPECT_EQ(Polls(), 0U);
    TurnedClock::AdvanceUs(1000);
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Polls(), 1U);
}

TEST_F(TickTest, ReadsTheClockTwiceAndCountsFromTheSecondReading) {
    TurnedClock::PassBetweenReadingsMs(300);
    Calls().Clear();
    TickAfterMs(600);
    EXPECT_EQ(Calls().Count("Clock"), 2U);
    // 600 + 400; from the first reading on it would be 1300.
    TickAfterMs(100);
    EXPECT_EQ(Polls(), 0U);
    TickAfterMs(0);
    EXPECT_EQ(Polls(), 1U);
}

TEST_F(TickTest, TakesAClockThatGoesBackWithoutHarm) {
    TickAfterMs(900);
    TickAfterMs(-500);
    TickAfterMs(600);
    EXPECT_EQ(Polls(), 0U);
    TickAfterMs(1);
    EXPECT_EQ(Polls(), 1U);
}

TEST_F(TickTest, AsksForTheSpeakerWithAnEmptyText) {
    Fake().Set([](FakeResults& results) { results.activeSpeaker = "a"; });
    TickAfterMs(1001);
    TickAfterMs(1001);
    ASSERT_EQ(Polls(), 2U);
    EXPECT_THAT(Fake().CallsOf("WebRTC_GetActiveSpeaker")[1].arguments, ElementsAre(""));
}

TEST_F(TickTest, PollsAndDrawsNothingWithoutAView) {
    Fake().Set([](FakeResults& results) { results.activeSpeaker = "a"; });
    TickAfterMs(1001);
    EXPECT_EQ(Polls(), 1U);
    EXPECT_EQ(Drawings(), 0U);
}

TEST_F(TickTest, NeverEndsARoomByItself) {
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("SDL_Quit"), 0U);
}

TEST_F(TickTest, EndsAgainAtEachTickOfTheHostsLoopWithoutARoom) {
    SDL_WPFVideoRoomCheckInputAndRender();
    SDL_WPFVideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("SDL_Quit"), 2U);
    EXPECT_EQ(Calls().Count("Clock"), 0U);
}

TEST_F(RoomTickTest, DrawsOnceATick) {
    SDL_VideoRoomCheckInputAndRender();
    SDL_WPFVideoRoomCheckInputAndRender();
    EXPECT_EQ(Drawings(), 2U);
    EXPECT_EQ(Calls().Count("SDL_Quit"), 0U);
}

TEST_F(RoomTickTest, MakesTheSpeakerTheMainVideo) {
    Fake().OfferRemoteSource("a");
    Fake().Set([](FakeResults& results) { results.activeSpeaker = "a"; });
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("Host_OnMainVideoChanged"), 0U);
    TurnedClock::AdvanceMs(1001);
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("Host_OnMainVideoChanged"), 1U);
}

TEST_F(RoomTickTest, KeepsTheSpeakerWhenThePollHasNoAnswer) {
    ChangeMainVideo();
    SDL_VideoRoomCheckInputAndRender();
    TurnedClock::AdvanceMs(1001);
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("WebRTC_GetActiveSpeaker"), 1U);
    EXPECT_EQ(Calls().Count("Host_OnMainVideoChanged"), 1U);
}

TEST_F(RoomTickTest, ReportsNothingWhileButtonsAndTracksAgree) {
    TickForMs(5000);
    EXPECT_THAT(Reports(), IsEmpty());
    SDLinterface_VideoRoomSetMicEnabled(true);
    SDLinterface_VideoRoomSetVideoEnabled(false);
    TickForMs(5000);
    EXPECT_THAT(Reports(), IsEmpty());
}

TEST_F(RoomTickTest, ReportsAMicrophoneOutOfStepOnceASecond) {
    Fake().Set([](FakeResults& results) { results.localAudioEnabled = true; });
    TickForMs(1000);
    EXPECT_THAT(Reports(), IsEmpty());
    TickForMs(100);
    EXPECT_THAT(Reports(), ElementsAre("700"));
    TickForMs(2100);
    EXPECT_THAT(Reports(), ElementsAre("700", "700", "700"));
    Fake().Set([](FakeResults& results) { results.localAudioEnabled = false; });
    TickForMs(3000);
    EXPECT_THAT(Reports(), SizeIs(3));
}

TEST_F(RoomTickTest, ReportsACameraOutOfStepOnceASecond) {
    Fake().Set([](FakeResults& results) { results.localVideoEnabled = false; });
    TickForMs(1000);
    EXPECT_THAT(Reports(), IsEmpty());
    TickForMs(100);
    EXPECT_THAT(Reports(), ElementsAre("701"));
    TickForMs(2100);
    EXPECT_THAT(Reports(), ElementsAre("701", "701", "701"));
    Fake().Set([](FakeResults& results) { results.localVideoEnabled = true; });
    TickForMs(3000);
    EXPECT_THAT(Reports(), SizeIs(3));
}

TEST_F(RoomTickTest, ReportsBothThatAreOutOfStep) {
    Fake().Set([](FakeResults& results) {
        results.localAudioEnabled = true;
        results.localVideoEnabled = false;
    });
    TickForMs(1100);
    EXPECT_THAT(Reports(), ElementsAre("700", "701"));
}

TEST_F(TickTest, ReportsNothingWithoutARoom) {
    Fake().Set([](FakeResults& results) { results.localVideoEnabled = false; });
    TickAfterMs(1001);
    TickAfterMs(1001);
    EXPECT_EQ(Calls().Count("Diagnostics_Report"), 0U);
}

TEST_F(RoomTickTest, PollsBeforeItDraws) {
    TurnedClock::AdvanceMs(1001);
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().NamesAmong({"WebRTC_GetActiveSpeaker", "SDL_RenderClear", "SDL_RenderPresent"}),
              (Names{"WebRTC_GetActiveSpeaker", "SDL_RenderClear", "SDL_RenderPresent"}));
}

TEST_F(RoomTickTest, EndsARoomThatStoppedBeforeTheTickOfTheHostsLoop) {
    roomActive.store(false);
    SDL_WPFVideoRoomCheckInputAndRender();
    EXPECT_EQ(Drawings(), 0U);
    EXPECT_EQ(Calls().Count("SDL_Quit"), 1U);
    EXPECT_FALSE(HasView());
}

TEST_F(RoomTickTest, EndsARoomThatStoppedDuringTheTickOfTheHostsLoop) {
    Host::onCursor = [] { roomActive.store(false); };
    SDL_WPFVideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("SDL_Quit"), 1U);
    EXPECT_FALSE(HasView());
}

TEST_F(RoomTickTest, LeavesARoomThatStoppedToTheHostOutsideOfItsLoop) {
    roomActive.store(false);
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Drawings(), 0U);
    EXPECT_EQ(Calls().Count("SDL_Quit"), 0U);
    EXPECT_TRUE(HasView());
}

TEST_F(RoomTickTest, EndsAfterTheTickInWhichTheHostAskedForIt) {
    size_t endedInside = 99;
    Host::onCursor = [&] {
        SDLinterface_GlobalQuit();
        endedInside = Calls().Count("Connections_CloseConnection");
        EXPECT_TRUE(HasView());
        EXPECT_TRUE(roomActive.load());
    };
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(endedInside, 0U);
    EXPECT_EQ(Calls().NamesAmong({"Host_SetCursor", "SDL_RenderPresent", "Connections_CloseConnection",
                                  "SDL_DestroyRenderer", "SDL_Quit"}),
              (Names{"Host_SetCursor", "SDL_RenderPresent", "Connections_CloseConnection",
                     "SDL_DestroyRenderer", "SDL_Quit"}));
    EXPECT_FALSE(HasView());
}

TEST_F(RoomTickTest, EndsAfterTheDrawingInWhichTheHostAskedForIt) {
    ChangeMainVideo();
    Host::onMainVideo = [] { SDLinterface_VideoRoomQuit(); };
    SDL_WPFVideoRoomCheckInputAndRender();
    EXPECT_FALSE(HasView());
    EXPECT_EQ(Calls().NamesAmong({"SDL_RenderPresent", "SDL_DestroyRenderer"}),
              (Names{"SDL_RenderPresent", "SDL_DestroyRenderer"}));
}

TEST_F(RoomTickTest, EndsAfterTheResizeInWhichTheHostAskedForIt) {
    ChangeMainVideo();
    Host::onMainVideo = [] { SDLinterface_GlobalQuit(); };
    SDLinterface_VideoRoomResize(320, 200);
    EXPECT_FALSE(HasView());
    EXPECT_EQ(Calls().NamesAmong({"SDL_RenderPresent", "SDL_DestroyRenderer"}),
              (Names{"SDL_RenderPresent", "SDL_DestroyRenderer"}));
}

TEST_F(RoomTickTest, EndsAfterTheChangeOfScaleInWhichTheHostAskedForIt) {
    ChangeMainVideo();
    Host::onMainVideo = [] { SDLinterface_GlobalQuit(); };
    SDLinterface_UpdateWindowScale(0, 2.0F);
    EXPECT_FALSE(HasView());
}

TEST_F(RoomTickTest, TakesATickInsideATickWithoutHarm) {
    Host::onCursor = [] {
        SDLinterface_GlobalQuit();
        SDL_VideoRoomCheckInputAndRender();
        EXPECT_TRUE(HasView());
    };
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_FALSE(HasView());
    EXPECT_EQ(Calls().Count("SDL_Quit"), 1U);
}

TEST_F(RoomTickTest, EndsOutsideATickAgainAfterAHostsFunctionThrew) {
    Host::onCursor = [] { throw std::runtime_error("the host's own"); };
    EXPECT_THROW(SDL_VideoRoomCheckInputAndRender(), std::runtime_error);
    SDLinterface_GlobalQuit();
    EXPECT_FALSE(HasView());
}

TEST_F(RoomTickTest, OwnsTheViewWhileItTicks) {
    const std::weak_ptr<Room::VideoRoomView> view = Interface::CurrentView();
    bool goneInside = true;
    Host::onCursor = [&] {
        Interface::ReplaceCurrentView(nullptr);
        goneInside = view.expired();
    };
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_FALSE(goneInside);
    EXPECT_TRUE(view.expired());
}

TEST_F(RoomTickTest, PeeksAtNoMessagesWhereThreadsHaveNone) {
    EXPECT_EQ(SDLinterface_WindowsFlushEvents(), 0);
}

}  // namespace
}  // namespace Corvanta::Testing
