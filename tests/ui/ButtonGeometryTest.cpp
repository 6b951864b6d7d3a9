#include "ui/ButtonGeometry.h"

#include "tests/ui/ToolkitTest.h"

namespace Corvanta::UI {
namespace {

constexpr SDL_Point kPicture{60, 40};

// Odd sizes, so that every division truncates.
ButtonShape Row() {
    return {{10, 20, 101, 57}, {60, 48}, 57, false};
}

ButtonShape Column() {
    return {{10, 20, 101, 57}, {60, 48}, 57, true};
}

TEST(ButtonGeometry, AnIconThatFitsFillsTheHeight) {
    const SDL_Rect expected{18, 20, 85, 57};
    EXPECT_EQ(LayoutButtonIcon(Row(), kPicture, true, false), expected);
    EXPECT_EQ(LayoutButtonIcon(Row(), kPicture, true, true), expected);
    EXPECT_EQ(LayoutButtonIcon(Column(), kPicture, true, false), expected);
    EXPECT_EQ(LayoutButtonIcon(Column(), kPicture, true, true), expected);
}

TEST(ButtonGeometry, AnIconOverItsLabelStandsInTheUpperPart) {
    EXPECT_EQ(LayoutButtonIcon(Column(), kPicture, false, true), (SDL_Rect{45, 31, 30, 20}));
}

TEST(ButtonGeometry, AnIconWithoutALabelStandsInTheMiddle) {
    EXPECT_EQ(LayoutButtonIcon(Column(), kPicture, false, false), (SDL_Rect{46, 39, 28, 19}));
}

TEST(ButtonGeometry, AnIconInARowStandsAtTheLeft) {
    const SDL_Rect expected{38, 34, 42, 28};
    EXPECT_EQ(LayoutButtonIcon(Row(), kPicture, false, false), expected);
    EXPECT_EQ(LayoutButtonIcon(Row(), kPicture, false, true), expected);
}

TEST(ButtonGeometry, TruncatesTowardZeroAboveTheWindow) {
    ButtonShape shape = Column();
    shape.rect.y = -20;
    // -20 + 20 / 1.8 = -8.9
    EXPECT_EQ(LayoutButtonIcon(shape, kPicture, false, true).y, -8);
}

TEST(ButtonGeometry, TakesTheWidthFromTheAspectInSinglePrecision) {
    const ButtonShape shape{{0, 0, 100, 27}, {50, 13}, 27, true};
    // 7 / 3 * 27 is 63, but a little less in single precision; 13 / 3 * 27 comes out the other way round.
    EXPECT_EQ(LayoutButtonIcon(shape, {7, 3}, true, false).w, 62);
    EXPECT_EQ(LayoutButtonIcon(shape, {13, 3}, true, false).w, 117);
    EXPECT_EQ(LayoutToggleIcon(shape, {7, 3}, true, false).w, 62);
    EXPECT_EQ(LayoutBadge({0, 0, 10, 10}, {63, 27}, 100).w, 62);
}

TEST(ButtonGeometry, GivesAPictureWithoutASizeNoWidth) {
    EXPECT_EQ(LayoutButtonIcon(Row(), {0, 0}, false, false), (SDL_Rect{38, 34, 0, 28}));
    EXPECT_EQ(LayoutToggleIcon(Row(), {0, 0}, false, false), (SDL_Rect{38, 34, 0, 28}));
    EXPECT_EQ(LayoutBadge({46, 39, 28, 19}, {0, 0}, 57), (SDL_Rect{72, 41, 0, 0}));
}

struct ToggleCase {
    bool labelBelow;
    bool flat;
    bool showLabel;
    SDL_Rect icon;
};

TEST(ButtonGeometry, PlacesAToggleIconByItsLabelAndFlatness) {
    const ToggleCase cases[] = {
        {false, false, false, {38, 34, 42, 28}}, {false, false, true, {38, 34, 42, 28}},
        {false, true, false, {38, 34, 85, 57}},  {false, true, true, {38, 34, 85, 57}},
        {true, false, false, {46, 39, 28, 19}},  {true, false, true, {46, 30, 28, 19}},
        {true, true, false, {18, 20, 85, 57}},   {true, true, true, {18, 51, 85, 57}},
    };
    for (const ToggleCase& row : cases) {
        EXPECT_EQ(LayoutToggleIcon(row.labelBelow ? Column() : Row(), kPicture, row.flat, row.showLabel),
                  row.icon)
            << row.labelBelow << row.flat << row.showLabel;
    }
}

TEST(ButtonGeometry, PutsABadgeOnTheUpperRightCornerOfTheIcon) {
    EXPECT_EQ(LayoutBadge({46, 39, 28, 19}, {40, 40}, 57), (SDL_Rect{72, 13, 28, 28}));
}

TEST(ButtonGeometry, LeavesASmallBadgeItsOwnHeight) {
    EXPECT_EQ(LayoutBadge({46, 39, 28, 19}, {15, 10}, 57), (SDL_Rect{72, 31, 15, 10}));
}

TEST(ButtonGeometry, SizesALabelByTheButtonsHeight) {
    EXPECT_EQ(LabelFontSize(Column(), 0.34F), 13);
    EXPECT_EQ(LabelFontSize(Column(), 0.9F), 13);
    EXPECT_EQ(LabelFontSize(Row(), 0.34F), 19);
    EXPECT_EQ(LabelFontSize(Row(), 0.5F), 28);
}

TEST(ButtonGeometry, SizesALabelInARowInSinglePrecision) {
    const ButtonShape shape{{0, 0, 200, 100}, {100, 50}, 100, false};
    // 0.29 as a float is a little less; the product rounds back to 29.
    EXPECT_EQ(LabelFontSize(shape, 0.29F), 29);
}

TEST(ButtonGeometry, CentresALabelUnderItsIcon) {
    EXPECT_EQ(LayoutLabel(Column(), {80, 15}), (SDL_Point{20, 59}));
    EXPECT_EQ(LayoutLabel(Column(), {80, 16}), (SDL_Point{20, 57}));
    EXPECT_EQ(LayoutLabel(Column(), {120, 15}), (SDL_Point{1, 59}));
}

TEST(ButtonGeometry, PutsALabelInARowBehindItsIcon) {
    EXPECT_EQ(LayoutLabel(Row(), {80, 15}), (SDL_Point{95, 37}));
    EXPECT_EQ(LayoutLabel(Row(), {0, 0}), (SDL_Point{95, 37}));
}

TEST(ButtonGeometry, PlacesARowsLabelByItsRequestedHeight) {
    ButtonShape shape = Row();
    shape.height = 40;
    EXPECT_EQ(LayoutLabel(shape, {80, 15}), (SDL_Point{70, 32}));
}

}  // namespace
}  // namespace Corvanta::UI
