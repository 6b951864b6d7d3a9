#include "ui/Button.h"

#include <memory>

#include "tests/fake_platform/AllocationCounter.h"
#include "tests/ui/ToolkitTest.h"
#include "ui/TextureCache.h"

namespace Corvanta::UI {
namespace {

using Testing::AllocationCounter;
using Testing::Calls;
using Testing::Fake;
using Testing::kMissingIcon;
using Testing::kOtherIcon;
using Testing::kSquareIcon;
using Testing::kWideIcon;
using Testing::Measurements;
using Testing::RasterisedTexts;
using Testing::Sdl;

constexpr SDL_Color kWhite{255, 255, 255, 255};
constexpr SDL_Color kHighlight{252, 44, 3, 255};
constexpr SDL_Color kHover{255, 255, 255, 30};
constexpr SDL_Color kRowHover{255, 255, 255, 20};
constexpr SDL_Color kPlate{107, 107, 107, 255};

constexpr SDL_Point kCentre{160, 120};
// Of a button of 100 x 60 around the centre.
constexpr SDL_Rect kRect{110, 90, 100, 60};
// Its icon in a row, and in a column without a label.
constexpr SDL_Rect kRowIcon{140, 105, 30, 30};
constexpr SDL_Rect kColumnIcon{150, 110, 20, 20};

Button::Options Row() {
    Button::Options options;
    options.width = 100;
    options.height = 60;
    options.iconName = kSquareIcon;
    options.onClick = [] {};
    return options;
}

Button::Options Column() {
    Button::Options options = Row();
    options.labelPlace = LabelPlace::Below;
    return options;
}

std::string Text(const SDL_Rect& rect) {
    return std::to_string(rect.x) + ' ' + std::to_string(rect.y) + ' ' + std::to_string(rect.w) + ' ' +
           std::to_string(rect.h);
}

class ButtonTest : public Testing::ToolkitTest {
protected:
    // As a tooltip of a button at kRect.
    void ExpectTooltip(const std::string& text) {
        const SDL_Point size = SizeOf(FontBolder, 13, text);
        const SDL_Point place{110 - (size.x - 100) / 2, 56};
        const SDL_Rect plate{static_cast<int>(place.x - 24 * 0.2),
                             static_cast<int>(place.y - (24 - size.y) * 0.5),
                             static_cast<int>(2 * 24 * 0.2 + size.x), 24};
        ExpectFill(plate, kPlate);
        ExpectText(FontBolder, 13, text, place);
    }
};

TEST_F(ButtonTest, IsDrawnAroundItsCentre) {
    Button button(Renderer(), Row());
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(button.rect, kRect);
    ExpectIcon(kSquareIcon, kRowIcon);
    EXPECT_TRUE(DrawnAsExpected());
    EXPECT_TRUE(DrawColourIsZero());
}

class ButtonWithOwnContent final : public Button {
public:
    using Button::Button;
    void RenderContent(SDL_Renderer* renderer, SDL_Point centre) override {
        EXPECT_EQ(centre, kCentre);
        EXPECT_EQ(rect, kRect);
        Uint8 alpha = 1;
        SDL_GetRenderDrawColor(renderer, nullptr, nullptr, nullptr, &alpha);
        EXPECT_EQ(alpha, 0);
        SDL_SetRenderDrawColor(renderer, 1, 2, 3, 4);
        ++drawn;
    }

    int drawn = 0;
};

TEST_F(ButtonTest, DrawsItsContentWithAnEmptyDrawColour) {
    Button::Options options = Column();
    options.style = ButtonStyle::FillAndOutline;
    ButtonWithOwnContent button(Renderer(), std::move(options));
    button.hovered = true;
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(button.drawn, 1);
    EXPECT_TRUE(DrawColourIsZero());
}

TEST_F(ButtonTest, TruncatesTheHalfOfAnOddSize) {
    Button::Options options = Row();
    options.width = 101;
    options.height = 61;
    Button button(Renderer(), std::move(options));
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(button.rect, (SDL_Rect{110, 90, 101, 61}));
}

TEST_F(ButtonTest, FollowsTheSizeThatItIsGiven) {
    Button button(Renderer(), Row());
    button.SetWidth(80);
    button.SetHeight(40);
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(button.rect, (SDL_Rect{120, 100, 80, 40}));
    ExpectIcon(kSquareIcon, {140, 110, 20, 20});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonTest, KeepsTheAspectOfItsIcon) {
    Button::Options options = Column();
    options.iconName = kWideIcon;
    Button button(Renderer(), std::move(options));
    button.Render(Renderer(), kCentre);
    ExpectIcon(kWideIcon, {145, 110, 30, 20});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonTest, FillsItsHeightWithAnIconThatFits) {
    Button button(Renderer(), Column());
    button.SetFitHeight(true);
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, {130, 90, 60, 60});
    EXPECT_TRUE(DrawnAsExpected());
}

struct HoverCase {
    int style;
    bool filled;
    bool outlined;
};

TEST_F(ButtonTest, ShowsThePointerByItsStyle) {
    const HoverCase cases[] = {{0, false, false}, {1, true, true},     {2, true, false}, {4, false, false},
                               {5, true, false},  {1000, true, false}, {-1, true, false}};
    for (const HoverCase& row : cases) {
        Clear();
        Button::Options options = Column();
        options.style = static_cast<ButtonStyle>(row.style);
        Button button(Renderer(), std::move(options));
        button.hovered = true;
        button.Render(Renderer(), kCentre);
        if (row.filled) ExpectFill(kRect, kHover);
        if (row.outlined) ExpectOutline(kRect, kWhite);
        ExpectIcon(kSquareIcon, kColumnIcon);
        EXPECT_TRUE(DrawnAsExpected()) << row.style;
        EXPECT_TRUE(DrawColourIsZero()) << row.style;
    }
}

TEST_F(ButtonTest, FillsARowFaintly) {
    Button::Options options = Row();
    options.style = ButtonStyle::Row;
    Button button(Renderer(), std::move(options));
    button.hovered = true;
    button.Render(Renderer(), kCentre);
    ExpectFill(kRect, kRowHover);
    ExpectIcon(kSquareIcon, kRowIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonTest, ShowsNothingOfItsStyleWithoutThePointer) {
    for (int style = 0; style <= 5; ++style) {
        Clear();
        Button::Options options = Column();
        options.style = static_cast<ButtonStyle>(style);
        options.tooltip = "Tip";
        options.hoverIconName = kOtherIcon;
        Button button(Renderer(), std::move(options));
        button.Render(Renderer(), kCentre);
        ExpectIcon(kSquareIcon, kColumnIcon);
        EXPECT_TRUE(DrawnAsExpected()) << style;
    }
}

TEST_F(ButtonTest, FillsTheVisibleHeightOfARowFromWhereItsCutBegins) {
    Button::Options options = Row();
    options.style = ButtonStyle::Row;
    Button button(Renderer(), std::move(options));
    button.hovered = true;
    button.SetClipTop(100);
    Calls().Clear();
    button.Render(Renderer(), kCentre);
    SDL_Rect cut = kRect;
    const auto top = ComputeVerticalClip(cut, 100, 60, {100, 0});
    ASSERT_TRUE(top.has_value());
    EXPECT_EQ(Calls().Of("SDL_RenderFillRect").at(0).arguments[1], Text({110, 90 + top->y, 100, top->h}));
    EXPECT_NEAR(top->y, 10, 1);
    EXPECT_NEAR(top->h, 50, 1);

    button.SetClipTop(0);
    button.SetClipBottom(130);
    Calls().Clear();
    button.Render(Renderer(), kCentre);
    cut = kRect;
    const auto bottom = ComputeVerticalClip(cut, 100, 60, {0, 130});
    ASSERT_TRUE(bottom.has_value());
    EXPECT_EQ(Calls().Of("SDL_RenderFillRect").at(0).arguments[1], Text({110, 90, 100, bottom->h}));
}

TEST_F(ButtonTest, CutsItsIconAtTheLines) {
    Button button(Renderer(), Row());
    // The icon's middle line: its rectangle is 30 high from 105 on.
    button.SetClipTop(120);
    button.Render(Renderer(), kCentre);
    ExpectIconPart(kSquareIcon, {0, 20, 40, 20}, {140, 120, 30, 15});
    EXPECT_TRUE(DrawnAsExpected());

    Clear();
    button.SetClipTop(0);
    button.SetClipBottom(120);
    button.Render(Renderer(), kCentre);
    ExpectIconPart(kSquareIcon, {0, 0, 40, 20}, {140, 105, 30, 15});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonTest, ShowsItsOtherIconUnderThePointer) {
    Button::Options options = Column();
    options.style = ButtonStyle::OtherIcon;
    options.hoverIconName = kOtherIcon;
    Button button(Renderer(), std::move(options));
    button.hovered = true;
    button.Render(Renderer(), kCentre);
    ExpectIcon(kOtherIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonTest, KeepsItsIconUnderThePointerWhenTheOtherOneIsMissing) {
    Button::Options options = Column();
    options.style = ButtonStyle::OtherIcon;
    options.hoverIconName = kMissingIcon;
    Button button(Renderer(), std::move(options));
    button.hovered = true;
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonTest, LoadsAnOtherIconForItsStyleAlone) {
    Button::Options options = Column();
    options.style = ButtonStyle::Fill;
    options.hoverIconName = kOtherIcon;
    const Button button(Renderer(), std::move(options));
    EXPECT_EQ(Calls().Count("IMG_LoadTexture"), 1U);
}

TEST_F(ButtonTest, IsFilledWhenHighlighted) {
    Button button(Renderer(), Column());
    button.SetHighlighted(true);
    EXPECT_TRUE(button.IsHighlighted());
    button.Render(Renderer(), kCentre);
    ExpectFill(kRect, kHighlight);
    ExpectIcon(kSquareIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonTest, ShowsNeitherHoverNorTooltipWhenHighlighted) {
    for (int style = 0; style <= 3; ++style) {
        Clear();
        Button::Options options = Column();
        options.style = static_cast<ButtonStyle>(style);
        options.tooltip = "Tip";
        Button button(Renderer(), std::move(options));
        button.hovered = true;
        button.SetHighlighted(true);
        button.Render(Renderer(), kCentre);
        ExpectFill(kRect, kHighlight);
        ExpectIcon(kSquareIcon, kColumnIcon);
        EXPECT_TRUE(DrawnAsExpected()) << style;
    }
}

TEST_F(ButtonTest, ShowsItsTooltipUnderThePointer) {
    Button::Options options = Column();
    options.tooltip = "A tooltip wider than its button";
    Button button(Renderer(), std::move(options));
    button.hovered = true;
    button.Render(Renderer(), kCentre);
    ExpectTooltip("A tooltip wider than its button");
    ExpectIcon(kSquareIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected());
    EXPECT_TRUE(DrawColourIsZero());
}

TEST_F(ButtonTest, ShowsItsTooltipAboveItsFill) {
    Button::Options options = Column();
    options.style = ButtonStyle::FillAndOutline;
    options.tooltip = "Tip";
    Button button(Renderer(), std::move(options));
    button.hovered = true;
    button.Render(Renderer(), kCentre);
    ExpectFill(kRect, kHover);
    ExpectOutline(kRect, kWhite);
    ExpectTooltip("Tip");
    ExpectIcon(kSquareIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonTest, KeepsItsTooltipAwayUntilItIsAllowed) {
    Button::Options options = Column();
    options.style = ButtonStyle::Fill;
    options.tooltip = "Tip";
    Button button(Renderer(), std::move(options));
    button.hovered = true;
    button.SetTooltipAllowed(false);
    button.Render(Renderer(), kCentre);
    ExpectFill(kRect, kHover);
    ExpectIcon(kSquareIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected());

    button.SetTooltipAllowed(true);
    Clear();
    button.Render(Renderer(), kCentre);
    ExpectFill(kRect, kHover);
    ExpectTooltip("Tip");
    ExpectIcon(kSquareIcon, kColumnIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonTest, RoundsTheSizeOfItsTooltip) {
    Button::Options options = Column();
    options.height = 50;  // 10.5
    options.tooltip = "Tip";
    Button button(Renderer(), std::move(options));
    button.hovered = true;
    Calls().Clear();
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(Calls().Of("TTF_OpenFont").at(0).arguments[1], "11");
}

TEST_F(ButtonTest, PutsItsLabelUnderItsIcon) {
    Button::Options options = Column();
    options.label = "Mute";
    Button button(Renderer(), std::move(options));
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, {150, 101, 21, 21});
    const SDL_Point size = SizeOf(FontRegular, 14, "Mute");
    ExpectText(FontRegular, 14, "Mute", {110 + (100 - size.x) / 2, static_cast<int>(150 - size.y * 1.2)});
    EXPECT_TRUE(DrawnAsExpected());
    EXPECT_TRUE(DrawColourIsZero());
}

TEST_F(ButtonTest, IsWidenedForGoodByALabelUnderItsIcon) {
    const std::string label = "A label wider than it";
    Button::Options options = Column();
    options.label = label;
    Button button(Renderer(), std::move(options));
    const SDL_Point size = SizeOf(FontRegular, 14, label);
    ASSERT_GT(size.x, 100);
    const int wide = static_cast<int>(size.x * 1.1);
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(button.width, wide);
    EXPECT_EQ(button.rect, (SDL_Rect{110, 90, wide, 60}));
    ExpectIcon(kSquareIcon, {150, 101, 21, 21});
    ExpectText(FontRegular, 14, label, {110 + (wide - size.x) / 2, static_cast<int>(150 - size.y * 1.2)});
    EXPECT_TRUE(DrawnAsExpected());

    button.Render(Renderer(), kCentre);
    EXPECT_EQ(button.width, wide);
    EXPECT_EQ(button.rect, (SDL_Rect{160 - wide / 2, 90, wide, 60}));
}

TEST_F(ButtonTest, KeepsItsWidthForALabelThatJustFits) {
    Button::Options options = Column();
    options.label = "Mute";
    options.width = SizeOf(FontRegular, 14, "Mute").x;
    const int width = options.width;
    Button button(Renderer(), std::move(options));
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(button.width, width);
    button.SetWidth(width - 1);
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(button.width, static_cast<int>(width * 1.1));
}

TEST_F(ButtonTest, CentresALabelOfAnyScript) {
    const std::string label = "\u0417\u0432\u0443\u043A";
    Button::Options options = Column();
    options.label = label;
    Button button(Renderer(), std::move(options));
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, {150, 101, 21, 21});
    const SDL_Point size = SizeOf(FontRegular, 14, label);
    ExpectText(FontRegular, 14, label, {110 + (100 - size.x) / 2, static_cast<int>(150 - size.y * 1.2)});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonTest, PutsItsLabelBesideItsIcon) {
    Button::Options options = Row();
    options.label = "Mute for all, and then some more";
    Button button(Renderer(), std::move(options));
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, kRowIcon);
    ExpectText(FontRegular, 20, "Mute for all, and then some more", {200, 108});
    EXPECT_TRUE(DrawnAsExpected());
    EXPECT_EQ(button.width, 100);
}

TEST_F(ButtonTest, HasALabelOfItsStyle) {
    Button::Options options = Row();
    options.label = "Mute";
    Button button(Renderer(), std::move(options));
    button.SetLabelStyle(0.5F, true);
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, kRowIcon);
    ExpectText(FontBolder, 30, "Mute", {200, 108});
    EXPECT_TRUE(DrawnAsExpected());

    button.SetLabelStyle(0.5F, false);
    Clear();
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, kRowIcon);
    ExpectText(FontRegular, 30, "Mute", {200, 108});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonTest, HasARegularLabelUnderItsIconWhateverItsStyle) {
    Button::Options options = Column();
    options.label = "Mute";
    Button button(Renderer(), std::move(options));
    button.SetLabelStyle(0.9F, true);
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, {150, 101, 21, 21});
    const SDL_Point size = SizeOf(FontRegular, 14, "Mute");
    ExpectText(FontRegular, 14, "Mute", {110 + (100 - size.x) / 2, static_cast<int>(150 - size.y * 1.2)});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonTest, CutsALabelBesideItsIconAtTheLines) {
    Button::Options options = Row();
    options.label = "Mute";
    Button button(Renderer(), std::move(options));
    button.SetClipTop(115);
    Calls().Clear();
    button.Render(Renderer(), kCentre);
    const SDL_Point size = SizeOf(FontRegular, 20, "Mute");
    SDL_Rect cut{200, 108, size.x, size.y};
    const auto source = ComputeVerticalClip(cut, size.x, size.y, {115, 0});
    ASSERT_TRUE(source.has_value());
    const auto copies = Calls().Of("SDL_RenderCopy");
    ASSERT_EQ(copies.size(), 2U);
    EXPECT_EQ(copies[1].arguments[2], Text(*source));
    EXPECT_EQ(copies[1].arguments[3], Text(cut));
}

TEST_F(ButtonTest, LeavesALabelUnderItsIconUncut) {
    Button::Options options = Column();
    options.label = "Mute";
    Button button(Renderer(), std::move(options));
    button.SetClipTop(145);
    Calls().Clear();
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(Calls().Of("SDL_RenderCopy").at(1).arguments[2], "null");
}

TEST_F(ButtonTest, IsNotDrawnWithoutItsIcon) {
    Button::Options options = Column();
    options.iconName = kMissingIcon;
    options.label = "Mute";
    options.tooltip = "Tip";
    Button button(Renderer(), std::move(options));
    button.rect = {1, 2, 3, 4};
    button.hovered = true;
    button.SetHighlighted(true);
    button.Render(Renderer(), kCentre);
    EXPECT_TRUE(NothingDrawn());
    EXPECT_EQ(button.rect, (SDL_Rect{1, 2, 3, 4}));
    EXPECT_EQ(button.GetTexture(), nullptr);
    EXPECT_TRUE(Fake().Logs().empty());
}

TEST_F(ButtonTest, CannotBeHoveredBeforeItWasDrawn) {
    Button button(Renderer(), Row());
    button.OnHover({0, 0});
    EXPECT_FALSE(button.hovered);
    button.Render(Renderer(), kCentre);
    button.OnHover({110, 90});
    EXPECT_TRUE(button.hovered);
    button.OnHover({210, 90});
    EXPECT_FALSE(button.hovered);
}

TEST_F(ButtonTest, TriesItsIconAgainInEachDrawing) {
    Sdl().Fail("IMG_LoadTexture", 2);
    Button button(Renderer(), Row());
    button.Render(Renderer(), kCentre);
    EXPECT_TRUE(NothingDrawn());
    button.Render(Renderer(), kCentre);
    EXPECT_NE(button.GetTexture(), nullptr);
    EXPECT_FALSE(NothingDrawn());
    EXPECT_EQ(Calls().Count("IMG_LoadTexture"), 3U);
}

TEST_F(ButtonTest, LoadsItsIconsAtOnce) {
    Button::Options options = Row();
    options.style = ButtonStyle::OtherIcon;
    options.hoverIconName = kOtherIcon;
    Button button(Renderer(), std::move(options));
    EXPECT_NE(button.GetTexture(), nullptr);
    EXPECT_EQ(Calls().Count("IMG_LoadTexture"), 2U);
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(Calls().Count("IMG_LoadTexture"), 2U);
}

TEST_F(ButtonTest, LoadsItsIconInItsFirstDrawingWhenMadeWithoutARenderer) {
    Button button(nullptr, Row());
    EXPECT_EQ(button.GetTexture(), nullptr);
    button.Render(nullptr, kCentre);
    EXPECT_EQ(button.rect, (SDL_Rect{0, 0, 0, 0}));
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, kRowIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonTest, ChangesItsIconOnceToldToLoadAgain) {
    Button button(Renderer(), Row());
    button.SetIconName(kOtherIcon);
    EXPECT_EQ(button.GetIconName(), kOtherIcon);
    button.Render(Renderer(), kCentre);
    ExpectIcon(kSquareIcon, kRowIcon);
    EXPECT_TRUE(DrawnAsExpected());
    button.SetLoaded(false);
    Clear();
    button.Render(Renderer(), kCentre);
    ExpectIcon(kOtherIcon, kRowIcon);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonTest, SurvivesTheLossOfItsRenderer) {
    Button::Options options = Row();
    options.label = "Mute";
    options.tooltip = "Tip";
    Button button(nullptr, std::move(options));
    button.hovered = true;
    {
        const Testing::PixelReader lost(320, 240);
        button.Render(lost.Renderer(), kCentre);
        button.ReleaseTextures();
        ReleaseRendererTextures(lost.Renderer());
        EXPECT_EQ(Sdl().LiveTextures(), 0U);
        EXPECT_EQ(button.GetTexture(), nullptr);
    }
    button.Render(Renderer(), kCentre);
    ExpectTooltip("Tip");
    ExpectIcon(kSquareIcon, kRowIcon);
    ExpectText(FontRegular, 20, "Mute", {200, 108});
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(ButtonTest, BringsAReleasedLabelBack) {
    Button::Options options = Row();
    options.label = "Mute";
    Button button(Renderer(), std::move(options));
    button.Render(Renderer(), kCentre);
    const size_t before = Sdl().LiveTextures();
    button.ReleaseLabelTexture();
    EXPECT_EQ(Sdl().LiveTextures(), before - 1);
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(Sdl().LiveTextures(), before);
}

TEST_F(ButtonTest, CostsNothingButItsDrawingWhileNothingChanges) {
    Button::Options options = Column();
    options.label = "A label of 24 characters";
    options.tooltip = "A tooltip of as many bytes";
    options.style = ButtonStyle::FillAndOutline;
    Button button(Renderer(), std::move(options));
    button.hovered = true;
    button.Render(Renderer(), kCentre);
    button.Render(Renderer(), kCentre);
    Calls().Clear();
    AllocationCounter::Start();
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
    EXPECT_TRUE(RasterisedTexts().empty());
    EXPECT_EQ(Measurements(), 0U);
    EXPECT_EQ(Calls().Count("SDL_RenderCopy"), 3U);
    EXPECT_EQ(Calls().Count("SDL_RenderFillRect"), 2U);
}

TEST_F(ButtonTest, RasterisesItsLabelOnceForEachChangeOfItsSize) {
    Button::Options options = Row();
    options.label = "Mute";
    Button button(Renderer(), std::move(options));
    button.Render(Renderer(), kCentre);
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(RasterisedTexts().size(), 1U);
    button.SetHeight(80);
    button.Render(Renderer(), kCentre);
    button.Render(Renderer(), kCentre);
    EXPECT_EQ(RasterisedTexts().size(), 2U);
}

TEST_F(ButtonTest, CallsItsFunctionOnAClick) {
    int clicks = 0;
    Button::Options options = Row();
    options.onClick = [&] { ++clicks; };
    Button button(nullptr, std::move(options));
    EXPECT_TRUE(button.OnClick());
    EXPECT_EQ(clicks, 1);
}

TEST_F(ButtonTest, RaisesOnAClickWithoutAFunction) {
    Button::Options options = Row();
    options.onClick = nullptr;
    Button button(nullptr, std::move(options));
    EXPECT_THROW(button.OnClick(), std::bad_function_call);
    Button bare(10, 10, LabelPlace::Beside, ButtonStyle::Plain);
    EXPECT_THROW(bare.OnClick(), std::bad_function_call);
}

TEST_F(ButtonTest, MayBeDestroyedByItsFunction) {
    std::unique_ptr<Button> button;
    Button::Options options = Row();
    const std::string seen = "a name that is long enough to lie on the heap";
    options.onClick = [&button, seen] {
        button.reset();
        EXPECT_EQ(seen.size(), 45U);
    };
    button = std::make_unique<Button>(Renderer(), std::move(options));
    Button* const clicked = button.get();
    EXPECT_TRUE(clicked->OnClick());
    EXPECT_EQ(button, nullptr);
}

TEST_F(ButtonTest, MatchesItsLabelByteForByte) {
    Button::Options options = Row();
    options.label = "Mute";
    const Button button(nullptr, std::move(options));
    EXPECT_EQ(button.GetLabel(), "Mute");
    EXPECT_TRUE(button.MatchesLabel("Mute"));
    EXPECT_FALSE(button.MatchesLabel("mute"));
    EXPECT_FALSE(button.MatchesLabel("Mute "));
    EXPECT_FALSE(button.MatchesLabel(""));
}

TEST_F(ButtonTest, IsMadeWithoutPicturesToo) {
    Button button(30, 20, LabelPlace::Beside, ButtonStyle::Plain);
    EXPECT_EQ(button.width, 30);
    EXPECT_EQ(button.height, 20);
    EXPECT_TRUE(button.MatchesLabel(""));
    EXPECT_FALSE(button.IsHighlighted());
    button.Render(Renderer(), kCentre);
    EXPECT_TRUE(NothingDrawn());
}

}  // namespace
}  // namespace Corvanta::UI
