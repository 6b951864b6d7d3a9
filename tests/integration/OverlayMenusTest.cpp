#include "integration/OverlayMenus.h"

#include <memory>
#include <optional>
#include <vector>

#include "tests/fake_platform/AllocationCounter.h"
#include "tests/integration/MenuTestBase.h"

namespace Corvanta::UI {
namespace {

using Testing::AllocationCounter;
using Testing::Calls;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Testing::kSomeIcon;

// Of a menu at (100, 100): its first and second row, and a point outside.
constexpr SDL_Point kFirstRow{200, 130};
constexpr SDL_Point kSecondRow{200, 178};
constexpr SDL_Point kOutside{20, 20};

class OverlayMenusTest : public Testing::ToolbarMenuTest {
protected:
    OverlayMenusTest() {
        overlays.SetToolbarRefresh([this] { steps.emplace_back("refresh"); });
    }
    // Two rows that write down their click, drawn at (100, 100), in the group.
    std::unique_ptr<Menu> AddMenu(const std::string& name, SDL_Point topLeft = {100, 100}) {
        auto menu = MakeMenu(0);
        for (int row = 1; row <= 2; ++row) {
            AddRow(*menu, [this, step = name + " " + std::to_string(row)] { steps.push_back(step); });
        }
        menu->SetAnchorElement(AddToBar(bar));
        Open(*menu);
        menu->Render(Renderer(), topLeft);
        overlays.Add(menu.get());
        return menu;
    }
    bool Press(SDL_Point point) {
        overlays.OnHover(point);
        return overlays.OnClick();
    }

    OverlayMenus overlays;
    std::vector<std::string> steps;
};

TEST_F(OverlayMenusTest, TakesNoPressWhileNoMenuIsOpen) {
    EXPECT_FALSE(Press(kFirstRow));
    EXPECT_FALSE(overlays.AnyVisible());
    const auto menu = AddMenu("menu");
    menu->SetVisible(false);
    EXPECT_FALSE(overlays.AnyVisible());
    EXPECT_FALSE(Press(kFirstRow));
    EXPECT_THAT(steps, IsEmpty());
}

TEST_F(OverlayMenusTest, ClosesAMenuByAPressElsewhere) {
    const auto menu = AddMenu("menu");
    EXPECT_TRUE(overlays.AnyVisible());
    EXPECT_TRUE(Press(kOutside));
    EXPECT_FALSE(menu->visible);
    EXPECT_THAT(steps, ElementsAre("refresh"));
    EXPECT_FALSE(Press(kOutside));
}

TEST_F(OverlayMenusTest, ClicksTheItemAndClosesItsMenu) {
    const auto menu = AddMenu("menu");
    EXPECT_TRUE(Press(kSecondRow));
    EXPECT_FALSE(menu->visible);
    EXPECT_THAT(steps, ElementsAre("refresh", "menu 2"));
}

TEST_F(OverlayMenusTest, LeavesAMenuToItsOwner) {
    const auto menu = AddMenu("menu");
    menu->GetAnchorElement()->hovered = true;
    EXPECT_TRUE(overlays.OnClick());
    EXPECT_TRUE(menu->visible);
    EXPECT_THAT(steps, IsEmpty());
    EXPECT_TRUE(overlays.AnyOwnerHovered());
    menu->GetAnchorElement()->hovered = false;
    EXPECT_FALSE(overlays.AnyOwnerHovered());
}

TEST_F(OverlayMenusTest, KnowsAnOwnerUnderThePointerWhoseMenuIsClosed) {
    const auto menu = AddMenu("menu");
    menu->SetVisible(false);
    menu->GetAnchorElement()->hovered = true;
    EXPECT_TRUE(overlays.AnyOwnerHovered());
}

TEST_F(OverlayMenusTest, ClosesOneMenuWhenTheOwnerOfAnotherIsPressed) {
    const auto first = AddMenu("first");
    const auto second = AddMenu("second", {600, 100});
    second->SetVisible(false);
    second->GetAnchorElement()->hovered = true;
    EXPECT_TRUE(overlays.OnClick());
    EXPECT_FALSE(first->visible);
    EXPECT_TRUE(overlays.AnyOwnerHovered());
}

TEST_F(OverlayMenusTest, KeepsAMenuOpenWhoseChildHasThePointer) {
    const auto parent = AddMenu("parent");
    const auto child = AddMenu("child", {600, 100});
    child->SetAnchorElement(parent->GetItems()[0]);
    EXPECT_TRUE(Press({700, 130}));
    EXPECT_TRUE(parent->visible);
    EXPECT_FALSE(child->visible);
    EXPECT_THAT(steps, ElementsAre("refresh", "child 1"));
}

TEST_F(OverlayMenusTest, KeepsParentAndChildOpenForThePressOfTheChildsOwner) {
    const auto parent = AddMenu("parent");
    const auto child = AddMenu("child", {600, 100});
    child->SetAnchorElement(parent->GetItems()[0]);
    EXPECT_TRUE(Press(kFirstRow));
    EXPECT_TRUE(parent->visible);
    EXPECT_TRUE(child->visible);
    EXPECT_THAT(steps, ElementsAre("parent 1"));
    // With the child closed too: the press is about to open it.
    child->SetVisible(false);
    EXPECT_TRUE(Press(kFirstRow));
    EXPECT_TRUE(parent->visible);
}

TEST_F(OverlayMenusTest, ClosesParentAndChildForAnotherItem) {
    const auto parent = AddMenu("parent");
    const auto child = AddMenu("child", {600, 100});
    child->SetAnchorElement(parent->GetItems()[0]);
    EXPECT_TRUE(Press(kSecondRow));
    EXPECT_FALSE(parent->visible);
    EXPECT_FALSE(child->visible);
    EXPECT_THAT(steps, ElementsAre("refresh", "parent 2"));
}

TEST_F(OverlayMenusTest, SeesNothingUnderThePointerInAClosedMenu) {
    const auto parent = AddMenu("parent");
    const auto child = AddMenu("child", {600, 100});
    child->SetAnchorElement(parent->GetItems()[0]);
    overlays.OnHover(kFirstRow);
    EXPECT_TRUE(parent->hovered);
    EXPECT_TRUE(overlays.AnyOwnerHovered());
    parent->SetVisible(false);
    overlays.OnHover(kFirstRow);
    EXPECT_FALSE(parent->hovered);
    EXPECT_FALSE(parent->GetItems()[0]->hovered);
    EXPECT_FALSE(overlays.AnyOwnerHovered());
}

TEST_F(OverlayMenusTest, LivesWithoutOwnersAndWithoutAToolbar) {
    OverlayMenus bare;
    const auto menu = MakeMenu(1);
    Open(*menu);
    bare.Add(nullptr);
    bare.Add(menu.get());
    EXPECT_FALSE(bare.AnyOwnerHovered());
    EXPECT_TRUE(bare.OnClick());
    EXPECT_FALSE(menu->visible);
}

TEST_F(OverlayMenusTest, PassesAClickOnOnceThoughAMenuWasAddedTwice) {
    const auto menu = AddMenu("menu");
    overlays.Add(menu.get());
    Press(kFirstRow);
    EXPECT_THAT(steps, ElementsAre("refresh", "menu 1"));
}

TEST_F(OverlayMenusTest, SurvivesAnItemThatDestroysItsMenu) {
    auto menu = MakeMenu(0);
    AddRow(*menu, [&menu] { menu.reset(); });
    Open(*menu);
    menu->Render(Renderer(), {100, 100});
    overlays.Add(menu.get());
    EXPECT_TRUE(Press(kFirstRow));
    EXPECT_EQ(menu, nullptr);
}

TEST_F(OverlayMenusTest, SurvivesAnItemThatClearsTheGroupAndDestroysAllMenus) {
    std::vector<std::unique_ptr<Menu>> menus;
    int clicks = 0;
    // Both lie under the pointer.
    for (int i = 0; i < 2; ++i) {
        menus.push_back(MakeMenu(0));
        AddRow(*menus.back(), [&] {
            ++clicks;
            overlays.Clear();
            menus.clear();
        });
        Open(*menus.back());
        menus.back()->Render(Renderer(), {100, 100});
        overlays.Add(menus.back().get());
    }
    EXPECT_TRUE(Press(kFirstRow));
    EXPECT_EQ(clicks, 1);
    EXPECT_FALSE(overlays.AnyVisible());
}

TEST_F(OverlayMenusTest, SurvivesAnItemThatDestroysTheGroup) {
    auto group = std::make_unique<OverlayMenus>();
    std::vector<std::unique_ptr<Menu>> menus;
    for (int i = 0; i < 2; ++i) {
        menus.push_back(MakeMenu(0));
        AddRow(*menus.back(), [&] {
            group.reset();
            menus.clear();
        });
        Open(*menus.back());
        menus.back()->Render(Renderer(), {100, 100});
        group->Add(menus.back().get());
    }
    group->OnHover(kFirstRow);
    EXPECT_TRUE(group->OnClick());
    EXPECT_EQ(group, nullptr);
}

TEST_F(OverlayMenusTest, SurvivesARefreshThatClearsTheGroup) {
    const auto menu = AddMenu("menu");
    overlays.SetToolbarRefresh([this] { overlays.Clear(); });
    EXPECT_TRUE(Press(kFirstRow));
    EXPECT_THAT(steps, IsEmpty());
}

TEST_F(OverlayMenusTest, ScalesAndReleasesEveryMenu) {
    const auto first = AddMenu("first");
    const auto second = AddMenu("second", {600, 100});
    overlays.SetContentScale(2.0F);
    EXPECT_EQ(first->width, 2 * Testing::kMenuWidth);
    EXPECT_EQ(second->GetItemHeight(), 96);
    static_cast<ToggleButton*>(first->GetItems()[0])->SetToggled(false);
    ASSERT_NE(static_cast<ToggleButton*>(first->GetItems()[0])->GetOffTexture(), nullptr);
    overlays.ReleaseTextures();
    for (const auto* menu : {first.get(), second.get()}) {
        EXPECT_EQ(static_cast<ToggleButton*>(menu->GetItems()[0])->GetOffTexture(), nullptr);
    }
}

TEST_F(OverlayMenusTest, AllocatesNothingWhileNothingIsPressed) {
    const auto first = AddMenu("first");
    const auto second = AddMenu("second", {600, 100});
    second->SetVisible(false);
    AllocationCounter::Start();
    for (int i = 0; i < 10; ++i) {
        overlays.OnHover(i % 2 == 0 ? kFirstRow : kOutside);
        if (overlays.AnyOwnerHovered() || !overlays.AnyVisible()) steps.clear();
    }
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
}

}  // namespace
}  // namespace Corvanta::UI
