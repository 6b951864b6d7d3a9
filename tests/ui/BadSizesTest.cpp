// Controls of sizes and texts that no design has: each comes out as its arithmetic says, or draws nothing.
#include <string>
#include <vector>

#include "tests/ui/ToolkitTest.h"
#include "ui/ButtonWithState.h"
#include "ui/Divider.h"
#include "ui/ToggleButton.h"

namespace Corvanta::UI {
namespace {

using Testing::Fake;
using Testing::kSquareIcon;

constexpr SDL_Point kCentre{160, 120};
constexpr int kSmallSizes[] = {0, 1, -1, -2, -61, -30000};
// Each drawing costs the software renderer a raster of its icon's size.
constexpr int kLargeSize = 30000;

class BadSizes : public Testing::ToolkitTest {
protected:
    // At first idle, then under the pointer, with lines that cut it.
    template <typename Control>
    void Draw(Control& control) {
        control.Render(Renderer(), kCentre);
        control.hovered = true;
        control.Render(Renderer(), kCentre);
        EXPECT_TRUE(DrawColourIsZero());
    }
};

TEST_F(BadSizes, PlaceAButton) {
    for (const LabelPlace place : {LabelPlace::Beside, LabelPlace::Below}) {
        for (const int size : kSmallSizes) {
            for (int style = 0; style <= 4; ++style) {
                Button::Options options;
                options.width = size;
                options.height = size;
                options.iconName = kSquareIcon;
                options.label = "Settings";
                options.tooltip = "Tip";
                options.labelPlace = place;
                options.style = static_cast<ButtonStyle>(style);
                Button button(Renderer(), std::move(options));
                Draw(button);
                if (place == LabelPlace::Beside) {
                    EXPECT_EQ(button.rect, (SDL_Rect{160 - size / 2, 120 - size / 2, size, size}));
                }
                button.SetClipTop(100);
                Draw(button);
                button.SetClipTop(0);
                button.SetClipBottom(140);
                Draw(button);
            }
        }
    }
}

TEST_F(BadSizes, PlaceAToggle) {
    for (const LabelPlace place : {LabelPlace::Beside, LabelPlace::Below}) {
        for (const int size : kSmallSizes) {
            ToggleButton::Options options;
            options.width = size;
            options.height = size;
            options.offIconName = kSquareIcon;
            options.onIconName = kSquareIcon;
            options.offLabel = "Settings";
            options.showLabel = true;
            options.labelPlace = place;
            ToggleButton button(Renderer(), std::move(options));
            button.SetBadge(Renderer(), kSquareIcon);
            button.SetShowBadge(true);
            button.SetShowTooltip(true);
            Draw(button);
            button.SetClipTop(100);
            Draw(button);
        }
    }
}

TEST_F(BadSizes, PlaceAButtonWithStates) {
    for (const auto place : {ButtonWithState::IconPlace::Left, ButtonWithState::IconPlace::Centred}) {
        for (const int size : kSmallSizes) {
            for (const float scale : {1.0F, 0.0F, -1.0F, 100.0F}) {
                ButtonWithState::Options options;
                options.width = size;
                options.height = size;
                options.offIconName = kSquareIcon;
                options.offTooltip = "Settings";
                options.iconPlace = place;
                options.style = ButtonWithState::Style::FillAndOutline;
                ButtonWithState button(Renderer(), std::move(options));
                button.SetScale(scale);
                Draw(button);
                const int side = static_cast<int>(static_cast<float>(size) * scale);
                EXPECT_EQ(button.rect, (SDL_Rect{160 - side / 2, 120 - side / 2, side, side}));
            }
        }
    }
}

TEST_F(BadSizes, PlaceADivider) {
    for (const int size : kSmallSizes) {
        Divider divider(size, size);
        Draw(divider);
        EXPECT_EQ(divider.rect, (SDL_Rect{160 - size / 2, 120 - size / 2, size, size}));
    }
}

TEST_F(BadSizes, OfTextsEndInALabelAndATooltip) {
    std::string words;
    while (words.size() < 100000) words += "lorem ipsum ";
    const std::string texts[] = {words, std::string(100000, '\xFF'), "\xC3", "\xE6\x9D\xF0", " ", "\n"};
    for (const std::string& text : texts) {
        Button::Options options;
        options.width = 100;
        options.height = 60;
        options.iconName = kSquareIcon;
        options.label = text;
        options.tooltip = text;
        options.labelPlace = text.size() > 10 ? LabelPlace::Below : LabelPlace::Beside;
        Button button(Renderer(), std::move(options));
        EXPECT_TRUE(button.MatchesLabel(text));
        Draw(button);
    }
    EXPECT_TRUE(Fake().Logs().empty());
}

TEST_F(BadSizes, LeaveALabelOfAHugeButtonOut) {
    Button::Options options;
    options.width = kLargeSize;
    options.height = kLargeSize;
    options.iconName = kSquareIcon;
    options.label = "Settings";
    options.tooltip = "Settings";
    options.style = ButtonStyle::FillAndOutline;
    Button button(Renderer(), std::move(options));
    button.hovered = true;
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(button.rect, (SDL_Rect{-14840, -14880, kLargeSize, kLargeSize}));
    EXPECT_TRUE(Testing::RasterisedTexts().empty());
}

TEST_F(BadSizes, LeaveALabelOfAHugeToggleOut) {
    ToggleButton::Options options;
    options.width = kLargeSize;
    options.height = kLargeSize;
    options.offIconName = kSquareIcon;
    options.onIconName = kSquareIcon;
    options.offLabel = "Settings";
    options.showLabel = true;
    options.labelPlace = LabelPlace::Below;
    ToggleButton button(Renderer(), std::move(options));
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(button.rect.h, kLargeSize);
    EXPECT_TRUE(Testing::RasterisedTexts().empty());
}

TEST_F(BadSizes, KeepTheTooltipOfAHugeButtonWithStates) {
    ButtonWithState::Options options;
    options.width = kLargeSize;
    options.height = kLargeSize;
    options.offIconName = kSquareIcon;
    options.offTooltip = "Settings";
    options.iconPlace = ButtonWithState::IconPlace::Centred;
    options.style = ButtonWithState::Style::Fill;
    ButtonWithState button(Renderer(), std::move(options));
    button.hovered = true;
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(button.rect.h, kLargeSize);
    EXPECT_EQ(Testing::RasterisedTexts(), std::vector<std::string>{"Settings"});
}

TEST_F(BadSizes, PlaceAHugeDivider) {
    Divider divider(kLargeSize, kLargeSize);
    Draw(divider);
    EXPECT_EQ(divider.rect, (SDL_Rect{-14840, -14880, kLargeSize, kLargeSize}));
}

}  // namespace
}  // namespace Corvanta::UI
