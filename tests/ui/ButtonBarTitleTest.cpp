#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "tests/fake_platform/CallLog.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "tests/ui/ControlSurroundings.h"
#include "tests/ui/TextCalls.h"
#include "ui/ButtonBar.h"

namespace Corvanta::UI {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Testing::RasterisedTexts;

// In an empty bar of 1280 x 85 the title has 583 pixels from 68 on, and 42 is the middle line.
constexpr int kSpace = 583;
constexpr int kSpaceX = 68;
constexpr int kMiddleY = 42;
const std::string kLongTitle =
    "A title of a room with so many words that no bar of this width can ever show them all at once, whatever "
    "size its letters have";

class ButtonBarTitleTest : public Testing::ControlTest {
protected:
    [[nodiscard]] std::unique_ptr<ButtonBar> MakeBar(const std::string& title,
                                                     bool titleCentred = true) const {
        return std::make_unique<ButtonBar>(Renderer(), 1280, 85, title, titleCentred);
    }
    // Where its first text was drawn.
    SDL_Rect DrawTitle(ButtonBar& bar) {
        Wipe();
        bar.Render(Renderer(), {0, 0});
        return Copies().empty() ? SDL_Rect{0, 0, 0, 0} : Copies()[0].destination;
    }
};

TEST_F(ButtonBarTitleTest, StandsInTheMiddleOfItsSpaceOnTheMiddleLine) {
    const auto bar = MakeBar("Meeting room");
    const SDL_Rect title = DrawTitle(*bar);
    ASSERT_GT(title.w, 50);
    EXPECT_EQ(title.x, kSpaceX + (kSpace - title.w) / 2);
    EXPECT_EQ(title.y, kMiddleY - title.h / 2);
}

TEST_F(ButtonBarTitleTest, EndsOnTheMiddleLineUnlessCentred) {
    const auto bar = MakeBar("Meeting room", false);
    const SDL_Rect title = DrawTitle(*bar);
    EXPECT_EQ(title.x, kSpaceX + (kSpace - title.w) / 2);
    EXPECT_EQ(title.y, kMiddleY - title.h);
}

TEST_F(ButtonBarTitleTest, IsWhiteBoldAndOfSize14AtFirst) {
    const auto bar = MakeBar("Meeting room");
    const SDL_Rect title = DrawTitle(*bar);
    TextTexture same;
    same.SetFontName("FKGrotesk-Bolder");
    same.SetFontSize(14);
    same.SetText("Meeting room");
    EXPECT_EQ(title.w, same.MeasureText().x);
    EXPECT_EQ(title.h, same.MeasureText().y);
    const auto rasters = Testing::Calls().Of("TTF_RenderUTF8_Blended");
    ASSERT_EQ(rasters.size(), 1U);
    EXPECT_THAT(rasters[0].arguments, ElementsAre("Meeting room", "255", "255", "255", "255"));
}

TEST_F(ButtonBarTitleTest, IsCutToItsSpaceAndShownWholeUnderTheMouse) {
    const auto bar = MakeBar(kLongTitle);
    const SDL_Rect cut = DrawTitle(*bar);
    EXPECT_NEAR(cut.w, kSpace, kSpace / 8);
    // A cut by an average letter may stick out a little; then it begins where the space does.
    EXPECT_EQ(cut.x, kSpaceX + (kSpace - std::min(cut.w, kSpace)) / 2);
    bar->OnHover({cut.x + 1, cut.y + 1});
    const SDL_Rect whole = DrawTitle(*bar);
    EXPECT_GT(whole.w, kSpace);
    EXPECT_EQ(whole.x, kSpaceX);
    EXPECT_THAT(RasterisedTexts(), ElementsAre(kLongTitle));
    EXPECT_FALSE(bar->IsCompact());
    bar->OnHover({cut.x + 1, 84});
    EXPECT_EQ(DrawTitle(*bar), cut);
}

TEST_F(ButtonBarTitleTest, OfThreeBytesSticksOutOnBothSides) {
    for (const auto& [text, isShort] : {std::pair("WWW", true), std::pair("WWWW", false)}) {
        const auto bar = MakeBar(text);
        // 24 pixels are left for the title.
        bar->SetWidth(360);
        for (int i = 0; i < 3; ++i) {
            bar->AddToggleButton({.offIconName = "none", .onIconName = "none"}, BarGroup::Centre);
        }
        const SDL_Rect title = DrawTitle(*bar);
        EXPECT_FALSE(bar->IsCompact());
        EXPECT_GT(title.w, 24);
        EXPECT_EQ(title.x, isShort ? kSpaceX + (24 - title.w) / 2 : kSpaceX);
    }
}

TEST_F(ButtonBarTitleTest, CountsNoWiderThanItsSpaceAmongWhatMustFit) {
    const auto bar = MakeBar(kLongTitle);
    DrawTitle(*bar);
    EXPECT_FALSE(bar->IsCompact());
}

TEST_F(ButtonBarTitleTest, ChangesWithTheRoomsName) {
    const auto bar = MakeBar("Meeting room");
    DrawTitle(*bar);
    bar->SetTitle("Other");
    EXPECT_EQ(bar->GetTitle(), "Other");
    DrawTitle(*bar);
    EXPECT_THAT(RasterisedTexts(), ElementsAre("Other"));
    bar->SetTitle("Other");
    DrawTitle(*bar);
    EXPECT_THAT(RasterisedTexts(), IsEmpty());
}

TEST_F(ButtonBarTitleTest, LeavesNothingBehindWhenItIsEmptied) {
    const auto bar = MakeBar("Meeting room");
    DrawTitle(*bar);
    bar->SetTitle("");
    EXPECT_EQ(Testing::Sdl().LiveTextures(), 0U);
    DrawTitle(*bar);
    EXPECT_THAT(Copies(), IsEmpty());
    bar->SetTitle("Back");
    DrawTitle(*bar);
    EXPECT_EQ(Copies().size(), 1U);
}

TEST_F(ButtonBarTitleTest, HasTheTextButtonUnderIt) {
    for (const bool centred : {true, false}) {
        const auto bar = MakeBar("Meeting room", centred);
        const TextButton* const text = bar->SetTextButton("Invite others", [] {});
        // Its width is known behind the drawing that makes its raster, and used in the one after.
        DrawTitle(*bar);
        DrawTitle(*bar);
        const SDL_Rect title = DrawTitle(*bar);
        ASSERT_GT(text->rect.w, 20);
        EXPECT_EQ(text->rect.x, kSpaceX + (kSpace - text->rect.w) / 2);
        EXPECT_EQ(text->rect.y, title.y + title.h);
    }
}

TEST_F(ButtonBarTitleTest, MakesRoomForTheWiderOfTitleAndTextButton) {
    const auto bar = MakeBar("");
    for (int i = 0; i < 3; ++i) {
        bar->AddToggleButton({.offIconName = "none", .onIconName = "none"}, BarGroup::Centre);
    }
    const TextButton* const text = bar->SetTextButton("An invitation of quite some length indeed", [] {});
    DrawTitle(*bar);
    const int textWidth = text->GetTextWidth();
    ASSERT_GT(textWidth, 150);
    bar->SetWidth(264 + textWidth);
    DrawTitle(*bar);
    EXPECT_FALSE(bar->IsCompact());
    bar->SetWidth(264 + textWidth - 1);
    DrawTitle(*bar);
    EXPECT_TRUE(bar->IsCompact());
}

TEST_F(ButtonBarTitleTest, IsNotDrawnInACompactBar) {
    const auto bar = MakeBar("Meeting room");
    bar->SetWidth(60);
    DrawTitle(*bar);
    ASSERT_TRUE(bar->IsCompact());
    EXPECT_THAT(Copies(), IsEmpty());
}

}  // namespace
}  // namespace Corvanta::UI
