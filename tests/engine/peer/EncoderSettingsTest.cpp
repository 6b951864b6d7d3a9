#include "engine/peer/EncoderSettings.h"

#include <gtest/gtest.h>

namespace Corvanta::Engine {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

VideoFrameAdaptation Divided(std::uint32_t scaleDown, std::uint32_t minimumHeight = 240) {
    return {.scaleDown = scaleDown, .minimumHeight = minimumHeight, .bitrate = 0};
}

TEST(EncodedSize, IsThePicturesOwnWithEvenSides) {
    EXPECT_EQ(EncodedSize(1280, 720, Divided(1)), (PictureSize{1280, 720}));
    EXPECT_EQ(EncodedSize(641, 361, Divided(1)), (PictureSize{640, 360}));
}

TEST(EncodedSize, IsDividedDownToTheFewestLines) {
    EXPECT_EQ(EncodedSize(1280, 720, Divided(2)), (PictureSize{640, 360}));
    EXPECT_EQ(EncodedSize(1280, 720, Divided(8)), (PictureSize{426, 240}));
    EXPECT_EQ(EncodedSize(320, 180, Divided(4)), (PictureSize{320, 180}));
}

TEST(EncodedSize, IsSomethingTheEncoderTakesWhateverIsAskedFor) {
    EXPECT_EQ(EncodedSize(1, 1, Divided(0, 0)), (PictureSize{16, 16}));
    EXPECT_EQ(EncodedSize(100'000, 50, Divided(1)), (PictureSize{16382, 50}));
    EXPECT_EQ(EncodedSize(640, 360, Divided(1'000'000, 0)), (PictureSize{16, 16}));
}

class BitrateRuleTest : public testing::Test {
protected:
    BitrateRule rule{100'000, 1'000'000};
    const BitrateRule::Clock::time_point start = BitrateRule::Clock::now();
};

TEST_F(BitrateRuleTest, StartsAtTheHighest) {
    EXPECT_EQ(rule.Bitrate(), 1'000'000U);
}

TEST_F(BitrateRuleTest, FallsByAFifthAfterTwoSecondsOfLoss) {
    EXPECT_EQ(rule.Report(0.2, start), 1'000'000U);
    EXPECT_EQ(rule.Report(0.2, start + milliseconds(1900)), 1'000'000U);
    EXPECT_EQ(rule.Report(0.2, start + seconds(2)), 800'000U);
    EXPECT_EQ(rule.Report(0.2, start + seconds(3)), 800'000U);
    EXPECT_EQ(rule.Report(0.2, start + seconds(4)), 640'000U);
}

TEST_F(BitrateRuleTest, ForgivesAMomentOfLoss) {
    (void)rule.Report(0.2, start);
    (void)rule.Report(0.05, start + seconds(1));
    EXPECT_EQ(rule.Report(0.2, start + seconds(2)), 1'000'000U);
}

TEST_F(BitrateRuleTest, KeepsToItsBounds) {
    for (int second = 0; second < 200; ++second) (void)rule.Report(1, start + seconds(second));
    EXPECT_EQ(rule.Bitrate(), 100'000U);
    for (int second = 200; second < 400; ++second) (void)rule.Report(0, start + seconds(second));
    EXPECT_EQ(rule.Bitrate(), 1'000'000U);
    rule.SetBounds(50'000, 300'000);
    EXPECT_EQ(rule.Bitrate(), 300'000U);
}

TEST_F(BitrateRuleTest, RisesByATwentiethEachSecondWithoutLoss) {
    for (int second = 0; second < 200; ++second) (void)rule.Report(1, start + seconds(second));
    const auto later = start + seconds(200);
    EXPECT_EQ(rule.Report(0.01, later), 105'000U);
    EXPECT_EQ(rule.Report(0.01, later + milliseconds(100)), 105'000U);
    EXPECT_EQ(rule.Report(0.05, later + seconds(1)), 105'000U);
    EXPECT_EQ(rule.Report(0.01, later + seconds(2)), 110'250U);
}

TEST_F(BitrateRuleTest, FollowsAnotherHighestAtOnceWhereNothingWasLost) {
    rule.SetBounds(100'000, 2'000'000);
    EXPECT_EQ(rule.Bitrate(), 2'000'000U);
    rule.SetBounds(100'000, 500'000);
    EXPECT_EQ(rule.Bitrate(), 500'000U);
}

TEST_F(BitrateRuleTest, ClimbsToAnotherHighestWhereLossHadLoweredIt) {
    (void)rule.Report(1, start);
    (void)rule.Report(1, start + seconds(2));
    const auto lowered = rule.Bitrate();
    rule.SetBounds(100'000, 2'000'000);
    EXPECT_EQ(rule.Bitrate(), lowered);
}

}  // namespace
}  // namespace Corvanta::Engine
