#include "video/VideoThumbnails.h"

#include <gtest/gtest.h>

#include "tests/fake_platform/FakePlatform.h"
#include "video/VideoFrame.h"

namespace Corvanta::Video {
namespace {

class VideoThumbnailsTest : public Corvanta::Testing::FakePlatformTest {
protected:
    VideoFrame first{"first", "", "", TileOrigin::Remote};
    VideoFrame second{"second", "", "", TileOrigin::Remote};
    VideoThumbnails wall;
};

TEST_F(VideoThumbnailsTest, KeepsTilesInTheOrderInWhichTheyCame) {
    wall.AddTile(&second);
    wall.AddTile(&first);
    EXPECT_EQ(wall.GetTiles(), (std::vector<VideoFrame*>{&second, &first}));
}

TEST_F(VideoThumbnailsTest, HoldsATileOnce) {
    wall.AddTile(&first);
    wall.AddTile(&first);
    EXPECT_EQ(wall.GetTiles(), (std::vector<VideoFrame*>{&first}));
}

TEST_F(VideoThumbnailsTest, ForgetsARemovedTileAndNoOther) {
    wall.AddTile(&first);
    wall.AddTile(&second);
    wall.RemoveTile(&first);
    wall.RemoveTile(&first);
    EXPECT_EQ(wall.GetTiles(), (std::vector<VideoFrame*>{&second}));
}

TEST_F(VideoThumbnailsTest, RemembersWhetherTheHostDrawsItsBorders) {
    EXPECT_FALSE(wall.HasDetachedBorders());
    wall.SetDetachedBorders(true);
    EXPECT_TRUE(wall.HasDetachedBorders());
}

}  // namespace
}  // namespace Corvanta::Video
