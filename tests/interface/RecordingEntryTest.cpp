// The way into a recording, and what its playback reports.
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <thread>

#include "drawing/DrawingCanvas.h"
#include "drawing/DrawingCanvasManager.h"
#include "drawing/Rectangle.h"
#include "tests/fake_platform/TestFrames.h"
#include "tests/interface/RoomTest.h"

namespace Corvanta::Testing {
namespace {

using Drawing::DrawingCanvasManager;
using Drawing::DrawingSource;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class RecordingEntryTest : public LibraryTest {
protected:
    ~RecordingEntryTest() override { statuses.clear(); }

    static int InitView() { return SDLinterface_RecordingViewInit(&windowOfTheHost, 640, 360, nullptr); }
    static int Connect(const char* title = "title", double durationMs = 1000.0) {
        return SDLinterface_ConnectToRecording(nullptr, nullptr, title, durationMs, &OnStatus);
    }
    static void OnStatus(int status) { statuses.push_back(status); }
    // A mark of a participant on that stream.
    static std::shared_ptr<DrawingSource> Mark(const std::string& streamId) {
        const auto source = DrawingCanvasManager::Instance()->GetOrCreateSource(streamId);
        source->Add("b", std::make_shared<Drawing::Rectangle>());
        return source;
    }

    static inline std::vector<int> statuses;
};

TEST_F(RecordingEntryTest, StartsTheLibraryAndThenItsView) {
    EXPECT_EQ(InitView(), 1);
    const Names steps = {"SDL_Init", "MediaManager_Init", "WebRTC_SetVideoSourceMetadataListener",
                         "SDL_CreateWindowFrom"};
    EXPECT_EQ(Calls().NamesAmong(steps), steps);
    EXPECT_TRUE(HasView());
    EXPECT_NE(Interface::GetRecordingsView(), nullptr);
    EXPECT_TRUE(roomActive.load());
    EXPECT_EQ(Interface::CurrentView()->GetWindowId(), 0);
    EXPECT_EQ(Interface::CurrentView()->GetWidth(), 640);
}

TEST_F(RecordingEntryTest, ShowsTheViewToNobodyBeforeItIsReady) {
    bool currentAtWindow = true;
    Watch("SDL_CreateWindowFrom", [&] { currentAtWindow = HasView(); });
    InitView();
    EXPECT_FALSE(currentAtWindow);
}

TEST_F(RecordingEntryTest, MakesAViewThatFailedCurrentAllTheSame) {
    EXPECT_EQ(SDLinterface_RecordingViewInit(nullptr, 640, 360, nullptr), -1);
    EXPECT_NE(Interface::GetRecordingsView(), nullptr);
    EXPECT_EQ(Interface::CurrentView()->GetWidth(), 640);
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 0U);
}

TEST_F(RecordingEntryTest, TakesThePlaceOfALiveRoomOnTheSameWindow) {
    Start();
    ASSERT_EQ(Enter(), 1);
    const std::weak_ptr<Room::VideoRoomView> room = Interface::CurrentView();
    Calls().Clear();
    EXPECT_EQ(InitView(), 1);
    EXPECT_TRUE(room.expired());
    EXPECT_TRUE(roomActive.load());
    EXPECT_EQ(Sdl().LiveRenderers(), 1U);
    EXPECT_EQ(Calls().NamesAmong({"SDL_DestroyWindow", "SDL_CreateWindowFrom"}),
              (Names{"SDL_DestroyWindow", "SDL_CreateWindowFrom"}));
}

TEST_F(RecordingEntryTest, KeepsNoAudioDevice) {
    SDL_setenv("SDL_AUDIODRIVER", "dummy", 1);
    ASSERT_EQ(SDL_InitSubSystem(SDL_INIT_AUDIO), 0);
    InitView();
    EXPECT_EQ(SDL_WasInit(SDL_INIT_AUDIO), 0U);
}

TEST_F(RecordingEntryTest, RefusesToConnectWithoutAView) {
    Start();
    EXPECT_EQ(Connect(), -1);
    EXPECT_EQ(Calls().Count("Connections_InitRecording"), 0U);
    EXPECT_EQ(SDL_GetCurrentConnectionIndex(), 0);
    EXPECT_THAT(Fake().Logs(), IsEmpty());
}

TEST_F(RecordingEntryTest, RefusesToConnectAfterTheRoomStopped) {
    InitView();
    roomActive.store(false);
    EXPECT_EQ(Connect(), -1);
    EXPECT_EQ(Calls().Count("Connections_InitRecording"), 0U);
}

TEST_F(RecordingEntryTest, ConnectsWithTheCredentialAndAllFourFunctions) {
    InitView();
    Fake().ClearLogs();
    int first = 0;
    int second = 0;
    EXPECT_EQ(SDLinterface_ConnectToRecording(&first, &second, "title", 1234.9, &OnStatus), 2);
    EXPECT_THAT(Fake().CallsOf("Connections_InitRecording")[0].arguments,
                ElementsAre(ToText(&first), "__Host-jwt=token", ToText(&second), "set", "set", "set", "set"));
    EXPECT_THAT(Fake().Logs(), ElementsAre(LogLine{2, "Recording connection successfully connected"}));
    EXPECT_EQ(SDL_GetCurrentConnectionIndex(), 2);
    const auto view = Interface::GetRecordingsView();
    EXPECT_EQ(view->GetPlaybackIndex(), 2);
    EXPECT_EQ(view->GetTitle(), "title");
    EXPECT_EQ(view->GetDurationMs(), 1234);
}

TEST_F(RecordingEntryTest, ConnectsWithAnEmptyTokenToo) {
    Fake().Set([](FakeResults& results) { results.storedToken = ""; });
    InitView();
    EXPECT_EQ(Connect(), 2);
    EXPECT_EQ(Fake().CallsOf("Connections_InitRecording")[0].arguments[1], "__Host-jwt=");
}

TEST_F(RecordingEntryTest, SaysThatItCannotConnect) {
    Fake().Set([](FakeResults& results) { results.recordingConnectionIndex = -1; });
    InitView();
    Fake().ClearLogs();
    EXPECT_EQ(Connect(), -1);
    EXPECT_THAT(Fake().Logs(), ElementsAre(LogLine{2, "Recording connection failed"}));
    EXPECT_EQ(SDL_GetCurrentConnectionIndex(), -1);
    EXPECT_EQ(Interface::GetRecordingsView()->GetPlaybackIndex(), -1);
    EXPECT_EQ(Interface::GetRecordingsView()->GetTitle(), "");
}

TEST_F(RecordingEntryTest, ConnectsALiveRoomsViewWithoutTellingIt) {
    Start();
    Enter();
    EXPECT_EQ(Connect(), 2);
    EXPECT_EQ(Interface::GetRecordingsView(), nullptr);
    EXPECT_EQ(SDL_GetCurrentConnectionIndex(), 2);
}

TEST_F(RecordingEntryTest, TakesAnyTitleAndDuration) {
    InitView();
    EXPECT_EQ(Connect(nullptr, std::numeric_limits<double>::quiet_NaN()), 2);
    EXPECT_EQ(Interface::GetRecordingsView()->GetTitle(), "");
    EXPECT_EQ(Interface::GetRecordingsView()->GetDurationMs(), 0);
    EXPECT_EQ(Connect("x", -5.0), 2);
    EXPECT_EQ(Interface::GetRecordingsView()->GetDurationMs(), 0);
    EXPECT_EQ(Connect("x", std::numeric_limits<double>::infinity()), 2);
    EXPECT_GT(Interface::GetRecordingsView()->GetDurationMs(), 0);
}

TEST_F(RecordingEntryTest, HandsEachStatusToTheHost) {
    InitView();
    Connect();
    const RecordingPlaybackCallbacks callbacks = Fake().RecordingCallbacks();
    std::thread([&] {
        for (const int status : {1, 101, 102, 106, -3}) callbacks.status(status);
        callbacks.progress(3, 4);
        callbacks.offsetSeeked(12);
    }).join();
    EXPECT_THAT(statuses, ElementsAre(1, 101, 102, 106, -3));
}

TEST_F(RecordingEntryTest, HearsAStatusWithoutAHostsFunction) {
    InitView();
    EXPECT_EQ(SDLinterface_ConnectToRecording(nullptr, nullptr, "title", 0.0, &OnStatus), 2);
    EXPECT_EQ(SDLinterface_ConnectToRecording(nullptr, nullptr, "title", 0.0, nullptr), 2);
    Fake().RecordingCallbacks().status(102);
    EXPECT_THAT(statuses, IsEmpty());
}

TEST_F(RecordingEntryTest, TellsTheHostEvenWithoutAView) {
    InitView();
    Connect();
    SDLinterface_GlobalQuit();
    SDLinterface_OnRecordingPlaybackStatus(106);
    SDLinterface_OnRecordingPlaybackProgress(1, 2);
    SDLinterface_OnActiveStreams({"a"});
    EXPECT_THAT(statuses, ElementsAre(106));
}

TEST_F(RecordingEntryTest, ShowsOnlyStreamsThatAreOnAtThisPosition) {
    InitView();
    Connect();
    Fake().OfferRemoteSource("a");
    Fake().OfferRemoteSource("b");
    Fake().RecordingCallbacks().activeStreams({"b", "unknown"});
    EXPECT_EQ(Interface::GetRecordingsView()->GetActiveStreamCount(), 1);
    Fake().RecordingCallbacks().activeStreams({});
    EXPECT_EQ(Interface::GetRecordingsView()->GetActiveStreamCount(), 0);
}

TEST_F(RecordingEntryTest, LeavesALiveRoomAloneWhenStreamsAreReported) {
    Start();
    Enter();
    Fake().OfferRemoteSource("a");
    SDLinterface_OnActiveStreams({});
    SDLinterface_OnRecordingPlaybackStatus(1);
    SDLinterface_VideoRoomUpdateActiveSpeaker("a");
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("Host_OnMainVideoChanged"), 1U);
}

TEST_F(RecordingEntryTest, ResetsTheViewBeforeItEndsTheConnection) {
    Fake().Set([](FakeResults& results) { results.endRecordingResult = 5; });
    InitView();
    Connect();
    SDLinterface_SlideThumbnails(false, false);
    Fake().OfferRemoteSource("a");
    SDLinterface_VideoRoomUpdateActiveSpeaker("a");
    SDL_VideoRoomCheckInputAndRender();
    bool resetAtEnd = false;
    Watch("Connections_EndRecording", [&] {
        // The main video is chosen anew: without a speaker there is none.
        resetAtEnd = Interface::GetRecordingsView()->GetMainVideoRect().h == 360;
    });
    EXPECT_EQ(SDLinterface_DisconnectFromRecording(2), 5);
    EXPECT_TRUE(resetAtEnd);
    EXPECT_THAT(Fake().CallsOf("Connections_EndRecording")[0].arguments, ElementsAre("2"));
}

TEST_F(RecordingEntryTest, EndsTheConnectionWithoutAView) {
    Fake().Set([](FakeResults& results) { results.endRecordingResult = -1; });
    EXPECT_EQ(SDLinterface_DisconnectFromRecording(99), -1);
    EXPECT_THAT(Fake().CallsOf("Connections_EndRecording")[0].arguments, ElementsAre("99"));
}

TEST_F(RecordingEntryTest, ClearsTheDrawingsWhenItStandsAtAnotherPlace) {
    InitView();
    Connect();
    const std::shared_ptr<DrawingSource> source = Mark("a");
    for (const int status : {102, 103, 104, 7}) Fake().RecordingCallbacks().status(status);
    EXPECT_THAT(source->ShapesOf("b"), SizeIs(1));
    for (const int status : {101, 105, 106}) {
        Mark("a");
        Fake().RecordingCallbacks().status(status);
        EXPECT_THAT(source->ShapesOf("b"), IsEmpty()) << status;
        EXPECT_EQ(DrawingCanvasManager::Instance()->GetOrCreateSource("a"), source) << status;
    }
}

TEST_F(RecordingEntryTest, ForgetsTheDrawingsWhenItIsLeftOrOpenedAnew) {
    InitView();
    Connect();
    const auto forgets = [](const std::function<void()>& end) {
        const std::weak_ptr<DrawingSource> source = Mark("stream without a tile");
        end();
        return source.expired();
    };
    EXPECT_TRUE(forgets([] { Fake().RecordingCallbacks().status(1); }));
    EXPECT_TRUE(forgets([] { Fake().RecordingCallbacks().status(2); }));
    EXPECT_TRUE(forgets([] { SDLinterface_DisconnectFromRecording(2); }));
}

TEST_F(RecordingEntryTest, ShowsWhatIsDrawnAfterItIsOpenedAnew) {
    InitView();
    Connect();
    Fake().OfferRemoteSource("a");
    const auto canvas = [] {
        SDLinterface_VideoRoomUpdateActiveSpeaker("a");
        SDL_VideoRoomCheckInputAndRender();
        return DrawingCanvasManager::Instance()->CurrentCanvas();
    };
    ASSERT_NE(canvas(), nullptr);
    const std::weak_ptr<DrawingSource> former = canvas()->Source();
    Fake().RecordingCallbacks().status(2);
    EXPECT_TRUE(former.expired());
    EXPECT_EQ(canvas()->Source(), DrawingCanvasManager::Instance()->GetOrCreateSource("a"));
}

TEST_F(RecordingEntryTest, TakesTheDrawingsWithIt) {
    InitView();
    EXPECT_TRUE(DrawingCanvasManager::HasInstance());
    SDLinterface_GlobalQuit();
    EXPECT_FALSE(DrawingCanvasManager::HasInstance());
}

// What has no name in a message.
TEST_F(RecordingEntryTest, KeepsWhatCannotBeSharedInsideItsCommands) {
    InitView();
    Connect();
    Fake().OfferRemoteSource("\xFF");
    SDLinterface_VideoRoomUpdateActiveSpeaker("\xFF");
    SDL_VideoRoomCheckInputAndRender();
    Fake().ClearLogs();
    SDLinterface_ClearCurrentCanvas();
    SDLinterface_UndoCurrentCanvas();
    SDLinterface_RedoCurrentCanvas();
    EXPECT_THAT(Fake().LogsOf(3), SizeIs(3));
}

TEST_F(RecordingEntryTest, TicksAndEndsLikeARoom) {
    InitView();
    Connect();
    SDL_WPFVideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 1U);
    SDLinterface_GlobalQuit();
    EXPECT_FALSE(HasView());
    EXPECT_FALSE(roomActive.load());
}

}  // namespace
}  // namespace Corvanta::Testing
