// The strip of thumbnails above the main video in the room's own window: events reach it, it reaches the main
// video, and no stream that goes leaves anything behind.
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "tests/room/RoomViewTest.h"
#include "tests/video/Gate.h"
#include "ui/Clock.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;

constexpr uint32_t kBorder = 0xFF2196F3;
constexpr uint32_t kCameraColor = 0xFF00FF00;
constexpr uint32_t kOneColor = 0xFFFF0000;
constexpr uint32_t kTwoColor = 0xFF0000FF;
// Height of the strip at scale 1.
constexpr int kStrip = 160;

class WallInRoomTest : public RoomViewTest {
protected:
    WallInRoomTest() {
        nowNs_ = 60'000'000'000;
        UI::SetClock([] { return nowNs_.load(); });
        OpenWithWall();
    }
    ~WallInRoomTest() override {
        view.reset();
        UI::SetClock(nullptr);
    }

    static void TurnMs(int64_t milliseconds) { nowNs_ += milliseconds * 1'000'000; }
    // The camera and two participants, drawn once.
    void FillRoom() {
        AddCamera(kCameraColor);
        AddRemote("one", kOneColor);
        AddRemote("two", kTwoColor);
        view->Tick();
    }
    void Push(Uint32 type, int x = 0, int y = 0) {
        SDL_Event event;
        SDL_zero(event);
        event.type = type;
        event.window.windowID = static_cast<Uint32>(view->GetSdlWindowId());
        if (type == SDL_MOUSEMOTION) {
            event.motion.x = x;
            event.motion.y = y;
        }
        SDL_PushEvent(&event);
    }
    void MoveTo(SDL_Point point) {
        Push(SDL_MOUSEMOTION, point.x, point.y);
        view->Tick();
    }
    [[nodiscard]] SDL_Point CentreOf(const std::string& id) {
        const SDL_Rect& place = TileOf(id)->displayRect;
        return {place.x + place.w / 2, place.y + place.h / 2};
    }
    // Moves there, and clicks what that tick has found under the pointer.
    void ClickTile(const std::string& id) {
        MoveTo(CentreOf(id));
        Push(SDL_MOUSEBUTTONDOWN);
        Push(SDL_MOUSEBUTTONUP);
        view->Tick();
    }
    void StartDrag(const std::string& id) {
        MoveTo(CentreOf(id));
        Push(SDL_MOUSEBUTTONDOWN);
        view->Tick();
        const SDL_Point from = CentreOf(id);
        MoveTo({from.x + 5, from.y + 5});
    }
    [[nodiscard]] bool HasBorder(const std::string& id) {
        const Picture picture = TickAndRead();
        const SDL_Rect& place = TileOf(id)->displayRect;
        const int middle = place.y + place.h / 2;
        return picture.At(place.x, middle) == kBorder && picture.At(place.x + 1, middle) == kBorder &&
               picture.At(place.x + 2, middle) != kBorder;
    }
    [[nodiscard]] uint32_t MainColor() {
        const Picture picture = TickAndRead();
        return picture.At(kViewWidth / 2, kStrip + (kViewHeight - kStrip) / 2);
    }
    [[nodiscard]] static std::string LastCursor() { return Calls().Of("Host_SetCursor").back().arguments[0]; }

    static inline std::atomic<int64_t> nowNs_{0};
};

// Layout

TEST_F(WallInRoomTest, TheMainVideoStandsBelowTheStrip) {
    FillRoom();
    const Picture picture = TickAndRead();
    // 320 high and four thirds as wide: 426, centred.
    EXPECT_TRUE(AreaIs(picture, {107, kStrip, 426, 320}, kCameraColor));
    EXPECT_TRUE(AreaIs(picture, {0, kStrip, 107, 320}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {533, kStrip, 107, 320}, kBlack));
    // Three tiles of 213 are centred in 640; a tile's middle shows its stream.
    EXPECT_TRUE(PixelIs(picture, 106, 80, kCameraColor));
    EXPECT_TRUE(PixelIs(picture, 319, 80, kOneColor));
    EXPECT_TRUE(PixelIs(picture, 532, 80, kTwoColor));
}

TEST_F(WallInRoomTest, TheStripKeepsItsHeightWithoutTiles) {
    view->Tick();
    EXPECT_EQ(view->GetMainVideoRect().y, kStrip);
    EXPECT_EQ(view->GetMainVideoRect().h, kViewHeight - kStrip);
}

TEST_F(WallInRoomTest, NoStreamAtAllPresentsAClearedFrame) {
    const Picture picture = TickAndRead();
    EXPECT_TRUE(AreaIs(picture, {0, 0, kViewWidth, kViewHeight}, kBlack));
    EXPECT_EQ(Calls().Count("SDL_RenderCopy"), 0U);
}

TEST_F(WallInRoomTest, ATallWindowIsLetterboxedAroundTheStrip) {
    AddCamera(kCameraColor);
    view->Tick();
    const Picture picture = ReadPresented([&] { view->Resize(120, 400); });
    // 240 are left, of which a picture of the whole width needs 90.
    EXPECT_TRUE(AreaIs(picture, {0, kStrip, 120, 75}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {0, kStrip + 75, 120, 90}, kCameraColor));
    EXPECT_TRUE(AreaIs(picture, {0, kStrip + 165, 120, 75}, kBlack));
}

TEST_F(WallInRoomTest, TheScaleOfTheControlsIsTheStrips) {
    FillRoom();
    view->SetWindowScale(0.5F);
    EXPECT_EQ(TileOf("one")->displayRect.h, 80);
    EXPECT_EQ(TileOf("one")->GetMenu().GetItemHeight(), 13);
    view->Tick();
    EXPECT_EQ(view->GetMainVideoRect().y, 80);
    AddRemote("three", kWhite);
    view->Tick();
    EXPECT_EQ(TileOf("three")->GetMenu().GetItemHeight(), 13);
}

TEST_F(WallInRoomTest, TheMainVideoFollowsTheStripAsItSlides) {
    FillRoom();
    view->SlideThumbnails(false, true);
    std::vector<int> tops;
    for (int i = 0; i < 5; ++i) {
        view->Tick();
        view->Tick();
        tops.push_back(view->GetMainVideoRect().y);
        TurnMs(100);
    }
    EXPECT_EQ(tops, (std::vector<int>{160, 107, 54, 0, 0}));
    EXPECT_FALSE(view->GetThumbnails().IsShown());
    view->SlideThumbnails(true, false);
    view->Tick();
    view->Tick();
    EXPECT_EQ(view->GetMainVideoRect().y, kStrip);
}

TEST_F(WallInRoomTest, AHiddenStripLeavesTheMainVideoAloneSubscribed) {
    FillRoom();
    view->SetActiveSpeaker("one");
    view->Tick();
    EXPECT_TRUE(TileOf("one")->IsActive());
    EXPECT_TRUE(TileOf("two")->IsActive());
    view->SlideThumbnails(false, false);
    view->Tick();
    EXPECT_TRUE(TileOf("one")->IsActive());
    EXPECT_FALSE(TileOf("two")->IsActive());
    view->SlideThumbnails(true, false);
    view->Tick();
    EXPECT_TRUE(TileOf("two")->IsActive());
}

// Clicks

TEST_F(WallInRoomTest, AClickMakesATileTheMainVideoAndASecondOneEndsIt) {
    FillRoom();
    EXPECT_FALSE(HasBorder("two"));
    ClickTile("two");
    MoveTo({-1, -1});
    EXPECT_TRUE(HasBorder("two"));
    EXPECT_FALSE(HasBorder("one"));
    EXPECT_EQ(MainColor(), kTwoColor);
    ClickTile("two");
    MoveTo({-1, -1});
    EXPECT_FALSE(HasBorder("two"));
    EXPECT_EQ(MainColor(), kCameraColor);
}

TEST_F(WallInRoomTest, AClickHitsWhatTheTickBeforeSawUnderThePointer) {
    FillRoom();
    MoveTo(CentreOf("one"));
    const SDL_Point two = CentreOf("two");
    Push(SDL_MOUSEMOTION, two.x, two.y);
    Push(SDL_MOUSEBUTTONDOWN);
    Push(SDL_MOUSEBUTTONUP);
    view->Tick();
    EXPECT_TRUE(view->IsMainVideo(*TileOf("one")));
}

TEST_F(WallInRoomTest, TheBorderFollowsWhoSpeaks) {
    FillRoom();
    view->SetActiveSpeaker("one");
    view->Tick();
    EXPECT_TRUE(HasBorder("one"));
    view->SetActiveSpeaker("two");
    view->Tick();
    EXPECT_FALSE(HasBorder("one"));
    EXPECT_TRUE(HasBorder("two"));
}

TEST_F(WallInRoomTest, TheOwnCameraIsNeverMarkedAsTheMainVideo) {
    FillRoom();
    EXPECT_FALSE(view->IsMainVideo(*TileOf("me")));
    EXPECT_FALSE(HasBorder("me"));
    view->OnTileClicked(TileOf("me"), false);
    EXPECT_FALSE(view->IsMainVideo(*TileOf("me")));
    EXPECT_FALSE(HasBorder("me"));
}

TEST_F(WallInRoomTest, AChosenTileIsTheMainVideoWhoeverSpeaks) {
    FillRoom();
    view->SetActiveSpeaker("one");
    view->OnTileClicked(TileOf("two"), false);
    view->Tick();
    EXPECT_TRUE(view->IsMainVideo(*TileOf("two")));
    EXPECT_FALSE(view->IsMainVideo(*TileOf("one")));
    view->OnTileClicked(TileOf("two"), false);
    EXPECT_FALSE(view->IsMainVideo(*TileOf("two"))) << "until a drawing has chosen another";
}

TEST_F(WallInRoomTest, TheHostHearsOfAChoiceThatEndsWithNothing) {
    AddRemote("one", kOneColor);
    view->OnTileClicked(TileOf("one"), false);
    view->Tick();
    Calls().Clear();
    ClickTile("one");
    EXPECT_EQ(Calls().Count("Host_OnMainVideoChanged"), 1U);
    view->Tick();
    EXPECT_EQ(Calls().Count("Host_OnMainVideoChanged"), 1U);
}

TEST_F(WallInRoomTest, APointerThatLeavesTheWindowHoversNothing) {
    FillRoom();
    MoveTo(CentreOf("one"));
    EXPECT_TRUE(TileOf("one")->hovered);
    // It stays where it was while no event comes, and the shape follows with the next tick.
    view->Tick();
    EXPECT_TRUE(TileOf("one")->hovered);
    EXPECT_EQ(LastCursor(), "1");
    MoveTo({-1, -1});
    EXPECT_FALSE(TileOf("one")->hovered);
    view->Tick();
    EXPECT_FALSE(TileOf("one")->hovered);
    EXPECT_EQ(LastCursor(), "0");
}

TEST_F(WallInRoomTest, NothingIsHoveredBeforeThePointerCame) {
    FillRoom();
    // The first tile reaches into the corner.
    ASSERT_EQ(TileOf("me")->displayRect.x, 0);
    view->Tick();
    EXPECT_FALSE(TileOf("me")->hovered);
}

TEST_F(WallInRoomTest, AHiddenStripTakesNoInput) {
    FillRoom();
    const SDL_Point one = CentreOf("one");
    view->SlideThumbnails(false, false);
    MoveTo(one);
    Push(SDL_MOUSEBUTTONDOWN);
    Push(SDL_MOUSEBUTTONUP);
    view->Tick();
    EXPECT_FALSE(TileOf("one")->hovered);
    EXPECT_FALSE(view->IsMainVideo(*TileOf("one")));
}

TEST_F(WallInRoomTest, EventsOfAnotherWindowAreDiscarded) {
    FillRoom();
    SDL_Event event;
    SDL_zero(event);
    event.type = SDL_MOUSEMOTION;
    event.motion.windowID = static_cast<Uint32>(view->GetSdlWindowId() + 77);
    event.motion.x = CentreOf("one").x;
    event.motion.y = CentreOf("one").y;
    SDL_PushEvent(&event);
    view->Tick();
    EXPECT_FALSE(TileOf("one")->hovered);
}

// Streams that go, or are asked for in vain

TEST_F(WallInRoomTest, AStreamMayGoWhateverIsDoneWithItsTile) {
    struct Case {
        const char* name;
        std::function<void()> prepare;
    };
    const Case cases[] = {
        {"main", [&] { view->SetActiveSpeaker("one"); }},
        {"spotlit", [&] { view->OnTileClicked(TileOf("one"), false); }},
        {"hovered", [&] { MoveTo(CentreOf("one")); }},
        {"pressed",
         [&] {
             MoveTo(CentreOf("one"));
             Push(SDL_MOUSEBUTTONDOWN);
             view->Tick();
         }},
        {"dragged", [&] { StartDrag("one"); }},
        {"pinned", [&] { TileOf("one")->pinToggle->OnClick(); }},
        {"dragged and pinned",
         [&] {
             TileOf("one")->pinToggle->OnClick();
             view->Tick();
             StartDrag("one");
         }},
        {"with its menu open",
         [&] {
             MoveTo(CentreOf("one"));
             TileOf("one")->GetMenuButton()->OnClick();
             view->Tick();
         }},
        {"with its panel open", [&] { TileOf("one")->GetPanel().SetVisible(true); }},
        {"lost", [&] { (void)view->UpdateConnectionStatus("one", true); }},
    };
    FillRoom();
    for (const Case& removed : cases) {
        SCOPED_TRACE(removed.name);
        removed.prepare();
        view->Tick();
        std::thread media([&] { view->RemoveRemoteVideoSource("one"); });
        media.join();
        EXPECT_EQ(TileOf("one"), nullptr);
        Push(SDL_MOUSEMOTION, 320, 90);
        view->Tick();
        Push(SDL_MOUSEBUTTONUP);
        view->Tick();
        EXPECT_EQ(MainColor(), kCameraColor);
        AddRemote("one", kOneColor);
        EXPECT_FALSE(TileOf("one")->pinned);
        EXPECT_FALSE(TileOf("one")->dragging);
        view->SetActiveSpeaker("");
        MoveTo({-1, -1});
    }
}

TEST_F(WallInRoomTest, UnknownIdsAreIgnoredEverywhere) {
    FillRoom();
    for (const std::string& id : {std::string("nobody"), std::string(), std::string(10'000, 'x')}) {
        view->RemoveRemoteVideoSource(id);
        view->RemoveLocalVideoSource(id);
        view->OnRemoteTrackAdded(id);
        view->SetStreamVolume(id, 0.5, false);
        view->SetStreamVideoEnabled(id, false);
        view->SetStreamSoundToggle(id, false);
        view->SetStreamSpotlight(id, false);
        view->SetStreamSpotlight(id, true);
        view->SetActiveSpeaker(id);
        EXPECT_TRUE(view->UpdateConnectionStatus(id, true));
        EXPECT_FALSE(view->ExportRemoteFrame(id));
        EXPECT_EQ(view->ResolveMediaSourceId(id), id);
        EXPECT_EQ(MainColor(), kCameraColor);
    }
    EXPECT_EQ(view->GetThumbnails().GetTileCount(), 3);
}

TEST_F(WallInRoomTest, AnIdThatIsAddedTwiceHasOneTile) {
    FillRoom();
    EXPECT_EQ(view->AddRemoteVideoSource("one"), TileOf("one")->GetFrameSink());
    EXPECT_EQ(view->AddLocalVideoSource(StreamType::Camera, "camera"), TileOf("me")->GetFrameSink());
    EXPECT_EQ(view->AddLocalVideoSource(StreamType::File, "camera"), TileOf("me")->GetFrameSink());
    view->Tick();
    EXPECT_EQ(view->GetThumbnails().GetTileCount(), 3);
    EXPECT_EQ(TileOf("one")->GetMenu().GetItems().size(), 5U);
}

TEST_F(WallInRoomTest, AStreamMayHaveAnyName) {
    const std::string names[] = {std::string(10'000, 'W'),   "",     "\xff\xfe\xc3(",
                                 std::string(9'999, '\xc3'), "%s%n", std::string("a\0b", 3)};
    int number = 0;
    for (const std::string& name : names) {
        const std::string id = std::to_string(number++);
        Fake().Set([&](FakeResults& results) { results.publisherNames[id] = name; });
        AddRemote(id, kOneColor);
        AddRemote(name + "as id", kTwoColor);
    }
    for (int i = 0; i < 3; ++i) view->Tick();
    MoveTo(CentreOf("0"));
    EXPECT_EQ(view->GetThumbnails().GetTileCount(), 12);
}

TEST_F(WallInRoomTest, FramesMayChangeTheirSizeInEveryTick) {
    FillRoom();
    view->SetActiveSpeaker("one");
    const auto sink = TileOf("one")->GetFrameSink();
    for (int i = 1; i < 40; ++i) {
        ASSERT_TRUE(Show(sink, Plain(kOneColor, i * 37 % 200 + 1, i * 53 % 150 + 1)));
        view->Tick();
    }
    ASSERT_TRUE(Show(sink, Plain(kTwoColor, 400, 300)));
    EXPECT_EQ(MainColor(), kTwoColor);
}

// Ticks and the end

TEST_F(WallInRoomTest, ATickReturnsAtOnceWhileALocalStreamIsAdded) {
    FillRoom();
    NameLocalStream(StreamType::File, "my-file");
    Gate gate;
    Calls().OnCall("Connections_GetLocalDisplayName", [&](const Call&) { gate.Pass(); });
    std::thread media([&] { EXPECT_NE(view->AddLocalVideoSource(StreamType::File, "file"), nullptr); });
    ASSERT_TRUE(gate.WaitForArrival());
    Calls().Clear();
    view->Tick();
    view->Resize(200, 300);
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 0U);
    gate.Open();
    media.join();
    view->Tick();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 1U);
    EXPECT_EQ(view->GetMainVideoRect().w, 186);
}

TEST_F(WallInRoomTest, TheRoomEndsWithNothingLeft) {
    FillRoom();
    NameLocalStream(StreamType::File, "my-file");
    ASSERT_NE(view->AddLocalVideoSource(StreamType::File, "file"), nullptr);
    StartDrag("one");
    view->RemoveRemoteVideoSource("two");
    size_t texturesAtTheEnd = 77;
    Calls().OnCall("SDL_DestroyRenderer", [&](const Call&) { texturesAtTheEnd = Sdl().LiveTextures(); });
    view->Shutdown();
    EXPECT_EQ(texturesAtTheEnd, 0U);
    EXPECT_TRUE(view->GetThumbnails().GetAllTiles().empty());
    EXPECT_EQ(view->GetLocalCameraSink(), nullptr);
    EXPECT_EQ(view->ResolveMediaSourceId("my-file"), "my-file");
    EXPECT_FALSE(roomActive.load());
    EXPECT_EQ(Sdl().LiveRenderers(), 0U);
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
    EXPECT_EQ(Fake().TransformersCreated(), Fake().TransformersDeleted());
    Push(SDL_MOUSEBUTTONUP);
    view->Tick();
    view->SlideThumbnails(false, true);
    view->TickDetachedView();
    EXPECT_EQ(view->CreateDetachedView(&nativeWindow, 100, 100), -1);
}

}  // namespace
}  // namespace Corvanta::Room
