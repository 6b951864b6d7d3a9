// What a feed encodes, without a connection.
#include "engine/peer/OutboundFeed.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/engine/Eventually.h"
#include "tests/engine/peer/PeerPair.h"

namespace Corvanta::Engine {
namespace {

constexpr Yuv kColor{81, 90, 240};

class OutboundFeedTest : public testing::Test {
protected:
    OutboundFeedTest() {
        running.Do([&] {
            feed = std::make_shared<OutboundFeed>(running.loop, OutboundFeed::Settings{.name = "feed"});
            EXPECT_TRUE(feed->Open());
        });
    }
    ~OutboundFeedTest() override {
        running.Do([&] { feed->Close(); });
    }
    // Somebody who receives.
    void AddReceiver() { feed->AddVideoOutlet(outlet); }

    RunningLoop running;
    std::shared_ptr<OutboundFeed> feed;
    const std::shared_ptr<PacketOutlet> outlet = std::make_shared<PacketOutlet>(GstOwned<GstElement>(), 1U);
};

TEST_F(OutboundFeedTest, EncodesNothingThatNobodyReceives) {
    const FeedPump pump(feed, 320, 180, kColor, 0.1);
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_EQ(feed->Count().pictures, 0U);
    EXPECT_EQ(feed->Count().audioBytes, 0U);
    AddReceiver();
    EXPECT_TRUE(Eventually([&] { return feed->Count().pictures > 3; }));
    feed->RemoveOutlet(outlet);
    EXPECT_TRUE(Eventually([&] {
        const auto before = feed->Count().pictures;
        std::this_thread::sleep_for(std::chrono::milliseconds(150));
        return feed->Count().pictures == before;
    }));
}

TEST_F(OutboundFeedTest, ChangesItsSizeWithTheAdaptationAndThePicture) {
    AddReceiver();
    {
        const FeedPump pump(feed, 641, 481, kColor, 0.1);
        EXPECT_TRUE(Eventually([&] { return feed->Count().size == PictureSize{640, 480}; }));
        feed->SetAdaptation({.scaleDown = 2, .minimumHeight = 100, .bitrate = 300'000});
        EXPECT_TRUE(Eventually([&] { return feed->Count().size == PictureSize{320, 240}; }));
        EXPECT_EQ(feed->Bitrate(), 300'000U);
    }
    const auto before = feed->Count().pictures;
    const FeedPump pump(feed, 400, 300, kColor, 0.1);
    EXPECT_TRUE(Eventually([&] { return feed->Count().size == PictureSize{200, 150}; }));
    EXPECT_TRUE(Eventually([&] { return feed->Count().pictures > before + 5; }));
}

TEST_F(OutboundFeedTest, MakesAKeyFrameWhenItIsAskedFor) {
    AddReceiver();
    const FeedPump pump(feed, 320, 180, kColor, 0.1);
    ASSERT_TRUE(Eventually([&] { return feed->Count().pictures > 3; }));
    const auto before = feed->Count();
    feed->RequestKeyFrame();
    ASSERT_TRUE(Eventually([&] { return feed->Count().keyFrames > before.keyFrames; }));
    // The regular one comes with the sixtieth picture.
    EXPECT_LT(feed->Count().pictures, before.pictures + 40);
}

TEST_F(OutboundFeedTest, KeepsToTheLowestOfItsBitrates) {
    feed->SetTargetBitrate(900'000);
    feed->SetAdaptation({.scaleDown = 1, .minimumHeight = 240, .bitrate = 0});
    EXPECT_EQ(feed->Bitrate(), 900'000U);
    feed->SetAdaptation({.scaleDown = 1, .minimumHeight = 240, .bitrate = 500'000});
    EXPECT_EQ(feed->Bitrate(), 500'000U);
    feed->LimitBitrate(200'000);
    EXPECT_EQ(feed->Bitrate(), 200'000U);
    feed->LimitBitrate(0);
    EXPECT_EQ(feed->Bitrate(), 500'000U);
}

}  // namespace
}  // namespace Corvanta::Engine
