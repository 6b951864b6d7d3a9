// What lies over what in a room with its bar, what a steady tick costs, and in which order everything ends.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/fake_platform/AllocationCounter.h"
#include "tests/room/ToolbarTest.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;
using ::testing::ElementsAre;

constexpr uint32_t kMainColor = 0xFFE0E000;
constexpr uint32_t kTileColor = 0xFF00E0E0;

class RoomOrderTest : public ToolbarTest {
protected:
    // Names of drawn things in the order in which a tick draws them, each once in a row.
    [[nodiscard]] std::vector<std::string> DrawnOrder() {
        const int barTop = view->GetHeight() - view->GetToolbarHeight();
        const int strip = view->GetThumbnails().GetStripHeight();
        Calls().Clear();
        view->Tick();
        std::vector<std::string> order;
        const auto note = [&order](const char* what) {
            if (order.empty() || order.back() != what) order.emplace_back(what);
        };
        for (const Call& call : Calls().All()) {
            if (call.name == "SDL_RenderClear") note("clear");
            if (call.name == "SDL_RenderPresent") note("present");
            if (call.name == "Host_OnMainVideoChanged") note("host");
            if (call.name == "AdaptiveVideoSourceManager_SetMainStream") note("adaptation");
            if (call.name == "SDL_RenderFillRect" &&
                call.arguments[1] == TextOf({0, barTop, view->GetWidth(), view->GetToolbarHeight()})) {
                note("bar");
            }
            if (call.name == "SDL_RenderFillRect" && call.arguments[1] == TextOf(OptionsMenu().rect)) {
                note("options menu");
            }
            if (call.name == "SDL_RenderFillRect" && call.arguments[1] == TextOf(LayoutMenu().rect)) {
                note("layout menu");
            }
            if (call.name == "SDL_RenderFillRect" && call.arguments[1] == TextOf(programMenu_)) {
                note("program menu");
            }
            if (call.name != "SDL_RenderCopy" || call.arguments[3] == "null") continue;
            const SDL_Rect place = RectOf(call.arguments[3]);
            const SDL_Rect main = view->GetMainVideoRect();
            if (SDL_RectEquals(&place, &main) == SDL_TRUE) note("main video");
            if (place.y < strip && place.h > strip / 2 && place.h <= strip) note("wall");
        }
        return order;
    }
    [[nodiscard]] static std::string TextOf(const SDL_Rect& rect) {
        std::ostringstream text;
        text << rect.x << ' ' << rect.y << ' ' << rect.w << ' ' << rect.h;
        return text.str();
    }
    [[nodiscard]] static SDL_Rect RectOf(const std::string& text) {
        std::istringstream stream(text);
        SDL_Rect rect{0, 0, 0, 0};
        stream >> rect.x >> rect.y >> rect.w >> rect.h;
        return rect;
    }

    // Where a running program's menu stands.
    SDL_Rect programMenu_{-1, -1, -1, -1};
};

TEST_F(RoomOrderTest, DrawsTheMainVideoTheWallTheBarAndTheMenusInThisOrder) {
    OpenBarAndWall();
    AddCamera(kMainColor);
    AddRemote("one", kTileColor);
    view->Tick();
    OptionsMenu().SetVisible(true);
    LayoutMenu().SetVisible(true);
    TurnMs(kMenuSlideMs);
    view->Tick();
    EXPECT_THAT(DrawnOrder(), ElementsAre("clear", "main video", "wall", "bar", "options menu", "layout menu",
                                          "adaptation", "present"));
}

TEST_F(RoomOrderTest, DrawsAProgramsMenuAfterTheHostHasHeardOfTheMainVideo) {
    OpenBar();
    Run({{0, 4711}});
    OpenMenu("davinci-no-arrow");
    const Picture picture = TickAndRead();
    const auto row = Find(picture, "decklink-stream", 0, kBarTop);
    ASSERT_TRUE(row.has_value());
    // The plate around its two rows.
    int left = row->x;
    while (picture.At(left - 1, row->y + 20) == kPlate) --left;
    const int height = 2 * 48 + 2 * 8;
    programMenu_ = {left, kBarTop - height, 322, height};
    AddCamera(kMainColor);
    EXPECT_THAT(DrawnOrder(),
                ElementsAre("clear", "main video", "bar", "host", "program menu", "adaptation", "present"));
}

TEST_F(RoomOrderTest, TheWallLiesOverTheMainVideoAndTheBarOverBoth) {
    OpenBarAndWall(1000, 400);
    AddCamera(kMainColor);
    view->Tick();
    const Picture picture = TickAndRead();
    const SDL_Rect main = view->GetMainVideoRect();
    const SDL_Rect tile = TileOf("me")->displayRect;
    EXPECT_EQ(main.y, 160);
    EXPECT_EQ(main.y + main.h, 400);
    EXPECT_TRUE(PixelIs(picture, main.x + main.w / 2, 200, kMainColor));
    EXPECT_TRUE(PixelIs(picture, tile.x + tile.w / 2, tile.y + tile.h / 2, kMainColor));
    // Through the bar's shade the picture is darker and still seen.
    const uint32_t shaded = picture.At(main.x + 2, 302);
    EXPECT_NE(shaded, kMainColor);
    EXPECT_NE(shaded, kBlack);
}

TEST_F(RoomOrderTest, AMenuLiesOverTheMainVideoAndTheWall) {
    OpenBarAndWall(kBarViewWidth, 300);
    AddCamera(kMainColor);
    view->Tick();
    OptionsMenu().SetVisible(true);
    TurnMs(kMenuSlideMs);
    view->Tick();
    const Picture picture = TickAndRead();
    const SDL_Rect& plate = OptionsMenu().rect;
    EXPECT_LT(plate.y, 160);
    EXPECT_TRUE(PixelIs(picture, plate.x + plate.w - 3, plate.y + plate.h - 3, kPlate));
}

TEST_F(RoomOrderTest, TheMainVideoTakesNoAccountOfTheBar) {
    OpenBar(400, 300);
    AddCamera(kMainColor);
    view->Tick();
    EXPECT_EQ(view->GetMainVideoRect().h, 300);
}

TEST_F(RoomOrderTest, TheBarKnowsTheMainVideosWidth) {
    OpenBar();
    view->Tick();
    EXPECT_EQ(Bar().GetTag(), -1);
    AddCamera(kMainColor);
    view->Tick();
    EXPECT_EQ(Bar().GetTag(), view->GetMainVideoRect().w);
}

// Steady

TEST_F(RoomOrderTest, AllocatesNothingInASteadyTickWithTheBarAndAnOpenMenu) {
    RoomIdentity identity;
    identity.roomName = "Harbour";
    view->Configure(identity);
    OpenBar();
    AddCamera(kMainColor);
    Run({{0, 4711}, {1, 12}});
    for (const char* button : {"layout", "davinci-no-arrow", kOptions}) {
        Calls().SetRecording(true);
        OpenMenu(button);
        Calls().SetRecording(false);
        for (int i = 0; i < 10; ++i) {
            view->Tick();
            TurnMs(50);
        }
        Calls().SetRecording(true);
        Calls().Clear();
        size_t allocations = 0;
        for (int i = 0; i < 10; ++i) {
            AllocationCounter::Start();
            view->Tick();
            allocations += AllocationCounter::Stop();
            TurnMs(16);
        }
        EXPECT_EQ(allocations, 0U) << button;
        EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 10U);
        EXPECT_EQ(Calls().Count("SDL_CreateTexture") + Calls().Count("SDL_CreateTextureFromSurface") +
                      Calls().Count("IMG_LoadTexture"),
                  0U);
        EXPECT_TRUE(RasterisedTexts().empty());
        EXPECT_EQ(Measurements(), 0U);
    }
}

// The end

TEST_F(RoomOrderTest, EndsItsControlsAheadOfTheRenderer) {
    OpenBarAndWall();
    AddCamera(kMainColor);
    OpenMenu(kOptions);
    Calls().Clear();
    view->Shutdown();
    const std::vector<std::string> steps{"MediaManager_SetLocalVideoFrameAdaptationCallback",
                                         "ProcessMonitor_Unsubscribe",
                                         "Configuration_Unsubscribe",
                                         "Connections_RemoveRoomStatusListener",
                                         "Configuration_SetPropertyString",
                                         "Configuration_SetPropertyString",
                                         "SDL_DestroyRenderer",
                                         "SDL_DestroyWindow"};
    EXPECT_EQ(Calls().NamesAmong(steps), steps);
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_EQ(view->GetToolbar().GetButtonBar(), nullptr);
    EXPECT_EQ(Fake().ProcessListeners() + Fake().ConfigurationListeners() + Fake().RoomStatusListeners(), 0U);
    // Everything of the bar is harmless from here on.
    view->UntoggleOptionsButton(true);
    view->UntoggleAudioMixer();
    view->SetSidebarNotification(true);
    view->SetDrawTool(true);
    view->SetTitle("Late");
    view->SetMicEnabled(true);
    view->SetVideoEnabled(false);
    view->SetMicNone(true);
    view->SetSpeakerNone(true);
    view->RequestTrackCheck();
    view->Tick();
    view->GetToolbar().RefreshLayoutMenu();
    EXPECT_TRUE(HostCalls().empty());
}

TEST_F(RoomOrderTest, ADroppedViewEndsItsControlsToo) {
    OpenBar();
    Run({{0, 4711}});
    OpenMenu("davinci-no-arrow");
    view.reset();
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_EQ(Fake().ProcessListeners() + Fake().ConfigurationListeners() + Fake().RoomStatusListeners(), 0U);
}

}  // namespace
}  // namespace Corvanta::Room
