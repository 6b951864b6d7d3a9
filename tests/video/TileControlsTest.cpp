#include "video/TileControls.h"

#include <gtest/gtest.h>

#include "tests/video/OverlayTest.h"

namespace Corvanta::Video {
namespace {

using namespace Corvanta::Testing;

class TileControlsTest : public TileOverlayTest {
protected:
    void Point(SDL_Point point) { tile->OnPointer(point, false); }
    // A hovered tile with its menu open, drawn once so that everything has its place.
    void MakeWithMenu(int items = 3) {
        Make();
        AddMenuButton();
        for (int i = 0; i < items; ++i) {
            tile->GetMenu().AddButton("icons/spotlight.png", "Item", [this, i] { itemClicks.push_back(i); });
        }
        Point({100, 100});
        tile->GetMenu().SetVisible(true);
        Draw();
    }

    std::vector<int> itemClicks;
};

TEST_F(TileControlsTest, AClickOnTheTileItselfIsTheTiles) {
    Make();
    AddMenuButton();
    AddConnectionButton();
    Point({100, 100});
    Draw();
    Point({100, 100});
    EXPECT_TRUE(tile->OnClick());
    EXPECT_EQ(clicks + connectionClicks, 0);
}

TEST_F(TileControlsTest, TheHoveredButtonGetsTheClick) {
    Make();
    AddMenuButton();
    Point({100, 100});
    Draw();
    Point({209, 50});
    EXPECT_FALSE(tile->OnClick());
    EXPECT_EQ(clicks, 1);
}

TEST_F(TileControlsTest, TheFirstHoveredButtonAloneGetsTheClick) {
    Make();
    int second = 0;
    int other = 0;
    AddMenuButton()->hovered = true;
    tile->AddHoverButton(PictureButton("icons/pin.png", [&] { ++second; }))->hovered = true;
    tile->AddOtherButton(PictureButton("icons/pin.png", [&] { ++other; }))->hovered = true;
    EXPECT_FALSE(tile->OnClick());
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(second + other, 0);
}

TEST_F(TileControlsTest, AnOtherButtonTakesItsClickBeforeTheConnectionButton) {
    Make();
    int other = 0;
    UI::Button* button = tile->AddOtherButton(PictureButton("icons/pin.png", [&] { ++other; }));
    AddConnectionButton();
    Draw();
    Point({40, 170});
    button->hovered = true;
    EXPECT_FALSE(tile->OnClick());
    EXPECT_EQ(other, 1);
    EXPECT_EQ(connectionClicks, 0);
}

TEST_F(TileControlsTest, TheConnectionButtonTakesItsClick) {
    Make();
    AddConnectionButton();
    Draw();
    Point({40, 170});
    EXPECT_FALSE(tile->OnClick());
    EXPECT_EQ(connectionClicks, 1);
}

TEST_F(TileControlsTest, ATogglesClickFlipsIt) {
    Make();
    UI::ToggleButton::Options options;
    options.offIconName = "icons/pin.png";
    options.onIconName = "icons/wide.png";
    options.onToggledOn = [this] { ++clicks; };
    const UI::ToggleButton* toggle = tile->AddHoverToggleButton(std::move(options));
    Point({100, 100});
    Draw();
    Point({209, 50});
    EXPECT_FALSE(tile->OnClick());
    EXPECT_TRUE(toggle->IsToggled());
    EXPECT_EQ(clicks, 1);
}

// Menu

TEST_F(TileControlsTest, AClickOnAMenuItemRunsItAndClosesTheMenu) {
    MakeWithMenu();
    const SDL_Point second = CentreOf(*tile->GetMenu().GetItems()[1]);
    Point(second);
    EXPECT_FALSE(tile->OnClick());
    EXPECT_EQ(itemClicks, std::vector<int>{1});
    EXPECT_FALSE(tile->GetMenu().visible);
}

TEST_F(TileControlsTest, AClickBesideTheOpenMenuClosesItAndIsNotTheTiles) {
    MakeWithMenu();
    Point({30, 150});
    EXPECT_FALSE(tile->OnClick());
    EXPECT_FALSE(tile->GetMenu().visible);
    EXPECT_TRUE(itemClicks.empty());
    EXPECT_TRUE(tile->OnClick());
}

TEST_F(TileControlsTest, AClickOnTheMenuButtonLeavesTheMenuToTheButton) {
    MakeWithMenu();
    Point({209, 45});
    EXPECT_FALSE(tile->OnClick());
    EXPECT_EQ(clicks, 1);
    EXPECT_TRUE(tile->GetMenu().visible);
}

TEST_F(TileControlsTest, AMenuButtonThatIsInNoListKeepsTheMenuOpen) {
    MakeWithMenu();
    UI::Button own(nullptr, {});
    own.hovered = true;
    tile->SetMenuButton(&own);
    EXPECT_EQ(tile->GetMenuButton(), &own);
    Point({30, 150});
    EXPECT_FALSE(tile->OnClick());
    EXPECT_TRUE(tile->GetMenu().visible);
}

TEST_F(TileControlsTest, AClickOnTheMenusScrollbarDragsItAndKeepsTheMenu) {
    MakeWithMenu(9);
    const UI::VideoScrollbar& scrollbar = tile->GetMenu().GetScrollbar();
    ASSERT_TRUE(scrollbar.visible);
    Point({scrollbar.rect.x + 1, scrollbar.rect.y + 1});
    ASSERT_TRUE(scrollbar.hovered);
    EXPECT_FALSE(tile->OnClick());
    EXPECT_TRUE(scrollbar.IsDragging());
    EXPECT_TRUE(tile->GetMenu().visible);
    // A click elsewhere lets go of it.
    tile->GetMenu().GetScrollbar().hovered = false;
    tile->GetMenu().hovered = false;
    EXPECT_FALSE(tile->OnClick());
    EXPECT_FALSE(scrollbar.IsDragging());
    EXPECT_FALSE(tile->GetMenu().visible);
}

TEST_F(TileControlsTest, AMenuThatIsHiddenTakesNoClick) {
    MakeWithMenu();
    const SDL_Point first = CentreOf(*tile->GetMenu().GetItems()[0]);
    tile->GetMenu().SetVisible(false);
    Point(first);
    EXPECT_TRUE(tile->OnClick());
    EXPECT_TRUE(itemClicks.empty());
}

TEST_F(TileControlsTest, AnItemMayRemoveTheTileThatItBelongsTo) {
    Make();
    AddMenuButton();
    tile->GetMenu().AddButton("icons/spotlight.png", "Remove", [this] {
        tile->ReleaseGraphics();
        tile.reset();
    });
    Point({100, 100});
    tile->GetMenu().SetVisible(true);
    Draw();
    Point(CentreOf(*tile->GetMenu().GetItems()[0]));
    EXPECT_FALSE(tile->OnClick());
    EXPECT_EQ(tile, nullptr);
}

// Panel

TEST_F(TileControlsTest, AClickInsideTheOpenPanelIsThePanels) {
    Make();
    AddConnectionButton();
    tile->GetPanel().SetVisible(true);
    Draw();
    Point({100, 100});
    EXPECT_FALSE(tile->OnClick());
    EXPECT_TRUE(tile->GetPanel().visible);
}

TEST_F(TileControlsTest, ThePanelsOwnButtonClosesIt) {
    Make();
    tile->GetPanel().SetVisible(true);
    Draw();
    // A tenth of the width large, a twentieth from the corner.
    Point({20 + 213 - 10 - 10, 30 + 10 + 10});
    EXPECT_FALSE(tile->OnClick());
    EXPECT_FALSE(tile->GetPanel().visible);
}

TEST_F(TileControlsTest, AClickOutsideTheOpenPanelIsTheTiles) {
    Make();
    AddMenuButton()->hovered = true;
    tile->GetPanel().SetVisible(true);
    Draw();
    Point({600, 400});
    EXPECT_TRUE(tile->OnClick());
    // The tile has moved on since its panel was drawn.
    tile->displayRect = {300, 200, 213, 160};
    Point({400, 300});
    ASSERT_TRUE(tile->hovered);
    EXPECT_TRUE(tile->OnClick());
    EXPECT_TRUE(tile->GetPanel().visible);
    EXPECT_EQ(clicks, 0);
}

}  // namespace
}  // namespace Corvanta::Video
