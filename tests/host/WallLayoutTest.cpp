#include "host/WallLayout.h"

#include <gtest/gtest.h>

namespace Corvanta::Host {
namespace {

TEST(WallLayouts, AreCalledByTheirNames) {
    EXPECT_EQ(WallLayoutOf("strip"), WallLayout::Strip);
    EXPECT_EQ(WallLayoutOf("column"), WallLayout::Column);
    EXPECT_EQ(WallLayoutOf("grid"), WallLayout::Grid);
    for (const std::string_view name : {"", "Grid", "grids", "2"}) EXPECT_FALSE(WallLayoutOf(name)) << name;
}

TEST(WallLayouts, FollowEachOtherAround) {
    EXPECT_EQ(After(WallLayout::Strip), WallLayout::Column);
    EXPECT_EQ(After(WallLayout::Column), WallLayout::Grid);
    EXPECT_EQ(After(WallLayout::Grid), WallLayout::Strip);
}

TEST(WallLayouts, OpenInWindowsThatShowATile) {
    for (const WallLayout layout : {WallLayout::Strip, WallLayout::Column, WallLayout::Grid}) {
        EXPECT_GE(WallSizeOf(layout).width, 213);
        EXPECT_GE(WallSizeOf(layout).height, 160);
    }
}

TEST(WallLayouts, StandInTheTitle) {
    EXPECT_EQ(WallTitle("Review", WallLayout::Strip), "Review: participants, strip - Corvanta");
    EXPECT_EQ(PreviewTitle("Review"), "Review: own camera - Corvanta");
}

TEST(WallSnapshot, LiesBesideTheRooms) {
    EXPECT_EQ(WallSnapshotPath("/tmp/out.png"), "/tmp/out-wall.png");
    EXPECT_EQ(WallSnapshotPath("a.b.png"), "a.b-wall.png");
}

}  // namespace
}  // namespace Corvanta::Host
