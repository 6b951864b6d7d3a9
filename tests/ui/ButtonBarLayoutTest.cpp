#include "ui/ButtonBarLayout.h"

#include <gtest/gtest.h>

#include <vector>

namespace Corvanta::UI {
namespace {

BarMetrics MetricsOfHeight(int height) {
    return ComputeBarMetrics({0, 0, 0, 0}, 1000, height, {});
}

TEST(ButtonBarLayout, DerivesEveryLengthFromTheHeight) {
    struct Row {
        int height, cell, half, gap, leftGap, rightGap;
    };
    const std::vector<Row> rows = {
        {48, 22, 11, 14, 11, 10},
        {85, 40, 20, 26, 22, 20},
        {100, 47, 23, 31, 26, 23},
        {0, 0, 0, 0, 0, 0},
        {1, 0, 0, 0, 0, 0},
        {3, 1, 0, 0, 0, 0},
        {-85, -40, -20, -26, -22, -20},
        {30000, 14285, 7142, 9523, 8139, 7325},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.height);
        const BarMetrics m = MetricsOfHeight(row.height);
        EXPECT_EQ(m.cell, row.cell);
        EXPECT_EQ(m.half, row.half);
        EXPECT_EQ(m.gap, row.gap);
        EXPECT_EQ(m.leftGap, row.leftGap);
        EXPECT_EQ(m.rightGap, row.rightGap);
        EXPECT_EQ(m.middleY, row.height / 2);
    }
}

TEST(ButtonBarLayout, MovesTheMiddleLineWithTheBar) {
    EXPECT_EQ(ComputeBarMetrics({0, 600, 0, 0}, 1280, 85, {}).middleY, 642);
    EXPECT_EQ(ComputeBarMetrics({0, -10, 0, 0}, 1280, 85, {}).middleY, 32);
}

TEST(ButtonBarLayout, CentresTheCentreGroup) {
    EXPECT_EQ(ComputeBarMetrics({0, 0, 0, 0}, 1280, 85, {2, 3, 4}).centreX, 574);
    EXPECT_EQ(ComputeBarMetrics({0, 0, 0, 0}, 800, 100, {1, 2, 2}).centreX, 361);
    EXPECT_EQ(ComputeBarMetrics({10, 7, 0, 0}, 800, 100, {1, 2, 2}).centreX, 371);
    EXPECT_EQ(ComputeBarMetrics({0, 0, 0, 0}, 301, 48, {0, 1, 0}).centreX, 150);
    EXPECT_EQ(CentreStep(MetricsOfHeight(48)), 36);
    EXPECT_EQ(CentreStep(MetricsOfHeight(85)), 66);
    EXPECT_EQ(CentreStep(MetricsOfHeight(100)), 78);
}

TEST(ButtonBarLayout, TruncatesTheHalfOfAnEmptyCentreGroupTowardZero) {
    // The group's width is then the gap, negative: -31 / 2 is -15.
    EXPECT_EQ(ComputeBarMetrics({0, 0, 0, 0}, 800, 100, {}).centreX, 438);
    EXPECT_EQ(ComputeBarMetrics({0, 0, 0, 0}, 301, 48, {}).centreX, 168);
}

TEST(ButtonBarLayout, LeavesTheTitleTheSpaceBetweenLeftAndCentreGroup) {
    EXPECT_EQ(ComputeBarMetrics({0, 0, 0, 0}, 1280, 85, {2, 3, 4}).titleSpace, 352);
    EXPECT_EQ(ComputeBarMetrics({0, 0, 0, 0}, 1280, 85, {0, 0, 0}).titleSpace, 583);
    EXPECT_EQ(ComputeBarMetrics({0, 0, 0, 0}, 800, 100, {1, 2, 2}).titleSpace, 177);
    EXPECT_EQ(ComputeBarMetrics({10, 0, 0, 0}, 800, 100, {1, 2, 2}).titleSpace, 187);
    EXPECT_EQ(ComputeBarMetrics({0, 0, 0, 0}, 301, 48, {}).titleSpace, 121);
    EXPECT_EQ(ComputeBarMetrics({0, 0, 0, 0}, 100, 85, {2, 3, 4}).titleSpace, -238);
}

TEST(ButtonBarLayout, PutsTheLeftGroupCloserThanItsCells) {
    EXPECT_EQ(FirstLeftX(MetricsOfHeight(85)), 46);
    EXPECT_EQ(LeftStep(MetricsOfHeight(85)), 46);
    EXPECT_EQ(FirstLeftX(MetricsOfHeight(100)), 54);
    EXPECT_EQ(LeftStep(MetricsOfHeight(100)), 54);
    EXPECT_EQ(FirstLeftX(MetricsOfHeight(48)), 25);
    EXPECT_EQ(LeftStep(MetricsOfHeight(48)), 25);
}

TEST(ButtonBarLayout, BeginsTheTitleBehindTheLeftGroup) {
    EXPECT_EQ(TitleSpaceX(MetricsOfHeight(85), 0), 68);
    EXPECT_EQ(TitleSpaceX(MetricsOfHeight(85), 2), 160);
    EXPECT_EQ(TitleSpaceX(MetricsOfHeight(100), 1), 134);
    EXPECT_EQ(TitleSpaceX(MetricsOfHeight(48), 3), 111);
}

TEST(ButtonBarLayout, CountsTheRightGroupFromTheRightEdge) {
    EXPECT_EQ(FirstRightX(MetricsOfHeight(85), 1280), 1234);
    EXPECT_EQ(SecondRightX(MetricsOfHeight(85), 1280, false, 0), 1174);
    EXPECT_EQ(FirstRightX(MetricsOfHeight(100), 800), 746);
    EXPECT_EQ(SecondRightX(MetricsOfHeight(100), 800, false, 0), 676);
    EXPECT_EQ(FirstRightX(MetricsOfHeight(48), 301), 276);
    EXPECT_EQ(SecondRightX(MetricsOfHeight(48), 301, false, 0), 244);
}

TEST(ButtonBarLayout, PutsTheRecordButtonBehindTheFirstRightOne) {
    EXPECT_EQ(RecordX(MetricsOfHeight(85), 1280), 1194);
    EXPECT_EQ(SecondRightX(MetricsOfHeight(85), 1280, true, 63), 1091);
    EXPECT_EQ(RecordX(MetricsOfHeight(100), 800), 700);
    EXPECT_EQ(SecondRightX(MetricsOfHeight(100), 800, true, 75), 579);
    EXPECT_EQ(RecordX(MetricsOfHeight(48), 301), 255);
    EXPECT_EQ(SecondRightX(MetricsOfHeight(48), 301, true, 36), 198);
    // Not drawn yet, it has no width.
    EXPECT_EQ(SecondRightX(MetricsOfHeight(85), 1280, true, 0), 1154);
}

TEST(ButtonBarLayout, PutsTheCompactSetInTheMiddle) {
    EXPECT_EQ(FirstCompactX(MetricsOfHeight(85), {0, 0, 0, 0}, 1280, 4), 554);
    EXPECT_EQ(FirstCompactX(MetricsOfHeight(100), {10, 0, 0, 0}, 800, 3), 347);
    EXPECT_EQ(FirstCompactX(MetricsOfHeight(48), {0, 0, 0, 0}, 301, 1), 157);
    EXPECT_EQ(FirstCompactX(MetricsOfHeight(48), {0, 0, 0, 0}, 301, 0), 175);
}

struct Fit {
    int height;
    BarCounts counts;
    int textWidth;
    int recordWidth;
    int needed;
};

TEST(ButtonBarLayout, FitsFromTheWidthOnThatEverythingNeeds) {
    const std::vector<Fit> fits = {
        {85, {2, 3, 4}, 100, 0, 728},
        {85, {2, 3, 4}, 0, 63, 691},
        {100, {1, 2, 2}, 50, 75, 571},
        {48, {0, 1, 5}, 200, 0, 432},
    };
    for (const Fit& fit : fits) {
        SCOPED_TRACE(fit.needed);
        BarMetrics m = MetricsOfHeight(fit.height);
        m.titleSpace = 1000;
        EXPECT_TRUE(FullBarFits(m, fit.needed, fit.counts, fit.textWidth, fit.recordWidth));
        EXPECT_FALSE(FullBarFits(m, fit.needed - 1, fit.counts, fit.textWidth, fit.recordWidth));
    }
}

TEST(ButtonBarLayout, DoesNotFitWithLessTitleSpaceThanTheLeftGap) {
    BarMetrics m = MetricsOfHeight(85);
    m.titleSpace = 22;
    EXPECT_TRUE(FullBarFits(m, 10000, {0, 3, 0}, 0, 0));
    m.titleSpace = 21;
    EXPECT_FALSE(FullBarFits(m, 10000, {0, 3, 0}, 0, 0));
}

}  // namespace
TEST(ButtonBarLayout, PartsAGroupThatReachesIntoTheCentre) {
    const BarCounts counts{2, 4, 10};
    const BarMetrics before = ComputeBarMetrics({0, 0, 1280, 100}, 1280, 100, counts);
    const auto centreEnd = [](const BarMetrics& m) { return m.centreX + 3 * CentreStep(m) + m.half; };

    BarMetrics apart = before;
    EXPECT_TRUE(PartGroups(apart, counts, centreEnd(before) + 1, 9, 30));
    EXPECT_EQ(apart.centreX, before.centreX);

    // The title's space goes first.
    BarMetrics moved = before;
    EXPECT_TRUE(PartGroups(moved, counts, centreEnd(before) - 100, 9, 30));
    EXPECT_EQ(centreEnd(moved), centreEnd(before) - 100 - before.rightGap);
    EXPECT_EQ(before.titleSpace - moved.titleSpace, before.centreX - moved.centreX);
    EXPECT_EQ(moved.rightGap, before.rightGap);

    // Then the gaps between the right buttons, evenly.
    BarMetrics narrow = before;
    const int rightEnd = centreEnd(before) - (before.titleSpace - 30) - 9;
    EXPECT_TRUE(PartGroups(narrow, counts, rightEnd, 9, 30));
    EXPECT_EQ(narrow.titleSpace, 30);
    EXPECT_EQ(narrow.rightGap, before.rightGap - 4);
    EXPECT_LE(centreEnd(narrow), rightEnd + 9 * 4);

    // Never so far that buttons are taken for one another.
    BarMetrics full = before;
    EXPECT_FALSE(PartGroups(full, counts, 100, 9, 30));
    BarMetrics single = before;
    EXPECT_FALSE(PartGroups(single, {2, 4, 1}, 100, 0, 30));
}

}  // namespace Corvanta::UI
