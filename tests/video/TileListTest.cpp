#include "video/TileList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "tests/fake_platform/FakePlatform.h"

namespace Corvanta::Video {
namespace {

using Ids = std::vector<std::string>;

class TileListTest : public Corvanta::Testing::FakePlatformTest {
protected:
    VideoFrame& Add(const std::string& id, TileOrigin origin = TileOrigin::Remote) {
        tiles.push_back(std::make_unique<VideoFrame>(id, "", "", origin));
        list.Add(tiles.back().get(), origin);
        return *tiles.back();
    }
    [[nodiscard]] Ids Order() const {
        std::vector<VideoFrame*> all;
        list.CopyTo(all);
        Ids ids;
        for (const VideoFrame* tile : all) ids.push_back(tile->GetStreamId());
        return ids;
    }
    // The pinned ones stand in front, and there are as many as are counted.
    void ExpectOrder(const Ids& ids, int pinned) const {
        EXPECT_EQ(Order(), ids);
        EXPECT_EQ(list.PinnedCount(), pinned);
        const auto& remote = list.Remote();
        for (size_t i = 0; i < remote.size(); ++i) EXPECT_EQ(remote[i]->pinned, static_cast<int>(i) < pinned);
    }

    std::vector<std::unique_ptr<VideoFrame>> tiles;
    TileList list;
};

TEST_F(TileListTest, PutsTheUsersOwnTilesFirst) {
    Add("a");
    Add("me", TileOrigin::Local);
    Add("b");
    Add("mine", TileOrigin::Local);
    ExpectOrder({"me", "mine", "a", "b"}, 0);
    EXPECT_EQ(list.Count(), 4U);
}

TEST_F(TileListTest, HoldsATileOnceAndNoNull) {
    VideoFrame& a = Add("a");
    EXPECT_FALSE(list.Add(&a, TileOrigin::Remote));
    EXPECT_FALSE(list.Add(&a, TileOrigin::Local));
    EXPECT_FALSE(list.Add(nullptr, TileOrigin::Remote));
    ExpectOrder({"a"}, 0);
}

TEST_F(TileListTest, ForgetsARemovedTileAndItsPin) {
    VideoFrame& a = Add("a");
    VideoFrame& b = Add("b");
    VideoFrame& me = Add("me", TileOrigin::Local);
    ASSERT_TRUE(list.Pin(&b));
    EXPECT_TRUE(list.Remove(&b));
    EXPECT_FALSE(list.Remove(&b));
    EXPECT_FALSE(b.pinned);
    ExpectOrder({"me", "a"}, 0);
    EXPECT_TRUE(list.Remove(&me));
    EXPECT_TRUE(list.Remove(&a));
    ExpectOrder({}, 0);
}

TEST_F(TileListTest, MovesATileAndKeepsTheOthersOrder) {
    for (const char* id : {"a", "b", "c", "d"}) Add(id);
    list.MoveRemote(3, 1);
    ExpectOrder({"a", "d", "b", "c"}, 0);
    list.MoveRemote(0, 2);
    ExpectOrder({"d", "b", "a", "c"}, 0);
    list.MoveRemote(2, 2);
    ExpectOrder({"d", "b", "a", "c"}, 0);
}

TEST_F(TileListTest, PinsToTheEndOfThePinnedOnesAndUnpinsToTheFrontOfTheOthers) {
    for (const char* id : {"a", "b", "c", "d"}) Add(id);
    EXPECT_TRUE(list.Pin(tiles[2].get()));
    ExpectOrder({"c", "a", "b", "d"}, 1);
    EXPECT_TRUE(list.Pin(tiles[3].get()));
    ExpectOrder({"c", "d", "a", "b"}, 2);
    EXPECT_TRUE(list.Unpin(tiles[2].get()));
    ExpectOrder({"d", "c", "a", "b"}, 1);
    EXPECT_TRUE(list.Unpin(tiles[3].get()));
    ExpectOrder({"d", "c", "a", "b"}, 0);
}

TEST_F(TileListTest, PinsOnceAndOnlyWhatIsRemoteAndHere) {
    VideoFrame& a = Add("a");
    Add("b");
    VideoFrame& me = Add("me", TileOrigin::Local);
    VideoFrame stranger("stranger", "", "", TileOrigin::Remote);
    ASSERT_TRUE(list.Pin(&a));
    EXPECT_FALSE(list.Pin(&a));
    EXPECT_FALSE(list.Pin(&me));
    EXPECT_FALSE(list.Pin(&stranger));
    EXPECT_FALSE(list.Pin(nullptr));
    EXPECT_FALSE(list.Unpin(tiles[1].get()));
    EXPECT_FALSE(list.Unpin(&stranger));
    EXPECT_FALSE(list.Unpin(nullptr));
    ExpectOrder({"me", "a", "b"}, 1);
}

TEST_F(TileListTest, ReordersByIdsAndLetsTheOthersGo) {
    for (const char* id : {"a", "b", "c", "d"}) Add(id);
    Add("me", TileOrigin::Local);
    const auto left = list.Reorder({"d", "nobody", "b", "d", "me"});
    ExpectOrder({"me", "d", "b"}, 0);
    EXPECT_EQ(left, (std::vector<VideoFrame*>{tiles[0].get(), tiles[2].get()}));
}

TEST_F(TileListTest, KeepsPinnedTilesInFrontWhenItIsReordered) {
    for (const char* id : {"a", "b", "c", "d"}) Add(id);
    ASSERT_TRUE(list.Pin(tiles[0].get()));
    ASSERT_TRUE(list.Pin(tiles[1].get()));
    ASSERT_EQ(list.Reorder({"d", "b", "c"}).size(), 1U);
    ExpectOrder({"b", "d", "c"}, 1);
    EXPECT_FALSE(tiles[0]->pinned);
}

TEST_F(TileListTest, GivesBothTilesOfOneIdOnePlace) {
    Add("a");
    Add("b");
    Add("a");
    EXPECT_EQ(list.Reorder({"a", "b"}).size(), 1U);
    ExpectOrder({"a", "b"}, 0);
}

}  // namespace
}  // namespace Corvanta::Video
