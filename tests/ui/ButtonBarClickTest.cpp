#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "tests/fake_platform/SdlRecorder.h"
#include "tests/ui/BarTest.h"
#include "tests/ui/ControlSurroundings.h"
#include "tests/ui/TextCalls.h"
#include "ui/ButtonBar.h"
#include "ui/FontManager.h"
#include "ui/TextureCache.h"

namespace Corvanta::UI {
namespace {

using Testing::CentreOf;
using ::testing::ElementsAre;
using Testing::kBarMiddleY;
using Testing::kBarWidth;
using Testing::kSomeIcon;
using Testing::SlotElement;

using ButtonBarClickTest = Testing::BarTest;

TEST_F(ButtonBarClickTest, AddsAndTakesRightControlsAsTheyAreWanted) {
    const auto bar = MakeBar();
    ToggleButton* const standing = AddToggle(*bar, BarGroup::Right);
    ToggleButton* const one = AddToggle(*bar, static_cast<BarGroup>(0));
    ToggleButton* const two = AddToggle(*bar, static_cast<BarGroup>(0));
    bar->UpdateRightGroup({{one, true}, {two, false}});
    bar->UpdateRightGroup({{one, true}, {two, false}});
    Draw(*bar);
    EXPECT_THAT(Middles<ToggleButton>({standing, one}),
                ElementsAre(SDL_Point{1234, kBarMiddleY}, SDL_Point{1174, kBarMiddleY}));
    EXPECT_EQ(two->rect.w, 0);
    EXPECT_EQ(Copies().size(), 2U);
    bar->UpdateRightGroup({{standing, false}, {two, true}});
    Draw(*bar);
    EXPECT_THAT(Middles<ToggleButton>({one, two}),
                ElementsAre(SDL_Point{1234, kBarMiddleY}, SDL_Point{1174, kBarMiddleY}));
    EXPECT_EQ(Copies().size(), 2U);
    bar->UpdateRightGroup({});
    Draw(*bar);
    EXPECT_EQ(Copies().size(), 2U);
}

TEST_F(ButtonBarClickTest, AppendsRightControlsInTheOrderInWhichTheyWereMade) {
    // Each button is made where the last place has just become free: at falling addresses, mostly.
    std::vector<std::unique_ptr<std::byte[]>> places;
    std::vector<std::unique_ptr<std::byte[]>> walls;
    for (int i = 0; i < 8; ++i) {
        places.push_back(std::make_unique<std::byte[]>(sizeof(ToggleButton)));
        walls.push_back(std::make_unique<std::byte[]>(64));
    }
    const auto bar = MakeBar();
    std::vector<ToggleButton*> made;
    std::map<ToggleButton*, bool> wanted;
    while (!places.empty()) {
        places.pop_back();
        made.push_back(AddToggle(*bar, static_cast<BarGroup>(0)));
    }
    for (ToggleButton* button : made) wanted[button] = true;
    bar->UpdateRightGroup(wanted);
    Draw(*bar);
    for (size_t i = 1; i < made.size(); ++i) EXPECT_LT(made[i]->rect.x, made[i - 1]->rect.x) << i;
}

TEST_F(ButtonBarClickTest, PassesTheMouseToAllThatItShows) {
    const auto bar = MakeBar();
    auto slot = std::make_unique<SlotElement>(63);
    const SlotElement* const record = slot.get();
    bar->SetRecordButton(std::move(slot));
    TextButton* const text = bar->SetTextButton("Text", [] {});
    const std::vector<ToggleButton*> buttons = {
        AddToggle(*bar, BarGroup::Left), AddToggle(*bar, BarGroup::Centre), AddToggle(*bar, BarGroup::Right)};
    Draw(*bar);
    Draw(*bar);
    for (const ToggleButton* button : buttons) {
        bar->OnHover(CentreOf(*button));
        EXPECT_TRUE(button->hovered);
        EXPECT_TRUE(bar->hovered);
    }
    bar->OnHover(CentreOf(*text));
    EXPECT_TRUE(text->hovered);
    EXPECT_FALSE(buttons[2]->hovered);
    EXPECT_EQ(record->hovers, 4);
    EXPECT_EQ(record->lastMouse, CentreOf(*text));
    bar->OnHover({kBarWidth, kBarMiddleY});
    EXPECT_FALSE(bar->hovered);
}

TEST_F(ButtonBarClickTest, GivesAClickToTheFirstHoveredButtonAlone) {
    const auto bar = MakeBar();
    std::vector<int> clicks;
    const auto add = [&](BarGroup group, int number) {
        return bar->AddButton(
            kSomeIcon, "", [&clicks, number] { clicks.push_back(number); }, group, ButtonStyle::Plain, "");
    };
    const Button* const right = add(BarGroup::Right, 5);
    const Button* const centre = add(BarGroup::Centre, 3);
    add(BarGroup::Left, 1);
    // Buttons of 68 pixels overlap in steps of 46.
    add(BarGroup::Left, 2);
    EXPECT_FALSE(bar->OnClick());
    Draw(*bar);
    bar->OnHover({70, kBarMiddleY});
    EXPECT_TRUE(bar->OnClick());
    EXPECT_THAT(clicks, ElementsAre(1));
    bar->OnHover(CentreOf(*centre));
    EXPECT_TRUE(bar->OnClick());
    bar->OnHover(CentreOf(*right));
    EXPECT_TRUE(bar->OnClick());
    EXPECT_THAT(clicks, ElementsAre(1, 3, 5));
    bar->OnHover({400, kBarMiddleY});
    EXPECT_FALSE(bar->OnClick());
    bar->OnHover({46, 10});
    EXPECT_FALSE(bar->OnClick());
    EXPECT_EQ(clicks.size(), 3U);
}

TEST_F(ButtonBarClickTest, TriesRecordAndThenTextButtonAfterTheGroups) {
    const auto bar = MakeBar();
    auto slot = std::make_unique<SlotElement>(63);
    SlotElement* const record = slot.get();
    bar->SetRecordButton(std::move(slot));
    int textClicks = 0;
    TextButton* const text = bar->SetTextButton("Text", [&textClicks] { ++textClicks; });
    int clicks = 0;
    ToggleButton* const button = AddToggle(*bar, BarGroup::Right, [&clicks] { ++clicks; });
    bar->hovered = true;
    button->hovered = record->hovered = text->hovered = true;
    EXPECT_TRUE(bar->OnClick());
    EXPECT_EQ(clicks, 1);
    button->hovered = false;
    // Taken, whatever the element answers.
    EXPECT_TRUE(bar->OnClick());
    EXPECT_EQ(record->clicks, 1);
    record->hovered = false;
    EXPECT_TRUE(bar->OnClick());
    EXPECT_EQ(textClicks, 1);
    text->hovered = false;
    EXPECT_FALSE(bar->OnClick());
}

TEST_F(ButtonBarClickTest, HoversAndClicksOnlyTheCompactSetWhileCompact) {
    const auto bar = MakeBar("", 300);
    int compactClicks = 0;
    int otherClicks = 0;
    const auto count = [&otherClicks] { ++otherClicks; };
    const auto centre = AddToggles(*bar, BarGroup::Centre, 4);
    ToggleButton* const compact = AddToggle(*bar, static_cast<BarGroup>(0), [&] { ++compactClicks; });
    ToggleButton* const left = AddToggle(*bar, BarGroup::Left, count);
    bar->AddCompactButton(compact);
    TextButton* const text = bar->SetTextButton("Text", count);
    auto slot = std::make_unique<SlotElement>(63);
    SlotElement* const record = slot.get();
    bar->SetRecordButton(std::move(slot));
    Draw(*bar);
    ASSERT_TRUE(bar->IsCompact());
    bar->OnHover(CentreOf(*compact));
    EXPECT_TRUE(compact->hovered);
    EXPECT_EQ(record->hovers, 0);
    left->hovered = text->hovered = record->hovered = true;
    EXPECT_TRUE(bar->OnClick());
    EXPECT_EQ(compactClicks, 1);
    compact->hovered = false;
    EXPECT_FALSE(bar->OnClick());
    EXPECT_EQ(otherClicks, 0);
    EXPECT_EQ(record->clicks, 0);
}

TEST_F(ButtonBarClickTest, RaisesOnAClickWithoutAFunction) {
    const auto bar = MakeBar();
    Button* const button = bar->AddButton(kSomeIcon, "", {}, BarGroup::Left, ButtonStyle::Plain, "");
    Draw(*bar);
    bar->OnHover(CentreOf(*button));
    EXPECT_THROW(bar->OnClick(), std::bad_function_call);
}

TEST_F(ButtonBarClickTest, MayBeDestroyedByAClick) {
    auto bar = MakeBar();
    Button* const button = bar->AddButton(
        kSomeIcon, "", [&bar] { bar.reset(); }, BarGroup::Left, ButtonStyle::Plain, "");
    Draw(*bar);
    bar->OnHover(CentreOf(*button));
    EXPECT_TRUE(bar->OnClick());
    EXPECT_EQ(bar, nullptr);
}

TEST_F(ButtonBarClickTest, MayBeDestroyedByAClickByLabelOrOnItsText) {
    auto bar = MakeBar();
    bar->AddButton(
        kSomeIcon, "Leave", [&bar] { bar.reset(); }, BarGroup::Centre, ButtonStyle::Plain, "");
    bar->ClickCentreButton("Leave");
    EXPECT_EQ(bar, nullptr);
    bar = MakeBar();
    TextButton* const text = bar->SetTextButton("Leave", [&bar] { bar.reset(); });
    bar->hovered = text->hovered = true;
    EXPECT_TRUE(bar->OnClick());
    EXPECT_EQ(bar, nullptr);
}

TEST_F(ButtonBarClickTest, LetsAClickTakeItsButtonOutOfTheRightGroup) {
    const auto bar = MakeBar();
    ToggleButton* button = nullptr;
    button = AddToggle(*bar, BarGroup::Right, [&] { bar->UpdateRightGroup({{button, false}}); });
    Draw(*bar);
    bar->OnHover(CentreOf(*button));
    EXPECT_TRUE(bar->OnClick());
    EXPECT_FALSE(bar->OnClick());
    Draw(*bar);
    EXPECT_TRUE(Copies().empty());
}

TEST_F(ButtonBarClickTest, ShowsTheMouseToTheCompactSetAloneOnceItIsCompact) {
    const auto bar = MakeBar();
    const std::vector<ToggleButton*> grouped = {
        AddToggle(*bar, BarGroup::Left), AddToggle(*bar, BarGroup::Centre), AddToggle(*bar, BarGroup::Right)};
    TextButton* const text = bar->SetTextButton("Text", [] {});
    Draw(*bar);
    Draw(*bar);
    ASSERT_FALSE(bar->IsCompact());
    bar->SetWidth(60);
    Draw(*bar);
    ASSERT_TRUE(bar->IsCompact());
    for (const ToggleButton* button : grouped) {
        ASSERT_GT(button->rect.w, 0);
        bar->OnHover(CentreOf(*button));
        EXPECT_FALSE(button->hovered);
    }
    ASSERT_GT(text->rect.w, 0);
    bar->OnHover(CentreOf(*text));
    EXPECT_FALSE(text->hovered);
    bar->OnHover(CentreOf(*grouped[0]));
    EXPECT_TRUE(bar->hovered);
    EXPECT_FALSE(bar->OnClick());
}

TEST_F(ButtonBarClickTest, IgnoresACompactButtonThatIsNone) {
    const auto bar = MakeBar("", 60);
    AddToggles(*bar, BarGroup::Centre, 3);
    bar->AddCompactButton(nullptr);
    Draw(*bar);
    ASSERT_TRUE(bar->IsCompact());
    bar->OnHover({30, 640});
    EXPECT_FALSE(bar->OnClick());
    bar->ReleaseTextures();
}

TEST_F(ButtonBarClickTest, GivesItsTextButtonAFontSizeOf14) {
    const auto bar = MakeBar();
    TextButton* const text = bar->SetTextButton("Click", [] {});
    TextTexture same;
    same.SetText("Click");
    same.SetFontName(FontBolder);
    same.SetFontSize(14);
    EXPECT_EQ(text->GetText().MeasureText().x, same.MeasureText().x);
}

TEST_F(ButtonBarClickTest, ReplacesItsTextButton) {
    const auto bar = MakeBar();
    bar->SetTextButton("One", [] {});
    bar->SetTextButton("Two", [] {});
    Draw(*bar);
    EXPECT_THAT(Testing::RasterisedTexts(), ElementsAre("Two"));
}

TEST_F(ButtonBarClickTest, ComesBackOnAnotherRenderer) {
    const auto bar = MakeBar("Some title");
    bar->SetTextButton("Click", [] {});
    const ToggleButton* const compact = AddToggle(*bar, static_cast<BarGroup>(0));
    bar->AddCompactButton(const_cast<ToggleButton*>(compact));
    bar->AddToggleButton(
        {.offIconName = kSomeIcon, .onIconName = kSomeIcon, .offLabel = "Off", .showLabel = true},
        BarGroup::Left);
    bar->AddButton(
        kSomeIcon, "Label", [] {}, BarGroup::Right, ButtonStyle::Plain, "");
    Draw(*bar);
    Draw(*bar);
    const auto before = Read();
    bar->ReleaseTextures();
    // Of texts nothing is left.
    ReleaseRendererTextures(Renderer());
    EXPECT_EQ(Testing::Sdl().LiveTextures(), 0U);
    ReplaceRenderer();
    Draw(*bar);
    Draw(*bar);
    EXPECT_TRUE(SamePicture(Read(), before));
    bar->SetWidth(200);
    Draw(*bar);
    ASSERT_TRUE(bar->IsCompact());
    EXPECT_EQ(Copies().size(), 1U);
}

TEST_F(ButtonBarClickTest, ForgetsThePicturesOfBorrowedButtonsToo) {
    const auto bar = MakeBar("", 200);
    Button borrowed(Renderer(), {.width = 28,
                                 .height = 28,
                                 .iconName = kSomeIcon,
                                 .label = "",
                                 .onClick = [] {},
                                 .labelPlace = LabelPlace::Below,
                                 .style = ButtonStyle::Plain,
                                 .tooltip = "",
                                 .hoverIconName = ""});
    bar->AddCompactButton(&borrowed);
    bar->SetWidth(60);
    Draw(*bar);
    ASSERT_TRUE(bar->IsCompact());
    bar->ReleaseTextures();
    EXPECT_EQ(borrowed.GetTexture(), nullptr);
}

TEST_F(ButtonBarClickTest, DrawsNothingWrongAtAnySize) {
    for (const int height : {0, 1, -85, 30000}) {
        for (const int width : {0, -1280, 30000}) {
            SCOPED_TRACE(::testing::Message() << width << " x " << height);
            ButtonBar bar(Renderer(), width, height, "Some title", false);
            bar.AddButton(
                kSomeIcon, "Label", [] {}, BarGroup::Left, ButtonStyle::Row, "Tip");
            AddToggles(bar, BarGroup::Centre, 3);
            AddToggles(bar, BarGroup::Right, 3);
            bar.AddCompactButton(AddToggle(bar, BarGroup::Right));
            bar.SetTextButton("Text", [] {});
            for (int i = 0; i < 3; ++i) {
                Draw(bar, {0, 0});
                bar.OnHover({46, 40});
            }
            EXPECT_EQ(bar.rect, (SDL_Rect{0, 0, width, height}));
            // Text of 3,600 pixels is nobody's bar.
            if (height < 30000) bar.SetHeight(height);
            bar.SetVisible(false);
            clock_.TurnMs(4125);
            Draw(bar, {0, 0});
        }
    }
}

}  // namespace
}  // namespace Corvanta::UI
