#include "tests/fake_platform/TestFrames.h"

#include <gtest/gtest.h>

namespace Corvanta::Testing {
namespace {

TEST(TestFrames, RoundChromaUpForOddSizes) {
    const auto frame = MakeYuvFrame({.width = 7, .height = 5, .y = 10, .u = 20, .v = 30});
    EXPECT_EQ(frame->GetStrideY(), 7);
    EXPECT_EQ(frame->GetStrideU(), 4);
    EXPECT_EQ(frame->GetDataU()[2 * 4 + 3], 20);
    EXPECT_EQ(frame->GetDataY()[7 * 4 + 6], 10);
}

TEST(TestFrames, GiveSixteenBitStridesInBytes) {
    const auto frame = MakeYuv16Frame(
        {.width = 6, .height = 4, .type = VideoFrameBufferType::YUV422_16, .v = 1023, .padding = 10});
    EXPECT_EQ(frame->GetStrideY(), 22);
    EXPECT_EQ(frame->GetStrideV(), 16);
    EXPECT_EQ(frame->GetSubsamplingMode(), SubsamplingMode::Mode422);
    EXPECT_EQ(frame->GetDataV()[3 * 8 + 2], 1023);
}

TEST(TestFrames, StoreRgbAsBlueGreenRedAlpha) {
    const auto frame = MakeRgbFrame({.width = 2, .height = 1, .argb = 0xFF102030});
    EXPECT_EQ(frame->GetBuffer()[0], 0x30);
    EXPECT_EQ(frame->GetBuffer()[1], 0x20);
    EXPECT_EQ(frame->GetBuffer()[2], 0x10);
    EXPECT_EQ(frame->GetBuffer()[3], 0xFF);
}

TEST(TestFrames, CountHowOftenTheyAreCleared) {
    const auto frame = MakeFrame({.type = VideoFrameBufferType::YUV444});
    frame->Clear();
    frame->Clear();
    EXPECT_EQ(ClearCount(frame), 2);
    EXPECT_EQ(std::dynamic_pointer_cast<YuvTestFrame>(frame)->GetDataY()[0], 16);
}

TEST(TestFrames, LieAboutThemselvesWhenAsked) {
    const auto frame = MakeFrame({.type = static_cast<VideoFrameBufferType>(9)});
    EXPECT_EQ(static_cast<int>(frame->GetType()), 9);
    const auto bad = MakeYuvFrame({.faults = {.nullPlane = {false, true, false}, .stride = {1, {}, {}}}});
    EXPECT_EQ(bad->GetDataU(), nullptr);
    EXPECT_EQ(bad->GetStrideY(), 1);
}

TEST(TestFrames, OfferEveryDamageWithoutBreakingThemselves) {
    for (const BadFrame& bad : MakeBadFrames()) {
        ASSERT_NE(bad.frame, nullptr) << bad.name;
        bad.frame->Clear();
    }
}

}  // namespace
}  // namespace Corvanta::Testing
