// What a feed encodes, without a connection.
#include "engine/peer/OutboundFeed.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <vector>

#include "tests/engine/Eventually.h"
#include "tests/engine/peer/PeerPair.h"
#include "tests/engine/signalling/LogLines.h"

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
    // A feed that does would have done so by then.
    constexpr std::chrono::milliseconds kWhile{500};
    EXPECT_FALSE(Eventually([&] { return feed->Count().pictures + feed->Count().audioBytes > 0; }, kWhile));
    AddReceiver();
    EXPECT_TRUE(Eventually([&] { return feed->Count().pictures > 3; }));
    feed->RemoveOutlet(outlet);
    EXPECT_TRUE(Eventually([&] {
        const auto before = feed->Count().pictures;
        return !Eventually([&] { return feed->Count().pictures != before; }, kWhile);
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
    // Sent again twice a second, so that the regular key frame is half a minute away.
    feed->PushPicture(MakePicture(320, 180, kColor));
    ASSERT_TRUE(Eventually([&] { return feed->Count().pictures > 1; }));
    EXPECT_EQ(feed->Count().keyFrames, 1U);
    feed->RequestKeyFrame();
    EXPECT_TRUE(Eventually([&] { return feed->Count().keyFrames == 2; }));
}

TEST_F(OutboundFeedTest, GivesOnePeerFewKeyFramesHoweverOftenItAsks) {
    AddReceiver();
    const FeedPump pump(feed, 320, 180, kColor, 0.0);
    ASSERT_TRUE(Eventually([&] { return feed->Count().pictures > 1; }));
    const auto begun = std::chrono::steady_clock::now();
    const auto before = feed->Count();
    EXPECT_TRUE(Eventually([&] {
        for (int count = 0; count < 100; ++count) outlet->RequestKeyFrame();
        return feed->Count().pictures > before.pictures + 90;
    }));
    const auto after = feed->Count();
    const auto seconds = static_cast<std::uint64_t>(
        std::chrono::ceil<std::chrono::seconds>(std::chrono::steady_clock::now() - begun).count());
    // The encoder makes one by itself every 60 pictures.
    const std::uint64_t regular = (after.pictures - before.pictures) / 60 + 1;
    EXPECT_GE(after.keyFrames, before.keyFrames + 1);
    EXPECT_LE(after.keyFrames, before.keyFrames + regular + seconds + 1);
}

TEST_F(OutboundFeedTest, BringsAKeyFrameThatWasAskedForTooSoon) {
    AddReceiver();
    feed->PushPicture(MakePicture(320, 180, kColor));
    ASSERT_TRUE(Eventually([&] { return feed->Count().pictures > 1; }));
    outlet->RequestKeyFrame();
    ASSERT_TRUE(Eventually([&] { return feed->Count().keyFrames == 2; }));
    outlet->RequestKeyFrame();
    EXPECT_TRUE(Eventually([&] { return feed->Count().keyFrames == 3; }));
}

TEST_F(OutboundFeedTest, EncodesAgainAfterAFailure) {
    AddReceiver();
    feed->AddAudioOutlet(outlet);
    LogLines log;
    const GstOwned<GstBuffer> halfAFrame(gst_buffer_new_allocate(nullptr, 12, nullptr));
    feed->PushSound(halfAFrame.get(), GST_CLOCK_TIME_NONE);
    ASSERT_TRUE(Eventually([&] { return log.Count("\"feed\" is not sent for a moment") == 1; }));
    const auto before = feed->Count();
    const FeedPump pump(feed, 320, 180, kColor, 0.1);
    EXPECT_TRUE(Eventually([&] {
        const auto after = feed->Count();
        return after.pictures > before.pictures + 5 && after.audioBytes > before.audioBytes;
    }));
}

TEST_F(OutboundFeedTest, SendsLittleWhereTheBitrateIsLow) {
    AddReceiver();
    std::vector<std::shared_ptr<const MappedPicture>> noise;
    for (int index = 0; index < 4; ++index) noise.push_back(MakeNoise(320, 180));
    // Bytes of a picture, after the encoder had time to follow.
    const auto measure = [&] {
        std::size_t next = 0;
        const auto encode = [&](std::uint64_t count) {
            const auto wanted = feed->Count().pictures + count;
            EXPECT_TRUE(Eventually([&] {
                feed->PushPicture(noise[next++ % noise.size()]);
                return feed->Count().pictures >= wanted;
            }));
        };
        encode(30);
        const auto before = feed->Count();
        encode(30);
        const auto after = feed->Count();
        return (after.videoBytes - before.videoBytes) / (after.pictures - before.pictures);
    };
    feed->SetTargetBitrate(8'000'000);
    const auto plenty = measure();
    feed->LimitBitrate(300'000);
    EXPECT_LT(measure(), plenty / 2);
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
