// The wall in a window of its own: the tiles move there, and the main video becomes a second tile of its
// stream.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/room/RoomViewTest.h"
#include "ui/Clock.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;

constexpr uint32_t kCameraColor = 0xFF00FF00;
constexpr uint32_t kOneColor = 0xFFFF0000;
constexpr uint32_t kTwoColor = 0xFF0000FF;
constexpr int kWallWidth = 800;
constexpr int kWallHeight = 400;

// Kinds that the user shares beside the camera and stops in the bar.
constexpr StreamType kOwnTypes[] = {StreamType::Device, StreamType::Elgato, StreamType::File,
                                    StreamType::URL,    StreamType::NDI,    StreamType::DeckLink};

using Strings = std::vector<std::string>;

class DetachedWallTest : public RoomViewTest {
protected:
    DetachedWallTest() {
        UI::SetClock([] { return int64_t{60'000'000'000}; });
        OpenWithWall();
    }
    ~DetachedWallTest() override {
        view.reset();
        UI::SetClock(nullptr);
    }

    void FillRoom() {
        AddCamera(kCameraColor);
        AddRemote("one", kOneColor);
        AddRemote("two", kTwoColor);
        view->SetActiveSpeaker("one");
        view->Tick();
        Calls().Clear();
    }
    void Detach() {
        ASSERT_EQ(view->CreateDetachedView(&wallWindow, kWallWidth, kWallHeight), 1);
        Calls().Clear();
    }
    // With the wall in its window and all tiles moved there.
    void FillAndDetach() {
        FillRoom();
        Detach();
        TickBoth();
        Calls().Clear();
    }
    void TickBoth() {
        view->Tick();
        view->TickDetachedView();
    }
    // "register" or "unregister" and the source, in their order.
    [[nodiscard]] static Strings Steps() {
        Strings steps;
        for (const Call& call : Calls().All()) {
            const bool on = call.name == "MediaManager_RegisterCallback";
            if (!on && call.name != "MediaManager_UnregisterCallback") continue;
            std::string step = on ? "register " : "unregister ";
            steps.push_back(step += call.arguments[0]);
        }
        return steps;
    }
    // The source that feeds the second tile, and whether there is just that one.
    [[nodiscard]] static std::string ClonedSource() {
        const auto sinks = Fake().RegisteredSinks();
        return sinks.size() == 1 ? sinks[0].first : std::to_string(sinks.size()) + " sinks";
    }
    // The stream's picture as the media layer would send it to the second tile.
    void Feed(const std::string& source, uint32_t argb) {
        ASSERT_EQ(Fake().Deliver(source, Plain(argb)), 1U);
        ASSERT_TRUE(FlushSink(*Fake().RegisteredSinks()[0].second));
    }
    // As Feed, for a tile that drops it.
    static void FeedInVain(const std::string& source, uint32_t argb) {
        ASSERT_EQ(Fake().Deliver(source, Plain(argb)), 1U);
    }
    void PushToWall(Uint32 type, SDL_Point point = {0, 0}) {
        SDL_Event event;
        SDL_zero(event);
        event.type = type;
        event.window.windowID = static_cast<Uint32>(view->GetDetachedView()->GetSdlWindowId());
        if (type == SDL_MOUSEMOTION) {
            event.motion.x = point.x;
            event.motion.y = point.y;
        }
        SDL_PushEvent(&event);
    }
    void ClickTile(const std::string& id) {
        const SDL_Rect& place = TileOf(id)->displayRect;
        PushToWall(SDL_MOUSEMOTION, {place.x + place.w / 2, place.y + place.h / 2});
        TickBoth();
        PushToWall(SDL_MOUSEBUTTONDOWN);
        PushToWall(SDL_MOUSEBUTTONUP);
        TickBoth();
    }
    [[nodiscard]] static std::string NameOf(const SDL_Renderer* renderer) {
        return ToText(static_cast<const void*>(renderer));
    }
    [[nodiscard]] int IndexOf(const std::string& name, const std::string& argument = {}) {
        const auto calls = Calls().All();
        const auto found = std::find_if(calls.begin(), calls.end(), [&](const Call& call) {
            return call.name == name && (argument.empty() || std::count(call.arguments.begin(),
                                                                        call.arguments.end(), argument) > 0);
        });
        return found == calls.end() ? -1 : static_cast<int>(found - calls.begin());
    }
    // An own stream of that kind takes the main video.
    void ShareOwn(StreamType type) {
        NameLocalStream(type, "mine");
        ASSERT_NE(view->AddLocalVideoSource(type, "source"), nullptr);
        TickBoth();
        ASSERT_EQ(ClonedSource(), "source");
        Calls().Clear();
    }
    void EndOwn(StreamType type) {
        view->RemoveLocalVideoSource("source");
        Fake().Set([type](FakeResults& results) { results.localUserStreamIds.erase(type); });
        TickBoth();
        Calls().Clear();
    }
    [[nodiscard]] Video::ThumbnailLayoutMode Mode() { return view->GetThumbnails().GetMode(); }

    int wallWindow = 0;
};

// Coming and going of the window

TEST_F(DetachedWallTest, TheWallGetsAWindowOfItsOwn) {
    EXPECT_EQ(view->GetDetachedView(), nullptr);
    EXPECT_FALSE(view->IsDetached());
    FillRoom();
    EXPECT_EQ(view->CreateDetachedView(&wallWindow, kWallWidth, kWallHeight), 1);
    ASSERT_NE(view->GetDetachedView(), nullptr);
    EXPECT_TRUE(view->IsDetached());
    EXPECT_EQ(view->GetDetachedView()->GetWidth(), kWallWidth);
    EXPECT_EQ(view->GetDetachedView()->GetHeight(), kWallHeight);
    EXPECT_EQ(Sdl().LiveWindows(), 2U);
    // The room's window has the main video to itself.
    view->Tick();
    EXPECT_EQ(view->GetMainVideoRect().y, 0);
    EXPECT_EQ(view->GetMainVideoRect().h, kViewHeight);
}

TEST_F(DetachedWallTest, TilesMoveWithTheWindowsFirstDrawing) {
    FillRoom();
    ASSERT_TRUE(TileOf("one")->HasTexture());
    Detach();
    EXPECT_TRUE(TileOf("one")->HasTexture());
    EXPECT_EQ(Calls().Count("SDL_DestroyTexture"), 0U);
    const std::string wall = NameOf(view->GetDetachedView()->GetRenderer());
    Calls().Clear();
    view->TickDetachedView();
    EXPECT_GE(Calls().Count("SDL_DestroyTexture"), 3U);
    EXPECT_GE(Calls().Count("SDL_CreateTexture"), 3U);
    for (const Call& call : Calls().Of("SDL_CreateTexture")) EXPECT_EQ(call.arguments[0], wall);
    EXPECT_EQ(Calls().Of("SDL_RenderPresent").size(), 1U);
    EXPECT_EQ(Calls().Of("SDL_RenderPresent")[0].arguments[0], wall);
    Calls().Clear();
    view->TickDetachedView();
    EXPECT_EQ(Calls().Count("SDL_DestroyTexture"), 0U);
}

TEST_F(DetachedWallTest, TheRoomDrawsNoTileOfTheWall) {
    FillAndDetach();
    const std::string room = NameOf(view->GetRenderer());
    view->Tick();
    // The second tile has no picture yet.
    for (const Call& call : Calls().Of("SDL_RenderCopy")) EXPECT_NE(call.arguments[0], room);
    EXPECT_EQ(ShownColor(), kBlack);
}

TEST_F(DetachedWallTest, AHiddenStripShowsInItsOwnWindow) {
    FillRoom();
    view->SlideThumbnails(false, false);
    Detach();
    EXPECT_TRUE(view->GetThumbnails().IsShown());
    view->SlideThumbnails(false, false);
    EXPECT_TRUE(view->GetThumbnails().IsShown()) << "only the room's strip slides";
}

TEST_F(DetachedWallTest, AWindowThatCannotBeMadeLeavesTheWallInTheRoom) {
    FillRoom();
    for (const char* step : {"SDL_CreateWindowFrom", "SDL_CreateRenderer"}) {
        SCOPED_TRACE(step);
        Sdl().FailAlways(step);
        EXPECT_EQ(view->CreateDetachedView(&wallWindow, kWallWidth, kWallHeight), -1);
        Sdl().Fail(step, 0);
        EXPECT_FALSE(view->IsDetached());
        EXPECT_EQ(view->GetDetachedView(), nullptr);
        EXPECT_EQ(Sdl().LiveWindows(), 1U);
        view->TickDetachedView();
        view->Tick();
        EXPECT_EQ(view->GetMainVideoRect().y, 160);
        EXPECT_EQ(ShownColor(), kOneColor) << "as it was";
    }
    EXPECT_TRUE(Steps().empty());
}

TEST_F(DetachedWallTest, AnotherWindowTakesThePlaceOfTheFirst) {
    FillAndDetach();
    int otherWindow = 0;
    EXPECT_EQ(view->CreateDetachedView(&otherWindow, 300, 200), 1);
    EXPECT_EQ(Sdl().LiveWindows(), 2U);
    EXPECT_EQ(view->GetDetachedView()->GetWidth(), 300);
    EXPECT_EQ(ClonedSource(), "one") << "the main video stays";
    TickBoth();
    EXPECT_TRUE(TileOf("one")->HasTexture());
    EXPECT_TRUE(Steps().empty());
}

TEST_F(DetachedWallTest, AWindowThatCannotBeReplacedBringsTheWallBack) {
    FillAndDetach();
    view->OnTileClicked(TileOf("two"), false);
    Sdl().FailAlways("SDL_CreateWindowFrom");
    EXPECT_EQ(view->CreateDetachedView(&wallWindow, kWallWidth, kWallHeight), -1);
    Sdl().Fail("SDL_CreateWindowFrom", 0);
    EXPECT_FALSE(view->IsDetached());
    EXPECT_TRUE(Fake().RegisteredSinks().empty());
    EXPECT_EQ(Sdl().LiveWindows(), 1U);
    view->Tick();
    EXPECT_EQ(view->GetMainVideoRect().y, 160);
    EXPECT_TRUE(TileOf("two")->HasTexture());
}

// The main video

TEST_F(DetachedWallTest, TheMainVideoIsASecondTileThatTheStreamFeedsToo) {
    FillRoom();
    Detach();
    EXPECT_TRUE(Fake().RegisteredSinks().empty());
    view->Tick();
    EXPECT_EQ(Steps(), (Strings{"register one"}));
    EXPECT_NE(Fake().RegisteredSinks()[0].second, TileOf("one")->GetFrameSink().get());
    EXPECT_EQ(view->GetThumbnails().GetTileCount(), 3);
    EXPECT_TRUE(view->IsMainVideo(*TileOf("one")));
    EXPECT_FALSE(view->IsMainVideo(*TileOf("two")));
    Feed("one", kOneColor);
    EXPECT_EQ(ShownColor(), kOneColor);
    for (int i = 0; i < 5; ++i) TickBoth();
    EXPECT_EQ(Steps().size(), 1U) << "and it stays";
}

TEST_F(DetachedWallTest, TheOwnCamerasSecondTileIsFedByTheCamerasSource) {
    FillRoom();
    view->SetActiveSpeaker("nobody");
    Detach();
    view->Tick();
    EXPECT_EQ(Steps(), (Strings{"register camera"}));
    Feed("camera", kCameraColor);
    EXPECT_EQ(ShownColor(), kCameraColor);
    view->LeaveDetachedLayout();
    EXPECT_EQ(Steps(), (Strings{"register camera", "unregister camera"}));
}

TEST_F(DetachedWallTest, AStreamOfOnesOwnIsFedByTheSourceUnderWhichItRuns) {
    FillRoom();
    NameLocalStream(StreamType::File, "my-file");
    Detach();
    ASSERT_NE(view->AddLocalVideoSource(StreamType::File, "file"), nullptr);
    EXPECT_EQ(Steps(), (Strings{"register file"})) << "a new local stream takes the main video";
    view->Tick();
    EXPECT_EQ(ClonedSource(), "file");
    view->RemoveLocalVideoSource("file");
    EXPECT_EQ(Steps(), (Strings{"register file", "unregister file"}));
    view->Tick();
    EXPECT_EQ(ClonedSource(), "one");
}

TEST_F(DetachedWallTest, TheSecondTileFollowsWhoSpeaks) {
    FillAndDetach();
    view->SetActiveSpeaker("two");
    TickBoth();
    EXPECT_EQ(Steps(), (Strings{"unregister one", "register two"}));
    view->SetActiveSpeaker("nobody");
    TickBoth();
    EXPECT_EQ(ClonedSource(), "camera");
    view->SetActiveSpeaker("me");
    TickBoth();
    EXPECT_EQ(ClonedSource(), "camera");
    EXPECT_EQ(Steps().size(), 4U);
    EXPECT_EQ(Calls().Count("Host_OnMainVideoChanged"), 2U);
}

TEST_F(DetachedWallTest, WithoutAnyStreamThereIsNoSecondTile) {
    Detach();
    TickBoth();
    EXPECT_TRUE(Steps().empty());
    EXPECT_EQ(ShownColor(), kBlack);
}

TEST_F(DetachedWallTest, EnteringForgetsWhatWasChosenInTheRoom) {
    FillRoom();
    view->OnTileClicked(TileOf("two"), false);
    view->Tick();
    Calls().Clear();
    Detach();
    view->Tick();
    EXPECT_EQ(ClonedSource(), "one");
    EXPECT_EQ(Calls().Count("Host_OnMainVideoChanged"), 1U);
}

// Clicks

TEST_F(DetachedWallTest, AClickInTheWallsWindowChoosesAndASecondOneLetsGo) {
    FillAndDetach();
    ClickTile("two");
    EXPECT_EQ(Steps(), (Strings{"unregister one", "register two"}));
    EXPECT_TRUE(view->IsMainVideo(*TileOf("two")));
    Feed("two", kTwoColor);
    EXPECT_EQ(ShownColor(), kTwoColor);
    view->SetActiveSpeaker("one");
    TickBoth();
    EXPECT_EQ(ClonedSource(), "two") << "whoever speaks";
    Calls().Clear();
    ClickTile("two");
    EXPECT_EQ(Steps(), (Strings{"unregister two"}));
    view->Tick();
    EXPECT_EQ(ClonedSource(), "one");
}

TEST_F(DetachedWallTest, AClickOnTheSpeakerMakesThatChoiceLast) {
    FillAndDetach();
    view->OnTileClicked(TileOf("one"), false);
    view->SetActiveSpeaker("two");
    TickBoth();
    EXPECT_EQ(ClonedSource(), "one");
}

TEST_F(DetachedWallTest, TheMenuNeverLetsGoOfAChoice) {
    FillAndDetach();
    view->OnTileClicked(TileOf("two"), true);
    view->OnTileClicked(TileOf("two"), true);
    TickBoth();
    EXPECT_EQ(Steps(), (Strings{"unregister one", "register two"}));
}

TEST_F(DetachedWallTest, TheHostMayChooseAndLetGoByTheStreamsId) {
    FillAndDetach();
    view->SetStreamSpotlight("two", true);
    TickBoth();
    EXPECT_EQ(ClonedSource(), "two");
    view->SetStreamSpotlight("two", true);
    TickBoth();
    EXPECT_EQ(ClonedSource(), "one");
}

TEST_F(DetachedWallTest, AnExternalSourceTakesTheMainVideo) {
    FillAndDetach();
    MakeExternal("external");
    ASSERT_NE(view->AddRemoteVideoSource("external"), nullptr);
    TickBoth();
    EXPECT_EQ(ClonedSource(), "external");
    view->RemoveRemoteVideoSource("external");
    TickBoth();
    EXPECT_EQ(ClonedSource(), "one");
}

TEST_F(DetachedWallTest, TheOwnCameraLetsGoOfAChoiceWhenItComes) {
    FillAndDetach();
    view->RemoveLocalVideoSource("camera");
    view->OnTileClicked(TileOf("two"), false);
    ASSERT_NE(view->AddLocalVideoSource(StreamType::Camera, "camera"), nullptr);
    TickBoth();
    EXPECT_EQ(ClonedSource(), "one");
}

// The switches of a stream reach its second tile

TEST_F(DetachedWallTest, VideoThatIsSwitchedOffIsOffInBoth) {
    FillAndDetach();
    Feed("one", kOneColor);
    ASSERT_EQ(ShownColor(), kOneColor);
    TileOf("one")->videoToggle->OnClick();
    FeedInVain("one", kOneColor);
    EXPECT_EQ(ShownColor(), kBlack);
    TileOf("one")->videoToggle->OnClick();
    Feed("one", kOneColor);
    EXPECT_EQ(ShownColor(), kOneColor);
    view->SetStreamVideoEnabled("one", false);
    FeedInVain("one", kOneColor);
    EXPECT_EQ(ShownColor(), kBlack);
}

TEST_F(DetachedWallTest, ASecondTileOfAStreamWhoseVideoIsOffStartsOff) {
    FillAndDetach();
    TileOf("two")->videoToggle->OnClick();
    view->OnTileClicked(TileOf("two"), false);
    FeedInVain("two", kTwoColor);
    EXPECT_EQ(ShownColor(), kBlack);
}

// Streams that go

TEST_F(DetachedWallTest, AStreamMayGoWhileItsSecondTileIsShown) {
    for (const bool chosen : {false, true}) {
        SCOPED_TRACE(chosen);
        FillAndDetach();
        if (chosen) view->OnTileClicked(TileOf("one"), false);
        Feed("one", kOneColor);
        TickBoth();
        Calls().Clear();
        std::thread media([&] { view->RemoveRemoteVideoSource("one"); });
        media.join();
        EXPECT_EQ(Steps(), (Strings{"unregister one"}));
        EXPECT_EQ(Calls().Count("SDL_DestroyTexture"), 0U) << "not on the media thread";
        TickBoth();
        EXPECT_EQ(ClonedSource(), "camera");
        EXPECT_EQ(Calls().Count("Host_OnMainVideoChanged"), 1U);
        view->LeaveDetachedLayout();
        view->RemoveRemoteVideoSource("two");
        view->RemoveLocalVideoSource("camera");
        view->Tick();
    }
}

TEST_F(DetachedWallTest, AnotherStreamMayGoWithoutASign) {
    FillAndDetach();
    view->RemoveRemoteVideoSource("two");
    TickBoth();
    EXPECT_TRUE(Steps().empty());
    EXPECT_EQ(Calls().Count("Host_OnMainVideoChanged"), 0U);
}

TEST_F(DetachedWallTest, AGoneTilesTextureDiesBeforeTheWindowItStoodIn) {
    FillAndDetach();
    ASSERT_TRUE(TileOf("two")->HasTexture());
    view->RemoveRemoteVideoSource("two");
    const std::string wall = NameOf(view->GetDetachedView()->GetRenderer());
    size_t atTheEnd = 77;
    Calls().OnCall("SDL_DestroyRenderer", [&](const Call&) { atTheEnd = Sdl().LiveTextures(); });
    view->LeaveDetachedLayout();
    Calls().OnCall("SDL_DestroyRenderer", {});
    EXPECT_EQ(atTheEnd, 0U);
    EXPECT_GE(IndexOf("SDL_DestroyRenderer", wall), 0);
    view->Tick();
    EXPECT_GT(Sdl().LiveTextures(), 0U);
}

// Own streams that are to end

TEST_F(DetachedWallTest, AnOwnStreamThatIsToEndLeavesTheMainVideo) {
    FillAndDetach();
    for (const StreamType type : kOwnTypes) {
        SCOPED_TRACE(static_cast<int>(type));
        ShareOwn(type);
        view->ForgetOwnStream();
        EXPECT_EQ(Steps(), (Strings{"unregister source"}));
        EXPECT_NE(TileOf("mine"), nullptr) << "the host has not stopped it yet";
        TickBoth();
        EXPECT_EQ(ClonedSource(), "one");
        EXPECT_EQ(Calls().Count("Host_OnMainVideoChanged"), 1U);
        EndOwn(type);
    }
}

TEST_F(DetachedWallTest, TheKindThatIsExceptedStaysTheMainVideo) {
    FillAndDetach();
    for (const StreamType type : kOwnTypes) {
        SCOPED_TRACE(static_cast<int>(type));
        ShareOwn(type);
        view->ForgetOwnStream(StreamType::URL);
        TickBoth();
        EXPECT_EQ(ClonedSource(), type == StreamType::URL ? "source" : "one");
        EndOwn(type);
    }
}

TEST_F(DetachedWallTest, AKindThatIsNotSharedIsNoStreamWithoutAnId) {
    FillAndDetach();
    AddRemote("", kTwoColor);
    view->OnTileClicked(TileOf(""), false);
    TickBoth();
    Calls().Clear();
    view->ForgetOwnStream();
    TickBoth();
    EXPECT_EQ(ClonedSource(), "");
    EXPECT_TRUE(Steps().empty());
}

TEST_F(DetachedWallTest, AnOwnStreamThatIsToEndStaysTheChoiceInTheRoomItself) {
    FillRoom();
    for (const StreamType type : kOwnTypes) {
        SCOPED_TRACE(static_cast<int>(type));
        NameLocalStream(type, "mine");
        const auto sink = view->AddLocalVideoSource(type, "source");
        ASSERT_TRUE(sink != nullptr && Show(sink, Plain(kTwoColor)));
        view->Tick();
        view->ForgetOwnStream();
        EXPECT_EQ(ShownColor(), kTwoColor);
        EndOwn(type);
    }
}

TEST_F(DetachedWallTest, AMainVideoThatNobodyChoseStaysWhenAnOwnStreamIsToEnd) {
    FillAndDetach();
    for (const StreamType type : kOwnTypes) {
        SCOPED_TRACE(static_cast<int>(type));
        NameLocalStream(type, "one");
        view->ForgetOwnStream();
        EXPECT_EQ(ClonedSource(), "one");
        EndOwn(type);
    }
    TickBoth();
    EXPECT_TRUE(Steps().empty());
}

// Layouts

TEST_F(DetachedWallTest, LayoutsGoByTheirNumberAndByHowManyTilesThereAre) {
    struct Case {
        int mode;
        int tiles;
        int minimumWidth;
        int minimumHeight;
    };
    // Of tiles that are 213 by 160: a strip, a column, and pages of so many columns and rows.
    const Case cases[] = {
        {0, 1, 213, 160},      {0, 7, 7 * 213, 160}, {1, 1, 213, 160}, {1, 7, 213, 7 * 160},
        {2, 1, 213, 160},      {2, 2, 426, 160},     {2, 3, 426, 320}, {2, 6, 426, 480},
        {2, 7, 639, 480},      {2, 10, 639, 480},    {2, 0, 213, 0},   {7, 2, 426, 160},
        {-1, 2, 2 * 213, 160},
    };
    int count = 0;
    Detach();
    for (const Case& expected : cases) {
        SCOPED_TRACE(std::to_string(expected.mode) + " with " + std::to_string(expected.tiles));
        while (count < expected.tiles) view->AddRemoteVideoSource(std::to_string(count++));
        while (count > expected.tiles) view->RemoveRemoteVideoSource(std::to_string(--count));
        TickBoth();
        view->SetDetachedLayout(expected.mode);
        EXPECT_EQ(static_cast<int>(Mode()), expected.mode);
        EXPECT_EQ(view->GetThumbnails().GetMinimumWidth(), expected.minimumWidth);
        EXPECT_EQ(view->GetThumbnails().GetMinimumHeight(), expected.minimumHeight);
        TickBoth();
    }
}

TEST_F(DetachedWallTest, TheRoomsOwnStripHasNoOtherLayout) {
    FillRoom();
    view->SetDetachedLayout(2);
    EXPECT_EQ(Mode(), Video::ThumbnailLayoutMode::Strip);
}

TEST_F(DetachedWallTest, TheScaleOfTheWallIsThatOfItsWindow) {
    FillAndDetach();
    view->GetDetachedView()->SetWindowScale(0.5F);
    view->SetWindowScale(2.0F);
    TickBoth();
    EXPECT_EQ(TileOf("one")->displayRect.h, 80);
    AddRemote("three", kOneColor);
    TickBoth();
    EXPECT_EQ(TileOf("three")->displayRect.h, 80);
    EXPECT_EQ(TileOf("three")->GetMenu().GetItemHeight(), 13);
    view->LeaveDetachedLayout();
    view->Tick();
    EXPECT_EQ(TileOf("one")->displayRect.h, 320);
}

TEST_F(DetachedWallTest, AMenuOfAGridKeepsItsSizeWhenAnotherTileComes) {
    FillAndDetach();
    view->SetDetachedLayout(2);
    AddRemote("three", kOneColor);
    TickBoth();
    const int itemHeight = TileOf("one")->GetMenu().GetItemHeight();
    ASSERT_GT(itemHeight, 25);
    // Its place was empty before.
    for (const char* id : {"four", "five"}) AddRemote(id, kOneColor);
    TickBoth();
    AddRemote("six", kOneColor);
    view->RemoveRemoteVideoSource("six");
    TickBoth();
    const int height = TileOf("one")->displayRect.h;
    EXPECT_EQ(TileOf("one")->GetMenu().GetItemHeight(), (height * 25 + 80) / 160);
}

// Leaving

TEST_F(DetachedWallTest, LeavingKeepsTheLayoutAndBringsTheStripBack) {
    FillAndDetach();
    view->SetDetachedLayout(2);
    TickBoth();
    Calls().Clear();
    view->LeaveDetachedLayout();
    EXPECT_FALSE(view->IsDetached());
    EXPECT_EQ(view->GetDetachedView(), nullptr);
    EXPECT_EQ(Mode(), Video::ThumbnailLayoutMode::Strip);
    EXPECT_EQ(Sdl().LiveWindows(), 1U);
    EXPECT_EQ(Steps(), (Strings{"unregister one"}));
    EXPECT_EQ(Calls().Of("Configuration_SetPropertyInt"),
              (std::vector<Call>{{"Configuration_SetPropertyInt", {"detachedLayout", "2"}}}));
    for (Video::VideoFrame* tile : view->GetThumbnails().GetAllTiles()) EXPECT_FALSE(tile->onMainVideo);
    view->Tick();
    EXPECT_EQ(view->GetMainVideoRect().y, 160);
    EXPECT_EQ(TileOf("one")->displayRect.h, 160);
    EXPECT_EQ(ShownColor(), kOneColor) << "the wall's own tile is the main video again";
    view->LeaveDetachedLayout();
    EXPECT_EQ(Calls().Count("Configuration_SetPropertyInt"), 1U);
}

TEST_F(DetachedWallTest, LeavingForgetsTheChoice) {
    FillAndDetach();
    view->OnTileClicked(TileOf("two"), false);
    TickBoth();
    view->LeaveDetachedLayout();
    view->Tick();
    EXPECT_EQ(ShownColor(), kOneColor);
    EXPECT_FALSE(view->IsMainVideo(*TileOf("two")));
}

TEST_F(DetachedWallTest, LeavingBeforeTheFirstDrawingLeavesTheTilesWhereTheyAre) {
    FillRoom();
    Detach();
    view->LeaveDetachedLayout();
    view->Tick();
    EXPECT_EQ(ShownColor(), kOneColor);
}

TEST_F(DetachedWallTest, TheWallMayComeAndGoOften) {
    FillRoom();
    for (int i = 0; i < 20; ++i) {
        ASSERT_EQ(view->CreateDetachedView(&wallWindow, kWallWidth, kWallHeight), 1);
        view->SetDetachedLayout(i % 3);
        if (i % 4 != 0) TickBoth();
        view->LeaveDetachedLayout();
        if (i % 5 != 0) view->Tick();
    }
    EXPECT_TRUE(Fake().RegisteredSinks().empty());
    EXPECT_EQ(Sdl().LiveWindows(), 1U);
}

TEST_F(DetachedWallTest, AListenerOfTheConfigurationMayAskTheRoom) {
    FillAndDetach();
    bool asked = false;
    Calls().OnCall("Configuration_SetPropertyInt", [&](const Call&) {
        std::thread other([&] { asked = view->AddRemoteVideoSource("late") != nullptr; });
        other.join();
    });
    view->LeaveDetachedLayout();
    EXPECT_TRUE(asked);
}

// The end of the room

TEST_F(DetachedWallTest, TheRoomMayEndWhileTheWallIsDetached) {
    FillAndDetach();
    Feed("one", kOneColor);
    TickBoth();
    view->RemoveRemoteVideoSource("two");
    Calls().Clear();
    size_t mostAtAnEnd = 0;
    Calls().OnCall("SDL_DestroyRenderer", [&](const Call& call) {
        if (call.arguments[0] == NameOf(view->GetRenderer())) mostAtAnEnd = Sdl().LiveTextures();
    });
    view->Shutdown();
    EXPECT_EQ(mostAtAnEnd, 0U);
    EXPECT_EQ(Steps(), (Strings{"unregister one"}));
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
    EXPECT_EQ(Sdl().LiveRenderers(), 0U);
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_FALSE(view->IsDetached());
    EXPECT_TRUE(view->GetThumbnails().GetAllTiles().empty());
    EXPECT_EQ(Calls().Count("Configuration_SetPropertyInt"), 0U);
    TickBoth();
    view->LeaveDetachedLayout();
    view->SetDetachedLayout(2);
    EXPECT_EQ(view->CreateDetachedView(&wallWindow, kWallWidth, kWallHeight), -1);
    EXPECT_EQ(Fake().TransformersCreated(), Fake().TransformersDeleted());
}

TEST_F(DetachedWallTest, ADroppedViewTakesItsWallsWindowAlong) {
    FillAndDetach();
    view.reset();
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
    EXPECT_TRUE(Fake().RegisteredSinks().empty());
    EXPECT_EQ(Fake().TransformersCreated(), Fake().TransformersDeleted());
}

TEST_F(DetachedWallTest, NoRoomMeansNoWindow) {
    roomActive.store(false);
    EXPECT_EQ(view->CreateDetachedView(&wallWindow, kWallWidth, kWallHeight), -1);
    roomActive.store(true);
    Detach();
    roomActive.store(false);
    view->TickDetachedView();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 0U);
}

}  // namespace
}  // namespace Corvanta::Room
