// Where the wall draws its tiles, its scrollbar and its gradient, and which tiles it subscribes to.
#include <gtest/gtest.h>

#include "tests/fake_platform/AllocationCounter.h"
#include "tests/video/WallTest.h"

namespace Corvanta::Video {
namespace {

using Corvanta::Testing::AllocationCounter;
using Corvanta::Testing::Call;
using Ints = std::vector<int>;
using Ids = std::vector<std::string>;

constexpr auto kColumn = ThumbnailLayoutMode::Column;
constexpr auto kGrid = ThumbnailLayoutMode::Grid;
constexpr const char* kConfigure = "Connections_ConfigureStream";
// Of a strip whose tiles do not fit.
constexpr const char* kStripTrack = "0 160 1000 16";

class WallDrawingTest : public WallTest {
protected:
    [[nodiscard]] static size_t ConfigureCalls(const std::string& id) {
        size_t count = 0;
        for (const Call& call : Fake().CallsOf(kConfigure)) count += call.arguments[0] == id ? 1 : 0;
        return count;
    }
    // The rectangles to which pictures of 64 x 48 pixels were copied.
    [[nodiscard]] static Ids PicturesDrawn() {
        Ids places;
        for (const Call& call : Calls().Of("SDL_RenderCopy")) {
            if (call.arguments[2] == "0 0 64 48") places.push_back(call.arguments[3]);
        }
        return places;
    }
};

TEST_F(WallDrawingTest, CentresAStripThatFits) {
    AddRemotes(3);
    Draw();
    EXPECT_EQ(PlacesX(), (Ints{180, 393, 606}));
    EXPECT_EQ(PlacesY(), (Ints{0, 0, 0}));
    room.detached = true;
    Fake().ClearCalls();
    Draw();
    EXPECT_FALSE(DrewTrack(kStripTrack));
}

TEST_F(WallDrawingTest, ScrollsAStripThatDoesNotFit) {
    AddRemotes(6);
    room.detached = true;
    Draw();
    EXPECT_EQ(PlacesX(), (Ints{0, 213, 426, 639, 852, 1065}));
    EXPECT_TRUE(DrewTrack(kStripTrack));
    wheel = {109, 109};
    Tick();
    // The thumb of 782 pixels is halfway through its 218.
    EXPECT_EQ(PlacesX(), (Ints{-139, 74, 287, 500, 713, 926}));
}

TEST_F(WallDrawingTest, FillsTheAreaOfAGridWithOneTile) {
    AddRemotes(1);
    wall.SetMode(kGrid, 3);
    wall.SetAreaHeight(900);
    room.viewWidth = 1200;
    Draw();
    const SDL_Rect rect = Tile("r0").displayRect;
    EXPECT_EQ(rect.h, 900);
    EXPECT_EQ(rect.w, 1200);
    wall.SetAreaHeight(300);
    Draw();
    EXPECT_EQ(Tile("r0").displayRect.w, 1000);
    EXPECT_EQ(Tile("r0").displayRect.h, 750);
}

TEST_F(WallDrawingTest, CentresTheLastRowOfFiveTilesInAGrid) {
    AddRemotes(5);
    wall.SetMode(kGrid, 3);
    wall.SetAreaWidth(960);
    wall.SetAreaHeight(480);
    Draw();
    EXPECT_EQ(PlacesX(), (Ints{0, 320, 640, 160, 480}));
    EXPECT_EQ(PlacesY(), (Ints{0, 0, 0, 240, 240}));
}

TEST_F(WallDrawingTest, PutsTheTenthTileOfAGridOntoASecondPage) {
    AddRemotes(9);
    wall.SetMode(kGrid, 3);
    wall.SetAreaWidth(960);
    room.detached = true;
    Fake().ClearCalls();
    Draw();
    EXPECT_FALSE(DrewTrack("960 0 16 720")) << "nine fill the page";
    AddRemote("r9");
    Draw();
    EXPECT_EQ(PlacesX(), (Ints{0, 320, 640, 0, 320, 640, 0, 320, 640, 320}));
    EXPECT_EQ(PlacesY(), (Ints{0, 0, 0, 240, 240, 240, 480, 480, 480, 720}));
    EXPECT_TRUE(DrewTrack("960 0 16 720"));
    wall.SetDetachedBorders(true);
    Fake().ClearCalls();
    Draw();
    EXPECT_TRUE(DrewTrack("948 0 16 720"));
}

TEST_F(WallDrawingTest, StandsTheScrollbarOfAColumnBesideIt) {
    AddRemotes(6);
    wall.SetMode(kColumn, 3);
    room.detached = true;
    Draw();
    EXPECT_EQ(PlacesY(), (Ints{0, 160, 320, 480, 640, 800}));
    EXPECT_TRUE(DrewTrack("213 0 16 720"));
}

TEST_F(WallDrawingTest, DrawsAStripsScrollbarUnderTheTilesAndOthersOverThem) {
    AddRemotes(8);
    for (const auto& tile : tiles) Show(*tile);
    room.detached = true;
    Fake().ClearCalls();
    Draw();
    const int strip = IndexOfCall("SDL_RenderFillRect", kStripTrack);
    EXPECT_GE(strip, 0);
    EXPECT_LT(strip, IndexOfCall("SDL_RenderCopy", "0 0 213 160"));
    wall.SetMode(kColumn, 1);
    Fake().ClearCalls();
    Draw();
    EXPECT_GT(IndexOfCall("SDL_RenderFillRect", "213 0 16 720"),
              IndexOfCall("SDL_RenderCopy", "0 0 213 160"));
    EXPECT_GE(IndexOfCall("SDL_RenderCopy", "0 0 213 160"), 0);
}

TEST_F(WallDrawingTest, DrawsTheFirstTileLast) {
    AddLocal("me");
    AddRemotes(2);
    for (const auto& tile : tiles) Show(*tile);
    Fake().ClearCalls();
    Draw();
    EXPECT_EQ(PicturesDrawn(), (Ids{"606 0 213 160", "393 0 213 160", "180 0 213 160"}));
}

TEST_F(WallDrawingTest, ShowsItsScrollbarOnlyWhileItIsUsed) {
    AddRemotes(6);
    Tick();
    Fake().ClearCalls();
    Tick();
    EXPECT_FALSE(DrewTrack(kStripTrack)) << "nobody uses it";
    MoveTo({500, 165});
    EXPECT_TRUE(DrewTrack(kStripTrack)) << "the pointer is on it";
    MoveTo({500, 400});
    TurnMs(2000);
    Fake().ClearCalls();
    Tick();
    EXPECT_TRUE(DrewTrack(kStripTrack)) << "it lingers";
    TurnMs(1);
    Tick();
    Fake().ClearCalls();
    Tick();
    EXPECT_FALSE(DrewTrack(kStripTrack)) << "it has lingered";
    Scroll(0, 5);
    Tick();
    EXPECT_TRUE(DrewTrack(kStripTrack)) << "the wheel moves it";
    Fake().ClearCalls();
    StartDrag("r1");
    EXPECT_TRUE(DrewTrack(kStripTrack)) << "a tile is dragged";
    wall.SlideTo(false, true);
    Fake().ClearCalls();
    Draw();
    EXPECT_FALSE(DrewTrack(kStripTrack)) << "the strip slides away";
}

TEST_F(WallDrawingTest, DrawsAndLaysOutNothingWhileItIsNotShown) {
    AddRemotes(3);
    wall.SetShown(false);
    EXPECT_FALSE(wall.IsShown());
    Fake().ClearCalls();
    Draw();
    EXPECT_TRUE(Fake().CallNames().empty());
    EXPECT_EQ(PlacesX(), (Ints{0, 0, 0}));
    wall.SetShown(true);
    Draw();
    EXPECT_EQ(PlacesX(), (Ints{180, 393, 606}));
}

TEST_F(WallDrawingTest, TakesLessOfTheViewWithEachDrawingWhileItSlidesOut) {
    AddRemotes(3);
    Draw();
    EXPECT_EQ(wall.GetStripHeight(), 160);
    wall.SlideTo(false, true);
    EXPECT_TRUE(wall.IsSlidingOut());
    TurnMs(75);
    Draw();
    EXPECT_EQ(wall.GetStripHeight(), 120);
    EXPECT_EQ(PlacesY(), (Ints{-40, -40, -40}));
    TurnMs(75);
    Draw();
    EXPECT_EQ(wall.GetStripHeight(), 80);
    EXPECT_TRUE(wall.IsShown());
    TurnMs(150);
    Draw();
    EXPECT_EQ(wall.GetStripHeight(), 0);
    EXPECT_FALSE(wall.IsShown());
    EXPECT_FALSE(wall.IsSlidingOut());
}

TEST_F(WallDrawingTest, SlidesIn) {
    AddRemotes(3);
    wall.SlideTo(false, false);
    EXPECT_FALSE(wall.IsShown());
    wall.SlideTo(true, true);
    EXPECT_TRUE(wall.IsShown());
    Draw();
    EXPECT_EQ(wall.GetStripHeight(), 0);
    TurnMs(150);
    Draw();
    EXPECT_EQ(wall.GetStripHeight(), 80);
    wall.SlideTo(true, false);
    Draw();
    EXPECT_EQ(wall.GetStripHeight(), 160);
}

TEST_F(WallDrawingTest, EndsTheSubscriptionOfATileBeyondTheMarginOnce) {
    AddRemotes(12);
    for (int i = 0; i < 5; ++i) Draw();
    // The area reaches to 1000, the margin to 1213: r5 stands at 1065, r6 at 1278.
    for (int i = 0; i < 12; ++i) {
        std::string id = "r";
        id += std::to_string(i);
        EXPECT_EQ(Tile(id).IsActive(), i < 6) << id;
        EXPECT_EQ(ConfigureCalls(id), i < 6 ? 0U : 1U) << id;
    }
}

TEST_F(WallDrawingTest, SubscribesAgainOnceATileComesIntoTheMargin) {
    AddRemotes(12);
    Draw();
    ASSERT_FALSE(Tile("r11").IsActive());
    wheel = {2000, 2000};
    Tick();
    EXPECT_TRUE(Tile("r11").IsActive());
    EXPECT_EQ(ConfigureCalls("r11"), 2U);
    EXPECT_FALSE(Tile("r0").IsActive());
    Tick();
    EXPECT_EQ(ConfigureCalls("r11"), 2U);
}

TEST_F(WallDrawingTest, KeepsTheMainVideoAndTheUsersOwnTilesSubscribedOutOfSight) {
    for (int i = 0; i < 8; ++i) AddLocal("me" + std::to_string(i));
    AddRemotes(4);
    room.mainId = "r3";
    Draw();
    EXPECT_TRUE(Tile("me7").IsActive());
    EXPECT_TRUE(Tile("r3").IsActive());
    EXPECT_FALSE(Tile("r2").IsActive());
    EXPECT_EQ(ConfigureCalls("me7"), 0U);
}

TEST_F(WallDrawingTest, DrawsNothingOfATileOutOfSight) {
    AddRemotes(8);
    for (const auto& tile : tiles) Show(*tile);
    Fake().ClearCalls();
    Draw();
    EXPECT_EQ(PicturesDrawn().size(), 6U);
    EXPECT_FALSE(Tile("r7").HasTexture());
}

TEST_F(WallDrawingTest, CropsAPictureAndMarksTheTilesForTheWall) {
    AddRemotes(2);
    Show(Tile("r0"));
    room.mainId = "r0";
    Draw();
    EXPECT_TRUE(Tile("r0").inGrid);
    EXPECT_TRUE(Tile("r0").onMainVideo);
    EXPECT_FALSE(Tile("r1").onMainVideo);
    EXPECT_EQ(Tile("r0").sourceRect.w, 64);
    EXPECT_EQ(Tile("r1").sourceRect.w, 0);
}

TEST_F(WallDrawingTest, MakesOneGradientForAllRemoteTilesAndANewOneForAnotherSize) {
    AddLocal("me");
    AddRemotes(4);
    for (const auto& tile : tiles) Show(*tile);
    const auto shades = [] {
        size_t count = 0;
        for (const Call& call : Calls().Of("SDL_UpdateTexture")) {
            count +=
                call.arguments.back() == std::to_string(213 * 4) || call.arguments.back() == "1280" ? 1 : 0;
        }
        return count;
    };
    Fake().ClearCalls();
    Draw();
    Draw();
    EXPECT_EQ(shades(), 1U);
    wall.SetTileHeight(240);
    Draw();
    Draw();
    EXPECT_EQ(shades(), 2U);
}

TEST_F(WallDrawingTest, AllocatesAndMakesNothingInASteadyState) {
    AddLocal("me");
    AddRemotes(24);
    for (const auto& tile : tiles) Show(*tile);
    for (const auto mode : {ThumbnailLayoutMode::Strip, kColumn, kGrid}) {
        wall.SetMode(mode, 3);
        for (int i = 0; i < 3; ++i) Tick();
        Fake().ClearCalls();
        Calls().SetRecording(false);
        AllocationCounter::Start();
        for (int i = 0; i < 5; ++i) Tick();
        EXPECT_EQ(AllocationCounter::Stop(), 0U) << static_cast<int>(mode);
        Calls().SetRecording(true);
        const size_t textures = Sdl().LiveTextures();
        Tick();
        EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 0U);
        EXPECT_EQ(Calls().Count("SDL_CreateTextureFromSurface"), 0U);
        EXPECT_EQ(Calls().Count("SDL_UpdateTexture"), 0U);
        EXPECT_EQ(Sdl().LiveTextures(), textures);
    }
}

TEST_F(WallDrawingTest, GivesAllTilesToAnotherRendererWithTexturesOfTheirOwn) {
    AddRemotes(6);
    for (const auto& tile : tiles) Show(*tile);
    wheel = {1, 1};
    Tick();
    Corvanta::Testing::PixelReader other(kAreaWidth, kAreaHeight);
    wall.MoveAllToRenderer(other.Renderer());
    for (const auto& tile : tiles) EXPECT_FALSE(tile->HasTexture());
    const size_t before = Sdl().LiveTextures();
    wall.Render(other.Renderer(), "");
    EXPECT_GT(Sdl().LiveTextures(), before);
    EXPECT_TRUE(Tile("r0").HasTexture());
    wall.MoveAllToRenderer(screen->Renderer());
    EXPECT_FALSE(Tile("r0").HasTexture());
    Draw();
    EXPECT_TRUE(Tile("r0").HasTexture());
}

TEST_F(WallDrawingTest, PutsTilesWithoutAPictureBehindTheOthersWhenADetachedWallMoves) {
    AddRemotes(5);
    Show(Tile("r1"));
    Show(Tile("r3"));
    Tick();
    wall.MoveAllToRenderer(screen->Renderer());
    EXPECT_EQ(Order(), (Ids{"r0", "r1", "r2", "r3", "r4"})) << "not detached";
    Tick();
    room.detached = true;
    wall.MoveAllToRenderer(screen->Renderer());
    EXPECT_EQ(Order(), (Ids{"r1", "r3", "r0", "r2", "r4"}));
}

TEST_F(WallDrawingTest, KeepsTheUsersOrderWhenADetachedWallMoves) {
    AddRemotes(3);
    Show(Tile("r2"));
    Tick();
    wall.PinTile(&Tile("r1"));
    wall.UnpinTile(&Tile("r1"));
    room.detached = true;
    wall.MoveAllToRenderer(screen->Renderer());
    EXPECT_EQ(Order(), (Ids{"r1", "r0", "r2"}));
}

TEST_F(WallDrawingTest, ReleasesItsOwnTexturesAndMakesThemAgain) {
    AddRemotes(1);
    Draw();
    Draw();
    const size_t all = Sdl().LiveTextures();
    wall.ReleaseTextures();
    EXPECT_EQ(Sdl().LiveTextures(), all - 1);
    Draw();
    EXPECT_EQ(Sdl().LiveTextures(), all);
}

TEST_F(WallDrawingTest, LeavesARendererOnlyIfItDrewThereLast) {
    AddRemotes(1);
    Show(Tile("r0"));
    Draw();
    Corvanta::Testing::PixelReader other(kAreaWidth, kAreaHeight);
    wall.LeaveRenderer(other.Renderer());
    wall.LeaveRenderer(nullptr);
    EXPECT_TRUE(Tile("r0").HasTexture());
    wall.LeaveRenderer(screen->Renderer());
    EXPECT_FALSE(Tile("r0").HasTexture());
    Draw();
    EXPECT_TRUE(Tile("r0").HasTexture());
}

TEST_F(WallDrawingTest, NeverTouchesATileThatGoesWhileTheOthersAreDrawn) {
    AddRemotes(12);
    // r11 stands out of sight and is drawn first: its subscription ends.
    Fake().OnCall(kConfigure, [&](const Call& call) {
        if (call.arguments[0] != "r11") return;
        Destroy("r10");
        Destroy("r0");
    });
    Draw();
    EXPECT_EQ(wall.GetTileCount(), 10);
    EXPECT_TRUE(Tile("r1").inGrid);
}

TEST_F(WallDrawingTest, LivesThroughADrawingWithinADrawing) {
    AddRemotes(12);
    bool entered = false;
    Fake().OnCall(kConfigure, [&](const Call&) {
        if (entered) return;
        entered = true;
        Destroy("r5");
        Draw();
        AddRemote("late");
    });
    Draw();
    EXPECT_TRUE(entered);
    EXPECT_EQ(wall.GetTileCount(), 12);
}

TEST_F(WallDrawingTest, StopsDrawingOnceItsRendererIsLeft) {
    AddRemotes(12);
    for (const auto& tile : tiles) Show(*tile);
    Draw();
    Fake().OnCall(kConfigure, [&](const Call&) { wall.LeaveRenderer(screen->Renderer()); });
    wheel = {2000, 2000};
    Fake().ClearCalls();
    Tick();
    EXPECT_LE(PicturesDrawn().size(), 1U);
    for (const auto& tile : tiles) EXPECT_FALSE(tile->HasTexture());
}

}  // namespace
}  // namespace Corvanta::Video
