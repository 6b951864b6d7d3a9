// Where the menus of the stream buttons stand, and when they close.
#include <memory>

#include "integration/OverlayMenus.h"
#include "integration/StreamMenuController.h"
#include "tests/integration/MenuTestBase.h"

namespace Corvanta::UI {
namespace {

using Testing::Fake;
using ::testing::IsEmpty;
using Testing::kMenuWidth;
using Testing::kToolbarHeight;
using Testing::kToolbarTop;
using Testing::kViewHeight;

// A plate of two rows of 48 and a padding of 8.
constexpr int kTwoRows = 112;

class StreamMenuPlacesTest : public Testing::ToolbarMenuTest {
protected:
    StreamMenuPlacesTest() {
        controller.SetResolveEntry(resolve);
        controller.SetFlameEntry(flame);
        controller.SetResolveMenu(resolveMenu.get());
        controller.SetFlameMenu(flameMenu.get());
        controller.SetToolbarRefresh([this] { ++refreshes; });
        overlays.Add(resolveMenu.get());
        overlays.Add(flameMenu.get());
        Fake().FireProcesses({{0, 1}, {1, 2}});
    }
    void UseMainMenu() {
        for (ToggleButton* entry : {resolve, flame}) bar.UpdateRightGroup({{entry, false}});
        controller.SetMainMenu(mainButton, mainMenu.get());
        overlays.Add(mainMenu.get());
    }
    void Tick() {
        const auto& entries = controller.GetRunningEntries();
        if (overlays.barItems) {
            bar.UpdateRightGroup(entries);
        } else {
            controller.ApplyRunningEntries(entries);
        }
        bar.Render(Renderer(), {0, kToolbarTop});
        controller.UpdateCaptureStates();
        Wipe();
        controller.Render(Renderer(), kViewHeight, kToolbarHeight);
    }

    ToggleButton* const mainButton = AddToBar(bar);
    ToggleButton* const resolve = AddToBar(bar);
    ToggleButton* const flame = AddToBar(bar);
    const std::unique_ptr<Menu> mainMenu = MakeMenu(2);
    const std::unique_ptr<Menu> resolveMenu = MakeMenu(2);
    const std::unique_ptr<Menu> flameMenu = MakeMenu(3);
    OverlayMenus overlays;
    StreamMenuController controller;
    int refreshes = 0;
};

TEST_F(StreamMenuPlacesTest, PutsAnApplicationsMenuOnTheToolbarEndingWithItsEntry) {
    overlays.barItems = true;
    Open(*resolveMenu);
    Open(*flameMenu);
    Tick();
    ASSERT_GT(resolve->rect.w, 0);
    EXPECT_EQ(resolveMenu->rect, (SDL_Rect{resolve->rect.x + resolve->rect.w - kMenuWidth,
                                           kToolbarTop - kTwoRows, kMenuWidth, kTwoRows}));
    EXPECT_EQ(flameMenu->rect, (SDL_Rect{flame->rect.x + flame->rect.w - kMenuWidth,
                                         kToolbarTop - kTwoRows - 48, kMenuWidth, kTwoRows + 48}));
}

TEST_F(StreamMenuPlacesTest, DrawsVisibleMenusAlone) {
    overlays.barItems = true;
    Tick();
    EXPECT_THAT(Fills(), IsEmpty());
    Open(*flameMenu);
    Tick();
    EXPECT_EQ(Fills().at(0), flameMenu->rect);
    EXPECT_TRUE(AreaIs(Read(), {flameMenu->rect.x + 1, flameMenu->rect.y + 1, 4, 4}, 0xFF424242, 0));
}

TEST_F(StreamMenuPlacesTest, KnowsThePlaceOfAMenuBeforeItOpens) {
    overlays.barItems = true;
    Tick();
    EXPECT_EQ(resolveMenu->rect.y, kToolbarTop - kTwoRows);
}

TEST_F(StreamMenuPlacesTest, PutsTheMainMenuOnTheToolbarWithRoomForItsNewRows) {
    UseMainMenu();
    Open(*mainMenu);
    Tick();
    ASSERT_EQ(mainMenu->GetItems().size(), 4U);
    EXPECT_EQ(mainMenu->rect, (SDL_Rect{mainButton->rect.x + mainButton->rect.w - kMenuWidth,
                                        kToolbarTop - kTwoRows - 96, kMenuWidth, kTwoRows + 96}));
    Fake().FireProcesses({});
    Tick();
    EXPECT_EQ(mainMenu->rect.y + mainMenu->rect.h, kToolbarTop);
    EXPECT_EQ(mainMenu->rect.h, kTwoRows);
}

TEST_F(StreamMenuPlacesTest, CountsADividerOfTheMainMenuAsOneLine) {
    mainMenu->AddDivider();
    UseMainMenu();
    Fake().FireProcesses({});
    Open(*mainMenu);
    Tick();
    EXPECT_EQ(mainMenu->rect.y + mainMenu->rect.h, kToolbarTop);
    EXPECT_EQ(mainMenu->rect.h, kTwoRows + 1);
}

TEST_F(StreamMenuPlacesTest, PutsAnApplicationsMenuLeftOfItsEntryInTheMainMenu) {
    UseMainMenu();
    Open(*mainMenu);
    Open(*resolveMenu);
    Open(*flameMenu);
    Tick();
    for (const auto& [menu, entry] :
         {std::pair(resolveMenu.get(), resolve), std::pair(flameMenu.get(), flame)}) {
        EXPECT_TRUE(menu->visible);
        EXPECT_EQ(menu->rect.x + menu->rect.w, entry->rect.x);
        EXPECT_EQ(menu->rect.y, entry->rect.y);
    }
    EXPECT_EQ(refreshes, 0);
}

TEST_F(StreamMenuPlacesTest, ClosesAnApplicationsMenuWithTheMainMenu) {
    UseMainMenu();
    Open(*mainMenu);
    Open(*resolveMenu);
    Tick();
    mainMenu->SetVisible(false);
    Tick();
    EXPECT_FALSE(resolveMenu->visible);
    EXPECT_EQ(refreshes, 1);
    EXPECT_THAT(Fills(), IsEmpty());
}

TEST_F(StreamMenuPlacesTest, ClosesTheOpenMenuOfAProgramThatEnds) {
    for (const bool barItems : {true, false}) {
        overlays.barItems = barItems;
        if (!barItems) {
            UseMainMenu();
            Open(*mainMenu);
        }
        refreshes = 0;
        Fake().FireProcesses({{0, 1}, {1, 2}});
        Tick();
        Open(*resolveMenu);
        Open(*flameMenu);
        Tick();
        ASSERT_TRUE(resolveMenu->visible);
        resolveMenu->hovered = true;
        Fake().FireProcesses({{1, 2}});
        Tick();
        EXPECT_FALSE(resolveMenu->visible);
        EXPECT_FALSE(resolveMenu->hovered);
        EXPECT_TRUE(flameMenu->visible);
        EXPECT_EQ(refreshes, 1);
        // Not once in every frame.
        Tick();
        EXPECT_EQ(refreshes, 1);
    }
}

TEST_F(StreamMenuPlacesTest, OpensNoMenuWithoutItsEntry) {
    controller.SetResolveEntry(nullptr);
    Open(*resolveMenu);
    Tick();
    EXPECT_FALSE(resolveMenu->visible);
    EXPECT_THAT(Fills(), IsEmpty());
}

TEST_F(StreamMenuPlacesTest, TakesAMenuWithoutAToolbarsRefresh) {
    controller.SetToolbarRefresh(nullptr);
    controller.SetResolveEntry(nullptr);
    Open(*resolveMenu);
    Tick();
    EXPECT_FALSE(resolveMenu->visible);
}

}  // namespace
}  // namespace Corvanta::UI
